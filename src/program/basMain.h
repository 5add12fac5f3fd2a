#pragma once
// The entry procedure: settles language, settings key and help file, makes sure that the host can
// be reached, and only then shows the main window.

#include "app/Texts.h"
#include "host/HostApplication.h"
#include "platform/Gui.h"
#include "program/Program.h"

namespace kalvrooms {

// True if the host's automation object can be created; it is released at once.
bool CanCreateHostServer(HostServer& host);

// One message and one more try when the host cannot be reached. It cannot while it has KVD files
// open, which is what the message asks the user to close.
bool ProbeHostServer(HostServer& host, Gui::Desktop& desktop, const Texts& texts);

} // namespace kalvrooms
