// Saving the command-line coverage stores to a ".COV" file, and loading one into them. UI thread only.
#pragma once

#include <string>

#include "model/command_model.h"
#include "persist/automation_status.h"
#include "persist/cov_file.h"
#include "persist/cov_load.h"
#include "qal/types.h"

namespace coverage {

/// Writes the windows, or the current range when there is none. 0 or an automation status; after one that
/// says that a window is missing or has no data, the file holds what was written so far.
qal::Status SaveCommandModel(CommandModel& model, const std::string& path, const ProjectNames& current,
                             qal::IQHost* host);

/// Reads a file into the stores. 0 or an automation status; what was read before a failure stays.
qal::Status LoadCommandModel(CommandModel& model, const std::string& path, const ProjectNames& current,
                             qal::IQHost* host, const LoadPolicy& policy, Reporter& reporter);

}  // namespace coverage
