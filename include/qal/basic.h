#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

/// The basic types that cross the line between the IDE and a component. Everything here is plain data: both
/// sides may be compiled apart, so nothing depends on a library's own types. Free of threads and of global
/// state.
namespace qal {

/// Result of every operation; negative is failure.
using Status = std::int32_t;

inline constexpr Status kOk = 0;
inline constexpr Status kNoInterface = static_cast<Status>(0x80004002u);
inline constexpr Status kFail = static_cast<Status>(0x80004005u);

constexpr bool Failed(Status status) { return status < 0; }
constexpr bool Succeeded(Status status) { return status >= 0; }

/// A 16-bit flag: true is written as -1, any non-zero value reads as true.
using Flag = std::int16_t;
inline constexpr Flag kTrue = -1;
inline constexpr Flag kFalse = 0;

/// Window or module of the system layer; 0 is none.
using WindowHandle = std::uintptr_t;
using ModuleHandle = std::uintptr_t;

/// A 16-byte identifier of an interface, a service, an event or a class.
struct Guid {
  std::uint32_t data1 = 0;
  std::uint16_t data2 = 0;
  std::uint16_t data3 = 0;
  std::uint8_t data4[8] = {};

  friend constexpr bool operator==(const Guid& a, const Guid& b) {
    for (int i = 0; i < 8; ++i) {
      if (a.data4[i] != b.data4[i]) return false;
    }
    return a.data1 == b.data1 && a.data2 == b.data2 && a.data3 == b.data3;
  }
  /// Any total order, so that identifiers can be keys of a map.
  friend constexpr bool operator<(const Guid& a, const Guid& b) {
    if (a.data1 != b.data1) return a.data1 < b.data1;
    if (a.data2 != b.data2) return a.data2 < b.data2;
    if (a.data3 != b.data3) return a.data3 < b.data3;
    for (int i = 0; i < 8; ++i) {
      if (a.data4[i] != b.data4[i]) return a.data4[i] < b.data4[i];
    }
    return false;
  }
};
static_assert(sizeof(Guid) == 16);

/// A text in: UTF-16 behind a 4-byte length in bytes, with a 2-byte zero after it. Null is the empty text.
/// The caller frees it after the call.
using WideText = const char16_t*;

/// Length of a text in 16-bit units, from the length in front of it; 0 for null.
inline std::uint32_t TextLength(WideText text) {
  if (!text) return 0;
  std::uint32_t bytes;
  std::memcpy(&bytes, reinterpret_cast<const char*>(text) - sizeof(bytes), sizeof(bytes));
  return bytes / 2;
}

/// The text as a view; empty for null.
inline std::u16string_view TextView(WideText text) { return {text ? text : u"", TextLength(text)}; }

/// A new text, to be freed with FreeText by whoever owns it then. Null when there is no memory or it is too
/// long.
inline char16_t* AllocText(const char16_t* units, std::size_t length) {
  if (length > 0x3FFFFFFF) return nullptr;
  const auto bytes = static_cast<std::uint32_t>(length * 2);
  auto* block = static_cast<char*>(std::malloc(sizeof(bytes) + std::size_t{bytes} + 2));
  if (!block) return nullptr;
  std::memcpy(block, &bytes, sizeof(bytes));
  auto* text = reinterpret_cast<char16_t*>(block + sizeof(bytes));
  if (bytes) std::memcpy(text, units, bytes);
  text[length] = 0;
  return text;
}
inline char16_t* AllocText(std::u16string_view view) { return AllocText(view.data(), view.size()); }

/// Frees a text that AllocText made; null is allowed.
inline void FreeText(const char16_t* text) {
  if (text) std::free(const_cast<char*>(reinterpret_cast<const char*>(text)) - sizeof(std::uint32_t));
}

/// One start of a branch and where it went, as a path report lists them.
struct PathPair {
  std::uint32_t branch;
  std::uint32_t target;
};
static_assert(sizeof(PathPair) == 8);

/// One address and its execution count or its pass flags, as a count report lists them.
struct CountPair {
  std::uint32_t address;
  std::uint32_t value;
};
static_assert(sizeof(CountPair) == 8);

/// One function of a source file; the name belongs to the symbol table that gave the record. `end` is its
/// last address.
struct FunctionRecord {
  const char16_t* name;
  std::uint32_t start;
  std::uint32_t end;
};

/// One disassembled instruction; both texts are new and freed by the receiver with FreeText.
struct InstructionRecord {
  char16_t* addressText;   ///< begins with the address in hexadecimal
  std::uint32_t reserved;  ///< not read
  std::uint32_t length;    ///< bytes
  char16_t* lastText;      ///< code bytes, mnemonic and operands
};

}  // namespace qal
