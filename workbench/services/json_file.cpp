#include "workbench/services/json_file.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/files.h"
#include "platform/paths.h"
#include "platform/text.h"

namespace workbench {
namespace {

constexpr std::size_t kLargestFile = 64u << 20;

/// Where the text stops to be JSON.
std::string PlaceOf(std::string_view text, std::size_t at) {
  if (at >= text.size()) return "it ends too early";
  const std::string_view before = text.substr(0, at);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const std::size_t lineBegin = before.rfind('\n') + 1;  // npos + 1 is 0
  return "line " + std::to_string(line) + ", column " + std::to_string(at - lineBegin + 1);
}

}  // namespace

nlohmann::json ReadJsonFile(const std::string& file, std::string& error) {
  error.clear();
  const auto fail = [&](const std::string& reason) {
    error = platform::FilePart(file) + " " + reason;
    return nlohmann::json::object();
  };
  if (!platform::PathExists(file)) return nlohmann::json::object();
  if (platform::IsDirectory(file)) return fail("is a directory");
  const auto text = platform::ReadFile(file, kLargestFile);
  if (!text) return fail("cannot be read or is larger than 64 MiB");
  try {
    auto value = nlohmann::json::parse(*text);
    return value.is_object() ? value : fail("is no JSON object");
  } catch (const nlohmann::json::parse_error& parseError) {
    return fail("is no JSON: " + PlaceOf(*text, parseError.byte == 0 ? 0 : parseError.byte - 1));
  } catch (const nlohmann::json::exception&) {
    return fail("holds a number beyond all bounds");
  }
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
