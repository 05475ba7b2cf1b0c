#pragma once

#include "qal/reserve.h"

/// The program under the debugger: symbols, lines, code, memory. Addresses are 32-bit unsigned. The source,
/// address-text, target-information and memory services are called from the component's worker thread too.
namespace qal {

/// Functions of a program; what IQSource::GetSymbolTable gives is asked for it with QueryInterface.
struct IQSymbolTable : IQUnknown {
  /// Functions of one source file. The records belong to this object and stay until the program changes.
  virtual Status GetFileFunctions(WideText file, const FunctionRecord** records,
                                  std::uint32_t* count) = 0;  // slot 3
};

struct SourceTo5 : IQUnknown {
  /// The symbol table that serves `address` (0: any). Fails when no program is downloaded.
  virtual Status GetSymbolTable(std::uint32_t address, IQUnknown** table) = 0;                    // slot 3
  virtual Status AddressToLine(std::uint32_t address, char16_t** file, std::uint32_t* line) = 0;  // slot 4
  virtual Status LineToAddress(WideText file, std::uint32_t line, std::uint32_t* address) = 0;    // slot 5
};
/// Source lines, counted from 1. Texts given out are new.
struct IQSource : Reserve<SourceTo5, 6, 7> {
  virtual Status GetLineText(WideText file, std::uint32_t line, char16_t** text) = 0;  // slot 8
};

struct IQAddressText : Reserve<IQUnknown, 3, 36> {
  /// New text for an address: its symbol, when it has one. Called with 0, -1, 0.
  virtual Status AddressToText(std::uint32_t address, std::uint32_t zero, std::int32_t unset,
                               std::uint32_t alsoZero, char16_t** text) = 0;  // slot 37
};

struct IQTargetInformation : Reserve<IQUnknown, 3, 3> {
  /// Decodes the instruction at the first of `count` (32) bytes. A length of 0 counts as a failure.
  virtual Status Disassemble(std::uint32_t count, const std::uint8_t* bytes, std::uint32_t address,
                             InstructionRecord* out) = 0;  // slot 4
  /// Alignment of instructions, which is the access width for ReadMemory too, and how far before an aligned
  /// start they are walked from. An alignment of 0 is no answer.
  virtual Status GetAlignment(std::uint16_t* alignment, std::uint16_t* offset) = 0;  // slot 5
};

struct IQMemory : Reserve<IQUnknown, 3, 5> {
  /// Reads last - first + 1 bytes into the caller's buffer.
  virtual Status ReadMemory(std::uint32_t first, std::uint32_t last, std::uint16_t width,
                            std::uint8_t* buffer) = 0;  // slot 6
};

struct ExpressionTo6 : Reserve<IQUnknown, 3, 5> {
  virtual Status Evaluate(WideText expression, std::uint32_t radix, std::uint32_t* value) = 0;  // slot 6
};
/// Numbers, symbols and sums of them. Fails for what is none of that.
struct IQExpression : Reserve<ExpressionTo6, 7, 12> {
  virtual Status EvaluateDefault(WideText expression, std::uint64_t* value) = 0;  // slot 13
  virtual Status EvaluateInRadix(WideText expression, std::uint32_t radix,
                                 std::uint64_t* value) = 0;  // slot 14
};

struct IQAddressLimits : IQUnknown {
  virtual Status GetLimits(std::uint32_t* lowest, std::uint32_t* highest) = 0;  // slot 3
};

struct EditorTo82 : Reserve<IQUnknown, 3, 81> {
  /// Opens the source window at the line. The name goes in and comes back: when it is replaced, the service
  /// frees the one given and the caller frees the new one. `unset` points to a value that the caller does not
  /// set.
  virtual Status ShowSourceLine(std::uint32_t* unset, std::uint32_t line, char16_t** file) = 0;  // slot 82
};
struct IQEditor : Reserve<EditorTo82, 83, 83> {
  /// Opens the disassembly at the address.
  virtual Status ShowAddress(std::uint32_t address, std::uint32_t one) = 0;  // slot 84
};

struct IQModule : Reserve<IQUnknown, 3, 5> {
  /// Non-negative when the module is downloaded.
  virtual Status IsDownloaded() = 0;  // slot 6
};

/// Modules of the program; indexes count from 0 and the objects belong to the service.
struct IQModules : Reserve<IQUnknown, 3, 7> {
  virtual Status GetCount(std::uint32_t* count) = 0;                     // slot 8
  virtual Status GetModule(std::uint32_t index, IQModule** module) = 0;  // slot 9
};

}  // namespace qal
