#include "practice/host/HostWindow.h"

#include "drawing/Text.h"
#include "ifc/TroubleText.h"
#include "practice/host/Commands.h"
#include "win32/Handles.h"

#include <commdlg.h>
#include <windowsx.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>

namespace kalvrooms::practice {

namespace {

constexpr const wchar_t* ClassName = L"KalveroPracticeHost";
constexpr UINT_PTR RefreshTimer = 1;
constexpr UINT_PTR QuitTimer = 2;
constexpr UINT_PTR UnusedTimer = 3;
constexpr UINT RefreshDelay = 120;
// Long enough for the call that asked the process to quit to be answered.
constexpr UINT LeaveDelay = 100;
// A server that the system started ends if its client never connects.
constexpr UINT FirstClientDelay = 30000;

// Pixels per metre.
constexpr double SmallestScale = 1e-3;
constexpr double LargestScale = 1e4;

constexpr const wchar_t* OpenFilter =
    L"Zeichnungen und Modelle (*.json; *.ifc)\0*.json;*.ifc\0Alle Dateien\0*.*\0";
constexpr const wchar_t* DrawingFilter = L"Zeichnungen (*.json)\0*.json\0Alle Dateien\0*.*\0";
constexpr const wchar_t* ModelFilter =
    L"IFC-Modelle (*.ifc)\0*.ifc\0Zeichnungen (*.json)\0*.json\0";
constexpr const wchar_t* SvgFilter = L"SVG-Bilder (*.svg)\0*.svg\0";

Point PointOf(LPARAM position) {
    return {static_cast<double>(GET_X_LPARAM(position)),
            static_cast<double>(GET_Y_LPARAM(position))};
}

// Copied to its target at the end: the window never shows half a picture.
class DoubleBuffer {
  public:
    DoubleBuffer(HDC target, const RECT& area)
        : target_(target), area_(area), memory_(CreateCompatibleDC(target)),
          bitmap_(CreateCompatibleBitmap(target, area.right - area.left, area.bottom - area.top)),
          selected_(memory_.get(), bitmap_.get()) {}
    DoubleBuffer(const DoubleBuffer&) = delete;
    DoubleBuffer& operator=(const DoubleBuffer&) = delete;
    ~DoubleBuffer() {
        BitBlt(target_, area_.left, area_.top, area_.right - area_.left, area_.bottom - area_.top,
               memory_.get(), 0, 0, SRCCOPY);
    }
    HDC context() const { return memory_.get(); }

  private:
    HDC target_;
    RECT area_;
    MemoryContext memory_;
    GdiObject<HBITMAP> bitmap_;
    Selected selected_;
};

} // namespace

HostWindow::HostWindow(HostProcess& process, Options options, std::function<void()> startProgram)
    : process_(process), options_(options), startProgram_(std::move(startProgram)) {
    HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = &HostWindow::Receive;
    windowClass.hInstance = instance;
    windowClass.hIcon = LoadIconW(nullptr, reinterpret_cast<LPCWSTR>(IDI_APPLICATION));
    windowClass.lpszMenuName = MAKEINTRESOURCEW(IDM_MAIN);
    windowClass.lpszClassName = ClassName;
    RegisterClassExW(&windowClass);
    const int dpi = static_cast<int>(GetDpiForSystem());
    if (!CreateWindowExW(0, ClassName, L"Kalvero", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                         CW_USEDEFAULT, MulDiv(1120, dpi, 96), MulDiv(720, dpi, 96), nullptr,
                         nullptr, instance, this))
        throw HostError(L"The window cannot be created.");
    painter_ = std::make_unique<Painter>(GetDpiForWindow(window_));
    DragAcceptFiles(window_, TRUE);

    if (!options_.hidden)
        process_.session.placing.OnClick(
            [this](const std::vector<Outline>& outlines) { return PlaceByClick(outlines); });
    process_.reactions.touched = [this] { Refresh(); };
    process_.reactions.drawingChanged = [this] {
        drawingChanged_ = true;
        Refresh();
    };
    process_.reactions.opened = [this] { ShowOpened(); };
    process_.reactions.quitAsked = [this] { LeaveSoon(QuitTimer); };
    process_.reactions.unused = [this] { LeaveSoon(UnusedTimer); };
    if (options_.embedding)
        SetTimer(window_, UnusedTimer, FirstClientDelay, nullptr);
    ShowOpened();
}

HostWindow::~HostWindow() {
    process_.reactions = {};
    process_.session.placing.OnClick(nullptr);
    DestroyWindow(window_);
}

void HostWindow::Show() {
    if (options_.hidden)
        return;
    if (!shown_) {
        shown_ = true;
        process_.AddUse();
    }
    OnTimer(RefreshTimer);
    ShowWindow(window_, SW_SHOW);
    UpdateWindow(window_);
}

int HostWindow::Run() {
    HACCEL keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDA_MAIN));
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (TranslateAcceleratorW(window_, keys, &message))
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

LRESULT CALLBACK HostWindow::Receive(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_NCCREATE) {
        auto* self = static_cast<HostWindow*>(
            reinterpret_cast<const CREATESTRUCTW*>(second)->lpCreateParams);
        self->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!self || !self->painter_)
        return DefWindowProcW(window, message, first, second);
    return self->Handle(message, first, second);
}

LRESULT HostWindow::Handle(UINT message, WPARAM first, LPARAM second) {
    if (placing_ && HandlePlacing(message, first, second))
        return message == WM_SETCURSOR ? TRUE : 0;
    if (HandleView(message, first, second))
        return 0;
    switch (message) {
    case WM_PAINT:
        Paint();
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SIZE:
        scene_.reset();
        InvalidateRect(window_, nullptr, FALSE);
        return 0;
    case WM_DPICHANGED: {
        painter_ = std::make_unique<Painter>(HIWORD(first));
        scene_.reset();
        const RECT& area = *reinterpret_cast<const RECT*>(second);
        SetWindowPos(window_, nullptr, area.left, area.top, area.right - area.left,
                     area.bottom - area.top, SWP_NOZORDER | SWP_NOACTIVATE);
        return 0;
    }
    case WM_SETCURSOR:
        if (LOWORD(second) == HTCLIENT) {
            SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW)));
            return TRUE;
        }
        break;
    case WM_TIMER:
        OnTimer(first);
        return 0;
    case WM_COMMAND:
        Try([&] { Command(LOWORD(first)); });
        return 0;
    case WM_DROPFILES:
        Try([&] { OpenDropped(reinterpret_cast<HDROP>(first)); });
        return 0;
    case WM_CLOSE:
        Close();
        return 0;
    case EndMessage:
        PostQuitMessage(static_cast<int>(first));
        return 0;
    default:
        break;
    }
    return DefWindowProcW(window_, message, first, second);
}

bool HostWindow::HandleView(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
    case WM_MOUSEWHEEL: {
        POINT pointer{GET_X_LPARAM(second), GET_Y_LPARAM(second)};
        ScreenToClient(window_, &pointer);
        const double notches = static_cast<double>(GET_WHEEL_DELTA_WPARAM(first)) / WHEEL_DELTA;
        const View zoomed = CurrentScene().view.ZoomedAt(
            {static_cast<double>(pointer.x), static_cast<double>(pointer.y)},
            std::pow(1.25, notches));
        if (zoomed.scale > SmallestScale && zoomed.scale < LargestScale)
            ChangeView(zoomed);
        return true;
    }
    case WM_LBUTTONDOWN:
        ChooseStorey({GET_X_LPARAM(second), GET_Y_LPARAM(second)});
        return true;
    case WM_RBUTTONDOWN:
        panAt_ = PointOf(second);
        SetCapture(window_);
        return true;
    case WM_MOUSEMOVE:
        if (panAt_) {
            const Point now = PointOf(second);
            View moved = CurrentScene().view;
            moved.origin.x += now.x - panAt_->x;
            moved.origin.y += now.y - panAt_->y;
            panAt_ = now;
            ChangeView(moved);
        }
        return panAt_.has_value();
    case WM_RBUTTONUP:
        ReleaseCapture();
        return true;
    case WM_CAPTURECHANGED:
        panAt_.reset();
        return true;
    default:
        return false;
    }
}

void HostWindow::ChangeView(std::optional<View> view) {
    view_ = view;
    scene_.reset();
    InvalidateRect(window_, nullptr, FALSE);
}

// A click on a storey in the legend shows it alone, one more shows all again.
void HostWindow::ChooseStorey(const POINT& pixel) {
    RECT client{};
    GetClientRect(window_, &client);
    const Scene& scene = CurrentScene();
    const auto storey = painter_->StoreyAt(client, scene, pixel);
    if (!storey)
        return;
    if (storey_.In(scene) == storey)
        storey_.ShowAll();
    else
        storey_.Show(scene.storeys[*storey].name);
    InvalidateRect(window_, nullptr, FALSE);
}

void HostWindow::StepStorey(bool forward) {
    storey_.Step(CurrentScene(), forward);
    InvalidateRect(window_, nullptr, FALSE);
}

bool HostWindow::HandlePlacing(UINT message, WPARAM first, LPARAM second) {
    switch (message) {
    case WM_MOUSEMOVE:
        placing_->pointer = PointOf(second);
        InvalidateRect(window_, nullptr, FALSE);
        return !panAt_;
    case WM_LBUTTONDOWN:
        placing_->clicked = PointAt(PointOf(second));
        return true;
    case WM_KEYDOWN:
        placing_->cancelled = first == VK_ESCAPE;
        return placing_->cancelled;
    case WM_CLOSE:
        placing_->cancelled = true;
        // Handled again once the pending call has returned.
        PostMessageW(window_, WM_CLOSE, 0, 0);
        return true;
    case WM_SETCURSOR:
        if (LOWORD(second) != HTCLIENT)
            return false;
        SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_CROSS)));
        return true;
    default:
        return false;
    }
}

Point HostWindow::PlaceByClick(const std::vector<Outline>& outlines) {
    if (placing_)
        throw HostError(L"Other rooms are being placed.");
    PlacingState state;
    state.outlines = outlines;
    placing_ = &state;
    scene_.reset();
    Show();
    SetForegroundWindow(window_);
    POINT pointer{};
    GetCursorPos(&pointer);
    ScreenToClient(window_, &pointer);
    state.pointer = {static_cast<double>(pointer.x), static_cast<double>(pointer.y)};
    InvalidateRect(window_, nullptr, FALSE);

    MSG message{};
    while (!state.clicked && !state.cancelled) {
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
            // The outer message loop has to see the quit message too.
            PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    placing_ = nullptr;
    scene_.reset();
    InvalidateRect(window_, nullptr, FALSE);
    if (!state.clicked)
        throw PlacingCancelled();
    return *state.clicked;
}

Point HostWindow::PointAt(const Point& pixel) {
    const Point metres = CurrentScene().view.ToMetres(pixel);
    // Whole centimetres: nobody can aim more precisely.
    return {std::round(metres.x * 100) / 100, std::round(metres.y * 100) / 100};
}

const Scene& HostWindow::CurrentScene() {
    if (!scene_) {
        RECT client{};
        GetClientRect(window_, &client);
        const Drawing& drawing = process_.session.drawing;
        const View fit = FitView(drawing, painter_->DrawingFrame(client),
                                 placing_ ? placing_->outlines : std::vector<Outline>());
        scene_ = MakeScene(drawing, view_.value_or(fit), painter_->Labels());
    }
    return *scene_;
}

void HostWindow::Paint() {
    PAINTSTRUCT paint{};
    HDC dc = BeginPaint(window_, &paint);
    RECT client{};
    GetClientRect(window_, &client);
    WindowContent content;
    content.project = process_.session.drawing.project.name;
    content.status = Status();
    content.attention = placing_ != nullptr;
    content.scene = &CurrentScene();
    content.storey = storey_.In(*content.scene);
    if (placing_) {
        const View& view = content.scene->view;
        const Point at = PointAt(placing_->pointer);
        for (const Outline& outline : placing_->outlines) {
            Outline ghost;
            for (const Point& point : outline)
                ghost.push_back(view.ToPicture({point.x + at.x, point.y + at.y}));
            content.ghosts.push_back(std::move(ghost));
        }
    }
    {
        const DoubleBuffer buffer(dc, client);
        const RECT status = painter_->StatusArea(client);
        if (paint.rcPaint.top >= status.top)
            painter_->PaintStatus(buffer.context(), status, content);
        else
            painter_->Paint(buffer.context(), client, content);
    }
    EndPaint(window_, &paint);
}

std::wstring HostWindow::Status() const {
    if (placing_)
        return L"Bitte Räume absetzen … (Klicken setzt ab, Esc bricht ab)";
    const Drawing& drawing = process_.session.drawing;
    std::wstring status = process_.HasModel()
                              ? process_.File().filename().wstring()
                              : L"Projekt " + std::to_wstring(drawing.project.number);
    status += L"   |   " + std::to_wstring(drawing.elements.size()) +
              (drawing.elements.size() == 1 ? L" Raum" : L" Räume");
    const auto shapeless =
        std::count_if(drawing.elements.begin(), drawing.elements.end(),
                      [](const Element& element) { return element.outline.empty(); });
    if (shapeless > 0)
        status += L", " + std::to_wstring(shapeless) + L" ohne Umriss";
    status += L"   |   " + std::to_wstring(process_.calls.Count()) +
              (process_.calls.Count() == 1 ? L" Aufruf" : L" Aufrufe");
    if (process_.session.state.Name() == L"menu")
        status += L"   |   Menüaktion läuft";
    else if (process_.session.state.Name() == L"kvd")
        status += L"   |   KVD offen";
    else
        status += L"   |   bereit";
    return status;
}

void HostWindow::Refresh() {
    // Calls come by the thousand, so repainting is throttled.
    if (!refreshPending_)
        refreshPending_ = SetTimer(window_, RefreshTimer, RefreshDelay, nullptr) != 0;
}

void HostWindow::OnTimer(UINT_PTR timer) {
    KillTimer(window_, timer);
    if (timer == RefreshTimer) {
        refreshPending_ = false;
        const std::wstring& name = process_.session.drawing.project.name;
        SetWindowTextW(window_, (name.empty() ? L"Kalvero" : L"Kalvero – " + name).c_str());
        UpdateMenu();
        RECT changed{};
        GetClientRect(window_, &changed);
        if (drawingChanged_) {
            drawingChanged_ = false;
            scene_.reset();
        } else {
            changed = painter_->StatusArea(changed);
        }
        InvalidateRect(window_, &changed, FALSE);
    } else if (timer == QuitTimer) {
        PostQuitMessage(0);
    } else if (timer == UnusedTimer) {
        // A client may have connected in the meantime.
        if (process_.InUse())
            CoResumeClassObjects();
        else
            PostQuitMessage(0);
    }
}

void HostWindow::LeaveSoon(UINT_PTR timer) {
    SetTimer(window_, timer, LeaveDelay, nullptr);
}

void HostWindow::Close() {
    if (options_.embedding && shown_) {
        ShowWindow(window_, SW_HIDE);
        shown_ = false;
        process_.RemoveUse();
    } else {
        PostQuitMessage(0);
    }
}

void HostWindow::Try(const std::function<void()>& action) {
    std::wstring trouble;
    try {
        action();
    } catch (const HostError& error) {
        trouble = ifc::InGerman(error.description());
    } catch (const std::exception& error) {
        trouble = ifc::InGerman(FromUtf8(error.what()));
    }
    if (!trouble.empty())
        MessageBoxW(window_, trouble.c_str(), L"Kalvero", MB_OK | MB_ICONWARNING);
}

void HostWindow::Command(WORD identifier) {
    switch (identifier) {
    case IDC_LOAD:
        return LoadDrawing();
    case IDC_SAVE:
        return SaveDrawing();
    case IDC_SVG:
        return SaveSvg();
    case IDC_EXIT:
        PostMessageW(window_, WM_CLOSE, 0, 0);
        return;
    case IDC_STATE_MENU:
        return ToggleState(L"menu");
    case IDC_STATE_KVD:
        return ToggleState(L"kvd");
    case IDC_FIT:
        return ChangeView(std::nullopt);
    case IDC_ALL_STOREYS:
        storey_.ShowAll();
        InvalidateRect(window_, nullptr, FALSE);
        return;
    case IDC_NEXT_STOREY:
        return StepStorey(true);
    case IDC_LAST_STOREY:
        return StepStorey(false);
    case IDC_START:
        return startProgram_();
    default:
        return;
    }
}

void HostWindow::ToggleState(const wchar_t* state) {
    process_.session.state.Set(process_.session.state.Name() == state ? L"" : state);
    OnTimer(RefreshTimer);
}

void HostWindow::UpdateMenu() {
    HMENU menu = GetMenu(window_);
    const auto check = [&](UINT command, const wchar_t* state) {
        const bool on = process_.session.state.Name() == state;
        CheckMenuItem(menu, command, MF_BYCOMMAND | (on ? MF_CHECKED : MF_UNCHECKED));
    };
    check(IDC_STATE_MENU, L"menu");
    check(IDC_STATE_KVD, L"kvd");
}

std::wstring HostWindow::AskForFile(bool save, const wchar_t* filter, const wchar_t* extension,
                                    const std::wstring& proposed) {
    std::array<wchar_t, 4096> path{};
    proposed.copy(path.data(), path.size() - 1);
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = window_;
    dialog.lpstrFilter = filter;
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.lpstrDefExt = extension;
    dialog.Flags = OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST |
                   (save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST);
    const BOOL chosen = save ? GetSaveFileNameW(&dialog) : GetOpenFileNameW(&dialog);
    return chosen ? path.data() : L"";
}

void HostWindow::LoadDrawing() {
    const std::wstring file = AskForFile(false, OpenFilter, L"json");
    if (!file.empty())
        Open(file);
}

void HostWindow::Open(const std::wstring& file) {
    if (placing_)
        throw HostError(L"Bitte setzen Sie zuerst die Räume ab.");
    process_.Open(file);
    const std::wstring passedOver = process_.PassedOver();
    if (!passedOver.empty())
        MessageBoxW(window_, passedOver.c_str(), L"Kalvero", MB_OK | MB_ICONINFORMATION);
}

// The storeys of a model stand one above the other: the lowest is shown alone.
void HostWindow::ShowOpened() {
    view_.reset();
    scene_.reset();
    storey_.ShowAll();
    if (process_.HasModel())
        storey_.Step(CurrentScene(), true);
    process_.reactions.drawingChanged();
}

void HostWindow::OpenDropped(HDROP files) {
    std::array<wchar_t, 4096> file{};
    const UINT count = DragQueryFileW(files, 0, file.data(), static_cast<UINT>(file.size()));
    DragFinish(files);
    if (count > 0)
        Open(file.data());
}

void HostWindow::SaveDrawing() {
    const bool model = process_.HasModel();
    const std::wstring file = AskForFile(true, model ? ModelFilter : DrawingFilter,
                                         model ? L"ifc" : L"json", process_.File().wstring());
    if (!file.empty())
        process_.Save(file);
}

void HostWindow::SaveSvg() {
    const std::wstring path = AskForFile(true, SvgFilter, L"svg");
    if (!path.empty())
        process_.SaveSvg(path);
}

} // namespace kalvrooms::practice
