#pragma once

#include <stdexcept>
#include <string>

#include "platform/module.h"
#include "qal/component.h"
#include "qal/entry_points.h"
#include "qal/host.h"

namespace workbench {

class ComponentError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A component's library and the one instance made of it, driven only through the library's exports. Main
/// thread.
class Component {
 public:
  /// Loads the library at a product path and lets it register itself. Throws ComponentError.
  explicit Component(const std::string& path);
  /// Ends the instance.
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  /// Creates an instance and binds it to `host`. Throws ComponentError; nothing is left behind then.
  void Start(qal::IQHost& host);
  /// Unbinds and destroys the instance, if there is one.
  void End();

  /// Null while there is no instance.
  qal::IQComponent2* Instance() const { return instance_; }
  /// As the library registered itself.
  const std::string& Name() const { return name_; }
  const qal::Guid& ClassId() const { return classId_; }
  std::string Version() const;

 private:
  template <class Function>
  Function Need(const char* name) const;

  platform::Module module_;
  std::string name_;
  qal::Guid classId_;
  qal::IQComponent2* instance_ = nullptr;
};

/// Where the component's library is: beside this program, or in the library directory of an installation.
/// Empty when it is in neither place.
std::string FindComponent();

}  // namespace workbench
