#include <gtest/gtest.h>

#include "doubles/columns.h"
#include "doubles/command.h"
#include "doubles/coverage_services.h"
#include "doubles/host.h"
#include "doubles/ide_services.h"
#include "doubles/message_boxes.h"
#include "doubles/program_services.h"
#include "doubles/project_services.h"
#include "doubles/target.h"
#include "doubles/window_service.h"

// The doubles that every other test relies on.
namespace {

template <class Service>
Service* Find(qal::IQHost& host, const qal::Guid& id) {
  void* service = nullptr;
  return qal::Succeeded(host.GetService(&id, &service)) ? static_cast<Service*>(service) : nullptr;
}

TEST(Doubles, TheHostGivesWhatIsOfferedUntilItIsWithdrawn) {
  doubles::HostDouble host;
  doubles::StubColumnService columns;
  EXPECT_EQ(Find<qal::IQColumnService>(host, qal::iid::kColumnService), nullptr);
  host.Offer(columns);
  EXPECT_EQ(Find<qal::IQColumnService>(host, qal::iid::kColumnService), &columns);
  host.Withdraw(qal::iid::kColumnService);
  EXPECT_EQ(Find<qal::IQColumnService>(host, qal::iid::kColumnService), nullptr);
}

TEST(Doubles, TheHostKnowsWhoIsRegistered) {
  doubles::CallLog log;
  doubles::HostDouble host(log);
  doubles::StubModule first, second;
  host.Advise(&qal::iid::kCmdClient, &first);
  host.Advise(&qal::iid::kCmdClient, &second);
  host.Unadvise(&qal::iid::kCmdClient, &first);
  EXPECT_EQ(host.Registered(qal::iid::kCmdClient), std::vector<qal::IQUnknown*>{&second});
  EXPECT_EQ(log.Text(), "host.Advise(command)\nhost.Advise(command)\nhost.Unadvise(command)\n");
}

TEST(Doubles, TheLogFailsTheCallItIsToldToFail) {
  doubles::CallLog log;
  doubles::StubPathCoverage path(log);
  doubles::StubTraceStart trace(log);
  std::uint32_t address = 5;
  log.FailCall(2, "path.AddRange");
  EXPECT_EQ(path.AddRange(0x1000, 0x1fff), qal::kOk);
  EXPECT_EQ(trace.GetAddress(0, &address), qal::kOk);
  EXPECT_EQ(path.AddRange(0x2000, 0x2fff), qal::kFail);
  EXPECT_EQ(path.AddRange(0x3000, 0x3fff), qal::kOk);
  log.FailCall(1);
  EXPECT_EQ(trace.GetAddress(0, &address), qal::kFail);
  EXPECT_EQ(log.Take("path"),
            "path.AddRange(0x1000, 0x1fff)\npath.AddRange(0x2000, 0x2fff)\npath.AddRange(0x3000, 0x3fff)\n");
  EXPECT_EQ(log.Text(), "");
}

TEST(Doubles, TheTargetAnswersFromItsTables) {
  doubles::HostDouble host;
  doubles::TargetDouble target;
  target.Instructions(0x1000, {2, 4});
  target.Line(0x1000, "main.c", 3, "int main(void) {");
  target.Function("main.c", "main", 0x1000, 0x1005);
  target.OfferTo(host);

  auto* information = Find<qal::IQTargetInformation>(host, qal::iid::kTargetInformation);
  qal::InstructionRecord record;
  ASSERT_EQ(information->Disassemble(32, nullptr, 0x1002, &record), qal::kOk);
  EXPECT_EQ(record.length, 4u);
  EXPECT_EQ(platform::Narrow(record.addressText), "00001002");
  EXPECT_EQ(platform::Narrow(record.lastText), doubles::TargetDouble::Texts(0x1002, 4).second);
  qal::FreeText(record.addressText);
  qal::FreeText(record.lastText);
  EXPECT_EQ(information->Disassemble(32, nullptr, 0x1004, &record), qal::kFail);

  auto* source = Find<qal::IQSource>(host, qal::iid::kSource);
  platform::WideOut file;
  std::uint32_t line = 0;
  ASSERT_EQ(source->AddressToLine(0x1004, file.put(), &line), qal::kOk);
  EXPECT_EQ(file.str(), "main.c");
  EXPECT_EQ(line, 3u);
  EXPECT_EQ(source->AddressToLine(0xFFE, file.put(), &line), qal::kFail);

  qal::IQUnknown* table = nullptr;
  void* symbols = nullptr;
  const qal::FunctionRecord* records = nullptr;
  std::uint32_t count = 0;
  ASSERT_EQ(source->GetSymbolTable(0, &table), qal::kOk);
  ASSERT_EQ(table->QueryInterface(&qal::iid::kSymbolTable, &symbols), qal::kOk);
  ASSERT_EQ(static_cast<qal::IQSymbolTable*>(symbols)->GetFileFunctions(platform::Wide("MAIN.C").get(),
                                                                        &records, &count),
            qal::kOk);
  ASSERT_EQ(count, 1u);
  EXPECT_EQ(std::u16string(records->name), u"main");
}

TEST(Doubles, ExpressionsAreNumbersOrNames) {
  doubles::StubExpression expression;
  expression.names["main"] = 0x1000;
  struct {
    const char* text;
    std::uint32_t radix;
    std::int64_t value;  // negative: fails
  } const rows[] = {{"10", 16, 16},  {"10", 10, 10}, {"0x1F", 10, 31}, {"main", 16, 0x1000},
                    {"xyz", 16, -1}, {"", 10, -1},   {"1f", 10, -1}};
  for (const auto& row : rows) {
    std::uint64_t value = 0;
    const auto status = expression.EvaluateInRadix(platform::Wide(row.text).get(), row.radix, &value);
    EXPECT_EQ(qal::Failed(status) ? -1 : static_cast<std::int64_t>(value), row.value) << row.text;
  }
}

TEST(Doubles, BoxesAreWrittenDownAndAnswered) {
  doubles::RecordingBoxes boxes;
  boxes.answers = {platform::Answer::kYes};
  EXPECT_EQ(platform::ShowMessageBox("Go on?", platform::Icon::kQuestion, platform::Buttons::kYesNo),
            platform::Answer::kYes);
  EXPECT_EQ(platform::ShowMessageBox("Go on?", platform::Icon::kNone, platform::Buttons::kYesNo),
            platform::Answer::kNo);
  EXPECT_EQ(boxes.Take(), "question yes-no: Go on?\nnone yes-no: Go on?\n");
}

}  // namespace
