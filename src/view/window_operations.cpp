#include <algorithm>

#include "commands/command_paths.h"
#include "dialogs/coverage_setting_dialog.h"
#include "formatview/command_sink.h"
#include "platform/file_dialog.h"
#include "platform/message_box.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "util/placeholder_resolver.h"
#include "util/texts.h"
#include "view/coverage_windows.h"
#include "view/raised.h"

// Opening coverage windows: over a range, over the functions of a source file, from the dialog.

namespace coverage {
namespace {

// How the IDE is asked for the frame of a window and for the view inside it.
constexpr char kFrameKey[] = "{WK_00000001_COVERAGE}";
constexpr std::uint32_t kFrameStyle = 0x1804;
constexpr std::uint32_t kFrameDock = 0xE81E;
constexpr std::uint32_t kViewStyle = 0x400;

// States of a frame.
constexpr std::uint32_t kToolbarState = 0x2000;
constexpr std::uint32_t kFirstShowState = 18;
constexpr std::uint32_t kSecondShowState = 34;
constexpr std::uint32_t kStatesToShow[] = {5, 9, 17};

/// A range ends on the last byte of its last step.
std::uint32_t LastByte(std::uint32_t start, std::uint32_t end) {
  return start != end && end != 0 && end % 2 == 0 ? end - 1 : end;
}

}  // namespace

CoverageWindows::Frame CoverageWindows::NewFrame(const std::string& viewKey) const {
  Frame frame{0, viewKey};
  if (customizer == nullptr) return frame;
  const std::string title = Text(strings::kCoverage);
  customizer->CreateFrame(kFrameKey, title, kFrameStyle, kFrameDock, &frame.window, &frame.viewKey);
  if (frame.window == 0) return frame;
  qal::WindowHandle view = 0;
  customizer->CreateFrame(frame.viewKey, title, kViewStyle, 0, &view, nullptr);
  return frame;
}

void CoverageWindows::FinishFrame(const Frame& frame) const {
  if (customizer->QueryFrameToolbar(frame.window) == qal::kOk) {
    customizer->SetFrameState(frame.window, kToolbarState);
  }
  for (const std::uint32_t shown : {kFirstShowState, kSecondShowState}) {
    std::uint32_t state = 0;
    if (qal::Failed(customizer->GetFrameState(frame.window, &state))) return;
    if (std::find(std::begin(kStatesToShow), std::end(kStatesToShow), state) == std::end(kStatesToShow))
      continue;
    customizer->SetFrameState(frame.window, shown);
  }
}

CoverageWindows::DataPane& CoverageWindows::NewPane(std::uint32_t start, std::uint32_t end,
                                                    const std::string& name, std::uint32_t shown) {
  auto made = std::make_unique<DataPane>(host, customizer, *this, start, end, name, shown);
  DataPane& pane = *made;
  owner.AdoptPane(std::move(made));
  return pane;
}

CoverageWindows::StatisticsPane* CoverageWindows::NewWindow(const Frame& frame, WindowKind kind,
                                                            std::uint32_t start, std::uint32_t end,
                                                            DataPane& first) {
  auto made = std::make_unique<StatisticsPane>(host, customizer, *this, kind, start, end);
  StatisticsPane& window = *made;
  owner.AdoptPane(std::move(made));
  window.AddPane(first);
  windows.push_back(&window);
  viewKeys[&window] = frame.viewKey;
  window.CreatePane(frame.window);
  FinishFrame(frame);
  return &window;
}

void CoverageWindows::ShowWindow(StatisticsPane& window) {
  owner.ApplyDisplaySettings(window);
  window.SizeColumns();
  if (DataPane* const displayed = window.DisplayedPane()) displayed->RebuildRows(true, 0, -1, -1);
  window.List().SetFocus();
}

void CoverageWindows::RegisterPane(DataPane& pane) {
  if (loading) {
    pane.ReRegisterRange();
  } else {
    pane.RegisterRange(false);
  }
  if (pane.Instance().rangeSet == 0) pane.SetEnabled(0);
}

// Ranges.

CoverageWindows::StatisticsPane* CoverageWindows::NewRangeWindow(std::uint32_t start, std::uint32_t end) {
  end = LastByte(start, end);
  const Frame frame = NewFrame({});
  if (frame.window == 0) return nullptr;
  DataPane& pane = NewPane(start, end, {}, 1);
  // The pane registers its range when its window is created.
  pane.CreatePane(frame.window);
  if (pane.Instance().rangeSet == 0) {
    pane.SetEnabled(0);
    return nullptr;
  }
  NoteRecentRange(start, end);
  StatisticsPane* const window = NewWindow(frame, WindowKind::kRange, start, end, pane);
  window->ResetList();
  ShowWindow(*window);
  owner.SwitchCoverage();
  marks.DropLineMarks();
  return window;
}

CoverageWindows::DataPane* CoverageWindows::AddRange(StatisticsPane& window, std::uint32_t start,
                                                     std::uint32_t end, bool onlyOnce) {
  end = LastByte(start, end);
  const auto& instances = window.Record().instances;
  if (onlyOnce && std::any_of(instances.begin(), instances.end(), [&](const auto& each) {
        return each.second->start == start && each.second->end == end && each.second->functionName.empty();
      })) {
    return nullptr;
  }
  DataPane& pane = NewPane(start, end, {}, 0);
  RegisterPane(pane);
  if (pane.Instance().rangeSet != 0) NoteRecentRange(start, end);
  window.AddPane(pane);
  if (!loading) ShowRanges(window);
  return &pane;
}

void CoverageWindows::ShowRanges(StatisticsPane& window) {
  window.DisplayRegistered();
  window.ResetList();
  ShowWindow(window);
  marks.DropLineMarks();
}

void CoverageWindows::RestoreRanges(std::span<const SavedRange> ranges, const std::string& viewKey) {
  const Raised raised(loading);
  StatisticsPane* window = FirstRangeWindow();
  DataPane* pane = nullptr;
  bool refused = false;
  for (const SavedRange& saved : ranges) {
    if (window == nullptr) {
      const Frame frame = NewFrame(viewKey);
      if (frame.window == 0) return;
      pane = &NewPane(saved.start, saved.end, {}, 1);
      pane->CreatePane(frame.window);
      window = NewWindow(frame, WindowKind::kRange, saved.start, saved.end, *pane);
    } else {
      pane = &NewPane(saved.start, saved.end, {}, 0);
      RegisterPane(*pane);
      window->AddPane(*pane);
    }
    const bool registered = pane->Instance().rangeSet != 0;
    pane->SetEnabled(registered && saved.enableStatus != 0 ? 1 : 0);
    refused = refused || !registered;
    memory.starts.Note(platform::Format("%08x", saved.start), saved.start);
    memory.ends.Note(platform::Format("%08x", saved.end), saved.end);
  }
  if (pane == nullptr) return;
  ShowRanges(*window);
  owner.SwitchCoverage();
  if (refused) owner.SinkWindow().Post(sink_message::kCloseChild, window->Frame());
}

// Source files.

FileFunctions CoverageWindows::List(const std::string& sourceFile) {
  FileFunctions listing = ListFileFunctions(host, sourceFile, true);
  if (listing.outcome != FileFunctions::Outcome::kListed) ShowListingFailure(host, listing);
  return listing;
}

CoverageWindows::StatisticsPane* CoverageWindows::NewFileWindow(const std::string& sourceFile,
                                                                const std::string& typed,
                                                                const std::string& viewKey) {
  const FileFunctions listing = List(sourceFile);
  if (listing.outcome != FileFunctions::Outcome::kListed || listing.functions.empty()) return nullptr;
  const Frame frame = NewFrame(viewKey);
  if (frame.window == 0) return nullptr;

  // The coverage switch is set once, when all functions are there.
  const Raised raised(loading);
  StatisticsPane* window = nullptr;
  std::vector<std::string> names;
  for (const SourceFunction& function : listing.functions) {
    names.push_back(function.name);
    DataPane& pane = NewPane(function.start, function.end, function.name, window == nullptr ? 1 : 0);
    if (window != nullptr) {
      RegisterPane(pane);
      window->AddPane(pane);
      continue;
    }
    pane.CreatePane(frame.window);
    if (pane.Instance().rangeSet == 0) pane.SetEnabled(0);
    NoteRecentRange(function.start, function.end);
    window = NewWindow(frame, WindowKind::kFile, 0, 0, pane);
    window->Record().sourceFile = sourceFile;
    window->Record().typedSourceFile = typed;
    memory.lastSourceFile = sourceFile;
  }
  if (window == nullptr) return nullptr;
  window->SetFunctionNames(std::move(names));
  window->DisplayRegistered();
  window->ResetList();
  ShowWindow(*window);
  owner.SwitchCoverage();
  marks.DropLineMarks();
  return window;
}

// The dialog.

void CoverageWindows::RecordRangeWindow(std::uint32_t start, std::uint32_t end) {
  macro.RecordRangeWindow(start, end);
}

void CoverageWindows::RecordFileWindow(const std::string& typedPath, const std::string& fullPath) {
  macro.RecordFileWindow(typedPath, fullPath);
}

void CoverageWindows::LoadRecentFile(const std::string& path) {
  macro.NoteLoadStart();
  // The files of the session are kept with placeholders.
  loadPath = PlaceholderResolver(host).ExpandPlaceholders(path);
  memory.coveragePath = loadPath;
  LoadFile(loadPath);
}

std::vector<std::string> CoverageWindows::RecentFiles() const {
  std::vector<std::string> files(memory.recentCoverageFiles.rbegin(), memory.recentCoverageFiles.rend());
  for (const std::string& file : memory.sessionCoverageFiles) {
    if (std::find(files.begin(), files.end(), file) == files.end()) files.push_back(file);
  }
  return files;
}

void CoverageWindows::OpenCoverage() {
  using Result = CoverageSettingDialog::Result;
  CoverageSettingDialog dialog(host, {{memory.starts, memory.ends}, RecentFiles(), memory.lastSourceFile},
                               memory.lastTexts, *this);
  const auto answer = dialog.Ask(&owner.SinkWindow());
  if (!answer) return;
  if (answer->result == Result::kNewFromRange) {
    if (StatisticsPane* const window = FirstRangeWindow()) {
      AddRange(*window, answer->range.start, answer->range.end);
    } else {
      NewRangeWindow(answer->range.start, answer->range.end);
    }
  } else if (answer->result == Result::kNewFromFile) {
    memory.sourcePath = platform::DirectoryPart(answer->sourceFile);
    NewFileWindow(answer->sourceFile, answer->typedSourceFile);
  } else if (answer->result == Result::kAnother) {
    OpenAnotherFile();
  }
}

void CoverageWindows::OpenAnotherFile() {
  platform::FileDialogRequest request;
  request.defaultExtension = "COV";
  request.filter = Text(strings::kCoverageFilter);
  request.directory = platform::DirectoryPart(memory.coveragePath);
  if (request.directory.empty())
    request.directory = PlaceholderResolver(host).ExpandPlaceholders("$(CONFIGDIR)");
  const auto path = platform::AskForFile(request);
  // The IDE may have ended the component while the person was looking.
  if (!path || !owner.SinkWindow().Exists()) return;
  if (!HasExtension(*path, ".COV")) {
    platform::ShowMessageBox(Text(strings::kInvalidLoadFileName), platform::Icon::kInformation);
    return;
  }
  macro.NoteLoadStart();
  loadPath = *path;
  memory.coveragePath = *path;
  LoadFile(*path);
}

}  // namespace coverage
