#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/paths.h"
#include "workbench/services/session_file.h"

/// Any bytes as a session's file: it is refused with a reason, or what it gives can be written and read
/// again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string native =
      (std::filesystem::temp_directory_path() / ("qal-fuzz-" + std::to_string(getpid()) + ".json")).string();
  static const std::string path = platform::FromNative(native);
  std::FILE* file = std::fopen(native.c_str(), "wb");
  if (file == nullptr) return 0;
  std::fwrite(data, 1, size, file);
  std::fclose(file);
  nlohmann::json values;
  if (workbench::ReadSessionFile(path, values).empty()) {
    nlohmann::json again;
    if (!workbench::WriteSessionFile(path, values).empty()) std::abort();
    if (!workbench::ReadSessionFile(path, again).empty() || again != values) std::abort();
  }
  std::remove(native.c_str());
  return 0;
}
