#pragma once

#include <string>
#include <utility>
#include <vector>

#include "view/coverage_ctrl.h"

namespace coverage {

/// The coverage windows of a view control. What is done to them here is done as a call of the IDE would: what
/// it changes is shown when it is over.
class OpenWindows {
 public:
  using StatisticsPane = WindowTable::StatisticsPane;
  using DataPane = WindowTable::DataPane;

  explicit OpenWindows(CJepCoverageCtrl& view) : view_(&view) {}

  template <class Act>
  void Do(Act act) {
    Enter(
        view_->Entries(), [&] { return act(), qal::kOk; }, qal::kFail);
  }

  std::vector<StatisticsPane*> Windows() const { return view_->Windows().Panes(); }
  StatisticsPane* NewRangeWindow(std::uint32_t start, std::uint32_t end) {
    return PaneOf([&] { return view_->Opener().NewRangeWindow(start, end); });
  }
  StatisticsPane* NewFileWindow(const std::string& file, const std::string& typed) {
    return PaneOf([&] { return view_->Opener().NewFileWindow(file, typed); });
  }
  void AddRange(StatisticsPane& window, std::uint32_t start, std::uint32_t end) {
    Do([&] { view_->Opener().AddRange(window.Record(), start, end); });
  }
  void CloseAll() {
    Do([&] { view_->Windows().CloseAll(); });
  }
  std::vector<CoverageModel::InstancePtr> Instances() const {
    std::vector<CoverageModel::InstancePtr> all;
    for (const auto& window : view_->Coverage().Windows()) {
      for (const auto& [number, instance] : window->instances) all.push_back(instance);
    }
    return all;
  }

 private:
  template <class Act>
  StatisticsPane* PaneOf(Act act) {
    CoverageWindow* window = nullptr;
    Do([&] { window = act(); });
    return window == nullptr ? nullptr : view_->Windows().PaneOf(*window);
  }

  CJepCoverageCtrl* view_;
};

}  // namespace coverage
