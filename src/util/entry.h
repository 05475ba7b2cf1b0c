#pragma once

#include <type_traits>
#include <utility>

#include "platform/resources.h"
#include "qal/types.h"
#include "util/texts.h"

namespace coverage {

/// Told where the component is entered and left: an operation that the IDE calls, a message of a window, a
/// timer. Entries nest. UI thread only.
class EntryListener {
 public:
  virtual void OnEntryBegins() = 0;
  /// May throw; the entry has then ended all the same.
  virtual void OnEntryEnds() = 0;

 protected:
  ~EntryListener() = default;
};

/// Runs the body of an entry: with the component's resources as the current ones, told to `listener` (which
/// may be null), and so that nothing is thrown out of it; `failure` is then its result.
template <class Body, class Result = std::invoke_result_t<Body>>
Result Enter(EntryListener* listener, Body&& body, std::type_identity_t<Result> failure) noexcept {
  const auto end = [&] {
    try {
      if (listener != nullptr) listener->OnEntryEnds();
      return true;
    } catch (...) {
      return false;
    }
  };
  try {
    const platform::ResourceScope scope(Resources());
    if (listener != nullptr) listener->OnEntryBegins();
    Result result = failure;
    try {
      result = std::forward<Body>(body)();
    } catch (...) {
      end();
      return failure;
    }
    return end() ? result : failure;
  } catch (...) {
    return failure;
  }
}

}  // namespace coverage
