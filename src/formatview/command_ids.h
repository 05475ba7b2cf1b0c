#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "qal/types.h"

namespace coverage {

/// Command identifiers of a module's menus, accelerator tables and toolbars, in the order in which they
/// stand. Nothing when the module (or, behind it, the current resources) has no such resource. Each reader
/// makes the module the current one while it loads. UI thread.
using CommandIds = std::vector<std::uint32_t>;

/// Items with a text and an identifier from 0x7000 to 0xEFFF; separators and openers of submenus have none.
std::optional<CommandIds> ReadMenuCommands(qal::ModuleHandle module, std::uint32_t menuId);

/// One identifier an entry, duplicates kept.
std::optional<CommandIds> ReadAcceleratorCommands(qal::ModuleHandle module, std::uint32_t tableId);

/// The buttons of a toolbar of version 1, without its separators; empty for another version. The alternate
/// identifier is used when `toolbarId` is 0. A toolbar that is shorter than it says ends where its bytes end.
std::optional<CommandIds> ReadToolbarCommands(qal::ModuleHandle module, std::uint32_t toolbarId,
                                              std::uint32_t alternateId);

}  // namespace coverage
