#pragma once

#include "component/bitmap_images.h"
#include "formatview/interface_call.h"
#include "platform/text.h"
#include "qal/component.h"
#include "util/resource_ids.h"

namespace coverage {

/// Name and picture of the component for the test client. A class of its own, because the component's own
/// interface has operations of the same names that answer something else. A null out pointer gives
/// 0x80004005; then nothing is written.
class TestImages : public qal::IQTestImageSource {
 public:
  qal::Status GetName(char16_t** name) override {
    if (name == nullptr) return qal::kFail;
    return InterfaceCall([&] {
      *name = platform::NewWide("Code");
      return qal::kOk;
    });
  }
  qal::Status GetBitmaps(qal::Variant* image, qal::Variant* mask) override {
    if (image == nullptr || mask == nullptr) return qal::kFail;
    return InterfaceCall([&] {
      WriteBitmaps(resource::kBitmapTest, image, mask);
      return qal::kOk;
    });
  }
};

}  // namespace coverage
