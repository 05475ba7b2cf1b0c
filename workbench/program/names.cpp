#include "workbench/program/names.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

namespace workbench {
namespace {

namespace fs = std::filesystem;
constexpr std::size_t kNameMost = 4096;

// The parameter list is the last pair of parentheses that stands outside every other.
std::string WithoutParameters(std::string name) {
  const std::size_t close = name.rfind(')');
  if (close == std::string::npos) return name;
  int depth = 0;
  for (std::size_t at = close + 1; at-- > 0;) {
    if (name[at] == ')') ++depth;
    if (name[at] == '(' && --depth == 0) {
      if (at == 0 || name.compare(at, 21, "(anonymous namespace)") == 0) return name;
      name.resize(at);
      return name;
    }
  }
  return name;
}

bool IsFile(const fs::path& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

std::string Absolute(const fs::path& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  return (error ? path : absolute).lexically_normal().string();
}

}  // namespace

std::string Demangled(std::string_view name) {
  if (name.substr(0, 2) != "_Z" || name.size() > kNameMost) return std::string(name);
  int status = 0;
  const std::unique_ptr<char, decltype(&std::free)> text(
      abi::__cxa_demangle(std::string(name).c_str(), nullptr, nullptr, &status), &std::free);
  return text != nullptr && status == 0 ? WithoutParameters(text.get()) : std::string(name);
}

std::string HexText(std::uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08x", value);
  return text;
}

std::string LocateSource(const std::string& recorded, const std::string& imageDirectory,
                         const ProgramOptions& options) {
  std::string slashed = recorded;
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  for (const SourcePathMap& map : options.sourcePaths) {
    if (map.from.empty() || slashed.compare(0, map.from.size(), map.from) != 0) continue;
    const fs::path moved = fs::path(map.to) / fs::path(slashed.substr(map.from.size())).relative_path();
    if (IsFile(moved)) return Absolute(moved);
  }
  const fs::path path = fs::path(slashed).lexically_normal();
  if (path.is_absolute() && IsFile(path)) return path.string();
  for (const std::string& directory : {imageDirectory, options.projectDirectory}) {
    if (directory.empty()) continue;
    fs::path tail = path.relative_path();
    while (!tail.empty()) {
      if (IsFile(fs::path(directory) / tail)) return Absolute(fs::path(directory) / tail);
      fs::path shorter;
      for (auto part = std::next(tail.begin()); part != tail.end(); ++part) shorter /= *part;
      tail = shorter;
    }
  }
  return path.string();
}

std::string ComparablePath(std::string_view path) {
  if (path.size() > 1 && path[1] == ':') path.remove_prefix(2);
  std::string slashed(path);
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  return fs::path(slashed).lexically_normal().string();
}

}  // namespace workbench
