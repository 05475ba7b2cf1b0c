#include "view/active_session.h"

#include "platform/text.h"
#include "qal/ids.h"
#include "qal/project_services.h"

namespace coverage {

bool ComponentActive(qal::IQHost* host) {
  void* found = nullptr;
  if (host == nullptr || qal::Failed(host->QueryInterface(&qal::iid::kSessionState, &found))) return false;
  auto* const session = static_cast<qal::IQSessionState*>(found);
  if (session == nullptr) return false;
  if (session->IsCurrent() != 0) return true;
  platform::WideOut name;
  return qal::Succeeded(session->GetName(name.put())) && name.empty();
}

}  // namespace coverage
