#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "model/command_model.h"
#include "model/coverage_instance.h"
#include "qal/columns.h"
#include "qal/program_services.h"
#include "view/line_mark_cache.h"
#include "view/range_index.h"

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

/// Where marks find what the windows cover.
class CoveredInstances {
 public:
  /// Every instance of every window: windows in the order of the table, instances in number order.
  virtual std::vector<CoverageInstance*> AllInstances() = 0;

 protected:
  ~CoveredInstances() = default;
};

enum class EditorColumn : std::uint8_t { kSource, kDisassembly };

/// Marks of the two editor columns: worked out when the IDE asks for a line, kept until the coverage changes.
/// A request looks only at the windows that hold its address. UI thread only.
class LineMarks {
 public:
  /// Everything is borrowed; the services may be null.
  LineMarks(CoveredInstances& windows, CommandModel& commands, qal::IQSource* source,
            qal::IQColumnService* columns);

  /// The column service's handles.
  void SetColumn(EditorColumn column, std::uint32_t handle);

  /// No mark: the line is inside no enabled range, or has no address. The line of the disassembly is an
  /// address.
  std::optional<std::int32_t> Mark(EditorColumn column, std::string_view file, std::uint32_t line);

  /// Marks at and after `from` move with their lines; `count` is negative for deleted lines.
  void Move(EditorColumn column, std::string_view file, std::uint32_t from, std::int32_t count);

  /// Drops all marks and has the lines of every file that had some asked for again. Instances and their
  /// ranges are looked up anew afterwards: to be called (or DropLineMarks) before an instance goes away.
  void Refresh();
  /// To be called before an instance goes away or gets another range; the marks stay.
  void ForgetInstances();
  /// Refresh, then has the columns brought up to date.
  void DropLineMarks();

 private:
  struct CommandRange {
    std::uint32_t number;
    std::uint64_t id;
  };

  std::optional<std::uint32_t> AddressOf(EditorColumn column, std::string_view file,
                                         std::uint32_t line) const;
  std::optional<std::int32_t> MarkOfAddress(std::uint32_t address);
  bool MarkFromInstances(std::uint32_t address, std::int32_t& mark);
  bool MarkFromStore(std::uint32_t address, std::int32_t& mark);
  bool MarkFromCommandWindows(std::uint32_t address, std::int32_t& mark);
  void RefreshFile(std::string_view file, std::uint32_t handle);

  CoveredInstances& windows_;
  CommandModel& commands_;
  qal::IQSource* source_;
  qal::IQColumnService* columns_;
  std::uint32_t handles_[2] = {0, 0};
  LineMarkCache caches_[2];

  bool instancesKnown_ = false;
  RangeIndex<CoverageInstance*> instances_;
  // The command windows that the index was made from: their number and the last one's store.
  std::uint32_t commandCount_ = 0;
  std::uint64_t lastCommandId_ = 0;
  RangeIndex<CommandRange> commandRanges_;
};

}  // namespace coverage
