#pragma once

#include <cstdint>
#include <string_view>

namespace coverage {

/// Colours cross the format client interface as positions in one table of twenty names.
/// Constant data; any thread.

/// Positions that stand for a pair of system colours instead of a fixed value.
inline constexpr std::int32_t kSystemColour = 17;
inline constexpr std::int32_t kHighlightColour = 18;
inline constexpr std::int32_t kColourCount = 20;

/// Position of the entry with exactly this name (case matters), or -1.
std::int32_t ColourIndexOf(std::string_view name);

/// Writes the entry's colour as 0x00BBGGRR and gives 0. The two system positions and positions outside the
/// table give white and 1.
std::int32_t ColourOf(std::int32_t index, std::uint32_t* colour);

/// Colours that a list draws with: the table's, or the system's for kSystemColour and kHighlightColour.
std::uint32_t ForegroundOf(std::int32_t index);
std::uint32_t BackgroundOf(std::int32_t index);

}  // namespace coverage
