#include "view/window_loader.h"

#include <memory>

#include "dialogs/file_name_dialog.h"
#include "formatview/command_sink.h"
#include "persist/automation_status.h"
#include "persist/cov_load.h"
#include "platform/paths.h"
#include "util/placeholder_resolver.h"
#include "util/texts.h"

namespace coverage {
namespace {

using InstancePtr = CoverageModel::InstancePtr;

/// What both kinds of sections share: rows go to the instance that the section stands for.
class InstanceSections : public CovSectionSink {
 public:
  InstanceSections(const ViewServices& services, CovType type)
      : services_(services), typed_(type != CovType::kUntyped) {}

  void Rows(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass) final {
    services_.model.AddRows(*instance_, counts, pass);
  }
  void EndSection() final {
    if (!typed_) services_.model.ComputePercentage(*instance_);
  }
  qal::Status status() const { return status_; }

 protected:
  Take RowsTo(InstancePtr instance, const CovSection& section) {
    instance_ = std::move(instance);
    services_.model.Enable(*instance_, section.enableStatus != 0);
    if (typed_) services_.model.LoadPercentage(*instance_, section.percentage);
    return Take::kRows;
  }

  const ViewServices& services_;
  qal::Status status_ = qal::kOk;

 private:
  bool typed_;
  InstancePtr instance_;
};

/// Sections of ranges: each becomes one more instance of one range window.
class RangeSections final : public InstanceSections {
 public:
  RangeSections(const ViewServices& services, WindowOpener& opener, CovType type)
      : InstanceSections(services, type), opener_(opener), window_(services.model.FirstRangeWindow()) {}

  Take BeginSection(const CovSection& section) override {
    std::uint32_t start = section.start;
    std::uint32_t end = section.end;
    AlignToSteps(start, end);
    services_.history.starts.Note(section.startText, section.start);
    services_.history.ends.Note(section.endText, section.end);
    if (!budget_.Take(start, end)) return TooLong(start, end);
    CoverageInstance* instance = nullptr;
    if (window_ != nullptr) {
      instance = opener_.AddRange(*window_, start, end, false);
    } else if ((window_ = opener_.NewRangeWindow(start, end)) != nullptr) {
      instance = window_->Instance(1).get();
    }
    if (instance == nullptr || instance->rangeSet == 0) return Take::kStop;
    return RowsTo(window_->Instance(window_->NumberOf(*instance)), section);
  }

 private:
  Take TooLong(std::uint32_t start, std::uint32_t end) {
    if (window_ != nullptr) opener_.AddUnregistered(*window_, start, end);
    services_.reporter.Inform(strings::kRangeTooLarge);
    status_ = automation::kTooLarge;
    return Take::kStop;
  }

  WindowOpener& opener_;
  CoverageWindow* window_;
  CellBudget budget_;
};

/// Sections of functions: each fills the instance of the same range and name in the file's new window.
class FunctionSections final : public InstanceSections {
 public:
  FunctionSections(const ViewServices& services, CoverageWindow& window)
      : InstanceSections(services, CovType::kFile), window_(window) {}

  Take BeginSection(const CovSection& section) override {
    for (const auto& [number, instance] : window_.instances) {
      if (instance->start == section.start && instance->end == section.end &&
          instance->functionName == section.functionName) {
        return RowsTo(instance, section);
      }
    }
    return Take::kStop;
  }

 private:
  CoverageWindow& window_;
};

}  // namespace

/// Windows as what a file is loaded into.
class WindowLoader::Target final : public LoadTarget {
 public:
  Target(const ViewServices& services, WindowOpener& opener) : services_(services), opener_(opener) {}

  CovSectionSink& BeginRanges(CovType type) override {
    if (services_.model.FirstRangeWindow() == nullptr) services_.macro.RecordLoad(services_.history.loadPath);
    sections_ = std::make_unique<RangeSections>(services_, opener_, type);
    return *sections_;
  }
  CovSectionSink* BeginFunctions(const std::string& written) override {
    services_.macro.RecordLoad(services_.history.loadPath);
    const std::string source = PlaceholderResolver(services_.host).ExpandPlaceholders(written);
    CoverageWindow* const window = opener_.NewFileWindow(source, written);
    if (window == nullptr) return nullptr;
    sections_ = std::make_unique<FunctionSections>(services_, *window);
    return sections_.get();
  }
  qal::Status Outcome() const override { return sections_->status(); }

 private:
  const ViewServices& services_;
  WindowOpener& opener_;
  std::unique_ptr<InstanceSections> sections_;
};

bool WindowLoader::Load(const std::string& path) {
  Target target(services_, opener_);
  qal::Status status = qal::kFail;
  opener_.Fill([&] {
    status = LoadCoverageFile(path, CurrentProjectNames(services_.host, services_.keys), kWindowLoad,
                              services_.reporter, target);
  });
  if (CoverageWindow* const window = services_.model.FirstRangeWindow()) opener_.ShowRanges(*window);
  services_.model.MarkLists();
  services_.model.MarkRows();
  return qal::Succeeded(status);
}

bool WindowLoader::LoadChosen(const std::string& path) {
  services_.macro.NoteLoadStart();
  services_.history.loadPath = path;
  services_.history.coveragePath = path;
  return Load(path);
}

void WindowLoader::LoadData(CoverageInstance& instance) {
  const qal::WindowHandle frame = instance.window != nullptr ? instance.window->frame : 0;
  const auto path = LoadDataDialog(services_.host, services_.history.coveragePath).Ask(&services_.sink);
  if (!path) return;
  const std::size_t before = services_.model.Windows().size();
  if (!LoadChosen(*path)) return;
  const auto& windows = services_.model.Windows();
  const bool fileOpened = windows.size() > before && windows.back()->isFile();
  if (fileOpened && frame != 0) services_.sink.Post(sink_message::kCloseChild, frame);
}

}  // namespace coverage
