#include <array>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "commands/arguments.h"
#include "doubles/program_services.h"
#include "platform/text.h"

/// Any bytes as a command's argument line, in either code page: tokens never reach beyond the line or fail to
/// advance, and arguments hand back what they did not use.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using coverage::CArg;
  static doubles::StubExpression expressions;
  const std::string_view line(reinterpret_cast<const char*>(data), size);
  for (const std::uint32_t codePage : {platform::kUtf8, platform::kShiftJis}) {
    platform::SetCodePage(codePage);
    std::string_view cursor = line;
    std::string token;
    coverage::TokenKind kind;
    while (!cursor.empty()) {
      const std::size_t before = cursor.size();
      coverage::NextToken(cursor, token, kind);
      if (cursor.size() >= before || token.size() > before) std::abort();
      if (cursor.data() + cursor.size() != line.data() + line.size()) std::abort();
    }

    coverage::CArgKeyword keyword(false, "enable\0disable\0reset\0", -1);
    coverage::CArgNumberUnsigned number(false, 16, &expressions, 9, 1, 0xFFFF);
    coverage::CArgStringFileName file(true, {}, nullptr);
    const std::array<CArg*, 3> arguments = {&keyword, &number, &file};
    cursor = line;
    const std::size_t parsed = coverage::ParseArguments(cursor, arguments);
    if (parsed == 3 && file.value.empty()) std::abort();
    if (number.error == 0 && number.defaulted == 0 && parsed > 1 &&
        (number.value < 1 || number.value > 0xFFFF)) {
      std::abort();
    }
  }
  platform::SetCodePage(platform::kUtf8);
  return 0;
}
