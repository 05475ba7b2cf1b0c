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
    Add(range, 1, bare);
    Add(file, 1, later);
    Add(file, 2, earlier);
  }
  static void Add(CoverageWindow& window, std::uint32_t number, CoverageInstance& instance) {
    instance.counts->SetRange(instance.start, instance.end);
    window.instances[number] = &instance;
  }
  std::vector<const CoverageWindow*> OpenWindows() override { return {&range, &file}; }
  DisassemblyCache& Instructions() override { return cache; }

  doubles::HostDouble host;
  doubles::TargetDouble target;
  DisassemblyCache cache;
  CoverageWindow range, file;
  CoverageInstance bare{&host, 0x1000, 0x1007, "", 1};
  CoverageInstance earlier{&host, 0x2000, 0x2003, "T::~T(char*)", 1};
  CoverageInstance later{&host, 0x2004, 0x2007, "T::~T(char*)", 1};
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
