#pragma once

#include <cstdint>

#include "qal/types.h"

namespace coverage {

/// Told what a person should know, at the moment at which it is due. What is done about it (a message box, or
/// nothing) is the implementation's business. UI thread only.
class Reporter {
 public:
  /// The debugger refused something with this status: its own text for it is due.
  virtual void Refused(qal::Status status) = 0;
  /// A text of the string table is due.
  virtual void Inform(std::uint32_t textId) = 0;

 protected:
  ~Reporter() = default;
};

/// For callers that learn everything from a status.
class SilentReporter final : public Reporter {
 public:
  void Refused(qal::Status) override {}
  void Inform(std::uint32_t) override {}
};

}  // namespace coverage
