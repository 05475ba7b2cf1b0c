#pragma once

#include <cstdint>

/// Identifiers of the component's resources other than texts.
namespace coverage::resource {

inline constexpr std::uint32_t kDialogCoverageRange = 207;
inline constexpr std::uint32_t kDialogCoverageSetting = 9003;
inline constexpr std::uint32_t kDialogGoToAddress = 9001;
inline constexpr std::uint32_t kDialogConfirmation = 9002;
inline constexpr std::uint32_t kDialogSaveCoverageData = 9062;
inline constexpr std::uint32_t kDialogSaveData = 9063;
inline constexpr std::uint32_t kDialogLoadData = 9064;
inline constexpr std::uint32_t kDialogEditTestCoverage = 2210;
inline constexpr std::uint32_t kDialogTestBigRange = 2222;

inline constexpr std::uint32_t kMenuControl = 201;
inline constexpr std::uint32_t kMenuPane = 202;
inline constexpr std::uint32_t kAccelerators = 9000;
inline constexpr std::uint32_t kToolbarCode = 203;
inline constexpr std::uint32_t kToolbarPane = 9073;
inline constexpr std::uint32_t kToolbarPaneLocked = 9074;
inline constexpr std::uint32_t kToolbarTest = 9089;

inline constexpr std::uint32_t kBitmapMarkMask = 9077;
/// The disassembly column's marks for image index 1, 2 and 3: taken, not taken, both.
inline constexpr std::uint32_t kBitmapMarks[] = {9079, 9080, 9081};
inline constexpr std::uint32_t kBitmapTestItems = 9083;  ///< two images of 16 by 16: a range, a source file
inline constexpr std::uint32_t kBitmapComponent = 9086;
inline constexpr std::uint32_t kBitmapTest = 9089;

}  // namespace coverage::resource
