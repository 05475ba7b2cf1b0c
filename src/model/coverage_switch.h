#pragma once

#include <span>

#include "model/command_model.h"
#include "model/coverage_instance.h"

namespace qal {
struct IQHost;
}  // namespace qal

namespace coverage {

/// Whether any coverage is wanted: the command-line model is enabled; or, with command windows, the first
/// entry of one of them is active; or, without any, some instance is enabled. UI thread only.
bool CoverageWanted(const CommandModel& commands, std::span<CoverageInstance* const> instances);

/// Tells the path-coverage service, else the count-coverage service, else nobody.
void UpdateCoverageSwitch(qal::IQHost* host, bool wanted);

}  // namespace coverage
