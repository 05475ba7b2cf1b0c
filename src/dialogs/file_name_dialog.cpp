#include "dialogs/file_name_dialog.h"

#include <algorithm>
#include <array>
#include <initializer_list>

#include "dialogs/placeholder_button.h"
#include "platform/file_dialog.h"
#include "platform/files.h"
#include "platform/text.h"
#include "util/resource_ids.h"
#include "util/texts.h"

namespace coverage {
namespace {

constexpr std::uint32_t kSaveEdit = 9035, kSaveArrow = 9036, kSaveBrowse = 5, kSaveOk = 9037,
                        kSaveCancel = 9038;

constexpr std::uint32_t kLoadEdit = 9014, kLoadArrow = 9015, kLoadBrowse = 3, kLoadOk = 9027,
                        kLoadCancel = 9028;

constexpr std::string_view kRefusedInFileNames = "/;*?\"<>|";
constexpr std::string_view kSourceFilesPlaceholder = "$(PROJDIR)";

using platform::Route;
namespace message = platform::message;

/// Only the name of a coverage file is shown when the dialog opens.
std::string ShownName(const std::string& name) { return HasExtension(name, ".COV") ? name : std::string(); }

/// Whether the extension is one of these; none, or a dot with nothing behind it, is taken too.
bool TakesExtension(std::string_view name, std::initializer_list<std::string_view> extensions) {
  return HasNoExtension(name) || HasExtension(name, ".") ||
         std::any_of(extensions.begin(), extensions.end(),
                     [&](std::string_view extension) { return HasExtension(name, extension); });
}

}  // namespace

std::unique_ptr<platform::Control> FileNameDialog::MakeControl(const platform::ControlTemplate& resource) {
  if (resource.id == arrowId_) return std::make_unique<CUiPlaceholderButtonEB>(kFilePlaceholders, host());
  return CoverageDialog::MakeControl(resource);
}

void FileNameDialog::OnInitDialog() {
  auto* edit = Item<platform::Edit>(editId_);
  if (edit) edit->SetRefusedChars(kRefusedInFileNames);
  if (auto* arrow = Item<CUiPlaceholderButtonEB>(arrowId_)) arrow->SetTarget(edit);
}

void FileNameDialog::Browse(bool save, std::string_view extension, std::uint32_t filterId,
                            std::string_view placeholder) {
  platform::FileDialogRequest request;
  request.save = save;
  request.defaultExtension = extension;
  request.filter = coverage::Text(filterId);
  request.directory = StartDirectory(FileName(), placeholder);
  request.flags = platform::FileDialogRequest::kHideReadOnly | platform::FileDialogRequest::kOverwritePrompt;
  if (const auto path = platform::AskForFile(request)) SetFileName(*path);
}

void FileNameDialog::BrowseForSource() {
  Browse(false, "c", strings::kSourceFilter, kSourceFilesPlaceholder);
}

void FileNameDialog::BrowseForCoverage(bool save) {
  Browse(save, "cov", strings::kSampleCoverageFilter, kCoverageFilesPlaceholder);
}

ResolvedPath FileNameDialog::CoveragePath(std::string_view directory, std::string_view name) const {
  return ResolveBelow(directory, WithDefaultExtension(name, ".cov"), PlaceholderResolver(host()));
}

std::string FileNameDialog::CheckedSourceName() {
  if (FileName().empty()) {
    FocusItem(editId_);
    return {};
  }
  std::string name = WithDefaultExtension(FileName(), ".c");
  if (!TakesExtension(name, {".C", ".CPP"})) {
    Complain(strings::kInvalidSourceFileName, editId_);
    return {};
  }
  return name;
}

SaveDataDialog::SaveDataDialog(qal::IQHost* host, std::string currentName)
    : FileNameDialog(resource::kDialogSaveData, {kSaveOk, kSaveCancel}, {kSaveEdit, kSaveArrow}, host),
      currentName_(std::move(currentName)) {}

std::optional<SaveDataDialog::Answer> SaveDataDialog::Ask(platform::Window* owner) {
  return Run(owner) ? std::optional(answer_) : std::nullopt;
}

void SaveDataDialog::OnInitDialog() {
  FileNameDialog::OnInitDialog();
  SetFileName(ShownName(currentName_));
  FocusItem(kSaveEdit);
}

bool SaveDataDialog::DirectoryReady(const std::string& path) {
  if (DirectoryExists(path)) return true;
  const bool create =
      platform::ShowMessageBox(coverage::Text(strings::kCreateDirectory), platform::Icon::kExclamation,
                               platform::Buttons::kOkCancel) == platform::Answer::kOk;
  return create && platform::CreateDirectory(platform::DirectoryPart(path));
}

void SaveDataDialog::OnOK() {
  const std::string name = FileName();
  if (name.empty()) return SetFileName(currentName_);
  if (!TakesExtension(name, {".COV", ".TXT"})) return Complain(strings::kInvalidSaveFileName, kSaveEdit);
  const ResolvedPath path = CoveragePath({}, name);
  if (!DirectoryReady(path.path)) return FocusItem(kSaveEdit);
  answer_ = {path.path, path.resolved};
  FileNameDialog::OnOK();
}

platform::LResult SaveDataDialog::OnMessage(const platform::Message& received) {
  static constexpr auto kRoutes = std::to_array<Route<SaveDataDialog>>({
      {message::kCommand, kSaveBrowse, &SaveDataDialog::OnBrowse},
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return FileNameDialog::OnMessage(received);
}

LoadDataDialog::LoadDataDialog(qal::IQHost* host, std::string currentName)
    : FileNameDialog(resource::kDialogLoadData, {kLoadOk, kLoadCancel}, {kLoadEdit, kLoadArrow}, host),
      currentName_(std::move(currentName)) {}

std::optional<std::string> LoadDataDialog::Ask(platform::Window* owner) {
  return Run(owner) ? std::optional(path_) : std::nullopt;
}

void LoadDataDialog::OnInitDialog() {
  FileNameDialog::OnInitDialog();
  SetFileName(ShownName(currentName_));
  FocusItem(kLoadEdit);
}

void LoadDataDialog::OnOK() {
  const std::string name = FileName();
  if (name.empty()) return SetFileName(currentName_);
  if (!TakesExtension(name, {".COV"})) return Complain(strings::kInvalidLoadFileName, kLoadEdit);
  path_ = CoveragePath(StartDirectory(currentName_, kCoverageFilesPlaceholder), name).path;
  FileNameDialog::OnOK();
}

platform::LResult LoadDataDialog::OnMessage(const platform::Message& received) {
  static constexpr auto kRoutes = std::to_array<Route<LoadDataDialog>>({
      {message::kCommand, kLoadBrowse, &LoadDataDialog::OnBrowse},
  });
  if (const auto answer = platform::Dispatch(*this, kRoutes, received)) return *answer;
  return FileNameDialog::OnMessage(received);
}

}  // namespace coverage
