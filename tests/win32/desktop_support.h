#pragma once
// A user for real windows: types, clicks, waits for states and takes pictures.

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "files/SpreadsheetApplication.h"
#include "headless/HeadlessPlatform.h"
#include "ui/frmMain.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32Form.h"

namespace kalvrooms::Gui {

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

// No key, click or posted message is under way any more.
bool InputIsDone();

class NoSpreadsheets : public SpreadsheetServer {
  public:
    std::unique_ptr<SpreadsheetApplication> AttachRunning() override { return nullptr; }
    std::unique_ptr<SpreadsheetApplication> CreateInstance() override { return nullptr; }
};

// The main window with the counts of a report that a test chooses.
class Program : public frmMain {
  public:
    explicit Program(Platform& platform) : frmMain(platform) { SetLang(L""); }
    void GetReport(std::int32_t& colorOld, std::int32_t& colorNew, std::int32_t& updated,
                   std::int32_t& newAtPosition, std::int32_t& setDown,
                   bool& noReport) const override {
        frmMain::GetReport(colorOld, colorNew, updated, newAtPosition, setDown, noReport);
        updated = counts[0];
        newAtPosition = counts[1];
        setDown = counts[2];
    }
    std::int32_t counts[3] = {700000000, 700000000, 700000000};
};

// The program's own forms on the real desktop, without a host, a registry or files.
class ProgramOnDesktop : public testing::Test {
  protected:
    void SetUp() override;

    // Opens a dialog over the main window and takes the steps once it has the keyboard.
    template <typename Dialog>
    void Open(const std::function<void(Journey&)>& steps) {
        Journey journey;
        journey.When(
            "dialog", [this] { return DialogIsActive(); }, [] {});
        steps(journey);
        journey.When("end", InputIsDone, [this] { CloseDialog(); });
        Dialog(main_).ShowModal();
    }
    // The same for steps that close the dialog themselves.
    template <typename Dialog>
    void OpenUntilItCloses(const std::function<void(Journey&)>& steps) {
        Journey journey;
        journey.When(
            "dialog", [this] { return DialogIsActive(); }, [] {});
        steps(journey);
        Dialog(main_).ShowModal();
        EXPECT_TRUE(form_->Enabled());
    }
    // Opens a dialog and looks at it; looking may run the message loop.
    template <typename Dialog>
    void LookAt(const std::function<void(Win32Form&)>& look) {
        bool looked = false;
        Journey journey;
        journey
            .When(
                "dialog", [this] { return DialogIsActive(); },
                [&] {
                    look(Top());
                    looked = true;
                })
            .When(
                "end", [&] { return looked; }, [this] { CloseDialog(); });
        Dialog(main_).ShowModal();
    }
    // The form on top.
    Win32Form& Top() { return *desktop_.ActiveForm(); }
    bool DialogIsActive();
    void CloseDialog();
    bool HasFocus(const wchar_t* control) { return Focused() == WindowOf(Top(), control); }

    Win32Desktop desktop_;
    NoSpreadsheets spreadsheets_;
    HeadlessPlatform headless_{spreadsheets_};
    Platform platform_{desktop_,
                       headless_.ansi,
                       headless_.registry,
                       headless_.libraries,
                       headless_.environment,
                       headless_.Bundle().host,
                       spreadsheets_};
    Program main_{platform_};
    Win32Form* form_ = nullptr; // the main window
    Grid* grid_ = nullptr;
    HWND list_ = nullptr;
};

} // namespace kalvrooms::Gui
