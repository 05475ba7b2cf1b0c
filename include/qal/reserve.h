#pragma once

#include "qal/unknown.h"

/// Fills slots that the contract does not name, so that the named ones stand where their numbers say.
namespace qal {

/// What the reserved entry in slot `Slot` answers with; a type of its own for each slot, because a conversion
/// operator is the one kind of virtual function whose name a template can vary.
template <int Slot>
struct ReservedSlot {
  enum class Answer : Status {};
};

/// Adds one virtual function behind those of `Base`.
template <class Base, int Slot, Status Result>
struct ReservedEntry : Base {
  virtual explicit operator typename ReservedSlot<Slot>::Answer() {
    return typename ReservedSlot<Slot>::Answer{Result};
  }
};

template <class Base, int First, int Last, Status Result>
struct ReserveRange {
  using Type = typename ReserveRange<ReservedEntry<Base, First, Result>, First + 1, Last, Result>::Type;
};
template <class Base, int Slot, Status Result>
struct ReserveRange<Base, Slot, Slot, Result> {
  using Type = ReservedEntry<Base, Slot, Result>;
};

/// `Base` followed by reserved entries in slots `First` to `Last`, each answering `Result` whatever it is
/// called with.
template <class Base, int First, int Last, Status Result = kFail>
using Reserve = typename ReserveRange<Base, First, Last, Result>::Type;

}  // namespace qal
