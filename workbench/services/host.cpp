#include "workbench/services/host.h"

#include <algorithm>

#include "platform/text.h"
#include "workbench/services/service.h"

namespace workbench {
namespace {

constexpr std::size_t kUnknownKept = 64;
constexpr std::size_t kRegistrationsKept = 10'000;

qal::Status Add(std::vector<Host::Registration>& list, const qal::Guid* identifier, qal::IQUnknown* object) {
  if (!identifier || !object || list.size() >= kRegistrationsKept) return qal::kFail;
  return Guarded([&] {
    list.emplace_back(*identifier, object);
    return qal::kOk;
  });
}

qal::Status Remove(std::vector<Host::Registration>& list, const qal::Guid* identifier,
                   qal::IQUnknown* object) {
  if (!identifier) return qal::kFail;
  const auto found = std::find(list.begin(), list.end(), Host::Registration{*identifier, object});
  if (found == list.end()) return qal::kFail;
  list.erase(found);
  return qal::kOk;
}

}  // namespace

std::string GuidText(const qal::Guid& guid) {
  return platform::Format("{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", guid.data1, guid.data2,
                          guid.data3, guid.data4[0], guid.data4[1], guid.data4[2], guid.data4[3],
                          guid.data4[4], guid.data4[5], guid.data4[6], guid.data4[7]);
}

void Host::Offer(std::string name, const qal::Guid& identifier, void* object,
                 std::function<bool()> available) {
  const std::lock_guard lock(mutex_);
  entries_.push_back({std::move(name), identifier, object, std::move(available), false});
}

void Host::OfferInterface(std::string name, const qal::Guid& identifier, void* object) {
  const std::lock_guard lock(mutex_);
  entries_.push_back({std::move(name), identifier, object, {}, true});
}

bool Host::Switch(std::string_view name, bool on) {
  const std::lock_guard lock(mutex_);
  bool found = false;
  for (Entry& entry : entries_) {
    if (!platform::EqualNoCase(entry.name, name)) continue;
    entry.on = on;
    found = true;
  }
  return found;
}

std::vector<Host::ServiceState> Host::Services() const {
  const std::lock_guard lock(mutex_);
  std::vector<ServiceState> states;
  for (const Entry& entry : entries_) {
    const bool listed = std::any_of(states.begin(), states.end(),
                                    [&](const ServiceState& state) { return state.name == entry.name; });
    if (!listed)
      states.push_back({entry.name, entry.on, entry.on && (!entry.available || entry.available())});
  }
  return states;
}

std::vector<qal::Guid> Host::Unknown() const {
  const std::lock_guard lock(mutex_);
  return {unknown_.begin(), unknown_.end()};
}

std::vector<qal::IQUnknown*> Host::Sinks(const qal::Guid& identifier) const {
  std::vector<qal::IQUnknown*> found;
  for (const auto& [guid, sink] : sinks_) {
    if (guid == identifier) found.push_back(sink);
  }
  return found;
}

qal::IQUnknown* Host::Provider(const qal::Guid& identifier) const {
  for (auto it = providers_.rbegin(); it != providers_.rend(); ++it) {
    if (it->first == identifier) return it->second;
  }
  return nullptr;
}

void Host::ForgetRegistrations() {
  sinks_.clear();
  providers_.clear();
}

qal::Status Host::Find(const qal::Guid* identifier, bool throughQuery, void** out) {
  if (!out) return qal::kFail;
  *out = nullptr;
  if (!identifier) return qal::kNoInterface;
  return Guarded([&]() -> qal::Status {
    const std::lock_guard lock(mutex_);
    bool known = false;
    for (const Entry& entry : entries_) {
      if (entry.throughQuery != throughQuery || !(entry.identifier == *identifier)) continue;
      known = true;
      if (!entry.on || (entry.available && !entry.available())) continue;
      *out = entry.object;
      return qal::kOk;
    }
    if (!known && unknown_.size() < kUnknownKept) unknown_.insert(*identifier);
    return qal::kNoInterface;
  });
}

qal::Status Host::QueryInterface(const qal::Guid* iid, void** out) {
  if (out && iid && *iid == qal::iid::kUnknown) {
    *out = static_cast<qal::IQHost*>(this);
    return qal::kOk;
  }
  return Find(iid, true, out);
}

qal::Status Host::GetService(const qal::Guid* service, void** out) { return Find(service, false, out); }

qal::Status Host::Advise(const qal::Guid* identifier, qal::IQUnknown* sink) {
  return Add(sinks_, identifier, sink);
}

qal::Status Host::RegisterProvider(const qal::Guid* identifier, qal::IQUnknown* provider) {
  return Add(providers_, identifier, provider);
}

qal::Status Host::Unadvise(const qal::Guid* identifier, qal::IQUnknown* sink) {
  return Remove(sinks_, identifier, sink);
}

qal::Status Host::UnregisterProvider(const qal::Guid* identifier, qal::IQUnknown* provider) {
  return Remove(providers_, identifier, provider);
}

}  // namespace workbench
