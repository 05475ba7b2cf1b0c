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

qal::Status WriteBitmaps(std::uint32_t bitmapId, qal::Variant* image, qal::Variant* mask) {
  if (image == nullptr || mask == nullptr) return qal::kFail;
  *image = BitmapImage(bitmapId);
  *mask = BitmapImage(bitmapId);
  return qal::kOk;
}

}  // namespace coverage
