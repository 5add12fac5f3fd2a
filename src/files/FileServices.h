#pragma once
// What reading and writing files takes beside the file itself.

#include "app/RoomTable.h"
#include "app/Texts.h"
#include "files/SpreadsheetApplication.h"
#include "platform/Gui.h"
#include "platform/Platform.h"

namespace kalvrooms {

struct FileServices {
    const Texts& texts;
    RoomTable& table;
    // For the busy pointer and a message.
    Gui::Desktop& desktop;
    const AnsiCodec& ansi;
    SpreadsheetServer& spreadsheets;
};

} // namespace kalvrooms
