#include "view/active_session.h"
#include "view/coverage_ctrl.h"

// What happens to the windows when the program or the target begins anew.

namespace coverage {

void CJepCoverageCtrl::OnDownload() {
  DropCaches();
  if (ComponentActive(host)) {
    PromptSaveWindows();
    AfterProgramReload(true);
    model->ClearAll();
  } else {
    clearPending = 1;
  }
  marks->Refresh();
}

void CJepCoverageCtrl::OnReset() {
  DropCaches();
  if (clearPending != 0 && ComponentActive(host)) {
    AfterProgramReload(false);
    model->ClearAll();
    clearPending = 0;
  }
  marks->DropLineMarks();
}

}  // namespace coverage
