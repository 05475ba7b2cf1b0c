#pragma once

#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "qal/host.h"
#include "qal/ids.h"

namespace workbench {

/// The host object: the table of services, and what components registered with it. Looking up a service is
/// for any thread; everything else is for the main thread.
class Host final : public qal::IQHost {
 public:
  struct ServiceState {
    std::string name;
    bool on;         ///< not taken away
    bool available;  ///< given when asked for
  };
  using Registration = std::pair<qal::Guid, qal::IQUnknown*>;

  /// Offers `object` (the address of the interface) under an identifier. Several identifiers may share a name
  /// and are then switched together. `available`, when given, is asked on every look-up, on the thread of the
  /// look-up.
  void Offer(std::string name, const qal::Guid& identifier, void* object,
             std::function<bool()> available = {});
  /// The same for an identifier that is reached through QueryInterface of the host object.
  void OfferInterface(std::string name, const qal::Guid& identifier, void* object);
  /// Takes a service away or brings it back. False when there is no such service.
  bool Switch(std::string_view name, bool on);
  /// By name, each once, in the order in which they were offered.
  std::vector<ServiceState> Services() const;
  /// Identifiers that were asked for and that nobody offers.
  std::vector<qal::Guid> Unknown() const;

  /// Sinks and providers under an identifier, in the order of registration.
  std::vector<qal::IQUnknown*> Sinks(const qal::Guid& identifier) const;
  template <class Interface>
  std::vector<Interface*> SinksAs(const qal::Guid& identifier) const {
    std::vector<Interface*> found;
    for (auto* sink : Sinks(identifier)) found.push_back(static_cast<Interface*>(sink));
    return found;
  }
  /// The newest provider under an identifier, or null.
  qal::IQUnknown* Provider(const qal::Guid& identifier) const;
  std::size_t RegistrationCount() const { return sinks_.size() + providers_.size(); }
  /// Forgets every registration, as when the component that made them is gone.
  void ForgetRegistrations();

  // qal::IQHost
  qal::Status QueryInterface(const qal::Guid* iid, void** out) override;
  std::uint32_t AddRef() override { return 1; }
  std::uint32_t Release() override { return 1; }
  qal::Status GetService(const qal::Guid* service, void** out) override;
  qal::Status Advise(const qal::Guid* identifier, qal::IQUnknown* sink) override;
  qal::Status RegisterProvider(const qal::Guid* identifier, qal::IQUnknown* provider) override;
  qal::Status Unadvise(const qal::Guid* identifier, qal::IQUnknown* sink) override;
  qal::Status UnregisterProvider(const qal::Guid* identifier, qal::IQUnknown* provider) override;

 private:
  struct Entry {
    std::string name;
    qal::Guid identifier;
    void* object;
    std::function<bool()> available;
    bool throughQuery;
    bool on = true;
  };
  qal::Status Find(const qal::Guid* identifier, bool throughQuery, void** out);

  mutable std::mutex mutex_;  // guards entries_ and unknown_
  std::vector<Entry> entries_;
  std::set<qal::Guid> unknown_;
  std::vector<Registration> sinks_;
  std::vector<Registration> providers_;
};

/// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}".
std::string GuidText(const qal::Guid& guid);

}  // namespace workbench
