#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "formatview/child_window.h"
#include "formatview/customizer.h"
#include "formatview/debug_interfaces.h"
#include "platform/window.h"
#include "qal/host.h"
#include "qal/ide_services.h"
#include "qal/program_services.h"
#include "qal/project_services.h"

namespace coverage {

/// Messages of a command sink; the first parameter is a window handle.
namespace sink_message {
inline constexpr std::uint32_t kCloseChild = 0x401;
inline constexpr std::uint32_t kHideChild = 0x403;
inline constexpr std::uint32_t kNotifyChild = 0x404;
}  // namespace sink_message

/// A hidden child of the IDE's main window that is registered with the IDE, so that commands of menus,
/// toolbars and accelerators reach it. Owns the child windows that it creates. UI thread only.
class CUiCommandSink : public platform::Window {
 public:
  /// Both are borrowed and may be null. Takes two registration keys from the customizer.
  CUiCommandSink(qal::IQHost* host, CUiCustomizer* customizer);
  ~CUiCommandSink() override;

  /// As a child of the application's main window, or without a parent when there is none. False when the
  /// creation was refused.
  bool CreateSinkWindow();
  /// Destroys the children first, so that their registrations are withdrawn before the sink's own.
  void DestroySinkWindow();

  virtual void DestroyChildren();
  virtual void NotifyChildren();
  /// Removes, destroys and deletes the child; anything that is no child's window is left alone. Always 1. The
  /// object lives on until no window handler runs.
  virtual platform::LResult CloseChild(qal::WindowHandle window, platform::LParam second);
  /// Hides the frame that holds the window. Always 1.
  virtual platform::LResult HideChild(qal::WindowHandle window, platform::LParam second);

  /// Calls the removal hook and destroys the window now; the object lives on until no window handler runs.
  void RemoveChild(CUiChildWindow& child);
  /// Takes the child over, behind those it has.
  void AddChild(std::unique_ptr<CUiChildWindow> child);
  std::uint32_t CommandKey() const { return commandKey; }
  CUiCustomizer* Customizer() const { return customizer; }

 protected:
  platform::LResult OnMessage(const platform::Message& message) override;
  /// Visits the children that are there at the call, as far as they still are.
  void ForEachChild(const std::function<void(CUiChildWindow&)>& action);
  /// The child with this window, or null.
  CUiChildWindow* FindChild(qal::WindowHandle window) const;

  qal::IQHost* host;
  qal::IQExpression* expressionService = nullptr;
  qal::IQUnknown* keptService = nullptr;
  qal::IQWorkspace* workspaceService = nullptr;
  qal::IQSettings* settings = nullptr;
  qal::IQFrame* frameService = nullptr;
  qal::IQMessageOptions* messageOptionService = nullptr;
  CUiCustomizer* customizer;
  std::uint32_t commandKey = 0;
  std::uint32_t auxKey = 0;
  std::vector<std::unique_ptr<CUiChildWindow>> children;

 private:
  platform::LResult OnCloseChild(const platform::Message& message);
  platform::LResult OnHideChild(const platform::Message& message);
  platform::LResult OnNotifyChild(const platform::Message& message);
  void WithdrawRegistrations();
};

}  // namespace coverage
