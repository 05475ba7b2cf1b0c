#pragma once

#include <memory>

#include "view/data_questions.h"
#include "view/line_marks.h"
#include "view/view_services.h"
#include "view/window_opener.h"

namespace coverage {

/// Another source file for a file window: asked for by one of its panes, carried out when the command that is
/// posted for it arrives. UI thread only.
class SourceChange {
 public:
  /// All borrowed.
  SourceChange(const ViewServices& services, WindowOpener& opener, DataQuestions& questions, LineMarks& marks)
      : services_(services), opener_(opener), questions_(questions), marks_(marks) {}

  /// Notes the instance whose window is to change.
  void Request(CoverageInstance& instance);
  void ChangeSourceFile();

 private:
  const ViewServices& services_;
  WindowOpener& opener_;
  DataQuestions& questions_;
  LineMarks& marks_;
  std::weak_ptr<CoverageInstance> asking_;
};

}  // namespace coverage
