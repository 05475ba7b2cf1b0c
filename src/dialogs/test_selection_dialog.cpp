#include "dialogs/test_selection_dialog.h"

#include <array>
#include <chrono>
#include <optional>

#include "model/instruction_reader.h"
#include "util/resource_ids.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr std::uint32_t kAvailable = 2214, kTested = 2213, kAdd = 2215, kRemove = 2216, kAddress = 2218,
                        kExecution = 2219, kTimes = 2220, kPass = 2221, kOk = 2234, kCancel = 2235;
constexpr std::uint32_t kTimer = 4097;
constexpr std::chrono::milliseconds kTimerPeriod{100};
constexpr int kRangeImage = 0;
constexpr int kSourceImage = 1;

constexpr std::uint32_t kBigYes = 2224, kBigNo = 2226, kBigDoNotAsk = 2228;

/// Which check box stands for which option.
constexpr struct {
  std::uint32_t box;
  std::uint32_t option;
} kOptions[] = {
    {kAddress, kImageAddress}, {kExecution, kImageExecution}, {kTimes, kImageTimes}, {kPass, kImagePass}};

/// "Test Big Range?"
class BigRangeDialog final : public CoverageDialog {
 public:
  explicit BigRangeDialog(qal::IQHost* host)
      : CoverageDialog(resource::kDialogTestBigRange, {kBigYes, kBigNo}, host) {}

  /// The answer to remember; none when the person did not agree.
  std::optional<std::uint32_t> Ask(platform::Window* owner) {
    return Run(owner) ? std::optional(answer_) : std::nullopt;
  }

 protected:
  void OnOK() override {
    answer_ = big_range::kYes | (IsItemChecked(kBigDoNotAsk) ? big_range::kDoNotAsk : 0);
    CoverageDialog::OnOK();
  }

 private:
  std::uint32_t answer_ = 0;
};

bool IsBig(std::string_view token) {
  const std::string_view range = token.substr(kTokenBody);
  const std::size_t dash = range.find('-');
  if (dash == std::string_view::npos || dash == 0 || dash + 2 > range.size()) return false;
  const std::uint32_t start = AddressOfText(range.substr(0, dash - 1));
  const std::uint32_t end = AddressOfText(range.substr(dash + 2));
  return end - start > big_range::kLimit;
}

}  // namespace

TestSelectionDialog::TestSelectionDialog(qal::IQHost* host, ImageSelection& selection,
                                         std::uint32_t& bigRangeAnswer)
    : CoverageDialog(resource::kDialogEditTestCoverage, {kOk, kCancel}, host),
      selection_(selection),
      bigRangeAnswer_(bigRangeAnswer) {}

void TestSelectionDialog::PrepareList(std::uint32_t listId) {
  auto* list = Item<platform::ListView>(listId);
  if (!list) return;
  list->InsertColumn(0, {}, platform::ColumnFormat::kLeft, list->ClientRect().Width());
  list->SetImageBitmap(resource::kBitmapTestItems);
}

void TestSelectionDialog::OnInitDialog() {
  PrepareList(kAvailable);
  PrepareList(kTested);
  Fill();
  for (const auto& each : kOptions) CheckItem(each.box, (selection_.options & each.option) != 0);
  EnableItem(kAddress, false);
  EnableMoves();
  SetTimer(kTimer, kTimerPeriod);
}

void TestSelectionDialog::EnableMoves() {
  const auto hasSelection = [this](std::uint32_t listId) {
    const auto* list = Item<platform::ListView>(listId);
    return list && list->SelectedRow() >= 0;
  };
  EnableItem(kAdd, hasSelection(kAvailable));
  EnableItem(kRemove, hasSelection(kTested));
}

void TestSelectionDialog::Fill() {
  for (const std::uint32_t listId : {kAvailable, kTested}) {
    auto* list = Item<platform::ListView>(listId);
    if (!list) continue;
    list->DeleteAllRows();
    for (const std::string& token : selection_.tokens) {
      const bool available = token.size() > kTokenMark && token[kTokenMark] == '-';
      if (available != (listId == kAvailable)) continue;
      list->InsertRow(list->RowCount(), TokenLabel(token), IsSourceToken(token) ? kSourceImage : kRangeImage);
    }
  }
}

std::string* TestSelectionDialog::MarkedIn(std::uint32_t listId) {
  const auto* list = Item<platform::ListView>(listId);
  int left = list ? list->SelectionMark() : -1;
  if (left < 0) return nullptr;
  const char mark = listId == kAvailable ? '-' : '+';
  for (std::string& token : selection_.tokens) {
    if (token.size() > kTokenMark && token[kTokenMark] == mark && left-- == 0) return &token;
  }
  return nullptr;
}

void TestSelectionDialog::OnAdd() {
  std::string* const token = MarkedIn(kAvailable);
  if (!token) return;
  // The question is a dialog of its own, and this one may have ended when it is answered; the list of tokens
  // neither grows nor shrinks meanwhile.
  (*token)[kTokenMark] = '+';
  if (!AcceptsSize(*token)) (*token)[kTokenMark] = '-';
  Fill();
}

void TestSelectionDialog::OnRemove() {
  if (std::string* const token = MarkedIn(kTested)) (*token)[kTokenMark] = '-';
  Fill();
}

bool TestSelectionDialog::AcceptsSize(const std::string& token) {
  if (!IsRangeToken(token)) return true;
  if ((bigRangeAnswer_ & big_range::kDoNotAsk) == 0) {
    if (!IsBig(token)) return true;
    const auto answer = BigRangeDialog(host()).Ask(this);
    if (!answer) return false;
    bigRangeAnswer_ = *answer;
  }
  return (bigRangeAnswer_ & big_range::kNo) == 0;
}

void TestSelectionDialog::OnOK() {
  selection_.options = 0;
  for (const auto& each : kOptions) {
    if (IsItemChecked(each.box)) selection_.options |= each.option;
  }
  CoverageDialog::OnOK();
}

platform::LResult TestSelectionDialog::OnMessage(const platform::Message& received) {
  static constexpr auto kRoutes = std::to_array<platform::Route<TestSelectionDialog>>({
      {platform::message::kCommand, kAdd, &TestSelectionDialog::OnAdd},
      {platform::message::kCommand, kRemove, &TestSelectionDialog::OnRemove},
      {platform::message::kTimer, kTimer, &TestSelectionDialog::EnableMoves},
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return CoverageDialog::OnMessage(received);
}

bool TestSelectionEditor::Edit(ImageSelection& selection, std::uint32_t& bigRangeAnswer) {
  return TestSelectionDialog(host_, selection, bigRangeAnswer).Run(nullptr);
}

}  // namespace coverage
