#include "platform/modal.h"

#include <algorithm>
#include <vector>

namespace platform {
namespace {

std::vector<ModalListener*>& Listeners() {
  static std::vector<ModalListener*> listeners;
  return listeners;
}

/// Those that are there now, as far as they still are: a listener may come or go while another is told.
template <class Tell>
void TellEach(Tell tell) {
  const std::vector<ModalListener*> told = Listeners();
  for (ModalListener* listener : told) {
    const auto& now = Listeners();
    if (std::find(now.begin(), now.end(), listener) != now.end()) tell(*listener);
  }
}

}  // namespace

ModalListener::ModalListener() { Listeners().push_back(this); }
ModalListener::~ModalListener() { std::erase(Listeners(), this); }

ModalScope::ModalScope() {
  TellEach([](ModalListener& listener) { listener.OnModalBegins(); });
}

ModalScope::~ModalScope() {
  TellEach([](ModalListener& listener) { listener.OnModalEnds(); });
}

}  // namespace platform
