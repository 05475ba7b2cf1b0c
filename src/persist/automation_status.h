#pragma once

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

}  // namespace coverage
