#include "workbench/services/settings.h"

#include <nlohmann/json.hpp>

#include "platform/files.h"
#include "platform/text.h"
#include "workbench/services/json_file.h"

namespace workbench {

SettingsFile::SettingsFile(const std::string& file, std::string& warning)
    : file_(file), values_(std::make_unique<nlohmann::json>(nlohmann::json::object())) {
  warning.clear();
  if (file_.empty()) return;
  *values_ = ReadJsonFile(file_, warning);
  if (warning.empty()) return;
  if (const auto text = platform::ReadFile(file_)) {
    if (platform::ReplaceFile(file_ + ".bad", *text)) warning += "; it is kept with .bad behind its name";
  }
}

SettingsFile::~SettingsFile() = default;

std::optional<std::int64_t> SettingsFile::Number(const std::string& group, const std::string& key) const {
  const auto found = values_->find(platform::ToUtf8(group));
  if (found == values_->end() || !found->is_object()) return std::nullopt;
  const auto value = found->find(platform::ToUtf8(key));
  if (value == found->end() || !value->is_number_integer()) return std::nullopt;
  return value->get<std::int64_t>();
}

std::optional<std::string> SettingsFile::Text(const std::string& group, const std::string& key) const {
  const auto found = values_->find(platform::ToUtf8(group));
  if (found == values_->end() || !found->is_object()) return std::nullopt;
  const auto value = found->find(platform::ToUtf8(key));
  if (value == found->end() || !value->is_string()) return std::nullopt;
  return platform::FromUtf8(value->get<std::string>());
}

bool SettingsFile::SetNumber(const std::string& group, const std::string& key, std::int64_t value) {
  return Store(group, key, value);
}

bool SettingsFile::SetText(const std::string& group, const std::string& key, const std::string& value) {
  return Store(group, key, platform::ToUtf8(value));
}

bool SettingsFile::Store(const std::string& group, const std::string& key, const nlohmann::json& value) {
  auto& members = (*values_)[platform::ToUtf8(group)];
  if (!members.is_object()) members = nlohmann::json::object();
  auto& place = members[platform::ToUtf8(key)];
  if (place == value) return true;
  place = value;
  return Write();
}

bool SettingsFile::Erase(const std::string& group, const std::string& key) {
  const auto found = values_->find(platform::ToUtf8(group));
  if (found == values_->end() || !found->is_object() || found->erase(platform::ToUtf8(key)) == 0) return true;
  return Write();
}

bool SettingsFile::Write() const { return file_.empty() || WriteJsonFile(file_, *values_).empty(); }

}  // namespace workbench
