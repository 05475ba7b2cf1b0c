#include "workbench/services/program_services.h"

#include <algorithm>
#include <cstring>

#include "platform/paths.h"
#include "platform/text.h"
#include "workbench/services/coverage_services.h"
#include "workbench/services/expression_evaluator.h"

namespace workbench {
namespace {

constexpr std::uint32_t kLargestRead = 64u << 20;
constexpr std::uint16_t kCodeAlignment = 2;

qal::Status GiveText(std::string_view text, char16_t** out) {
  *out = platform::NewWide(text);
  return *out ? qal::kOk : qal::kFail;
}

Evaluation EvaluateText(const DebugSession& debugger, qal::WideText expression, unsigned radix) {
  const auto debuggee = debugger.Current();
  const auto symbols = [&](std::string_view name) -> std::optional<std::uint64_t> {
    if (!debuggee) return std::nullopt;
    const Symbol* symbol = debuggee->program->FindSymbol(platform::ToUtf8(name));
    if (!symbol) return std::nullopt;
    return symbol->address;
  };
  return Evaluate(platform::Trim(platform::Narrow(expression)), radix, symbols);
}

}  // namespace

std::string ProductSourcePath(const std::string& nativeFile) {
  if (!nativeFile.empty() && nativeFile[0] == '/') return platform::FromNative(nativeFile);
  return platform::ReplaceAll(platform::FromUtf8(nativeFile), "/", "\\");
}

std::string NativeSourcePath(const std::string& productFile) {
  if (platform::IsAbsolutePath(productFile)) return platform::ToNative(productFile);
  return platform::ReplaceAll(platform::ToUtf8(productFile), "\\", "/");
}

qal::Status SymbolTable::GetFileFunctions(qal::WideText file, const qal::FunctionRecord** records,
                                          std::uint32_t* count) {
  if (!records || !count) return qal::kFail;
  *records = nullptr;
  *count = 0;
  return Guarded([&]() -> qal::Status {
    const auto debuggee = debugger_.Current();
    if (!debuggee) return kNothingLoaded;
    if (listed_ != debuggee) {
      listings_.clear();
      listed_ = debuggee;
    }
    const Program& program = *debuggee->program;
    const std::string name = program.FindSourceFile(NativeSourcePath(platform::Narrow(file)));
    if (name.empty()) return kNoSourceFile;
    auto [place, isNew] = listings_.try_emplace(name);
    Listing& listing = place->second;
    if (isNew) {
      const auto& functions = program.FunctionsOf(name);
      listing.names.reserve(functions.size());
      for (const Function& function : functions) {
        listing.names.push_back(platform::Widen(platform::FromUtf8(function.name)));
        listing.records.push_back({listing.names.back().c_str(), function.start, function.end});
      }
    }
    *records = listing.records.data();
    *count = static_cast<std::uint32_t>(listing.records.size());
    return qal::kOk;
  });
}

qal::Status Source::GetSymbolTable(std::uint32_t, qal::IQUnknown** table) {
  if (!table) return qal::kFail;
  *table = nullptr;
  if (!debugger_.Current()) return kNothingLoaded;
  *table = &symbols_;
  return qal::kOk;
}

qal::Status Source::AddressToLine(std::uint32_t address, char16_t** file, std::uint32_t* line) {
  if (!file || !line) return qal::kFail;
  *file = nullptr;
  *line = 0;
  return Guarded([&]() -> qal::Status {
    const auto debuggee = debugger_.Current();
    if (!debuggee) return kNothingLoaded;
    const auto found = debuggee->program->LineOf(address);
    if (!found) return qal::kFail;
    const std::string path = ProductSourcePath(found->file);
    const auto now = editors_.LineNow(path, found->line);
    if (!now) return qal::kFail;
    *line = *now;
    return GiveText(path, file);
  });
}

qal::Status Source::LineToAddress(qal::WideText file, std::uint32_t line, std::uint32_t* address) {
  if (!address) return qal::kFail;
  *address = 0;
  return Guarded([&]() -> qal::Status {
    const auto debuggee = debugger_.Current();
    if (!debuggee) return kNothingLoaded;
    const std::string path = platform::Narrow(file);
    const auto built = editors_.LineOpened(path, line);
    const auto found = built ? debuggee->program->AddressOf(NativeSourcePath(path), *built) : std::nullopt;
    if (!found) return qal::kFail;
    *address = *found;
    return qal::kOk;
  });
}

qal::Status Source::GetLineText(qal::WideText file, std::uint32_t line, char16_t** text) {
  if (!text) return qal::kFail;
  *text = nullptr;
  return Guarded([&]() -> qal::Status {
    const auto debuggee = debugger_.Current();
    if (!debuggee) return kNothingLoaded;
    const std::string path = platform::Narrow(file);
    if (const auto edited = editors_.LineText(path, line)) return GiveText(*edited, text);
    const auto found = debuggee->program->LineText(NativeSourcePath(path), line);
    if (!found) return qal::kFail;
    return GiveText(platform::FromUtf8(*found), text);
  });
}

qal::Status AddressText::AddressToText(std::uint32_t address, std::uint32_t, std::int32_t, std::uint32_t,
                                       char16_t** text) {
  if (!text) return qal::kFail;
  *text = nullptr;
  return Guarded([&]() -> qal::Status {
    if (const auto debuggee = debugger_.Current()) {
      const Symbol* symbol = debuggee->program->SymbolAt(address);
      if (symbol && symbol->kind == Symbol::Kind::kFunction && symbol->address == address)
        return GiveText(platform::FromUtf8(symbol->name), text);
    }
    return GiveText(platform::Format("%08x", address), text);
  });
}

qal::Status TargetInformation::Disassemble(std::uint32_t count, const std::uint8_t* bytes,
                                           std::uint32_t address, qal::InstructionRecord* out) {
  if (!out) return qal::kFail;
  *out = {};
  if (!bytes || count == 0) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    const auto debuggee = debugger_.Current();
    if (!debuggee) return kNothingLoaded;
    const auto instruction = debuggee->disassembler->Decode(address, {bytes, count});
    if (!instruction) return qal::kFail;
    out->addressText = platform::NewWide(instruction->AddressText());
    out->length = instruction->size;
    out->lastText = platform::NewWide(instruction->CodeText());
    return out->addressText && out->lastText ? qal::kOk : qal::kFail;
  });
}

qal::Status TargetInformation::GetAlignment(std::uint16_t* alignment, std::uint16_t* offset) {
  if (!alignment || !offset) return qal::kFail;
  *alignment = kCodeAlignment;
  *offset = 0;
  return qal::kOk;
}

qal::Status Memory::ReadMemory(std::uint32_t first, std::uint32_t last, std::uint16_t, std::uint8_t* buffer) {
  if (!buffer || last < first || last - first >= kLargestRead) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    const auto debuggee = debugger_.Current();
    if (!debuggee) return kNothingLoaded;
    const Simulator& simulator = *debuggee->simulator;
    const std::uint32_t size = last - first + 1;
    if (simulator.ReadMemory(first, buffer, size)) return qal::kOk;
    for (const MemoryRegion& region : simulator.Memory()) {
      if (first < region.start || first > region.last) continue;
      const std::uint32_t inside = std::min(size, region.last - first + 1);
      if (!simulator.ReadMemory(first, buffer, inside)) break;
      std::memset(buffer + inside, 0, size - inside);
      return qal::kOk;
    }
    return qal::kFail;
  });
}

qal::Status Expression::Evaluate(qal::WideText expression, std::uint32_t radix, std::uint32_t* value) {
  if (!value) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    const Evaluation result = EvaluateText(debugger_, expression, radix);
    const auto address = result.value ? ToAddress(*result.value) : std::nullopt;
    if (!address) return kNoExpression;
    *value = *address;
    return qal::kOk;
  });
}

qal::Status Expression::EvaluateDefault(qal::WideText expression, std::uint64_t* value) {
  return EvaluateInRadix(expression, kDefaultRadix, value);
}

qal::Status Expression::EvaluateInRadix(qal::WideText expression, std::uint32_t radix, std::uint64_t* value) {
  if (!value) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    const Evaluation result = EvaluateText(debugger_, expression, radix);
    if (!result.value) return kNoExpression;
    *value = *result.value;
    return qal::kOk;
  });
}

qal::Status Modules::GetCount(std::uint32_t* count) {
  if (!count) return qal::kFail;
  *count = debugger_.Current() ? 1 : 0;
  return qal::kOk;
}

qal::Status Modules::GetModule(std::uint32_t index, qal::IQModule** module) {
  if (!module) return qal::kFail;
  *module = nullptr;
  if (index != 0 || !debugger_.Current()) return qal::kFail;
  *module = &image_;
  return qal::kOk;
}

}  // namespace workbench
