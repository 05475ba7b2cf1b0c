#include "platform/resources.h"

#include <algorithm>
#include <bit>
#include <map>
#include <mutex>

#include "platform/module.h"
#include "platform/text.h"

namespace platform {
namespace {

thread_local ResourceContext current;

std::mutex registryMutex;
std::map<qal::ModuleHandle, const ResourceTable*>& Registry() {
  static auto& registry = *new std::map<qal::ModuleHandle, const ResourceTable*>;
  return registry;
}

const ResourceTable* OfThisVersion(const ResourceTable* table) {
  return table && table->version == kResourceTableVersion ? table : nullptr;
}

template <class Entry>
const Entry* FindById(const Entry* entries, std::uint32_t count, std::uint32_t id) {
  if (count == 0) return nullptr;
  const Entry* last = entries + count;
  const Entry* found = std::lower_bound(
      entries, last, id, [](const Entry& entry, std::uint32_t wanted) { return entry.id < wanted; });
  return found != last && found->id == id ? found : nullptr;
}

template <class Entry>
const Entry* Find(const ResourceContext& context, std::uint32_t id, const Entry* ResourceTable::*list,
                  std::uint32_t ResourceTable::*count) {
  for (const ResourceTable* table : {ResourcesOf(context.module), context.own}) {
    if (!table) continue;
    if (const Entry* found = FindById(table->*list, table->*count, id)) return found;
  }
  return nullptr;
}

}  // namespace

ResourceScope::ResourceScope(ResourceContext context) : before_(current) { current = context; }
ResourceScope::ResourceScope(qal::ModuleHandle module) : before_(current) { current.module = module; }
ResourceScope::~ResourceScope() { current = before_; }

ResourceContext CurrentResources() { return current; }

void RegisterResourceTable(qal::ModuleHandle module, const ResourceTable* table) {
  const std::lock_guard lock(registryMutex);
  if (table) {
    Registry()[module] = table;
  } else {
    Registry().erase(module);
  }
}

const ResourceTable* ResourcesOf(qal::ModuleHandle module) {
  if (!module) return nullptr;
  {
    const std::lock_guard lock(registryMutex);
    if (const auto found = Registry().find(module); found != Registry().end())
      return OfThisVersion(found->second);
  }
  const auto* table = static_cast<const ResourceTable*>(FindExport(module, kResourceTableSymbol));
  return OfThisVersion(table);
}

std::optional<std::string> LoadText(const ResourceContext& context, std::uint32_t id) {
  const StringResource* found = Find(context, id, &ResourceTable::strings, &ResourceTable::stringCount);
  if (!found) return std::nullopt;
  return FromUtf8(found->text);
}

const BitmapResource* LoadBitmap(const ResourceContext& context, std::uint32_t id) {
  return Find(context, id, &ResourceTable::bitmaps, &ResourceTable::bitmapCount);
}

std::optional<std::string> LoadText(std::uint32_t id) { return LoadText(current, id); }
const BitmapResource* LoadBitmap(std::uint32_t id) { return LoadBitmap(current, id); }

const DialogTemplate* LoadDialog(std::uint32_t id) {
  return Find(current, id, &ResourceTable::dialogs, &ResourceTable::dialogCount);
}

const MenuTemplate* LoadMenu(std::uint32_t id) {
  return Find(current, id, &ResourceTable::menus, &ResourceTable::menuCount);
}

const AcceleratorTable* LoadAccelerators(std::uint32_t id) {
  return Find(current, id, &ResourceTable::accelerators, &ResourceTable::acceleratorCount);
}

std::span<const std::uint8_t> LoadToolbar(std::uint32_t id) {
  const ToolbarResource* found = Find(current, id, &ResourceTable::toolbars, &ResourceTable::toolbarCount);
  return found ? std::span(found->bytes, found->size) : std::span<const std::uint8_t>{};
}

std::span<const std::uint8_t> BitmapBytes(const BitmapResource& bitmap, std::size_t limit) {
  static_assert(std::endian::native == std::endian::little);
  const std::size_t size = std::size_t{bitmap.width} * bitmap.height * sizeof(std::uint32_t);
  return {reinterpret_cast<const std::uint8_t*>(bitmap.pixels), std::min(size, limit)};
}

}  // namespace platform
