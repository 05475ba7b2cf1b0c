#include <cstdlib>
#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "doubles/host.h"
#include "doubles/scratch_disk.h"
#include "doubles/target.h"
#include "harness.h"
#include "macro/coverage_test_client.h"
#include "persist/cov_file.h"
#include "persist/cov_output.h"
#include "persist/section_writer.h"
#include "platform/queue.h"
#include "platform/text.h"
#include "unit/loose_records.h"
#include "unit/view/open_windows.h"
#include "unit/view/view_world.h"
#include "workbench/services/ide_services.h"
#include "workbench/services/session_file.h"

// What it costs to keep coverage: images written, verified and compared as a test framework asks for them,
// against the coverage file of the same rows and plain passes over their texts; sessions of many functions
// against sessions of half as many.

namespace {

using namespace coverage;

constexpr std::uint32_t kStart = 0x08000000;
constexpr std::uint32_t kRows = 1'048'576;
constexpr std::uint32_t kEnd = kStart + 2 * kRows - 1;

/// One window over 2 MiB of 2-byte instructions, every one executed, behind a test client that selected it.
class Range final : public ImageWindows {
 public:
  Range() {
    target_.OfferTo(host);
    target_.Fill(kStart, kEnd);
    instance_ = std::make_shared<LooseInstance>(&host, kStart, kEnd, std::string(), 1);
    instance_->Register(kStart, kEnd);
    window_.instances[1] = instance_;
    std::mt19937 random(5);
    Run([&] { return 1 + (random() >> (6 + random() % 26)); }, [&] { return random() % 4; });
  }
  /// Every instruction counts once more.
  void RunAgain() {
    Run([] { return 1; }, [] { return 0; });
  }
  void Image(std::uint32_t options, platform::WideOut& image) {
    const std::string selection = ImageHead(options) + "(" + RangeToken(kStart, kEnd, true) + ")";
    client.SetSelection(platform::Wide(selection).get());
    client.GetImage(image.put());
  }
  void WriteFile() {
    platform::TextWriter file;
    if (!file.Open("C:\\range.cov")) std::abort();
    CovOutput out(file);
    out.Header({"Debug", "demo", CovType::kRange, {}}, false);
    WriteInstanceSection(out, *instance_, 1, &host, cache_);
    out.Finish();
    if (!file.Close()) std::abort();
  }

  std::vector<const CoverageWindow*> OpenWindows() override { return {&window_}; }
  DisassemblyCache& Instructions() override { return cache_; }

  doubles::HostDouble host;
  CoverageTestClient client{&host, nullptr, this, nullptr};

 private:
  template <class Count, class Outcomes>
  void Run(Count count, Outcomes outcomes) {
    for (std::uint32_t at = kStart; at < kEnd; at += 2) instance_->counts->AddOne(at, count(), outcomes());
  }

  doubles::TargetDouble target_;
  DisassemblyCache cache_;
  CoverageWindow window_;
  std::shared_ptr<LooseInstance> instance_;
};

/// Runs one of the client's comparisons, which must find no difference.
template <class Comparison>
void MustPass(Comparison comparison) {
  platform::WideOut resultName;
  platform::WideOut messages;
  std::uint32_t runStatus = 0;
  if (comparison(resultName.put(), messages.put(), &runStatus) != qal::kOk || runStatus != 0) std::abort();
}

std::size_t Blanks(const std::string& text) {
  std::size_t blanks = 0;
  const char* at = text.data();
  const char* const end = at + text.size();
  while ((at = static_cast<const char*>(std::memchr(at, ' ', static_cast<std::size_t>(end - at)))) !=
         nullptr) {
    ++blanks;
    ++at;
  }
  return blanks;
}

void ImageRows(bench::Suite& suite) {
  static Range range;
  static platform::WideOut before;
  static platform::WideOut now;
  static platform::WideOut again;
  range.Image(kImageDefaults, before);
  range.RunAgain();
  range.Image(15, now);
  range.Image(15, again);
  suite.Measure("image written", kRows, [] {
    platform::WideOut image;
    if (range.client.GetImage(image.put()) != qal::kOk) std::abort();
  });
  suite.Measure("coverage file", kRows, [] { range.WriteFile(); });
  suite.RequireAtMost("image of 2 MiB written, against its coverage file", "image written", "coverage file",
                      2.5);
  suite.Measure("image verified", kRows,
                [] { MustPass([](auto... out) { return range.client.Verify(now.get(), out...); }); });
  static const std::string texts[] = {now.str(), again.str()};
  suite.Measure("floor: hand out the image's text", kRows,
                [] { bench::Keep(platform::Wide(texts[0]).get()); });
  suite.RequireAtMost("image of 2 MiB written, against handing its text out", "image written",
                      "floor: hand out the image's text", 3.4);
  suite.RequireAtMost("image of 2 MiB verified, against handing its text out", "image verified",
                      "floor: hand out the image's text", 3.4);
  suite.Measure("floor: find the blanks of two images", kRows, [] {
    if (Blanks(texts[0]) + Blanks(texts[1]) < 6 * std::size_t{kRows}) std::abort();
  });
  const auto compare = [&suite](const char* what, const platform::WideOut& first, const char* row,
                                double limit) {
    suite.Measure(what, kRows, [&first] {
      MustPass([&](auto... out) { return range.client.Compare(first.get(), again.get(), out...); });
    });
    suite.RequireAtMost(row, what, "floor: find the blanks of two images", limit);
  };
  compare("equal images compared", now, "equal images of 2 MiB compared, against a scan for their blanks", 1);
  compare("images compared that differ in every count", before,
          "images that differ in every count, against a scan for their blanks", 3.1);
}

/// An IDE with files of functions and a view whose windows are kept in session files.
class Sessions {
 public:
  static constexpr std::uint32_t kFiles = 10;

  Sessions() { world_.host.Offer(qal::iid::kSessionData, static_cast<qal::IQSessionData*>(&data_)); }
  /// Sets a session of so many functions up.
  void Prepare(std::uint32_t functions) {
    Begin();
    for (std::uint32_t i = 0; i < functions; ++i) {
      const std::uint32_t start = kStart + 16 * i;
      world_.target.Fill(start, start + 15);
      world_.target.Function(Source(functions, i % kFiles), "f" + std::to_string(i), start, start + 15);
    }
    for (std::uint32_t i = 0; i < kFiles; ++i)
      OpenWindows(*view_).NewFileWindow(Source(functions, i), Source(functions, i));
    Save(functions);
  }
  /// A view without windows, and an IDE that holds no session.
  void Begin() {
    view_.reset();
    view_ = std::make_unique<CJepCoverageCtrl>(&world_.host, &customizer_);
    view_->CreateSinkWindow();
    Forget();
  }
  void Forget() {
    data_.Values() = nlohmann::json::object();
    world_.log.Clear();
  }
  void Save(std::uint32_t functions) {
    static_cast<qal::IQWorkSpaceClient2&>(*view_).OnSessionSaving(nullptr, nullptr, nullptr);
    if (!workbench::WriteSessionFile(File(functions), data_.Values()).empty()) std::abort();
  }
  void Open(std::uint32_t functions) {
    if (!workbench::ReadSessionFile(File(functions), data_.Values()).empty()) std::abort();
    static_cast<qal::IQWorkSpaceClient2&>(*view_).OnSessionOpened(nullptr, nullptr, nullptr, nullptr);
    platform::PumpPosted();
    if (OpenWindows(*view_).Instances().size() != functions) std::abort();
  }

 private:
  static std::string File(std::uint32_t functions) { return "C:\\" + std::to_string(functions) + ".json"; }
  static std::string Source(std::uint32_t functions, std::uint32_t file) {
    return "C:\\space\\demo\\" + std::to_string(functions) + "-" + std::to_string(file) + ".c";
  }

  ViewWorld world_;
  workbench::SessionData data_;
  CUiCustomizer customizer_{&world_.host};
  std::unique_ptr<CJepCoverageCtrl> view_;
};

void SessionRows(bench::Suite& suite) {
  static Sessions sessions;
  for (const std::uint32_t functions : {2500u, 5000u}) {
    sessions.Prepare(functions);
    const std::string number = std::to_string(functions) + " functions";
    // Whole sessions are measured: units of one.
    suite.Measure(
        "session saved, " + number, 1,
        [functions] {
          sessions.Begin();
          sessions.Open(functions);
          sessions.Forget();
        },
        [functions] { sessions.Save(functions); });
    suite.Measure(
        "session opened, " + number, 1, [] { sessions.Begin(); }, [functions] { sessions.Open(functions); });
  }
  suite.RequireAtMost("session of 10 windows saved, 5,000 functions against 2,500",
                      "session saved, 5000 functions", "session saved, 2500 functions", 3);
  suite.RequireAtMost("session of 10 windows opened, 5,000 functions against 2,500",
                      "session opened, 5000 functions", "session opened, 2500 functions", 3);
}

}  // namespace

int main(int argc, char** argv) {
  const doubles::ScratchDisk disk;
  bench::Suite suite("keeping");
  ImageRows(suite);
  SessionRows(suite);
  return suite.Run(argc, argv);
}
