#include <array>

#include "commands/arguments.h"
#include "commands/command_paths.h"
#include "commands/coverage_commands.h"
#include "persist/command_file.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/paths.h"
#include "util/texts.h"

namespace coverage {
namespace {

/// The one file name that both commands take: 0, or the text of what is wrong with the line.
std::uint32_t ParseFileName(const std::string& line, CArgStringFileName& file) {
  std::string_view rest = line;
  const std::array<CArg*, 1> arguments = {&file};
  if (ParseArguments(rest, arguments) != arguments.size()) return strings::kInvalidParameter;
  return OnlyBlanksRemain(rest) ? 0 : strings::kTooManyParameters;
}

}  // namespace

CSaveCommand::CSaveCommand(CommandHost& owner)
    : CCoverageCommand(owner, "coverage_save", "cvs", strings::kSyntaxFileName) {}

qal::Status CSaveCommand::DoCommand(const std::string& line, std::string& result, std::uint32_t&) {
  CArgStringFileName file(true, {}, SharedPlaceholders());
  if (const std::uint32_t text = ParseFileName(line, file)) return Fail(result, text);
  auto [path, resolved] = ResolveInProject(file.value, *SharedPlaceholders());
  if (!resolved) {
    if (platform::ShowMessageBox(Text(strings::kSaveUnderProject), platform::Icon::kQuestion,
                                 platform::Buttons::kYesNo) != platform::Answer::kYes) {
      return Fail(result, strings::kDataCannotBeSaved);
    }
    path = PutInProject(path, *SharedPlaceholders());
    if (path.empty()) return Fail(result, strings::kDataCannotBeSaved);
  }
  path = WithDefaultExtension(path, ".cov");
  if (!HasExtension(path, ".COV") && !HasExtension(path, ".TXT"))
    return Fail(result, strings::kInvalidSaveFileName);
  if (!DirectoryExists(path)) {
    if (platform::ShowMessageBox(Text(strings::kCreateDirectory), platform::Icon::kExclamation,
                                 platform::Buttons::kOkCancel) != platform::Answer::kOk) {
      return Fail(result, strings::kDataCannotBeSaved);
    }
    if (!platform::CreateDirectory(platform::DirectoryPart(path))) {
      return Fail(result, strings::kCannotCreateDirectory);
    }
  }
  const bool hadWindows = model().windowCount() != 0;
  const qal::Status outcome = SaveCommandModel(model(), path, CurrentProjectNames(host, view.Keys()), host);
  if (qal::Succeeded(outcome)) return qal::kOk;
  const bool unwritten = outcome == automation::kCannotOpen && !hadWindows;
  return Fail(result, unwritten ? strings::kDataCannotBeSaved : strings::kCannotSaveCoverage);
}

CLoadCommand::CLoadCommand(CommandHost& owner)
    : CCoverageCommand(owner, "coverage_load", "cvl", strings::kSyntaxFileName) {}

qal::Status CLoadCommand::DoCommand(const std::string& line, std::string& result, std::uint32_t&) {
  CArgStringFileName file(true, {}, SharedPlaceholders());
  if (const std::uint32_t text = ParseFileName(line, file)) return Fail(result, text);
  const std::string path =
      WithDefaultExtension(ResolveInProject(file.value, *SharedPlaceholders()).path, ".COV");
  if (!HasExtension(path, ".COV")) return Fail(result, strings::kInvalidLoadFileName);
  const qal::Status outcome = LoadCommandModel(model(), path, CurrentProjectNames(host, view.Keys()), host,
                                               kCommandLoad, view.Messages());
  if (qal::Failed(outcome)) {
    // What was read before the failure stays, so the views show it.
    view.RefreshViews();
    switch (outcome) {
      case automation::kRangeRefused:
        return Fail(result, strings::kRangeCannotBeSet);
      case automation::kTooLarge:
        return Fail(result, strings::kRangeTooLarge);
      default:
        return Fail(result, strings::kInvalidCoverageFile);
    }
  }
  view.BringUpToDate();
  return qal::kOk;
}

}  // namespace coverage
