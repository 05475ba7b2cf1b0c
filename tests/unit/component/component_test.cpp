#include <gtest/gtest.h>

#include <fstream>

#include "component/coverage_data_ctrl.h"
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
  std::string Columns() { return world.log.Take("columns"); }
  static platform::Wide Name(const char* text) { return platform::Wide(text); }

  ViewWorld world;
  LoadedComponent component;
};

TEST_F(Component, OneTableAnswersWhicheverInterfaceIsAsked) {
  qal::IQRegistryClient& primary = component;
  qal::IQColumnClient& columns = component;
  struct Row {
    qal::Guid id;
    void* answer;
  };
  const Row rows[] = {
      {qal::iid::kUnknown, static_cast<qal::IQRegistryClient*>(&component)},
      {qal::iid::kRegistryClient, static_cast<qal::IQRegistryClient*>(&component)},
      {qal::iid::kErrorText, static_cast<qal::IQRegistryClient*>(&component)},
      {qal::iid::kComponent2, static_cast<qal::IQComponent2*>(&component)},
      {qal::kClassId, static_cast<qal::IQComponent2*>(&component)},
      {qal::iid::kColumnClient, static_cast<qal::IQColumnClient*>(&component)},
      {qal::iid::kTestImageSource, static_cast<qal::IQTestImageSource*>(&component)},
      {qal::iid::kDebugActivitySink, nullptr},
      {qal::iid::kFormatViewClient2, nullptr},
  };
  for (const Row& row : rows) {
    void* out = this;
    const qal::Status expected = row.answer == nullptr ? qal::kNoInterface : qal::kOk;
    EXPECT_EQ(primary.QueryInterface(&row.id, &out), expected);
    EXPECT_EQ(out, row.answer);
    out = this;
    EXPECT_EQ(columns.QueryInterface(&row.id, &out), expected);
    EXPECT_EQ(out, row.answer);
  }
  EXPECT_EQ(primary.AddRef(), 1u);
  EXPECT_EQ(primary.Release(), 0u);
  EXPECT_EQ(primary.Reserved3(nullptr), qal::kOk);
}

TEST_F(Component, NamesAndPicturesAreTheComponentsAndTheTests) {
  qal::IQComponent2& own = component;
  qal::IQTestImageSource& test = component;
  platform::WideOut name;
  EXPECT_EQ(own.GetName(name.put()), qal::kOk);
  EXPECT_EQ(name.str(), "Coverage");
  EXPECT_EQ(test.GetName(name.put()), qal::kOk);
  EXPECT_EQ(name.str(), "Code");
  platform::OwnedVariant image;
  platform::OwnedVariant mask;
  EXPECT_EQ(own.GetBitmaps(image.put(), mask.put()), qal::kOk);
  EXPECT_EQ(platform::BytesOf(image.get())->size(), 1024u);
  EXPECT_EQ(platform::BytesOf(image.get()), platform::BytesOf(mask.get()));
  const auto ownBytes = platform::BytesOf(image.get());
  EXPECT_EQ(test.GetBitmaps(image.put(), mask.put()), qal::kOk);
  EXPECT_NE(platform::BytesOf(image.get()), ownBytes);
}

TEST_F(Component, WithoutFirstOnlyTheSinkIsRegistered) {
  EXPECT_EQ(component.Initialize(&world.host, qal::kFalse), qal::kOk);
  EXPECT_EQ(world.log.Take(), "host.Advise(activity)\n");
  EXPECT_EQ(component.ViewControl(), nullptr);
  EXPECT_EQ(component.OnDebugEvent(&qal::event::kDownload), qal::kOk);
  EXPECT_EQ(component.Uninitialize(qal::kTrue), qal::kFail);
  EXPECT_EQ(world.log.Take(), "host.Unadvise(activity)\n");
}

TEST_F(Component, BeginsAndEndsWithoutATrace) {
  EXPECT_EQ(component.Initialize(nullptr, qal::kFalse), qal::kFail);
  EXPECT_EQ(component.Initialize(nullptr, qal::kTrue), qal::kFail);
  Begin();
  ASSERT_NE(component.ViewControl(), nullptr);
  EXPECT_NE(ResourceModule(), 0u);
  EXPECT_EQ(world.columns.columns.size(), 2u);
  EXPECT_EQ(component.Uninitialize(qal::kFalse), qal::kOk);
  EXPECT_NE(component.ViewControl(), nullptr);
  EXPECT_EQ(component.Uninitialize(qal::kTrue), qal::kOk);
  EXPECT_EQ(component.ViewControl(), nullptr);
  EXPECT_EQ(ResourceModule(), 0u);
  EXPECT_TRUE(world.columns.columns.empty());
  EXPECT_EQ(component.Uninitialize(qal::kTrue), qal::kFail);
  // Only the test client stays until the object goes.
  EXPECT_EQ(world.host.RegistrationCount(), world.host.Registered(qal::iid::kCoverageTestClient).size());
  Begin();
  EXPECT_NE(component.ViewControl(), nullptr);
  EXPECT_EQ(world.host.Registered(qal::iid::kCoverageTestClient).size(), 1u);
}

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

TEST_F(Component, RegistersItsColumns) {
  world.frame.states[2] = 5;
  EXPECT_EQ(component.Initialize(&world.host, qal::kTrue), qal::kOk);
  EXPECT_EQ(
      Columns(),
      "columns.FindColumn(\"QALCoverageColumnKey\")\n"
      "columns.RegisterColumn(\"QALCoverageColumnKey\", 0, 2, \"Coverage\", 0, -1, 20, 6, 16, 0, column)\n"
      "columns.SetState(null, 1, 1)\ncolumns.ShowColumn(1)\n"
      "columns.FindColumn(\"QALCoverageAsmColumnKey\")\n"
      "columns.RegisterColumn(\"QALCoverageAsmColumnKey\", 1, 1, \"Coverage - ASM\", 3, -1, 20, 6, 16, 12, "
      "column)\n"
      "columns.SetState(null, 2, 5)\ncolumns.ShowColumn(2)\n");
  component.Uninitialize(qal::kTrue);
  world.columns.columns["QALCoverageColumnKey"] = 40;
  world.host.Withdraw(qal::iid::kFrame);
  Columns();
  EXPECT_EQ(component.Initialize(&world.host, qal::kTrue), qal::kOk);
  const std::string calls = Columns();
  EXPECT_EQ(
      calls.substr(0, calls.find("columns.FindColumn(\"QALCoverageAsm")),
      "columns.FindColumn(\"QALCoverageColumnKey\")\ncolumns.AttachClient(40)\ncolumns.ShowColumn(40)\n");
  EXPECT_EQ(world.columns.client, static_cast<qal::IQColumnClient*>(&component));
}

TEST_F(Component, EditorsAreServedByColumn) {
  Begin();
  struct Row {
    const char* what;
    std::function<qal::Status(qal::IQColumnClient&)> call;
    qal::Status status;
    const char* columns;
  };
  const platform::Wide main("C:\\A\\Main.c");
  const Row rows[] = {
      {"open source", [&](auto& c) { return c.FileOpened(main.get(), 0); }, 0,
       "columns.AddFile(\"c:\\a\\main.c\", 1, 1, 1)\n"},
      {"open disassembly", [&](auto& c) { return c.FileOpened(main.get(), 1); }, 0,
       "columns.AddFile(\"C:\\A\\Main.c\", 2, 1, 1)\n"},
      {"open neither", [&](auto& c) { return c.FileOpened(main.get(), 2); }, 0, ""},
      {"changed", [&](auto& c) { return c.FileChanged(main.get(), 1, 0, 0); }, 0,
       "columns.RefreshLines(\"c:\\a\\main.c\", 2, 1, -1)\n"},
      {"inserted", [&](auto& c) { return c.LinesInserted(main.get(), 0, 10, 3); }, 0,
       "columns.RefreshLines(\"c:\\a\\main.c\", 1, 10, -1)\n"},
      {"deleted", [&](auto& c) { return c.LinesDeleted(main.get(), 1, 4, 0xFFFFFFFF); }, 0,
       "columns.RefreshLines(\"c:\\a\\main.c\", 2, 4, -1)\n"},
      {"file state", [&](auto& c) { return c.SetFileColumnState(main.get(), 0, 4); }, 0,
       "columns.SetState(\"C:\\A\\Main.c\", 1, 4)\n"},
      {"state", [&](auto& c) { return c.SetColumnState(0, 0); }, 0,
       "columns.SetState(null, 1, 0)\ncolumns.RefreshFile(\"c:\\a\\main.c\", 1, 1, -1)\n"},
      {"state of neither", [&](auto& c) { return c.SetColumnState(7, 0); }, 0, ""},
      {"file mode", [&](auto& c) { return c.SetFileColumnMode(main.get(), 1, 4); }, 0,
       "columns.SetMode(\"C:\\A\\Main.c\", 2, 4)\n"},
      {"mode", [&](auto& c) { return c.SetColumnMode(1, 9); }, 0, "columns.SetMode(null, 2, 9)\n"},
      {"open again", [&](auto& c) { return c.FileOpened(main.get(), 0); }, 0,
       "columns.AddFile(\"c:\\a\\main.c\", 1, 1, 0)\n"},
      {"close disassembly", [&](auto& c) { return c.FileClosed(main.get(), 1); }, 0, ""},
      {"close source", [&](auto& c) { return c.FileClosed(main.get(), 0); }, 0,
       "columns.RemoveFile(\"c:\\a\\main.c\", 1)\n"},
      {"state of no file", [&](auto& c) { return c.SetColumnState(0, 2); }, 0,
       "columns.SetState(null, 1, 2)\n"},
      {"slot 8", [&](auto& c) { return c.Reserved8(0, 0, 0, 0, 0, 0, 0); }, qal::kFail, ""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.call(Client()), row.status) << row.what;
    EXPECT_EQ(Columns(), row.columns) << row.what;
  }
  EXPECT_EQ(world.frame.states[1], 2u);
  world.session.current = false;
  for (const Row& row : rows) {
    EXPECT_EQ(row.call(Client()), qal::kFail) << row.what;
    EXPECT_EQ(Columns(), "") << row.what;
  }
}

TEST_F(Component, MarksReachTheEditors) {
  Begin();
  auto* window = component.ViewControl()->Windows().NewRangeWindow(0x1000, 0x10FF);
  window->Record().instances[1]->counts->AddOne(0x1000, 1, 3);
  window->Record().instances[1]->counts->AddOne(0x1002, 1, 1);
  const platform::Wide main(ViewWorld::kSource);
  const platform::Wide code("code");
  const auto text = [&](std::uint32_t column, const platform::Wide& file, std::uint32_t line) {
    platform::WideOut shown;
    std::int32_t width = 99;
    const qal::Status status = Client().GetLineText(shown.put(), &width, file.get(), column, line);
    return platform::Format("%d %d %s", status, width, shown.str().c_str());
  };
  EXPECT_EQ(text(0, main, 3), "0 6 T/F");
  EXPECT_EQ(text(0, main, 4), "0 6 T");
  EXPECT_EQ(text(0, main, 9), "0 6 -");
  EXPECT_EQ(text(0, main, 20), "1 -1 ");
  EXPECT_EQ(text(1, code, 0x1002), "0 6 T");
  EXPECT_EQ(text(2, code, 0x1002), "1 0 ");

  const auto mask = [&](std::uint32_t column, std::uint32_t line) {
    std::uint32_t bits = 99;
    const qal::Status status = Client().GetLineImageMask(line, code.get(), column, &bits);
    return platform::Format("%s %u", qal::Failed(status) ? "failed" : "ok", bits);
  };
  EXPECT_EQ(mask(1, 0x1002), "failed 0");  // the images are not known yet
  for (std::int32_t index = 1; index <= 3; ++index) {
    platform::OwnedVariant image;
    platform::OwnedVariant imageMask;
    std::uint32_t size = 0;
    EXPECT_EQ(Client().GetColumnImage(index, 10u + static_cast<std::uint32_t>(index), 1, image.put(),
                                      imageMask.put(), &size),
              qal::kOk);
    EXPECT_EQ(size, platform::BytesOf(image.get())->size());
    EXPECT_GT(size, 0u);
  }
  EXPECT_EQ(mask(1, 0x1002), platform::Format("ok %u", 1u << 11));
  EXPECT_EQ(mask(1, 0x1000), platform::Format("ok %u", 1u << 13));
  EXPECT_EQ(mask(1, 0x1004), "failed 0");
  EXPECT_EQ(mask(1, 0x5000), "failed 0");
  EXPECT_EQ(mask(0, 0x1002), "failed 99");

  platform::OwnedVariant image;
  platform::OwnedVariant imageMask;
  std::uint32_t size = 5;
  EXPECT_EQ(Client().GetColumnImage(1, 1, 0, image.put(), imageMask.put(), &size), qal::kFail);
  EXPECT_EQ(size, 5u);
  EXPECT_EQ(Client().GetColumnImage(0, 1, 1, image.put(), imageMask.put(), &size), qal::kOk);
  EXPECT_EQ(size, 0u);
  EXPECT_EQ(Client().GetColumnImage(4, 1, 1, image.put(), imageMask.put(), &size), qal::kFail);
  EXPECT_EQ(size, 0u);

  const std::uint32_t handles[] = {1, 2, 3};
  const char* const titles[] = {"Coverage", "Coverage - ASM", ""};
  for (int i = 0; i < 3; ++i) {
    platform::WideOut title;
    EXPECT_EQ(Client().GetColumnTitle(&handles[i], title.put(), 0), qal::kOk);
    EXPECT_EQ(title.str(), titles[i]);
  }
  std::uint32_t first = 9;
  std::uint32_t second = 9;
  EXPECT_EQ(Client().GetColumnOptions(&first, &second, 0, 0, 0), 1);
  EXPECT_EQ(first, 0u);
  EXPECT_EQ(second, 4u);
}

TEST_F(Component, LinesThatMoveTakeTheirMarksAlong) {
  Begin();
  component.ViewControl()->Windows().NewRangeWindow(0x1000, 0x10FF);
  const platform::Wide main(ViewWorld::kSource);
  platform::WideOut text;
  std::int32_t width = 0;
  EXPECT_EQ(Client().GetLineText(text.put(), &width, main.get(), 0, 9), qal::kOk);
  Client().LinesInserted(main.get(), 0, 9, 3);
  EXPECT_EQ(Client().GetLineText(text.put(), &width, main.get(), 0, 12), qal::kOk);
  EXPECT_EQ(text.str(), "-");
}

TEST_F(Component, EventsReachTheViews) {
  Begin();
  qal::IQDebugActivitySink& sink = component;
  auto* window = component.ViewControl()->Windows().NewRangeWindow(0x1000, 0x10FF);
  CoverageInstance& instance = *window->Record().instances[1];
  world.Ran(0x1000, {{0x107E, 0x1000}});
  EXPECT_EQ(component.OnDebugEvent(&qal::event::kCoverage), qal::kOk);
  EXPECT_EQ(instance.counts->Lookup(0x1000)->times, 1u);

  sink.OnActivityBegin(1, 2);
  component.OnDebugEvent(&qal::event::kRedraw);
  EXPECT_EQ(instance.percentage, 0u);
  world.log.Clear();
  sink.OnActivityEnd();
  sink.OnActivityEnd();
  EXPECT_EQ(Columns(), "columns.UpdateColumns(0)\ncolumns.RefreshLines(null, 1, 1, -1)\n");
  component.OnDebugEvent(&qal::event::kRedraw);
  EXPECT_EQ(instance.percentage, 50u);

  const platform::Wide main(ViewWorld::kSource);
  platform::WideOut text;
  std::int32_t width = 0;
  Client().GetLineText(text.put(), &width, main.get(), 0, 3);
  world.log.Clear();
  component.OnDebugEvent(&qal::event::kReset);
  EXPECT_EQ(Columns(),
            "columns.RefreshLines(\"c:\\space\\demo\\main.c\", 1, 1, -1)\n"
            "columns.UpdateColumns(0)\ncolumns.RefreshLines(null, 1, 1, -1)\n");
  component.OnDebugEvent(&qal::event::kDownload);
  EXPECT_EQ(instance.counts->Lookup(0x1000)->times, 0u);
  for (const qal::Guid& id :
       {qal::event::kIgnored, qal::event::kPaneFirst, qal::event::kPaneSecond, qal::kClassId}) {
    EXPECT_EQ(component.OnDebugEvent(&id), qal::kOk);
  }
  EXPECT_EQ(component.OnDebugEvent(nullptr), qal::kOk);
}

TEST_F(Component, MissingColumnServiceLeavesTheViews) {
  world.host.Withdraw(qal::iid::kColumnService);
  Begin();
  ASSERT_NE(component.ViewControl(), nullptr);
  EXPECT_EQ(Client().FileOpened(Name("a.c").get(), 0), qal::kOk);
  EXPECT_EQ(Client().SetColumnState(1, 1), qal::kOk);
  EXPECT_EQ(component.Uninitialize(qal::kTrue), qal::kOk);
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
