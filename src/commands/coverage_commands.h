// The five coverage commands. Each fails with a message as its result text. UI thread only.
#pragma once

#include <string>

#include "commands/coverage_command.h"
#include "commands/display_worker.h"

namespace coverage {

class CArgKeyword;
class CArgNumberUnsigned;

/// "coverage": enables, disables, clears and reports the current range or the command windows.
class CStateCommand final : public CCoverageCommand {
 public:
  explicit CStateCommand(CommandHost& owner);
  qal::Status DoCommand(const std::string& line, std::string& result, std::uint32_t& more) override;

 private:
  void ActOnRange(std::int32_t state, std::string& result);
  void ActOnWindow(std::uint32_t number, std::int32_t state);
};

/// "coverage_range": sets the current range, opens the functions of a source file, or lists what there is.
class CRangeCommand final : public CCoverageCommand {
 public:
  explicit CRangeCommand(CommandHost& owner);
  qal::Status DoCommand(const std::string& line, std::string& result, std::uint32_t& more) override;

 private:
  qal::Status OpenFile(const std::string& typed, std::string_view rest, std::string& result);
  qal::Status SetRange(std::uint32_t start, std::uint32_t end, std::string_view rest, std::string& result);
  qal::Status List(std::string& result);
};

/// "coverage_display": lists the instructions with their counts on a thread of its own.
class CDisplayCommand final : public CCoverageCommand {
 public:
  explicit CDisplayCommand(CommandHost& owner);
  qal::Status DoCommand(const std::string& line, std::string& result, std::uint32_t& more) override;
  /// Stops every listing at its next instruction.
  qal::Status CancelCommand() override;

 private:
  DisplayWorkers workers_;
};

/// "coverage_save": writes the current range or the command windows to a file.
class CSaveCommand final : public CCoverageCommand {
 public:
  explicit CSaveCommand(CommandHost& owner);
  qal::Status DoCommand(const std::string& line, std::string& result, std::uint32_t& more) override;
};

/// "coverage_load": reads a file into the current range or into command windows.
class CLoadCommand final : public CCoverageCommand {
 public:
  explicit CLoadCommand(CommandHost& owner);
  qal::Status DoCommand(const std::string& line, std::string& result, std::uint32_t& more) override;
};

}  // namespace coverage
