#include "workbench/services/json_file.h"

#include <nlohmann/json.hpp>

#include "platform/files.h"
#include "platform/paths.h"
#include "platform/text.h"

namespace workbench {
namespace {

constexpr std::size_t kLargestFile = 16u << 20;

}  // namespace

nlohmann::json ReadJsonFile(const std::string& file, std::string& error) {
  error.clear();
  if (!platform::PathExists(file)) return nlohmann::json::object();
  const auto text = platform::ReadFile(file, kLargestFile);
  if (!text) {
    error = platform::FilePart(file) + " cannot be read or is larger than 16 MiB";
    return nlohmann::json::object();
  }
  auto value = nlohmann::json::parse(*text, nullptr, false);
  if (value.is_object()) return value;
  error = platform::FilePart(file) + " is no JSON object";
  return nlohmann::json::object();
}

bool CreateDirectories(const std::string& directory) {
  if (directory.empty() || platform::IsDirectory(directory)) return true;
  const std::string above = platform::DirectoryPart(platform::WithoutTrailingSeparator(directory));
  if (above.size() >= directory.size() || !CreateDirectories(above)) return false;
  return platform::CreateDirectory(directory);
}

std::string WriteJsonFile(const std::string& file, const nlohmann::json& value) {
  if (!CreateDirectories(platform::DirectoryPart(file))) {
    return "the directory of " + platform::FilePart(file) + " cannot be created";
  }
  const std::string text = value.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
  std::string error;
  if (platform::ReplaceFile(file, text, &error)) return {};
  return platform::FilePart(file) + ": " + error;
}

std::string TextOf(const nlohmann::json& value, const std::string& key, const std::string& fallback) {
  const auto found = value.find(key);
  return found != value.end() && found->is_string() ? platform::FromUtf8(found->get<std::string>())
                                                    : fallback;
}

std::int64_t NumberOf(const nlohmann::json& value, const std::string& key, std::int64_t fallback) {
  const auto found = value.find(key);
  return found != value.end() && found->is_number_integer() ? found->get<std::int64_t>() : fallback;
}

}  // namespace workbench
