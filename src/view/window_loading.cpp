#include "dialogs/file_name_dialog.h"
#include "formatview/command_sink.h"
#include "persist/cov_reader.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/text.h"
#include "util/placeholder_resolver.h"
#include "util/texts.h"
#include "view/coverage_windows.h"
#include "view/raised.h"

// Loading coverage files into coverage windows.

namespace coverage {
namespace {

void Inform(std::uint32_t textId) { platform::ShowMessageBox(Text(textId), platform::Icon::kInformation); }

}  // namespace

/// Sections of ranges: each becomes one more instance of one range window.
class CoverageWindows::RangeSections final : public CovSectionSink {
 public:
  RangeSections(CoverageWindows& view, CovType type)
      : view_(view), typed_(type != CovType::kUntyped), window_(view.FirstRangeWindow()) {}

  Take BeginSection(const CovSection& section) override {
    std::uint32_t start = section.start;
    std::uint32_t end = section.end;
    AlignToSteps(start, end);
    if (!budget_.Take(start, end)) return Take::kStop;
    view_.memory.starts.Note(section.startText, section.start);
    view_.memory.ends.Note(section.endText, section.end);
    if (window_ == nullptr) {
      window_ = view_.NewRangeWindow(start, end);
      if (window_ == nullptr) return Take::kStop;
      pane_ = window_->Pane(1);
    } else {
      pane_ = view_.AddRange(*window_, start, end, false);
    }
    if (pane_->Instance().rangeSet == 0) return Take::kStop;
    pane_->SetEnabled(section.enableStatus);
    if (typed_) pane_->Instance().percentage = section.percentage;
    return Take::kRows;
  }
  void Rows(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass) override {
    pane_->Instance().counts->AddRows(counts, pass);
  }
  void EndSection() override {
    if (!typed_) pane_->Instance().ComputePercentage(false, view_.instructions);
  }

 private:
  CoverageWindows& view_;
  bool typed_;
  StatisticsPane* window_;
  DataPane* pane_ = nullptr;
  CellBudget budget_;
};

/// Sections of functions: each fills the instance of the same range and name in the file's new window.
class CoverageWindows::FunctionSections final : public CovSectionSink {
 public:
  explicit FunctionSections(StatisticsPane& window) : window_(window) {}

  Take BeginSection(const CovSection& section) override {
    for (const auto& [number, instance] : window_.Record().instances) {
      if (instance->start != section.start || instance->end != section.end ||
          instance->functionName != section.functionName) {
        continue;
      }
      instance->SetEnabled(section.enableStatus);
      instance->percentage = section.percentage;
      matched_ = instance;
      return Take::kRows;
    }
    return Take::kStop;
  }
  void Rows(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass) override {
    matched_->counts->AddRows(counts, pass);
  }

 private:
  StatisticsPane& window_;
  CoverageInstance* matched_ = nullptr;
};

bool CoverageWindows::MayLoad(const CovHeader& header) {
  switch (CompareProject(header, CurrentProjectNames(host, keys))) {
    case ProjectMatch::kSame:
      return true;
    case ProjectMatch::kConfigurationDiffers:
      Inform(strings::kOtherConfigurationLoaded);
      return true;
    default:
      Inform(header.type == CovType::kFile ? strings::kOtherProjectRefused : strings::kOtherProjectLoaded);
      return header.type != CovType::kFile;
  }
}

bool CoverageWindows::LoadFile(const std::string& path) {
  platform::TextReader file;
  if (!file.Open(path)) return Inform(strings::kFileCannotBeOpened), false;
  CovReader reader(file);
  CovHeader header;
  if (!reader.ReadHeader(header)) return Inform(strings::kInvalidCoverageFile), false;
  if (header.type == CovType::kOther || !MayLoad(header)) return false;

  bool loaded = true;
  {
    const Raised raised(loading);
    if (header.type == CovType::kFile) {
      macro.RecordLoad(loadPath);
      const std::string source = PlaceholderResolver(host).ExpandPlaceholders(header.fileName);
      if (StatisticsPane* const window = NewFileWindow(source, header.fileName)) {
        FunctionSections sections(*window);
        reader.ReadSections(header.type, SectionFileLine::kNone, sections);
      } else {
        loaded = false;
      }
    } else {
      if (FirstRangeWindow() == nullptr) macro.RecordLoad(loadPath);
      RangeSections sections(*this, header.type);
      reader.ReadSections(header.type, SectionFileLine::kNone, sections);
      if (StatisticsPane* const window = FirstRangeWindow()) ShowRanges(*window);
    }
  }
  owner.SwitchCoverage();
  RefreshPanes();
  RedrawPanes();
  marks.DropLineMarks();
  return loaded;
}

void CoverageWindows::LoadPane(DataPane& pane) {
  StatisticsPane* const window = pane.Statistics();
  const auto path = LoadDataDialog(host, memory.coveragePath).Ask(&owner.SinkWindow());
  if (!path) return;
  macro.NoteLoadStart();
  loadPath = *path;
  memory.coveragePath = *path;
  const std::size_t before = windows.size();
  if (!LoadFile(*path)) return;
  // A file window takes the place of the window that it was loaded from.
  const bool fileOpened = windows.size() > before && windows.back()->Record().kind == WindowKind::kFile;
  if (fileOpened && window != nullptr) owner.SinkWindow().Post(sink_message::kCloseChild, window->Frame());
}

}  // namespace coverage
