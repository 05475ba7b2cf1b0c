#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/reporter.h"
#include "qal/types.h"

namespace qal {
struct IQHost;
}  // namespace qal

namespace coverage {

struct SourceFunction {
  std::string name;
  std::uint32_t start = 0;
  std::uint32_t end = 0;
};

/// The functions of a source file, as the debugger's symbols have them.
struct FileFunctions {
  enum class Outcome { kListed, kNoProgram, kRefused };
  Outcome outcome = Outcome::kNoProgram;
  qal::Status status = qal::kOk;  ///< of the refused listing
  std::vector<SourceFunction> functions;
};

/// Asks the source service's symbol table. kNoProgram when a service is missing, kRefused when the listing
/// fails; with `retryBareName` a refused path is tried again as its bare file name. UI thread only.
FileFunctions ListFileFunctions(qal::IQHost* host, std::string_view sourceFile, bool retryBareName);

/// Tells why the listing failed: "Program is not downloaded!", or that the debugger refused it. Nothing when
/// it succeeded.
void ReportListing(const FileFunctions& listing, Reporter& reporter);

}  // namespace coverage
