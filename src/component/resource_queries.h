#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// The questions that a resource module answers about itself, as its exports are called. A module is somebody
/// else's code: what it answers is taken with care.
namespace coverage {

/// 0 is success; the values are written by the module.
using InterfaceVersionQuery = std::int32_t (*)(std::int32_t* major, std::int32_t* minor);
using OrdinalVersionQuery = std::int32_t (*)(std::int32_t* ordinal);
/// 0 is success with the text in the buffer; positive: the buffer is too small and `size` the size needed.
using TextQuery = std::int32_t (*)(char* buffer, std::int32_t* size);

/// Buffer of the first call, and the largest that a module may ask for.
inline constexpr std::int32_t kTextQueryBuffer = 1024;
inline constexpr std::int32_t kTextQueryLimit = 1 << 20;

/// Asks once, and a second time with the size that the module then says it needs. Nothing when there is no
/// such export, when the last call fails, or when the size asked for is not from 1 to kTextQueryLimit.
std::optional<std::string> AskText(TextQuery query);

}  // namespace coverage
