#include "persist/command_file.h"

#include <optional>

#include "model/disassembly_cache.h"
#include "model/file_functions.h"
#include "persist/cov_output.h"
#include "persist/cov_reader.h"
#include "persist/section_writer.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/text.h"
#include "util/placeholder_resolver.h"
#include "util/texts.h"

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
  StoreSink(CommandModel& model, qal::IQHost* host) : model_(model), host_(host) {}

  void Rows(std::span<const qal::CountPair> counts, std::span<const qal::CountPair> pass) final {
    store_->AddRows(counts, pass);
  }
  /// Why reading stopped; 0 when it did not.
  qal::Status status() const { return status_; }

 protected:
  Take Stop(qal::Status status) {
    status_ = status;
    return Take::kStop;
  }
  Take RowsTo(CoverageCounts& store, const CovSection& section) {
    store_ = &store;
    store.SetActive(section.enableStatus);
    return Take::kRows;
  }

  CommandModel& model_;
  qal::IQHost* host_;
  CellBudget budget_;

 private:
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
    if (!budget_.Take(start, end) || model_.SetStoreRange(start, end) == 0)
      return Stop(automation::kRangeRefused);
    model_.SetStoreEnabled(section.enableStatus != 0);
    return RowsTo(model_.commandStore(), section);
  }
};

/// Sections of a range file: each one becomes a window of its own, or that of a function of the file it
/// names.
class NewWindowSink final : public StoreSink {
 public:
  NewWindowSink(CommandModel& model, qal::IQHost* host, LoadFor whom) : StoreSink(model, host), whom_(whom) {}

  Take BeginSection(const CovSection& section) override {
    if (!section.fileName.empty()) return BeginFunction(section);
    if (!budget_.Take(section.start, section.end)) return Take::kSkip;
    return RowsTo(*model_.AddWindow(section.start, section.end, section.functionName).counts, section);
  }

 private:
  Take BeginFunction(const CovSection& section) {
    const std::string sourceFile = PlaceholderResolver(host_).ExpandPlaceholders(section.fileName);
    const FileFunctions listing = ListFileFunctions(host_, sourceFile, false);
    if (listing.outcome != FileFunctions::Outcome::kListed) {
      if (whom_ == LoadFor::kCommand) ShowListingFailure(host_, listing);
      return Take::kSkip;
    }
    for (const SourceFunction& function : listing.functions) {
      if (platform::EqualNoCase(function.name, section.functionName) &&
          budget_.Take(function.start, function.end)) {
        model_.AddWindow(function.start, function.end, function.name);
      }
    }
    const std::uint32_t number = model_.WindowOfFunction(section.functionName);
    if (number == 0) return Stop(automation::kInvalidTyped);
    return RowsTo(*model_.FirstEntry(number)->counts, section);
  }

  LoadFor whom_;
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

/// Whether a file of another project or configuration is loaded all the same. A command says so in a box.
bool GoesOn(ProjectMatch match, CovType type, LoadFor whom) {
  if (match == ProjectMatch::kSame) return true;
  const bool untyped = type == CovType::kUntyped;
  if (whom == LoadFor::kAutomation) return match == ProjectMatch::kConfigurationDiffers && !untyped;
  if (match == ProjectMatch::kConfigurationDiffers) {
    platform::ShowMessageBox(Text(strings::kOtherConfigurationLoaded), platform::Icon::kInformation);
    return true;
  }
  platform::ShowMessageBox(Text(untyped ? strings::kOtherProjectLoaded : strings::kOtherProjectRefused),
                           platform::Icon::kInformation);
  return untyped;
}

}  // namespace

qal::Status SaveCommandModel(CommandModel& model, const std::string& path, const ProjectNames& current,
                             qal::IQHost* host) {
  const bool hasWindows = model.windowCount() != 0;
  if (!hasWindows && !model.commandStore().registered()) return automation::kNothing;
  platform::TextWriter file;
  if (!file.Open(path)) return automation::kCannotOpen;
  CovOutput out(file);
  CovHeader header{current.configuration, current.project, CovType::kRange, {}};
  DisassemblyCache cache;
  qal::Status status = qal::kOk;
  if (hasWindows) {
    header.fileName = model.filePath();
    if (!header.fileName.empty()) header.type = CovType::kFile;
    out.Header(header, header.type == CovType::kFile);
    status = WriteWindows(out, model, header.type, host, cache);
  } else {
    out.Header(header, false);
    CoverageCounts& store = model.commandStore();
    WriteStore(out, kWindowSection, 1, store, store.active(), {}, host, cache);
  }
  out.Finish();
  if (!file.Close() && qal::Succeeded(status)) status = automation::kCannotOpen;
  return status;
}

qal::Status LoadCommandModel(CommandModel& model, const std::string& path, const ProjectNames& current,
                             qal::IQHost* host, LoadFor whom) {
  platform::TextReader file;
  if (!file.Open(path)) return automation::kCannotOpen;
  CovReader reader(file);
  CovHeader header;
  const bool valid = reader.ReadHeader(header);
  const bool untyped = header.type == CovType::kUntyped;
  const qal::Status invalid = untyped ? automation::kInvalidUntyped : automation::kInvalidTyped;
  if (!valid || !GoesOn(CompareProject(header, current), header.type, whom)) return invalid;

  if (untyped) {
    CurrentRangeSink sink(model, host);
    reader.ReadSections(header.type, SectionFileLine::kNone, sink);
    if (qal::Succeeded(sink.status())) model.RemoveAllWindows();
    return sink.status();
  }
  model.RemoveAllWindows();
  model.ClearStore();
  if (header.type == CovType::kRange) {
    NewWindowSink sink(model, host, whom);
    reader.ReadSections(header.type, SectionFileLine::kAllowed, sink);
    return sink.status();
  }
  const std::string sourceFile = PlaceholderResolver(host).ExpandPlaceholders(header.fileName);
  if (!model.OpenFile(sourceFile, whom == LoadFor::kAutomation)) return automation::kInvalidTyped;
  FunctionSink sink(model, host);
  reader.ReadSections(CovType::kFile, SectionFileLine::kAllowed, sink);
  return sink.status();
}

}  // namespace coverage
