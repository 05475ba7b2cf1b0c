#pragma once

#include <cstddef>
#include <cstdint>

#include "qal/types.h"
#include "qal/variant.h"

namespace coverage {

/// Most bytes of a bitmap that cross an interface: 256 pixels of 32 bits.
inline constexpr std::size_t kImageBytes = 1024;

/// A bitmap of the component as interfaces carry it: an array variant of bytes, one variant a byte. Writes
/// the number of bytes to `size` when it is given. Empty, and size 0, when there is no such bitmap.
qal::Variant BitmapImage(std::uint32_t bitmapId, std::size_t* size = nullptr);

/// The two outs of a GetBitmaps operation, both made from one bitmap. Fails, and writes nothing, when one of
/// them is null.
qal::Status WriteBitmaps(std::uint32_t bitmapId, qal::Variant* image, qal::Variant* mask);

}  // namespace coverage
