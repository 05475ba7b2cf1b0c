#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "component/data_ctrl.h"
#include "component/dll_resource.h"
#include "component/editor_columns.h"
#include "component/test_images.h"
#include "dialogs/test_selection_dialog.h"
#include "formatview/customizer.h"
#include "macro/coverage_test_client.h"
#include "qal/all.h"

namespace coverage {

/// The coverage component as the IDE sees it: one object for each debugger session. Owns the view control,
/// the test client, the resource module and the customiser. After an end it may begin again, on another host,
/// too. UI thread only.
class CJepCoverageDataCtrl : public CJepDebugDataCtrl2,
                             public EditorColumns,
                             public qal::IQDebugActivitySink,
                             public TestImages {
 public:
  CJepCoverageDataCtrl();
  ~CJepCoverageDataCtrl() override;

  /// Answers the same whichever of the object's interfaces it is called on.
  qal::Status QueryInterface(const qal::Guid* iid, void** out) override;
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 0; }

  qal::Status OnDebugEvent(const qal::Guid* event) override;
  qal::Status Initialize(qal::IQHost* hostObject, qal::Flag first) override;
  qal::Status Uninitialize(qal::Flag final) override;

  qal::Status OnActivityBegin(std::uint32_t first, std::uint32_t second) override;
  qal::Status Reserved4() override { return qal::kOk; }
  qal::Status OnActivityEnd() override;

  void CreateViews() override;
  void DestroyViews() override;

  /// Null outside Initialize with first and its end.
  CJepCoverageCtrl* ViewControl() const { return viewControl.get(); }

 protected:
  /// Product path of the library's own file; nothing when it cannot be told.
  virtual std::optional<std::string> LibraryPath() const;

 private:
  /// What is made once for a host, and kept when the views go and come again.
  struct HostParts {
    qal::IQHost* host = nullptr;
    std::unique_ptr<CUiCustomizer> customisation;
    std::unique_ptr<TestSelectionEditor> testSelection;  ///< outlives the client that asks it
    std::unique_ptr<CoverageTestClient> testClient;
  };

  bool LoadResources();
  void WithdrawSink();

  std::uint32_t busy = 0;
  qal::IQHost* sinkHost = nullptr;  ///< the host that holds the activity sink
  std::unique_ptr<CDllResource> resourceModule;
  HostParts parts;
  std::vector<HostParts> earlierParts;  ///< withdrawn; an operation of theirs may wait for a person
};

}  // namespace coverage
