#include "formatview/colour_table.h"

#include <array>

#include "platform/colours.h"

namespace coverage {
namespace {

using platform::Rgb;

struct NamedColour {
  std::string_view name;
  std::uint32_t value;
};

constexpr auto kColours = std::to_array<NamedColour>({
    {"WHITE", Rgb(255, 255, 255)},     {"BLACK", Rgb(0, 0, 0)},           {"GREY", Rgb(160, 160, 160)},
    {"BLUE", Rgb(0, 0, 255)},          {"RED", Rgb(255, 0, 0)},           {"GREEN", Rgb(0, 255, 0)},
    {"YELLOW", Rgb(255, 255, 0)},      {"PURPLE", Rgb(255, 0, 255)},      {"CYAN", Rgb(0, 255, 255)},
    {"DARKGREY", Rgb(128, 128, 128)},  {"DARKBLUE", Rgb(0, 0, 128)},      {"DARKRED", Rgb(128, 0, 0)},
    {"DARKGREEN", Rgb(0, 128, 0)},     {"DARKYELLOW", Rgb(128, 128, 0)},  {"DARKPURPLE", Rgb(128, 0, 128)},
    {"DARKCYAN", Rgb(0, 128, 128)},    {"LIGHTGREY", Rgb(229, 225, 223)}, {"SYSTEM", Rgb(255, 255, 255)},
    {"HIGHLIGHT", Rgb(255, 255, 255)}, {"MEDGREY", Rgb(179, 179, 179)},
});
static_assert(kColours.size() == kColourCount);
static_assert(kColours[kSystemColour].name == "SYSTEM" && kColours[kHighlightColour].name == "HIGHLIGHT");

std::uint32_t TableColour(std::int32_t index) {
  std::uint32_t colour = 0;
  ColourOf(index, &colour);
  return colour;
}

}  // namespace

std::int32_t ColourIndexOf(std::string_view name) {
  for (std::size_t i = 0; i < kColours.size(); ++i) {
    if (kColours[i].name == name) return static_cast<std::int32_t>(i);
  }
  return -1;
}

std::int32_t ColourOf(std::int32_t index, std::uint32_t* colour) {
  const bool fixed =
      index >= 0 && index < kColourCount && index != kSystemColour && index != kHighlightColour;
  *colour = kColours[fixed ? static_cast<std::size_t>(index) : 0].value;
  return fixed ? 0 : 1;
}

std::uint32_t ForegroundOf(std::int32_t index) {
  if (index == kSystemColour) return platform::ColourOf(platform::SystemColour::kWindowText);
  if (index == kHighlightColour) return platform::ColourOf(platform::SystemColour::kHighlightText);
  return TableColour(index);
}

std::uint32_t BackgroundOf(std::int32_t index) {
  if (index == kSystemColour) return platform::ColourOf(platform::SystemColour::kWindow);
  if (index == kHighlightColour) return platform::ColourOf(platform::SystemColour::kHighlight);
  return TableColour(index);
}

}  // namespace coverage
