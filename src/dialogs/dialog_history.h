#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/coverage_setting_dialog.h"
#include "platform/text.h"
#include "util/recent_list.h"

namespace coverage {

/// What the person gave before, remembered from one dialog, or one session, to the next. UI thread only.
struct DialogHistory {
  RecentList starts;
  RecentList ends;
  RecentList addresses;  ///< typed into Go To Address
  CoverageSettingDialog::LastTexts lastTexts;
  std::string coveragePath;                      ///< last used to save or load
  std::string loadPath;                          ///< file that the person chose to load last
  std::string sourcePath;                        ///< directory last used to open a source file
  std::string lastSourceFile;                    ///< of the last file window
  std::vector<std::string> recentCoverageFiles;  ///< saved in this session, oldest first
  std::vector<std::string> sessionCoverageFiles;
  std::array<bool, 3> sortedAscending{};  ///< by column, for all windows together

  /// A range that was opened.
  void NoteRange(std::uint32_t start, std::uint32_t end) {
    starts.Note(platform::Format("%x", start), start);
    ends.Note(platform::Format("%x", end), end);
  }
  /// The direction of the next sort by a column: it alternates.
  bool NextSortAscending(int column) {
    if (column < 0 || column >= static_cast<int>(sortedAscending.size())) return true;
    bool& ascending = sortedAscending[static_cast<std::size_t>(column)];
    ascending = !ascending;
    return ascending;
  }
};

}  // namespace coverage
