#include <gtest/gtest.h>

#include <thread>

#include "platform/picture.h"
#include "platform/script_presenter.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "workbench/services/columns.h"
#include "workbench/services/output_queue.h"
#include "workbench/services/window_service.h"

namespace workbench {
namespace {

using platform::Wide;

/// Settings in memory only.
struct Settings {
  std::string warning;
  SettingsFile file{"", warning};
};

/// Opens a frame with a view inside it, as a component does.
struct Opened {
  explicit Opened(WindowService& service) {
    char16_t* key = nullptr;
    service.CreateFrame(Wide("{KEY}").get(), Wide("Coverage").get(), 0x1804, 0xE81E, &frame, &key);
    frameKey = platform::Narrow(qal::WideText{key});
    service.CreateFrame(key, Wide("Coverage").get(), 0x400, 0, &view, nullptr);
    qal::FreeText(key);
  }
  qal::WindowHandle frame = 0;
  qal::WindowHandle view = 0;
  std::string frameKey;
};

TEST(WindowService, GivesEachFrameAKeyAndPutsViewsInside) {
  Settings settings;
  WindowService service(settings.file);
  const Opened first(service);
  const Opened second(service);
  EXPECT_NE(first.frameKey, second.frameKey);
  EXPECT_EQ(platform::ParentOf(first.view), first.frame);
  EXPECT_EQ(platform::ParentOf(second.view), second.frame);
  EXPECT_EQ(platform::ParentOf(first.frame), 0u);
}

TEST(WindowService, ReopensAFrameUnderTheKeyThatComesIn) {
  Settings settings;
  WindowService service(settings.file);
  qal::WindowHandle frame = 0;
  char16_t* key = platform::NewWide("{KEY}#7");
  EXPECT_EQ(service.CreateFrame(Wide("{KEY}").get(), nullptr, 0, 0, &frame, &key), qal::kOk);
  EXPECT_EQ(platform::Narrow(qal::WideText{key}), "{KEY}#7");
  qal::FreeText(key);
}

TEST(WindowService, CountsContextMenusPerParentUntilTheyAreWithdrawn) {
  Settings settings;
  WindowService service(settings.file);
  std::uint32_t count = 0;
  service.RegisterContextMenu(10, 11, 0, nullptr, 0, 5, 1, &qal::kClassId);
  service.RegisterContextMenu(10, 12, 0, nullptr, 0, 5, 2, &qal::kClassId);
  EXPECT_EQ(service.UnregisterContextMenu(10, 11, 5, 1), qal::kOk);
  EXPECT_LT(service.UnregisterContextMenu(10, 11, 5, 1), 0);
  EXPECT_EQ(service.GetContextMenuCount(10, &count), qal::kOk);
  EXPECT_EQ(count, 1u);
  EXPECT_EQ(service.RegistrationCount(), 1u);
}

TEST(WindowService, ForgetsEverythingWithItsComponent) {
  Settings settings;
  WindowService service(settings.file);
  const Opened opened(service);
  std::uint32_t out = 0;
  service.RegisterMenu(0, 201, 1, &qal::kClassId, nullptr, &out, &out, nullptr, nullptr, 1);
  service.RegisterWindow(1, &qal::kClassId, opened.view);
  service.Forget();
  EXPECT_EQ(service.RegistrationCount(), 0u);
  EXPECT_FALSE(platform::IsWindow(opened.frame));
  EXPECT_EQ(service.WindowOf(1), nullptr);
}

/// Remembers what an editor asks.
struct SilentColumn : qal::IQColumnClient {
  qal::Status QueryInterface(const qal::Guid*, void**) override { return qal::kNoInterface; }
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  qal::Status FileOpened(qal::WideText, std::uint32_t) override { return 0; }
  qal::Status FileClosed(qal::WideText, std::uint32_t) override { return 0; }
  qal::Status FileChanged(qal::WideText, std::uint32_t, std::uint32_t, std::uint32_t) override { return 0; }
  qal::Status LinesInserted(qal::WideText, std::uint32_t, std::uint32_t, std::uint32_t) override { return 0; }
  qal::Status LinesDeleted(qal::WideText, std::uint32_t, std::uint32_t, std::uint32_t) override { return 0; }
  qal::Status Reserved8(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t,
                        std::uintptr_t, std::uintptr_t) override {
    return qal::kFail;
  }
  qal::Status SetColumnState(std::uint32_t, std::uint32_t) override { return 0; }
  qal::Status SetFileColumnState(qal::WideText, std::uint32_t, std::uint32_t) override { return 0; }
  qal::Status SetColumnMode(std::uint32_t, std::uint32_t) override { return 0; }
  qal::Status SetFileColumnMode(qal::WideText, std::uint32_t, std::uint32_t) override { return 0; }
  qal::Status GetColumnImage(std::int32_t, std::uint32_t, std::uint32_t, qal::Variant*, qal::Variant*,
                             std::uint32_t*) override {
    return qal::kFail;
  }
  qal::Status GetLineImageMask(std::uint32_t, qal::WideText, std::uint32_t, std::uint32_t*) override {
    return qal::kFail;
  }
  qal::Status GetColumnOptions(std::uint32_t*, std::uint32_t*, std::uintptr_t, std::uintptr_t,
                               std::uintptr_t) override {
    return 1;
  }
  qal::Status GetLineText(char16_t**, std::int32_t*, qal::WideText, std::uint32_t, std::uint32_t) override {
    return 1;
  }
  qal::Status GetColumnTitle(const std::uint32_t*, char16_t**, std::uintptr_t) override { return 0; }
};

TEST(Columns, KeepTheHandleOfAKeyOverARegistration) {
  Columns columns;
  SilentColumn client;
  const auto add = [&](const char* key) {
    std::uint32_t handle = 0;
    const qal::Status status =
        columns.RegisterColumn(Wide(key).get(), &client, &handle, 0, 2, Wide("Coverage").get(), 0, -1, 20, 6,
                               16, 0, &qal::id::kColumnRegistration);
    return status == qal::kOk ? handle : 0;
  };
  const std::uint32_t first = add("one");
  const std::uint32_t second = add("two");
  EXPECT_NE(first, 0u);
  EXPECT_NE(second, first);
  EXPECT_EQ(add("one"), 0u) << "registered twice";
  columns.ShowColumn(first);
  EXPECT_EQ(columns.Shown().size(), 1u);
  EXPECT_EQ(columns.UnregisterColumn(first), qal::kOk);
  EXPECT_LT(columns.UnregisterColumn(first), 0);
  std::uint32_t found = 0;
  EXPECT_LT(columns.FindColumn(Wide("one").get(), &found), 0);
  EXPECT_EQ(add("one"), first);
}

TEST(Columns, PassRefreshesOnForKnownColumnsOnly) {
  Columns columns;
  SilentColumn client;
  std::uint32_t handle = 0;
  std::string log;
  columns.SetRefreshed([&](const std::string& file, const Columns::Column& column) {
    log += column.key + " " + (file.empty() ? "all" : file) + "\n";
  });
  columns.RegisterColumn(Wide("one").get(), &client, &handle, 0, 2, nullptr, 0, -1, 20, 6, 16, 0,
                         &qal::id::kColumnRegistration);
  columns.RefreshFile(Wide("a.c").get(), handle, 1, -1);
  columns.RefreshLines(nullptr, handle, 1, -1);
  EXPECT_LT(columns.RefreshLines(nullptr, handle + 1, 1, -1), 0);
  EXPECT_EQ(log, "one a.c\none all\n");
}

TEST(OutputQueue, HoldsAWriterBackUntilLinesAreRead) {
  OutputQueue queue;
  constexpr int kLines = 3 * static_cast<int>(OutputQueue::kPendingLines);
  std::thread writer([&] {
    for (int i = 0; i < kLines; ++i) queue.Write(std::to_string(i));
    queue.End();
  });
  std::string line;
  int next = 0;
  while (queue.Read(line, std::chrono::seconds(60)) == OutputQueue::Result::kLine)
    EXPECT_EQ(line, std::to_string(next++));
  writer.join();
  EXPECT_EQ(next, kLines);
  EXPECT_TRUE(queue.Ended());
}

TEST(OutputQueue, LetsAWriterGoThatNobodyReads) {
  OutputQueue queue;
  std::thread writer([&] {
    for (std::size_t i = 0; i < 2 * OutputQueue::kPendingLines; ++i) queue.Write("line");
  });
  queue.Abandon();
  writer.join();
  std::string line;
  EXPECT_FALSE(queue.TryRead(line));
}

}  // namespace
}  // namespace workbench
