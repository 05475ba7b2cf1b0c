#pragma once

#include "qal/host.h"

namespace coverage {

/// Whether the component is active: the session-state service is there and says that the component's session
/// is the current one, or gives an empty session name. UI thread only.
bool ComponentActive(qal::IQHost* host);

}  // namespace coverage
