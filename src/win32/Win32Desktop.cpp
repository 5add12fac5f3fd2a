#include "win32/Win32Desktop.h"

#include "win32/Win32Dialog.h"
#include "win32/Win32MainForm.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace kalvrooms::Gui {
namespace {

// The standard set in its own order; 0 stands for each window's own pointer, 4 to 5 and 15 for the
// same one.
LPCWSTR cursorOf(std::int16_t shape) {
    static const std::array<LPCWSTR, 16> cursors = {
        nullptr,      IDC_ARROW,       IDC_CROSS,    IDC_IBEAM,  IDC_ARROW,   IDC_SIZEALL,
        IDC_SIZENESW, IDC_SIZENS,      IDC_SIZENWSE, IDC_SIZEWE, IDC_UPARROW, IDC_WAIT,
        IDC_NO,       IDC_APPSTARTING, IDC_HELP,     IDC_SIZEALL};
    return shape > 0 && static_cast<std::size_t>(shape) < cursors.size()
               ? cursors[static_cast<std::size_t>(shape)]
               : nullptr;
}

} // namespace

Win32Desktop::Win32Desktop() {
    INITCOMMONCONTROLSEX controls{};
    controls.dwSize = sizeof controls;
    controls.dwICC = ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES;
    InitCommonControlsEx(&controls);
    hook_ = SetWindowsHookExW(WH_GETMESSAGE, &seeMessage, nullptr, GetCurrentThreadId());
}

Win32Desktop::~Win32Desktop() {
    UnhookWindowsHookEx(hook_);
}

LRESULT CALLBACK Win32Desktop::seeMessage(int code, WPARAM removed, LPARAM data) {
    const auto& message = *reinterpret_cast<const MSG*>(data);
    const bool pressed = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    if (code == HC_ACTION && removed == PM_REMOVE && pressed && message.wParam == VK_ESCAPE)
        escapePressed_ = true;
    return CallNextHookEx(nullptr, code, removed, data);
}

void Win32Desktop::ServeMessages(UINT first, UINT last) {
    MSG message{};
    while (PeekMessageW(&message, nullptr, first, last, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        run(message);
    }
}

bool Win32Desktop::EscapePressed() {
    ServeMessages(WM_KEYFIRST, WM_KEYLAST);
    return std::exchange(escapePressed_, false);
}

void Win32Desktop::EndProcess() {
    // Ending the libraries could wait for the very call that does not come back.
    TerminateProcess(GetCurrentProcess(), 0);
}

std::unique_ptr<Form> Win32Desktop::CreateForm(const std::wstring& name) {
    const FormEntry* entry = FindForm(name);
    if (!entry)
        throw std::logic_error("no such form");
    if (!entry->dialog)
        return std::make_unique<Win32MainForm>(*this, *entry);
    return std::make_unique<Win32Dialog>(*this, *entry);
}

Answer Win32Desktop::ShowMessage(const Message& message) {
    const HWND owner = activeWindow();
    UINT style = message.ButtonSet == Message::Buttons::YesNo ? MB_YESNO : MB_OK;
    if (message.Symbol == Message::Icon::Exclamation)
        style |= MB_ICONEXCLAMATION;
    else if (message.Symbol == Message::Icon::Stop)
        style |= MB_ICONSTOP;
    // Without a window of ours the message would open behind the program that started us.
    if (!owner)
        style |= MB_SETFOREGROUND;
    switch (system_.MessageBoxCall(owner, Shown(message.Prompt).c_str(),
                                   Shown(message.Title).c_str(), style)) {
    case IDYES:
        return Answer::Yes;
    case IDNO:
        return Answer::No;
    default:
        return message.ButtonSet == Message::Buttons::YesNo ? Answer::No : Answer::Ok;
    }
}

void Win32Desktop::ShowOpen(FileDialog& dialog) {
    RunFileDialog(dialog, activeWindow(), system_.OpenFileCall, system_.ErrorCall);
}

void Win32Desktop::ShowSave(FileDialog& dialog) {
    RunFileDialog(dialog, activeWindow(), system_.SaveFileCall, system_.ErrorCall);
}

void Win32Desktop::ShowColour(Colour& colour) {
    RunColourDialog(colour, activeWindow(), system_.ColourCall);
}

void Win32Desktop::OpenHelp(Form& owner, const std::wstring& file, std::uint32_t context) {
    const auto* form = dynamic_cast<Win32Form*>(&owner);
    OpenHelpFile(form ? form->Window() : nullptr, file, context, system_.HelpCall);
}

void Win32Desktop::MousePointer(std::int16_t shape) {
    pointer_ = shape;
    POINT point{};
    if (!GetCursorPos(&point))
        return;
    const HWND window = WindowFromPoint(point);
    if (!window || GetWindowThreadProcessId(window, nullptr) != GetCurrentThreadId())
        return;
    if (ShowPointer())
        return;
    // The window under the mouse shows its own pointer again.
    const LRESULT hit = SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(point.x, point.y));
    SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
                 MAKELPARAM(hit, WM_MOUSEMOVE));
}

bool Win32Desktop::ShowPointer() const {
    const LPCWSTR cursor = cursorOf(pointer_);
    if (!cursor)
        return false;
    SetCursor(LoadCursorW(nullptr, cursor));
    return true;
}

void Win32Desktop::Add(Win32Form& form) {
    forms_.push_back(&form);
}

void Win32Desktop::Remove(Win32Form& form) {
    std::erase(forms_, &form);
}

Win32Form* Win32Desktop::ActiveForm(const Win32Form* except) const {
    const auto found = std::find_if(forms_.rbegin(), forms_.rend(), [&](const Win32Form* form) {
        return form != except && form->Loaded() && form->Visible();
    });
    return found == forms_.rend() ? nullptr : *found;
}

HWND Win32Desktop::activeWindow() const {
    const Win32Form* form = ActiveForm();
    return form ? form->Window() : nullptr;
}

Win32Form* Win32Desktop::FormOf(HWND window) const {
    const HWND root = window ? GetAncestor(window, GA_ROOT) : nullptr;
    if (!root)
        return nullptr;
    const auto found = std::find_if(forms_.begin(), forms_.end(),
                                    [&](const Win32Form* form) { return form->Window() == root; });
    return found == forms_.end() ? nullptr : *found;
}

bool Win32Desktop::PumpMessage() {
    MSG message{};
    const BOOL more = GetMessageW(&message, nullptr, 0, 0);
    if (more == 0 || more == -1) {
        // Loops further out have to see it as well.
        if (more == 0)
            PostQuitMessage(static_cast<int>(message.wParam));
        return false;
    }
    run(message);
    return true;
}

void Win32Desktop::run(MSG& message) {
    Win32Form* form = FormOf(message.hwnd);
    if (form && form->PreDispatch(message))
        return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

void Win32Desktop::Run() {
    const auto loaded = [this] {
        return std::any_of(forms_.begin(), forms_.end(),
                           [](const Win32Form* form) { return form->Loaded(); });
    };
    while (loaded())
        if (!PumpMessage())
            return;
}

} // namespace kalvrooms::Gui
