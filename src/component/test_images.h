#pragma once

#include "component/bitmap_images.h"
#include "platform/text.h"
#include "qal/component.h"
#include "util/entry.h"
#include "util/resource_ids.h"

namespace coverage {

/// Name and picture of the component for the test client. A class of its own, because the component's own
/// interface has operations of the same names that answer something else.
class TestImages : public qal::IQTestImageSource {
 public:
  qal::Status GetName(char16_t** name) override {
    if (name == nullptr) return qal::kFail;
    *name = platform::NewWide("Code");
    return qal::kOk;
  }
  qal::Status GetBitmaps(qal::Variant* image, qal::Variant* mask) override {
    return Enter(
        nullptr, [&] { return WriteBitmaps(resource::kBitmapTest, image, mask); }, qal::kFail);
  }
};

}  // namespace coverage
