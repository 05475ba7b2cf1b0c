#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "doubles/script.h"
#include "unit/view/open_windows.h"
#include "unit/view/view_world.h"
#include "view/coverage_ctrl.h"

namespace coverage {

/// A view control over the IDE of ViewWorld, and a person in front of it.
class ViewTest : public testing::Test {
 protected:
  ViewTest() { Restart(); }
  void Restart() {
    view = std::make_unique<CJepCoverageCtrl>(&world.host, &customizer);
    view->CreateSinkWindow();
  }
  OpenWindows Open() { return OpenWindows(*view); }
  std::string Picture() {
    std::string picture;
    for (auto* window : Open().Windows()) {
      picture += window->Record().isFile() ? "file" : "range";
      for (const auto& [number, instance] : window->Record().instances) {
        picture += platform::Format(" %x-%x", instance->start, instance->end);
        if (!instance->functionName.empty()) picture += "=" + instance->functionName;
        picture += std::string(instance->enableStatus ? "" : " off") + (instance->shown ? "*" : "");
      }
      picture += '\n';
    }
    return picture;
  }
  void Do(const std::string& lines, const std::function<void()>& action) {
    EXPECT_EQ(doubles::Script(lines, &world.boxes).Run(action).left, "");
  }

  ViewWorld world;
  CUiCustomizer customizer{&world.host};
  std::unique_ptr<CJepCoverageCtrl> view;
};

}  // namespace coverage
