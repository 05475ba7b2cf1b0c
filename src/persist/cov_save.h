// Saving a ".COV" file: the one flow from opening it to having it on the disk as a whole. UI thread only.
#pragma once

#include <functional>
#include <string>

#include "persist/cov_file.h"
#include "persist/cov_output.h"
#include "qal/types.h"

namespace coverage {

/// Writes the head, then what `sections` writes, and puts the file in the place of the one before. 0, the
/// status of `sections` (what it wrote so far is then kept), or automation::kCannotOpen: the file cannot be
/// written and is as it was.
qal::Status SaveCoverageFile(const std::string& path, const CovHeader& header, bool withFileLine,
                             const std::function<qal::Status(CovOutput&)>& sections);

}  // namespace coverage
