#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "model/coverage_model.h"
#include "qal/columns.h"
#include "qal/program_services.h"
#include "view/line_mark_cache.h"

namespace coverage {

/// What stands beside a line in the editors.
namespace line_mark {
inline constexpr std::int32_t kBoth = 3;  ///< executed, branch taken and not taken
inline constexpr std::int32_t kNotTaken = 4;
inline constexpr std::int32_t kTaken = 5;
inline constexpr std::int32_t kExecuted = 6;     ///< executed, no branch outcome
inline constexpr std::int32_t kNotExecuted = 9;  ///< inside an enabled range
}  // namespace line_mark

/// Text that the columns show for a mark: "T/F", "F", "T", "*", "-"; empty for any other value.
std::string_view MarkText(std::int32_t mark);

enum class EditorColumn : std::uint8_t { kSource, kDisassembly };

/// Marks of the two editor columns: worked out when the IDE asks for a line, kept until the coverage changes.
/// A request looks only at the windows that hold its address. UI thread only.
class LineMarks {
 public:
  /// Everything is borrowed; the services may be null.
  LineMarks(CoverageModel& model, qal::IQSource* source, qal::IQColumnService* columns);

  /// The column service's handles.
  void SetColumn(EditorColumn column, std::uint32_t handle);

  /// No mark: the line is inside no enabled range, or has no address. The line of the disassembly is an
  /// address.
  std::optional<std::int32_t> Mark(EditorColumn column, std::string_view file, std::uint32_t line);

  /// Marks at and after `from` move with their lines; `count` is negative for deleted lines.
  void Move(EditorColumn column, std::string_view file, std::uint32_t from, std::int32_t count);

  /// Drops all marks and has the lines of every file that had some asked for again.
  void Refresh();
  /// Refresh, then has the columns brought up to date.
  void DropLineMarks();

 private:
  std::optional<std::uint32_t> AddressOf(EditorColumn column, std::string_view file,
                                         std::uint32_t line) const;
  std::optional<std::int32_t> MarkOfAddress(std::uint32_t address);
  void RefreshFile(std::string_view file, std::uint32_t handle);

  CoverageModel& model_;
  qal::IQSource* source_;
  qal::IQColumnService* columns_;
  std::uint32_t handles_[2] = {0, 0};
  LineMarkCache caches_[2];
};

}  // namespace coverage
