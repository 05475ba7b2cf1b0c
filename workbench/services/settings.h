#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

namespace workbench {

/// What the IDE remembers for its user between runs: one JSON file, written through at every change. Main
/// thread.
class SettingsFile {
 public:
  /// `file` is a product path; an empty one keeps everything in memory only. `warning` says what was wrong
  /// with the file; a file that is not understood is set aside under the same name with ".bad" behind it.
  SettingsFile(const std::string& file, std::string& warning);
  ~SettingsFile();
  SettingsFile(const SettingsFile&) = delete;
  SettingsFile& operator=(const SettingsFile&) = delete;

  /// Values by group ("numbers", "sections" …) and key.
  std::optional<std::int64_t> Number(const std::string& group, const std::string& key) const;
  std::optional<std::string> Text(const std::string& group, const std::string& key) const;
  /// False when the file cannot be written; the value is then kept in memory.
  bool SetNumber(const std::string& group, const std::string& key, std::int64_t value);
  bool SetText(const std::string& group, const std::string& key, const std::string& value);
  bool Erase(const std::string& group, const std::string& key);

 private:
  bool Store(const std::string& group, const std::string& key, const nlohmann::json& value);
  bool Write() const;

  std::string file_;
  std::unique_ptr<nlohmann::json> values_;
};

}  // namespace workbench
