// The program's entry on Windows: puts the platform together and starts the program on it.

#include "model/NumberText.h"
#include "program/Program.h"
#include "win32/ComHostServer.h"
#include "win32/ComSpreadsheet.h"
#include "win32/StartUp.h"
#include "win32/Win32AnsiCodec.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32Environment.h"
#include "win32/Win32LetterRules.h"
#include "win32/Win32Locale.h"
#include "win32/Win32Registry.h"
#include "win32/Win32ResourceLibraries.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    using namespace kalvrooms;
    // The system's libraries come from the system's folder alone: not from the one that the program
    // happens to be started in, and not from the program's own, where anybody may have put a file.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    const auto program = [] {
        // Host and spreadsheet application are called from here.
        const ComApartment apartment;
        HandInUserLocale(Win32UserLocale);
        HandInLetterRules(Win32LetterRules());
        Gui::Win32Desktop desktop;
        Win32AnsiCodec ansi;
        Win32Registry registry;
        Win32ResourceLibraries libraries;
        Win32Environment environment;
        const auto host = MakeComHostServer();
        const auto spreadsheets = MakeComSpreadsheetServer();
        Platform platform{desktop, ansi, registry, libraries, environment};
        RunProgram(platform, *host, *spreadsheets);
    };
    return Gui::RunToItsEnd(program, Gui::SystemDialogs());
}
