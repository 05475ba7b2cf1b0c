#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/api.h"
#include "platform/controls.h"

namespace platform {

/// A line of text with a selection that a person can type into; shared by edit and combo box. Positions are
/// byte offsets; they never split a character when the person moves.
class PLATFORM_API TextLine {
 public:
  const std::string& Text() const { return text_; }
  std::size_t SelectionStart() const { return start_; }
  std::size_t SelectionEnd() const { return end_; }

  /// Puts the caret to the start.
  void SetText(std::string_view text);
  /// Clamped to the text; both at npos select nothing behind the end. 0 and npos select all.
  void Select(std::size_t start, std::size_t end);
  /// Replaces the selection and puts the caret behind it. Refused characters and those beyond the limit are
  /// left out. False when nothing changed.
  bool Type(std::string_view typed);
  /// Backspace, Delete, Home, End, Left and Right. True when the text changed.
  bool Key(std::uint32_t virtualKey);

  void SetRefused(std::string_view characters) { refused_ = characters; }
  /// What of a text can be typed: whole characters up to `room` bytes, without refused and control
  /// characters.
  std::string Accepted(std::string_view typed, std::size_t room = std::string_view::npos) const;
  /// Bytes that a person can type; at start 32767.
  void SetLimit(std::size_t bytes) { limit_ = bytes; }

 private:
  std::string text_;
  std::size_t start_ = 0;
  std::size_t end_ = 0;
  std::string refused_;
  std::size_t limit_ = 32767;
};

/// A line of text. Every change of the text is told to the parent (notify::kChanged), the program's own, too.
class PLATFORM_API Edit : public Control {
 public:
  Edit() : Control(ControlKind::kEdit) {}

  void SetText(std::string_view text) override;
  /// Single-byte characters that cannot be typed; what the program sets is taken as it stands.
  void SetRefusedChars(std::string_view characters) { line_.SetRefused(characters); }
  /// A text without what could not be typed.
  std::string Accepted(std::string_view text) const { return line_.Accepted(text); }
  void SetLimit(std::size_t bytes) { line_.SetLimit(bytes); }

  std::size_t SelectionStart() const { return line_.SelectionStart(); }
  std::size_t SelectionEnd() const { return line_.SelectionEnd(); }
  void Select(std::size_t start, std::size_t end);

  /// The person types in place of the selection, or over everything.
  bool Type(std::string_view typed);
  bool TypeOver(std::string_view typed);

 protected:
  LResult OnMessage(const Message& message) override;

 private:
  void Changed();

  TextLine line_;
};

}  // namespace platform
