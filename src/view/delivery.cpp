#include "view/delivery.h"

#include <algorithm>
#include <utility>

#include "model/coverage_model.h"
#include "view/line_marks.h"
#include "view/raised.h"
#include "view/window_table.h"

namespace coverage {
namespace {

/// What is brought up to date may make the IDE call again, and so something else stale; not without end.
constexpr int kMostRounds = 4;

}  // namespace

Delivery::Delivery(CoverageModel& model, WindowTable& table, LineMarks& marks)
    : model_(model), table_(table), marks_(marks) {}

void Delivery::OnEntryEnds() {
  if (--depth_ == 0) Deliver();
}

void Delivery::OnModalBegins() {
  outside_.push_back(std::exchange(depth_, 0));
  try {
    Deliver();
  } catch (...) {
    // What could not be shown stays marked for the next time.
  }
}

void Delivery::OnModalEnds() {
  if (outside_.empty()) return;
  depth_ = outside_.back();
  outside_.pop_back();
}

bool Delivery::Pending() const {
  const auto& windows = model_.Windows();
  return model_.Stale().wanted || model_.Stale().marks || table_.HoldsClosed() ||
         std::any_of(windows.begin(), windows.end(), [](const auto& window) { return window->stale.any(); });
}

void Delivery::Deliver() {
  if (delivering_ || stopped_) return;
  const Raised delivering(delivering_);
  for (int round = 0; round < kMostRounds && Pending() && !stopped_; ++round) DeliverOnce();
}

void Delivery::DeliverOnce() {
  table_.DisposeClosed();
  if (model_.Stale().wanted) model_.UpdateCoverageSwitch();
  if (model_.Stale().marks) marks_.DropLineMarks();
  // Whatever is called in between may close windows.
  std::vector<CoverageModel::WindowPtr> stale = model_.Windows();
  std::erase_if(stale, [](const auto& window) { return !window->stale.any(); });
  const auto each = [&](void (WindowTable::StatisticsPane::*bring)()) {
    for (const auto& window : stale) {
      if (auto* const pane = table_.PaneOf(*window)) (pane->*bring)();
    }
  };
  each(&WindowTable::StatisticsPane::ListStale);
  each(&WindowTable::StatisticsPane::RowsStale);
  each(&WindowTable::StatisticsPane::Redraw);
}

}  // namespace coverage
