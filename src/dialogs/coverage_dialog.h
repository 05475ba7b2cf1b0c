#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/dialog.h"
#include "platform/message_box.h"
#include "qal/host.h"

namespace coverage {

/// Base of the component's modal dialogs: they find their template in the component's resources, complain in
/// message boxes, and stay open with the focus on what is at fault. UI thread only.
class CoverageDialog : public platform::Dialog {
 public:
  /// Shows the dialog; true when it ended with OK.
  bool Run(platform::Window* owner);

 protected:
  /// Identifiers of the two buttons that end the dialog.
  struct EndButtons {
    std::uint32_t ok;
    std::uint32_t cancel;
  };
  /// `host` is borrowed and may be null.
  CoverageDialog(std::uint32_t templateId, EndButtons buttons, qal::IQHost* host)
      : Dialog(templateId), host_(host), buttons_(buttons) {}

  platform::LResult OnMessage(const platform::Message& message) override;

  qal::IQHost* host() const { return host_; }
  /// Says what is wrong and puts the focus on the control at fault (0: on none).
  void Complain(std::uint32_t textId, std::uint32_t focusId);

  /// The number that the debugger makes of an address typed into a combo box. Without one the debugger's
  /// text, or "Syntax error", is shown and the combo box has the focus.
  std::optional<std::uint32_t> AddressIn(std::uint32_t comboId);
  /// Lets the person pick the name of a function from a menu into a combo box: of the source file in which
  /// the address there lies, else of the one in which the program stands.
  void ChooseLabel(std::uint32_t comboId);
  /// What is typed into a field, without blanks around it.
  std::string TypedIn(std::uint32_t fieldId) const;
  /// A path with its placeholders replaced; `allResolved`, when given, tells whether each had a value.
  std::string Expand(std::string_view path, bool* allResolved = nullptr) const;
  /// Directory that a file dialog begins in: that of the name, or the value of `placeholder` when it has
  /// none.
  std::string StartDirectory(std::string_view name, std::string_view placeholder) const;

 private:
  /// What the debugger makes of an address text; fails for an empty one.
  qal::Status Evaluate(const std::string& text, std::uint32_t& address) const;
  std::string LabelFile(std::uint32_t comboId) const;

  qal::IQHost* host_;
  EndButtons buttons_;
};

}  // namespace coverage
