// Setting the current coverage range, as the command and the automation interface share it. UI thread only.
#pragma once

#include <cstdint>

#include "model/command_model.h"
#include "qal/types.h"

namespace coverage {

/// 0, or the automation status for what is wrong with the two addresses of a range.
qal::Status CheckRange(std::uint32_t start, std::uint32_t end);

/// Replaces the command windows and the current range by this one, which CheckRange accepted. False when the
/// debugger refused it.
bool ReplaceRange(CommandModel& model, std::uint32_t start, std::uint32_t end, Reporter& reporter);

}  // namespace coverage
