#pragma once

#include <deque>
#include <memory>
#include <string>

#include "doubles/columns.h"
#include "doubles/command.h"
#include "doubles/host.h"
#include "doubles/ide_services.h"
#include "doubles/message_boxes.h"
#include "doubles/project_services.h"
#include "doubles/target.h"
#include "doubles/window_service.h"
#include "platform/window.h"

namespace coverage {

/// A window service whose frames are windows, so that panes can live in them.
class FrameWindows final : public doubles::StubWindowService {
 public:
  using StubWindowService::StubWindowService;
  ~FrameWindows() override {
    for (auto& frame : frames) frame->Destroy();
  }
  qal::WindowHandle NewFrame() override {
    if (refuse) return 0;
    frames.push_back(std::make_unique<platform::Window>());
    frames.back()->Create(0, 0, "frame", platform::window_style::kVisible, {0, 0, 600, 300});
    return frames.back()->Handle();
  }
  bool refuse = false;
  std::deque<std::unique_ptr<platform::Window>> frames;
};

/// An IDE with every service that views ask for, over a target with instructions of 2 bytes from 0x1000 to
/// 0x2fff and the functions "main" and "step" of C:\space\demo\main.c.
class ViewWorld {
 public:
  static constexpr const char* kSource = "C:\\space\\demo\\main.c";

  ViewWorld() {
    target.OfferTo(host);
    target.Fill(0x1000, 0x2FFF);
    target.Function(kSource, "main", 0x1000, 0x100F);
    target.Function(kSource, "step", 0x1010, 0x101F);
    target.Line(0x1000, kSource, 3, "int main(void) {");
    target.Line(0x1002, kSource, 4, "  step();");
    target.Line(0x1010, kSource, 9, "void step(void) {");
    target.Line(0x5000, kSource, 20, "elsewhere");
    host.OfferAll(settings, options, recorder, errors, frame, session, project, workspace, registry, columns);
    window.OfferTo(host);
    for (std::uint32_t option = 1; option <= 5; ++option) options.state[option] = false;
  }

  /// The target ran `pairs` from `from` on.
  void Ran(std::uint32_t from, std::vector<qal::PathPair> pairs) {
    target.traceStart.address = from;
    target.path.pairs = std::move(pairs);
  }

  doubles::CallLog log;
  doubles::HostDouble host{log};
  doubles::TargetDouble target{log};
  doubles::StubSettings settings{log};
  doubles::StubMessageOptions options{log};
  doubles::StubMacroRecorder recorder{log};
  doubles::StubErrorText errors{log};
  doubles::StubFrame frame{log};
  doubles::StubSessionState session{log};
  doubles::StubProject project{log};
  doubles::StubWorkspace workspace{log};
  doubles::StubCommandRegistry registry{log};
  doubles::StubColumnService columns{log};
  FrameWindows window{log};
  doubles::RecordingBoxes boxes;
};

}  // namespace coverage
