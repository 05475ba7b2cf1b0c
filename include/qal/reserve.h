#pragma once

#include "qal/unknown.h"

/// Fills slots that the contract does not name, so that the named ones stand where their numbers say.
namespace qal {

// Entries of one name in a chain of bases hide each other, which is no harm: nobody calls them by name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"

/// Tells reserved entries apart: functions of one name take one slot for each parameter type.
template <int Slot>
struct ReservedSlot;

/// Adds one virtual function behind those of `Base`.
template <class Base, int Slot, Status Result>
struct ReservedEntry : Base {
  virtual Status Reserved(ReservedSlot<Slot>*) { return Result; }
};

/// Adds eight. Deep chains of bases are what a compiler is slow at; a block keeps them short.
template <class Base, int Slot, Status Result>
struct ReservedBlock : Base {
  virtual Status Reserved(ReservedSlot<Slot>*) { return Result; }
  virtual Status Reserved(ReservedSlot<Slot + 1>*) { return Result; }
  virtual Status Reserved(ReservedSlot<Slot + 2>*) { return Result; }
  virtual Status Reserved(ReservedSlot<Slot + 3>*) { return Result; }
  virtual Status Reserved(ReservedSlot<Slot + 4>*) { return Result; }
  virtual Status Reserved(ReservedSlot<Slot + 5>*) { return Result; }
  virtual Status Reserved(ReservedSlot<Slot + 6>*) { return Result; }
  virtual Status Reserved(ReservedSlot<Slot + 7>*) { return Result; }
};

#pragma GCC diagnostic pop

template <class Base, int First, int Count, Status Result>
struct ReserveRange {
  using Type = typename ReserveRange<ReservedEntry<Base, First, Result>, First + 1, Count - 1, Result>::Type;
};
template <class Base, int First, int Count, Status Result>
requires(Count >= 8) struct ReserveRange<Base, First, Count, Result> {
  using Type = typename ReserveRange<ReservedBlock<Base, First, Result>, First + 8, Count - 8, Result>::Type;
};
template <class Base, int First, Status Result>
struct ReserveRange<Base, First, 0, Result> {
  using Type = Base;
};

/// `Base` followed by reserved entries in slots `First` to `Last`, each answering `Result` whatever it is
/// called with.
template <class Base, int First, int Last, Status Result = kFail>
using Reserve = typename ReserveRange<Base, First, Last - First + 1, Result>::Type;

}  // namespace qal
