#include <gtest/gtest.h>

#include "component/coverage_data_ctrl.h"
#include "unit/view/open_windows.h"
#include "unit/view/view_world.h"

namespace coverage {
namespace {

/// The component as the tests load it: from a place that may hold nothing.
class LoadedComponent final : public CJepCoverageDataCtrl {
 public:
  std::optional<std::string> path = CJepCoverageDataCtrl::LibraryPath();

 protected:
  std::optional<std::string> LibraryPath() const override { return path; }
};

class Component : public testing::Test {
 protected:
  void Begin() {
    EXPECT_EQ(component.Initialize(&world.host, qal::kTrue), qal::kOk) << world.boxes.Take();
    world.log.Clear();
  }
  qal::IQColumnClient& Client() { return component; }

  ViewWorld world;
  LoadedComponent component;
};

TEST_F(Component, AnObjectThatWasNotEndedWithdrawsItsRegistrations) {
  {
    LoadedComponent forgotten;
    EXPECT_EQ(forgotten.Initialize(&world.host, qal::kTrue), qal::kOk);
    EXPECT_EQ(forgotten.Uninitialize(qal::kFalse), qal::kOk);
  }
  EXPECT_EQ(world.host.RegistrationCount(), 0u);
  EXPECT_TRUE(world.columns.columns.empty());
}

TEST_F(Component, RefusesToBeginWithoutItsResources) {
  component.path = std::nullopt;
  EXPECT_EQ(component.Initialize(&world.host, qal::kTrue), qal::kFail);
  EXPECT_EQ(
      world.boxes.Take(),
      "stop ok: Cannot obtain module. File name missing.\nPlease read User Guide to create/install a new "
      "version.\nnone ok: Application will now exit.\n");
  component.path = "C:\\nowhere\\JepCoverage.dll";
  EXPECT_EQ(component.Initialize(&world.host, qal::kTrue), qal::kFail);
  EXPECT_EQ(world.boxes.Take(), "none ok: Error loading resource DLL C:\\nowhere\\JepCoverageExtRes.dll\n");
  EXPECT_EQ(world.host.RegistrationCount(), 0u);
  EXPECT_EQ(component.ViewControl(), nullptr);
}

TEST_F(Component, EachMarkHasItsImage) {
  Begin();
  auto* window = OpenWindows(*component.ViewControl()).NewRangeWindow(0x1000, 0x10FF);
  window->Record().instances[1]->counts->AddOne(0x1000, 1, 3);
  window->Record().instances[1]->counts->AddOne(0x1002, 1, 1);
  const platform::Wide main(ViewWorld::kSource);
  const auto masks = [&] {
    std::string text;
    for (const std::uint32_t address : {0x1000u, 0x1002u, 0x1004u, 0x5000u}) {
      std::uint32_t bits = 99;
      const qal::Status status = Client().GetLineImageMask(address, main.get(), 1, &bits);
      text += (qal::Failed(status) ? "failed " : "") + std::to_string(bits) + ' ';
    }
    return text;
  };
  EXPECT_EQ(masks(), "failed 0 failed 0 failed 0 failed 0 ") << "the images are not known yet";
  for (std::int32_t index = 1; index <= 3; ++index) {
    platform::OwnedVariant image, mask;
    std::uint32_t size = 0;
    Client().GetColumnImage(index, 10u + static_cast<std::uint32_t>(index), 1, image.put(), mask.put(),
                            &size);
    EXPECT_EQ(size, platform::BytesOf(image.get())->size());
  }
  EXPECT_EQ(masks(), "8192 2048 failed 0 failed 0 ");
}

TEST_F(Component, EventsReachTheViews) {
  Begin();
  auto* window = OpenWindows(*component.ViewControl()).NewRangeWindow(0x1000, 0x10FF);
  CoverageInstance& instance = *window->Record().instances[1];
  world.Ran(0x1000, {{0x107E, 0x1000}});
  component.OnDebugEvent(&qal::event::kCoverage);
  EXPECT_EQ(instance.counts->Lookup(0x1000)->times, 1u);
  static_cast<qal::IQDebugActivitySink&>(component).OnActivityBegin(1, 2);
  component.OnDebugEvent(&qal::event::kRedraw);
  EXPECT_EQ(instance.percentage, 0u) << "not before the activity ends";
  static_cast<qal::IQDebugActivitySink&>(component).OnActivityEnd();
  EXPECT_EQ(instance.percentage, 50u) << "so that a download now offers to save";
  component.OnDebugEvent(&qal::event::kDownload);
  EXPECT_EQ(instance.counts->Lookup(0x1000)->times, 0u);
  EXPECT_EQ(component.OnDebugEvent(nullptr), qal::kOk);
}

TEST_F(Component, BeginsAgainOnAnotherHost) {
  ViewWorld second;
  LoadedComponent moved;
  world.log.Clear();
  EXPECT_EQ(moved.Initialize(&world.host, qal::kTrue), qal::kOk);
  const std::string first = world.log.Take();
  static_cast<qal::IQDebugActivitySink&>(moved).OnActivityBegin(1, 2);
  EXPECT_EQ(moved.Uninitialize(qal::kTrue), qal::kOk);
  world.log.Clear();
  EXPECT_EQ(moved.Initialize(&second.host, qal::kTrue), qal::kOk);
  EXPECT_EQ(second.log.Take(), first);
  EXPECT_EQ(world.log.Take(), "host.Unadvise(test)\n");
  EXPECT_EQ(world.host.RegistrationCount(), 0u);

  auto* window = OpenWindows(*moved.ViewControl()).NewRangeWindow(0x1000, 0x10FF);
  second.Ran(0x1000, {{0x107E, 0x1000}});
  moved.OnDebugEvent(&qal::event::kCoverage);
  moved.OnDebugEvent(&qal::event::kRedraw);
  EXPECT_EQ(window->Record().instances[1]->percentage, 50u) << "the activity of before is over";
  moved.Uninitialize(qal::kTrue);
  EXPECT_EQ(second.host.RegistrationCount(), 1u) << "the test client stays";
}

TEST_F(Component, TheActivitySinkIsRegisteredOnce) {
  const auto sinks = [](ViewWorld& where) {
    return where.host.Registered(qal::iid::kDebugActivitySink).size();
  };
  ViewWorld second;
  LoadedComponent other;
  for (const qal::Flag first : {qal::kFalse, qal::kFalse, qal::kTrue}) {
    EXPECT_EQ(other.Initialize(&world.host, first), qal::kOk);
    EXPECT_EQ(sinks(world), 1u);
  }
  {
    LoadedComponent moved;
    EXPECT_EQ(moved.Initialize(&world.host, qal::kFalse), qal::kOk);
    EXPECT_EQ(moved.Initialize(&second.host, qal::kFalse), qal::kOk);
    EXPECT_EQ(sinks(world) * 10 + sinks(second), 11u);
  }
  EXPECT_EQ(sinks(second), 0u) << "withdrawn with the object";
}

TEST_F(Component, NothingIsDoneThroughANullPointer) {
  Begin();
  qal::IQRegistryClient& client = component;
  qal::IQComponent2& object = component;
  qal::IQTestImageSource& images = component;
  CJepFormatViewCtrl plain(&world.host, nullptr);
  qal::IQFormatViewClient2& plainFormat = plain;
  qal::IQFormatViewClient2& format = *component.ViewControl();
  qal::IQWorkSpaceClient2& workspace = *component.ViewControl();
  const qal::Guid* const any = &qal::iid::kUnknown;
  const platform::Wide main(ViewWorld::kSource);
  const platform::Wide text(kTextCategory);
  char16_t mark = 0;
  char16_t* name = &mark;
  std::uint32_t number = 99;
  std::int32_t width = 99;
  qal::Variant variant;
  const std::pair<const char*, std::function<qal::Status()>> calls[] = {
      {"QueryInterface", [&] { return client.QueryInterface(any, nullptr); }},
      {"GetName", [&] { return object.GetName(nullptr); }},
      {"GetBitmaps, image", [&] { return object.GetBitmaps(nullptr, &variant); }},
      {"GetBitmaps, mask", [&] { return object.GetBitmaps(&variant, nullptr); }},
      {"test GetName", [&] { return images.GetName(nullptr); }},
      {"test GetBitmaps, image", [&] { return images.GetBitmaps(nullptr, &variant); }},
      {"test GetBitmaps, mask", [&] { return images.GetBitmaps(&variant, nullptr); }},
      {"GetColumnImage, image", [&] { return Client().GetColumnImage(1, 7, 1, nullptr, &variant, &number); }},
      {"GetColumnImage, mask", [&] { return Client().GetColumnImage(1, 7, 1, &variant, nullptr, &number); }},
      {"GetColumnImage, size", [&] { return Client().GetColumnImage(1, 7, 1, &variant, &variant, nullptr); }},
      {"GetLineImageMask", [&] { return Client().GetLineImageMask(3, main.get(), 1, nullptr); }},
      {"GetColumnOptions, first", [&] { return Client().GetColumnOptions(nullptr, &number, 0, 0, 0); }},
      {"GetColumnOptions, second", [&] { return Client().GetColumnOptions(&number, nullptr, 0, 0, 0); }},
      {"GetLineText, text", [&] { return Client().GetLineText(nullptr, &width, main.get(), 0, 3); }},
      {"GetLineText, width", [&] { return Client().GetLineText(&name, nullptr, main.get(), 0, 3); }},
      {"GetColumnTitle", [&] { return Client().GetColumnTitle(&number, nullptr, 0); }},
      {"plain QueryInterface", [&] { return plainFormat.QueryInterface(any, nullptr); }},
      {"plain GetFormatName", [&] { return plainFormat.GetFormatName(nullptr); }},
      {"plain GetFont, face", [&] { return plainFormat.GetFont(nullptr, &number); }},
      {"plain GetFont, size", [&] { return plainFormat.GetFont(&name, nullptr); }},
      {"GetCategories", [&] { return plainFormat.GetCategories(nullptr); }},
      {"GetCurrentColours, text", [&] { return plainFormat.GetCurrentColours(nullptr, &number); }},
      {"GetCurrentColours, back", [&] { return plainFormat.GetCurrentColours(&number, nullptr); }},
      {"GetColours, text", [&] { return plainFormat.GetColours(text.get(), nullptr, &number); }},
      {"GetColours, back", [&] { return plainFormat.GetColours(text.get(), &number, nullptr); }},
      {"view QueryInterface", [&] { return format.QueryInterface(any, nullptr); }},
      {"view GetFormatName", [&] { return format.GetFormatName(nullptr); }},
      {"view GetFont, face", [&] { return format.GetFont(nullptr, &number); }},
      {"view GetFont, size", [&] { return format.GetFont(&name, nullptr); }},
      {"GetSessionValue", [&] { return workspace.GetSessionValue(0, 0, 0, nullptr); }},
  };
  plainFormat.SetColours(text.get(), 1, 2);
  world.log.Clear();
  for (const auto& [what, call] : calls) EXPECT_EQ(call(), qal::kFail) << what;
  EXPECT_EQ(name, &mark);
  EXPECT_EQ(number * 1000 + static_cast<std::uint32_t>(width), 99099u);
  EXPECT_EQ(variant.tag, qal::kVariantEmpty);
  EXPECT_EQ(world.log.Text(), "");
}

TEST_F(Component, ErrorTextsComeFromTheIde) {
  qal::IQErrorReporter& reporter = component;
  platform::WideOut text;
  EXPECT_EQ(reporter.GetErrorText(5, text.put()), qal::kFail);
  Begin();
  EXPECT_EQ(reporter.GetErrorText(5, text.put()), qal::kOk);
  EXPECT_EQ(text.str(), "error 0x00000005");
}

}  // namespace
}  // namespace coverage
