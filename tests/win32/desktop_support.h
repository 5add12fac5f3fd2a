#pragma once
// A user for real windows: types, clicks, waits for states and takes pictures.

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "app/clsText.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32Environment.h"
#include "win32/Win32Form.h"
#include "win32/Win32ResourceLibraries.h"

namespace kalvrooms::Gui {

// The program's own texts, without a language library.
class Texts {
  public:
    Texts() : texts_(libraries_, environment_) {}
    std::wstring operator()(std::int32_t number) const { return texts_.GetText(number); }

  private:
    Win32ResourceLibraries libraries_;
    Win32Environment environment_;
    clsText texts_;
};

// Puts the texts of the program on a dialog, in the shape that needs the most room.
void FillCaptions(Form& form, const std::wstring& name, const Texts& text);

// Steps that a user takes while a modal loop runs: each waits for its state, never for a time.
class Journey {
  public:
    Journey();
    ~Journey();
    Journey(const Journey&) = delete;
    Journey& operator=(const Journey&) = delete;

    using State = std::function<bool()>;
    using Step = std::function<void()>;
    // When the state is reached, the step is taken.
    Journey& When(std::string name, State state, Step step);
    // Runs the message loop until every step was taken; fails the test after a minute without one.
    void Run(Win32Desktop& desktop);
    bool Done() const { return steps_.empty(); }

  private:
    struct Stage {
        std::string name;
        State state;
        Step step;
    };
    void look();
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD);

    std::deque<Stage> steps_;
    UINT_PTR timer_ = 0;
    ULONGLONG waitingSince_ = 0;
    bool looking_ = false;
};

// Runs the message loop until the state is reached; false after a minute.
bool PumpUntil(Win32Desktop& desktop, const std::function<bool()>& state);

void PressKey(WORD key);
void ReleaseKey(WORD key);
void TypeKey(WORD key);
// A click at a point of a window's client area.
void Click(HWND window, POINT point, MouseButton button = MouseButton::Left);
void ClickMiddle(HWND window);

// The window that has the keyboard, also one that is not ours.
HWND Focused();
// The message box or other system dialog that is open; null without one.
HWND SystemDialog();

// A control of a form by name.
Win32Control& Named(Form& form, const std::wstring& name);
HWND WindowOf(Form& form);
HWND WindowOf(Form& form, const std::wstring& name);

// Saves what the screen shows of a window, if the environment names a folder for pictures.
void TakePicture(Win32Desktop& desktop, HWND window, const std::string& name);

// A table as the main window fills it: header and rooms in two colours.
void FillTable(Grid& grid, int rooms, const Texts& text);

} // namespace kalvrooms::Gui
