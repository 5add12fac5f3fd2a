#pragma once
// The dialogs that the system provides: messages, files, colours, help.

#include "platform/Gui.h"

#include <windows.h>

#include <commdlg.h>

namespace kalvrooms::Gui {

// The calls themselves; a test may stand in for the user.
struct SystemDialogs {
    SystemDialogs();
    std::function<int(HWND owner, const wchar_t* text, const wchar_t* title, UINT style)>
        MessageBoxCall;
    std::function<bool(OPENFILENAMEW&)> OpenFileCall;
    std::function<bool(OPENFILENAMEW&)> SaveFileCall;
    std::function<DWORD()> ErrorCall;
    std::function<bool(CHOOSECOLORW&)> ColourCall;
    std::function<void(HWND owner, const char* file, UINT command, DWORD_PTR data)> HelpCall;
    // Without a reason the end of the session need not wait for the window any more.
    std::function<void(HWND window, const wchar_t* reason)> HoldSessionCall;
};

// Raises DialogCancelled when no file was chosen.
void RunFileDialog(FileDialog& dialog, HWND owner, const std::function<bool(OPENFILENAMEW&)>& call,
                   const std::function<DWORD()>& error);

// Cancelled, the colour stays.
void RunColourDialog(Colour& colour, HWND owner, const std::function<bool(CHOOSECOLORW&)>& call);

// Does nothing when there is no such file.
void OpenHelpFile(
    HWND owner, const std::wstring& file, std::uint32_t context,
    const std::function<void(HWND owner, const char* file, UINT command, DWORD_PTR data)>& call);

} // namespace kalvrooms::Gui
