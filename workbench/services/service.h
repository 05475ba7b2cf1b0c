#pragma once

#include "qal/ids.h"
#include "qal/unknown.h"

namespace workbench {

/// The first three slots of a service that answers one identifier. The IDE owns its services: references are
/// not counted.
template <class Interface, const qal::Guid& Iid>
class Service : public Interface {
 public:
  qal::Status QueryInterface(const qal::Guid* iid, void** out) override {
    if (!out) return qal::kFail;
    *out = nullptr;
    if (!iid || !(*iid == Iid || *iid == qal::iid::kUnknown)) return qal::kNoInterface;
    *out = static_cast<Interface*>(this);
    return qal::kOk;
  }
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }

 protected:
  ~Service() = default;
};

/// Runs the body of an operation; an exception becomes a failed status, never the component's problem.
template <class Body>
qal::Status Guarded(Body body) noexcept {
  try {
    return body();
  } catch (...) {
    return qal::kFail;
  }
}

}  // namespace workbench
