#include "component/coverage_data_ctrl.h"

#include <utility>

#include "platform/message_box.h"
#include "platform/module.h"
#include "platform/text.h"
#include "util/entry.h"
#include "util/resource_ids.h"

namespace coverage {
namespace {

constexpr char kResourceFile[] = "JepCoverageExtRes.dll";

/// Lies in the file that this library was loaded from.
const char kOwnAddress = 0;

}  // namespace

CJepCoverageDataCtrl::CJepCoverageDataCtrl() : CJepDebugDataCtrl2("Coverage", resource::kBitmapComponent) {}

CJepCoverageDataCtrl::~CJepCoverageDataCtrl() {
  WithdrawSink();
  // An object that was never uninitialized still has its views; they need the customiser to withdraw what
  // they registered.
  if (viewControl != nullptr) CJepCoverageDataCtrl::DestroyViews();
  endedControls.clear();
}

qal::Status CJepCoverageDataCtrl::QueryInterface(const qal::Guid* iid, void** out) {
  if (out == nullptr) return qal::kFail;
  *out = nullptr;
  if (iid == nullptr) return qal::kNoInterface;
  if (*iid == qal::iid::kUnknown || *iid == qal::iid::kRegistryClient || *iid == qal::iid::kErrorText) {
    *out = static_cast<qal::IQRegistryClient*>(this);
  } else if (*iid == qal::iid::kComponent2 || *iid == qal::kClassId) {
    *out = static_cast<qal::IQComponent2*>(this);
  } else if (*iid == qal::iid::kColumnClient) {
    *out = static_cast<qal::IQColumnClient*>(this);
  } else if (*iid == qal::iid::kTestImageSource) {
    *out = static_cast<qal::IQTestImageSource*>(this);
  }
  return *out == nullptr ? qal::kNoInterface : qal::kOk;
}

// Beginning.

std::optional<std::string> CJepCoverageDataCtrl::LibraryPath() const {
  return platform::ModulePath(&kOwnAddress);
}

bool CJepCoverageDataCtrl::LoadResources() {
  const std::optional<std::string> library = LibraryPath();
  if (!library) {
    platform::ShowMessageBox(Text(strings::kModuleFileMissing), platform::Icon::kStop);
    platform::ShowMessageBox(Text(strings::kApplicationExits));
    return false;
  }
  const std::size_t separator = platform::FindLastBackslash(*library);
  const std::string directory =
      separator == std::string::npos ? std::string{} : library->substr(0, separator + 1);
  std::string failure;
  // The one from before goes first: it may be the same library, which would then be searched no more.
  resourceModule.reset();
  resourceModule = LoadResourceModule(directory + kResourceFile, &failure);
  if (resourceModule != nullptr) return true;
  platform::ShowMessageBox(failure);
  return false;
}

qal::Status CJepCoverageDataCtrl::Initialize(qal::IQHost* hostObject, qal::Flag first) {
  const qal::Status loaded = Enter(
      Entries(),
      [&] {
        if (first == qal::kFalse) return qal::kOk;
        // Views of an earlier beginning hold the resources that are replaced now.
        if (viewControl != nullptr) DestroyViews();
        return LoadResources() ? qal::kOk : qal::kFail;
      },
      qal::kFail);
  if (loaded != qal::kOk) return loaded;
  // From here on the resource module is part of the context.
  return Enter(
      Entries(),
      [&] {
        if (hostObject == nullptr) return qal::kFail;
        WithdrawSink();
        hostObject->Advise(&qal::iid::kDebugActivitySink, static_cast<qal::IQDebugActivitySink*>(this));
        sinkHost = hostObject;
        if (first == qal::kFalse) return qal::kOk;
        BindDebugger(hostObject);
        BindHost(hostObject);
        CreateViews();
        return qal::kOk;
      },
      qal::kFail);
}

void CJepCoverageDataCtrl::CreateViews() {
  if (parts.host != nullptr && parts.host != host) {
    if (parts.testClient != nullptr) parts.testClient->Withdraw();
    earlierParts.push_back(std::exchange(parts, {}));
  }
  parts.host = host;
  if (parts.customisation == nullptr) parts.customisation = std::make_unique<CUiCustomizer>(host);
  viewControl = std::make_unique<CJepCoverageCtrl>(host, parts.customisation.get());
  viewControl->CreateSinkWindow();
  if (parts.testClient == nullptr) {
    parts.testSelection = std::make_unique<TestSelectionEditor>(host);
    parts.testClient = std::make_unique<CoverageTestClient>(
        host, static_cast<qal::IQTestImageSource*>(this), &viewControl->Images(), parts.testSelection.get());
  } else {
    parts.testClient->SetWindows(&viewControl->Images());
  }
  RegisterColumns(host, viewControl.get());
}

// End.

void CJepCoverageDataCtrl::DestroyViews() {
  UnregisterColumns();
  if (viewControl != nullptr) viewControl->Marks().Refresh();
  ForgetView();
  if (parts.testClient != nullptr) parts.testClient->SetWindows(nullptr);
  CJepDebugDataCtrl2::DestroyViews();
}

void CJepCoverageDataCtrl::WithdrawSink() {
  // Nobody tells the end of what runs now.
  busy = 0;
  if (sinkHost == nullptr) return;
  sinkHost->Unadvise(&qal::iid::kDebugActivitySink, static_cast<qal::IQDebugActivitySink*>(this));
  sinkHost = nullptr;
}

qal::Status CJepCoverageDataCtrl::Uninitialize(qal::Flag final) {
  return Enter(
      Entries(),
      [&] {
        WithdrawSink();
        const bool bound = host != nullptr;
        if (final == qal::kFalse) return bound ? qal::kOk : qal::kFail;
        if (bound) {
          DestroyViews();
          UnbindHost();
          UnbindDebugger();
        }
        // Last: what the views loaded lies in the module.
        resourceModule.reset();
        return bound ? qal::kOk : qal::kFail;
      },
      qal::kFail);
}

// Events.

qal::Status CJepCoverageDataCtrl::OnDebugEvent(const qal::Guid* event) {
  Enter(
      Entries(),
      [&] {
        if (event == nullptr || viewControl == nullptr) return qal::kOk;
        if (*event == qal::event::kRedraw) {
          if (busy == 0) viewControl->RefreshAllStatistics();
        } else if (*event == qal::event::kDownload) {
          viewControl->OnDownload();
        } else if (*event == qal::event::kCoverage) {
          viewControl->CollectCoverage();
        } else if (*event == qal::event::kReset) {
          viewControl->OnReset();
        }
        return qal::kOk;
      },
      qal::kFail);
  return CJepDebugDataCtrl2::OnDebugEvent(event);
}

qal::Status CJepCoverageDataCtrl::OnActivityBegin(std::uint32_t, std::uint32_t) {
  busy = 1;
  return qal::kOk;
}

qal::Status CJepCoverageDataCtrl::OnActivityEnd() {
  if (busy == 0) return qal::kOk;
  busy = 0;
  return Enter(
      Entries(),
      [&] {
        if (viewControl == nullptr) return qal::kOk;
        viewControl->OnActivityEnd();
        return qal::kOk;
      },
      qal::kOk);
}

}  // namespace coverage
