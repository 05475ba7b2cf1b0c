#include "view/active_session.h"
#include "view/coverage_ctrl.h"

// What the debugger's events ask of the windows. Who sends the events has entered already.

namespace coverage {

void CJepCoverageCtrl::CollectCoverage() {
  if (records.TakeReport() && ExecutionHalted()) records.MarkLists();
}

void CJepCoverageCtrl::OnDownload() {
  records.Instructions().Drop();
  if (ComponentActive(host)) {
    reload->PromptSaveWindows();
    reload->AfterProgramReload(true);
    records.Commands().ClearAll();
  } else {
    clearPending = 1;
  }
  marks->Refresh();
}

void CJepCoverageCtrl::OnReset() {
  records.Instructions().Drop();
  if (clearPending != 0 && ComponentActive(host)) {
    reload->AfterProgramReload(false);
    records.Commands().ClearAll();
    clearPending = 0;
  } else {
    reload->RebuildPendingFileWindows();
  }
  marks->DropLineMarks();
}

void CJepCoverageCtrl::RefreshAllStatistics() {
  records.ComputePercentages();
  records.MarkLists();
  records.MarkRows();
}

void CJepCoverageCtrl::OnActivityEnd() {
  marks->DropLineMarks();
  RefreshAllStatistics();
}

}  // namespace coverage
