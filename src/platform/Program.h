#pragma once
// Puts everything together: the platform's own entry point calls this and nothing else.

#include "platform/Platform.h"

namespace kalvrooms {

// Starts the program on a platform and returns when its last window is unloaded.
void RunProgram(Platform& platform);

} // namespace kalvrooms
