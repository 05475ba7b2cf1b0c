#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>

#include "doubles/host.h"
#include "doubles/project_services.h"
#include "doubles/target.h"
#include "model/coverage_model.h"
#include "persist/command_file.h"
#include "platform/paths.h"

/// Any bytes as a ".COV" file, loaded by a command and by the automation interface into a model beside a
/// small program.
namespace {

struct World {
  World() {
    target.OfferTo(host);
    host.Offer(workspace);
    target.Function("C:\\space\\demo\\main.c", "main", 0x1000, 0x1003);
    target.Function("C:\\space\\demo\\main.c", "step", 0x1004, 0x1007);
    native =
        (std::filesystem::temp_directory_path() / ("qal-fuzz-" + std::to_string(getpid()) + ".cov")).string();
    path = platform::FromNative(native);
  }
  ~World() { std::remove(native.c_str()); }

  doubles::HostDouble host;
  doubles::TargetDouble target;
  doubles::StubWorkspace workspace;
  std::string native;
  std::string path;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static World world;
  std::FILE* file = std::fopen(world.native.c_str(), "wb");
  if (file == nullptr) return 0;
  std::fwrite(data, 1, size, file);
  std::fclose(file);
  const coverage::ProjectNames names{"Debug", "demo"};
  for (const coverage::LoadPolicy& policy : {coverage::kCommandLoad, coverage::kAutomationLoad}) {
    coverage::CoverageModel model(&world.host);
    coverage::SilentReporter silent;
    coverage::LoadCommandModel(model.Commands(), world.path, names, &world.host, policy, silent);
  }
  return 0;
}
