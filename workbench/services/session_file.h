#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace workbench {

/// A session on disk: {"version": 1, "components": {identifier: {key: text or number}}}. Product paths. Main
/// thread.

/// Reads the components' values. Gives the reason of a failure, which names the file, or an empty text;
/// `values` is set only then.
std::string ReadSessionFile(const std::string& file, nlohmann::json& values);

/// Replaces the file as a whole. Gives the reason of a failure, or an empty text.
std::string WriteSessionFile(const std::string& file, const nlohmann::json& values);

}  // namespace workbench
