#include "workbench/services/session_file.h"

#include <cstdint>
#include <nlohmann/json.hpp>

#include "platform/paths.h"
#include "workbench/services/json_file.h"

namespace workbench {
namespace {

constexpr std::int64_t kVersion = 1;
constexpr std::size_t kLongestText = 65'535;
constexpr std::size_t kLongestKey = 1000;
constexpr std::size_t kShownOfKey = 60;

std::string Shown(const std::string& key) {
  return key.size() <= kShownOfKey ? key : key.substr(0, kShownOfKey) + "...";
}

/// What is wrong with one value, or nothing.
std::string Complaint(const std::string& key, const nlohmann::json& value) {
  if (key.size() > kLongestKey) return Shown(key) + " is too long for a key";
  if (value.is_string()) {
    return value.get_ref<const std::string&>().size() <= kLongestText ? ""
                                                                      : Shown(key) + " is too long a text";
  }
  if (!value.is_number_integer()) return Shown(key) + " is neither a text nor a whole number";
  const bool fits = value.is_number_unsigned() ? value.get<std::uint64_t>() <= UINT32_MAX : false;
  return fits ? "" : Shown(key) + " is no number from 0 to 4294967295";
}

std::string Complaint(const nlohmann::json& session) {
  const auto version = session.find("version");
  if (version == session.end() || !version->is_number_integer()) return "it has no version";
  if (*version > kVersion) {
    return "it was written by a newer workbench (version " + version->dump() + "; this one reads " +
           std::to_string(kVersion) + ")";
  }
  if (*version != kVersion) return "there never was a version " + version->dump();
  const auto components = session.find("components");
  if (components == session.end() || !components->is_object()) return "components is missing or no object";
  for (const auto& [identifier, values] : components->items()) {
    if (!values.is_object()) return Shown(identifier) + " is no object";
    for (const auto& [key, value] : values.items()) {
      if (auto complaint = Complaint(key, value); !complaint.empty()) return complaint;
    }
  }
  return {};
}

}  // namespace

std::string ReadSessionFile(const std::string& file, nlohmann::json& values) {
  std::string error;
  auto session = ReadJsonFile(file, error);
  if (!error.empty()) return error;
  if (const auto complaint = Complaint(session); !complaint.empty()) {
    return platform::FilePart(file) + " is no session: " + complaint;
  }
  values = std::move(session["components"]);
  return {};
}

std::string WriteSessionFile(const std::string& file, const nlohmann::json& values) {
  return WriteJsonFile(file, {{"version", kVersion}, {"components", values}});
}

}  // namespace workbench
