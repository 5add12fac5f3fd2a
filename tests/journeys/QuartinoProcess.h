#pragma once
// The program in a process of its own, and somebody at its keyboard and its mouse. Every step waits
// until the windows show what it led to.

#include <windows.h>

#include <commctrl.h>

#include <filesystem>
#include <string>
#include <vector>

#include "journeys/ProgramFolder.h"
#include "practice/driver/UiDriver.h"

namespace kalvrooms::testing {

// Of the user's locale.
std::wstring decimalMark();

// Lines of the menus below the first one.
inline constexpr wchar_t fileMenu = L'D';
inline constexpr wchar_t editMenu = L'B';
inline constexpr wchar_t extrasMenu = L'E';
inline constexpr int newLine = 0;
inline constexpr int openLine = 1;
inline constexpr int saveLine = 2;
inline constexpr int saveAsLine = 3;
inline constexpr int importLine = 4;
inline constexpr int exportLine = 5;
inline constexpr int endLine = 6;
inline constexpr int addLine = 0;
inline constexpr int deleteLine = 2;
inline constexpr int ascendingLine = 3;
inline constexpr int descendingLine = 4;

enum Column { Name, Function, Area, Story, Enclosure, Occupancy, AreaType, Shape };

// The program as it starts and ends.
class RunningProgram {
  public:
    explicit RunningProgram(const ProgramFolder& folder);

    // The main window, once it stands. Error: WaitFailed when a message box comes instead.
    HWND mainWindow();
    // The message box that the program shows. Error: WaitFailed when it shows its window instead.
    HWND messageBox();
    HWND dialog(const std::wstring& title);
    // The dialog that has this control, whatever its title says.
    HWND dialogWith(int control);
    HWND fileDialog();
    // A window of the system that belongs to the given one.
    HWND ownedBy(HWND owner);
    void answer(HWND messageBox);
    // Closes the main window as its close button does; the process's exit code.
    DWORD close();
    // For a program that ends by itself.
    DWORD waitForEnd() const { return process_.waitForEnd(); }
    std::vector<HWND> windows() const { return driver::windowsOf(process_.id()); }
    // Whether a message box or anything else stands beside these windows.
    bool onlyShows(std::vector<HWND> expected) const;

  private:
    driver::Process process_;
    HWND main_ = nullptr;
    HWND answered_ = nullptr;
};

// The program with its main window, which takes keys.
class QuartinoProcess {
  public:
    // Starts the program and waits for its main window. The letter of its first menu.
    explicit QuartinoProcess(const ProgramFolder& folder, wchar_t firstMenu = fileMenu);

    HWND main() const { return main_; }
    HWND table() const { return table_; }
    RunningProgram& program() { return program_; }

    // --- windows, once they take keys
    HWND dialog(const std::wstring& title) { return withKeys(program_.dialog(title)); }
    HWND dialogWith(int control) { return withKeys(program_.dialogWith(control)); }
    HWND fileDialog() { return withKeys(program_.fileDialog()); }
    HWND messageBox() { return withKeys(program_.messageBox()); }
    HWND ownedBy(HWND owner) { return withKeys(program_.ownedBy(owner)); }
    void waitForKeys(HWND window) const;
    // Waits until one is gone and the keys go to the other.
    void waitForReturn(HWND gone, HWND to) const;
    bool onlyShows(const std::vector<HWND>& expected) const { return program_.onlyShows(expected); }

    // --- controls
    static std::wstring text(HWND dialog, int id);
    static void waitForText(HWND dialog, int id, const std::wstring& shown);
    static bool checked(HWND dialog, int id);
    static bool enabled(HWND dialog, int id);
    static bool visible(HWND dialog, int id);

    // --- keyboard
    HWND focus() const;
    void waitForFocus(HWND dialog, int id) const;
    // Presses Tab, the focus has to go there; and on to the next.
    void tabTo(HWND dialog, std::initializer_list<int> ids) const;
    void tabTo(HWND dialog, int id) const { tabTo(dialog, {id}); }
    // Types into the field that has the focus; it has to show that text then.
    void type(HWND dialog, int id, const std::wstring& text, const std::wstring& shown) const;
    void type(HWND dialog, int id, const std::wstring& text) const { type(dialog, id, text, text); }
    // Shows that all keys so far were handled: one more Tab has moved the focus.
    void keysWereHandled(HWND dialog) const;
    void openMenu(wchar_t menuLetter);
    HWND openPopup() const;
    void waitForPopup() const;
    void waitForNoPopup() const;
    // Opens a menu by its letter and chooses the item that many lines below the first one.
    void chooseByKeys(wchar_t menuLetter, int itemsBelow);
    std::uintptr_t commandsDone() const;
    void waitForCommand(std::uintptr_t before) const;
    // Takes a step that ends the command under way, or that is one; waits for its end.
    template <class Step>
    void command(Step step) const {
        const std::uintptr_t before = commandsDone();
        step();
        waitForCommand(before);
    }
    void endCommandWith(WORD virtualKey) const {
        command([&] { driver::typeKey(virtualKey); });
    }
    void runByKeys(wchar_t menuLetter, int itemsBelow) {
        command([&] { chooseByKeys(menuLetter, itemsBelow); });
    }
    // Opens a list, or saves it, by the menu and the file dialog.
    void open(const std::filesystem::path& list) { nameByKeys(openLine, list); }
    void saveAs(const std::filesystem::path& list) { nameByKeys(saveAsLine, list); }
    // Types a path into a file dialog and confirms it with Enter.
    void giveFileName(HWND fileDialog, const std::wstring& path);
    // Closes a message box with the Enter key.
    void closeWithEnter(HWND messageBox) const;

    // --- mouse
    static void click(HWND window);
    static void click(HWND dialog, int id) { click(driver::control(dialog, id)); }
    void clickCell(int row, int column, bool right = false, int times = 1) const;
    void clickHeader(int column, bool right = false) const;

    // --- the table; rooms count from 0
    std::wstring cell(int room, int column) const { return driver::cellText(table_, room, column); }
    std::vector<std::wstring> column(int column) const; // down to the first room without identifier
    int rednessOfRow(int row) const;

    // What the screen shows of a window, as a file of that name in the build's folder of pictures.
    // The number of different colours in it.
    std::size_t picture(HWND window, const std::string& name) const;

  private:
    HWND withKeys(HWND window) const;
    void nameByKeys(int line, const std::filesystem::path& list);

    RunningProgram program_;
    HWND main_ = nullptr;
    HWND table_ = nullptr;
};

} // namespace kalvrooms::testing
