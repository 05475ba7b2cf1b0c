#pragma once

#include <deque>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

/// Where console lines come from. Used on the main thread only.
class LineSource {
 public:
  virtual ~LineSource() = default;

  /// The next line without its line end, or nothing at the end. Throws std::runtime_error when a line cannot
  /// be read.
  virtual std::optional<std::string> Next(const std::string& prompt) = 0;

  /// Whether a person types the lines, so that they need not be echoed and errors do not end the run.
  virtual bool Interactive() const = 0;
};

/// Lines given one by one, then those of a stream (none when `stream` is null). Lines above 64 KiB are
/// refused.
std::unique_ptr<LineSource> ScriptLines(std::vector<std::string> lines, std::unique_ptr<std::istream> stream);

/// A line editor on the terminal with history in `historyFile` (an operating-system path; empty for none).
std::unique_ptr<LineSource> EditedLines(const std::string& historyFile);

}  // namespace workbench
