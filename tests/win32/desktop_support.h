#pragma once
// A user for real windows: types, clicks and waits for states.

#include <deque>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "headless/AbsentServers.h"
#include "headless/HeadlessPlatform.h"
#include "practice/driver/UiDriver.h"
#include "ui/frmGeometry.h"
#include "ui/frmMain.h"
#include "ui/frmPlace.h"
#include "ui/frmReport.h"
#include "ui/frmRoom.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32Form.h"

namespace kalvrooms::Gui {

// Steps that a user takes while a modal loop runs: each waits for its state, never for a time.
class ModalSteps {
  public:
    ModalSteps();
    ~ModalSteps();
    ModalSteps(const ModalSteps&) = delete;
    ModalSteps& operator=(const ModalSteps&) = delete;

    using State = std::function<bool()>;
    using Step = std::function<void()>;
    // When the state is reached, the step is taken.
    ModalSteps& When(std::string name, State state, Step step);
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

using driver::pressKey;
using driver::releaseKey;
using driver::typeKey;
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

// No key, click or posted message is under way any more.
bool InputIsDone();

// The program's own forms on the real desktop, without a host, a registry or files.
class ProgramOnDesktop : public testing::Test {
  protected:
    void SetUp() override;

    // Opens a dialog over the main window and takes the steps once it has the keyboard.
    template <typename Dialog>
    void Open(const std::function<void(ModalSteps&)>& steps) {
        ModalSteps user;
        user.When(
            "dialog", [this] { return DialogIsActive(); }, [] {});
        steps(user);
        user.When("end", InputIsDone, [this] { CloseDialog(); });
        showDialog<Dialog>();
    }
    // The same for steps that close the dialog themselves.
    template <typename Dialog>
    void OpenUntilItCloses(const std::function<void(ModalSteps&)>& steps) {
        ModalSteps user;
        user.When(
            "dialog", [this] { return DialogIsActive(); }, [] {});
        steps(user);
        showDialog<Dialog>();
        EXPECT_TRUE(form_->Enabled());
    }
    // Opens a dialog and looks at it; looking may run the message loop.
    template <typename Dialog>
    void LookAt(const std::function<void(Win32Form&)>& look) {
        bool looked = false;
        ModalSteps user;
        user.When(
                "dialog", [this] { return DialogIsActive(); },
                [&] {
                    look(Top());
                    looked = true;
                })
            .When(
                "end", [&] { return looked; }, [this] { CloseDialog(); });
        showDialog<Dialog>();
    }
    // The form on top.
    Win32Form& Top() { return *desktop_.ActiveForm(); }
    bool DialogIsActive();
    void CloseDialog();
    bool HasFocus(const wchar_t* control) { return Focused() == WindowOf(Top(), control); }

    Win32Desktop desktop_;
    AbsentHostServer host_;
    AbsentSpreadsheetServer spreadsheets_;
    HeadlessPlatform headless_;
    Platform platform_{desktop_, headless_.ansi, headless_.registry, headless_.libraries,
                       headless_.environment};
    frmMain main_{platform_, host_, spreadsheets_};
    std::wstring helpFile_;
    ReportCounts counts_{700000000, 700000000, 700000000};
    Win32Form* form_ = nullptr; // the main window
    Grid* grid_ = nullptr;
    HWND list_ = nullptr;

  private:
    template <typename Dialog>
    void showDialog() {
        const DialogServices services{desktop_, main_, helpFile_};
        if constexpr (std::is_same_v<Dialog, frmGeometry>)
            frmGeometry(services, main_.GetCurrentRoom()->Geometry).ShowModal();
        else if constexpr (std::is_same_v<Dialog, frmReport>)
            frmReport(services, main_, counts_).ShowModal();
        else
            Dialog(services, main_).ShowModal();
    }
};

} // namespace kalvrooms::Gui
