#include "util/texts.h"

#include <algorithm>
#include <atomic>
#include <vector>

#include "resource_data.h"

namespace coverage {
namespace {

std::vector<qal::ModuleHandle> addedModules;
/// The last of them, for readers of any thread.
std::atomic<qal::ModuleHandle> resourceModule{0};

}  // namespace

std::string Text(std::uint32_t id) { return platform::LoadText(Resources(), id).value_or(std::string{}); }

qal::ModuleHandle ResourceModule() { return resourceModule; }

void AddResourceModule(qal::ModuleHandle module) {
  addedModules.push_back(module);
  resourceModule = module;
}

void RemoveResourceModule(qal::ModuleHandle module) {
  const auto last = std::find(addedModules.rbegin(), addedModules.rend(), module);
  if (last == addedModules.rend()) return;
  addedModules.erase(std::next(last).base());
  resourceModule = addedModules.empty() ? 0 : addedModules.back();
}

platform::ResourceContext Resources() { return {resourceModule, &resource_data::kTable}; }

}  // namespace coverage
