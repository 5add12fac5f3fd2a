#include "desktop_support.h"

#include <cstdlib>

namespace kalvrooms::Gui {
namespace {

constexpr UINT tickMilliseconds = 10;
ModalSteps* travelling = nullptr;

} // namespace

// --- ModalSteps -----------------------------------------------------------------------------

ModalSteps::ModalSteps() {
    travelling = this;
    waitingSince_ = GetTickCount64();
    timer_ = SetTimer(nullptr, 0, tickMilliseconds, tick);
}

ModalSteps::~ModalSteps() {
    KillTimer(nullptr, timer_);
    travelling = nullptr;
    EXPECT_TRUE(steps_.empty()) << "never reached: " << steps_.front().name;
}

ModalSteps& ModalSteps::When(std::string name, State state, Step step) {
    steps_.push_back({std::move(name), std::move(state), std::move(step)});
    return *this;
}

void CALLBACK ModalSteps::tick(HWND, UINT, UINT_PTR, DWORD) {
    if (travelling)
        travelling->look();
}

void ModalSteps::look() {
    if (looking_ || steps_.empty())
        return;
    looking_ = true;
    if (steps_.front().state()) {
        const Stage stage = steps_.front();
        steps_.pop_front();
        waitingSince_ = GetTickCount64();
        // A step may open a window whose own loop carries the steps on.
        looking_ = false;
        stage.step();
        return;
    }
    looking_ = false;
    if (GetTickCount64() - waitingSince_ > driver::usualLimit) {
        // A window that nobody answers would hold the whole test run.
        std::fprintf(stderr, "never reached: %s\n", steps_.front().name.c_str());
        std::fflush(stderr);
        std::_Exit(1);
    }
}

void ModalSteps::Run(Win32Desktop& desktop) {
    EXPECT_TRUE(PumpUntil(desktop, [this] { return Done(); }));
}

bool PumpUntil(Win32Desktop& desktop, const std::function<bool()>& state) {
    return driver::comesAbout(state, driver::usualLimit, [&desktop] {
        MSG waiting;
        return PeekMessageW(&waiting, nullptr, 0, 0, PM_NOREMOVE) && desktop.PumpMessage();
    });
}

// --- Keys and mouse -------------------------------------------------------------------------

void Click(HWND window, POINT point, MouseButton button) {
    driver::clickAt(window, static_cast<int>(point.x), static_cast<int>(point.y),
                    button == MouseButton::Right);
}

void ClickMiddle(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    Click(window, {client.right / 2, client.bottom / 2});
}

HWND Focused() {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetCurrentThreadId(), &info) ? info.hwndFocus : nullptr;
}

HWND SystemDialog() {
    HWND found = nullptr;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM data) -> BOOL {
            wchar_t name[32] = L"";
            GetClassNameW(window, name, static_cast<int>(std::size(name)));
            // Our own dialogs are of the same class; theirs have a default button.
            if (std::wstring(name) != L"#32770" || !IsWindowVisible(window) ||
                !(GetDlgItem(window, IDOK) || GetDlgItem(window, IDCANCEL) ||
                  GetDlgItem(window, IDYES)))
                return TRUE;
            *reinterpret_cast<HWND*>(data) = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

Win32Control& Named(Form& form, const std::wstring& name) {
    Win32Control* control = dynamic_cast<Win32Form&>(form).ControlNamed(name);
    if (!control)
        throw std::logic_error("no such control");
    return *control;
}

HWND WindowOf(Form& form) {
    return dynamic_cast<Win32Form&>(form).Window();
}

HWND WindowOf(Form& form, const std::wstring& name) {
    return Named(form, name).Window();
}

// --- The program ------------------------------------------------------------------------------

bool InputIsDone() {
    return !(GetQueueStatus(QS_INPUT | QS_POSTMESSAGE) >> 16);
}

void ProgramOnDesktop::SetUp() {
    main_.SetLang(L"");
    main_.Show();
    main_.GetCurrentRoom()->IsNew(true);
    form_ = &Top();
    grid_ = &form_->Named<Grid>(L"grdRooms");
    list_ = WindowOf(*form_, L"grdRooms");
    // Keys and dialogs go to the window in front, which the window manager has to hear of first.
    SetForegroundWindow(form_->Window());
    ASSERT_TRUE(PumpUntil(desktop_, [this] {
        return Focused() == list_ && GetForegroundWindow() == form_->Window();
    }));
}

bool ProgramOnDesktop::DialogIsActive() {
    return &Top() != form_ && GetForegroundWindow() == Top().Window() && Focused();
}

void ProgramOnDesktop::CloseDialog() {
    if (&Top() != form_)
        Top().Unload();
}

} // namespace kalvrooms::Gui
