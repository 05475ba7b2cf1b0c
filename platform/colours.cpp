#include "platform/colours.h"

#include <array>

namespace platform {

namespace {

using Colours = std::array<Colour, static_cast<std::size_t>(SystemColour::kCount)>;

constexpr Colours kAtStart = {
    Rgb(255, 255, 255), Rgb(0, 0, 0),       Rgb(0, 0, 128), Rgb(255, 255, 255),
    Rgb(128, 128, 128), Rgb(192, 192, 192), Rgb(0, 0, 0),
};

Colours& Current() {
  static Colours colours = kAtStart;
  return colours;
}

}  // namespace

Colour ColourOf(SystemColour which) {
  return which < SystemColour::kCount ? Current()[static_cast<std::size_t>(which)] : 0;
}

void SetSystemColour(SystemColour which, Colour colour) {
  if (which < SystemColour::kCount) Current()[static_cast<std::size_t>(which)] = colour & 0xFFFFFF;
}

void ResetSystemColours() { Current() = kAtStart; }

}  // namespace platform
