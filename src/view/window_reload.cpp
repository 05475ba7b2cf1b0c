#include "view/window_reload.h"

#include <algorithm>

#include "dialogs/small_dialogs.h"
#include "model/services.h"
#include "qal/all.h"
#include "view/active_session.h"

namespace coverage {
namespace {

bool SymbolsThere(qal::IQHost* host) {
  auto* const source = FindService<qal::IQSource>(host, qal::iid::kSource);
  qal::IQUnknown* table = nullptr;
  return source != nullptr && qal::Succeeded(source->GetSymbolTable(0, &table)) && table != nullptr;
}

bool HasUnsavedData(const CoverageWindow& window) {
  return std::any_of(window.instances.begin(), window.instances.end(), [&](const auto& each) {
    const CoverageInstance& instance = *each.second;
    if (window.isFile()) return instance.saved == 0;
    return instance.enableStatus != 0 && instance.modified != 0 && instance.percentage != 0;
  });
}

}  // namespace

void WindowReload::PromptSaveWindows() {
  if (!ComponentActive(services_.host) || !services_.options.Asks(MessageOption::kSaveAtSessionSaving))
    return;
  bool all = false;
  const auto asked = services_.model.Windows();
  for (const auto& window : asked) {
    // While a question is open the IDE may close windows.
    if (!window->open || !HasUnsavedData(*window)) continue;
    if (!all) {
      using Choice = SavePromptDialog::Choice;
      const Choice choice =
          SavePromptDialog(services_.host, saver_.SaveQuestion(*window), true).Ask(&services_.sink);
      if (choice == Choice::kNoToAll) return;
      if (choice == Choice::kNo || !window->open) continue;
      all = choice == Choice::kYesToAll;
    }
    saver_.SaveRangeWindows(*window, true);
  }
}

void WindowReload::AfterProgramReload(bool forceZero) {
  const auto windows = services_.model.Windows();
  bool fileWindows = false;
  for (const auto& window : windows) {
    fileWindows = fileWindows || window->isFile();
    for (const auto& [number, instance] : window->instances) {
      instance->modified = 0;
      services_.model.Clear(*instance);
      services_.model.ComputePercentage(*instance, forceZero);
    }
    auto* const statistics = table_.PaneOf(*window);
    auto* const displayed = statistics != nullptr ? statistics->DisplayedPane() : nullptr;
    if (displayed == nullptr) continue;
    displayed->RegisterRange(window->isFile());
    services_.model.DisplayRegistered(*window);
  }
  if (fileWindows) RebuildFileWindows();
  marks_.DropLineMarks();
  services_.model.MarkLists();
  services_.model.MarkRows();
}

void WindowReload::RebuildFileWindows() {
  reopenPending_ = !ComponentActive(services_.host) || !SymbolsThere(services_.host);
  if (reopenPending_) return;
  const auto windows = services_.model.Windows();
  for (const auto& window : windows) {
    if (window->open && window->isFile() && table_.CloseWindow(*window)) opener_.FillAgain(*window);
  }
}

void WindowReload::RebuildPendingFileWindows() {
  if (reopenPending_) RebuildFileWindows();
}

}  // namespace coverage
