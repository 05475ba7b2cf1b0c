#pragma once

#include "qal/types.h"

namespace qal {

/// The first three slots of every interface. Nobody counts references: the component answers AddRef with 1
/// and Release with 0, and never calls either on a service.
struct IQUnknown {
  /// Gives the interface asked for, or null and kNoInterface.
  virtual Status QueryInterface(const Guid* iid, void** out) = 0;
  virtual std::uint32_t AddRef() = 0;
  virtual std::uint32_t Release() = 0;

 protected:
  ~IQUnknown() = default;
};

}  // namespace qal
