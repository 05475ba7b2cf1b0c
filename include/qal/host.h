#pragma once

#include "qal/reserve.h"

/// The roots that the IDE hands to a component.
namespace qal {

/// Where LibraryRegister2 enters the component.
struct IQComponentRegistrar : Reserve<IQUnknown, 3, 24> {
  /// The name is freed by the caller after the call.
  virtual Status RegisterComponent(WideText name, std::uint32_t two, std::uint32_t one, std::uint32_t zero,
                                   const Guid* classId) = 0;  // slot 25
};

/// Root of every service. QueryInterface gives the session-state service; it outlives the component's binding
/// to it.
struct IQHost : Reserve<IQUnknown, 3, 8> {
  /// The service registered under `service`, or a negative status and null. Nothing is counted or released.
  virtual Status GetService(const Guid* service, void** out) = 0;  // slot 9
  /// Starts notifications to the sink; the same sink may be registered under several identifiers.
  virtual Status Advise(const Guid* identifier, IQUnknown* sink) = 0;                  // slot 10
  virtual Status RegisterProvider(const Guid* identifier, IQUnknown* provider) = 0;    // slot 11
  virtual Status Unadvise(const Guid* identifier, IQUnknown* sink) = 0;                // slot 12
  virtual Status UnregisterProvider(const Guid* identifier, IQUnknown* provider) = 0;  // slot 13
};

}  // namespace qal
