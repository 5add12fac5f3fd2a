#pragma once
// The program as a whole: the only thing that a platform's own entry point includes of it.

#include "platform/Platform.h"

namespace kalvrooms {

class HostServer;
class SpreadsheetServer;

// Runs the program on a platform, together with the two applications that it works with. Returns
// when its last window is unloaded.
void RunProgram(Platform& platform, HostServer& host, SpreadsheetServer& spreadsheets);

} // namespace kalvrooms
