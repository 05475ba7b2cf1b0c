// A service line: one letter, a blank, a number. "s 12" sets, "a 3" adds, "g" gets …
#include "firmware.h"

static int32_t accumulator;
static uint32_t commandsSeen;

static bool IsDigit(char c) { return c >= '0' && c <= '9'; }

static const char* SkipBlanks(const char* text) {
  while (*text == ' ' || *text == '\t') ++text;
  return text;
}

static bool ParseNumber(const char* text, int32_t* value) {
  bool negative = false;
  text = SkipBlanks(text);
  if (*text == '-') {
    negative = true;
    ++text;
  }
  if (!IsDigit(*text)) return false;
  int32_t result = 0;
  while (IsDigit(*text)) result = result * 10 + (*text++ - '0');
  *value = negative ? -result : result;
  return *SkipBlanks(text) == 0;
}

static Reply Make(ReplyKind kind, int32_t value) {
  Reply reply = {kind, value};
  return reply;
}

Reply CommandRun(const char* line) {
  int32_t number = 0;
  line = SkipBlanks(line);
  if (*line == 0) return Make(kReplyNone, 0);
  ++commandsSeen;
  char letter = *line++;
  bool hasNumber = ParseNumber(line, &number);
  switch (letter) {
    case 'a':
      if (!hasNumber) return Make(kReplyBadNumber, 0);
      accumulator += number;
      return Make(kReplyOk, 0);
    case 'c':
      accumulator = 0;
      return Make(kReplyOk, 0);
    case 'd':
      if (!hasNumber || number == 0) return Make(kReplyBadNumber, 0);
      accumulator /= number;
      return Make(kReplyOk, 0);
    case 'g':
      return Make(kReplyValue, accumulator);
    case 'm':
      if (!hasNumber) return Make(kReplyBadNumber, 0);
      accumulator *= number;
      return Make(kReplyOk, 0);
    case 'n':
      return Make(kReplyValue, (int32_t)commandsSeen);
    case 's':
      if (!hasNumber) return Make(kReplyBadNumber, 0);
      accumulator = number;
      return Make(kReplyOk, 0);
    case 'x':
      accumulator = -accumulator;
      return Make(kReplyOk, 0);
    default:
      return Make(kReplyUnknown, letter);
  }
}
