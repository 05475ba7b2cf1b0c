#pragma once

#include <cstdint>
#include <string>

#include "qal/ide_services.h"

namespace coverage {

/// Font and colours of the coverage views as the IDE's settings store keeps them. A pair is read only whole:
/// when one value is missing both stay as they were. The store is borrowed and may be null; writing is not
/// checked. UI thread only.

struct DisplayFont {
  std::u16string face = u"Courier New";
  std::int32_t size = 11;  // points
};

void ReadDisplayFont(qal::IQSettings* settings, DisplayFont& font);
void WriteDisplayFont(qal::IQSettings* settings, const DisplayFont& font);

/// Colours are positions in the named colour table.
void ReadDisplayColours(qal::IQSettings* settings, std::int32_t& foreground, std::int32_t& background);
void WriteDisplayColours(qal::IQSettings* settings, std::int32_t foreground, std::int32_t background);

}  // namespace coverage
