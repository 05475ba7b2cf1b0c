// Names as a person reads them: demangled symbols, addresses, paths of sources.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "workbench/program/program.h"

namespace workbench {

/// A C++ name without its parameters; any other name as it is. A name too long to be sensible is not
/// demangled.
std::string Demangled(std::string_view name);

/// "0x" and 8 digits.
std::string HexText(std::uint32_t value);

/// The host path of a source that the image records as `recorded`: below the mapped directories, where the
/// record says, or by its longest tail that exists below the image's directory or the project's. `recorded`
/// itself when none does.
std::string LocateSource(const std::string& recorded, const std::string& imageDirectory,
                         const ProgramOptions& options);

/// Slashes for backslashes, no drive letter, no "." and "..": for comparing names of sources.
std::string ComparablePath(std::string_view path);

}  // namespace workbench
