#include "view/active_session.h"
#include "view/coverage_ctrl.h"

// What the debugger's events ask of the windows.

namespace coverage {

void CJepCoverageCtrl::CollectCoverage() {
  const std::vector<CoverageInstance*> instances = windows->AllInstances();
  if (collector.Collect(instances, model.get()) && ExecutionHalted()) windows->RefreshPanes();
}

void CJepCoverageCtrl::OnDownload() {
  windows->DropCaches();
  if (ComponentActive(host)) {
    windows->PromptSaveWindows();
    windows->AfterProgramReload(true);
    model->ClearAll();
  } else {
    clearPending = 1;
  }
  Marks().Refresh();
}

void CJepCoverageCtrl::OnReset() {
  windows->DropCaches();
  if (clearPending != 0 && ComponentActive(host)) {
    windows->AfterProgramReload(false);
    model->ClearAll();
    clearPending = 0;
  } else {
    windows->RebuildPendingFileWindows();
  }
  Marks().DropLineMarks();
}

}  // namespace coverage
