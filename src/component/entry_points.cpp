#include <cstdint>
#include <new>

#include "component/coverage_data_ctrl.h"
#include "component/instance_registry.h"
#include "platform/module.h"
#include "qal/all.h"

/// The five exports of the library. All are called on the IDE's user-interface thread, and nothing is thrown
/// out of them.
namespace coverage {
namespace {

InstanceRegistry& Registry() {
  static InstanceRegistry registry;
  return registry;
}

}  // namespace
}  // namespace coverage

extern "C" {

qal::Status LibraryRegister2(qal::IQComponentRegistrar* registrar) try {
  if (registrar != nullptr) {
    // Without memory the component registers without its name.
    char16_t* const name = qal::AllocText(u"Generic JEP Coverage");
    registrar->RegisterComponent(name, 2, 1, 0, &qal::kClassId);
    qal::FreeText(name);
  }
  return qal::kOk;
} catch (...) {
  return qal::kOk;
}

qal::Status QueryInterface2(void* key, const qal::Guid* iid, void** out) try {
  if (out == nullptr) return qal::kNoInterface;
  *out = nullptr;
  coverage::CJepCoverageDataCtrl* const object = coverage::Registry().Find(key);
  if (object == nullptr || iid == nullptr) return qal::kNoInterface;
  return qal::Failed(object->QueryInterface(iid, out)) ? qal::kNoInterface : qal::kOk;
} catch (...) {
  return qal::kNoInterface;
}

qal::Status CreateInstance(void* key) try {
  coverage::CJepCoverageDataCtrl* object = nullptr;
  try {
    object = new coverage::CJepCoverageDataCtrl;
  } catch (...) {
    // The key then stands for no object.
  }
  coverage::Registry().Enter(key, object);
  return qal::kOk;
} catch (...) {
  return qal::kOk;
}

qal::Status DestroyInstance(void* key) try {
  delete coverage::Registry().Take(key);
  return qal::kOk;
} catch (...) {
  return qal::kOk;
}

qal::Status GetComponentVersion(std::uint32_t* major, std::uint32_t* minor) {
  if (major != nullptr) *major = 1;
  if (minor != nullptr) *minor = 0;
  return qal::kOk;
}

/// Exports by number, for who looks them up that way.
QAL_EXPORT extern const platform::ExportOrdinal QalExportOrdinals[];
const platform::ExportOrdinal QalExportOrdinals[] = {
    {1, "LibraryRegister2", reinterpret_cast<void*>(&LibraryRegister2)},
    {2, "QueryInterface2", reinterpret_cast<void*>(&QueryInterface2)},
    {3, "CreateInstance", reinterpret_cast<void*>(&CreateInstance)},
    {4, "DestroyInstance", reinterpret_cast<void*>(&DestroyInstance)},
    {5, "GetComponentVersion", reinterpret_cast<void*>(&GetComponentVersion)},
    {0, nullptr, nullptr},
};

}  // extern "C"
