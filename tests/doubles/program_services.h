#pragma once

#include <cstring>
#include <map>
#include <optional>
#include <string>

#include "doubles/double.h"
#include "qal/program_services.h"

/// The program under the debugger when there is none: everything fails or is empty until a test says
/// otherwise.
namespace doubles {

struct StubSource : Service<qal::IQSource, qal::iid::kSource, "source"> {
  using Service::Service;
  /// Null: no program is downloaded.
  qal::IQSymbolTable* symbols = nullptr;

  Status GetSymbolTable(Number address, qal::IQUnknown** table) override {
    const auto status = Log("GetSymbolTable", Hex{address});
    *table = qal::Failed(status) ? nullptr : symbols;
    return *table ? status : qal::kFail;
  }
  Status AddressToLine(Number address, char16_t** file, Number*) override {
    *file = nullptr;
    return Log("AddressToLine", Hex{address}), qal::kFail;
  }
  Status LineToAddress(WideText file, Number line, Number*) override {
    return Log("LineToAddress", file, line), qal::kFail;
  }
  Status GetLineText(WideText file, Number line, char16_t** text) override {
    *text = nullptr;
    return Log("GetLineText", file, line), qal::kFail;
  }
};

/// Gives "0x00001000" for an address that has no name.
struct StubAddressText : Service<qal::IQAddressText, qal::iid::kAddressText, "address"> {
  using Service::Service;
  std::map<Number, std::string> names;

  Status AddressToText(Number address, Number, std::int32_t, Number, char16_t** text) override {
    const auto name = names.find(address);
    return Give(Log("AddressToText", Hex{address}), text,
                name != names.end() ? name->second : platform::Format("0x%08x", address));
  }
};

/// Memory full of zeros.
struct StubMemory : Service<qal::IQMemory, qal::iid::kMemory, "memory"> {
  using Service::Service;
  Status ReadMemory(Number first, Number last, std::uint16_t width, std::uint8_t* buffer) override {
    std::memset(buffer, 0, last - first + 1u);
    return Log("ReadMemory", Hex{first}, Hex{last}, width);
  }
};

/// Evaluates names of its table, else numbers: with "0x" or in radix 16 hexadecimal, otherwise decimal.
/// Anything else fails.
struct StubExpression : Service<qal::IQExpression, qal::iid::kExpression, "expression"> {
  using Service::Service;
  std::map<std::string, std::uint64_t> names;

  Status Evaluate(WideText expression, Number radix, Number* value) override {
    const auto number = Value(platform::Narrow(expression), radix);
    const auto status = Log("Evaluate", expression, radix);
    if (!number || qal::Failed(status) || *number > 0xFFFFFFFF) return qal::kFail;
    *value = static_cast<Number>(*number);
    return status;
  }
  Status EvaluateDefault(WideText expression, std::uint64_t* value) override {
    const auto number = Value(platform::Narrow(expression), 10);
    const auto status = Log("EvaluateDefault", expression);
    return number ? Give(status, value, *number) : qal::kFail;
  }
  Status EvaluateInRadix(WideText expression, Number radix, std::uint64_t* value) override {
    const auto number = Value(platform::Narrow(expression), radix);
    const auto status = Log("EvaluateInRadix", expression, radix);
    return number ? Give(status, value, *number) : qal::kFail;
  }

 private:
  std::optional<std::uint64_t> Value(std::string text, Number radix) const {
    if (const auto name = names.find(text); name != names.end()) return name->second;
    if (text.starts_with("0x") || text.starts_with("0X")) {
      text.erase(0, 2);
      radix = 16;
    }
    const char* digits = radix == 16 ? "0123456789abcdefABCDEF" : "0123456789";
    if (text.empty() || text.size() > 16 || text.find_first_not_of(digits) != std::string::npos) return {};
    return std::stoull(text, nullptr, static_cast<int>(radix));
  }
};

struct StubAddressLimits : Service<qal::IQAddressLimits, qal::iid::kAddressLimits, "limits"> {
  using Service::Service;
  Number lowest = 0;
  Number highest = 0xFFFFFFFF;
  Status GetLimits(Number* outLowest, Number* outHighest) override {
    *outLowest = lowest;
    return Give(Log("GetLimits"), outHighest, highest);
  }
};

/// Offer it under iid::kEditor and iid::kDataPaneEditor.
struct StubEditor : Service<qal::IQEditor, qal::iid::kEditor, "editor"> {
  using Service::Service;
  Status ShowSourceLine(Number*, Number line, char16_t** file) override {
    return Log("ShowSourceLine", line, WideText{*file});
  }
  Status ShowAddress(Number address, Number one) override { return Log("ShowAddress", Hex{address}, one); }
};

class StubModule : public Double<qal::IQModule> {
 public:
  using Double::Double;
  bool downloaded = true;
  Status IsDownloaded() override { return downloaded ? qal::kOk : qal::kFail; }
};

/// `count` times the same module.
struct StubModules : Service<qal::IQModules, qal::iid::kModules, "modules"> {
  using Service::Service;
  Number count = 1;
  StubModule module;
  Status GetCount(Number* out) override { return Give(Log("GetCount"), out, count); }
  Status GetModule(Number index, qal::IQModule** out) override {
    const auto status = Log("GetModule", index);
    *out = qal::Succeeded(status) && index < count ? &module : nullptr;
    return *out ? status : qal::kFail;
  }
};

}  // namespace doubles
