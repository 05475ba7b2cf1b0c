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
  explicit TargetDouble(CallLog& log)
      : log_(&log),
        path(log),
        counts(log),
        traceStart(log),
        executionState(log),
        limits(log),
        editor(log),
        addressText(log),
        expression(log),
        modules(log),
        symbols(*this, &log),
        source(*this, &log) {
    source.symbols = &symbols;
  }

  /// One instruction after the other, of these lengths in bytes.
  void Instructions(std::uint32_t address, std::initializer_list<std::uint32_t> lengths) {
    for (const auto length : lengths) {
      lengths_[address] = length;
      address += length;
    }
  }
  /// Instructions of one length over the whole range, `end` included.
  void Fill(std::uint32_t start, std::uint32_t end, std::uint32_t length = 2) {
    for (std::uint64_t at = start; at < end; at += length) lengths_[static_cast<std::uint32_t>(at)] = length;
  }
  /// From now on nothing can be decoded at the address.
  void Forget(std::uint32_t address) { lengths_.erase(address); }

  /// Line `number` begins at the address; it goes on to the next address that has a line.
  void Line(std::uint32_t address, std::string file, std::uint32_t number, std::string text) {
    texts_[{file, number}] = std::move(text);
    lines_[address] = {std::move(file), number};
  }

  void Function(const std::string& file, const std::string& name, std::uint32_t start, std::uint32_t end) {
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
  static std::uint8_t ByteAt(std::uint32_t address) {
    return static_cast<std::uint8_t>(address * 7 + (address >> 8));
  }

  /// Address text "00001000" and last text "0715      op4": code bytes in 10 columns, then the length.
  static std::pair<std::string, std::string> Texts(std::uint32_t address, std::uint32_t length) {
    std::string code;
    for (std::uint32_t i = 0; i < length; ++i) code += platform::Format("%02x", ByteAt(address + i));
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
    std::vector<std::pair<std::uint32_t, std::uint32_t>> bounds;
    std::vector<qal::FunctionRecord> records;
  };

  class Information : public StubTargetInformation {
   public:
    explicit Information(const TargetDouble& target) : target_(target) {}
    qal::Status Disassemble(std::uint32_t, const std::uint8_t*, std::uint32_t address,
                            qal::InstructionRecord* out) override {
      const auto found = target_.lengths_.find(address);
      if (qal::Failed(target_.Pass("target.Disassemble")) || found == target_.lengths_.end())
        return qal::kFail;
      const auto [addressText, lastText] = Texts(address, found->second);
      *out = {platform::NewWide(addressText), 0, found->second, platform::NewWide(lastText)};
      return qal::kOk;
    }
    qal::Status GetAlignment(std::uint16_t* outAlignment, std::uint16_t* offset) override {
      const auto status = target_.Pass("target.GetAlignment");
      return qal::Failed(status) ? status : StubTargetInformation::GetAlignment(outAlignment, offset);
    }

   private:
    const TargetDouble& target_;
  };

  class Memory : public StubMemory {
   public:
    explicit Memory(const TargetDouble& target) : target_(target) {}
    qal::Status ReadMemory(std::uint32_t first, std::uint32_t last, std::uint16_t,
                           std::uint8_t* buffer) override {
      for (std::uint32_t i = 0; i <= last - first; ++i) buffer[i] = ByteAt(first + i);
      return target_.Pass("memory.ReadMemory");
    }

   private:
    const TargetDouble& target_;
  };

  class Symbols : public StubSymbolTable {
   public:
    Symbols(const TargetDouble& target, CallLog* log) : target_(target), log_(log) {}
    qal::Status GetFileFunctions(qal::WideText file, const qal::FunctionRecord** records,
                                 std::uint32_t* count) override {
      const auto status = log_ ? log_->Add("symbols.GetFileFunctions(" + Describe(file) + ")") : qal::kOk;
      const auto found = target_.functions_.find(platform::ToLower(platform::Narrow(file)));
      const bool known = qal::Succeeded(status) && found != target_.functions_.end();
      *records = known ? found->second.records.data() : nullptr;
      *count = known ? static_cast<std::uint32_t>(found->second.records.size()) : 0;
      return status;
    }

   private:
    const TargetDouble& target_;
    CallLog* log_;
  };

  class Source : public StubSource {
   public:
    Source(const TargetDouble& target, CallLog* log) : target_(target), log_(log) {}
    qal::Status GetSymbolTable(std::uint32_t address, qal::IQUnknown** table) override {
      const auto status =
          log_ ? log_->Add("source.GetSymbolTable(" + Describe(Hex{address}) + ")") : qal::kOk;
      *table = qal::Failed(status) ? nullptr : symbols;
      return *table ? status : qal::kFail;
    }
    qal::Status AddressToLine(std::uint32_t address, char16_t** file, std::uint32_t* line) override {
      auto found = target_.lines_.upper_bound(address);
      if (qal::Failed(target_.Pass("source.AddressToLine")) || found == target_.lines_.begin())
        return Give(qal::kFail, file, {});
      *line = (--found)->second.second;
      return Give(qal::kOk, file, found->second.first);
    }
    qal::Status LineToAddress(qal::WideText file, std::uint32_t line, std::uint32_t* address) override {
      const auto name = platform::Narrow(file);
      if (qal::Failed(target_.Pass("source.LineToAddress"))) return qal::kFail;
      for (const auto& [start, place] : target_.lines_) {
        if (place.second != line || !platform::EqualNoCase(place.first, name)) continue;
        *address = start;
        return qal::kOk;
      }
      return qal::kFail;
    }
    qal::Status GetLineText(qal::WideText file, std::uint32_t line, char16_t** text) override {
      const auto found = target_.texts_.find({platform::Narrow(file), line});
      if (qal::Failed(target_.Pass("source.GetLineText"))) return Give(qal::kFail, text, {});
      return found == target_.texts_.end() ? Give(qal::kFail, text, {}) : Give(qal::kOk, text, found->second);
    }

   private:
    const TargetDouble& target_;
    CallLog* log_;
  };

  /// Counts a call that is not written down.
  qal::Status Pass(const char* name) const { return log_ != nullptr ? log_->Pass(name) : qal::kOk; }

  std::map<std::uint32_t, std::uint32_t> lengths_;
  std::map<std::uint32_t, std::pair<std::string, std::uint32_t>> lines_;
  std::map<std::pair<std::string, std::uint32_t>, std::string> texts_;
  std::map<std::string, FileFunctions> functions_;
  CallLog* log_ = nullptr;

 public:
  StubPathCoverage path;
  StubCountCoverage counts;
  StubTraceStart traceStart;
  StubExecutionState executionState;
  StubAddressLimits limits;
  StubEditor editor;
  StubAddressText addressText;
  StubExpression expression;
  StubModules modules;
  Information information{*this};
  Memory memory{*this};
  Symbols symbols{*this, nullptr};
  Source source{*this, nullptr};
};

}  // namespace doubles
