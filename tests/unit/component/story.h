#pragma once

#include <functional>
#include <memory>
#include <string>

#include "component/coverage_data_ctrl.h"
#include "doubles/scratch_disk.h"
#include "doubles/script.h"
#include "panes/pane_commands.h"
#include "platform/queue.h"
#include "unit/view/open_windows.h"
#include "unit/view/view_world.h"

namespace coverage {

/// A person in front of an IDE that has every service: what they do to a component, and what they are told.
class Person {
 public:
  Person() {
    world.host.logLookups = true;
    world.host.OfferAll(data, placeholders);
    disk.Put("space/demo/main.c", "int main(void) {}\n");
  }

  /// From now on the debugger counts instructions and records no paths.
  void OfferCounters() {
    count.counts = {{0x1000, 1}, {0x1010, 2}};
    world.host.Withdraw(qal::iid::kPathCoverage);
    world.host.Offer(count);
  }

  /// While the action runs, the lines act on whatever opens. What is open after the last one is cancelled.
  void Do(const std::string& lines, const std::function<void()>& action) {
    doubles::Script script(lines, &world.boxes);
    script.meanwhile = meanwhile;
    script.Run(action);
    slips += script.shown + script.left;
  }

  bool Begin() { return component->Initialize(&world.host, qal::kTrue) == qal::kOk && View() != nullptr; }
  /// Ends the component, as far as that goes, and lets the object go.
  void End() {
    component->Uninitialize(qal::kTrue);
    component.reset();
    platform::PumpPosted();
  }
  void EndOther() {
    if (other) other->Uninitialize(qal::kTrue);
    other.reset();
  }
  CJepCoverageCtrl* View() { return component ? component->ViewControl() : nullptr; }

  /// The first window of the kind, or null; its first data pane.
  OpenWindows::StatisticsPane* Window(WindowKind kind) {
    if (View() == nullptr) return nullptr;
    for (auto* window : View()->Windows().Panes()) {
      if (window->Record().kind == kind) return window;
    }
    return nullptr;
  }
  OpenWindows::DataPane* Data(WindowKind kind) {
    auto* window = Window(kind);
    return window != nullptr ? window->Pane(1) : nullptr;
  }
  /// A command of the view control or of a pane; nothing without the window.
  void Choose(platform::Window* window, std::uint32_t command, const std::string& lines = {}) {
    if (window != nullptr) Do(lines, [&] { platform::RunCommand(*window, command); });
  }
  void Open(const std::string& lines) { Choose(View(), control_command::kOpenCoverage, lines); }
  void OpenRange() { Open("type 9005 0x1000;type 9006 0x10ff;click 9029"); }
  void OpenFile() {
    Open(std::string("click 9040;click 9042;menu cancel;type 9041 ") + ViewWorld::kSource + ";click 9029");
  }
  void OnList(OpenWindows::StatisticsPane* window, const char* line) {
    if (window == nullptr) return;
    Do("", [&] {
      if (const auto slip = platform::ActOnList(window->List(), line)) slips += *slip + '\n';
    });
  }
  /// A line of the IDE's command line: what it answers.
  std::string Type(const std::string& line) {
    for (auto* command : world.host.Registered<qal::IQCmdClient>(qal::iid::kCmdClient)) {
      if (doubles::NamesOf(*command).back() != line.substr(0, line.find(' '))) continue;
      doubles::StubCommandOutput output;
      const doubles::Executed done(*command, line, output);
      if (done.word == 0xFFFF) output.WaitForEnd();
      return done.result;
    }
    return {};
  }

  ViewWorld world;
  doubles::StubSessionData data{world.log};
  doubles::StubCustomPlaceholders placeholders{world.log};
  doubles::StubCountCoverage count{world.log};
  doubles::ScratchDisk disk;
  std::unique_ptr<CJepCoverageDataCtrl> component = std::make_unique<CJepCoverageDataCtrl>();
  /// Of another session of the debugger; begun by who needs it.
  std::unique_ptr<CJepCoverageDataCtrl> other = std::make_unique<CJepCoverageDataCtrl>();
  std::function<void()> meanwhile;  ///< what the line "meanwhile" does
  std::string slips;                ///< lines that could not be carried out
};

}  // namespace coverage
