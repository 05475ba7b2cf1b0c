#pragma once

#include "model/reporter.h"
#include "qal/host.h"

namespace coverage {

/// Shows what is reported in message boxes: refusals in the debugger's own words with the exclamation icon
/// (nothing when it has none), texts with the information icon. UI thread only.
class MessageReporter final : public Reporter {
 public:
  /// `host` is borrowed and may be null.
  explicit MessageReporter(qal::IQHost* host) : host_(host) {}

  void Refused(qal::Status status) override;
  void Inform(std::uint32_t textId) override;

 private:
  qal::IQHost* host_;
};

}  // namespace coverage
