#pragma once

#include "qal/host.h"

/// The five functions that a component's library exports, by these names and under ordinals 1 to 5. Called on
/// the user-interface thread; no exception leaves them. `Key` is chosen by the IDE, compared and never
/// dereferenced.
namespace qal {

using Key = void*;

using LibraryRegister2Function = Status (*)(IQComponentRegistrar* registrar);
using QueryInterface2Function = Status (*)(Key key, const Guid* iid, void** out);
using CreateInstanceFunction = Status (*)(Key key);
using DestroyInstanceFunction = Status (*)(Key key);
using GetComponentVersionFunction = Status (*)(std::uint32_t* major, std::uint32_t* minor);

/// Order of the exports; ordinal 1 is the first.
inline constexpr const char* kEntryPointNames[] = {"LibraryRegister2", "QueryInterface2", "CreateInstance",
                                                   "DestroyInstance", "GetComponentVersion"};

}  // namespace qal

#define QAL_EXPORT __attribute__((visibility("default")))

extern "C" {

/// Enters the component in the IDE's list. Always 0.
QAL_EXPORT qal::Status LibraryRegister2(qal::IQComponentRegistrar* registrar);
/// An interface of the object under `key`; kNoInterface and null when the key or the interface is not known.
QAL_EXPORT qal::Status QueryInterface2(qal::Key key, const qal::Guid* iid, void** out);
/// Creates the object under `key`; a key in use is given to the new object. Always 0.
QAL_EXPORT qal::Status CreateInstance(qal::Key key);
/// Destroys the object under `key`, if there is one. Always 0.
QAL_EXPORT qal::Status DestroyInstance(qal::Key key);
/// Gives 1 and 0. Always 0.
QAL_EXPORT qal::Status GetComponentVersion(std::uint32_t* major, std::uint32_t* minor);
}
