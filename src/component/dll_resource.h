#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/module.h"

/// The component's resource module: a library of texts, dialogs and pictures beside the component's own file.
/// User-interface thread only.
namespace coverage {

/// One loaded resource module and what it says of itself. Destroying the record releases the library.
class CDllResource {
 public:
  explicit CDllResource(std::string fileName = {}) : fileName_(std::move(fileName)) {}
  CDllResource(const CDllResource& other) { CDllResource::operator=(other); }

  virtual ~CDllResource();
  /// Copies every member and loads the library again for the copy.
  virtual CDllResource& operator=(const CDllResource& other);
  // Each sets its members to their defaults first and leaves them so when the module has no answer.
  virtual void QueryInterfaceVersion();
  virtual void QueryOrdinalVersion();
  virtual void QueryProductVersion();
  virtual void QueryType();

  /// Loads the library at fileName and asks it the four questions. False only when it cannot be loaded;
  /// `errorText`, when given, then says so.
  bool Load(std::string* errorText = nullptr);
  /// Takes over a library that somebody loaded and asks it the four questions.
  void Attach(qal::ModuleHandle module);
  /// Makes the module the first place where the component's resources are looked up, until the record is
  /// destroyed or gets another module. A copy is not current.
  void MakeCurrent();

  void GetVersionTexts(std::string* product, std::string* interfaceVersion, std::string* ordinal) const;
  bool IsAtLeast(std::int32_t major, std::int32_t minor) const;
  bool IsVersion(std::int32_t major, std::int32_t minor) const;

  qal::ModuleHandle module() const { return module_.handle(); }
  const std::string& fileName() const { return fileName_; }
  const std::string& productVersion() const { return productVersion_; }
  const std::string& type() const { return type_; }
  std::int32_t interfaceMajor() const { return interfaceMajor_; }
  std::int32_t interfaceMinor() const { return interfaceMinor_; }
  std::int32_t ordinalVersion() const { return ordinalVersion_; }

 private:
  void QueryAll();
  void LeaveCurrent();

  platform::Module module_;
  bool current_ = false;
  std::string fileName_;
  std::string productVersion_;
  std::string type_;
  std::int32_t interfaceMajor_ = 0;
  std::int32_t interfaceMinor_ = 0;
  std::int32_t ordinalVersion_ = 0;
};

/// Loads the module at `path`, a product path, and makes it the first place where the component's resources
/// are looked up, until the record is destroyed. Null, with `errorText` set and nothing changed, when it
/// cannot be loaded, is no resource module, or is one of another version; what was loaded is released again.
std::unique_ptr<CDllResource> LoadResourceModule(const std::string& path, std::string* errorText);

}  // namespace coverage
