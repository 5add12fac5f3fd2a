#pragma once
// The program in a process of its own with somebody at its keyboard and its mouse. Every step waits
// until the windows show what it led to.

#include <windows.h>

#include <commctrl.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "journeys/ProgramFolder.h"

namespace kalvrooms::testing {

class QuartinoProcess {
  public:
    // Starts the program and waits until its main window takes keys. The letter of its first menu.
    explicit QuartinoProcess(const ProgramFolder& folder, wchar_t fileMenu = L'D');

    HWND main() const { return main_; }
    HWND table() const { return table_; }
    RunningProgram& program() { return program_; }

    // --- windows
    // The dialog with that title, once it takes keys.
    HWND dialog(const std::wstring& title);
    HWND fileDialog();
    HWND messageBox();
    // A window of the system that belongs to the given one.
    HWND ownedBy(HWND owner);
    void waitForKeys(HWND window) const;
    static void waitUntilGone(HWND window);
    // Whether a message box or anything else stands beside these windows.
    bool onlyShows(std::vector<HWND> expected) const;

    // --- controls
    static HWND control(HWND dialog, int id); // also on the pages of a tab strip
    static std::wstring text(HWND dialog, int id);
    static void waitForText(HWND dialog, int id, const std::wstring& shown);
    static bool checked(HWND dialog, int id);
    static bool enabled(HWND dialog, int id);
    static bool visible(HWND dialog, int id);
    static RECT placeIn(HWND dialog, int id); // in pixels of the dialog's client area
    static std::wstring messageOf(HWND messageBox);

    // --- keyboard
    HWND focus() const;
    void waitForFocus(HWND dialog, int id) const;
    // Presses Tab; the focus has to go there.
    void tabTo(HWND dialog, int id) const;
    // Types into the field that has the focus; it has to show that text then.
    void type(HWND dialog, int id, const std::wstring& text, const std::wstring& shown) const;
    void type(HWND dialog, int id, const std::wstring& text) const { type(dialog, id, text, text); }
    // Shows that all keys so far were handled: one more Tab has moved the focus.
    void keysWereHandled(HWND dialog) const;
    // Opens a menu by its letter and chooses the item that many lines below the first one.
    void chooseByKeys(wchar_t menuLetter, int itemsBelow);
    void openMenu(wchar_t menuLetter);
    HWND openPopup() const;
    void waitForNoPopup() const;
    std::uintptr_t commandsDone() const;
    void waitForCommand(std::uintptr_t before) const;
    // Types a path into a file dialog and confirms it with Enter.
    void giveFileName(HWND fileDialog, const std::wstring& path);
    // Closes a message box with the Enter key.
    void closeWithEnter(HWND messageBox) const;

    // --- mouse
    static void click(HWND window);
    static void clickAt(HWND window, int x, int y); // pixels of its client area
    // Off the windows: a menu that opens under the mouse would take what is there as chosen.
    static void parkMouse();
    void clickCell(int row, int column, bool right = false, int times = 1) const;
    void clickHeader(int column, bool right = false) const;

    // --- the table; rooms count from 0
    std::wstring cell(int room, int column) const { return driver::cellText(table_, room, column); }
    std::vector<std::wstring> column(int column) const; // down to the first room without identifier

    // How red the reddest dot is that the screen shows of a window or of a row of the table: red
    // less green.
    static int rednessOf(HWND window);
    int rednessOfRow(int row) const;

    // What the screen shows of a window, as a file of that name in the build's folder of pictures.
    // The number of different colours in it.
    std::size_t picture(HWND window, const std::string& name) const;

  private:
    RunningProgram program_;
    HWND main_ = nullptr;
    HWND table_ = nullptr;
};

// Keys as single steps.
void pressKey(WORD virtualKey);
void releaseKey(WORD virtualKey);

} // namespace kalvrooms::testing
