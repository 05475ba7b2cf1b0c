#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace coverage {

/// Marks of one editor column that the IDE has asked for, per file and line, until the coverage changes.
/// File names are compared without regard to case. UI thread only.
class LineMarkCache {
 public:
  std::optional<std::int32_t> Find(std::string_view file, std::uint32_t line) const;
  void Store(std::string_view file, std::uint32_t line, std::int32_t mark);

  /// Lines were inserted (count > 0) at `from`, or deleted (count < 0) from it on: marks at and after `from`
  /// move with their lines; marks of lines that are gone, or would leave the line numbers, are dropped.
  void Move(std::string_view file, std::uint32_t from, std::int32_t count);

  /// Empties the cache and gives the (lower-case) names of the files it held, sorted.
  std::vector<std::string> TakeFiles();

 private:
  using Lines = std::map<std::uint32_t, std::int32_t>;
  std::unordered_map<std::string, Lines> files_;
};

}  // namespace coverage
