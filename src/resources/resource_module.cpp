#include <cstdint>
#include <cstring>

#include "platform/api.h"
#include "resource_data.h"

/// The resource module: resources of the component and the four questions that a loader asks before it uses
/// them.
namespace {

/// Fills the caller's buffer; when that is too small, writes the size needed and answers 1.
std::int32_t PutText(const char* text, char* buffer, std::int32_t* size) {
  if (!buffer || !size) return -1;
  const auto needed = static_cast<std::int32_t>(std::strlen(text) + 1);
  const bool fits = *size >= needed;
  *size = needed;
  if (!fits) return 1;
  std::memcpy(buffer, text, static_cast<std::size_t>(needed));
  return 0;
}

}  // namespace

extern "C" {

PLATFORM_API extern const platform::ResourceTable QalResourceTable;
const platform::ResourceTable QalResourceTable = coverage::resource_data::kTable;

PLATFORM_API std::int32_t GetDLLInterfaceVersion(std::int32_t* major, std::int32_t* minor) {
  if (!major || !minor) return -1;
  *major = 1;
  *minor = 0;
  return 0;
}

PLATFORM_API std::int32_t GetDLLOrdinalVersion(std::int32_t* ordinal) {
  if (!ordinal) return -1;
  *ordinal = 1;
  return 0;
}

PLATFORM_API std::int32_t GetDLLProductVersion(char* buffer, std::int32_t* size) {
  return PutText("1.0", buffer, size);
}

PLATFORM_API std::int32_t GetDLLType(char* buffer, std::int32_t* size) {
  return PutText("Resource", buffer, size);
}

}  // extern "C"
