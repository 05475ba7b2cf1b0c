#include "util/texts.h"

#include <atomic>

#include "resource_data.h"

namespace coverage {
namespace {

std::atomic<qal::ModuleHandle> resourceModule{0};

}  // namespace

std::string Text(std::uint32_t id) { return platform::LoadText(Resources(), id).value_or(std::string{}); }

void SetResourceModule(qal::ModuleHandle module) { resourceModule = module; }
qal::ModuleHandle ResourceModule() { return resourceModule; }

platform::ResourceContext Resources() { return {resourceModule, &resource_data::kTable}; }

}  // namespace coverage
