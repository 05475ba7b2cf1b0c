#include "formatview/customizer.h"

#include <utility>

#include "formatview/command_ids.h"
#include "model/services.h"
#include "platform/text.h"
#include "platform/variant.h"
#include "qal/ids.h"

namespace coverage {
namespace {

constexpr qal::Status kNoResource = 1;
constexpr std::uint32_t kMenuFlag = 1;

/// A list as it crosses the window service; an absent one is an empty variant.
class List {
 public:
  List() = default;
  explicit List(const std::optional<CommandIds>& ids) {
    if (ids) *variant_.put() = platform::IdListVariant(*ids);
  }
  explicit List(const std::optional<std::vector<std::string>>& texts) {
    if (texts) *variant_.put() = platform::TextListVariant(*texts);
  }
  explicit List(std::span<const std::uint32_t> ids) {
    if (!ids.empty()) *variant_.put() = platform::IdListVariant(ids);
  }
  const qal::Variant* get() const { return variant_.get(); }

 private:
  platform::OwnedVariant variant_;
};

}  // namespace

template <class Record>
void CUiCustomizer::Table<Record>::Store(RegistrationKey key, std::uintptr_t identifier, Record record) {
  auto& entries = keys[key];
  for (auto& entry : entries) {
    if (entry.identifier == identifier) {
      entry.record = record;
      return;
    }
  }
  entries.push_back({identifier, record});
}

template <class Record>
auto CUiCustomizer::Table<Record>::Take(RegistrationKey key) -> std::vector<Entry> {
  const auto found = keys.find(key);
  if (found == keys.end()) return {};
  std::vector<Entry> entries = std::move(found->second);
  keys.erase(found);
  return entries;
}

CUiCustomizer::CUiCustomizer(qal::IQHost* host) {
  window4 = FindService<qal::IQWindowService4>(host, qal::iid::kWindowService4);
  window3 = FindService<qal::IQWindowService3>(host, qal::iid::kWindowService3);
  window2 = FindService<qal::IQWindowService2>(host, qal::iid::kWindowService2);
  window1 = FindService<qal::IQWindowService1>(host, qal::iid::kWindowService1);
}

qal::Status CUiCustomizer::RegisterToolbarButtons(qal::WindowHandle parent, qal::ModuleHandle module,
                                                  std::uint32_t bitmapId, std::uint32_t value,
                                                  std::uint32_t key, const qal::Guid& classId,
                                                  const std::array<std::span<const std::uint32_t>, 5>& ids) {
  if (window2 == nullptr) return qal::kFail;
  const List lists[] = {List(ids[0]), List(ids[1]), List(ids[2]), List(ids[3]), List(ids[4])};
  return window2->RegisterToolbarButtons(parent, module, bitmapId, value, key, &classId, lists[0].get(),
                                         lists[1].get(), lists[2].get(), lists[3].get(), lists[4].get());
}

qal::Status CUiCustomizer::CustomizeToolbar(qal::WindowHandle frame) {
  return window2 == nullptr ? qal::kFail : window2->CustomizeToolbar(frame);
}

qal::Status CUiCustomizer::IsToolbarShown(qal::WindowHandle frame) {
  return window2 == nullptr ? 0 : window2->IsToolbarShown(frame);
}

qal::Status CUiCustomizer::ShowToolbar(qal::WindowHandle frame, bool shown) {
  return window2 == nullptr ? qal::kFail : window2->ShowToolbar(frame, shown ? qal::kTrue : qal::kFalse);
}

qal::Status CUiCustomizer::PassSlot50(std::uintptr_t argument) {
  return window1 == nullptr ? qal::kFail : window1->Reserved50(argument);
}

qal::Status CUiCustomizer::RegisterMenu(qal::ModuleHandle module, std::uint32_t menuId, std::uint32_t key,
                                        const qal::Guid& classId) {
  const auto ids = ReadMenuCommands(module, menuId);
  if (!ids) return kNoResource;
  if (window1 == nullptr) return qal::kFail;
  std::uint32_t out = 0;
  const platform::Wide none("");
  const qal::Status status = window1->RegisterMenu(module, menuId, key, &classId, List(ids).get(), &out, &out,
                                                   none.get(), none.get(), kMenuFlag);
  if (status == qal::kOk) menus_.Store(key, menuId, {menuId, key});
  return status;
}

qal::Status CUiCustomizer::RegisterWindowMenu(qal::WindowHandle window, qal::ModuleHandle module,
                                              std::uint32_t menuId, std::uint32_t key,
                                              const qal::Guid& classId) {
  const auto ids = ReadMenuCommands(module, menuId);
  if (!ids) return kNoResource;
  if (window1 == nullptr) return qal::kFail;
  std::uint32_t out = 0;
  const qal::Status status =
      window1->RegisterWindowMenu(window, module, menuId, key, &classId, List(ids).get(), &out, &out);
  if (status == qal::kOk) windowMenus_.Store(key, window, {window, menuId, key});
  return status;
}

qal::Status CUiCustomizer::RegisterAccelerators(qal::ModuleHandle module, std::uint32_t tableId,
                                                std::uint32_t key, const qal::Guid& classId) {
  const auto ids = ReadAcceleratorCommands(module, tableId);
  if (!ids) return kNoResource;
  if (window1 == nullptr) return qal::kFail;
  std::uint32_t out = 0;
  const qal::Status status =
      window1->RegisterAccelerators(module, tableId, key, &classId, List(ids).get(), &out, &out);
  if (status == qal::kOk) accelerators_.Store(key, tableId, {tableId, key});
  return status;
}

qal::Status CUiCustomizer::RegisterToolbar(std::string_view identifier, std::string_view name,
                                           qal::ModuleHandle module, std::uint32_t toolbarId,
                                           std::uint32_t alternateId, std::uint32_t key,
                                           const qal::Guid& classId, const ToolbarLists& lists) {
  std::optional<CommandIds> buttonIds = lists.buttonIds;
  if (!lists.buttonIds && !lists.secondIds) {
    buttonIds = ReadToolbarCommands(module, toolbarId, alternateId);
    if (!buttonIds) return qal::kFail;
  }
  if (window2 == nullptr) return qal::kFail;
  const platform::Wide wideIdentifier(identifier);
  const platform::Wide wideName(name);
  const qal::Status status = window2->RegisterToolbar(
      wideIdentifier.get(), wideName.get(), module, toolbarId, alternateId, key, &classId,
      List(buttonIds).get(), List(lists.secondIds).get(), List(lists.texts).get(),
      List(lists.further[0]).get(), List(lists.further[1]).get(), List(lists.further[2]).get(),
      List(lists.further[3]).get());
  if (status == qal::kOk) {
    toolbars_.Store(key, toolbarId != 0 ? toolbarId : alternateId, {toolbarId, alternateId, key});
  }
  return status;
}

qal::Status CUiCustomizer::RegisterContextMenu(qal::WindowHandle parent, qal::WindowHandle window,
                                               std::uint32_t position, std::string_view name,
                                               std::uint32_t first, std::uint32_t value, std::uint32_t key,
                                               const qal::Guid& classId) {
  if (window1 == nullptr) return qal::kFail;
  const qal::Status status = window1->RegisterContextMenu(
      parent, window, position, platform::Wide(name).get(), first, value, key, &classId);
  if (status == qal::kOk) contextMenus_.Store(key, window, {parent, window, value, key});
  return status;
}

qal::Status CUiCustomizer::RegisterWindow(std::uint32_t key, const qal::Guid& classId,
                                          qal::WindowHandle window) {
  if (window1 == nullptr) return qal::kFail;
  const qal::Status status = window1->RegisterWindow(key, &classId, window);
  if (status == qal::kOk) windows_.Store(key, window, {key});
  return status;
}

qal::Status CUiCustomizer::RegisterResourceModule(qal::ModuleHandle module, std::uint32_t key,
                                                  const qal::Guid& classId) {
  if (window1 == nullptr) return qal::kFail;
  const qal::Status status = window1->RegisterResourceModule(module, key, &classId);
  if (status == qal::kOk) resourceModules_.Store(key, module, {key});
  return status;
}

// A withdrawal can only follow a registration, so the version that took it is there; the count of context
// menus is the newest version's and may be missing.

void CUiCustomizer::Withdraw(const ContextMenu& menu) {
  window1->UnregisterContextMenu(menu.parent, menu.window, menu.value, menu.key);
  if (menu.parent == 0 || window4 == nullptr) return;
  std::uint32_t left = 1;
  if (qal::Succeeded(window4->GetContextMenuCount(menu.parent, &left)) &&
      static_cast<std::int32_t>(left) < 1) {
    window1->UnregisterContextParent(menu.parent);
  }
}

void CUiCustomizer::Withdraw(const WindowMenu& menu) {
  window1->UnregisterWindowMenu(menu.window, menu.menuId, menu.key);
}

void CUiCustomizer::Withdraw(const Menu& menu) { window1->UnregisterMenu(menu.menuId, menu.key); }

void CUiCustomizer::Withdraw(const Accelerators& accelerators) {
  window1->UnregisterAccelerators(accelerators.tableId, accelerators.key);
}

void CUiCustomizer::Withdraw(const Toolbar& toolbar) {
  qal::IQWindowService1* const service = window1 != nullptr ? window1 : window2;
  service->UnregisterToolbar(toolbar.toolbarId, toolbar.alternateId, toolbar.key);
}

void CUiCustomizer::Withdraw(const ResourceModule& module) { window1->UnregisterResourceModule(module.key); }

void CUiCustomizer::Withdraw(const Window& window) { window1->UnregisterWindow(window.key); }

template <class Record>
void CUiCustomizer::WithdrawTable(Table<Record>& table, RegistrationKey key) {
  for (const auto& entry : table.Take(key)) Withdraw(entry.record);
}

void CUiCustomizer::UnregisterAll(RegistrationKey key) {
  WithdrawTable(contextMenus_, key);
  WithdrawTable(windowMenus_, key);
  WithdrawTable(menus_, key);
  WithdrawTable(accelerators_, key);
  WithdrawTable(toolbars_, key);
  WithdrawTable(resourceModules_, key);
  WithdrawTable(windows_, key);
}

std::uint32_t CUiCustomizer::NewKey() {
  std::uint32_t key = 0;
  if (window1 == nullptr || qal::Failed(window1->NewKey(&key))) return 0;
  return key;
}

qal::Status CUiCustomizer::CreateFrame(std::string_view key, std::string_view title, std::uint32_t style,
                                       std::uint32_t position, qal::WindowHandle* frame,
                                       std::string* frameKey) {
  *frame = 0;
  if (window1 == nullptr) return qal::kFail;
  char16_t* exchanged = frameKey == nullptr ? nullptr : platform::NewWide(*frameKey);
  const platform::Wide wideKey(key);
  const platform::Wide wideTitle(title);
  const qal::Status status = window1->CreateFrame(wideKey.get(), wideTitle.get(), style, position, frame,
                                                  frameKey == nullptr ? nullptr : &exchanged);
  if (frameKey != nullptr) *frameKey = platform::Narrow(qal::WideText{exchanged});
  qal::FreeText(exchanged);
  return status;
}

qal::Status CUiCustomizer::SetFrameTitle(qal::WindowHandle frame, std::string_view title) {
  return window1 == nullptr ? qal::kFail : window1->SetFrameTitle(frame, platform::Wide(title).get());
}

qal::Status CUiCustomizer::SetFrameState(qal::WindowHandle frame, std::uint32_t state) {
  return window1 == nullptr ? qal::kFail : window1->SetFrameState(frame, state);
}

qal::Status CUiCustomizer::GetFrameState(qal::WindowHandle frame, std::uint32_t* state) {
  return window1 == nullptr ? qal::kFail : window1->GetFrameState(frame, state);
}

qal::Status CUiCustomizer::QueryFrameToolbar(qal::WindowHandle frame) {
  return window2 == nullptr ? qal::kFail : window2->QueryFrameToolbar(frame);
}

}  // namespace coverage
