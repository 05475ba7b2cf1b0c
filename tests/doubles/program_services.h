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

class StubSymbolTable : public Double<qal::IQSymbolTable> {
 public:
  using Double::Double;
  qal::Status QueryInterface(const qal::Guid* id, void** out) override {
    *out = *id == qal::iid::kSymbolTable ? static_cast<qal::IQSymbolTable*>(this) : nullptr;
    return *out ? qal::kOk : qal::kNoInterface;
  }
  qal::Status GetFileFunctions(qal::WideText file, const qal::FunctionRecord** records,
                               std::uint32_t* count) override {
    *records = nullptr;
    *count = 0;
    return Log("symbols.GetFileFunctions", file);
  }
};

class StubSource : public Double<qal::IQSource> {
 public:
  static constexpr qal::Guid kService = qal::iid::kSource;
  using Double::Double;
  /// Null: no program is downloaded.
  qal::IQSymbolTable* symbols = nullptr;

  qal::Status GetSymbolTable(std::uint32_t address, qal::IQUnknown** table) override {
    const auto status = Log("source.GetSymbolTable", Hex{address});
    *table = qal::Failed(status) ? nullptr : symbols;
    return *table ? status : qal::kFail;
  }
  qal::Status AddressToLine(std::uint32_t address, char16_t** file, std::uint32_t*) override {
    *file = nullptr;
    return Log("source.AddressToLine", Hex{address}), qal::kFail;
  }
  qal::Status LineToAddress(qal::WideText file, std::uint32_t line, std::uint32_t*) override {
    return Log("source.LineToAddress", file, line), qal::kFail;
  }
  qal::Status GetLineText(qal::WideText file, std::uint32_t line, char16_t** text) override {
    *text = nullptr;
    return Log("source.GetLineText", file, line), qal::kFail;
  }
};

/// Gives "0x00001000" for an address that has no name.
class StubAddressText : public Double<qal::IQAddressText> {
 public:
  static constexpr qal::Guid kService = qal::iid::kAddressText;
  using Double::Double;
  std::map<std::uint32_t, std::string> names;

  qal::Status AddressToText(std::uint32_t address, std::uint32_t, std::int32_t, std::uint32_t,
                            char16_t** text) override {
    const auto name = names.find(address);
    return Give(Log("address.AddressToText", Hex{address}), text,
                name != names.end() ? name->second : platform::Format("0x%08x", address));
  }
};

class StubTargetInformation : public Double<qal::IQTargetInformation> {
 public:
  static constexpr qal::Guid kService = qal::iid::kTargetInformation;
  using Double::Double;
  std::uint16_t alignment = 2;

  qal::Status Disassemble(std::uint32_t, const std::uint8_t*, std::uint32_t address,
                          qal::InstructionRecord*) override {
    return Log("target.Disassemble", Hex{address}), qal::kFail;
  }
  qal::Status GetAlignment(std::uint16_t* outAlignment, std::uint16_t* offset) override {
    *offset = 0;
    return Give(Log("target.GetAlignment"), outAlignment, alignment);
  }
};

/// Memory full of zeros.
class StubMemory : public Double<qal::IQMemory> {
 public:
  static constexpr qal::Guid kService = qal::iid::kMemory;
  using Double::Double;
  qal::Status ReadMemory(std::uint32_t first, std::uint32_t last, std::uint16_t width,
                         std::uint8_t* buffer) override {
    std::memset(buffer, 0, last - first + 1u);
    return Log("memory.ReadMemory", Hex{first}, Hex{last}, width);
  }
};

/// Evaluates names of its table, else numbers: with "0x" or in radix 16 hexadecimal, otherwise decimal.
/// Anything else fails.
class StubExpression : public Double<qal::IQExpression> {
 public:
  static constexpr qal::Guid kService = qal::iid::kExpression;
  using Double::Double;
  std::map<std::string, std::uint64_t> names;

  qal::Status Evaluate(qal::WideText expression, std::uint32_t radix, std::uint32_t* value) override {
    const auto number = Value(platform::Narrow(expression), radix);
    const auto status = Log("expression.Evaluate", expression, radix);
    if (!number || qal::Failed(status) || *number > 0xFFFFFFFF) return qal::kFail;
    *value = static_cast<std::uint32_t>(*number);
    return status;
  }
  qal::Status EvaluateDefault(qal::WideText expression, std::uint64_t* value) override {
    const auto number = Value(platform::Narrow(expression), 10);
    const auto status = Log("expression.EvaluateDefault", expression);
    return number ? Give(status, value, *number) : qal::kFail;
  }
  qal::Status EvaluateInRadix(qal::WideText expression, std::uint32_t radix, std::uint64_t* value) override {
    const auto number = Value(platform::Narrow(expression), radix);
    const auto status = Log("expression.EvaluateInRadix", expression, radix);
    return number ? Give(status, value, *number) : qal::kFail;
  }

 private:
  std::optional<std::uint64_t> Value(std::string text, std::uint32_t radix) const {
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

class StubAddressLimits : public Double<qal::IQAddressLimits> {
 public:
  static constexpr qal::Guid kService = qal::iid::kAddressLimits;
  using Double::Double;
  std::uint32_t lowest = 0;
  std::uint32_t highest = 0xFFFFFFFF;
  qal::Status GetLimits(std::uint32_t* outLowest, std::uint32_t* outHighest) override {
    *outLowest = lowest;
    return Give(Log("limits.GetLimits"), outHighest, highest);
  }
};

/// Offer it under iid::kEditor and iid::kDataPaneEditor.
class StubEditor : public Double<qal::IQEditor> {
 public:
  static constexpr qal::Guid kService = qal::iid::kEditor;
  using Double::Double;
  qal::Status ShowSourceLine(std::uint32_t*, std::uint32_t line, char16_t** file) override {
    return Log("editor.ShowSourceLine", line, qal::WideText{*file});
  }
  qal::Status ShowAddress(std::uint32_t address, std::uint32_t one) override {
    return Log("editor.ShowAddress", Hex{address}, one);
  }
};

class StubModule : public Double<qal::IQModule> {
 public:
  using Double::Double;
  bool downloaded = true;
  qal::Status IsDownloaded() override { return downloaded ? qal::kOk : qal::kFail; }
};

/// `count` times the same module.
class StubModules : public Double<qal::IQModules> {
 public:
  static constexpr qal::Guid kService = qal::iid::kModules;
  using Double::Double;
  std::uint32_t count = 1;
  StubModule module;
  qal::Status GetCount(std::uint32_t* out) override { return Give(Log("modules.GetCount"), out, count); }
  qal::Status GetModule(std::uint32_t index, qal::IQModule** out) override {
    const auto status = Log("modules.GetModule", index);
    *out = qal::Succeeded(status) && index < count ? &module : nullptr;
    return *out ? status : qal::kFail;
  }
};

}  // namespace doubles
