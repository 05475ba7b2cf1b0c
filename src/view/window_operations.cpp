#include "view/coverage_ctrl.h"

namespace coverage {

void CJepCoverageCtrl::OnOpenCoverage() {}

void CJepCoverageCtrl::OnChangeSourceFile() {}

void CJepCoverageCtrl::PromptSaveWindows() {}

void CJepCoverageCtrl::AfterProgramReload(bool forceZero) {
  for (CoverageInstance* instance : AllInstances()) {
    instance->modified = 0;
    instance->counts->Clear();
    instance->ComputePercentage(forceZero, instructions);
  }
  marks->DropLineMarks();
  Invalidate();
}

}  // namespace coverage
