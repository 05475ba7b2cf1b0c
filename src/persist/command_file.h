// Saving the command-line coverage model to a ".COV" file, and loading one into it. UI thread only.
#pragma once

#include <string>

#include "model/command_model.h"
#include "persist/cov_file.h"
#include "qal/types.h"

namespace coverage {

/// Statuses of the automation interface.
namespace automation {
inline constexpr qal::Status kNothing = static_cast<qal::Status>(0x80040A01u);        ///< no range
inline constexpr qal::Status kOutsideLimits = static_cast<qal::Status>(0x80040A02u);  ///< of the target
inline constexpr qal::Status kStartAboveEnd = static_cast<qal::Status>(0x80040A03u);
inline constexpr qal::Status kEmptyRange = static_cast<qal::Status>(0x80040A04u);
inline constexpr qal::Status kTooLarge = static_cast<qal::Status>(0x80040A05u);
inline constexpr qal::Status kOddStart = static_cast<qal::Status>(0x80040A06u);
inline constexpr qal::Status kRangeRefused = static_cast<qal::Status>(0x80040A07u);  ///< by the debugger
inline constexpr qal::Status kUnresolvedName = static_cast<qal::Status>(0x80040A08u);
inline constexpr qal::Status kInvalidTyped =
    static_cast<qal::Status>(0x80040A09u);  ///< file with a type line
inline constexpr qal::Status kCannotOpen = static_cast<qal::Status>(0x80040A0Au);
inline constexpr qal::Status kInvalidUntyped =
    static_cast<qal::Status>(0x80040A0Bu);  ///< file of the oldest form
inline constexpr qal::Status kWrongExtension = static_cast<qal::Status>(0x80040A0Cu);
inline constexpr qal::Status kNoDirectory = static_cast<qal::Status>(0x80040A0Du);
inline constexpr qal::Status kWindowMissing = static_cast<qal::Status>(0x80040A0Eu);
inline constexpr qal::Status kWindowWithoutData = static_cast<qal::Status>(0x80040A0Fu);
}  // namespace automation

/// For whom a file is loaded. A command shows in message boxes that the file belongs to another project or
/// configuration and goes on where that is allowed; automation shows nothing and is stricter.
enum class LoadFor { kCommand, kAutomation };

/// Writes the windows, or the current range when there is none. 0 or an automation status; a failed write
/// leaves the file as far as it came, a file that cannot be opened stays as it was.
qal::Status SaveCommandModel(CommandModel& model, const std::string& path, const ProjectNames& current,
                             qal::IQHost* host);

/// Reads a file into the model. 0 or an automation status; what was read before a failure stays.
qal::Status LoadCommandModel(CommandModel& model, const std::string& path, const ProjectNames& current,
                             qal::IQHost* host, LoadFor whom);

}  // namespace coverage
