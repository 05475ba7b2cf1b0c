#pragma once

#include <algorithm>
#include <concepts>
#include <string>
#include <string_view>
#include <type_traits>

#include "doubles/call_log.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "qal/ids.h"
#include "qal/unknown.h"

/// What all doubles share: three basic operations that do nothing, and the writing of calls.
namespace doubles {

using qal::Flag;
using qal::Guid;
using qal::Status;
using qal::Variant;
using qal::WideText;
using Number = std::uint32_t;

/// An address in a log line.
struct Hex {
  Number value;
};

/// "{XXXXXXXX-…}" of an identifier, or the short name of one that the component registers things under.
inline std::string Describe(const Guid& id) {
  static constexpr struct {
    Guid id;
    const char* name;
  } kNames[] = {
      {qal::kClassId, "class"},
      {qal::iid::kDebugActivitySink, "activity"},
      {qal::iid::kWorkSpaceClient, "workspace"},
      {qal::iid::kWorkSpaceClient2, "workspace2"},
      {qal::iid::kFormatViewSink, "format"},
      {qal::iid::kCoverageAutomation, "automation"},
      {qal::iid::kCmdClient, "command"},
      {qal::iid::kCmdClient2, "command2"},
      {qal::iid::kCoverageTestClient, "test"},
      {qal::iid::kSessionData, "session"},
      {qal::iid::kPathCoverage, "path"},
      {qal::iid::kSource, "source"},
      {qal::iid::kExpression, "expression"},
      {qal::iid::kModules, "modules"},
      {qal::iid::kMessageOptions, "options"},
      {qal::iid::kCommandRegistry, "registry"},
      {qal::iid::kColumnService, "columns"},
      {qal::id::kColumnRegistration, "column"},
      {qal::id::kColumnSetting, "setting"},
      {qal::id::kMessageCategory, "messages"},
  };
  for (const auto& [known, name] : kNames) {
    if (known == id) return name;
  }
  const auto* d = id.data4;
  return platform::Format("{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", id.data1, id.data2, id.data3,
                          d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
}
inline std::string Describe(const Guid* id) { return id ? Describe(*id) : "null"; }
inline std::string Describe(Hex address) { return platform::Format("0x%x", address.value); }
inline std::string Describe(WideText text) { return text ? '"' + platform::Narrow(text) + '"' : "null"; }
inline std::string Describe(const std::string& text) { return '"' + text + '"'; }
inline std::string Describe(std::integral auto number) { return std::to_string(number); }
inline std::string Describe(const Variant* list) {
  if (!list) return "null";
  std::string text = "[";
  if (const auto ids = platform::IdListOf(list)) {
    for (const auto id : *ids) text += (text.size() > 1 ? " " : "") + std::to_string(id);
  }
  if (const auto texts = platform::TextListOf(list)) {
    for (const auto& each : *texts) text += (text.size() > 1 ? " " : "") + each;
  }
  return text + "]";
}

/// An interface that answers neutrally. Without a log nothing is written down.
template <class InterfaceType>
class Double : public InterfaceType {
 public:
  using Interface = InterfaceType;

  Double() = default;
  explicit Double(CallLog& log) : log_(&log) {}
  explicit Double(CallLog* log) : log_(log) {}
  virtual ~Double() = default;
  Double(const Double&) = delete;
  Double& operator=(const Double&) = delete;

  Status QueryInterface(const Guid*, void** out) override {
    *out = nullptr;
    return qal::kNoInterface;
  }
  Number AddRef() override { return 1; }
  Number Release() override { return 0; }

 protected:
  /// Writes "name(argument, …)" and gives kOk, or kFail when the log was told to fail this call.
  template <class... Arguments>
  Status Log(std::string_view name, const Arguments&... arguments) {
    if (!log_) return qal::kOk;
    std::string line(name);
    line += '(';
    [[maybe_unused]] bool first = true;
    ((line += (first ? "" : ", ") + Describe(arguments), first = false), ...);
    return log_->Add(line + ')');
  }
  /// The same for calls of which there are too many to write down.
  Status Pass(std::string_view name) { return log_ ? log_->Pass(name) : qal::kOk; }

 private:
  CallLog* log_ = nullptr;
};

/// A name as a template argument.
template <std::size_t kSize>
struct Name {
  consteval Name(const char (&from)[kSize]) { std::copy_n(from, kSize, text); }
  char text[kSize];
};

/// One that is offered under its own identifier; the name stands before each of its calls.
template <class InterfaceType, const Guid& kId, Name kName>
struct Service : Double<InterfaceType> {
  static constexpr Guid kService = kId;
  using Double<InterfaceType>::Double;

 protected:
  template <class... Arguments>
  Status Log(std::string_view name, const Arguments&... arguments) {
    return Double<InterfaceType>::Log(kName.text + ("." + std::string(name)), arguments...);
  }
};

/// Gives a text out, unless the status is a failure; then null.
inline Status Give(Status status, char16_t** out, std::string_view text) {
  *out = qal::Failed(status) ? nullptr : platform::NewWide(text);
  return status;
}

/// Gives a value out, unless the status is a failure.
template <class Value>
Status Give(Status status, Value* out, std::type_identity_t<Value> value) {
  if (qal::Succeeded(status)) *out = value;
  return status;
}

}  // namespace doubles
