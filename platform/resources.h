#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/api.h"
#include "platform/resource_table.h"
#include "qal/types.h"

/// Finding resources. A look-up goes through the current resource context: its resource module first, then
/// the table of the library that set it. Each thread has a context of its own, at start without any
/// resources. What a look-up gives lives as long as the module it came from.
namespace platform {

struct ResourceContext {
  qal::ModuleHandle module = 0;
  const ResourceTable* own = nullptr;
};

/// Makes a context the current one for a scope and brings the one before back at its end.
class PLATFORM_API ResourceScope {
 public:
  explicit ResourceScope(ResourceContext context);
  /// Changes the module only.
  explicit ResourceScope(qal::ModuleHandle module);
  ~ResourceScope();
  ResourceScope(const ResourceScope&) = delete;
  ResourceScope& operator=(const ResourceScope&) = delete;

 private:
  ResourceContext before_;
};

PLATFORM_API ResourceContext CurrentResources();

/// A table that stands for a handle of which no module need be loaded: a program's own resources, a test's.
/// Null takes it away. The table must outlive its use.
PLATFORM_API void RegisterResourceTable(qal::ModuleHandle module, const ResourceTable* table);
/// The table of a module; null when it has none of this version.
PLATFORM_API const ResourceTable* ResourcesOf(qal::ModuleHandle module);

/// In the system code page.
PLATFORM_API std::optional<std::string> LoadText(std::uint32_t id);
PLATFORM_API const DialogTemplate* LoadDialog(std::uint32_t id);
PLATFORM_API const MenuTemplate* LoadMenu(std::uint32_t id);
PLATFORM_API const AcceleratorTable* LoadAccelerators(std::uint32_t id);
/// The bytes of the toolbar; empty when there is none.
PLATFORM_API std::span<const std::uint8_t> LoadToolbar(std::uint32_t id);
PLATFORM_API const BitmapResource* LoadBitmap(std::uint32_t id);

/// The same, in one given context.
PLATFORM_API std::optional<std::string> LoadText(const ResourceContext& context, std::uint32_t id);
PLATFORM_API const BitmapResource* LoadBitmap(const ResourceContext& context, std::uint32_t id);

/// The pixels as bytes, as interfaces carry them (blue, green, red, 0 for each pixel), `limit` of them at
/// most.
PLATFORM_API std::span<const std::uint8_t> BitmapBytes(const BitmapResource& bitmap, std::size_t limit);

}  // namespace platform
