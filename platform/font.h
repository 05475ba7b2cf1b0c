#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/api.h"

/// Fonts as descriptions that can be measured. User-interface thread.
namespace platform {

struct Font {
  std::string face = "System";
  int height = 13;  ///< pixels; negative means the height of the characters without their leading
  int width = 0;    ///< average character width, 0 for the one that goes with the height
  int weight = 0;   ///< 0 to 1000, 0 for the usual one
  bool italic = false;

  friend bool operator==(const Font&, const Font&) = default;
};

struct FontMetrics {
  int height = 0;        ///< of a line
  int averageWidth = 0;  ///< of a character
};

/// Measures fonts. A desktop installs one for its own fonts; without one every character is as wide as the
/// average and a line as high as the font, so that layouts are the same everywhere.
class PLATFORM_API FontMeasurer {
 public:
  virtual ~FontMeasurer() = default;
  virtual FontMetrics Measure(const Font& font) const = 0;
  virtual int TextWidth(const Font& font, std::string_view text) const = 0;
};

/// Installs a measurer that must outlive its use; null brings the plain one back. Gives the one before, or
/// null.
PLATFORM_API const FontMeasurer* InstallFontMeasurer(const FontMeasurer* measurer);

PLATFORM_API FontMetrics Measure(const Font& font);
/// Pixels of a single line.
PLATFORM_API int TextWidth(const Font& font, std::string_view text);

}  // namespace platform
