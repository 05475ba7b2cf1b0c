#include "platform/text.h"
#include "view/coverage_ctrl.h"

// Font and colours of the coverage views, as the IDE's format settings choose them.

namespace coverage {

qal::Status CJepCoverageCtrl::GetFormatName(char16_t** name) {
  if (name == nullptr) return qal::kFail;
  return Enter(
      delivery.get(),
      [&] {
        *name = platform::NewWide(coverage::Text(strings::kCoverage));
        return qal::kOk;
      },
      qal::kFail);
}

qal::Status CJepCoverageCtrl::GetFont(char16_t** face, std::uint32_t* size) {
  if (face == nullptr || size == nullptr) return qal::kFail;
  *face = qal::AllocText(displayFont.face);
  *size = static_cast<std::uint32_t>(displayFont.size);
  return qal::kOk;
}

qal::Status CJepCoverageCtrl::SetColours(qal::WideText category, std::uint32_t foreground,
                                         std::uint32_t background) {
  CUiDebugCommandSink::SetColours(category, foreground, background);
  return Enter(
      delivery.get(),
      [&] {
        const std::string name = platform::Narrow(category);
        for (auto* pane : table->Panes()) {
          pane->ApplyColours(name, static_cast<std::int32_t>(foreground),
                             static_cast<std::int32_t>(background));
        }
        if (name == kTextCategory) WriteDisplayColours(settings, textFore, textBack);
        return qal::kOk;
      },
      qal::kFail);
}

qal::Status CJepCoverageCtrl::SetFont(qal::WideText face, std::uint32_t size) {
  return Enter(
      delivery.get(),
      [&] {
        displayFont = {std::u16string(qal::TextView(face)), static_cast<std::int32_t>(size)};
        for (auto* pane : table->Panes()) pane->ApplyFont(platform::Narrow(face), displayFont.size);
        WriteDisplayFont(settings, displayFont);
        return qal::kOk;
      },
      qal::kFail);
}

void CJepCoverageCtrl::ApplyDisplaySettings(DisplayClient& display) const {
  display.ApplyFont(platform::Narrow(std::u16string_view(displayFont.face)), displayFont.size);
  display.ApplyColours(kTextCategory, textFore, textBack);
}

}  // namespace coverage
