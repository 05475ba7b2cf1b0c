#include "model/file_functions.h"

#include "model/services.h"
#include "platform/text.h"
#include "qal/all.h"
#include "string_ids.h"

namespace coverage {

namespace {

/// Names belong to zero-terminated records of the symbol table, not to blocks with a length.
std::string NameOf(const char16_t* name) {
  return name != nullptr ? platform::Narrow(std::u16string_view(name)) : std::string();
}

qal::IQSymbolTable* FindSymbols(qal::IQHost* host) {
  auto* source = FindService<qal::IQSource>(host, qal::iid::kSource);
  if (source == nullptr) return nullptr;
  std::uint32_t address = 0;
  if (auto* start = FindService<qal::IQTraceStart>(host, qal::iid::kTraceStart)) {
    if (qal::Failed(start->GetAddress(0, &address))) address = 0;
  }
  qal::IQUnknown* object = nullptr;
  void* symbols = nullptr;
  if (qal::Failed(source->GetSymbolTable(address, &object)) || object == nullptr ||
      qal::Failed(object->QueryInterface(&qal::iid::kSymbolTable, &symbols))) {
    return nullptr;
  }
  return static_cast<qal::IQSymbolTable*>(symbols);
}

}  // namespace

FileFunctions ListFileFunctions(qal::IQHost* host, std::string_view sourceFile, bool retryBareName) {
  FileFunctions listing;
  qal::IQSymbolTable* const symbols = FindSymbols(host);
  if (symbols == nullptr) return listing;
  const qal::FunctionRecord* records = nullptr;
  std::uint32_t count = 0;
  const auto ask = [&](std::string_view file) {
    return symbols->GetFileFunctions(platform::Wide(file).get(), &records, &count);
  };
  listing.status = ask(sourceFile);
  const std::size_t slash = platform::FindLastBackslash(sourceFile);
  if (qal::Failed(listing.status) && retryBareName && slash != std::string_view::npos) {
    listing.status = ask(sourceFile.substr(slash + 1));
  }
  if (qal::Failed(listing.status)) {
    listing.outcome = FileFunctions::Outcome::kRefused;
    return listing;
  }
  listing.outcome = FileFunctions::Outcome::kListed;
  for (std::uint32_t i = 0; records != nullptr && i < count; ++i) {
    listing.functions.push_back({NameOf(records[i].name), records[i].start, records[i].end});
  }
  return listing;
}

void ReportListing(const FileFunctions& listing, Reporter& reporter) {
  if (listing.outcome == FileFunctions::Outcome::kNoProgram) {
    reporter.Inform(strings::kProgramNotDownloaded);
  } else if (listing.outcome == FileFunctions::Outcome::kRefused) {
    reporter.Refused(listing.status);
  }
}

}  // namespace coverage
