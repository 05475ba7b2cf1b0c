#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "doubles/host.h"
#include "doubles/target.h"
#include "macro/coverage_images.h"
#include "macro/coverage_test_client.h"
#include "macro/image_escapes.h"
#include "platform/text.h"
#include "unit/loose_records.h"

/// Two texts, divided by a line feed, as image and selection texts: taken as the selection, verified against
/// a range and a file window, and compared with each other. The whole is also a name that must come back.
namespace {

using namespace coverage;

struct World final : ImageWindows {
  World() {
    target.Fill(0, 0x2fff);
    target.OfferTo(host);
    file.kind = WindowKind::kFile;
    file.sourceFile = "C:\\a (%28)*~.c";
    Add(range, 0x1000, 0x1007, "");
    Add(file, 0x2004, 0x2007, "T::~T(char*)");
    Add(file, 0x2000, 0x2003, "T::~T(char*)");
  }
  void Add(CoverageWindow& window, std::uint32_t start, std::uint32_t end, std::string name) {
    auto instance = std::make_shared<LooseInstance>(&host, start, end, std::move(name), 1);
    instance->Register(start, end);
    window.instances[static_cast<std::uint32_t>(window.instances.size() + 1)] = std::move(instance);
  }
  std::vector<const CoverageWindow*> OpenWindows() override { return {&range, &file}; }
  DisassemblyCache& Instructions() override { return cache; }

  doubles::HostDouble host;
  doubles::TargetDouble target;
  DisassemblyCache cache;
  CoverageWindow range, file;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (ReadName(WrittenName(text)) != text || ReadToken(WrittenToken(text)) != text) std::abort();
  if (WrittenName(text).find_first_of("()~*") != std::string::npos) std::abort();
  const std::size_t half = text.find('\n');
  const platform::Wide first(text.substr(0, half));
  const platform::Wide second(half == std::string_view::npos ? text : text.substr(half + 1));
  CoverageTestClient client(&world.host, nullptr, &world, nullptr);

  qal::Flag unfinished = qal::kTrue;
  client.SetSelectionChecked(second.get(), &unfinished);
  platform::WideOut selection, image, again, name, messages;
  client.GetSelection(selection.put());
  client.SetSelection(selection.get());
  client.GetSelection(again.put());
  if (selection.str() != again.str()) std::abort();
  client.GetImage(image.put());
  std::uint32_t runStatus = 0;
  client.Verify(image.get(), name.put(), messages.put(), &runStatus);
  if (runStatus != 0) std::abort();  // verified at once
  client.Verify(first.get(), name.put(), messages.put(), &runStatus);
  const bool malformed = runStatus == 2;
  runStatus = 0;
  client.Compare(first.get(), second.get(), name.put(), messages.put(), &runStatus);
  if (malformed && runStatus != 2) std::abort();
  return 0;
}
