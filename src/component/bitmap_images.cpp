#include "component/bitmap_images.h"

#include "platform/resources.h"
#include "platform/variant.h"
#include "util/texts.h"

namespace coverage {

qal::Variant BitmapImage(std::uint32_t bitmapId, std::size_t* size) {
  if (size != nullptr) *size = 0;
  const platform::BitmapResource* bitmap = platform::LoadBitmap(Resources(), bitmapId);
  if (bitmap == nullptr) return {};
  const auto bytes = platform::BitmapBytes(*bitmap, kImageBytes);
  if (size != nullptr) *size = bytes.size();
  return platform::BytesVariant(bytes);
}

void WriteBitmaps(std::uint32_t bitmapId, qal::Variant* image, qal::Variant* mask) {
  if (image != nullptr) *image = BitmapImage(bitmapId);
  if (mask != nullptr) *mask = BitmapImage(bitmapId);
}

}  // namespace coverage
