#include "persist/command_file.h"

#include <memory>

#include "model/disassembly_cache.h"
#include "model/file_functions.h"
#include "persist/cov_save.h"
#include "persist/section_writer.h"
#include "platform/text.h"
#include "util/placeholder_resolver.h"

namespace coverage {
namespace {

void WriteStore(CovOutput& out, std::string_view sectionName, std::uint32_t number, CoverageCounts& counts,
                std::uint32_t enableStatus, std::string_view functionName, qal::IQHost* host,
                DisassemblyCache& cache) {
  const std::uint32_t percentage =
      CountRecorded(counts, counts.start(), counts.end(), host, cache).percentage();
  out.Section({sectionName, number, counts.start(), counts.end(), enableStatus, percentage, functionName});
  WriteRows(out, counts, counts.start(), counts.end(), host, cache);
}

qal::Status WriteWindows(CovOutput& out, CommandModel& model, CovType type, qal::IQHost* host,
                         DisassemblyCache& cache) {
  const std::string_view sectionName = type == CovType::kFile ? kInstanceSection : kWindowSection;
  for (std::uint32_t number = 1; number <= model.windowCount(); ++number) {
    const CommandEntry* entry = model.FirstEntry(number);
    if (entry == nullptr) return automation::kWindowMissing;
    if (entry->counts == nullptr) return automation::kWindowWithoutData;
    CoverageCounts& counts = *entry->counts;
    if (!counts.registered()) continue;
    WriteStore(out, sectionName, number, counts, counts.active() == 1 ? 1 : 0, entry->functionName, host,
               cache);
  }
  return qal::kOk;
}

/// Rows go to one store until the next section.
class StoreSink : public CovSectionSink {
 public:
  StoreSink(CommandModel& model, qal::IQHost* host, Reporter& reporter)
      : model_(model), host_(host), reporter_(reporter) {}

  void Rows(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass) final {
    model_.AddRows(*store_, counts, pass);
  }
  /// Why not everything was taken; 0 when everything was.
  qal::Status status() const { return status_; }

 protected:
  Take Stop(qal::Status status) {
    status_ = status;
    return Take::kStop;
  }
  Take RowsTo(CoverageCounts& store, const CovSection& section) {
    store_ = &store;
    model_.SetActive(store, section.enableStatus);
    return Take::kRows;
  }
  /// Whether a range of the file may be laid out. One that is too long is remembered as what went wrong.
  bool Fits(std::uint32_t start, std::uint32_t end) {
    if (budget_.Take(start, end)) return true;
    status_ = automation::kTooLarge;
    return false;
  }

  CommandModel& model_;
  qal::IQHost* host_;
  Reporter& reporter_;

 private:
  CellBudget budget_;
  CoverageCounts* store_ = nullptr;
  qal::Status status_ = qal::kOk;
};

/// Sections of the oldest form: each one replaces the current range.
class CurrentRangeSink final : public StoreSink {
 public:
  using StoreSink::StoreSink;

  Take BeginSection(const CovSection& section) override {
    std::uint32_t start = section.start;
    std::uint32_t end = section.end;
    AlignToSteps(start, end);
    if (!Fits(start, end)) return Take::kStop;
    if (model_.SetStoreRange(start, end, reporter_) == 0) return Stop(automation::kRangeRefused);
    model_.SetStoreEnabled(section.enableStatus != 0);
    return RowsTo(model_.commandStore(), section);
  }
};

/// Sections of a range file: each one becomes a window of its own, or that of a function of the file it
/// names.
class NewWindowSink final : public StoreSink {
 public:
  using StoreSink::StoreSink;

  Take BeginSection(const CovSection& section) override {
    if (!section.fileName.empty()) return BeginFunction(section);
    // A range that cannot be registered has its window all the same.
    const auto added = Fits(section.start, section.end)
                           ? model_.AddWindow(section.start, section.end, section.functionName, reporter_)
                           : model_.AddWindow(section.functionName);
    return RowsTo(*added.counts, section);
  }

 private:
  Take BeginFunction(const CovSection& section) {
    const std::string sourceFile = PlaceholderResolver(host_).ExpandPlaceholders(section.fileName);
    const FileFunctions listing = ListFileFunctions(host_, sourceFile, false);
    if (listing.outcome != FileFunctions::Outcome::kListed) {
      ReportListing(listing, reporter_);
      return Take::kSkip;
    }
    for (const SourceFunction& function : listing.functions) {
      if (platform::EqualNoCase(function.name, section.functionName) && Fits(function.start, function.end)) {
        model_.AddWindow(function.start, function.end, function.name, reporter_);
      }
    }
    const std::uint32_t number = model_.WindowOfFunction(section.functionName);
    if (number == 0) return Stop(automation::kInvalidTyped);
    return RowsTo(*model_.FirstEntry(number)->counts, section);
  }
};

/// Sections of a source file's functions: each one belongs to the window with its range and name.
class FunctionSink final : public StoreSink {
 public:
  using StoreSink::StoreSink;

  Take BeginSection(const CovSection& section) override {
    const std::uint32_t number = model_.WindowOf(section.start, section.end, section.functionName);
    if (number == 0) return Stop(automation::kInvalidTyped);
    return RowsTo(*model_.FirstEntry(number)->counts, section);
  }
};

/// The stores as what a file is loaded into.
class CommandTarget final : public LoadTarget {
 public:
  CommandTarget(CommandModel& model, qal::IQHost* host, Reporter& reporter)
      : model_(model), host_(host), reporter_(reporter) {}

  CovSectionSink& BeginRanges(CovType type) override {
    untyped_ = type == CovType::kUntyped;
    if (untyped_) {
      sink_ = std::make_unique<CurrentRangeSink>(model_, host_, reporter_);
    } else {
      model_.RemoveAllWindows();
      model_.ClearStore();
      sink_ = std::make_unique<NewWindowSink>(model_, host_, reporter_);
    }
    return *sink_;
  }
  CovSectionSink* BeginFunctions(const std::string& written) override {
    model_.RemoveAllWindows();
    model_.ClearStore();
    if (!model_.OpenFile(PlaceholderResolver(host_).ExpandPlaceholders(written), reporter_)) return nullptr;
    sink_ = std::make_unique<FunctionSink>(model_, host_, reporter_);
    return sink_.get();
  }
  qal::Status Outcome() const override { return sink_->status(); }
  bool untyped() const { return untyped_; }

 private:
  CommandModel& model_;
  qal::IQHost* host_;
  Reporter& reporter_;
  std::unique_ptr<StoreSink> sink_;
  bool untyped_ = false;
};

}  // namespace

qal::Status SaveCommandModel(CommandModel& model, const std::string& path, const ProjectNames& current,
                             qal::IQHost* host) {
  const bool hasWindows = model.windowCount() != 0;
  if (!hasWindows && !model.commandStore().registered()) return automation::kNothing;
  CovHeader header{current.configuration, current.project, CovType::kRange, {}};
  if (hasWindows) header.fileName = model.filePath();
  if (!header.fileName.empty()) header.type = CovType::kFile;
  return SaveCoverageFile(path, header, header.type == CovType::kFile, [&](CovOutput& out) {
    DisassemblyCache cache;
    if (hasWindows) return WriteWindows(out, model, header.type, host, cache);
    CoverageCounts& store = model.commandStore();
    WriteStore(out, kWindowSection, 1, store, store.active(), {}, host, cache);
    return qal::kOk;
  });
}

qal::Status LoadCommandModel(CommandModel& model, const std::string& path, const ProjectNames& current,
                             qal::IQHost* host, const LoadPolicy& policy, Reporter& reporter) {
  CommandTarget target(model, host, reporter);
  const qal::Status status = LoadCoverageFile(path, current, policy, reporter, target);
  // The current range counts again once every section of the oldest form was taken.
  if (target.untyped() && qal::Succeeded(status)) model.RemoveAllWindows();
  return status;
}

}  // namespace coverage
