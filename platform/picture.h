#pragma once

#include <string>

#include "platform/api.h"
#include "platform/file_dialog.h"
#include "platform/message_box.h"

/// Windows as text, for consoles and tests: the same model gives the same text. User-interface thread.
namespace platform {

class Dialog;
class ListView;
class Menu;
class Toolbar;
class Window;

/// A title line, then a line for each control in tab order, ">" before the one with the focus:
///
///   "Go To Address"
///      9023 label   "&Address"
///   >  8999 combo   [1000] items: 1000, 2000
///      9024 button  "&OK" (default)
///      9025 button  "&Cancel" (disabled)
///
/// A list follows its line as a table.
PLATFORM_API std::string Picture(const Dialog& dialog);

/// A table of the visible rows (all, up to 200, when the list has no size), columns in the order in which
/// they are shown, hidden ones left out. ">" marks the focused row, "*" the selected one.
PLATFORM_API std::string Picture(const ListView& list);

/// A line for each item: identifier, "x" when checked, text, "(disabled)"; pop-ups are indented.
PLATFORM_API std::string Picture(const Menu& menu);
/// A line for each button: identifier, "x" when checked, tip, "(disabled)"; "--" for a separator.
PLATFORM_API std::string Picture(const Toolbar& toolbar);
/// A window with its children, each as its class says.
PLATFORM_API std::string Picture(const Window& window);
/// Icon, text and buttons: `[information] There is no range. (ok)`.
PLATFORM_API std::string Picture(const MessageBoxRequest& box);
PLATFORM_API std::string Picture(const FileDialogRequest& request);

}  // namespace platform
