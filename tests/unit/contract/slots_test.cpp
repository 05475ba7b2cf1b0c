#include <gtest/gtest.h>

#include <cstring>

#include "doubles/columns.h"
#include "doubles/program_services.h"
#include "doubles/window_service.h"
#include "qal/all.h"

// Where named operations stand in their tables, and what stands between them. Of the tables that the
// component itself answers with, tests/conformance calls the slots; only what it does not call stands here.
namespace {

/// Slot of a virtual function: a pointer to it holds its offset in the table, plus one or beside a one.
template <class Function>
int SlotOf(Function function) {
  std::ptrdiff_t words[2];
  static_assert(sizeof(function) == sizeof(words));
  std::memcpy(words, &function, sizeof(words));
  return static_cast<int>((words[0] & ~std::ptrdiff_t{1}) / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

struct Row {
  const char* operation;
  int slot;
  int expected;
};

#define OPERATION(interface, name, slot) \
  { #interface "::" #name, SlotOf(&qal::interface::name), slot }

TEST(Slots, NamedOperationsStandWhereTheirNumbersSay) {
  const Row rows[] = {
      OPERATION(IQUnknown, QueryInterface, 0),
      OPERATION(IQUnknown, AddRef, 1),
      OPERATION(IQUnknown, Release, 2),
      OPERATION(IQRegistryClient, Reserved3, 3),
      OPERATION(IQErrorReporter, GetErrorText, 3),
      OPERATION(IQFormatViewClient2, GetFormatName, 3),
      OPERATION(IQFormatViewClient2, SetFont, 10),
      OPERATION(IQFormatViewClient2, ChangeFont, 11),
      OPERATION(IQFormatViewClient2, SetSelectedTextColours, 13),
      OPERATION(IQCmdClient2, GetCommandNames, 3),
      OPERATION(IQCommandOutput, WriteLine, 3),
      OPERATION(IQCommandOutput, EndOutput, 4),
      OPERATION(IQCommandRegistry, AddCommand, 11),
      OPERATION(IQCommandRegistry, RemoveCommand, 12),
      OPERATION(IQCoverageTestClient, EditSelection, 8),
      OPERATION(IQComponentRegistrar, RegisterComponent, 25),
      OPERATION(IQHost, QueryInterface, 0),
      OPERATION(IQHost, GetService, 9),
      OPERATION(IQHost, Advise, 10),
      OPERATION(IQHost, RegisterProvider, 11),
      OPERATION(IQHost, Unadvise, 12),
      OPERATION(IQHost, UnregisterProvider, 13),
      OPERATION(IQPathCoverage, GetPath, 3),
      OPERATION(IQPathCoverage, AddRange, 4),
      OPERATION(IQPathCoverage, RemoveRange, 5),
      OPERATION(IQPathCoverage, SetCollection, 7),
      OPERATION(IQCountCoverage, GetCounts, 3),
      OPERATION(IQCountCoverage, AddRange, 4),
      OPERATION(IQCountCoverage, RemoveRange, 5),
      OPERATION(IQCountCoverage, SetCollection, 7),
      OPERATION(IQTraceStart, GetAddress, 4),
      OPERATION(IQExecutionState, IsHalted, 3),
      OPERATION(IQSource, GetSymbolTable, 3),
      OPERATION(IQSource, AddressToLine, 4),
      OPERATION(IQSource, LineToAddress, 5),
      OPERATION(IQSource, GetLineText, 8),
      OPERATION(IQSymbolTable, GetFileFunctions, 3),
      OPERATION(IQAddressText, AddressToText, 37),
      OPERATION(IQTargetInformation, Disassemble, 4),
      OPERATION(IQTargetInformation, GetAlignment, 5),
      OPERATION(IQMemory, ReadMemory, 6),
      OPERATION(IQExpression, Evaluate, 6),
      OPERATION(IQExpression, EvaluateDefault, 13),
      OPERATION(IQExpression, EvaluateInRadix, 14),
      OPERATION(IQAddressLimits, GetLimits, 3),
      OPERATION(IQEditor, ShowSourceLine, 82),
      OPERATION(IQEditor, ShowAddress, 84),
      OPERATION(IQColumns, UnregisterColumn, 4),
      OPERATION(IQColumns, ShowColumn, 5),
      OPERATION(IQColumns, AddFile, 6),
      OPERATION(IQColumns, RemoveFile, 7),
      OPERATION(IQColumns, SetMode, 8),
      OPERATION(IQColumns, SetState, 9),
      OPERATION(IQColumns, RefreshFile, 10),
      OPERATION(IQColumns, UpdateColumns, 66),
      OPERATION(IQColumnRefresh, RefreshLines, 3),
      OPERATION(IQColumnRegistry, RegisterColumn, 4),
      OPERATION(IQColumnRegistry, FindColumn, 5),
      OPERATION(IQColumnRegistry, AttachClient, 6),
      OPERATION(IQSessionState, IsCurrent, 31),
      OPERATION(IQSessionState, GetName, 32),
      OPERATION(IQProject, GetConfigurationKey, 10),
      OPERATION(IQProject, GetProjectKey, 11),
      OPERATION(IQProject, GetWorkspaceKey, 12),
      OPERATION(IQProject, GetConfigurationName, 19),
      OPERATION(IQProject, GetProjectName, 20),
      OPERATION(IQProject, GetContextText, 40),
      OPERATION(IQProject, GetSessionText, 42),
      OPERATION(IQWorkspace, GetInstallationDirectory, 5),
      OPERATION(IQWorkspace, GetTemporaryDirectory, 6),
      OPERATION(IQWorkspace, GetConfigurationKey, 10),
      OPERATION(IQWorkspace, GetProjectKey, 11),
      OPERATION(IQWorkspace, GetWorkspaceKey, 12),
      OPERATION(IQWorkspace, GetConfigurationName, 19),
      OPERATION(IQWorkspace, GetProjectName, 20),
      OPERATION(IQWorkspace, GetWorkspaceName, 21),
      OPERATION(IQWorkspace, GetConfigurationDirectory, 22),
      OPERATION(IQWorkspace, GetProjectDirectory, 23),
      OPERATION(IQWorkspace, GetWorkspaceDirectory, 24),
      OPERATION(IQWorkspace, IsProjectOpen, 35),
      OPERATION(IQCustomPlaceholders, GetApplicationPlaceholders, 43),
      OPERATION(IQCustomPlaceholders, GetProjectPlaceholders, 186),
      OPERATION(IQSessionData, Open, 3),
      OPERATION(IQSessionData, Close, 4),
      OPERATION(IQSessionData, SetSessionText, 5),
      OPERATION(IQSessionData, GetSessionText, 6),
      OPERATION(IQSessionData, SetSessionNumber, 7),
      OPERATION(IQSessionData, GetSessionNumber, 8),
      OPERATION(IQModules, GetCount, 8),
      OPERATION(IQModules, GetModule, 9),
      OPERATION(IQModule, IsDownloaded, 6),
      OPERATION(IQSettings, WriteInt, 3),
      OPERATION(IQSettings, SetNumber, 5),
      OPERATION(IQSettings, SetText, 6),
      OPERATION(IQSettings, ReadInt, 7),
      OPERATION(IQSettings, GetNumber, 9),
      OPERATION(IQSettings, GetText, 10),
      OPERATION(IQMessageOptions, RegisterOption, 3),
      OPERATION(IQMessageOptions, WithdrawOption, 4),
      OPERATION(IQMessageOptions, GetOptionState, 5),
      OPERATION(IQMessageOptions, AskOption, 6),
      OPERATION(IQMacroRecorder, IsRecording, 3),
      OPERATION(IQMacroRecorder, RecordLine, 4),
      OPERATION(IQErrorText, GetErrorText, 3),
      OPERATION(IQFrame, GetColumnSetting, 139),
      OPERATION(IQFrame, SetColumnSetting, 140),
      OPERATION(IQWindowService1, RegisterAccelerators, 5),
      OPERATION(IQWindowService1, UnregisterAccelerators, 6),
      OPERATION(IQWindowService1, RegisterWindowMenu, 12),
      OPERATION(IQWindowService1, UnregisterWindowMenu, 13),
      OPERATION(IQWindowService1, SetFrameTitle, 14),
      OPERATION(IQWindowService1, SetFrameState, 16),
      OPERATION(IQWindowService1, GetFrameState, 17),
      OPERATION(IQWindowService1, UnregisterContextParent, 19),
      OPERATION(IQWindowService1, RegisterContextMenu, 21),
      OPERATION(IQWindowService1, UnregisterContextMenu, 22),
      OPERATION(IQWindowService1, UnregisterToolbar, 28),
      OPERATION(IQWindowService1, RegisterMenu, 29),
      OPERATION(IQWindowService1, UnregisterMenu, 33),
      OPERATION(IQWindowService1, RegisterWindow, 34),
      OPERATION(IQWindowService1, RegisterResourceModule, 35),
      OPERATION(IQWindowService1, UnregisterResourceModule, 36),
      OPERATION(IQWindowService1, UnregisterWindow, 37),
      OPERATION(IQWindowService1, NewKey, 44),
      OPERATION(IQWindowService1, Reserved50, 50),
      OPERATION(IQWindowService1, CreateFrame, 51),
      OPERATION(IQWindowService2, RegisterToolbarButtons, 61),
      OPERATION(IQWindowService2, CustomizeToolbar, 62),
      OPERATION(IQWindowService2, IsToolbarShown, 63),
      OPERATION(IQWindowService2, ShowToolbar, 64),
      OPERATION(IQWindowService2, RegisterToolbar, 69),
      OPERATION(IQWindowService2, QueryFrameToolbar, 79),
      OPERATION(IQWindowService4, GetContextMenuCount, 87),
  };
  for (const auto& row : rows) EXPECT_EQ(row.slot, row.expected) << row.operation;
}

/// The first operation that a version adds stands behind the last slot of the version before.
template <class Interface>
struct Behind : Interface {
  virtual void Next() = 0;
};

TEST(Slots, EachVersionOfTheWindowServiceEndsWhereItsNumberSays) {
  EXPECT_EQ(SlotOf(&Behind<qal::IQWindowService1>::Next), 58);
  EXPECT_EQ(SlotOf(&Behind<qal::IQWindowService2>::Next), 81);
  EXPECT_EQ(SlotOf(&Behind<qal::IQWindowService3>::Next), 83);
  EXPECT_EQ(SlotOf(&Behind<qal::IQWindowService4>::Next), 90);
  EXPECT_EQ(SlotOf(&Behind<qal::IQWorkSpaceClient2>::Next), 50);
}

using AnyOperation = qal::Status (*)(void* self, std::uintptr_t, std::uintptr_t);

/// Calls what stands in a slot of the object's table, as a stranger would.
qal::Status CallSlot(void* object, int slot) {
  void** table;
  std::memcpy(&table, object, sizeof(table));
  return reinterpret_cast<AnyOperation>(table[slot])(object, 1, 2);
}

struct SilentWorkSpaceClient : doubles::Double<qal::IQWorkSpaceClient2> {
  qal::Status Notify7(std::uintptr_t) override { return 107; }
  qal::Status Notify14(std::uintptr_t, std::uintptr_t) override { return 114; }
  qal::Status Notify25(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t) override {
    return 125;
  }
  qal::Status Notify29(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 129; }
  qal::Status Notify30(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 130; }
  qal::Status OnSessionOpened(qal::WideText, qal::WideText, qal::WideText, qal::WideText) override {
    return 144;
  }
  qal::Status OnSessionSaving(qal::WideText, qal::WideText, qal::WideText) override { return 148; }
  qal::Status GetSessionValue(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uint32_t*) override {
    return 149;
  }
};

TEST(Slots, EntriesWithoutANameRefuse) {
  doubles::StubEditor editor;
  doubles::StubWindowService window;
  for (const int slot : {3, 40, 81, 83}) EXPECT_EQ(CallSlot(&editor, slot), qal::kFail) << slot;
  for (const int slot : {3, 4, 7, 15, 57, 58, 80, 81, 82, 86, 88, 89}) {
    EXPECT_EQ(CallSlot(&window, slot), qal::kFail) << slot;
  }
}

TEST(Slots, TheWorkspaceClientAnswersEveryNotification) {
  SilentWorkSpaceClient client;
  for (int slot = 3; slot <= 49; ++slot) {
    const bool named =
        slot == 7 || slot == 14 || slot == 25 || slot == 29 || slot == 30 || slot == 44 || slot >= 48;
    EXPECT_EQ(CallSlot(&client, slot), named ? 100 + slot : qal::kOk) << slot;
  }
}

TEST(Slots, TheColumnServiceBeginsWithItsThreeTables) {
  doubles::CallLog log;
  doubles::StubColumnService stub(log);
  qal::IQColumnService* service = &stub;
  auto* tables = reinterpret_cast<char*>(service);
  EXPECT_EQ(reinterpret_cast<char*>(static_cast<qal::IQColumns*>(service)), tables);
  EXPECT_EQ(reinterpret_cast<char*>(static_cast<qal::IQColumnRefresh*>(service)), tables + sizeof(void*));
  EXPECT_EQ(reinterpret_cast<char*>(static_cast<qal::IQColumnRegistry*>(service)),
            tables + 2 * sizeof(void*));
  CallSlot(tables, 5);
  CallSlot(tables + 2 * sizeof(void*), 6);
  EXPECT_EQ(log.Text(), "columns.ShowColumn(1)\ncolumns.AttachClient(1)\n");
}

}  // namespace
