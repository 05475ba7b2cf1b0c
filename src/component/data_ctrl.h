#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "formatview/debug_interfaces.h"
#include "qal/all.h"
#include "view/coverage_ctrl.h"

namespace coverage {

/// What a component object of the debugger is to the IDE, whatever it shows: bound to the host between
/// Initialize and Uninitialize, with one view control in between. Nobody counts references; services are
/// borrowed. UI thread only.
class CJepDataCtrl2 : public qal::IQRegistryClient, public qal::IQComponent2, public qal::IQErrorReporter {
 public:
  /// What GetName and GetBitmaps answer.
  CJepDataCtrl2(const char* name, std::uint32_t bitmapId) : name_(name), bitmapId_(bitmapId) {}
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 0; }
  qal::Status Reserved3(void*) override { return qal::kOk; }

  virtual ~CJepDataCtrl2();
  virtual void CreateViews() = 0;
  /// Destroys the view control's window and ends the view control. The object stays until this one goes: an
  /// operation of it may wait for a person who has a dialog open.
  virtual void DestroyViews();

  /// Passes the two pane notifications on to the view control; always 0.
  qal::Status OnDebugEvent(const qal::Guid* event) override;
  qal::Status Reserved5() override { return qal::kOk; }
  qal::Status Reserved6() override { return qal::kOk; }
  qal::Status GetName(char16_t** name) override;
  qal::Status GetBitmaps(qal::Variant* image, qal::Variant* mask) override;
  qal::Status GetErrorText(qal::Status status, char16_t** text) override;

 protected:
  /// Keeps the host and looks up what goes with it.
  void BindHost(qal::IQHost* hostObject);
  void UnbindHost();
  /// What the operations of the object go through; null without a view control.
  EntryListener* Entries() const { return viewControl == nullptr ? nullptr : viewControl->Entries(); }

  qal::IQHost* host = nullptr;
  void* hostAux = nullptr;  ///< kept, not called
  qal::IQErrorText* errorText = nullptr;
  qal::IQUnknown* hostAux2 = nullptr;  ///< kept, not called
  std::unique_ptr<CJepCoverageCtrl> viewControl;
  std::vector<std::unique_ptr<CJepCoverageCtrl>> endedControls;

 private:
  const char* name_;
  std::uint32_t bitmapId_;
};

/// The same, aware of the debugger.
class CJepDebugDataCtrl2 : public CJepDataCtrl2, public CDebugInterfaces {
 public:
  using CJepDataCtrl2::CJepDataCtrl2;
};

}  // namespace coverage
