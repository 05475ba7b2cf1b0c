#pragma once

#include <cstdint>

#include "platform/menu.h"
#include "workbench/services/window_service.h"

namespace workbench {

/// Commands of the IDE's own menus; components' are 0x7000 and above.
namespace own_command {
inline constexpr std::uint32_t kOpenProgram = 101, kDownload = 102, kExit = 103, kRun = 111, kReset = 112;
}

/// The menu bar as it stands now: the IDE's own pop-ups, then what components registered for the main window
/// and for the pane with the focus. Pop-ups of one title are one. Main thread.
platform::Menu MainMenu(const WindowService& windows, bool programLoaded);

/// Window that the commands of a registered menu go to: the one that registered it, or the focused pane when
/// it is of the pane's. Null when the menu is not in the bar now.
platform::Window* TargetOf(const WindowService& windows, const WindowService::MenuRegistration& menu);

}  // namespace workbench
