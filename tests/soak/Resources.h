#pragma once
// What a process holds of the system, counted from outside.

#include <windows.h>

namespace kalvrooms::testing {

// Memory of the process alone, in bytes.
double privateBytes(HANDLE process);
double kernelHandles(HANDLE process);
double gdiObjects(HANDLE process);
// Where the system does not say (Wine), those of all processes together; no window may be made
// meanwhile.
double userObjects(HANDLE process);

} // namespace kalvrooms::testing
