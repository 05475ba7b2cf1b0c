#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/api.h"
#include "platform/edit.h"

namespace platform {

/// A list of texts with an edit part (kComboBox) or without (kDropDownList). What a person chooses or types
/// is told to the parent (notify::kSelectionChanged, notify::kChanged); what the program does is not.
class PLATFORM_API ComboBox : public Control {
 public:
  explicit ComboBox(ControlKind kind = ControlKind::kComboBox) : Control(kind) {}
  bool IsEditable() const { return Kind() == ControlKind::kComboBox; }

  const std::vector<std::string>& Items() const { return items_; }
  void SetItems(std::vector<std::string> items);
  void AddItem(std::string_view text);
  void ClearItems();
  /// Puts a text to the front of the list, once (compared exactly), and drops what is beyond `limit`.
  void AddToHistory(std::string_view text, std::size_t limit = 10);

  /// Chosen item, -1 when the text is no chosen item.
  int Selected() const { return selected_; }
  /// Chooses an item and shows its text; -1 empties both.
  void SelectItem(int index);

  /// A text of the program's. Without an edit part it must be an item, or nothing is chosen.
  void SetText(std::string_view text) override;

  /// Selection of the edit part; it stays when the focus goes.
  std::size_t SelectionStart() const { return line_.SelectionStart(); }
  std::size_t SelectionEnd() const { return line_.SelectionEnd(); }
  void Select(std::size_t start, std::size_t end);
  void SetRefusedChars(std::string_view characters) { line_.SetRefused(characters); }
  /// A text without what could not be typed.
  std::string Accepted(std::string_view text) const { return line_.Accepted(text); }

  /// The person. Choose is false for a text that is no item; typing needs an edit part.
  bool Choose(int index);
  bool Choose(std::string_view text);
  bool Type(std::string_view typed);
  bool TypeOver(std::string_view typed);

 protected:
  LResult OnMessage(const Message& message) override;

 private:
  void ShowItem(int index);
  void Changed();

  std::vector<std::string> items_;
  TextLine line_;
  int selected_ = -1;
};

}  // namespace platform
