#include "commands/coverage_automation.h"

#include "commands/command_paths.h"
#include "commands/range_operations.h"
#include "model/address_text.h"
#include "persist/command_file.h"
#include "platform/text.h"

namespace coverage {

qal::Status CoverageAutomation::SetRange(std::uint32_t start, std::uint32_t end) {
  if (start == 0xFFFFFFFF && end == 0) return automation::kNothing;
  const AddressLimits limits = LimitsOfTarget(view_.Host());
  if (start < limits.lowest || end > limits.highest) return automation::kOutsideLimits;
  if (end == 0) return automation::kNothing;
  if (const qal::Status wrong = CheckRange(start, end)) return wrong;
  SilentReporter silent;
  const bool wasActive = view_.Model().commandStore().registered() || view_.Model().windowCount() != 0;
  if (!ReplaceRange(view_.Model(), start, end, silent)) return automation::kRangeRefused;
  if (wasActive) view_.BringUpToDate();
  return qal::kOk;
}

qal::Status CoverageAutomation::GetRange(std::uint32_t* start, std::uint32_t* end) {
  if (start == nullptr || end == nullptr) return qal::kFail;
  *start = view_.Model().commandStore().start();
  *end = view_.Model().commandStore().end();
  return qal::kOk;
}

qal::Status CoverageAutomation::Disable() { return SetEnabled(false); }

qal::Status CoverageAutomation::Enable() { return SetEnabled(true); }

qal::Status CoverageAutomation::SetEnabled(bool enabled) {
  view_.Model().SetStoreEnabled(enabled);
  view_.RefreshViews();
  return qal::kOk;
}

qal::Status CoverageAutomation::Clear() {
  view_.Model().ClearStore();
  return qal::kOk;
}

qal::Status CoverageAutomation::IsEnabled(qal::Flag* enabled) {
  if (enabled == nullptr) return qal::kFail;
  *enabled = view_.Model().commandStore().active() == 1 ? qal::kTrue : qal::kFalse;
  return qal::kOk;
}

qal::Status CoverageAutomation::Load(qal::WideText typed) {
  std::string path = ResolveInProject(platform::Narrow(typed), PlaceholderResolver(view_.Host())).path;
  if (HasNoExtension(path)) path += ".COV";
  if (!HasExtension(path, ".COV")) return automation::kWrongExtension;
  SilentReporter silent;
  qal::IQHost* const host = view_.Host();
  const qal::Status status = LoadCommandModel(view_.Model(), path, CurrentProjectNames(host, view_.Keys()),
                                              host, kAutomationLoad, silent);
  if (qal::Succeeded(status)) view_.BringUpToDate();
  return status;
}

qal::Status CoverageAutomation::Save(qal::WideText typed) {
  auto [path, resolved] = ResolveInProject(platform::Narrow(typed), PlaceholderResolver(view_.Host()));
  if (!resolved) return automation::kUnresolvedName;
  if (HasNoExtension(path)) path += ".cov";
  if (!HasExtension(path, ".COV") && !HasExtension(path, ".TXT")) return automation::kWrongExtension;
  if (!DirectoryExists(path)) return automation::kNoDirectory;
  qal::IQHost* const host = view_.Host();
  return SaveCommandModel(view_.Model(), path, CurrentProjectNames(host, view_.Keys()), host);
}

}  // namespace coverage
