#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/combo_box.h"
#include "platform/controls.h"
#include "platform/edit.h"
#include "platform/list_view.h"
#include "platform/resource_table.h"

/// Modal dialogs over a template of resources. User-interface thread.
namespace platform {

inline constexpr std::uint32_t kIdOk = 1;
inline constexpr std::uint32_t kIdCancel = 2;

/// Derive, route the buttons of the template (OnMessage and Dispatch) to OnOK, OnCancel and what else there
/// is, and reach the controls by identifier:
///
///   class GoToDialog final : public platform::Dialog {
///    public:
///     GoToDialog() : Dialog(9001) {}
///     void OnInitDialog() override { SetItemText(8999, "1000"); }
///     …
///   };
///   if (GoToDialog dialog; dialog.DoModal(parent) == platform::kIdOk) …
class PLATFORM_API Dialog : public Window {
 public:
  /// A template of the current resource context at the time of DoModal.
  explicit Dialog(std::uint32_t templateId) : templateId_(templateId) {}
  /// A template that outlives the dialog.
  explicit Dialog(const DialogTemplate& resource) : templateId_(resource.id), template_(&resource) {}
  ~Dialog() override;

  /// Builds window and controls, runs OnInitDialog, puts the focus on the first control that takes it unless
  /// OnInitDialog did, disables `owner`, and lets the presenter act until the dialog has ended; when it will
  /// not go on, the dialog is cancelled. Gives the result of EndDialog; kIdCancel when the window was
  /// destroyed instead or there is no presenter; -1 when there is no template. An owner that is no
  /// window (any more) is as good as none. Can be called again.
  int DoModal(Window* owner = nullptr);
  /// The window stays until the handler that calls this has returned. The first call counts.
  void EndDialog(int result);
  bool Ended() const { return ended_; }
  int Result() const { return result_; }
  std::uint32_t TemplateId() const { return templateId_; }

  // Controls. One that is not there reads as empty and unchecked, and cannot be changed.

  /// The control as its class; null when it is not there or another.
  template <class T = Control>
  T* Item(std::uint32_t id) const {
    return dynamic_cast<T*>(Child(id));
  }
  std::string ItemText(std::uint32_t id) const;
  void SetItemText(std::uint32_t id, std::string_view text);
  bool IsItemChecked(std::uint32_t id) const;
  void CheckItem(std::uint32_t id, bool checked);
  /// Checks one of some radio buttons and clears the others.
  void CheckRadio(std::initializer_list<std::uint32_t> ids, std::uint32_t checkedId);
  bool IsItemEnabled(std::uint32_t id) const;
  void EnableItem(std::uint32_t id, bool enabled);
  void EnableItems(std::initializer_list<std::uint32_t> ids, bool enabled);
  void ShowItem(std::uint32_t id, bool visible);
  /// Gives it the focus, with the text of an edit or combo box selected.
  void FocusItem(std::uint32_t id);

  // The person.

  /// Presses the default button (Enter), closes (Escape, the window's own button) or moves the focus (Tab);
  /// other keys go to the focused control.
  bool Key(std::uint32_t virtualKey, std::uint8_t modifiers = 0);
  /// Ends as Cancel does: command kIdCancel.
  void Close();

 protected:
  /// After the controls exist. EndDialog may be called here.
  virtual void OnInitDialog() {}
  /// Commands kIdOk and kIdCancel.
  virtual void OnOK() { EndDialog(static_cast<int>(kIdOk)); }
  virtual void OnCancel() { EndDialog(static_cast<int>(kIdCancel)); }
  /// Makes a control of the template, not yet created; an override gives its own class for some identifiers
  /// and hands on the others. Null leaves the control out.
  virtual std::unique_ptr<Control> MakeControl(const ControlTemplate& resource);
  LResult OnMessage(const Message& message) override;

 private:
  void BuildControls(const DialogTemplate& resource);
  void FocusFirst();
  void FocusNext(bool forward);
  Button* DefaultButton() const;
  void OnDestroyed() override;

  std::uint32_t templateId_;
  const DialogTemplate* template_ = nullptr;
  std::vector<std::unique_ptr<Control>> controls_;
  int result_ = static_cast<int>(kIdCancel);
  bool ended_ = false;
};

/// Whether a control takes the focus with Tab: usable and neither label nor group.
PLATFORM_API bool TakesFocus(const Window& control);

}  // namespace platform
