#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "platform/queue.h"
#include "platform/text.h"
#include "unit/view/view_world.h"
#include "view/coverage_ctrl.h"

/// Any values as an IDE's session: one "key = number" or "key = text" a line. The views open what they can,
/// and the session that they save then opens as the same windows.
namespace {

using coverage::CJepCoverageCtrl;

struct World : coverage::ViewWorld {
  World() { host.Offer(data); }
  std::unique_ptr<CJepCoverageCtrl> Open() {
    auto view = std::make_unique<CJepCoverageCtrl>(&host, &customizer);
    view->CreateSinkWindow();
    static_cast<qal::IQWorkSpaceClient2&>(*view).OnSessionOpened(nullptr, nullptr, nullptr, nullptr);
    platform::PumpPosted();
    return view;
  }
  doubles::StubSessionData data;
  coverage::CUiCustomizer customizer{&host};
};

/// A count is so many questions to the session, and a machine under test answers some ten thousand a second:
/// larger ones only take the time of the others.
constexpr std::uint32_t kMostCount = 500;

void Fill(doubles::StubSessionData& data, std::string_view lines) {
  while (!lines.empty()) {
    const std::size_t end = lines.find('\n');
    const std::string_view line = lines.substr(0, end);
    lines.remove_prefix(end == std::string_view::npos ? lines.size() : end + 1);
    const std::size_t equals = line.find(" = ");
    if (equals == std::string_view::npos) continue;
    const std::string key(line.substr(0, equals));
    const std::string value(line.substr(equals + 3));
    char* behind = nullptr;
    const auto number = static_cast<std::uint32_t>(std::strtoull(value.c_str(), &behind, 0));
    if (!value.empty() && *behind == '\0') {
      data.numbers[key] = key.ends_with("Addr") ? number : std::min(number, kMostCount);
    } else {
      data.texts[key] = value;
    }
  }
}

std::string Windows(CJepCoverageCtrl& view) {
  std::string picture;
  for (const auto& window : view.Coverage().Windows()) {
    picture += window->isFile() ? "file" : "range";
    for (const auto& [number, instance] : window->instances) {
      picture += platform::Format(" %x-%x %u", instance->start, instance->end, instance->enableStatus);
    }
    picture += '\n';
  }
  return picture;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  World world;
  Fill(world.data, {reinterpret_cast<const char*>(data), size});
  auto view = world.Open();
  static_cast<qal::IQWorkSpaceClient2&>(*view).OnSessionOpened(nullptr, nullptr, nullptr, nullptr);
  platform::PumpPosted();
  view.reset();

  view = world.Open();
  const std::string opened = Windows(*view);
  world.data.texts.clear();
  world.data.numbers.clear();
  static_cast<qal::IQWorkSpaceClient2&>(*view).OnSessionSaving(nullptr, nullptr, nullptr);
  view.reset();
  if (Windows(*world.Open()) != opened) std::abort();
  return 0;
}
