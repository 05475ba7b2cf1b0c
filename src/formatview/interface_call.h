#pragma once

#include <utility>

#include "platform/resources.h"
#include "qal/types.h"
#include "util/texts.h"

namespace coverage {

/// Runs the body of an interface operation: with the component's resources as the current ones, and so that
/// nothing is thrown out of it; `failure` is then its result.
template <class Body>
qal::Status InterfaceCall(Body&& body, qal::Status failure = qal::kFail) noexcept {
  try {
    const platform::ResourceScope scope(Resources());
    return std::forward<Body>(body)();
  } catch (...) {
    return failure;
  }
}

}  // namespace coverage
