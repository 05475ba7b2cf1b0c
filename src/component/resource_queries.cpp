#include "component/resource_queries.h"

#include <cstring>
#include <vector>

namespace coverage {

std::optional<std::string> AskText(TextQuery query) {
  if (!query) return std::nullopt;
  std::vector<char> buffer(kTextQueryBuffer);
  std::int32_t size = kTextQueryBuffer;
  std::int32_t answer = query(buffer.data(), &size);
  if (answer > 0) {
    if (size < 1 || size > kTextQueryLimit) return std::nullopt;
    buffer.assign(static_cast<std::size_t>(size), '\0');
    answer = query(buffer.data(), &size);
  }
  if (answer != 0) return std::nullopt;
  return std::string(buffer.data(), strnlen(buffer.data(), buffer.size()));
}

}  // namespace coverage
