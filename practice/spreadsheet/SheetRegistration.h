#pragma once
// The application's entries in the registry.

namespace kalvrooms::practice::spreadsheet {

// For the current user. Both raise a HostError when the registry refuses; a machine that has
// another application under this name is left alone.
void RegisterApplication();
void UnregisterApplication();

} // namespace kalvrooms::practice::spreadsheet
