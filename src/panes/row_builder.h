#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "formatview/report_list.h"
#include "model/coverage_instance.h"
#include "model/disassembly_cache.h"
#include "qal/host.h"
#include "qal/program_services.h"

namespace coverage {

/// Columns of a data pane's list.
enum CoverageColumn : int { kTimesColumn, kPassColumn, kAddressColumn, kAssemblerColumn, kSourceColumn };

/// Tabs as blanks up to the next multiple of 4 bytes. Of 255 bytes or more, "..." stands for the characters
/// that bytes 252 to 254 belong to.
std::string SourceColumnText(std::string_view line);

/// Fills a data pane's list with the rows around the place that is looked at. The list has a row for each
/// instruction that the range is thought to hold, but only those that were looked at have texts. Services are
/// looked up when the builder is made: make one for each pass. UI thread only.
class RowBuilder {
 public:
  /// Everything is borrowed; `host` may be null.
  RowBuilder(qal::IQHost* host, CoverageInstance& instance, DisassemblyCache& cache, CUiReportListCtrl& list,
             int rowsPerPage);

  /// Writes rows `firstRow` to `firstRow` + `rowCount`; -1 stands for the top row and for a page. `rewrite`
  /// writes all columns; without it a row that shows the instruction's address keeps what does not count. A
  /// `fromAddress` of 0 is none. Gives the address behind the last row written.
  std::uint32_t Build(bool rewrite, std::uint32_t fromAddress, int firstRow, int rowCount);

  /// The number that the debugger reads in a row's address column; none without the debugger's expressions.
  std::optional<std::uint32_t> AddressOfRow(int row) const;

 private:
  std::uint32_t StartAddress(std::uint32_t fromAddress, int& firstRow, int& rowCount) const;
  bool ShowsAddressOf(int row, const Instruction& instruction) const;
  void WriteCode(int row, const Instruction& instruction);
  void WriteCounters(int row, std::uint32_t address);
  std::string AddressTextOf(const Instruction& instruction) const;
  std::string SourceTextAt(std::uint32_t address) const;
  void FitRowCount(int nextRow, int pageEnd, std::uint64_t address);

  CoverageInstance& instance_;
  DisassemblyCache& cache_;
  CUiReportListCtrl& list_;
  int rowsPerPage_;
  InstructionReader reader_;
  CoverageRow counters_;  ///< texts of the row that is written
  qal::IQExpression* expressions_;
  qal::IQAddressText* addressTexts_;
  qal::IQSource* source_;
};

}  // namespace coverage
