#include "dialogs/small_dialogs.h"

#include <array>

#include "model/address_text.h"
#include "model/services.h"
#include "platform/text.h"
#include "qal/program_services.h"
#include "util/resource_ids.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr std::uint32_t kGoToAddress = 8999, kGoToLabel = 9052, kGoToOk = 9024, kGoToCancel = 9025;

constexpr std::uint32_t kConfirmSave = 9059, kConfirmOk = 9017, kConfirmCancel = 9018;

constexpr std::uint32_t kPromptText = 9011, kPromptYes = 9031, kPromptNo = 9032, kPromptNoToAll = 9065,
                        kPromptYesToAll = 9013;

using platform::Route;
namespace message = platform::message;

}  // namespace

GoToAddressDialog::GoToAddressDialog(qal::IQHost* host, std::uint32_t start, std::uint32_t end,
                                     std::string addressText, RecentList& history)
    : CoverageDialog(resource::kDialogGoToAddress, {kGoToOk, kGoToCancel}, host),
      start_(start),
      end_(end),
      addressText_(std::move(addressText)),
      history_(history) {}

std::optional<std::uint32_t> GoToAddressDialog::Ask(platform::Window* owner) {
  return Run(owner) ? address_ : std::nullopt;
}

void GoToAddressDialog::OnInitDialog() {
  auto* combo = Item<platform::ComboBox>(kGoToAddress);
  if (combo) combo->SetItems(history_.texts());
  if (auto* service = FindService<qal::IQExpression>(host(), qal::iid::kExpression)) {
    std::uint64_t value = 0;
    if (qal::Succeeded(service->EvaluateInRadix(platform::Wide(addressText_).get(), 16, &value))) {
      addressText_ = AddressText(host(), static_cast<std::uint32_t>(value)).value_or(addressText_);
    }
  }
  SetItemText(kGoToAddress, addressText_);
  FocusItem(kGoToAddress);
}

void GoToAddressDialog::OnOK() {
  if (!FindService<qal::IQExpression>(host(), qal::iid::kExpression)) return CoverageDialog::OnOK();
  const auto address = AddressIn(kGoToAddress);
  if (!address) return;
  if (*address < start_ || *address > end_) return Complain(strings::kAddressNotInCoverage, kGoToAddress);
  address_ = address;
  history_.Note(TypedIn(kGoToAddress), *address);
  CoverageDialog::OnOK();
}

void GoToAddressDialog::OnLabel() { ChooseLabel(kGoToAddress); }

platform::LResult GoToAddressDialog::OnMessage(const platform::Message& received) {
  static constexpr auto kRoutes = std::to_array<Route<GoToAddressDialog>>({
      {message::kCommand, kGoToLabel, &GoToAddressDialog::OnLabel},
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return CoverageDialog::OnMessage(received);
}

ConfirmationDialog::ConfirmationDialog(qal::IQHost* host)
    : CoverageDialog(resource::kDialogConfirmation, {kConfirmOk, kConfirmCancel}, host) {}

ConfirmationDialog::Choice ConfirmationDialog::Ask(platform::Window* owner) {
  if (!Run(owner)) return Choice::kCancel;
  return save_ ? Choice::kSaveFirst : Choice::kGoOn;
}

void ConfirmationDialog::OnInitDialog() { CheckItem(kConfirmSave, true); }

void ConfirmationDialog::OnOK() {
  save_ = IsItemChecked(kConfirmSave);
  CoverageDialog::OnOK();
}

SavePromptDialog::SavePromptDialog(qal::IQHost* host, std::string question, bool offerAll)
    : CoverageDialog(resource::kDialogSaveCoverageData, {kPromptYes, kPromptNoToAll}, host),
      question_(std::move(question)),
      offerAll_(offerAll) {}

SavePromptDialog::Choice SavePromptDialog::Ask(platform::Window* owner) {
  return Run(owner) ? choice_ : Choice::kNoToAll;
}

void SavePromptDialog::OnInitDialog() {
  SetItemText(kPromptText, question_);
  EnableItem(kPromptYesToAll, offerAll_);
}

void SavePromptDialog::OnOK() {
  choice_ = Choice::kYes;
  CoverageDialog::OnOK();
}

void SavePromptDialog::OnChoice(std::uint32_t buttonId) {
  choice_ = buttonId == kPromptNo ? Choice::kNo : Choice::kYesToAll;
  CoverageDialog::OnOK();
}

platform::LResult SavePromptDialog::OnMessage(const platform::Message& received) {
  static constexpr auto kRoutes = std::to_array<Route<SavePromptDialog>>({
      {message::kCommand, kPromptNo, &SavePromptDialog::OnChoice},
      {message::kCommand, kPromptYesToAll, &SavePromptDialog::OnChoice},
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return CoverageDialog::OnMessage(received);
}

}  // namespace coverage
