#pragma once

#include <cstdint>

/// Commands of the panes: those of the context menu, then those of the toolbar that do the same.
namespace coverage::pane_command {

inline constexpr std::uint32_t kAllowDocking = 32768;
inline constexpr std::uint32_t kHide = 32769;
inline constexpr std::uint32_t kViewSource = 32771;
inline constexpr std::uint32_t kEnable = 32773;
inline constexpr std::uint32_t kClearData = 32774;
inline constexpr std::uint32_t kRefresh = 32775;
inline constexpr std::uint32_t kEditRange = 32778;
inline constexpr std::uint32_t kGoToAddress = 32779;
inline constexpr std::uint32_t kSaveData = 32780;
inline constexpr std::uint32_t kLoadData = 32781;
inline constexpr std::uint32_t kLockRefresh = 32782;
inline constexpr std::uint32_t kEnableAll = 32804;
inline constexpr std::uint32_t kClearAll = 32805;
inline constexpr std::uint32_t kEnableFunction = 32811;
inline constexpr std::uint32_t kToolbarDisplay = 32825;
inline constexpr std::uint32_t kCustomizeToolbar = 32826;
inline constexpr std::uint32_t kDeleteRange = 32831;
inline constexpr std::uint32_t kAddRange = 32834;

inline constexpr std::uint32_t kEnableButton = 32812;
inline constexpr std::uint32_t kEnableAllButton = 32813;
inline constexpr std::uint32_t kClearAllButton = 32814;
inline constexpr std::uint32_t kViewSourceButton = 32815;
inline constexpr std::uint32_t kGoToAddressButton = 32816;
inline constexpr std::uint32_t kEditRangeButton = 32817;
inline constexpr std::uint32_t kClearDataButton = 32818;
inline constexpr std::uint32_t kSaveDataButton = 32819;
inline constexpr std::uint32_t kLoadDataButton = 32820;
inline constexpr std::uint32_t kRefreshButton = 32821;
inline constexpr std::uint32_t kLockRefreshButton = 32822;
inline constexpr std::uint32_t kDeleteRangeButton = 32832;
inline constexpr std::uint32_t kAddRangeButton = 32835;

}  // namespace coverage::pane_command
