#include "workbench/services/component.h"

#include "platform/files.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "workbench/services/service.h"

namespace workbench {
namespace {

constexpr char kLibraryName[] = "JepCoverage.dll";

/// Notes what a library says of itself.
class Registrar final : public qal::IQComponentRegistrar {
 public:
  qal::Status QueryInterface(const qal::Guid*, void** out) override {
    if (out) *out = nullptr;
    return qal::kNoInterface;
  }
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  qal::Status RegisterComponent(qal::WideText text, std::uint32_t, std::uint32_t, std::uint32_t,
                                const qal::Guid* identifier) override {
    return Guarded([&]() -> qal::Status {
      if (!identifier) return qal::kFail;
      name = platform::Narrow(text);
      classId = *identifier;
      registered = true;
      return qal::kOk;
    });
  }

  std::string name;
  qal::Guid classId;
  bool registered = false;
};

}  // namespace

template <class Function>
Function Component::Need(const char* name) const {
  const auto found = module_.Find<Function>(name);
  if (!found) throw ComponentError("the component's library has no export " + std::string(name));
  return found;
}

Component::Component(const std::string& path) {
  std::string error;
  module_ = platform::Module::Load(path, &error);
  if (!module_) throw ComponentError("the component cannot be loaded: " + error);
  Registrar registrar;
  Need<qal::LibraryRegister2Function>("LibraryRegister2")(&registrar);
  if (!registrar.registered) throw ComponentError("the library does not register a component");
  name_ = registrar.name;
  classId_ = registrar.classId;
}

Component::~Component() { End(); }

void Component::Start(qal::IQHost& host) {
  if (instance_) throw ComponentError("the component is running already");
  const qal::Key key = this;
  Need<qal::CreateInstanceFunction>("CreateInstance")(key);
  void* found = nullptr;
  const auto query = Need<qal::QueryInterface2Function>("QueryInterface2");
  if (qal::Failed(query(key, &qal::iid::kComponent2, &found)) || !found) {
    Need<qal::DestroyInstanceFunction>("DestroyInstance")(key);
    throw ComponentError("the library gives no component");
  }
  instance_ = static_cast<qal::IQComponent2*>(found);
  const qal::Status status = instance_->Initialize(&host, qal::kTrue);
  if (qal::Failed(status)) {
    End();
    throw ComponentError(
        platform::Format("the component does not start: 0x%08X", static_cast<unsigned>(status)));
  }
}

void Component::End() {
  if (!instance_) return;
  instance_->Uninitialize(qal::kTrue);
  instance_ = nullptr;
  if (const auto destroy = module_.Find<qal::DestroyInstanceFunction>("DestroyInstance")) destroy(this);
}

std::string Component::Version() const {
  std::uint32_t major = 0;
  std::uint32_t minor = 0;
  Need<qal::GetComponentVersionFunction>("GetComponentVersion")(&major, &minor);
  return std::to_string(major) + "." + std::to_string(minor);
}

std::string FindComponent() {
  const auto self = platform::ModulePath(reinterpret_cast<const void*>(&FindComponent));
  if (!self) return {};
  const std::string directory = platform::DirectoryPart(*self);
  for (const char* place : {"", "../" QAL_MODULE_DIR}) {
    std::string path =
        platform::JoinPath(platform::FullPath(platform::JoinPath(directory, place)), kLibraryName);
    if (platform::PathExists(path)) return path;
  }
  return {};
}

}  // namespace workbench
