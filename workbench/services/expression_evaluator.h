#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace workbench {

/// Gives the value of a symbol, or nothing when there is no such symbol.
using SymbolLookup = std::function<std::optional<std::uint64_t>(std::string_view name)>;

/// Outcome of an evaluation: a value, or the reason why there is none.
struct Evaluation {
  std::optional<std::uint64_t> value;
  std::string error;
};

/// Evaluates an address expression: numbers, symbols, + - * and round brackets. Pure; any thread.
///
/// A word is a symbol when `symbols` knows it, else a number: after "0x" hexadecimal, otherwise in `radix` (2
/// to 36; anything else counts as 10). Arithmetic is unsigned 64-bit and wraps; a number beyond 64 bits is an
/// error.
Evaluation Evaluate(std::string_view text, unsigned radix, const SymbolLookup& symbols);

/// A value as 32 bits: as it stands, or the low half of a negative 32-bit number. Nothing when it does not
/// fit.
std::optional<std::uint32_t> ToAddress(std::uint64_t value);

}  // namespace workbench
