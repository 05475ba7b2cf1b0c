#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "doubles/host.h"
#include "doubles/project_services.h"
#include "platform/text.h"
#include "util/placeholder_resolver.h"

/// Any bytes as a path, in either code page: expanded, and collapsed with a piece of itself as a directory.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  static doubles::HostDouble host;
  static doubles::StubWorkspace workspace;
  static doubles::StubCustomPlaceholders custom;
  custom.application = {"A", "", "$(A)", "B", "", ""};
  host.Offer(workspace);
  host.Offer(custom);
  for (const std::uint32_t codePage : {platform::kUtf8, platform::kShiftJis}) {
    platform::SetCodePage(codePage);
    workspace.configurationDirectory = std::string(text.substr(size / 4, size / 4));
    const coverage::PlaceholderResolver resolver(&host);
    bool allResolved = false;
    const std::string expanded = resolver.ExpandPlaceholders(text, "C:\\w\\main.c", &allResolved);
    if (text.find("$(") == std::string_view::npos && (expanded != text || !allResolved)) std::abort();
    resolver.CollapsePlaceholders(text);
    std::string value;
    resolver.ResolveName(text, value, text);
  }
  platform::SetCodePage(platform::kUtf8);
  return 0;
}
