#include "workbench/services/editor_service.h"

#include "platform/text.h"
#include "workbench/services/coverage_services.h"
#include "workbench/services/program_services.h"

namespace workbench {

qal::Status Editor::ShowSourceLine(std::uint32_t*, std::uint32_t line, char16_t** file) {
  if (!file) return qal::kFail;
  return Guarded([&]() -> qal::Status {
    const auto debuggee = debugger_.Current();
    if (!debuggee) return kNothingLoaded;
    const std::string found = debuggee->program->FindSourceFile(NativeSourcePath(platform::Narrow(*file)));
    if (found.empty()) return kNoSourceFile;
    const std::string path = ProductSourcePath(found);
    qal::FreeText(*file);
    *file = platform::NewWide(path);
    user_.ShowSource(path, line);
    return qal::kOk;
  });
}

qal::Status Editor::ShowAddress(std::uint32_t address, std::uint32_t) {
  return Guarded([&] {
    user_.ShowAddress(address);
    return qal::kOk;
  });
}

}  // namespace workbench
