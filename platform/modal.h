#pragma once

#include "platform/api.h"

/// Waiting for a person: while a dialog, a message box, a menu or a file dialog is open, the queue runs and
/// anything may happen. User-interface thread.
namespace platform {

/// Told before and after each wait, from its construction to its destruction. Waits nest.
class PLATFORM_API ModalListener {
 public:
  ModalListener();
  ModalListener(const ModalListener&) = delete;
  ModalListener& operator=(const ModalListener&) = delete;

  virtual void OnModalBegins() = 0;
  virtual void OnModalEnds() = 0;

 protected:
  virtual ~ModalListener();
};

/// A wait. This library makes one for each of its own; whoever waits by other means makes one, too.
class PLATFORM_API ModalScope {
 public:
  ModalScope();
  ~ModalScope();
  ModalScope(const ModalScope&) = delete;
  ModalScope& operator=(const ModalScope&) = delete;
};

}  // namespace platform
