#include "view/coverage_windows.h"

#include <algorithm>

#include "dialogs/coverage_range_dialog.h"
#include "dialogs/small_dialogs.h"
#include "model/address_text.h"
#include "platform/text.h"
#include "view/coverage_ctrl.h"

// The table of windows, and what the panes ask for that needs no more than the table.

namespace coverage {

CoverageWindows::CoverageWindows(WindowOwner& windowOwner, const Parts& parts, CommandModel& model,
                                 qal::IQSource* source, qal::IQColumnService* columns)
    : owner(windowOwner),
      host(parts.host),
      customizer(parts.customizer),
      settings(parts.settings),
      options(parts.options),
      macro(parts.macro),
      keys(parts.keys),
      marks(*this, model, source, columns) {}

bool CoverageWindows::OpenCommandEnabled() const {
  return windows.size() < kMostWindows || FirstRangeWindow() != nullptr;
}

CoverageWindows::StatisticsPane* CoverageWindows::FirstRangeWindow() const {
  const auto found = std::find_if(windows.begin(), windows.end(), [](const StatisticsPane* window) {
    return window->Record().kind == WindowKind::kRange;
  });
  return found == windows.end() ? nullptr : *found;
}

bool CoverageWindows::IsOpen(const StatisticsPane* window) const {
  return std::find(windows.begin(), windows.end(), window) != windows.end();
}

std::size_t CoverageWindows::PaneCount() const {
  std::size_t count = 0;
  for (const StatisticsPane* window : windows) count += 1 + window->Panes().size();
  return count;
}

CoverageWindows::StatisticsPane* CoverageWindows::WindowOfFrame(qal::WindowHandle frame) const {
  for (StatisticsPane* window : windows) {
    if (frame != 0 && window->Frame() == frame) return window;
  }
  return nullptr;
}

std::string CoverageWindows::ViewKeyOf(const StatisticsPane& window) const {
  const auto found = viewKeys.find(&window);
  return found == viewKeys.end() ? std::string{} : found->second;
}

std::vector<const CoverageWindow*> CoverageWindows::OpenWindows() {
  std::vector<const CoverageWindow*> records;
  for (const StatisticsPane* window : windows) records.push_back(&window->Record());
  return records;
}

std::vector<CoverageInstance*> CoverageWindows::AllInstances() {
  std::vector<CoverageInstance*> instances;
  for (const StatisticsPane* window : windows) {
    for (const auto& [number, instance] : window->Record().instances) instances.push_back(instance);
  }
  return instances;
}

std::string CoverageWindows::AddressTextOf(std::uint32_t address) const {
  return AddressText(host, address).value_or("");
}

// Redrawing.

void CoverageWindows::RefreshPanes() {
  for (StatisticsPane* window : windows) window->RefreshFromDebugger();
}

void CoverageWindows::RefreshAllStatistics() {
  for (CoverageInstance* instance : AllInstances()) instance->ComputePercentage(false, instructions);
  RefreshPanes();
  RedrawPanes();
}

void CoverageWindows::RedrawPanes() {
  for (StatisticsPane* window : windows) {
    window->Invalidate();
    DataPane* const displayed = window->DisplayedPane();
    if (displayed == nullptr) continue;
    displayed->RebuildRows(displayed->Instance().refreshLocked == 0, 0, -1, -1);
    if (DataPane* const view = window->ViewPane()) view->Invalidate();
  }
}

// What the panes ask.

PaneHost::Confirmation CoverageWindows::ConfirmClear() {
  switch (ConfirmationDialog(host).Ask(&owner.SinkWindow())) {
    case ConfirmationDialog::Choice::kSaveFirst:
      return Confirmation::kSaveFirst;
    case ConfirmationDialog::Choice::kGoOn:
      return Confirmation::kGoOn;
    default:
      return Confirmation::kCancelled;
  }
}

bool CoverageWindows::MayClearFunction(DataPane& pane) {
  CoverageInstance& instance = pane.Instance();
  if (instance.modified == 0 || !ClearAsks()) {
    instance.saved = 0;
    return true;
  }
  const Confirmation answer = ConfirmClear();
  if (answer == Confirmation::kCancelled) return false;
  if (answer == Confirmation::kSaveFirst && pane.Statistics() != nullptr) SaveWindow(*pane.Statistics());
  return true;
}

std::optional<std::uint32_t> CoverageWindows::AskAddress(DataPane& pane, const std::string& addressText) {
  const CoverageInstance& instance = pane.Instance();
  return GoToAddressDialog(host, instance.start, instance.end, addressText, memory.addresses)
      .Ask(&owner.SinkWindow());
}

std::optional<std::pair<std::uint32_t, std::uint32_t>> CoverageWindows::AskRange(DataPane& pane) {
  const AddressRange current{pane.Instance().start, pane.Instance().end};
  const auto range =
      CoverageRangeDialog(host, {memory.starts, memory.ends}).AskRange(&owner.SinkWindow(), current);
  if (!range) return std::nullopt;
  return std::pair{range->start, range->end};
}

void CoverageWindows::RequestSourceChange(DataPane& pane) {
  changingSource = &pane;
  owner.SinkWindow().Post(platform::message::kCommand, control_command::kChangeSourceFile);
}

bool CoverageWindows::RangeShownElsewhere(const DataPane& pane, std::uint32_t start, std::uint32_t end) {
  return std::any_of(windows.begin(), windows.end(), [&](const StatisticsPane* window) {
    if (window == pane.Statistics() || window->Record().kind != WindowKind::kRange) return false;
    const auto& instances = window->Record().instances;
    return std::any_of(instances.begin(), instances.end(), [&](const auto& each) {
      return each.second->start == start && each.second->end == end;
    });
  });
}

void CoverageWindows::NoteRecentRange(std::uint32_t start, std::uint32_t end) {
  memory.starts.Note(platform::Format("%x", start), start);
  memory.ends.Note(platform::Format("%x", end), end);
}

bool CoverageWindows::NextSortAscending(int column) {
  if (column < 0 || column >= static_cast<int>(sortedAscending.size())) return true;
  bool& ascending = sortedAscending[static_cast<std::size_t>(column)];
  ascending = !ascending;
  return ascending;
}

void CoverageWindows::DeletePane(DataPane& pane) {
  if (changingSource == &pane) changingSource = nullptr;
  marks.ForgetInstances();
  owner.DisposePane(pane);
}

}  // namespace coverage
