#pragma once

#include <cstdint>

#include "platform/api.h"

/// Colours and the colours of the desktop. User-interface thread.
namespace platform {

/// 0x00BBGGRR.
using Colour = std::uint32_t;

constexpr Colour Rgb(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
  return red | (Colour{green} << 8) | (Colour{blue} << 16);
}

enum class SystemColour : std::uint8_t {
  kWindow,
  kWindowText,
  kHighlight,
  kHighlightText,
  kGreyText,
  kFace,
  kFaceText,
  kCount,
};

/// At start white, black, 0/0/128, white, grey 128, grey 192 and black.
PLATFORM_API Colour ColourOf(SystemColour which);
/// What a desktop tells at its start, or when the user changes its colours.
PLATFORM_API void SetSystemColour(SystemColour which, Colour colour);
PLATFORM_API void ResetSystemColours();

}  // namespace platform
