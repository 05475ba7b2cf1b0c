#include <gtest/gtest.h>

#include "tiny_ide.h"

// The component's life inside a debugger session.
namespace stranger {
namespace {

constexpr char kComponent[] = "{A8495747-DE13-11D3-8AF5-00AA0026624A}";
constexpr char kActivitySink[] = "{F34E8D5C-3FC5-4EAF-8BB7-7C0C37D5AAA0}";

void* const kKey = reinterpret_cast<void*>(7);
constexpr std::int16_t kYes = -1;
constexpr std::int16_t kNo = 0;

struct Component : testing::Test {
  Component() { ide.Enter("CreateInstance", kKey); }
  ~Component() override {
    if (Get() != nullptr) Uninitialize(kYes);
    ide.Enter("DestroyInstance", kKey);
  }

  void* Get(const char* id = kComponent) { return ide.QueryInterface2(kKey, id); }
  Result Initialize(void* host, std::int16_t first) { return Call(Get(), 4, host, first); }
  Result Uninitialize(std::int16_t final) { return Call(Get(), 7, final); }

  TinyIde ide;
};

TEST_F(Component, DoesNotStartWithoutAHost) {
  EXPECT_EQ(Initialize(nullptr, kNo), kFailure);
  EXPECT_EQ(Initialize(nullptr, kYes), kFailure);
  EXPECT_EQ(Uninitialize(kYes), kFailure);
  EXPECT_EQ(ide.RegistrationCount(), 0u);
}

TEST_F(Component, ALaterInitializationOnlyListensForActivity) {
  EXPECT_EQ(Initialize(ide.host(), kNo), kOk);
  EXPECT_NE(ide.Registered(kActivitySink), nullptr);
  EXPECT_EQ(ide.RegistrationCount(), 1u);
  EXPECT_EQ(ide.Command("cv"), nullptr);
  EXPECT_EQ(ide.TakeLog(), "");
  EXPECT_EQ(Uninitialize(kYes), kFailure) << "it was never bound";
  EXPECT_EQ(ide.RegistrationCount(), 0u);
}

TEST_F(Component, RegistersWhatItOffersAndTakesItAllBack) {
  EXPECT_EQ(Initialize(ide.host(), kYes), kOk);
  std::string log = ide.TakeLog();
  std::size_t at = 0;
  for (const char* line : {"option Clear Coverage Data -1\n",
                           "option Clear Coverage Data at Closing -1\n",
                           "option Save Coverage at Session Saving -1\n",
                           "option Save Coverage data again after save -1\n",
                           "option Coverage Macro Recording Limitation -1\n",
                           "command coverage '[<function number>] [<state>]' 0\n",
                           "command cv '[<function number>] [<state>]' 1\n",
                           "command coverage_range '[ [<start><end>] | [<filename>] ]' 0\n",
                           "command cvr '[ [<start><end>] | [<filename>] ]' 1\n",
                           "command coverage_display '    ' 0\n",
                           "command cvd '    ' 1\n",
                           "command coverage_save '<filename>' 0\n",
                           "command cvs '<filename>' 1\n",
                           "command coverage_load '<filename>' 0\n",
                           "command cvl '<filename>' 1\n",
                           "menu 201 1 1 0x2017 32770\n",
                           "accelerators 9000 1 0x2017\n",
                           "RegisterColumn QALCoverageColumnKey 'Coverage' 0 2 0 -1 20 6 16 0\n",
                           "SetState all 11 1\n",
                           "ShowColumn 11\n",
                           "RegisterColumn QALCoverageAsmColumnKey 'Coverage - ASM' 1 1 3 -1 20 6 16 12\n",
                           "SetState all 12 1\n",
                           "ShowColumn 12\n"}) {
    const std::size_t found = log.find(line, at);
    EXPECT_NE(found, std::string::npos) << line << "is missing or out of order in\n" << log;
    if (found != std::string::npos) at = found;
  }
  for (const char* id :
       {kActivitySink, "{56836F34-D734-11D4-BE83-00C04F794B59}", "{453547D2-008B-44A3-BDF4-48B86CBCFB44}",
        "{F4B80273-DE68-4433-B25A-774FB15B2676}", "{034370CE-79FB-470B-A6E7-2A0BFEAA4C58}",
        "{7E75765A-6BE4-4EC5-99B1-DB0B95E0E40B}", "{0CEE2458-E2FC-45C4-AD14-9338AC377F2B}"}) {
    EXPECT_NE(ide.Registered(id), nullptr) << id;
  }
  EXPECT_EQ(Uninitialize(kYes), kOk);
  ide.Enter("DestroyInstance", kKey);
  log = ide.TakeLog();
  EXPECT_NE(log.find("no command coverage_load\n"), std::string::npos);
  for (int option = 1; option <= 5; ++option) {
    EXPECT_NE(log.find("no option " + std::to_string(option) + "\n"), std::string::npos) << log;
  }
  EXPECT_NE(log.find("UnregisterColumn 11\nUnregisterColumn 12\n"), std::string::npos) << log;
  EXPECT_EQ(log.find("never registered"), std::string::npos) << log;
  EXPECT_EQ(ide.RegistrationCount(), 0u);
}

TEST_F(Component, StartsAndEndsWithNoServiceAtAll) {
  ide.OfferNothing();
  EXPECT_EQ(Initialize(ide.host(), kYes), kOk);
  EXPECT_EQ(ide.Run("cv"), "ok: Coverage Enabled\n");
  EXPECT_EQ(ide.Run("cvr 0x1000 0x101f"), "failed: Too many parameters\n") << "nothing reads it as addresses";
  EXPECT_EQ(ide.Run("cvr main"), "failed: Invalid coverage file\n");
  EXPECT_EQ(ide.Run("cvd"), "ok: \nCan not display the coverage information.");
  EXPECT_EQ(Uninitialize(kYes), kOk);
}

TEST_F(Component, CanBeInitializedAgainAfterAnEnd) {
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(Initialize(ide.host(), kYes), kOk);
    EXPECT_EQ(Uninitialize(kNo), kOk) << "not the last: everything goes on";
    EXPECT_EQ(ide.Run("cv"), "ok: Coverage Enabled\n");
    EXPECT_EQ(Uninitialize(kYes), kOk);
    EXPECT_EQ(Uninitialize(kYes), kFailure);
  }
}

TEST_F(Component, TellsItsNameAndPictures) {
  const struct {
    const char* id;
    int name, pictures;
    const char* expected;
  } rows[] = {{kComponent, 8, 9, "Coverage"}, {"{417F1D27-B5E8-498F-9CDC-19F84900B111}", 3, 4, "Code"}};
  Initialize(ide.host(), kYes);
  for (const auto& row : rows) {
    Out name;
    EXPECT_EQ(Call(Get(row.id), row.name, name.put()), kOk);
    EXPECT_EQ(name.str(), row.expected);
    OutValue image, mask;
    EXPECT_EQ(Call(Get(row.id), row.pictures, &image, &mask), kOk);
    for (const OutValue* value : {&image, &mask}) {
      EXPECT_EQ(value->tag, 0x2011);
      ASSERT_NE(value->array(), nullptr);
      EXPECT_GT(value->array()->count, 0u);
      EXPECT_EQ(value->array()->count % 256, 0u) << "as many bytes for each of 256 pixels";
      EXPECT_EQ(value->array()->elements[0].tag, 0x11);
    }
  }
  EXPECT_EQ(Call(Get(), 5), kOk);
  EXPECT_EQ(Call(Get(), 6), kOk);
}

TEST_F(Component, EventsAlwaysSucceed) {
  const char* events[] = {"{2289D0FB-1242-11D5-9690-00B0D0167C2F}", "{2289D125-1242-11D5-9690-00B0D0167C2F}",
                          "{6FBF8260-37F3-11D5-A5D8-0000E2257DCD}", "{3B755ACB-430C-461A-8E2D-547D1DC6AD2F}",
                          "{2289D0F9-1242-11D5-9690-00B0D0167C2F}", "{2289D12E-1242-11D5-9690-00B0D0167C2F}",
                          "{2289D130-1242-11D5-9690-00B0D0167C2F}", "{01234567-89AB-CDEF-0123-456789ABCDEF}"};
  for (const bool bound : {false, true}) {
    if (bound) Initialize(ide.host(), kYes);
    for (const char* event : events) {
      const Id id = MakeId(event);
      EXPECT_EQ(Call(Get(), 3, &id), kOk) << event << bound;
    }
  }
  ide.TakeLog();
  const Id unknown = MakeId("{01234567-89AB-CDEF-0123-456789ABCDEF}");
  Call(Get(), 3, &unknown);
  EXPECT_EQ(ide.TakeLog(), "") << "an unknown event changes nothing";
}

TEST_F(Component, TheEndOfAnActivityRefreshesTheColumnsOnce) {
  Initialize(ide.host(), kYes);
  void* sink = ide.Registered(kActivitySink);
  ide.TakeLog();
  EXPECT_EQ(Call(sink, 5), kOk);
  EXPECT_EQ(ide.TakeLog(), "") << "no activity had begun";
  EXPECT_EQ(Call(sink, 3, 1u, 2u), kOk);
  const Id redraw = MakeId("{2289D0FB-1242-11D5-9690-00B0D0167C2F}");
  Call(Get(), 3, &redraw);
  EXPECT_EQ(Call(sink, 4), kOk);
  EXPECT_EQ(ide.TakeLog(), "");
  EXPECT_EQ(Call(sink, 5), kOk);
  EXPECT_EQ(ide.TakeLog(), "UpdateColumns 0\nRefreshLines all 11 1 -1\n");
  EXPECT_EQ(Call(sink, 5), kOk);
  EXPECT_EQ(ide.TakeLog(), "");
}

}  // namespace
}  // namespace stranger
