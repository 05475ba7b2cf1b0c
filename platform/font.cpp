#include "platform/font.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "platform/text.h"

namespace platform {

namespace {

class PlainMeasurer final : public FontMeasurer {
 public:
  FontMetrics Measure(const Font& font) const override {
    // A font of 13 pixels is 13 high and 6 wide; characters of 13 pixels without leading need 16.
    const int asked = std::abs(std::clamp(font.height, -1000, 1000));
    const int height = std::max(1, font.height < 0 ? asked + asked / 4 : asked);
    const int width = font.width > 0 ? std::min(font.width, 1000) : height / 2;
    return {height, std::max(1, width)};
  }

  int TextWidth(const Font& font, std::string_view text) const override {
    std::int64_t characters = 0;
    for (std::size_t at = 0; at < text.size(); at = NextChar(text, at)) ++characters;
    return static_cast<int>(std::min<std::int64_t>(characters * Measure(font).averageWidth, INT32_MAX));
  }
};

const FontMeasurer* installed = nullptr;

const FontMeasurer& Measurer() {
  static const PlainMeasurer plain;
  return installed ? *installed : plain;
}

}  // namespace

const FontMeasurer* InstallFontMeasurer(const FontMeasurer* measurer) {
  const FontMeasurer* before = installed;
  installed = measurer;
  return before;
}

FontMetrics Measure(const Font& font) { return Measurer().Measure(font); }

int TextWidth(const Font& font, std::string_view text) { return Measurer().TextWidth(font, text); }

}  // namespace platform
