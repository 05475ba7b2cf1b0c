#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/coverage_instance.h"
#include "util/numbered.h"

namespace coverage {

enum class WindowKind : std::uint32_t { kRange = 0, kFile = 1 };

/// One coverage window as its records: what the statistics pane lists and files are written from. Instances
/// belong to their data panes. UI thread only.
struct CoverageWindow {
  WindowKind kind = WindowKind::kRange;
  std::uint32_t start = 0;  ///< of the range that opened it; 0 for a file
  std::uint32_t end = 0;
  std::string sourceFile;                 ///< full path, of a file window
  std::string typedSourceFile;            ///< as typed, placeholders unexpanded
  Numbered<CoverageInstance*> instances;  ///< dense from 1; borrowed
  std::vector<FunctionStat> stats;        ///< element k - 1 for instance k

  /// Takes a new snapshot of every instance; a number that is missing leaves an empty element.
  void TakeStats();
};

}  // namespace coverage
