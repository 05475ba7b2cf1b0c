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

/// The last one of each table: a slot too many or too few before it shows there.
TEST(Slots, LastNamedOperationsStandWhereTheirNumbersSay) {
  const Row rows[] = {
      OPERATION(IQUnknown, Release, 2),
      OPERATION(IQRegistryClient, Reserved3, 3),
      OPERATION(IQErrorReporter, GetErrorText, 3),
      OPERATION(IQFormatViewClient2, SetSelectedTextColours, 13),
      OPERATION(IQCmdClient2, GetCommandNames, 3),
      OPERATION(IQCommandOutput, EndOutput, 4),
      OPERATION(IQCommandRegistry, RemoveCommand, 12),
      OPERATION(IQCoverageTestClient, EditSelection, 8),
      OPERATION(IQComponentRegistrar, RegisterComponent, 25),
      OPERATION(IQHost, UnregisterProvider, 13),
      OPERATION(IQPathCoverage, SetCollection, 7),
      OPERATION(IQCountCoverage, SetCollection, 7),
      OPERATION(IQTraceStart, GetAddress, 4),
      OPERATION(IQExecutionState, IsHalted, 3),
      OPERATION(IQSource, GetLineText, 8),
      OPERATION(IQSymbolTable, GetFileFunctions, 3),
      OPERATION(IQAddressText, AddressToText, 37),
      OPERATION(IQTargetInformation, GetAlignment, 5),
      OPERATION(IQMemory, ReadMemory, 6),
      OPERATION(IQExpression, EvaluateInRadix, 14),
      OPERATION(IQAddressLimits, GetLimits, 3),
      OPERATION(IQEditor, ShowAddress, 84),
      OPERATION(IQColumns, UpdateColumns, 66),
      OPERATION(IQColumnRefresh, RefreshLines, 3),
      OPERATION(IQColumnRegistry, AttachClient, 6),
      OPERATION(IQSessionState, GetName, 32),
      OPERATION(IQProject, GetSessionText, 42),
      OPERATION(IQWorkspace, IsProjectOpen, 35),
      OPERATION(IQCustomPlaceholders, GetProjectPlaceholders, 186),
      OPERATION(IQSessionData, GetSessionNumber, 8),
      OPERATION(IQModules, GetModule, 9),
      OPERATION(IQModule, IsDownloaded, 6),
      OPERATION(IQSettings, GetText, 10),
      OPERATION(IQMessageOptions, AskOption, 6),
      OPERATION(IQMacroRecorder, RecordLine, 4),
      OPERATION(IQErrorText, GetErrorText, 3),
      OPERATION(IQFrame, SetColumnSetting, 140),
      OPERATION(IQWindowService1, CreateFrame, 51),
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

TEST(Slots, EntriesWithoutANameRefuse) {
  doubles::StubEditor editor;
  doubles::StubWindowService window;
  for (const int slot : {3, 40, 81, 83}) EXPECT_EQ(CallSlot(&editor, slot), qal::kFail) << slot;
  for (const int slot : {3, 4, 7, 15, 57, 58, 80, 81, 82, 86, 88, 89}) {
    EXPECT_EQ(CallSlot(&window, slot), qal::kFail) << slot;
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
