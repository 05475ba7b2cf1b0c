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

/// The resource module that is searched first; 0 for none.
void SetResourceModule(qal::ModuleHandle module);
qal::ModuleHandle ResourceModule();

/// What to make current for the scope of an operation that loads resources, creates windows or shows boxes:
/// `platform::ResourceScope scope(Resources());`
platform::ResourceContext Resources();

}  // namespace coverage
