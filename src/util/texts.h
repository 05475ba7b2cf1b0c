#pragma once

#include <cstdint>
#include <string>

#include "platform/resources.h"
#include "string_ids.h"

/// The component's own texts and other resources: looked up in the resource module first, then in the table
/// that is built into the library. Any thread.
namespace coverage {

/// Text of `strings::k…` in the system code page; empty for an identifier that neither table has.
std::string Text(std::uint32_t id);

/// The resource module that is searched first: the one that was added last of those that are still there; 0
/// for none. A module may be added more than once, by as many component objects; adding and removing is for
/// the UI thread only.
qal::ModuleHandle ResourceModule();
void AddResourceModule(qal::ModuleHandle module);
/// Takes back one AddResourceModule of the module.
void RemoveResourceModule(qal::ModuleHandle module);

/// What to make current for the scope of an operation that loads resources, creates windows or shows boxes:
/// `platform::ResourceScope scope(Resources());`
platform::ResourceContext Resources();

}  // namespace coverage
