#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "formatview/format_view_ctrl.h"
#include "model/coverage_window.h"

namespace coverage {

class CJepCoverageInstanceCtrlCovData;
class CJepCoverageInstanceCtrlStatData;

/// One open coverage window. Its statistics pane is its identity; everything is borrowed from the panes.
struct OpenWindow {
  CJepCoverageInstanceCtrlStatData* statistics = nullptr;
  CoverageWindow* record = nullptr;
  DisplayClient* display = nullptr;                                 ///< what font and colours are applied to
  std::map<std::uint32_t, CJepCoverageInstanceCtrlCovData*> panes;  ///< by instance number
};

/// The open windows, in the order in which they were opened. UI thread only.
using WindowTable = std::vector<OpenWindow>;

/// Most windows that the open command opens; at that many only ranges can be added to a range window.
inline constexpr std::size_t kMostWindows = 10;

}  // namespace coverage
