#include "platform/edit.h"

#include <algorithm>

#include "platform/desktop.h"
#include "platform/text.h"

namespace platform {

namespace {

/// Start of the character before `at`.
std::size_t PreviousChar(std::string_view text, std::size_t at) {
  std::size_t before = 0;
  for (std::size_t next = 0; next < at; next = NextChar(text, next)) before = next;
  return before;
}

}  // namespace

void TextLine::SetText(std::string_view text) {
  text_ = text;
  start_ = end_ = 0;
}

void TextLine::Select(std::size_t start, std::size_t end) {
  start_ = std::min(start, text_.size());
  end_ = std::min(end, text_.size());
  if (start_ > end_) std::swap(start_, end_);
}

std::string TextLine::Accepted(std::string_view typed, std::size_t room) const {
  std::string accepted;
  for (std::size_t at = 0; at < typed.size();) {
    const std::size_t next = NextChar(typed, at);
    const std::string_view character = typed.substr(at, next - at);
    at = next;
    const bool control = character.size() == 1 && static_cast<unsigned char>(character[0]) < ' ';
    const bool refused = character.size() == 1 && refused_.find(character[0]) != std::string::npos;
    if (control || refused) continue;
    if (accepted.size() + character.size() > room) break;
    accepted += character;
  }
  return accepted;
}

bool TextLine::Type(std::string_view typed) {
  const std::size_t kept = text_.size() - (end_ - start_);
  const std::string accepted = Accepted(typed, limit_ - std::min(limit_, kept));
  // What is refused altogether leaves the selection as it is; typing nothing deletes it.
  if (accepted.empty() && (!typed.empty() || start_ == end_)) return false;
  const bool changed = text_.compare(start_, end_ - start_, accepted) != 0;
  text_.replace(start_, end_ - start_, accepted);
  start_ = end_ = start_ + accepted.size();
  return changed;
}

bool TextLine::Key(std::uint32_t virtualKey) {
  switch (virtualKey) {
    case key::kHome:
      Select(0, 0);
      return false;
    case key::kEnd:
      Select(text_.size(), text_.size());
      return false;
    case key::kLeft:
      start_ = end_ = start_ != end_ ? start_ : PreviousChar(text_, start_);
      return false;
    case key::kRight:
      start_ = end_ = start_ != end_ || end_ >= text_.size() ? end_ : NextChar(text_, end_);
      return false;
    case key::kBack:
      if (start_ == end_) start_ = PreviousChar(text_, start_);
      return Type({});
    case key::kDelete:
      if (start_ == end_ && end_ < text_.size()) end_ = NextChar(text_, end_);
      return Type({});
    default:
      return false;
  }
}

void Edit::SetText(std::string_view text) {
  if (text == Text()) return;
  line_.SetText(text);
  Changed();
}

void Edit::Changed() {
  const WindowRef self(*this);
  Control::SetText(line_.Text());
  if (!self) return;
  Notification news;
  news.code = notify::kChanged;
  Notify(news);
}

void Edit::Select(std::size_t start, std::size_t end) {
  line_.Select(start, end);
  Desktop::Get().Tell(*this, Change::kSelection);
}

bool Edit::Type(std::string_view typed) {
  if (!CanBeUsed()) return false;
  const Desktop::Busy busy;
  const WindowRef self(*this);
  SetFocus();
  if (self && line_.Type(typed)) Changed();
  return true;
}

bool Edit::TypeOver(std::string_view typed) {
  if (!CanBeUsed()) return false;
  Select(0, std::string::npos);
  return Type(typed);
}

LResult Edit::OnMessage(const Message& message) {
  if (message.id == message::kCreate) line_.SetText(Text());
  if (message.id != message::kKeyDown) return Control::OnMessage(message);
  if (line_.Key(static_cast<std::uint32_t>(message.w))) {
    Changed();
  } else {
    Desktop::Get().Tell(*this, Change::kSelection);
  }
  return 0;
}

}  // namespace platform
