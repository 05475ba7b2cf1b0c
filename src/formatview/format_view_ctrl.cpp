#include "formatview/format_view_ctrl.h"

#include <cstdlib>

#include "formatview/colour_table.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "qal/ids.h"
#include "util/entry.h"

namespace coverage {

CJepFormatViewCtrl::CJepFormatViewCtrl(qal::IQHost* hostObject, CUiCustomizer* customizerObject)
    : CUiCommandSink(hostObject, customizerObject),
      viewFont(platform::Font{.face = "Courier New", .height = 11, .width = 8}),
      textFore(ColourIndexOf("SYSTEM")),
      textBack(ColourIndexOf("SYSTEM")),
      selectedFore(ColourIndexOf("HIGHLIGHT")),
      selectedBack(ColourIndexOf("HIGHLIGHT")),
      categories{kTextCategory} {}

qal::Status CJepFormatViewCtrl::QueryInterface(const qal::Guid* iid, void** out) {
  if (out == nullptr) return qal::kFail;
  *out = nullptr;
  if (iid == nullptr || !(*iid == qal::iid::kUnknown || *iid == qal::iid::kFormatViewClient2)) {
    return qal::kNoInterface;
  }
  *out = static_cast<qal::IQFormatViewClient2*>(this);
  return qal::kOk;
}

qal::Status CJepFormatViewCtrl::GetFormatName(char16_t** name) {
  if (name == nullptr) return qal::kFail;
  *name = platform::NewWide("");
  return qal::kOk;
}

qal::Status CJepFormatViewCtrl::GetCategories(qal::Variant* list) {
  if (list == nullptr) return qal::kFail;
  return Enter(
      nullptr,
      [&] {
        *list = platform::TextListVariant(categories);
        return qal::kOk;
      },
      qal::kFail);
}

qal::Status CJepFormatViewCtrl::WriteColours(std::string_view category, std::uint32_t* foreground,
                                             std::uint32_t* background) const {
  if (foreground == nullptr || background == nullptr) return qal::kFail;
  const bool selected = category == kSelectedTextCategory;
  if (!selected && category != kTextCategory) return qal::kOk;
  *foreground = static_cast<std::uint32_t>(selected ? selectedFore : textFore);
  *background = static_cast<std::uint32_t>(selected ? selectedBack : textBack);
  return qal::kOk;
}

qal::Status CJepFormatViewCtrl::GetCurrentColours(std::uint32_t* foreground, std::uint32_t* background) {
  return WriteColours(currentCategory, foreground, background);
}

qal::Status CJepFormatViewCtrl::GetColours(qal::WideText category, std::uint32_t* foreground,
                                           std::uint32_t* background) {
  return Enter(
      nullptr, [&] { return WriteColours(platform::Narrow(category), foreground, background); }, qal::kFail);
}

qal::Status CJepFormatViewCtrl::GetFont(char16_t** face, std::uint32_t* size) {
  if (face == nullptr || size == nullptr) return qal::kFail;
  if (!viewFont) return 1;
  *face = platform::NewWide(viewFont->face);
  *size = static_cast<std::uint32_t>(std::abs(viewFont->height));
  return qal::kOk;
}

qal::Status CJepFormatViewCtrl::SetColours(qal::WideText category, std::uint32_t foreground,
                                           std::uint32_t background) {
  return Enter(
      nullptr,
      [&] {
        currentCategory = platform::Narrow(category);
        const bool selected = currentCategory == kSelectedTextCategory;
        if (!selected && currentCategory != kTextCategory) return qal::kOk;
        (selected ? selectedFore : textFore) = static_cast<std::int32_t>(foreground);
        (selected ? selectedBack : textBack) = static_cast<std::int32_t>(background);
        return qal::kOk;
      },
      qal::kFail);
}

qal::Status CJepFormatViewCtrl::SetFont(qal::WideText face, std::uint32_t size) {
  return Enter(
      nullptr,
      [&] {
        viewFont = platform::Font{.face = platform::Narrow(face), .height = static_cast<int>(size)};
        Window::SetFont(*viewFont);
        Invalidate();
        return qal::kOk;
      },
      qal::kFail);
}

// These three go through the interface, so that a derived view's own behaviour is what they reach.

qal::Status CJepFormatViewCtrl::ChangeFont(qal::WideText face, std::uint32_t size) {
  qal::IQFormatViewClient2* const self = this;
  return self->SetFont(face, size);
}

qal::Status CJepFormatViewCtrl::SetTextColours(std::uint32_t foreground, std::uint32_t background) {
  qal::IQFormatViewClient2* const self = this;
  return self->SetColours(platform::Wide(kTextCategory).get(), foreground, background);
}

qal::Status CJepFormatViewCtrl::SetSelectedTextColours(std::uint32_t foreground, std::uint32_t background) {
  qal::IQFormatViewClient2* const self = this;
  return self->SetColours(platform::Wide(kSelectedTextCategory).get(), foreground, background);
}

}  // namespace coverage
