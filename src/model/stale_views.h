#pragma once

#include <cstdint>

namespace coverage {

/// How far the rows of a window are from what they should show; each level includes those before it.
enum class StaleRows : std::uint8_t {
  kNone,
  kRedraw,  ///< to be written again, unless the person has locked them
  kWrite,   ///< to be written again, locked or not
  kReset,   ///< to be emptied and written from the start of the range
};

/// What of one coverage window no longer shows the model as it is.
struct StaleWindow {
  bool lists = false;
  bool title = false;
  StaleRows rows = StaleRows::kNone;

  void MarkRows(StaleRows level) {
    if (level > rows) rows = level;
  }
  bool any() const { return lists || title || rows != StaleRows::kNone; }
};

/// The same of everything that is no window. The model sets these when its figures change; whoever brings one
/// of them up to date takes its mark off.
struct StaleViews {
  bool wanted = false;  ///< something was enabled, disabled, registered or removed: the switch is to be sent
  bool marks = false;   ///< of the editor columns
  bool reported = false;  ///< a report came: the marks become stale when percentages are computed
};

}  // namespace coverage
