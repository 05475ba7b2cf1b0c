#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/coverage_instance.h"
#include "model/stale_views.h"
#include "qal/types.h"
#include "util/numbered.h"

namespace coverage {

enum class WindowKind : std::uint32_t { kRange = 0, kFile = 1 };

/// One coverage window as its records: what the statistics pane lists and files are written from. Owns its
/// instances; a handler that waits for a person keeps the one that it works on alive as well. UI thread only.
struct CoverageWindow {
  using Instances = Numbered<std::shared_ptr<CoverageInstance>>;

  WindowKind kind = WindowKind::kRange;
  std::uint32_t start = 0;  ///< of the range that opened it; 0 for a file
  std::uint32_t end = 0;
  std::string sourceFile;                  ///< full path, of a file window
  std::string typedSourceFile;             ///< as typed, placeholders unexpanded
  qal::WindowHandle frame = 0;             ///< the IDE's, around both panes
  std::string viewKey;                     ///< where the IDE keeps the window in its layout
  std::vector<std::string> functionNames;  ///< of a file, in the order of the debugger
  Instances instances;                     ///< dense from 1
  std::vector<FunctionStat> stats;         ///< element k - 1 for instance k
  bool open = false;                       ///< in the model's table
  StaleWindow stale;

  bool isFile() const { return kind == WindowKind::kFile; }
  /// The instance whose rows are shown, or null: there is none when no range is registered.
  CoverageInstance* Displayed() const;
  /// Instance of a number, or null; number of an instance, 0 when it is not listed here.
  std::shared_ptr<CoverageInstance> Instance(std::uint32_t number) const;
  std::uint32_t NumberOf(const CoverageInstance& instance) const;

  /// Takes a new snapshot of every instance; a number that is missing leaves an empty element.
  void TakeStats();
};

}  // namespace coverage
