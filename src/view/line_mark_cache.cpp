#include "view/line_mark_cache.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/text.h"

namespace coverage {

std::optional<std::int32_t> LineMarkCache::Find(std::string_view file, std::uint32_t line) const {
  const auto lines = files_.find(platform::ToLower(file));
  if (lines == files_.end()) return std::nullopt;
  const auto mark = lines->second.find(line);
  if (mark == lines->second.end()) return std::nullopt;
  return mark->second;
}

void LineMarkCache::Store(std::string_view file, std::uint32_t line, std::int32_t mark) {
  files_[platform::ToLower(file)][line] = mark;
}

void LineMarkCache::Move(std::string_view file, std::uint32_t from, std::int32_t count) {
  const auto found = files_.find(platform::ToLower(file));
  if (found == files_.end() || count == 0) return;
  Lines& lines = found->second;
  const std::uint64_t firstKept = count < 0 ? std::uint64_t{from} - count : from;

  Lines moved;
  for (auto entry = lines.lower_bound(from); entry != lines.end(); ++entry) {
    if (entry->first < firstKept) continue;
    const std::int64_t line = std::int64_t{entry->first} + count;
    if (line <= std::numeric_limits<std::uint32_t>::max()) {
      moved.emplace(static_cast<std::uint32_t>(line), entry->second);
    }
  }
  lines.erase(lines.lower_bound(from), lines.end());
  lines.merge(moved);
}

std::vector<std::string> LineMarkCache::TakeFiles() {
  std::vector<std::string> names;
  names.reserve(files_.size());
  for (const auto& [name, lines] : files_) names.push_back(name);
  files_.clear();
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace coverage
