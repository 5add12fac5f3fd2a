// The main window and its table, with real keys and a real mouse.

#include "desktop_support.h"

#include "practice/server/Com.h"
#include "win32/ComObject.h"
#include "win32/Dpi.h"
#include "win32/Win32Grid.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <thread>
#include <utility>

namespace kalvrooms::Gui {
namespace {

class MainWindow : public ProgramOnDesktop {
  protected:
    void SetUp() override {
        ProgramOnDesktop::SetUp();
        main_.AddCurrentRoomsToListOfFloors(120);
    }

    POINT CellPoint(int row, int column) {
        RECT item{};
        ListView_GetItemRect(list_, row - 1, &item, LVIR_BOUNDS);
        for (int before = 0; before < column; ++before)
            item.left += ListView_GetColumnWidth(list_, before);
        return {item.left + ListView_GetColumnWidth(list_, column) / 2,
                (item.top + item.bottom) / 2};
    }

    bool InView(int row) const {
        RECT client{};
        GetClientRect(list_, &client);
        RECT header{};
        GetClientRect(ListView_GetHeader(list_), &header);
        RECT item{};
        ListView_GetItemRect(list_, row - 1, &item, LVIR_BOUNDS);
        return item.top >= header.bottom && item.bottom <= client.bottom;
    }
};

TEST_F(MainWindow, TheTableFitsBesideTheFrame) {
    RECT client{};
    GetClientRect(form_->Window(), &client);
    RECT table{};
    GetWindowRect(list_, &table);
    MapWindowPoints(HWND_DESKTOP, form_->Window(), reinterpret_cast<POINT*>(&table), 2);
    EXPECT_EQ(table.left, 0);
    EXPECT_EQ(table.top, 0);
    EXPECT_LE(table.right, client.right);
    EXPECT_LE(table.bottom, client.bottom);
}

struct CellEvent {
    MouseButton button;
    int row, column;
    bool operator==(const CellEvent&) const = default;
};

TEST_F(MainWindow, AClickMakesTheCellUnderTheMouseCurrent) {
    std::vector<CellEvent> events;
    grid_->MouseUp = [&](MouseButton button, int row, int column) {
        events.push_back({button, row, column});
    };
    Click(list_, CellPoint(5, 2));
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return events.size() == 1; }));
    EXPECT_EQ(events.back(), (CellEvent{MouseButton::Left, 5, 2}));
    EXPECT_EQ(grid_->Row(), 5);
    EXPECT_EQ(grid_->Col(), 2);
    Click(list_, CellPoint(7, 0), MouseButton::Right);
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return events.size() == 2; }));
    EXPECT_EQ(events.back(), (CellEvent{MouseButton::Right, 7, 0}));
    EXPECT_EQ(grid_->Row(), 7);
    EXPECT_EQ(grid_->Col(), 0);
}

TEST_F(MainWindow, AClickOnTheHeaderReportsRowZero) {
    std::vector<CellEvent> events;
    grid_->MouseUp = [&](MouseButton button, int row, int column) {
        events.push_back({button, row, column});
    };
    int doubleClicks = 0;
    grid_->DoubleClick = [&] { ++doubleClicks; };
    const HWND header = ListView_GetHeader(list_);
    RECT item{};
    Header_GetItemRect(header, 3, &item);
    const POINT middle{(item.left + item.right) / 2, (item.top + item.bottom) / 2};
    Click(header, middle);
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return events.size() == 1; }));
    EXPECT_EQ(events.back(), (CellEvent{MouseButton::Left, 0, 3}));
    Click(header, middle, MouseButton::Right);
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return events.size() == 2; }));
    EXPECT_EQ(events.back(), (CellEvent{MouseButton::Right, 0, 3}));
    EXPECT_EQ(doubleClicks, 0);
}

TEST_F(MainWindow, ADoubleClickCountsInTheTableOnly) {
    int doubleClicks = 0;
    int releases = 0;
    grid_->DoubleClick = [&] { ++doubleClicks; };
    grid_->MouseUp = [&](MouseButton, int, int) { ++releases; };
    Click(list_, CellPoint(4, 1));
    Click(list_, CellPoint(4, 1));
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return doubleClicks == 1; }));
    EXPECT_EQ(releases, 1);
    EXPECT_EQ(grid_->Row(), 4);
    const HWND header = ListView_GetHeader(list_);
    Click(header, {20, 5});
    Click(header, {20, 5});
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return releases >= 2; }));
    EXPECT_EQ(doubleClicks, 1);
}

TEST_F(MainWindow, KeysMoveTheCurrentCell) {
    const auto after = [&](WORD key, int row, int column) {
        typeKey(key);
        EXPECT_TRUE(
            PumpUntil(desktop_, [&] { return grid_->Row() == row && grid_->Col() == column; }))
            << key << " leads to " << grid_->Row() << "/" << grid_->Col();
    };
    after(VK_DOWN, 2, 0);
    after(VK_RIGHT, 2, 1);
    for (int column = 2; column <= 6; ++column)
        after(VK_RIGHT, 2, column);
    after(VK_RIGHT, 2, 6); // the hidden ones stay hidden
    after(VK_LEFT, 2, 5);
    after(VK_UP, 1, 5);
    after(VK_UP, 1, 5);
    after(VK_END, 120, 5);
    EXPECT_TRUE(InView(120));
    after(VK_DOWN, 120, 5);
    after(VK_HOME, 1, 5);
    EXPECT_TRUE(InView(1));
    const int page = ListView_GetCountPerPage(list_) - 1;
    after(VK_NEXT, 1 + page, 5);
    after(VK_PRIOR, 1, 5);
}

TEST_F(MainWindow, TheContextKeyOpensAtTheCurrentCell) {
    std::vector<CellEvent> events;
    bool menuSeen = false;
    POINT menuAt{};
    MenuItem& edit = form_->Menu(L"mnuRecord");
    grid_->MouseUp = [&](MouseButton button, int row, int column) {
        events.push_back({button, row, column});
        form_->PopupMenu(edit);
    };
    grid_->Row(3);
    grid_->Col(1);
    ModalSteps user;
    user.When(
        "menu", [] { return FindWindowW(L"#32768", nullptr) != nullptr; },
        [&] {
            RECT menu{};
            GetWindowRect(FindWindowW(L"#32768", nullptr), &menu);
            menuAt = {menu.left, menu.top};
            menuSeen = true;
            typeKey(VK_ESCAPE);
        });
    typeKey(VK_APPS);
    user.Run(desktop_);
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return !FindWindowW(L"#32768", nullptr); }));
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events.back(), (CellEvent{MouseButton::Right, 3, 1}));
    EXPECT_TRUE(menuSeen);
    POINT cell = CellPoint(3, 1);
    ClientToScreen(list_, &cell);
    EXPECT_GT(menuAt.y, cell.y - 20);
    EXPECT_LT(menuAt.y, cell.y + 40);
    EXPECT_LT(menuAt.x, cell.x);
}

TEST_F(MainWindow, HiddenColumnsStayHidden) {
    const HWND header = ListView_GetHeader(list_);
    RECT last{};
    Header_GetItemRect(header, 6, &last);
    // Drag from the right of the last visible divider, where the hidden columns' dividers are.
    for (const int offset : {0, 1}) {
        POINT from{last.right + offset, (last.top + last.bottom) / 2};
        RECT client{};
        GetClientRect(list_, &client);
        ASSERT_LT(from.x, client.right);
        ClientToScreen(header, &from);
        SetCursorPos(from.x, from.y);
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
        SendInput(1, &input, sizeof input);
        SetCursorPos(from.x + 60, from.y);
        input.mi.dwFlags = MOUSEEVENTF_LEFTUP;
        SendInput(1, &input, sizeof input);
        ASSERT_TRUE(PumpUntil(desktop_, InputIsDone));
        for (int column = 7; column < 11; ++column)
            EXPECT_EQ(ListView_GetColumnWidth(list_, column), 0) << column;
    }
    ListView_SetColumnWidth(list_, 8, 100);
    EXPECT_EQ(ListView_GetColumnWidth(list_, 8), 0);
    pressKey(VK_CONTROL);
    typeKey(VK_ADD);
    releaseKey(VK_CONTROL);
    ASSERT_TRUE(PumpUntil(desktop_, InputIsDone));
    for (int column = 7; column < 11; ++column)
        EXPECT_EQ(grid_->ColWidth(column), 0.0F) << column;
}

TEST_F(MainWindow, AColumnWidthReadsBackAsItWasSet) {
    grid_->ColWidth(2, 1234.5F);
    EXPECT_FLOAT_EQ(grid_->ColWidth(2), 1234.5F);
    ListView_SetColumnWidth(list_, 2, 200); // as if dragged
    EXPECT_FLOAT_EQ(grid_->ColWidth(2), 200.0F * 1440 / static_cast<float>(form_->Dpi()));
    EXPECT_THROW(grid_->ColWidth(11), RuntimeError);
}

TEST_F(MainWindow, ScrollBarsAreThoseAskedFor) {
    const auto has = [&](LONG_PTR style) {
        return (GetWindowLongPtrW(list_, GWL_STYLE) & style) != 0;
    };
    grid_->Width(6000);
    grid_->Bars(ScrollBars::Both);
    EXPECT_TRUE(has(WS_VSCROLL));
    EXPECT_TRUE(has(WS_HSCROLL));
    grid_->Bars(ScrollBars::Vertical);
    EXPECT_TRUE(has(WS_VSCROLL));
    EXPECT_FALSE(has(WS_HSCROLL));
    grid_->Bars(ScrollBars::None);
    EXPECT_FALSE(has(WS_VSCROLL));
    EXPECT_FALSE(has(WS_HSCROLL));
    grid_->Bars(ScrollBars::Both);
    EXPECT_TRUE(has(WS_HSCROLL));
    EXPECT_TRUE(has(WS_VSCROLL));
    // The current cell comes into view sideways as well.
    grid_->Col(6);
    RECT client{};
    GetClientRect(list_, &client);
    EXPECT_LT(CellPoint(1, 6).x, client.right);
    grid_->Col(0);
    EXPECT_GT(CellPoint(1, 0).x, 0);
}

TEST_F(MainWindow, TheListSuppliesItsTextsToOthers) {
    wchar_t text[100] = L"";
    ListView_GetItemText(list_, 4, 1, text, 100);
    EXPECT_EQ(std::wstring(text), grid_->Cells().Text(5, 1));
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT;
    column.pszText = text;
    column.cchTextMax = 100;
    ListView_GetColumn(list_, 2, &column);
    EXPECT_EQ(std::wstring(text), main_.GetText(22));
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    Header_GetItem(ListView_GetHeader(list_), 0, &item);
    EXPECT_EQ(item.fmt & HDF_JUSTIFYMASK, HDF_CENTER);
    Header_GetItem(ListView_GetHeader(list_), 7, &item);
    EXPECT_EQ(item.fmt & HDF_JUSTIFYMASK, HDF_LEFT);
}

// What a screen reader calls a table is the text of the label before it, seen or unseen.
TEST_F(MainWindow, TheTableIsCalledAfterTheWindow) {
    const HWND label = GetWindow(list_, GW_HWNDPREV);
    wchar_t kind[16] = L"";
    GetClassNameW(label, kind, 16);
    EXPECT_EQ(std::wstring(kind), L"Static");
    EXPECT_FALSE(IsWindowVisible(label));
    for (const wchar_t* title : {L"Quartino - Schule.txt", L"Quartino"}) {
        form_->Text(title);
        wchar_t name[64] = L"";
        GetWindowTextW(label, name, 64);
        EXPECT_EQ(std::wstring(name), title);
    }
}

TEST_F(MainWindow, CellsAreDrawnInTheirColour) {
    const auto reddest = [&](int row) {
        UpdateWindow(list_);
        RECT item{};
        ListView_GetItemRect(list_, row - 1, &item, LVIR_BOUNDS);
        const WindowContext context(list_);
        int most = 0;
        for (LONG y = item.top; y < item.bottom; ++y) {
            for (LONG x = 0; x < ListView_GetColumnWidth(list_, 0); ++x) {
                const COLORREF pixel = GetPixel(context, x, y);
                most = std::max(most, GetRValue(pixel) - GetGValue(pixel));
            }
        }
        return most;
    };
    for (int column = 0; column < 7; ++column) {
        grid_->Cells().Text(3, column, L"Raum");
        grid_->Cells().Text(4, column, L"Raum");
        grid_->Cells().TextColour(4, column, 0);
    }
    dynamic_cast<Win32Grid&>(*grid_).Sync();
    EXPECT_GT(reddest(3), 150);
    EXPECT_LT(reddest(4), 50);
    // Also in the current row, with the focus and without.
    grid_->Row(3);
    EXPECT_GT(reddest(3), 150);
    grid_->Row(4);
    EXPECT_LT(reddest(4), 50);
    grid_->Row(3);
    const HWND elsewhere = CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 0, 0, form_->Window(),
                                           nullptr, GetModuleHandleW(nullptr), nullptr);
    ::SetFocus(elsewhere);
    EXPECT_EQ(GetFocus(), elsewhere);
    EXPECT_GT(reddest(3), 150);
    ::SetFocus(list_);
    DestroyWindow(elsewhere);
    // A changed colour shows after the event that changed it.
    grid_->MouseUp = [&](MouseButton, int, int) {
        for (int column = 0; column < 7; ++column)
            grid_->Cells().TextColour(4, column, 255);
    };
    Click(list_, CellPoint(8, 1));
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return reddest(4) > 150; }));
}

TEST_F(MainWindow, ARowThatIsCurrentNoMoreLeavesNothingBehind) {
    const auto backgroundOf = [&](int row) {
        UpdateWindow(list_);
        RECT item{};
        ListView_GetItemRect(list_, row - 1, &item, LVIR_BOUNDS);
        std::set<COLORREF> colours;
        const WindowContext context(list_);
        for (LONG x = 0; x < item.right - 1; ++x)
            colours.insert(GetPixel(context, static_cast<int>(x), static_cast<int>(item.top)));
        colours.erase(GetSysColor(COLOR_3DLIGHT)); // between the columns
        return colours;
    };
    const std::set<COLORREF> plain{GetSysColor(COLOR_WINDOW)};
    grid_->Col(0);
    for (const int next : {5, 0, 5, 9}) {
        grid_->Row(next);
        EXPECT_EQ(backgroundOf(1), plain) << next;
        if (next > 0) {
            EXPECT_EQ(backgroundOf(next).count(GetSysColor(COLOR_WINDOW)), 0U) << next;
        }
        if (next != 5) {
            EXPECT_EQ(backgroundOf(5), plain) << next;
        }
    }
}

TEST_F(MainWindow, NothingShowsBeforeRedrawIsOn) {
    grid_->Redraw(false);
    grid_->Cells().Resize(500, 11);
    grid_->Row(499);
    EXPECT_EQ(ListView_GetItemCount(list_), 120);
    grid_->Redraw(true);
    EXPECT_EQ(ListView_GetItemCount(list_), 499);
    EXPECT_TRUE(InView(499));
    grid_->Redraw(false);
    grid_->Cells().Resize(100, 11);
    grid_->Redraw(true);
    EXPECT_EQ(ListView_GetItemCount(list_), 99);
    EXPECT_EQ(grid_->Row(), 99);
}

TEST_F(MainWindow, ClosingAsksFirstAndEndsTheRun) {
    bool may = false;
    int asked = 0;
    int unloaded = 0;
    form_->MayUnload = [&] {
        ++asked;
        return may;
    };
    form_->OnUnload = [&] { ++unloaded; };
    SendMessageW(form_->Window(), WM_CLOSE, 0, 0);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(unloaded, 0);
    EXPECT_TRUE(form_->Loaded());
    may = true;
    ModalSteps user;
    user.When(
        "shown", [] { return true; },
        [&] { SendMessageW(form_->Window(), WM_SYSCOMMAND, SC_CLOSE, 0); });
    desktop_.Run();
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(unloaded, 1);
    EXPECT_FALSE(form_->Loaded());
    form_->Unload();
    EXPECT_EQ(unloaded, 1);
}

TEST_F(MainWindow, TheEndOfTheSessionIsAskedForAndComesWithoutUnloading) {
    std::vector<std::wstring> events;
    bool may = false;
    form_->MayEndSession = [&] {
        events.emplace_back(L"asked");
        return may;
    };
    form_->OnSessionEnd = [&] { events.emplace_back(L"ended"); };
    form_->OnUnload = [&] { events.emplace_back(L"unloaded"); };
    EXPECT_FALSE(SendMessageW(form_->Window(), WM_QUERYENDSESSION, 0, 0));
    may = true;
    EXPECT_TRUE(SendMessageW(form_->Window(), WM_QUERYENDSESSION, 0, 0));
    // Called off, it goes on and is asked again.
    SendMessageW(form_->Window(), WM_ENDSESSION, FALSE, 0);
    EXPECT_TRUE(form_->Loaded());
    EXPECT_TRUE(SendMessageW(form_->Window(), WM_QUERYENDSESSION, 0, 0));
    SendMessageW(form_->Window(), WM_ENDSESSION, TRUE, 0);
    EXPECT_FALSE(form_->Loaded());
    EXPECT_EQ(events, (std::vector<std::wstring>{L"asked", L"asked", L"asked", L"ended"}));
}

TEST_F(MainWindow, AFormThatMayNotBeClosedStaysWhenTheSessionEnds) {
    int ended = 0;
    form_->MayUnload = [] { return false; };
    form_->OnSessionEnd = [&] { ++ended; };
    SendMessageW(form_->Window(), WM_ENDSESSION, TRUE, 0);
    SendMessageW(form_->Window(), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(ended, 1);
    EXPECT_TRUE(form_->Loaded());
}

TEST_F(MainWindow, TheSystemIsToldWhyTheSessionHadBetterWait) {
    std::vector<std::wstring> reasons;
    desktop_.System().HoldSessionCall = [&](HWND window, const wchar_t* reason) {
        EXPECT_EQ(window, form_->Window());
        reasons.emplace_back(reason ? reason : L"none");
    };
    desktop_.System().MessageBoxCall = [&](HWND, const wchar_t*, const wchar_t*, UINT) {
        EXPECT_EQ(reasons.size(), 1U);
        return IDNO;
    };
    // Opened and cancelled, the room dialog leaves the list changed.
    ModalSteps user;
    user.When(
        "dialog", [this] { return DialogIsActive(); }, [this] { CloseDialog(); });
    typeKey(VK_INSERT);
    user.Run(desktop_);
    ASSERT_TRUE(PumpUntil(desktop_, [this] { return Focused() == list_; }));
    EXPECT_TRUE(SendMessageW(form_->Window(), WM_QUERYENDSESSION, 0, 0));
    EXPECT_EQ(reasons,
              (std::vector<std::wstring>{L"Die Raumliste ist noch nicht gespeichert.", L"none"}));
}

// An object as the system keeps it from us while another program waits for the answer to a message.
class RefusedObject final : public practice::Counted<IDispatch> {
  public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* id) override {
        *id = 1;
        return answer();
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        ++calls;
        return answer();
    }
    int calls = 0;
    int refusals = 0;

  private:
    HRESULT answer() {
        const bool waiting =
            (InSendMessageEx(nullptr) & (ISMEX_REPLIED | ISMEX_SEND)) == ISMEX_SEND;
        refusals += waiting;
        return waiting ? RPC_E_CANTCALLOUT_ININPUTSYNCCALL : S_OK;
    }
};

TEST_F(MainWindow, CallsThatAreRefusedUnderAMessageAreMadeOnceItIsAnswered) {
    const auto workbook = practice::Make<RefusedObject>();
    bool saved = false;
    form_->MayEndSession = [&] {
        ComObject(std::make_shared<ComSession>(), L"workbook", workbook.Get()).Call(L"Save");
        saved = true;
        return true;
    };
    // From another thread, as the system sends it: not now, but saved.
    LRESULT answer = TRUE;
    std::thread system(
        [&, window = form_->Window()] { answer = SendMessageW(window, WM_QUERYENDSESSION, 0, 0); });
    EXPECT_TRUE(PumpUntil(desktop_, [&] { return saved; }));
    system.join();
    EXPECT_FALSE(answer);
    EXPECT_EQ(workbook->refusals, 1);
    EXPECT_EQ(workbook->calls, 1);
    // Where nothing is refused, the answer is the form's own.
    EXPECT_TRUE(SendMessageW(form_->Window(), WM_QUERYENDSESSION, 0, 0));
    EXPECT_EQ(workbook->refusals, 1);
}

TEST_F(MainWindow, AKeyRunsItsCommandOnceAndIsShownInTheMenu) {
    const HMENU edit = GetSubMenu(GetMenu(form_->Window()), 1);
    wchar_t caption[80] = L"";
    GetMenuStringW(edit, 0, caption, 80, MF_BYPOSITION);
    EXPECT_STREQ(caption, L" Raum &hinzufügen ...\tEinfg");
    grid_->Row(3);
    const auto roomsOf = [this] { return std::as_const(*grid_).Cells().LastFilledRow(); };
    // Held down, it takes one room.
    pressKey(VK_DELETE);
    pressKey(VK_DELETE);
    pressKey(VK_DELETE);
    releaseKey(VK_DELETE);
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return roomsOf() == 119 && InputIsDone(); }));
    EXPECT_EQ(grid_->Row(), 3);
    driver::typeKey('Z', {VK_CONTROL});
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return roomsOf() == 120; }));
    // With Alt it is a character of the keyboard.
    driver::typeKey('Y', {VK_CONTROL, VK_MENU});
    ASSERT_TRUE(PumpUntil(desktop_, InputIsDone));
    EXPECT_EQ(roomsOf(), 120);
    driver::typeKey('Y', {VK_CONTROL});
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return roomsOf() == 119; }));
    driver::typeKey(VK_DOWN, {VK_CONTROL});
    ASSERT_TRUE(
        PumpUntil(desktop_, [this] { return std::as_const(*grid_).Cells().Text(1, 0) == L"120"; }));
}

TEST_F(MainWindow, TheTableStaysWhereItIsWhenItIsFilledAnew) {
    ListView_EnsureVisible(list_, 70, FALSE);
    const int top = grid_->TopRow();
    EXPECT_EQ(top, ListView_GetTopIndex(list_) + 1);
    ASSERT_GT(top, 1);
    grid_->Row(top + 2);
    grid_->Col(1);
    typeKey(VK_DELETE);
    ASSERT_TRUE(PumpUntil(desktop_,
                          [this] { return std::as_const(*grid_).Cells().LastFilledRow() == 119; }));
    EXPECT_EQ(grid_->TopRow(), top);
    EXPECT_EQ(grid_->Row(), top + 2);
    EXPECT_EQ(grid_->Col(), 1);
    EXPECT_EQ(ListView_GetNextItem(list_, -1, LVNI_SELECTED), top + 1);
}

TEST_F(MainWindow, EndGoesToTheLastRoom) {
    main_.UpdateTable(false);
    for (int room = 0; room < 117; ++room)
        SendMessageW(form_->Window(), WM_COMMAND, driver::MenuDeleteRoom, 0);
    ASSERT_EQ(std::as_const(*grid_).Cells().Rows(), 100);
    typeKey(VK_END);
    EXPECT_TRUE(PumpUntil(desktop_, [this] { return grid_->Row() == 3; })) << grid_->Row();
}

TEST_F(MainWindow, AHeaderThatIsCutShowsItsTextAtTheMouse) {
    const HWND header = ListView_GetHeader(list_);
    const auto shown = [&]() -> std::wstring {
        const HWND tips = FindWindowExW(nullptr, nullptr, TOOLTIPS_CLASSW, nullptr);
        wchar_t text[80] = L"";
        TTTOOLINFOW tool{};
        tool.cbSize = sizeof tool;
        tool.hwnd = header;
        tool.lpszText = text;
        if (!tips || !IsWindowVisible(tips))
            return {};
        SendMessageW(tips, TTM_GETTEXTW, 80, reinterpret_cast<LPARAM>(&tool));
        return text;
    };
    const auto hover = [&](int column) {
        RECT item{};
        Header_GetItemRect(header, column, &item);
        POINT middle{(item.left + item.right) / 2, (item.top + item.bottom) / 2};
        ClientToScreen(header, &middle);
        SetCursorPos(middle.x - 1, middle.y);
        SetCursorPos(middle.x, middle.y);
    };
    form_->Width(9000);
    driver::parkMouse();
    ASSERT_TRUE(PumpUntil(desktop_, InputIsDone));
    hover(4);
    EXPECT_TRUE(PumpUntil(desktop_, [&] { return shown() == L"Umschließungsart"; }));
    // One that has room shows nothing.
    hover(1);
    EXPECT_TRUE(PumpUntil(desktop_, [&] { return shown().empty() && InputIsDone(); }));
    driver::parkMouse();
}

// Changes a colour of the system while it lives.
class SystemColour {
  public:
    SystemColour(int element, COLORREF colour) : element_(element), before_(GetSysColor(element)) {
        SetSysColors(1, &element_, &colour);
    }
    ~SystemColour() { SetSysColors(1, &element_, &before_); }
    SystemColour(const SystemColour&) = delete;
    SystemColour& operator=(const SystemColour&) = delete;

  private:
    int element_;
    COLORREF before_;
};

TEST_F(MainWindow, NewColoursOfTheSystemAreFollowed) {
    const auto colourBelowTheRows = [this] {
        UpdateWindow(list_);
        RECT client{};
        GetClientRect(list_, &client);
        const WindowContext context(list_);
        return GetPixel(context, client.right / 2, client.bottom - 3);
    };
    std::as_const(*grid_).Cells();
    grid_->Cells().Resize(3, 11);
    grid_->Redraw(false);
    grid_->Redraw(true);
    {
        const SystemColour dark(COLOR_WINDOW, RGB(16, 24, 32));
        SendMessageW(form_->Window(), WM_SYSCOLORCHANGE, 0, 0);
        EXPECT_EQ(ListView_GetBkColor(list_), RGB(16, 24, 32));
        EXPECT_TRUE(PumpUntil(desktop_, [&] { return colourBelowTheRows() == RGB(16, 24, 32); }));
    }
    SendMessageW(form_->Window(), WM_SYSCOLORCHANGE, 0, 0);
    EXPECT_TRUE(
        PumpUntil(desktop_, [&] { return colourBelowTheRows() == GetSysColor(COLOR_WINDOW); }));
    // A theme, or high contrast: everything is painted anew.
    for (const UINT change : {WM_THEMECHANGED, WM_SETTINGCHANGE}) {
        ValidateRect(list_, nullptr);
        SendMessageW(form_->Window(), change, SPI_SETHIGHCONTRAST, 0);
        RECT dirty{};
        EXPECT_TRUE(GetUpdateRect(list_, &dirty, FALSE)) << change;
    }
}

TEST_F(MainWindow, ThePointerIsTheHourglassEverywhere) {
    Click(list_, CellPoint(2, 1));
    ASSERT_TRUE(PumpUntil(desktop_, [&] { return grid_->Row() == 2; }));
    const HCURSOR hourglass = LoadCursorW(nullptr, IDC_WAIT);
    desktop_.MousePointer(HourglassPointer);
    EXPECT_EQ(desktop_.MousePointer(), HourglassPointer);
    EXPECT_EQ(GetCursor(), hourglass);
    for (const HWND window : {form_->Window(), list_, ListView_GetHeader(list_)}) {
        SetCursor(LoadCursorW(nullptr, IDC_ARROW));
        SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window),
                     MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        EXPECT_EQ(GetCursor(), hourglass);
    }
    desktop_.MousePointer(DefaultPointer);
    EXPECT_NE(GetCursor(), hourglass);
}

// Showing a pressed cell whole scrolls another one under the mouse.
TEST_F(MainWindow, ACellThatIsCutOffIsTheOneThatIsMeant) {
    std::vector<CellEvent> events;
    int doubleClicks = 0;
    grid_->MouseUp = [&](MouseButton button, int row, int column) {
        events.push_back({button, row, column});
    };
    grid_->DoubleClick = [&] { ++doubleClicks; };
    RECT line{};
    const auto cutLine = [&] {
        // The last line shows a strip of its top.
        RECT client{};
        GetClientRect(list_, &client);
        for (int row = 1; row < 120; ++row) {
            ListView_GetItemRect(list_, row - 1, &line, LVIR_BOUNDS);
            if (line.bottom > client.bottom)
                return std::pair{row, POINT{20, (line.top + client.bottom) / 2}};
        }
        return std::pair{0, POINT{}};
    };
    for (const MouseButton button : {MouseButton::Left, MouseButton::Right}) {
        ListView_EnsureVisible(list_, 0, FALSE);
        ListView_GetItemRect(list_, 9, &line, LVIR_BOUNDS);
        grid_->Height(ToTwips(static_cast<int>(line.top + line.bottom) / 2, form_->Dpi()));
        events.clear();
        const auto [row, point] = cutLine();
        ASSERT_GT(row, 0);
        Click(list_, point, button);
        ASSERT_TRUE(PumpUntil(desktop_, [&] { return events.size() == 1; }));
        EXPECT_EQ(events.back(), (CellEvent{button, row, 0}));
        EXPECT_EQ(grid_->Row(), row);
        EXPECT_TRUE(InView(row));
        EXPECT_NE(ListView_GetTopIndex(list_), 0);
    }
    EXPECT_EQ(doubleClicks, 0);
}

} // namespace
} // namespace kalvrooms::Gui
