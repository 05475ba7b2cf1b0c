#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/api.h"
#include "qal/types.h"

/// Loadable modules. Any thread.
namespace platform {

/// One line of a module's ordinal table. A module that offers exports by number defines
/// `extern "C" const platform::ExportOrdinal QalExportOrdinals[]`, ended by {0, nullptr, nullptr}.
struct ExportOrdinal {
  std::uint32_t ordinal;
  const char* name;
  void* address;
};
inline constexpr char kExportOrdinalsSymbol[] = "QalExportOrdinals";

/// A module held open; moving hands the hold on, the last holder closes it.
class PLATFORM_API Module {
 public:
  Module() = default;
  ~Module();
  Module(Module&& other) noexcept;
  Module& operator=(Module&& other) noexcept;

  /// Loads the file at a product path. On failure the object is empty and `error`, when given, says why.
  static Module Load(const std::string& path, std::string* error = nullptr);
  /// Takes over a handle that somebody loaded; it is closed with the object.
  static Module Attach(qal::ModuleHandle handle);

  explicit operator bool() const { return handle_ != 0; }
  qal::ModuleHandle handle() const { return handle_; }
  /// Gives the handle away without closing it.
  qal::ModuleHandle release();

  /// Address of an export, or null.
  void* FindExport(const char* name) const;
  void* FindExport(std::uint32_t ordinal) const;
  template <class Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(FindExport(name));
  }

 private:
  qal::ModuleHandle handle_ = 0;
};

/// Export of a module that a Module holds, by its handle; null for 0 and for a handle that nobody holds.
PLATFORM_API void* FindExport(qal::ModuleHandle module, const char* name);

/// Product path of the file that `address` was loaded from; nothing when no module holds it.
PLATFORM_API std::optional<std::string> ModulePath(const void* address);

}  // namespace platform
