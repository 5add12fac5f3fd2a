#include "win32/Win32Form.h"

#include "win32/Dpi.h"
#include "win32/MessageHook.h"
#include "win32/Win32Buttons.h"
#include "win32/Win32Desktop.h"
#include "win32/Win32Fields.h"
#include "win32/Win32Grid.h"
#include "win32/Win32TabStrip.h"

#include <dwmapi.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace kalvrooms::Gui {
namespace {

std::unique_ptr<Win32Control> makeControl(Win32Form& form, ControlKind kind) {
    switch (kind) {
    case ControlKind::Label:
        return std::make_unique<Win32Label>(form);
    case ControlKind::Frame:
        return std::make_unique<Win32Frame>(form);
    case ControlKind::Button:
        return std::make_unique<Win32Button>(form);
    case ControlKind::Option:
        return std::make_unique<Win32OptionButton>(form);
    case ControlKind::Check:
        return std::make_unique<Win32CheckBox>(form);
    case ControlKind::Field:
        return std::make_unique<Win32TextField>(form);
    case ControlKind::DropDown:
        return std::make_unique<Win32DropDown>(form);
    case ControlKind::Tabs:
        return std::make_unique<Win32TabStrip>(form);
    case ControlKind::Grid:
        break;
    }
    return std::make_unique<Win32Grid>(form);
}

// Sent to a form by itself: events that wait until the window system is done with the focus.
constexpr UINT runFocusEvents = WM_APP + 1;
constexpr LPARAM wasDownBefore = LPARAM{1} << 30;

std::string narrow(std::wstring_view name) {
    std::string text;
    for (const wchar_t character : name)
        text += character < 128 ? static_cast<char>(character) : '?';
    return text;
}

} // namespace

Win32Form::Win32Form(Win32Desktop& desktop, const FormEntry& entry)
    : Win32Control(*this), desktop_(desktop), entry_(entry) {
    desktop_.Add(*this);
}

Win32Form::~Win32Form() {
    closing_ = true;
    destroy();
    desktop_.Remove(*this);
}

void Win32Form::Attach(HWND window) {
    Win32Control::Attach(window);
    dpi_ = GetDpiForWindow(window);
}

void Win32Form::AttachControl(const ControlEntry& entry, HWND window) {
    if (!window)
        throw std::logic_error("a control of the layout is missing in the dialog template");
    auto control = makeControl(*this, entry.kind);
    control->Attach(window);
    controls_.emplace_back(&entry, std::move(control));
}

Control& Win32Form::Find(const std::wstring& name, ControlKind kind) {
    for (const auto& [entry, control] : controls_)
        if (entry->name == name && entry->kind == kind)
            return *control;
    throw std::logic_error(narrow(entry_.name) + " has no control of that kind named " +
                           narrow(name));
}

Win32Control* Win32Form::ControlById(int id) const {
    for (const auto& [entry, control] : controls_)
        if (entry->id == id)
            return control.get();
    return nullptr;
}

Win32Control* Win32Form::ControlNamed(const std::wstring& name) const {
    for (const auto& [entry, control] : controls_)
        if (entry->name == name)
            return control.get();
    return nullptr;
}

MenuItem& Win32Form::Menu(const std::wstring& name) {
    return menuBar_.Menu(Window(), name);
}

void Win32Form::PopupMenu(MenuItem& menu) {
    if (!Window())
        return;
    POINT point{};
    if (popupPoint_)
        point = *popupPoint_;
    else
        GetCursorPos(&point);
    TrackPopupMenu(static_cast<Win32MenuItem&>(menu).Popup(), TPM_LEFTALIGN | TPM_RIGHTBUTTON,
                   point.x, point.y, 0, Window(), nullptr);
}

// --- Events ---------------------------------------------------------------------------------

bool Win32Form::Raise(const std::function<void()>& handler) {
    if (closing_)
        return false;
    const std::weak_ptr<bool> alive = alive_;
    // The handler's own copy, because the form that holds it may end while it runs.
    const std::function<void()> event = handler;
    if (!flushFocusEvents())
        return false;
    desktop_.Dispatch(event);
    if (alive.expired() || !Window())
        return false;
    AfterEvent();
    return true;
}

void Win32Form::countCommand() {
    constexpr const wchar_t* property = L"QuartinoCommandsDone";
    const auto done = reinterpret_cast<std::uintptr_t>(GetPropW(Window(), property));
    SetPropW(Window(), property, reinterpret_cast<HANDLE>(done + 1));
}

void Win32Form::FocusArrived(Win32Control& control) {
    if (closing_ || &control == this || focused_ == &control)
        return;
    // A field is left only for another control of its form: a message box or another program in
    // between does not count. The window system is in the middle of moving the focus here, so the
    // handlers, which may open windows, wait until it is done.
    if (auto* left = dynamic_cast<Win32TextField*>(focused_))
        focusEvents_.push_back({left, false});
    if (auto* entered = dynamic_cast<Win32TextField*>(&control))
        focusEvents_.push_back({entered, true});
    focused_ = &control;
    if (!focusEvents_.empty())
        PostMessageW(Window(), runFocusEvents, 0, 0);
}

bool Win32Form::flushFocusEvents() {
    const std::weak_ptr<bool> alive = alive_;
    while (!closing_ && !focusEvents_.empty()) {
        const FocusEvent event = focusEvents_.front();
        focusEvents_.pop_front();
        const std::function<void()> handler =
            event.got ? event.field->GotFocus : event.field->LostFocus;
        desktop_.Dispatch(handler);
        if (alive.expired())
            return false;
    }
    return !closing_ && Window();
}

void Win32Form::FocusAway(Win32Control& control) {
    const HWND next = GetNextDlgTabItem(Window(), control.Window(), FALSE);
    ::SetFocus(next && next != control.Window() ? next : Window());
}

void Win32Form::MoveFocus(Win32Control& control) {
    if (shown_)
        ::SetFocus(control.Window());
    else
        firstFocus_ = &control;
}

bool Win32Form::FocusAsked() {
    Win32Control* const asked = std::exchange(firstFocus_, nullptr);
    if (!asked || !asked->Enabled())
        return false;
    ::SetFocus(asked->Window());
    return true;
}

// --- Keys -----------------------------------------------------------------------------------

bool Win32Form::openDropDown() const {
    return std::any_of(
        controls_.begin(), controls_.end(),
        [](const auto& control) {
            return control.first->kind == ControlKind::DropDown && control.second->Window() &&
                   SendMessageW(control.second->Window(), CB_GETDROPPEDSTATE, 0, 0);
        });
}

bool Win32Form::PreDispatch(MSG& message) {
    switch (message.message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        // A key that was down before this window saw it belongs to the window that closed under it.
        if (!(message.lParam & wasDownBefore))
            pressed_.insert(message.wParam);
        if (message.message == WM_KEYDOWN && keyDown(message))
            return true;
        break;
    case WM_KEYUP:
    case WM_SYSKEYUP:
        // Without the form there is nobody left to dispatch to.
        if (pressed_.erase(message.wParam) && KeyUp &&
            !Raise([handler = KeyUp, key = static_cast<int>(message.wParam)] { handler(key); }))
            return true;
        break;
    default:
        break;
    }
    return HandleDialogKeys(message);
}

bool Win32Form::keyDown(const MSG& message) {
    if (runShortcut(message))
        return true;
    if (message.wParam != VK_RETURN && message.wParam != VK_ESCAPE)
        return moveInOptions(message);
    // These keys act when they are released, and never through a default button. An open list gets
    // them to close, and the button that has the focus gets Enter; their release is nobody's then.
    if (openDropDown()) {
        pressed_.erase(message.wParam);
        DispatchMessageW(&message);
    } else if (message.wParam == VK_RETURN) {
        pressFocusedButton(message);
    }
    return true;
}

bool Win32Form::runShortcut(const MSG& message) {
    const auto held = [](int key) { return GetKeyState(key) < 0; };
    // Alt with Ctrl types characters on many keyboards.
    if (message.lParam & wasDownBefore || held(VK_MENU) || !IsWindowEnabled(Window()))
        return false;
    const auto found =
        Shortcuts.find({static_cast<int>(message.wParam), held(VK_CONTROL), held(VK_SHIFT)});
    if (found == Shortcuts.end())
        return false;
    if (Raise(found->second))
        countCommand();
    return true;
}

void Win32Form::pressFocusedButton(const MSG& message) {
    for (const auto& [entry, control] : controls_) {
        auto* const button = dynamic_cast<Win32Button*>(control.get());
        if (!button || button->Window() != message.hwnd)
            continue;
        if (pressed_.erase(VK_RETURN) && !(message.lParam & wasDownBefore))
            button->OnCommand(BN_CLICKED);
        return;
    }
}

bool Win32Form::moveInOptions(const MSG& message) {
    const bool back = message.wParam == VK_UP || message.wParam == VK_LEFT;
    if (!back && message.wParam != VK_DOWN && message.wParam != VK_RIGHT)
        return false;
    // The window system's own way would stop at the fields that stand between the options.
    std::vector<Win32OptionButton*> options;
    for (const auto& [entry, control] : controls_)
        if (auto* option = dynamic_cast<Win32OptionButton*>(control.get());
            option && option->Enabled() && option->Visible())
            options.push_back(option);
    const auto here = std::find_if(options.begin(), options.end(), [&](const auto* option) {
        return option->Window() == message.hwnd;
    });
    if (here == options.end())
        return false;
    const auto index = static_cast<std::size_t>(here - options.begin());
    const std::size_t step = back ? options.size() - 1 : 1;
    Win32OptionButton& next = *options[(index + step) % options.size()];
    ::SetFocus(next.Window());
    next.Chosen();
    return true;
}

void Win32Form::SelectOption(Win32OptionButton& chosen) {
    for (const auto& [entry, control] : controls_)
        if (auto* option = dynamic_cast<Win32OptionButton*>(control.get()))
            option->Mark(option == &chosen);
}

// --- Showing and closing --------------------------------------------------------------------

void Win32Form::Show() {
    if (!Window())
        return;
    const bool first = !shown_;
    shown_ = loaded_ = true;
    if (first)
        Arrange(desktop_.ActiveForm(this));
    ShowWindow(Window(), SW_SHOWNORMAL);
    if (first) {
        // Only a visible window knows its visible frame.
        PlaceAgain();
        SetForegroundWindow(Window());
        FocusFirst();
        if (Resize)
            Raise(Resize);
    }
    if (Window())
        UpdateWindow(Window());
}

void Win32Form::ShowModal() {
    if (!Window() || loaded_)
        return;
    const std::weak_ptr<bool> alive = alive_;
    Win32Form* owner = desktop_.ActiveForm(this);
    const HWND ownerWindow = owner ? owner->Window() : nullptr;
    SetWindowLongPtrW(Window(), GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(ownerWindow));
    Arrange(owner);
    shown_ = loaded_ = true;
    if (ownerWindow && IsWindowEnabled(ownerWindow)) {
        disabledOwner_ = ownerWindow;
        EnableWindow(ownerWindow, FALSE);
    }
    ShowWindow(Window(), SW_SHOWNORMAL);
    SetActiveWindow(Window());
    // The user may come from the drawing, where he has placed rooms.
    SetForegroundWindow(Window());
    FocusFirst();
    while (!alive.expired() && Window())
        if (!desktop_.PumpMessage())
            break;
    if (!alive.expired())
        releaseOwner();
}

void Win32Form::releaseOwner() {
    if (disabledOwner_) {
        EnableWindow(disabledOwner_, TRUE);
        disabledOwner_ = nullptr;
    }
}

void Win32Form::Unload() {
    if (!Window() || closing_)
        return;
    const std::weak_ptr<bool> alive = alive_;
    if (MayUnload) {
        bool may = true;
        const auto ask = MayUnload;
        desktop_.Dispatch([&] { may = ask(); });
        if (!may || alive.expired() || !Window() || closing_)
            return;
    }
    closing_ = true;
    const auto unload = OnUnload;
    desktop_.Dispatch(unload);
    if (!alive.expired())
        destroy();
}

bool Win32Form::mayEndSession() {
    bool may = true;
    if (const auto ask = MayEndSession)
        desktop_.Dispatch([&] { may = ask(); });
    return may;
}

void Win32Form::endSession() {
    if (const auto end = std::exchange(OnSessionEnd, nullptr)) {
        OnUnload = nullptr;
        const std::weak_ptr<bool> alive = alive_;
        desktop_.Dispatch(end);
        if (alive.expired())
            return;
    }
    Unload();
}

void Win32Form::HoldSession(const std::wstring& reason) {
    if (Window())
        desktop_.System().HoldSessionCall(Window(), reason.empty() ? nullptr : reason.c_str());
}

void Win32Form::destroy() {
    const HWND window = Window();
    if (!window || destroying_)
        return;
    destroying_ = true;
    const HWND owner = disabledOwner_;
    // First the owner, then the window: the focus goes to what is enabled.
    releaseOwner();
    const bool active = GetActiveWindow() == window;
    DestroyWindow(window);
    if (owner && active)
        SetActiveWindow(owner);
}

// --- Messages -------------------------------------------------------------------------------

bool Win32Form::Reflect(HWND parent, UINT message, WPARAM word, LPARAM data, LRESULT& result) {
    switch (message) {
    case WM_COMMAND:
        if (!data)
            return HIWORD(word) == 0 && chooseMenu(LOWORD(word));
        if (Win32Control* control = ControlById(LOWORD(word)))
            return control->OnCommand(HIWORD(word));
        return false;
    case WM_NOTIFY: {
        auto& header = *reinterpret_cast<NMHDR*>(data);
        Win32Control* control = ControlById(static_cast<int>(header.idFrom));
        return control && control->Window() == header.hwndFrom && control->OnNotify(header, result);
    }
    case WM_DRAWITEM: {
        Win32Control* control = ControlById(static_cast<int>(word));
        result = TRUE;
        return control && control->OnDrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(data));
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLOREDIT: {
        Win32Control* control = ControlById(GetDlgCtrlID(reinterpret_cast<HWND>(data)));
        if (!control)
            return false;
        const auto standard =
            reinterpret_cast<HBRUSH>(CallOwnProcedure(parent, message, word, data));
        result =
            reinterpret_cast<LRESULT>(control->OnColour(reinterpret_cast<HDC>(word), standard));
        return true;
    }
    default:
        return false;
    }
}

bool Win32Form::chooseMenu(UINT id) {
    Win32MenuItem* item = menuBar_.ItemById(id);
    if (item && Raise(item->Click))
        countCommand();
    return item != nullptr;
}

LRESULT Win32Form::HandleMessage(UINT message, WPARAM word, LPARAM data) {
    LRESULT result = 0;
    if (handleLife(message, word, result) || handlePlace(message, word, data, result) ||
        Reflect(Window(), message, word, data, result))
        return result;
    handleLooks(message);
    return Win32Control::HandleMessage(message, word, data);
}

// What begins and ends the form, and what it is in the middle of.
bool Win32Form::handleLife(UINT message, WPARAM word, LRESULT& result) {
    switch (message) {
    case runFocusEvents:
        flushFocusEvents();
        return true;
    case WM_CLOSE:
        Unload();
        return true;
    case WM_QUERYENDSESSION:
        result = mayEndSession();
        return true;
    case WM_ENDSESSION:
        if (word)
            endSession();
        return true;
    case WM_ACTIVATE:
        // Releases that come back after another window was active have their press elsewhere.
        if (LOWORD(word) == WA_INACTIVE)
            pressed_.clear();
        return false;
    case WM_DESTROY:
        // Also when the window goes because its owner goes.
        closing_ = true;
        menuBar_.WindowGone();
        return false;
    default:
        return false;
    }
}

bool Win32Form::handlePlace(UINT message, WPARAM word, LPARAM data, LRESULT& result) {
    if (message == WM_DPICHANGED) {
        changeDpi(HIWORD(word), *reinterpret_cast<const RECT*>(data));
        return true;
    }
    if (message != WM_SIZE)
        return false;
    const std::weak_ptr<bool> alive = alive_;
    result = CallOwnProcedure(Window(), message, word, data);
    if (!alive.expired() && shown_ && Resize)
        Raise(Resize);
    return true;
}

// Theme, contrast and colours of the system may change while the program runs.
void Win32Form::handleLooks(UINT message) {
    if (message == WM_SYSCOLORCHANGE)
        // The system tells top-level windows only.
        EnumChildWindows(
            Window(),
            [](HWND child, LPARAM) -> BOOL {
                SendMessageW(child, WM_SYSCOLORCHANGE, 0, 0);
                return TRUE;
            },
            0);
    if (message == WM_SYSCOLORCHANGE || message == WM_THEMECHANGED || message == WM_SETTINGCHANGE)
        RedrawWindow(Window(), nullptr, nullptr,
                     RDW_ERASE | RDW_FRAME | RDW_INVALIDATE | RDW_ALLCHILDREN);
}

void Win32Form::ApplyFont() {
    const LOGFONTW description = MessageFont(dpi_);
    GdiObject<HFONT> font(CreateFontIndirectW(&description));
    const auto handle = reinterpret_cast<WPARAM>(font.get());
    SendMessageW(Window(), WM_SETFONT, handle, FALSE);
    EnumChildWindows(
        Window(),
        [](HWND child, LPARAM data) -> BOOL {
            SendMessageW(child, WM_SETFONT, static_cast<WPARAM>(data), FALSE);
            return TRUE;
        },
        static_cast<LPARAM>(handle));
    font_ = std::move(font);
}

void Win32Form::changeDpi(UINT dpi, const RECT& suggested) {
    if (!dpi || dpi == dpi_)
        return;
    const UINT old = std::exchange(dpi_, dpi);
    SetWindowPos(Window(), nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
                 suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
    ApplyFont();
    for (const auto& [entry, control] : controls_)
        control->Rescale(old, dpi);
    RedrawWindow(Window(), nullptr, nullptr,
                 RDW_ERASE | RDW_FRAME | RDW_INVALIDATE | RDW_ALLCHILDREN);
    // Where the pixels stay the same, the size has changed all the same: it is counted in twips.
    if (shown_ && Resize)
        Raise(Resize);
}

// --- Geometry: the frame that the user sees -------------------------------------------------

// Newer systems give a window borders that are not visible; what the user takes for the window's
// size, and what has to be restored, is the visible frame.
Win32Form::FrameMargins Win32Form::margins() const {
    // Minimised, the window has none; what counts is the frame that it comes back with.
    if (IsIconic(Window()))
        return usualMargins_;
    RECT whole{};
    RECT visible{};
    if (!IsWindowVisible(Window()) || !GetWindowRect(Window(), &whole) ||
        FAILED(DwmGetWindowAttribute(Window(), DWMWA_EXTENDED_FRAME_BOUNDS, &visible,
                                     sizeof visible)) ||
        IsRectEmpty(&visible))
        return {0, 0, 0, 0};
    const FrameMargins now{static_cast<int>(visible.left - whole.left),
                           static_cast<int>(visible.top - whole.top),
                           static_cast<int>(whole.right - visible.right),
                           static_cast<int>(whole.bottom - visible.bottom)};
    if (!IsZoomed(Window()))
        usualMargins_ = now;
    return now;
}

RECT Win32Form::normalPlace() const {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(Window(), &placement);
    RECT place = placement.rcNormalPosition;
    // It is counted from the corner of the area beside the taskbar.
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    if (GetMonitorInfoW(MonitorFromRect(&place, MONITOR_DEFAULTTOPRIMARY), &monitor))
        OffsetRect(&place, static_cast<int>(monitor.rcWork.left - monitor.rcMonitor.left),
                   static_cast<int>(monitor.rcWork.top - monitor.rcMonitor.top));
    return place;
}

Win32Control::Box Win32Form::Bounds() const {
    RECT whole{};
    // A minimised window stands far off the screen.
    if (IsIconic(Window()))
        whole = normalPlace();
    else
        GetWindowRect(Window(), &whole);
    const FrameMargins m = margins();
    return {static_cast<int>(whole.left) + m.left, static_cast<int>(whole.top) + m.top,
            static_cast<int>(whole.right - whole.left) - m.left - m.right,
            static_cast<int>(whole.bottom - whole.top) - m.top - m.bottom};
}

void Win32Form::Bounds(const Box& box) {
    const FrameMargins m = margins();
    SetWindowPos(Window(), nullptr, box.left - m.left, box.top - m.top,
                 box.width + m.left + m.right, box.height + m.top + m.bottom,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

UINT Win32Form::DpiOf(Edge edge) const {
    // Places on the desktop are counted in one DPI, so that a stored place finds the monitor again.
    return edge == Edge::Left || edge == Edge::Top ? GetDpiForSystem() : dpi_;
}

} // namespace kalvrooms::Gui
