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
  void ShowSource(const std::string& file, std::uint32_t line) override {
    said += file.substr(file.rfind('\\') + 1) + ":" + std::to_string(line) + "\n";
  }
  void ShowAddress(std::uint32_t address) override { said += platform::Format("%08x\n", address); }
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

  std::uint32_t AddressOf(const char* symbol) {
    std::uint32_t value = 0;
    Get<qal::IQExpression>(qal::iid::kExpression)->Evaluate(Wide(symbol).get(), 16, &value);
    return value;
  }

  doubles::ScratchDisk disk_;
  QuietUser user_;
  std::unique_ptr<Ide> ide_;
};

TEST_F(IdeTest, NamesProjectConfigurationAndDirectoriesForItsOwnKeysOnly) {
  auto* workspace = Get<qal::IQWorkspace>(qal::iid::kWorkspace);
  WideOut workspaceKey, projectKey, configurationKey, name, directory, other;
  workspace->GetWorkspaceKey(workspaceKey.put());
  workspace->GetProjectKey(projectKey.put());
  workspace->GetConfigurationKey(configurationKey.put());
  EXPECT_EQ(workspace->GetProjectName(workspaceKey.get(), projectKey.get(), name.put()), qal::kOk);
  EXPECT_EQ(name.str(), "pump");
  EXPECT_EQ(workspace->GetConfigurationDirectory(workspaceKey.get(), projectKey.get(), configurationKey.get(),
                                                 directory.put()),
            qal::kOk);
  EXPECT_EQ(directory.str(), "C:\\demo\\Release");
  EXPECT_EQ(workspace->GetProjectDirectory(workspaceKey.get(), Wide("another").get(), other.put()),
            qal::kFail);
}

TEST_F(IdeTest, GivesTheProjectsPlaceholdersAsTriples) {
  qal::VariantArray* list = nullptr;
  ASSERT_EQ(Get<qal::IQCustomPlaceholders>(qal::iid::kCustomPlaceholders)
                ->GetProjectPlaceholders(Wide("workspace").get(), &list),
            qal::kOk);
  EXPECT_EQ(platform::TextsOf(list), (std::vector<std::string>{"LAB", "Laboratory", "C:\\lab"}));
  qal::FreeVariantArray(list);
}

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
  EXPECT_EQ(user_.said, "warning: settings.json is no JSON object; it is kept with .bad behind its name\n");
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

TEST_F(IdeTest, ListsTheFunctionsOfASourceFile) {
  LoadFirmware();
  qal::IQUnknown* object = nullptr;
  void* table = nullptr;
  ASSERT_EQ(Get<qal::IQSource>(qal::iid::kSource)->GetSymbolTable(0, &object), qal::kOk);
  ASSERT_EQ(object->QueryInterface(&qal::iid::kSymbolTable, &table), qal::kOk);
  const qal::FunctionRecord* records = nullptr;
  std::uint32_t count = 0;
  auto* symbols = static_cast<qal::IQSymbolTable*>(table);
  ASSERT_EQ(symbols->GetFileFunctions(Wide("MAIN.C").get(), &records, &count), qal::kOk);
  bool hasMain = false;
  for (std::uint32_t i = 0; i < count; ++i) {
    hasMain =
        hasMain || (std::u16string(records[i].name) == u"main" && records[i].start == AddressOf("main"));
    EXPECT_LT(records[i].start, records[i].end);
  }
  EXPECT_TRUE(hasMain);
  EXPECT_LT(symbols->GetFileFunctions(Wide("nothing.c").get(), &records, &count), 0);
  EXPECT_EQ(count, 0u);
}

TEST_F(IdeTest, ReadsAndDecodesInstructions) {
  LoadFirmware();
  const std::uint32_t address = AddressOf("main");
  std::uint8_t bytes[32];
  qal::InstructionRecord record;
  WideOut text;
  ASSERT_EQ(Get<qal::IQMemory>(qal::iid::kMemory)->ReadMemory(address, address + 31, 2, bytes), qal::kOk);
  ASSERT_EQ(
      Get<qal::IQTargetInformation>(qal::iid::kTargetInformation)->Disassemble(32, bytes, address, &record),
      qal::kOk);
  EXPECT_EQ(platform::Narrow(qal::WideText{record.addressText}), platform::Format("%08x", address));
  EXPECT_TRUE(record.length == 2 || record.length == 4);
  qal::FreeText(record.addressText);
  qal::FreeText(record.lastText);
  EXPECT_EQ(Get<qal::IQAddressText>(qal::iid::kAddressText)->AddressToText(address, 0, -1, 0, text.put()),
            qal::kOk);
  EXPECT_EQ(text.str(), "main");
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

/// Sum of the instruction counts that a path stands for, 2-byte steps, as a component walks it.
std::uint64_t Steps(std::uint32_t from, const qal::PathPair* pairs, std::uint32_t count) {
  std::uint64_t steps = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (from <= pairs[i].branch) steps += (pairs[i].branch - from) / 2 + 1;
    from = pairs[i].target;
  }
  return steps;
}

TEST_F(IdeTest, ReportsThePathOfEachStopAndOffersOneServiceAtATime) {
  LoadFirmware();
  EXPECT_EQ(Get<qal::IQCountCoverage>(qal::iid::kCountCoverage), nullptr);
  auto* path = Get<qal::IQPathCoverage>(qal::iid::kPathCoverage);
  auto* start = Get<qal::IQTraceStart>(qal::iid::kTraceStart);
  ASSERT_NE(path, nullptr);
  const std::uint32_t entry = ide_->Debugger().Current()->simulator->Where();
  const StopReport stop = ide_->Debugger().Run(50);
  const qal::PathPair* pairs = nullptr;
  std::uint32_t count = 0;
  std::uint32_t from = 0;
  ASSERT_EQ(path->GetPath(&count, &pairs), qal::kOk);
  EXPECT_EQ(start->GetAddress(0, &from), qal::kOk);
  EXPECT_EQ(from, entry);
  ASSERT_GT(count, 0u);
  EXPECT_EQ(pairs[count - 1].target, stop.address);
  EXPECT_GE(Steps(from, pairs, count), 50u);
  ide_->Debugger().Run(1);
  EXPECT_EQ(start->GetAddress(0, &from), qal::kOk);
  EXPECT_EQ(from, stop.address);

  ide_->Debugger().SetOffer(CoverageOffer::kCounts);
  EXPECT_EQ(Get<qal::IQPathCoverage>(qal::iid::kPathCoverage), nullptr);
  auto* counts = Get<qal::IQCountCoverage>(qal::iid::kCountCoverage);
  ide_->Debugger().Run(50);
  const qal::CountPair* records = nullptr;
  const qal::CountPair* flags = nullptr;
  std::uint32_t flagCount = 0;
  ASSERT_EQ(counts->GetCounts(&count, &records, &flagCount, &flags), qal::kOk);
  std::uint64_t executed = 0;
  for (std::uint32_t i = 0; i < count; ++i) executed += records[i].value;
  EXPECT_EQ(executed, 50u);
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

TEST_F(IdeTest, RefusesRangesOnRequestAndSaysWhy) {
  auto* path = Get<qal::IQPathCoverage>(qal::iid::kPathCoverage);
  ide_->Debugger().Refuse(AddressRange{0x2000, 0x2FFF});
  EXPECT_EQ(path->AddRange(0x1000, 0x1FFF), qal::kOk);
  const qal::Status refused = path->AddRange(0x1000, 0x2000);
  WideOut text;
  Get<qal::IQErrorText>(qal::iid::kErrorText)->GetErrorText(refused, text.put());
  EXPECT_EQ(text.str(), "The debugger cannot cover this address range.");
  EXPECT_LT(path->RemoveRange(0x1000, 0x2000), 0);
  EXPECT_EQ(path->RemoveRange(0x1000, 0x1FFF), qal::kOk);
}

TEST_F(IdeTest, TakesServicesAwayAndBringsThemBack) {
  EXPECT_TRUE(ide_->Services().Switch("Editor", false));
  EXPECT_EQ(Get<qal::IQEditor>(qal::iid::kEditor), nullptr);
  EXPECT_EQ(Get<qal::IQEditor>(qal::iid::kDataPaneEditor), nullptr);
  EXPECT_TRUE(ide_->Services().Switch("editor", true));
  EXPECT_NE(Get<qal::IQEditor>(qal::iid::kEditor), nullptr);
  EXPECT_FALSE(ide_->Services().Switch("nothing", false));
}

TEST_F(IdeTest, EndsARunWhenThePersonAsks) {
  LoadFirmware();
  user_.stop = true;
  EXPECT_EQ(ide_->Debugger().Run().reason, StopReason::kRequest);
}

TEST_F(IdeTest, ShowsSourceLinesUnderTheirFullName) {
  LoadFirmware();
  auto* editor = Get<qal::IQEditor>(qal::iid::kEditor);
  char16_t* file = platform::NewWide("main.c");
  EXPECT_EQ(editor->ShowSourceLine(nullptr, 3, &file), qal::kOk);
  EXPECT_TRUE(platform::IsAbsolutePath(platform::Narrow(qal::WideText{file})));
  qal::FreeText(file);
  EXPECT_EQ(user_.said, "main.c:3\n");
}

TEST_F(IdeTest, RefusesSessionNamesThatAreNoNames) {
  for (const char* name : {"", "..", "a/b", "a\\b", "a b"}) {
    EXPECT_THROW(ide_->SaveSession(name), std::invalid_argument) << name;
  }
  EXPECT_EQ(ide_->OpenSession("nothing"), "there is no session nothing");
  EXPECT_EQ(ide_->SaveSession("first"), "");
  EXPECT_EQ(ide_->Sessions(), std::vector<std::string>{"first"});
}

}  // namespace
}  // namespace workbench
