#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace workbench {

/// JSON files of the workbench's own: read whole, replaced as a whole. Product paths. Main thread.

/// Reads an object. A missing file is an empty object. A file that cannot be read or is no object leaves
/// `error` set and gives an empty object.
nlohmann::json ReadJsonFile(const std::string& file, std::string& error);

/// Writes `value`, creating the directory when it is missing. Gives the reason of a failure, or an empty
/// text.
std::string WriteJsonFile(const std::string& file, const nlohmann::json& value);

/// `value[key]` as a text (system code page) or number when it is there and of that kind, else `fallback`.
std::string TextOf(const nlohmann::json& value, const std::string& key, const std::string& fallback = {});
std::int64_t NumberOf(const nlohmann::json& value, const std::string& key, std::int64_t fallback = 0);

/// Creates a directory and those above it. False when that fails.
bool CreateDirectories(const std::string& directory);

}  // namespace workbench
