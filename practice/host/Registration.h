#pragma once
// The server's entries in the registry: programmatic identifiers, classes and the type library.

namespace kalvrooms::practice {

// For the current user. Both raise a HostError when the registry refuses.
void RegisterServer();
void UnregisterServer();

} // namespace kalvrooms::practice
