#include <algorithm>

#include "dialogs/coverage_range_dialog.h"
#include "dialogs/small_dialogs.h"
#include "formatview/command_sink.h"
#include "model/services.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "qal/all.h"
#include "util/texts.h"
#include "view/active_session.h"
#include "view/coverage_windows.h"
#include "view/raised.h"

// Closing coverage windows, asking before data go, and what becomes of the windows when the program changes.

namespace coverage {
namespace {

/// State of the frame of a window that is closed.
constexpr std::uint32_t kClosedFrame = 2;

bool SymbolsThere(qal::IQHost* host) {
  auto* const source = FindService<qal::IQSource>(host, qal::iid::kSource);
  qal::IQUnknown* table = nullptr;
  return source != nullptr && qal::Succeeded(source->GetSymbolTable(0, &table)) && table != nullptr;
}

}  // namespace

// Closing.

bool CoverageWindows::CloseWindow(StatisticsPane& window) {
  const auto atStake = [](const CoverageInstance& instance) {
    return instance.modified != 0 && instance.enableStatus != 0 && instance.rangeSet != 0;
  };
  const auto& instances = window.Record().instances;
  const bool isFile = window.Record().kind == WindowKind::kFile;
  CoverageInstance* const first = instances.empty() ? nullptr : instances.begin()->second;
  if (first != nullptr && ClosingAsks()) {
    const bool ask = isFile ? atStake(*first)
                            : std::any_of(instances.begin(), instances.end(),
                                          [&](const auto& each) { return atStake(*each.second); });
    if (ask) {
      const Confirmation answer = ConfirmClear();
      // While a question is open the IDE may close windows, this one too.
      if (answer == Confirmation::kCancelled || !IsOpen(&window)) return false;
      if (answer == Confirmation::kSaveFirst) {
        SaveWindow(window);
        if (!IsOpen(&window)) return false;
      } else if (isFile) {
        first->modified = 0;
      }
    }
  }
  for (const auto& [number, pane] : window.Panes()) {
    CoverageInstance& instance = pane->Instance();
    instance.modified = 0;
    instance.SetEnabled(0);
    instance.shown = 0;
    if (!pane->PaneWindowCreated()) pane->RemoveFromDebugger();
  }
  marks.DropLineMarks();
  return true;
}

void CoverageWindows::Forget(StatisticsPane& window) {
  std::erase(windows, &window);
  viewKeys.erase(&window);
  const auto panes = window.Panes();
  window.RemoveAllPanes();
  for (const auto& [number, pane] : panes) DeletePane(*pane);
  owner.DisposePane(window);
  owner.SwitchCoverage();
}

bool CoverageWindows::CloseByHandle(qal::WindowHandle handle) {
  if (handle == 0) return false;
  for (StatisticsPane* window : windows) {
    const auto& panes = window->Panes();
    const bool isData = std::any_of(panes.begin(), panes.end(),
                                    [&](const auto& each) { return each.second->Handle() == handle; });
    if (isData) {
      if (customizer != nullptr) customizer->SetFrameState(window->Frame(), kClosedFrame);
      return true;
    }
    if (window->Handle() != handle && window->Frame() != handle) continue;
    const qal::WindowHandle frame = window->Frame();
    std::uint32_t state = 0;
    const bool hides = customizer != nullptr && qal::Succeeded(customizer->GetFrameState(frame, &state));
    if (customizer != nullptr) customizer->SetFrameState(frame, kClosedFrame);
    if (CloseWindow(*window)) {
      Forget(*window);
    } else if (hides && IsOpen(window)) {
      // A window that the person keeps stays in view.
      customizer->SetFrameState(frame, state);
    }
    return true;
  }
  return false;
}

void CoverageWindows::CloseAll() {
  while (!windows.empty()) {
    StatisticsPane& window = *windows.back();
    for (const auto& [number, pane] : window.Panes()) {
      pane->Instance().modified = 0;
      pane->Instance().SetEnabled(0);
    }
    Forget(window);
  }
  marks.Refresh();
}

// Another source file.

void CoverageWindows::ChangeSourceFile() {
  DataPane* const pane = std::exchange(changingSource, nullptr);
  StatisticsPane* const window = pane == nullptr ? nullptr : pane->Statistics();
  if (window == nullptr) return;
  if (ClearAsks()) {
    const auto& instances = window->Record().instances;
    const bool ask = std::any_of(instances.begin(), instances.end(), [](const auto& each) {
      return each.second->modified != 0 && each.second->enableStatus != 0 && each.second->rangeSet != 0;
    });
    const Confirmation answer = ask ? ConfirmClear() : Confirmation::kGoOn;
    if (answer == Confirmation::kCancelled) return;
    if (answer == Confirmation::kSaveFirst) SaveWindow(*window);
  }
  for (const auto& [number, instance] : window->Record().instances) {
    instance->modified = 0;
    instance->counts->Clear();
  }
  marks.DropLineMarks();

  const qal::WindowHandle frame = window->Frame();
  const auto source = CoverageRangeDialog(host, {memory.starts, memory.ends})
                          .AskFile(&owner.SinkWindow(), window->Record().typedSourceFile);
  if (!source) return;
  macro.RecordFileWindow(source->typed, source->expanded);
  memory.sourcePath = platform::DirectoryPart(source->expanded);
  if (NewFileWindow(source->expanded, source->typed) == nullptr) return;
  owner.SinkWindow().Send(sink_message::kCloseChild, frame);
}

// A program was downloaded.

bool CoverageWindows::HasUnsavedData(const StatisticsPane& window) const {
  const auto& instances = window.Record().instances;
  if (window.Record().kind == WindowKind::kFile) {
    return std::any_of(instances.begin(), instances.end(),
                       [](const auto& each) { return each.second->saved == 0; });
  }
  return std::any_of(instances.begin(), instances.end(), [](const auto& each) {
    const CoverageInstance& instance = *each.second;
    return instance.enableStatus != 0 && instance.modified != 0 && instance.percentage != 0;
  });
}

std::string CoverageWindows::SaveQuestion(const StatisticsPane& window) const {
  const CoverageWindow& record = window.Record();
  if (record.kind == WindowKind::kFile) {
    return platform::Format(Text(strings::kRangeFromFile).c_str(),
                            platform::FilePart(record.sourceFile).c_str());
  }
  const std::uint32_t start =
      record.instances.empty() ? record.start : record.instances.begin()->second->start;
  const std::uint32_t end = record.instances.empty() ? record.end : record.instances.begin()->second->end;
  return platform::Format(Text(strings::kAddressRange).c_str(), AddressTextOf(start).c_str(),
                          AddressTextOf(end).c_str());
}

void CoverageWindows::PromptSaveWindows() {
  if (!ComponentActive(host) || !options.Asks(MessageOption::kSaveAtSessionSaving)) return;
  bool all = false;
  const std::vector<StatisticsPane*> asked = windows;
  for (StatisticsPane* window : asked) {
    // While a question is open the IDE may close windows.
    if (!IsOpen(window) || !HasUnsavedData(*window)) continue;
    if (!all) {
      using Choice = SavePromptDialog::Choice;
      const Choice choice = SavePromptDialog(host, SaveQuestion(*window), true).Ask(&owner.SinkWindow());
      if (choice == Choice::kNoToAll) return;
      if (choice == Choice::kNo || !IsOpen(window)) continue;
      all = choice == Choice::kYesToAll;
    }
    SaveRangeWindows(*window, true);
  }
}

void CoverageWindows::AfterProgramReload(bool forceZero) {
  bool fileWindows = false;
  for (StatisticsPane* window : windows) {
    const bool isFile = window->Record().kind == WindowKind::kFile;
    fileWindows = fileWindows || isFile;
    for (const auto& [number, instance] : window->Record().instances) {
      instance->modified = 0;
      instance->counts->Clear();
      instance->ComputePercentage(forceZero, instructions);
    }
    if (DataPane* const displayed = window->DisplayedPane()) displayed->RegisterRange(isFile);
  }
  if (fileWindows) RebuildFileWindows();
  marks.DropLineMarks();
  RefreshPanes();
  RedrawPanes();
}

void CoverageWindows::RebuildFileWindows() {
  reopenPending = !ComponentActive(host) || !SymbolsThere(host);
  if (reopenPending) return;
  const std::vector<StatisticsPane*> open = windows;
  for (StatisticsPane* window : open) {
    if (!IsOpen(window) || window->Record().kind != WindowKind::kFile) continue;
    if (CloseWindow(*window)) FillAgain(*window);
  }
}

void CoverageWindows::RebuildPendingFileWindows() {
  if (!reopenPending) return;
  RebuildFileWindows();
  RefreshPanes();
  RedrawPanes();
}

void CoverageWindows::FillAgain(StatisticsPane& window) {
  const FileFunctions listing = List(window.Record().sourceFile);
  if (listing.outcome != FileFunctions::Outcome::kListed || listing.functions.empty()) return;
  // The pane with the window stays, whatever number it has by now.
  DataPane* const kept = window.ViewPane() != nullptr ? window.ViewPane() : window.Pane(1);
  if (kept == nullptr) return;
  const auto panes = window.Panes();
  window.RemoveAllPanes();
  for (const auto& [number, pane] : panes) {
    if (pane != kept) DeletePane(*pane);
  }
  // The coverage switch is set once, when all functions are there.
  const Raised raised(loading);
  std::vector<std::string> names;
  for (const SourceFunction& function : listing.functions) {
    const bool first = names.empty();
    names.push_back(function.name);
    DataPane& pane = first ? *kept : NewPane(function.start, function.end, function.name, 0);
    if (first) {
      pane.Reuse(function.start, function.end, function.name, 1);
      pane.SetEnabled(pane.Instance().rangeSet);
      if (pane.Instance().rangeSet != 0) NoteRecentRange(function.start, function.end);
    } else {
      RegisterPane(pane);
    }
    window.AddPane(pane);
  }
  window.SetFunctionNames(std::move(names));
  window.DisplayRegistered();
  window.ResetList();
  owner.SwitchCoverage();
}

}  // namespace coverage
