#include "desktop_support.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace kalvrooms::Gui {
namespace {

constexpr UINT tickMilliseconds = 10;
constexpr ULONGLONG patience = 60000;
Journey* travelling = nullptr;

void send(const INPUT& input) {
    INPUT copy = input;
    SendInput(1, &copy, sizeof copy);
}

void sendKey(WORD key, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    send(input);
}

// Carries its place, so that nothing that moves the pointer meanwhile gets between.
void sendMouse(DWORD flags, POINT point) {
    const auto scaled = [](LONG at, int size) {
        return static_cast<LONG>(static_cast<LONGLONG>(at) * 65536 / GetSystemMetrics(size)) + 1;
    };
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = scaled(point.x, SM_CXSCREEN);
    input.mi.dy = scaled(point.y, SM_CYSCREEN);
    input.mi.dwFlags = static_cast<DWORD>(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE) | flags;
    send(input);
}

} // namespace

void FillCaptions(Form& form, const std::wstring& name, const Texts& text) {
    const auto set = [&](const wchar_t* control, std::int32_t number) {
        Named(form, control).Text(text(number));
    };
    if (name == L"frmRoom") {
        form.Text(text(97));
        const std::pair<const wchar_t*, std::int32_t> captions[] = {
            {L"frmAttrib", 27},  {L"lblGeschoss", 28}, {L"lblBez", 31},      {L"lblFkt", 32},
            {L"lblFlaeche", 33}, {L"lblGFlaeche", 34}, {L"cmdGeometry", 35}, {L"lblUm", 36},
            {L"lblNutz", 37},    {L"lblFlArt", 87},    {L"lblAnz", 39},      {L"cmdOk", 2},
            {L"cmdCancel", 3}};
        for (const auto& [control, number] : captions)
            set(control, number);
        for (const std::int32_t number : {91, 88, 89, 90})
            form.DropDownNamed(L"cboAreaType").AddItem(text(number));
        for (const wchar_t* item : {L"a", L"b", L"c", L"bc"})
            form.DropDownNamed(L"cboEnclosureType").AddItem(item);
        for (const std::int32_t number : {91, 86, 81, 82, 84, 85})
            form.DropDownNamed(L"cboOccupancy").AddItem(text(number));
        form.DropDownNamed(L"cboAreaType").Text(text(91));
        form.DropDownNamed(L"cboEnclosureType").Text(L"bc");
        form.DropDownNamed(L"cboOccupancy").Text(L" HNF 3");
        form.FieldNamed(L"txtStoryCode").Text(L"EG");
        form.FieldNamed(L"txtName").Text(L"Klassenzimmer 1");
        form.FieldNamed(L"txtFunction").Text(L"Unterricht");
        form.FieldNamed(L"txtArea").Text(L"64,500");
        form.FieldNamed(L"txtQuantity").Text(L"1");
    } else if (name == L"frmGeometry") {
        form.Text(text(30));
        const std::pair<const wchar_t*, std::int32_t> captions[] = {
            {L"fraGeo", 30}, {L"optXDirection", 40}, {L"lblDx", 43},    {L"optYDirection", 41},
            {L"lblDy", 44},  {L"optRatio", 42},      {L"lblRatio", 45}, {L"optExcelFile", 46},
            {L"cmdOk", 2},   {L"cmdCancel", 3}};
        for (const auto& [control, number] : captions)
            set(control, number);
        form.ButtonNamed(L"cmdExcelFile")
            .Text(L"jekte\\Schulzentrum Musterstadt\\Raumbuch\\Aula_Nord.xls");
        form.OptionNamed(L"optRatio").Value(true);
        form.FieldNamed(L"txtRatio").Text(L"1,00");
    } else if (name == L"frmPlace") {
        form.Text(text(19).substr(0, text(19).find(L"...")));
        TabStrip& tabs = form.TabsNamed(L"SSTab1");
        tabs.Tab(1);
        tabs.TabCaption(1, text(53));
        tabs.Tab(0);
        tabs.TabCaption(0, text(47));
        const std::pair<const wchar_t*, std::int32_t> captions[] = {
            {L"fraAnordnung", 48}, {L"optSingle", 49}, {L"optBlock", 50},  {L"lblDisX", 51},
            {L"lblDisY", 52},      {L"fraColor", 53},  {L"lblcolold", 54}, {L"lblcolnew", 55},
            {L"chkUpdate", 56},    {L"cmdOk", 2},      {L"cmdCancel", 3}};
        for (const auto& [control, number] : captions)
            set(control, number);
        form.ButtonNamed(L"cmdWithCoordinates").BackColour(0);
        form.ButtonNamed(L"cmdWithoutCoordinates").BackColour(255);
        form.OptionNamed(L"optBlock").Value(true);
        form.FieldNamed(L"txtDx").Text(L"1,000");
        form.FieldNamed(L"txtDy").Text(L"1,000");
        form.CheckNamed(L"chkUpdate").Value(true);
    } else if (name == L"frmReport") {
        form.Text(text(1));
        const std::pair<const wchar_t*, std::int32_t> captions[] = {
            {L"lblTop", 57},      {L"lblText1", 59},  {L"lblText2", 61}, {L"lblText3", 63},
            {L"chkNoReport", 64}, {L"lblOption", 65}, {L"cmdOk", 2}};
        for (const auto& [control, number] : captions)
            set(control, number);
        for (const wchar_t* number : {L"lblNum1", L"lblNum2", L"lblNum3"})
            form.LabelNamed(number).Text(L"2147483647");
        for (const wchar_t* row : {L"lblNum3", L"lblText3"})
            form.LabelNamed(row).ForeColour(255);
    }
}

// --- Journey --------------------------------------------------------------------------------

Journey::Journey() {
    travelling = this;
    waitingSince_ = GetTickCount64();
    timer_ = SetTimer(nullptr, 0, tickMilliseconds, tick);
}

Journey::~Journey() {
    KillTimer(nullptr, timer_);
    travelling = nullptr;
    EXPECT_TRUE(steps_.empty()) << "never reached: " << steps_.front().name;
}

Journey& Journey::When(std::string name, State state, Step step) {
    steps_.push_back({std::move(name), std::move(state), std::move(step)});
    return *this;
}

void CALLBACK Journey::tick(HWND, UINT, UINT_PTR, DWORD) {
    if (travelling)
        travelling->look();
}

void Journey::look() {
    if (looking_ || steps_.empty())
        return;
    looking_ = true;
    if (steps_.front().state()) {
        const Stage stage = steps_.front();
        steps_.pop_front();
        waitingSince_ = GetTickCount64();
        // A step may open a window whose own loop carries the journey on.
        looking_ = false;
        stage.step();
        return;
    }
    looking_ = false;
    if (GetTickCount64() - waitingSince_ > patience) {
        // A window that nobody answers would hold the whole test run.
        std::fprintf(stderr, "never reached: %s\n", steps_.front().name.c_str());
        std::fflush(stderr);
        std::_Exit(1);
    }
}

void Journey::Run(Win32Desktop& desktop) {
    EXPECT_TRUE(PumpUntil(desktop, [this] { return Done(); }));
}

bool PumpUntil(Win32Desktop& desktop, const std::function<bool()>& state) {
    const UINT_PTR timer = SetTimer(nullptr, 0, tickMilliseconds, nullptr);
    const ULONGLONG since = GetTickCount64();
    bool reached = state();
    while (!reached && GetTickCount64() - since < patience) {
        desktop.PumpMessage();
        reached = state();
    }
    KillTimer(nullptr, timer);
    return reached;
}

// --- Keys and mouse -------------------------------------------------------------------------

void PressKey(WORD key) {
    sendKey(key, 0);
}

void ReleaseKey(WORD key) {
    sendKey(key, KEYEVENTF_KEYUP);
}

void TypeKey(WORD key) {
    PressKey(key);
    ReleaseKey(key);
}

void Click(HWND window, POINT point, MouseButton button) {
    ClientToScreen(window, &point);
    const bool right = button == MouseButton::Right;
    sendMouse(right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN, point);
    sendMouse(right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP, point);
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

// --- Pictures -------------------------------------------------------------------------------

void TakePicture(Win32Desktop& desktop, HWND window, const std::string& name) {
    const char* folder = std::getenv("QUARTINO_PICTURES");
    if (!folder || !*folder)
        return;
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
    RECT frame{};
    GetWindowRect(window, &frame);
    const std::string file = std::string(folder) + "/" + name;
    const std::string window_area = std::to_string(frame.right - frame.left) + "x" +
                                    std::to_string(frame.bottom - frame.top) + "+" +
                                    std::to_string(frame.left) + "+" + std::to_string(frame.top);
    // The screen's own picture taker runs outside of the Windows world; it is done when the window
    // manager and the painting are, that is when two pictures in a row are the same.
    const std::string take = "import -window root -crop " + window_area + " +repage ";
    const std::string command =
        "/bin/sh -c \"rm -f F.png; T F.1.ppm; while :; do sleep 0.2; T F.2.ppm; "
        "if cmp -s F.1.ppm F.2.ppm; then convert F.2.ppm -strip F.3.png; mv F.3.png F.png; rm "
        "F.1.ppm F.2.ppm; exit; fi; "
        "mv F.2.ppm F.1.ppm; done\"";
    std::string shell = command;
    for (const auto& [sign, meaning] :
         {std::pair<std::string, std::string>{"T ", take}, {"F.", file + "."}}) {
        for (std::size_t at = shell.find(sign); at != std::string::npos;
             at = shell.find(sign, at + meaning.size()))
            shell.replace(at, sign.size(), meaning);
    }
    const std::wstring unixFile = L"\\\\?\\unix" + std::wstring(file.begin(), file.end()) + L".png";
    DeleteFileW(unixFile.c_str());
    std::wstring line(shell.begin(), shell.end());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    ASSERT_TRUE(CreateProcessW(L"\\\\?\\unix/bin/sh", line.data(), nullptr, nullptr, FALSE, 0,
                               nullptr, nullptr, &startup, &process));
    EXPECT_TRUE(PumpUntil(desktop, [&] {
        return GetFileAttributesW(unixFile.c_str()) != INVALID_FILE_ATTRIBUTES;
    })) << file;
}

void FillTable(Grid& grid, int rooms, const Texts& text) {
    static constexpr const wchar_t* names[] = {L"Klassenzimmer", L"Lehrerzimmer", L"Flur", L"Aula",
                                               L"Fachraum Chemie"};
    static constexpr const wchar_t* uses[] = {L"Unterricht", L"Verwaltung", L"Erschließung",
                                              L"Versammlung", L"Unterricht Naturwissenschaften"};
    GridCells& cells = grid.Cells();
    grid.Redraw(false);
    const int rows = rooms > 99 ? rooms + 1 : 100;
    cells.Resize(rows, 11);
    cells.Clear();
    static constexpr std::int32_t headers[] = {20, 21, 22, 23, 24, 25, 26, 30};
    for (int column = 0; column < 8; ++column) {
        cells.Text(0, column, text(headers[column]));
        if (column < 7)
            cells.CellAlignment(0, column, Alignment::Centre);
    }
    cells.Text(0, 8, L"ID");
    for (int row = 1; row < rows; ++row) {
        for (int column = 0; column < 7; ++column) {
            cells.CellAlignment(row, column, Alignment::Centre);
            if (row <= rooms)
                cells.TextColour(row, column, row % 3 ? 0 : 255);
        }
        if (row > rooms)
            continue;
        const int kind = row % 5;
        cells.Text(row, 0, names[kind] + std::wstring(L" ") + std::to_wstring(row));
        cells.Text(row, 1, uses[kind]);
        cells.Text(row, 2, std::to_wstring(20 + row % 60) + L",5");
        cells.Text(row, 3, row < rooms / 2 ? L"EG" : L"1.OG");
        cells.Text(row, 4, L"a");
        cells.Text(row, 5, L" HNF 5");
        cells.Text(row, 6, L" N");
        cells.Text(row, 7, row % 3 ? L"polygonal" : L"dx = 5,000");
        cells.Text(row, 8, std::to_wstring(row));
    }
    grid.Row(1);
    grid.Col(0);
    grid.Redraw(true);
}

} // namespace kalvrooms::Gui
