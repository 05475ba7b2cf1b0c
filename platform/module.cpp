#include "platform/module.h"

#include <dlfcn.h>

#include <map>
#include <mutex>
#include <utility>

#include "platform/native_path.h"
#include "platform/paths.h"
#include "platform/text.h"

namespace platform {
namespace {

/// How often each handle is held: only these may be asked for exports.
std::mutex heldMutex;
std::map<qal::ModuleHandle, int>& Held() {
  static auto& held = *new std::map<qal::ModuleHandle, int>;  // outlives every static holder
  return held;
}

}  // namespace

Module::~Module() {
  if (!handle_) return;
  {
    const std::lock_guard lock(heldMutex);
    if (--Held()[handle_] == 0) Held().erase(handle_);
  }
  dlclose(reinterpret_cast<void*>(handle_));
}

Module::Module(Module&& other) noexcept : handle_(other.release()) {}

Module& Module::operator=(Module&& other) noexcept {
  Module taken(std::move(other));
  std::swap(handle_, taken.handle_);
  return *this;
}

Module Module::Load(const std::string& path, std::string* error) {
  void* handle = dlopen(ToNative(path).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!handle && error) {
    const char* reason = dlerror();
    *error = FromUtf8(reason ? reason : "");
  }
  return Attach(reinterpret_cast<qal::ModuleHandle>(handle));
}

Module Module::Attach(qal::ModuleHandle handle) {
  Module module;
  module.handle_ = handle;
  if (handle) {
    const std::lock_guard lock(heldMutex);
    ++Held()[handle];
  }
  return module;
}

qal::ModuleHandle Module::release() { return std::exchange(handle_, 0); }

void* FindExport(qal::ModuleHandle module, const char* name) {
  {
    const std::lock_guard lock(heldMutex);
    if (!Held().contains(module)) return nullptr;
  }
  return dlsym(reinterpret_cast<void*>(module), name);
}

void* Module::FindExport(const char* name) const { return platform::FindExport(handle_, name); }

void* Module::FindExport(std::uint32_t ordinal) const {
  const auto* entry = static_cast<const ExportOrdinal*>(FindExport(kExportOrdinalsSymbol));
  while (entry && entry->ordinal != 0) {
    if (entry->ordinal == ordinal) return entry->address;
    ++entry;
  }
  return nullptr;
}

std::optional<std::string> ModulePath(const void* address) {
  Dl_info info{};
  if (!dladdr(address, &info) || !info.dli_fname || !*info.dli_fname) return std::nullopt;
  std::string native = info.dli_fname;
  if (native[0] != '/') {  // as a relative path was given to the loader
    const std::optional<std::string> full = FullNativePath(native);
    if (!full) return std::nullopt;
    native = *full;
  }
  return FromNative(native);
}

}  // namespace platform
