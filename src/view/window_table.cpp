#include "view/window_table.h"

#include <algorithm>
#include <utility>

namespace coverage {
namespace {

/// State of the frame of a window that is closed.
constexpr std::uint32_t kClosedFrame = 2;

}  // namespace

WindowTable::WindowTable(const ViewServices& services, CUiCommandSink& owner, DataQuestions& questions,
                         LineMarks& marks)
    : services_(services), owner_(owner), questions_(questions), marks_(marks) {}

WindowTable::DataPane& WindowTable::NewPane(const PaneServices& services,
                                            CoverageModel::InstancePtr instance) {
  auto made = std::make_unique<DataPane>(services, std::move(instance));
  DataPane& pane = *made;
  owner_.AddChild(std::move(made));
  return pane;
}

WindowTable::StatisticsPane& WindowTable::Open(const PaneServices& services,
                                               const CoverageModel::WindowPtr& window, DataPane& first) {
  auto made = std::make_unique<StatisticsPane>(services, window);
  StatisticsPane& pane = *made;
  owner_.AddChild(std::move(made));
  pane.AddPane(first);
  entries_.push_back({window, &pane});
  services_.model.Open(window);
  pane.CreatePane(window->frame);
  return pane;
}

WindowTable::StatisticsPane* WindowTable::PaneOf(const CoverageWindow& window) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return entry.window.get() == &window; });
  return found == entries_.end() ? nullptr : found->pane;
}

std::vector<WindowTable::StatisticsPane*> WindowTable::Panes() const {
  std::vector<StatisticsPane*> panes;
  for (const Entry& entry : entries_) panes.push_back(entry.pane);
  return panes;
}

std::size_t WindowTable::PaneCount() const {
  std::size_t count = 0;
  for (const Entry& entry : entries_) count += 1 + entry.window->instances.size();
  return count;
}

bool WindowTable::CloseWindow(CoverageWindow& window) {
  const auto first = window.instances.empty() ? nullptr : window.instances.begin()->second;
  const DataLoss loss = window.isFile() ? DataLoss::kCloseFileWindow : DataLoss::kCloseRangeWindow;
  if (first && !questions_.MayLose(loss, *first)) return false;
  const StatisticsPane* const statistics = PaneOf(window);
  for (const auto& [number, instance] : window.instances) {
    instance->modified = 0;
    services_.model.Enable(*instance, false);
    instance->shown = 0;
    const DataPane* const pane = statistics != nullptr ? statistics->PaneOf(instance.get()) : nullptr;
    if (pane == nullptr || !pane->PaneWindowCreated()) services_.model.Withdraw(*instance);
  }
  marks_.DropLineMarks();
  return true;
}

void WindowTable::CloseFrame(qal::WindowHandle frame) const {
  if (services_.customizer != nullptr) services_.customizer->SetFrameState(frame, kClosedFrame);
}

bool WindowTable::CloseByHandle(qal::WindowHandle handle) {
  if (handle == 0) return false;
  for (const Entry& entry : std::vector<Entry>(entries_)) {
    const DataPane* const view = entry.pane->ViewPane();
    if (view != nullptr && view->Handle() == handle) {
      CloseFrame(entry.window->frame);
      return true;
    }
    const qal::WindowHandle frame = entry.window->frame;
    if (entry.pane->Handle() != handle && frame != handle) continue;
    CUiCustomizer* const customizer = services_.customizer;
    std::uint32_t state = 0;
    const bool hides = customizer != nullptr && qal::Succeeded(customizer->GetFrameState(frame, &state));
    CloseFrame(frame);
    if (CloseWindow(*entry.window)) {
      services_.model.Close(*entry.window);
      DisposeClosed();
    } else if (hides && entry.window->open) {
      // A window that the person keeps stays in view.
      customizer->SetFrameState(frame, state);
    }
    return true;
  }
  return false;
}

void WindowTable::CloseAll() {
  while (!services_.model.Windows().empty()) {
    services_.model.Close(*services_.model.Windows().back());
    DisposeClosed();
  }
  marks_.Refresh();
}

bool WindowTable::HoldsClosed() const {
  return std::any_of(entries_.begin(), entries_.end(),
                     [](const Entry& entry) { return !entry.window->open; });
}

void WindowTable::DisposeClosed() {
  for (;;) {
    const auto closed = std::find_if(entries_.begin(), entries_.end(),
                                     [](const Entry& entry) { return !entry.window->open; });
    if (closed == entries_.end()) return;
    const Entry entry = *closed;
    entries_.erase(closed);
    Dispose(entry);
  }
}

void WindowTable::Dispose(const Entry& entry) {
  for (DataPane* pane : entry.pane->Panes()) {
    // The pane with a window withdraws its range when that goes.
    if (!pane->PaneWindowCreated()) services_.model.Withdraw(pane->Instance());
    owner_.RemoveChild(*pane);
  }
  owner_.RemoveChild(*entry.pane);
}

}  // namespace coverage
