#pragma once

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "doubles/double.h"
#include "qal/host.h"

namespace doubles {

/// A host object that answers QueryInterface and GetService from one table, and writes down who registers
/// what.
class HostDouble : public Double<qal::IQHost> {
 public:
  using Double::Double;

  /// Offers a double under its own service identifier, or anything under the one given.
  template <class Service>
  void Offer(Service& service) {
    Offer(Service::kService, &service);
  }
  template <class Service>
  void Offer(const Guid& id, Service* service) {
    if constexpr (requires { typename Service::Interface; }) {
      table_[id] = static_cast<typename Service::Interface*>(service);
    } else {
      table_[id] = service;
    }
  }
  template <class... Services>
  void OfferAll(Services&... services) {
    (Offer(services), ...);
  }
  void Withdraw(const Guid& id) { table_.erase(id); }
  /// What it offers now.
  std::vector<Guid> Services() const {
    std::vector<Guid> ids;
    for (const auto& [id, service] : table_) ids.push_back(id);
    return ids;
  }

  /// Whoever is registered under the identifier now, in order.
  template <class Interface = qal::IQUnknown>
  std::vector<Interface*> Registered(const Guid& id) const {
    std::vector<Interface*> found;
    for (const auto& [key, sink] : registered_) {
      if (key == id) found.push_back(static_cast<Interface*>(sink));
    }
    return found;
  }
  /// How many registrations stand.
  std::size_t RegistrationCount() const { return registered_.size(); }

  /// Also writes each lookup down.
  bool logLookups = false;

  Status QueryInterface(const Guid* id, void** out) override { return Find("host.QueryInterface", id, out); }
  Status GetService(const Guid* id, void** out) override { return Find("host.GetService", id, out); }
  Status Advise(const Guid* id, qal::IQUnknown* sink) override {
    registered_.emplace_back(*id, sink);
    return Log("host.Advise", id);
  }
  Status RegisterProvider(const Guid* id, qal::IQUnknown* provider) override {
    registered_.emplace_back(*id, provider);
    return Log("host.RegisterProvider", id);
  }
  Status Unadvise(const Guid* id, qal::IQUnknown* sink) override {
    Forget(id, sink);
    return Log("host.Unadvise", id);
  }
  Status UnregisterProvider(const Guid* id, qal::IQUnknown* provider) override {
    Forget(id, provider);
    return Log("host.UnregisterProvider", id);
  }

 private:
  Status Find(const char* name, const Guid* id, void** out) {
    const auto found = table_.find(*id);
    *out = found == table_.end() ? nullptr : found->second;
    if (logLookups && qal::Failed(Log(name, id))) *out = nullptr;
    return *out ? qal::kOk : qal::kNoInterface;
  }
  void Forget(const Guid* id, qal::IQUnknown* sink) {
    const auto at = std::find(registered_.begin(), registered_.end(), std::pair{*id, sink});
    if (at != registered_.end()) registered_.erase(at);
  }

  std::map<Guid, void*> table_;
  std::vector<std::pair<Guid, qal::IQUnknown*>> registered_;
};

}  // namespace doubles
