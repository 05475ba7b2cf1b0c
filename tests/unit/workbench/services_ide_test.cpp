#include <gtest/gtest.h>

#include "doubles/scratch_disk.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "qal/all.h"
#include "workbench/services/ide.h"

namespace workbench {
namespace {

using platform::Wide;
using platform::WideOut;

struct QuietUser final : IdeUser {
  void Notice(const std::string& text) override { said += text + "\n"; }
  bool StopAsked() override { return stop; }
  void ShowSource(const std::string&, std::uint32_t) override {}
  void ShowAddress(std::uint32_t) override {}
  std::string said;
  bool stop = false;
};

/// An IDE over an empty project on a disk of its own, asked for services as a component asks.
class IdeTest : public testing::Test {
 protected:
  IdeTest() {
    disk_.Put("demo/project.json",
              R"({"name": "pump", "configuration": "Release",
                  "placeholders": [{"name": "LAB", "description": "Laboratory", "value": "C:\\lab"}]})");
    ide_ = std::make_unique<Ide>(IdePlaces{"C:\\demo", "C:\\state", ""}, user_);
  }

  void LoadFirmware() { ide_->LoadProgram(platform::FromNative(QAL_EXAMPLES_DIR "/firmware/firmware.elf")); }

  template <class Interface>
  Interface* Get(const qal::Guid& identifier) {
    void* found = nullptr;
    ide_->Services().GetService(&identifier, &found);
    return static_cast<Interface*>(found);
  }

  doubles::ScratchDisk disk_;
  QuietUser user_;
  std::unique_ptr<Ide> ide_;
};

TEST_F(IdeTest, KeepsSettingsOverARestart) {
  auto* settings = Get<qal::IQSettings>(qal::iid::kSettings);
  EXPECT_EQ(settings->SetText(Wide("FONT").get(), Wide("Courier").get()), qal::kOk);
  EXPECT_EQ(settings->SetNumber(Wide("SIZE").get(), 0xFFFFFFFFu), qal::kOk);
  EXPECT_EQ(settings->WriteInt(Wide("Pane").get(), Wide("ColWidth0").get(), -7), qal::kOk);
  ide_ = std::make_unique<Ide>(IdePlaces{"C:\\demo", "C:\\state", ""}, user_);
  settings = Get<qal::IQSettings>(qal::iid::kSettings);
  WideOut face;
  std::uint32_t size = 0;
  std::int32_t width = 1;
  std::int32_t missing = 42;
  EXPECT_EQ(settings->GetText(Wide("FONT").get(), face.put()), qal::kOk);
  EXPECT_EQ(settings->GetNumber(Wide("SIZE").get(), &size), qal::kOk);
  EXPECT_EQ(settings->ReadInt(Wide("Pane").get(), Wide("ColWidth0").get(), &width), qal::kOk);
  EXPECT_EQ(settings->ReadInt(Wide("Pane").get(), Wide("ColWidth9").get(), &missing), qal::kOk);
  EXPECT_EQ(face.str(), "Courier");
  EXPECT_EQ(size, 0xFFFFFFFFu);
  EXPECT_EQ(width, -7);
  EXPECT_EQ(missing, 42);
  EXPECT_EQ(settings->GetNumber(Wide("NOTHING").get(), &size), qal::kFail);
}

TEST_F(IdeTest, SetsASettingsFileAsideThatIsNotUnderstood) {
  disk_.Put("state/settings.json", "{ not json");
  ide_ = std::make_unique<Ide>(IdePlaces{"C:\\demo", "C:\\state", ""}, user_);
  EXPECT_EQ(user_.said,
            "warning: settings.json is no JSON: line 1, column 4; it is kept with .bad behind its name\n");
  EXPECT_EQ(disk_.Bytes("state/settings.json.bad"), "{ not json");
}

TEST_F(IdeTest, AnswersWithoutAProgramWithFailuresOnly) {
  qal::IQUnknown* table = nullptr;
  WideOut text;
  std::uint32_t value = 0;
  std::uint8_t bytes[4];
  qal::InstructionRecord record;
  EXPECT_LT(Get<qal::IQSource>(qal::iid::kSource)->GetSymbolTable(0, &table), 0);
  EXPECT_LT(Get<qal::IQSource>(qal::iid::kSource)->LineToAddress(Wide("main.c").get(), 1, &value), 0);
  EXPECT_LT(Get<qal::IQMemory>(qal::iid::kMemory)->ReadMemory(0, 3, 2, bytes), 0);
  EXPECT_LT(Get<qal::IQTargetInformation>(qal::iid::kTargetInformation)->Disassemble(4, bytes, 0, &record),
            0);
  EXPECT_EQ(Get<qal::IQAddressText>(qal::iid::kAddressText)->AddressToText(0x1234, 0, -1, 0, text.put()),
            qal::kOk);
  EXPECT_EQ(text.str(), "00001234");
  EXPECT_EQ(Get<qal::IQModules>(qal::iid::kModules)->GetCount(&value), qal::kOk);
  EXPECT_EQ(value, 0u);
}

TEST_F(IdeTest, ReadsZerosBehindTheEndOfMemoryAndNothingOutside) {
  LoadFirmware();
  const auto held = ide_->Debugger().Current();
  const std::uint32_t last = held->simulator->Memory().back().last;
  std::uint8_t bytes[8] = {9, 9, 9, 9, 9, 9, 9, 9};
  auto* memory = Get<qal::IQMemory>(qal::iid::kMemory);
  EXPECT_EQ(memory->ReadMemory(last - 1, last + 6, 2, bytes), qal::kOk);
  for (int i = 2; i < 8; ++i) EXPECT_EQ(bytes[i], 0) << i;
  EXPECT_LT(memory->ReadMemory(last + 1, last + 8, 2, bytes), 0);
  EXPECT_LT(memory->ReadMemory(8, 4, 2, bytes), 0);
}

TEST_F(IdeTest, RecordsNothingWhileCollectionIsOff) {
  LoadFirmware();
  auto* path = Get<qal::IQPathCoverage>(qal::iid::kPathCoverage);
  path->SetCollection(qal::kCollectionOff);
  ide_->Debugger().Run(50);
  const qal::PathPair* pairs = nullptr;
  std::uint32_t count = 7;
  EXPECT_EQ(path->GetPath(&count, &pairs), qal::kOk);
  EXPECT_EQ(count, 0u);
}

TEST_F(IdeTest, EndsARunWhenThePersonAsks) {
  LoadFirmware();
  user_.stop = true;
  EXPECT_EQ(ide_->Debugger().Run().reason, StopReason::kRequest);
}

/// Keeps one value in the session, and says what it finds there.
struct SessionClient final : qal::IQWorkSpaceClient2 {
  explicit SessionClient(qal::IQSessionData* sessionData) : data(sessionData) {}
  qal::Status QueryInterface(const qal::Guid*, void**) override { return qal::kNoInterface; }
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  qal::Status Notify7(std::uintptr_t) override { return qal::kOk; }
  qal::Status Notify14(std::uintptr_t, std::uintptr_t) override { return qal::kOk; }
  qal::Status Notify25(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t) override {
    return qal::kOk;
  }
  qal::Status Notify29(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return qal::kOk; }
  qal::Status Notify30(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return qal::kOk; }
  qal::Status OnSessionOpened(qal::WideText, qal::WideText, qal::WideText name, qal::WideText) override {
    WideOut text;
    std::uint32_t number = 0;
    data->Open(&qal::kClassId);
    data->GetSessionText(Wide("text").get(), Wide("?").get(), text.put());
    data->GetSessionNumber(Wide("number").get(), 7, &number);
    data->Close();
    said = platform::Narrow(name) + ": " + text.str() + " " + std::to_string(number);
    return qal::kOk;
  }
  qal::Status OnSessionSaving(qal::WideText, qal::WideText, qal::WideText) override {
    data->Open(&qal::kClassId);
    data->SetSessionText(Wide("text").get(), Wide("b\\c").get());
    data->SetSessionNumber(Wide("number").get(), 0xFFFFFFFF);
    return data->Close();
  }
  qal::Status GetSessionValue(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uint32_t*) override {
    return qal::kOk;
  }
  qal::IQSessionData* data;
  std::string said;
};

TEST_F(IdeTest, OpensOnlySessionsThatAreWhole) {
  SessionClient client(Get<qal::IQSessionData>(qal::iid::kSessionData));
  ide_->Services().Advise(&qal::iid::kWorkSpaceClient2, &client);
  EXPECT_EQ(ide_->SaveSession("whole"), "");
  EXPECT_EQ(ide_->OpenSession("whole"), "");
  EXPECT_EQ(client.said, "whole: b\\c 4294967295");
  const std::string whole = disk_.Bytes("state/sessions/whole.json");

  client.said.clear();
  const std::string inComponent = R"({"version": 1, "components": {"{C}": {)";
  const struct {
    std::string text;
    const char* error;
  } rows[] = {
      {whole.substr(0, whole.size() / 2), "is no JSON: it ends too early"},
      {"", "is no JSON: it ends too early"},
      {"{\n \"version\": 1,\n windows\n}", "is no JSON: line 3, column 2"},
      {"[1]", "is no JSON object"},
      {"{\"version\": 1e999}", "holds a number beyond all bounds"},
      {"{}", "is no session: it has no version"},
      {R"({"version": "1", "components": {}})", "is no session: it has no version"},
      {R"({"version": 0, "components": {}})", "is no session: there never was a version 0"},
      {R"({"version": 2, "components": 5})",
       "is no session: it was written by a newer workbench (version 2; this one reads 1)"},
      {R"({"version": 1, "components": []})", "is no session: components is missing or no object"},
      {R"({"version": 1, "components": {"{C}": "text"}})", "is no session: {C} is no object"},
      {inComponent + R"("a": 1.5}}})", "is no session: a is neither a text nor a whole number"},
      {inComponent + R"("a": null}}})", "is no session: a is neither a text nor a whole number"},
      {inComponent + R"("a": -1}}})", "is no session: a is no number from 0 to 4294967295"},
      {inComponent + R"("a": 4294967296}}})", "is no session: a is no number from 0 to 4294967295"},
      {inComponent + "\"a\": \"" + std::string(65'536, 'x') + "\"}}}", "is no session: a is too long a text"},
  };
  for (const auto& row : rows) {
    disk_.Put("state/sessions/bad.json", row.text);
    EXPECT_EQ(ide_->OpenSession("bad"), std::string("bad.json ") + row.error) << row.text.substr(0, 80);
  }
  disk_.Put("state/sessions/directory.json/file", "");
  EXPECT_EQ(ide_->OpenSession("directory"), "directory.json is a directory");
  EXPECT_EQ(client.said, "") << "a client has been told of a session that is not opened";
}

}  // namespace
}  // namespace workbench
