#pragma once

#include <cstdint>
#include <string>

namespace workbench {

/// Whoever sits in front of the IDE: the console, or the desktop. Main thread.
class IdeUser {
 public:
  virtual ~IdeUser() = default;
  /// Something happened that the person did not ask for.
  virtual void Notice(const std::string& text) = 0;
  /// Asked from time to time during a run: whether the person wants it to end. Answers true once.
  virtual bool StopAsked() = 0;
  /// The component asks for a source line or an address to be shown.
  virtual void ShowSource(const std::string& file, std::uint32_t line) = 0;
  virtual void ShowAddress(std::uint32_t address) = 0;
};

}  // namespace workbench
