#include "formatview/command_ids.h"

#include <span>

#include "platform/resources.h"

namespace coverage {
namespace {

constexpr std::uint32_t kFirstCommand = 0x7000;
constexpr std::uint32_t kLastCommand = 0xEFFF;
constexpr std::uint16_t kToolbarVersion = 1;
constexpr std::size_t kToolbarHeader = 8;  // version, width, height, count

std::uint16_t WordAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
  return static_cast<std::uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

}  // namespace

std::optional<CommandIds> ReadMenuCommands(qal::ModuleHandle module, std::uint32_t menuId) {
  platform::ResourceScope scope(module);
  const platform::MenuTemplate* menu = platform::LoadMenu(menuId);
  if (menu == nullptr) return std::nullopt;
  CommandIds ids;
  for (const auto& item : std::span(menu->items, menu->itemCount)) {
    if (item.kind != platform::MenuItemKind::kCommand) continue;
    if (item.id < kFirstCommand || item.id > kLastCommand) continue;
    if (item.text == nullptr || *item.text == '\0') continue;
    ids.push_back(item.id);
  }
  return ids;
}

std::optional<CommandIds> ReadAcceleratorCommands(qal::ModuleHandle module, std::uint32_t tableId) {
  platform::ResourceScope scope(module);
  const platform::AcceleratorTable* table = platform::LoadAccelerators(tableId);
  if (table == nullptr) return std::nullopt;
  CommandIds ids;
  for (const auto& entry : std::span(table->entries, table->count)) ids.push_back(entry.command);
  return ids;
}

std::optional<CommandIds> ReadToolbarCommands(qal::ModuleHandle module, std::uint32_t toolbarId,
                                              std::uint32_t alternateId) {
  platform::ResourceScope scope(module);
  const auto bytes = platform::LoadToolbar(toolbarId != 0 ? toolbarId : alternateId);
  if (bytes.empty()) return std::nullopt;
  CommandIds ids;
  if (bytes.size() < kToolbarHeader || WordAt(bytes, 0) != kToolbarVersion) return ids;
  const std::size_t count = WordAt(bytes, 6);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t offset = kToolbarHeader + 2 * i;
    if (offset + 2 > bytes.size()) break;
    if (const std::uint16_t id = WordAt(bytes, offset); id != 0) ids.push_back(id);
  }
  return ids;
}

}  // namespace coverage
