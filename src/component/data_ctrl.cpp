#include "component/data_ctrl.h"

#include <utility>

#include "component/bitmap_images.h"
#include "model/services.h"
#include "platform/text.h"
#include "util/entry.h"

namespace coverage {

CJepDataCtrl2::~CJepDataCtrl2() { CJepDataCtrl2::DestroyViews(); }

void CJepDataCtrl2::DestroyViews() {
  if (viewControl == nullptr) return;
  viewControl->DestroySinkWindow();
  viewControl->End();
  endedControls.push_back(std::move(viewControl));
}

qal::Status CJepDataCtrl2::OnDebugEvent(const qal::Guid* event) {
  return Enter(
      Entries(),
      [&] {
        if (event == nullptr || viewControl == nullptr) return qal::kOk;
        if (*event == qal::event::kPaneFirst) viewControl->NotifyChildrenFirst();
        if (*event == qal::event::kPaneSecond) viewControl->NotifyChildrenSecond();
        return qal::kOk;
      },
      qal::kOk);
}

qal::Status CJepDataCtrl2::GetName(char16_t** name) {
  if (name == nullptr) return qal::kFail;
  *name = platform::NewWide(name_);
  return qal::kOk;
}

qal::Status CJepDataCtrl2::GetBitmaps(qal::Variant* image, qal::Variant* mask) {
  return Enter(
      Entries(), [&] { return WriteBitmaps(bitmapId_, image, mask); }, qal::kFail);
}

qal::Status CJepDataCtrl2::GetErrorText(qal::Status status, char16_t** text) {
  return errorText == nullptr ? qal::kFail : errorText->GetErrorText(status, text);
}

void CJepDataCtrl2::BindHost(qal::IQHost* hostObject) {
  host = hostObject;
  if (qal::Failed(host->QueryInterface(&qal::iid::kHostAux, &hostAux))) hostAux = nullptr;
  errorText = FindService<qal::IQErrorText>(host, qal::iid::kErrorText);
  hostAux2 = FindService<qal::IQUnknown>(host, qal::iid::kHostAux2);
}

void CJepDataCtrl2::UnbindHost() {
  host = nullptr;
  hostAux = nullptr;
  hostAux2 = nullptr;
  errorText = nullptr;
}

}  // namespace coverage
