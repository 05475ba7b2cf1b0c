#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "qal/program_services.h"
#include "workbench/services/debug_session.h"
#include "workbench/services/open_files.h"
#include "workbench/services/service.h"

namespace workbench {

/// Paths of sources and images: product form on the component's side, native on the program's. A name that is
/// no absolute path only changes its separators.
std::string ProductSourcePath(const std::string& nativeFile);
std::string NativeSourcePath(const std::string& productFile);

/// Functions per source file. Records live until another program is loaded. Main thread.
class SymbolTable final : public Service<qal::IQSymbolTable, qal::iid::kSymbolTable> {
 public:
  explicit SymbolTable(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status GetFileFunctions(qal::WideText file, const qal::FunctionRecord** records,
                               std::uint32_t* count) override;

 private:
  struct Listing {
    std::vector<std::u16string> names;
    std::vector<qal::FunctionRecord> records;
  };
  DebugSession& debugger_;
  std::shared_ptr<const Debuggee> listed_;  // the program that listings_ were made from
  std::map<std::string, Listing> listings_;
};

/// Source lines, numbered as the editors show them now. Main thread.
class Source final : public Service<qal::IQSource, qal::iid::kSource> {
 public:
  Source(DebugSession& debugger, const OpenFiles& editors)
      : debugger_(debugger), editors_(editors), symbols_(debugger) {}
  qal::Status GetSymbolTable(std::uint32_t address, qal::IQUnknown** table) override;
  qal::Status AddressToLine(std::uint32_t address, char16_t** file, std::uint32_t* line) override;
  qal::Status LineToAddress(qal::WideText file, std::uint32_t line, std::uint32_t* address) override;
  qal::Status GetLineText(qal::WideText file, std::uint32_t line, char16_t** text) override;

 private:
  DebugSession& debugger_;
  const OpenFiles& editors_;
  SymbolTable symbols_;
};

/// An address as the name of the function that begins there, else as 8 hexadecimal digits. Any thread.
class AddressText final : public Service<qal::IQAddressText, qal::iid::kAddressText> {
 public:
  explicit AddressText(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status AddressToText(std::uint32_t address, std::uint32_t zero, std::int32_t unset,
                            std::uint32_t alsoZero, char16_t** text) override;

 private:
  DebugSession& debugger_;
};

/// Instructions from bytes. Any thread.
class TargetInformation final : public Service<qal::IQTargetInformation, qal::iid::kTargetInformation> {
 public:
  explicit TargetInformation(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status Disassemble(std::uint32_t count, const std::uint8_t* bytes, std::uint32_t address,
                          qal::InstructionRecord* out) override;
  qal::Status GetAlignment(std::uint16_t* alignment, std::uint16_t* offset) override;

 private:
  DebugSession& debugger_;
};

/// The target's memory. A read that begins in memory and runs past its end gets zeros for the rest. Any
/// thread.
class Memory final : public Service<qal::IQMemory, qal::iid::kMemory> {
 public:
  explicit Memory(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status ReadMemory(std::uint32_t first, std::uint32_t last, std::uint16_t width,
                         std::uint8_t* buffer) override;

 private:
  DebugSession& debugger_;
};

/// Expressions over the program's symbols. Main thread.
class Expression final : public Service<qal::IQExpression, qal::iid::kExpression> {
 public:
  static constexpr unsigned kDefaultRadix = 10;

  explicit Expression(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status Evaluate(qal::WideText expression, std::uint32_t radix, std::uint32_t* value) override;
  qal::Status EvaluateDefault(qal::WideText expression, std::uint64_t* value) override;
  qal::Status EvaluateInRadix(qal::WideText expression, std::uint32_t radix, std::uint64_t* value) override;

 private:
  DebugSession& debugger_;
};

/// The program as the one module that there is. Main thread.
class Modules final : public Service<qal::IQModules, qal::iid::kModules> {
 public:
  explicit Modules(DebugSession& debugger) : debugger_(debugger) {}
  qal::Status GetCount(std::uint32_t* count) override;
  qal::Status GetModule(std::uint32_t index, qal::IQModule** module) override;

 private:
  class Image final : public Service<qal::IQModule, qal::iid::kUnknown> {
   public:
    qal::Status IsDownloaded() override { return qal::kOk; }
  };
  DebugSession& debugger_;
  Image image_;
};

}  // namespace workbench
