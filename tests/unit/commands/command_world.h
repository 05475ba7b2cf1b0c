#pragma once

#include <memory>
#include <string>
#include <vector>

#include "commands/command_host.h"
#include "commands/coverage_command.h"
#include "commands/message_reporter.h"
#include "doubles/command.h"
#include "doubles/host.h"
#include "doubles/ide_services.h"
#include "doubles/message_boxes.h"
#include "doubles/project_services.h"
#include "doubles/scratch_disk.h"
#include "doubles/target.h"
#include "model/coverage_model.h"

namespace coverage {

/// A debugger that registers no range.
struct RefusesRanges final : doubles::StubPathCoverage {
  qal::Status AddRange(std::uint32_t, std::uint32_t) override { return qal::kFail; }
};

/// Commands over a small program: "main" and "step" of C:\space\demo\main.c in the project's directory.
class CommandWorld : public CommandHost {
 public:
  static constexpr const char* kSource = "C:\\space\\demo\\main.c";

  CommandWorld() {
    target.OfferTo(host);
    host.OfferAll(workspace, project, errors, registry);
    target.Fill(0x1000, 0x1010);
    target.Fill(0x2000, 0x2008);
    target.Function(kSource, "main", 0x1000, 0x1003);
    target.Function(kSource, "step", 0x1004, 0x1007);
    target.expression.names.clear();
    target.addressText.names.clear();
    disk.Put("space/demo/empty.txt", "");
    commands = MakeCoverageCommands(*this);
  }

  qal::IQHost* Host() override { return &host; }
  CommandModel& Model() override { return coverage.Commands(); }
  ProjectKeys& Keys() override { return keys; }
  void RefreshViews() override { calls += "refresh "; }
  void BringUpToDate() override { calls += "update "; }
  Reporter& Messages() override { return reporter; }
  EntryListener* Entries() override { return nullptr; }

  /// Executes a line by its command's short or full name: the result and, behind " !", a failure; then the
  /// lines written and the boxes shown.
  std::string Run(const std::string& line, qal::IQCommandOutput* sink = nullptr) {
    CCoverageCommand* command = Named(line.substr(0, line.find(' ')));
    if (command == nullptr) return "no such command";
    doubles::StubCommandOutput output;
    const doubles::Executed done(*command, line, sink != nullptr ? *sink : output);
    statusWord = done.word;
    std::string picture =
        done.result + (qal::Failed(done.status) ? " !" : "") + (done.wantsMore ? " wants more" : "");
    for (const std::string& more : {output.Text(), boxes.Take()}) {
      if (!more.empty()) picture += "\n" + more.substr(0, more.size() - 1);
    }
    return picture;
  }

  CCoverageCommand* Named(const std::string& name) {
    for (const auto& command : commands) {
      const std::vector<std::string> names = doubles::NamesOf(*command);
      if (names[0] == name || names[1] == name) return command.get();
    }
    return nullptr;
  }

  doubles::ScratchDisk disk;
  doubles::RecordingBoxes boxes;
  doubles::CallLog log;
  doubles::HostDouble host{log};
  doubles::TargetDouble target;
  doubles::StubWorkspace workspace;
  doubles::StubProject project;
  doubles::StubErrorText errors;
  doubles::StubCommandRegistry registry{log};
  RefusesRanges refuses;
  CoverageModel coverage{&host};
  CommandModel& model = coverage.Commands();
  MessageReporter reporter{&host};
  ProjectKeys keys;
  std::string calls;
  std::uint16_t statusWord = 1;
  std::vector<std::unique_ptr<CCoverageCommand>> commands;
};

}  // namespace coverage
