#pragma once

#include <cstdint>

/// Commands that reach the view control through its window.
namespace coverage::control_command {

inline constexpr std::uint32_t kOpenCoverage = 32770;
/// Posted when the pane of a file window asks for another source file.
inline constexpr std::uint32_t kChangeSourceFile = 4097;

}  // namespace coverage::control_command
