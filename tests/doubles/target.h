#pragma once

#include <deque>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "doubles/coverage_services.h"
#include "doubles/host.h"
#include "doubles/program_services.h"

namespace doubles {

/// A small program on a small target: instructions, source lines and functions from tables that a test fills,
/// behind the services of the debugger. Filled on one thread before the services are used; then any thread
/// may call them.
///
///     TargetDouble target(log);
///     target.Instructions(0x1000, {2, 4, 2});
///     target.Function("C:\\space\\demo\\main.c", "main", 0x1000, 0x1007);
///     target.Line(0x1000, "C:\\space\\demo\\main.c", 3, "int main(void) {");
///     target.OfferTo(host);
class TargetDouble {
 public:
  TargetDouble() { source.symbols = &symbols; }
  explicit TargetDouble(CallLog& log) : log_(&log) { source.symbols = &symbols; }

  /// One instruction after the other, of these lengths in bytes.
  void Instructions(Number address, std::initializer_list<Number> lengths) {
    for (const auto length : lengths) {
      lengths_[address] = length;
      address += length;
    }
  }
  /// Instructions of one length over the whole range, `end` included.
  void Fill(Number start, Number end, Number length = 2) {
    for (std::uint64_t at = start; at < end; at += length) lengths_[static_cast<Number>(at)] = length;
  }
  /// From now on nothing can be decoded at the address.
  void Forget(Number address) { lengths_.erase(address); }

  /// Line `number` begins at the address; it goes on to the next address that has a line.
  void Line(Number address, std::string file, Number number, std::string text) {
    texts_[{file, number}] = std::move(text);
    lines_[address] = {std::move(file), number};
  }

  void Function(const std::string& file, const std::string& name, Number start, Number end) {
    auto& list = functions_[platform::ToLower(file)];
    list.names.push_back(platform::Widen(name));
    list.bounds.emplace_back(start, end);
    list.records.clear();
    for (std::size_t i = 0; i < list.names.size(); ++i) {
      list.records.push_back({list.names[i].c_str(), list.bounds[i].first, list.bounds[i].second});
    }
    addressText.names[start] = name;
    expression.names[name] = start;
  }

  /// Code bytes as ReadMemory gives them.
  static std::uint8_t ByteAt(Number address) {
    return static_cast<std::uint8_t>(address * 7 + (address >> 8));
  }

  /// Address text "00001000" and last text "0715      op4": code bytes in 10 columns, then the length.
  static std::pair<std::string, std::string> Texts(Number address, Number length) {
    std::string code;
    for (Number i = 0; i < length; ++i) code += platform::Format("%02x", ByteAt(address + i));
    return {platform::Format("%08x", address), platform::Format("%-10sop%u", code.c_str(), length)};
  }

  /// Offers every service of the debugger, with the path coverage service as the one that records.
  void OfferTo(HostDouble& host) {
    host.OfferAll(path, traceStart, executionState, limits, editor, source, addressText, information, memory,
                  expression, modules);
    host.Offer(qal::iid::kDataPaneEditor, &editor);
  }

 private:
  struct FileFunctions {
    std::deque<std::u16string> names;
    std::vector<std::pair<Number, Number>> bounds;
    std::vector<qal::FunctionRecord> records;
  };

  struct Information : Service<qal::IQTargetInformation, qal::iid::kTargetInformation, "target"> {
    explicit Information(const TargetDouble& owner) : Service(owner.log_), target(owner) {}
    const TargetDouble& target;
    std::uint16_t alignment = 2;
    Status Disassemble(Number, const std::uint8_t*, Number address, qal::InstructionRecord* out) override {
      const auto found = target.lengths_.find(address);
      if (qal::Failed(Pass("target.Disassemble")) || found == target.lengths_.end()) return qal::kFail;
      const auto [addressText, lastText] = Texts(address, found->second);
      *out = {platform::NewWide(addressText), 0, found->second, platform::NewWide(lastText)};
      return qal::kOk;
    }
    Status GetAlignment(std::uint16_t* outAlignment, std::uint16_t* offset) override {
      *offset = 0;
      return Give(Pass("target.GetAlignment"), outAlignment, alignment);
    }
  };

  struct Memory : StubMemory {
    using StubMemory::StubMemory;
    Status ReadMemory(Number first, Number last, std::uint16_t, std::uint8_t* buffer) override {
      for (Number i = 0; i <= last - first; ++i) buffer[i] = ByteAt(first + i);
      return Pass("memory.ReadMemory");
    }
  };

  struct Symbols : Double<qal::IQSymbolTable> {
    explicit Symbols(const TargetDouble& owner) : Double(owner.log_), target(owner) {}
    const TargetDouble& target;
    Status QueryInterface(const Guid* id, void** out) override {
      *out = *id == qal::iid::kSymbolTable ? static_cast<qal::IQSymbolTable*>(this) : nullptr;
      return *out ? qal::kOk : qal::kNoInterface;
    }
    Status GetFileFunctions(WideText file, const qal::FunctionRecord** records, Number* count) override {
      const auto status = Log("symbols.GetFileFunctions", file);
      const auto found = target.functions_.find(platform::ToLower(platform::Narrow(file)));
      const bool known = qal::Succeeded(status) && found != target.functions_.end();
      *records = known ? found->second.records.data() : nullptr;
      *count = known ? static_cast<Number>(found->second.records.size()) : 0;
      return status;
    }
  };

  struct Source : StubSource {
    explicit Source(const TargetDouble& owner) : StubSource(owner.log_), target(owner) {}
    const TargetDouble& target;
    Status AddressToLine(Number address, char16_t** file, Number* line) override {
      auto found = target.lines_.upper_bound(address);
      if (qal::Failed(Pass("source.AddressToLine")) || found == target.lines_.begin())
        return Give(qal::kFail, file, {});
      *line = (--found)->second.second;
      return Give(qal::kOk, file, found->second.first);
    }
    Status LineToAddress(WideText file, Number line, Number* address) override {
      const auto name = platform::Narrow(file);
      if (qal::Failed(Pass("source.LineToAddress"))) return qal::kFail;
      for (const auto& [start, place] : target.lines_) {
        if (place.second != line || !platform::EqualNoCase(place.first, name)) continue;
        return Give(qal::kOk, address, start);
      }
      return qal::kFail;
    }
    Status GetLineText(WideText file, Number line, char16_t** text) override {
      const auto found = target.texts_.find({platform::Narrow(file), line});
      const bool known = qal::Succeeded(Pass("source.GetLineText")) && found != target.texts_.end();
      return known ? Give(qal::kOk, text, found->second) : Give(qal::kFail, text, {});
    }
  };

  CallLog* log_ = nullptr;
  std::map<Number, Number> lengths_;
  std::map<Number, std::pair<std::string, Number>> lines_;
  std::map<std::pair<std::string, Number>, std::string> texts_;
  std::map<std::string, FileFunctions> functions_;

 public:
  StubPathCoverage path{log_};
  StubCountCoverage counts{log_};
  StubTraceStart traceStart{log_};
  StubExecutionState executionState{log_};
  StubAddressLimits limits{log_};
  StubEditor editor{log_};
  StubAddressText addressText{log_};
  StubExpression expression{log_};
  StubModules modules{log_};
  Information information{*this};
  Memory memory{log_};
  Symbols symbols{*this};
  Source source{*this};
};

}  // namespace doubles
