#include "dialogs/coverage_dialog.h"

#include <algorithm>

#include "commands/message_reporter.h"
#include "model/coverage_counts.h"
#include "model/file_functions.h"
#include "model/services.h"
#include "platform/menu.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "qal/coverage_services.h"
#include "qal/program_services.h"
#include "util/placeholder_resolver.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr std::uint32_t kHexadecimal = 16;
/// Status of an address field that holds nothing.
constexpr qal::Status kNothingTyped = static_cast<qal::Status>(0x80040902);

/// Takes the command of a label menu, whose numbers mean nothing to the dialog.
class LabelMenuOwner final : public platform::Window {
 protected:
  platform::LResult OnMessage(const platform::Message& message) override {
    return message.id == platform::message::kCommand ? 0 : Window::OnMessage(message);
  }
};

}  // namespace

bool CoverageDialog::Run(platform::Window* owner) {
  const platform::ResourceScope scope(Resources());
  return DoModal(owner) == static_cast<int>(platform::kIdOk);
}

platform::LResult CoverageDialog::OnMessage(const platform::Message& message) {
  if (message.id == platform::message::kCommand) {
    if (message.CommandId() == buttons_.ok) return OnOK(), 0;
    if (message.CommandId() == buttons_.cancel) return OnCancel(), 0;
  }
  return Dialog::OnMessage(message);
}

void CoverageDialog::Complain(std::uint32_t textId, std::uint32_t focusId) {
  platform::ShowMessageBox(coverage::Text(textId), platform::Icon::kInformation);
  if (focusId != 0) FocusItem(focusId);
}

qal::Status CoverageDialog::Evaluate(const std::string& text, std::uint32_t& address) const {
  if (text.empty()) return kNothingTyped;
  auto* service = FindService<qal::IQExpression>(host_, qal::iid::kExpression);
  if (!service) return qal::kFail;
  std::uint64_t value = 0;
  const qal::Status status = service->EvaluateInRadix(platform::Wide(text).get(), kHexadecimal, &value);
  address = static_cast<std::uint32_t>(std::min<std::uint64_t>(value, 0xFFFFFFFF));
  return status;
}

std::optional<std::uint32_t> CoverageDialog::AddressIn(std::uint32_t comboId) {
  std::uint32_t address = 0;
  const qal::Status status = Evaluate(TypedIn(comboId), address);
  if (qal::Succeeded(status)) return address;
  const std::string reason = DebuggerErrorText(host_, status).value_or("");
  platform::ShowMessageBox(reason.empty() ? coverage::Text(strings::kSyntaxError) : reason,
                           platform::Icon::kExclamation);
  FocusItem(comboId);
  return std::nullopt;
}

std::string CoverageDialog::LabelFile(std::uint32_t comboId) const {
  auto* source = FindService<qal::IQSource>(host_, qal::iid::kSource);
  if (!source) return {};
  std::uint32_t address = 0;
  platform::WideOut file;
  std::uint32_t line = 0;
  if (qal::Succeeded(Evaluate(TypedIn(comboId), address)) &&
      qal::Succeeded(source->AddressToLine(address, file.put(), &line))) {
    return file.str();
  }
  auto* start = FindService<qal::IQTraceStart>(host_, qal::iid::kTraceStart);
  if (!start || qal::Failed(start->GetAddress(0, &address)) ||
      qal::Failed(source->AddressToLine(address, file.put(), &line))) {
    return {};
  }
  return file.str();
}

void CoverageDialog::ChooseLabel(std::uint32_t comboId) {
  FileFunctions listing = ListFileFunctions(host_, LabelFile(comboId), true);
  MessageReporter reporter(host_);
  ReportListing(listing, reporter);
  std::vector<SourceFunction>& functions = listing.functions;
  std::sort(functions.begin(), functions.end(),
            [](const SourceFunction& left, const SourceFunction& right) { return left.name < right.name; });
  LabelMenuOwner owner;
  platform::Menu menu;
  for (std::size_t i = 0; i < functions.size(); ++i) {
    menu.Append(static_cast<std::uint32_t>(i + 1), functions[i].name);
  }
  const Window* combo = Child(comboId);
  if (!combo || functions.empty() || !owner.Create(Handle(), 0, "", platform::window_style::kChild)) return;
  const platform::Rect place = combo->ScreenRect();
  const auto chosen = platform::TrackPopupMenu(menu, {place.left, place.bottom}, owner);
  if (chosen && *chosen >= 1 && *chosen <= functions.size()) {
    SetItemText(comboId, functions[*chosen - 1].name);
    FocusItem(comboId);
  }
}

std::string CoverageDialog::TypedIn(std::uint32_t fieldId) const { return platform::Trim(ItemText(fieldId)); }

std::string CoverageDialog::Expand(std::string_view path, bool* allResolved) const {
  return PlaceholderResolver(host_).ExpandPlaceholders(path, {}, allResolved);
}

std::string CoverageDialog::StartDirectory(std::string_view name, std::string_view placeholder) const {
  const std::string directory = platform::DirectoryPart(name);
  return Expand(directory.empty() ? placeholder : std::string_view(directory));
}

}  // namespace coverage
