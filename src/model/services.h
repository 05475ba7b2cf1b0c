#pragma once

#include "qal/host.h"
#include "qal/ids.h"
#include "qal/types.h"

namespace coverage {

/// The service that the host gives under `id`, or null: none there, or no host. Not owned.
template <class Service>
Service* FindService(qal::IQHost* host, const qal::Guid& id) {
  void* found = nullptr;
  if (host == nullptr || qal::Failed(host->GetService(&id, &found))) return nullptr;
  return static_cast<Service*>(found);
}

}  // namespace coverage
