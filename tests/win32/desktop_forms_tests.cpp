// The dialogs as they stand on the screen: controls, tab order, room for the texts.

#include "desktop_support.h"

#include "win32/Dpi.h"
#include "win32/SystemFontForTest.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace kalvrooms::Gui {
namespace {

std::string narrow(std::wstring_view text) {
    return {text.begin(), text.end()};
}

RECT onScreen(HWND window) {
    RECT rectangle{};
    GetWindowRect(window, &rectangle);
    return rectangle;
}

class Forms : public ProgramOnDesktop {
  protected:
    void LookAtEach(const std::function<void(Win32Form&)>& look) {
        // Texts that are not in the lists, as the user's own lists have them.
        main_.GetCurrentRoom()->StoryCode(L"EG");
        main_.GetCurrentRoom()->Name(L"Klassenzimmer 1");
        main_.GetCurrentRoom()->Occupancy(L" HNF 3");
        LookAt<frmRoom>(look);
        LookAt<frmGeometry>(look);
        LookAt<frmPlace>(look);
        LookAt<frmReport>(look);
    }

    // As if the window came to a monitor of another DPI.
    void ChangeDpi(Win32Form& form, UINT dpi) {
        RECT frame = onScreen(form.Window());
        const auto scaled = [&](LONG length) {
            return MulDiv(length, static_cast<int>(dpi), static_cast<int>(form.Dpi()));
        };
        RECT suggested{frame.left, frame.top, frame.left + scaled(frame.right - frame.left),
                       frame.top + scaled(frame.bottom - frame.top)};
        SendMessageW(form.Window(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                     reinterpret_cast<LPARAM>(&suggested));
        ASSERT_EQ(form.Dpi(), dpi);
    }
};

// The pixels that a control's text needs and those that it has.
struct Room {
    SIZE needed;
    SIZE there;
};

Room roomOf(const ControlEntry& entry, const Win32Control& control) {
    const HWND window = control.Window();
    RECT client{};
    GetClientRect(window, &client);
    const WindowContext context(window);
    const Selected font(context, reinterpret_cast<HGDIOBJ>(SendMessageW(window, WM_GETFONT, 0, 0)));
    const std::wstring text = control.Text();
    RECT extent{};
    DrawTextW(context, text.c_str(), -1, &extent, DT_CALCRECT | DT_SINGLELINE);
    Room room{{extent.right, extent.bottom}, {client.right, client.bottom}};
    const UINT dpi = control.Owner().Dpi();
    switch (entry.kind) {
    case ControlKind::Option:
    case ControlKind::Check:
    case ControlKind::Frame:
        // Circle or box and the gap behind it.
        room.needed.cx += Scaled(18, dpi);
        break;
    case ControlKind::Button:
        room.needed.cx += Scaled(8, dpi);
        room.needed.cy += Scaled(4, dpi);
        break;
    case ControlKind::DropDown:
        room.needed.cx += GetSystemMetrics(SM_CXVSCROLL) + Scaled(8, dpi);
        break;
    default:
        break;
    }
    return room;
}

void expectRoomForTexts(const Win32Form& form) {
    for (const ControlEntry& entry : form.Entry().controls) {
        const Win32Control& control = *form.ControlById(entry.id);
        // A button that shows a colour has a text for assistive programs only.
        const bool shown =
            (GetWindowLongPtrW(control.Window(), GWL_STYLE) & BS_TYPEMASK) != BS_OWNERDRAW ||
            entry.kind != ControlKind::Button;
        if (entry.kind == ControlKind::Tabs || entry.kind == ControlKind::Grid || !shown ||
            control.Text().empty())
            continue;
        const Room room = roomOf(entry, control);
        EXPECT_LE(room.needed.cx, room.there.cx)
            << narrow(form.Entry().name) << "." << narrow(entry.name) << " at " << form.Dpi();
        EXPECT_LE(room.needed.cy, room.there.cy)
            << narrow(form.Entry().name) << "." << narrow(entry.name) << " at " << form.Dpi();
    }
}

bool onOtherPages(const Win32Form& form, const ControlEntry& one, const ControlEntry& other) {
    const HWND first = GetParent(form.ControlById(one.id)->Window());
    const HWND second = GetParent(form.ControlById(other.id)->Window());
    return first != second && first != form.Window() && second != form.Window();
}

void expectNothingOverlaps(const Win32Form& form) {
    std::vector<ControlEntry> entries;
    for (const ControlEntry& entry : form.Entry().controls)
        if (form.ControlById(entry.id)->Visible())
            entries.push_back(entry);
    RECT client{};
    GetClientRect(form.Window(), &client);
    MapWindowPoints(form.Window(), HWND_DESKTOP, reinterpret_cast<POINT*>(&client), 2);
    for (const ControlEntry& one : entries) {
        const RECT first = onScreen(form.ControlById(one.id)->Window());
        RECT inside{};
        IntersectRect(&inside, &first, &client);
        EXPECT_TRUE(EqualRect(&inside, &first)) << narrow(one.name) << " is cut by its form";
        if (one.kind == ControlKind::Frame || one.kind == ControlKind::Tabs)
            continue; // stand around others
        for (const ControlEntry& other : entries) {
            if (one.id >= other.id || other.kind == ControlKind::Frame ||
                other.kind == ControlKind::Tabs || onOtherPages(form, one, other))
                continue;
            const RECT second = onScreen(form.ControlById(other.id)->Window());
            RECT common{};
            EXPECT_FALSE(IntersectRect(&common, &first, &second))
                << narrow(form.Entry().name) << ": " << narrow(one.name) << " and "
                << narrow(other.name) << " at " << form.Dpi();
        }
    }
}

TEST_F(Forms, HaveRoomForTheirTextsAtEveryScale) {
    LookAtEach([&](Win32Form& form) {
        const auto look = [&] {
            expectRoomForTexts(form);
            expectNothingOverlaps(form);
        };
        look();
        // Of the options both pages.
        if (form.Entry().name == L"frmPlace")
            form.Named<TabStrip>(L"SSTab1").Tab(1);
        for (const UINT dpi : {120U, 192U, 144U}) {
            ChangeDpi(form, dpi);
            look();
        }
    });
}

TEST_F(Forms, HaveRoomForTheirTextsInALargeFont) {
    LONG usual = 0;
    const auto width = [](Win32Form& form) {
        const RECT frame = onScreen(form.Window());
        return frame.right - frame.left;
    };
    LookAt<frmRoom>([&](Win32Form& form) { usual = width(form); });
    const SystemFontForTest large(15);
    ASSERT_EQ(MessageFontPoints(), 15);
    LookAtEach([&](Win32Form& form) {
        expectRoomForTexts(form);
        expectNothingOverlaps(form);
        if (form.Entry().name == L"frmRoom") {
            EXPECT_GT(width(form), usual * 5 / 4);
        }
    });
}

TEST_F(Forms, ComingBackToADpiRestoresTheLayout) {
    LookAt<frmRoom>([&](Win32Form& form) {
        const auto places = [&] {
            std::vector<RECT> all{onScreen(form.Window())};
            for (const ControlEntry& entry : form.Entry().controls)
                all.push_back(onScreen(form.ControlById(entry.id)->Window()));
            return all;
        };
        const auto same = [](const RECT& a, const RECT& b) { return EqualRect(&a, &b) != FALSE; };
        const std::vector<RECT> before = places();
        ChangeDpi(form, 192);
        const std::vector<RECT> larger = places();
        EXPECT_EQ(larger[5].right - larger[5].left, 2 * (before[5].right - before[5].left));
        ChangeDpi(form, 96);
        const std::vector<RECT> after = places();
        EXPECT_TRUE(std::equal(before.begin(), before.end(), after.begin(), after.end(), same));
    });
}

// The order in which Tab goes through the controls, starting at the first.
std::vector<std::wstring> tabOrder(Win32Form& form) {
    std::vector<std::wstring> names;
    HWND first = GetNextDlgTabItem(form.Window(), nullptr, FALSE);
    HWND window = first;
    do {
        for (const ControlEntry& entry : form.Entry().controls)
            if (form.ControlById(entry.id)->Window() == window)
                names.emplace_back(entry.name);
        window = GetNextDlgTabItem(form.Window(), window, FALSE);
    } while (window && window != first && names.size() < 100);
    return names;
}

TEST_F(Forms, TabGoesThroughTheControlsInReadingOrder) {
    using testing::ElementsAre;
    LookAt<frmRoom>([](Win32Form& form) {
        EXPECT_THAT(tabOrder(form),
                    ElementsAre(L"txtStoryCode", L"txtName", L"txtFunction", L"txtArea",
                                L"cmdGeometry", L"cboEnclosureType", L"cboOccupancy",
                                L"cboAreaType", L"txtQuantity", L"cmdOk", L"cmdCancel"));
    });
    LookAt<frmGeometry>([](Win32Form& form) {
        EXPECT_THAT(tabOrder(form), ElementsAre(L"txtDx", L"txtDy", L"optRatio", L"txtRatio",
                                                L"cmdExcelFile", L"cmdOk", L"cmdCancel"));
    });
    LookAt<frmReport>([](Win32Form& form) {
        EXPECT_THAT(tabOrder(form), ElementsAre(L"chkNoReport", L"cmdOk"));
    });
    LookAt<frmPlace>([](Win32Form& form) {
        EXPECT_THAT(tabOrder(form), ElementsAre(L"SSTab1", L"optBlock", L"txtDx", L"txtDy",
                                                L"cmdOk", L"cmdCancel"));
        form.Named<TabStrip>(L"SSTab1").Tab(1);
        EXPECT_THAT(tabOrder(form),
                    ElementsAre(L"SSTab1", L"cmdWithCoordinates", L"cmdWithoutCoordinates",
                                L"chkUpdate", L"cmdOk", L"cmdCancel"));
    });
}

TEST_F(Forms, ALabelStandsDirectlyBeforeItsField) {
    const std::pair<const wchar_t*, const wchar_t*> pairs[] = {
        {L"lblGeschoss", L"txtStoryCode"}, {L"lblBez", L"txtName"},
        {L"lblFkt", L"txtFunction"},       {L"lblFlaeche", L"txtArea"},
        {L"lblGFlaeche", L"cmdGeometry"},  {L"lblUm", L"cboEnclosureType"},
        {L"lblNutz", L"cboOccupancy"},     {L"lblFlArt", L"cboAreaType"},
        {L"lblAnz", L"txtQuantity"}};
    LookAt<frmRoom>([&](Win32Form& form) {
        for (const auto& [label, field] : pairs)
            EXPECT_EQ(GetWindow(WindowOf(form, label), GW_HWNDNEXT), WindowOf(form, field))
                << narrow(label);
    });
}

TEST_F(Forms, DropDownsStandInTheMiddleOfTheirRows) {
    for (const int points : {9, 12, 15, 18}) {
        SCOPED_TRACE(points);
        const SystemFontForTest large(points);
        LookAt<frmRoom>([](Win32Form& form) {
            const auto middle = [&](const wchar_t* name) {
                const RECT place = onScreen(WindowOf(form, name));
                return static_cast<double>(place.top + place.bottom) / 2;
            };
            const double pitch = (middle(L"txtQuantity") - middle(L"txtStoryCode")) / 8;
            double row = middle(L"txtStoryCode") + 5 * pitch;
            for (const wchar_t* name : {L"cboEnclosureType", L"cboOccupancy", L"cboAreaType"}) {
                EXPECT_NEAR(middle(name), row, 1.5) << narrow(name);
                row += pitch;
            }
        });
    }
}

TEST_F(Forms, ReportRowsStandAtTheirPitchAndCloseUp) {
    Twips top = 0;
    Twips button = 0;
    Twips height = 0;
    LookAt<frmReport>([&](Win32Form& form) {
        top = form.Named<Label>(L"lblNum1").Top();
        button = form.Named<Button>(L"cmdOk").Top();
        height = form.Height();
        for (const wchar_t* column : {L"lblNum", L"lblText"})
            for (int row = 1; row <= 3; ++row)
                EXPECT_FLOAT_EQ(form.Named<Label>(column + std::to_wstring(row)).Top(),
                                top + 360.0F * static_cast<float>(row - 1));
    });
    counts_ = {0, 0, 1};
    LookAt<frmReport>([&](Win32Form& form) {
        EXPECT_FLOAT_EQ(form.Named<Label>(L"lblNum3").Top(), top);
        // In pixels: what was not placed in twips is read from the window.
        const Twips pixel = ToTwips(1, form.Dpi());
        EXPECT_NEAR(form.Named<Button>(L"cmdOk").Top(), button - 720, pixel);
        EXPECT_NEAR(form.Height(), height - 720, pixel);
        expectNothingOverlaps(form);
    });
}

TEST_F(Forms, ALengthReadsBackAsItWasSet) {
    LookAt<frmReport>([](Win32Form& form) {
        Control& label = form.Named<Label>(L"lblOption");
        for (const float value : {1000.0F, 1001.5F, 333.25F}) {
            label.Width(value);
            EXPECT_FLOAT_EQ(label.Width(), value);
        }
        form.Left(1234.5F);
        EXPECT_FLOAT_EQ(form.Left(), 1234.5F);
        // Moved by somebody else, it tells the truth.
        SetWindowPos(form.Window(), nullptr, 100, 100, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        EXPECT_FLOAT_EQ(form.Left(), 100.0F * 1440 / static_cast<float>(GetDpiForSystem()));
    });
}

TEST_F(Forms, AColourButtonShowsItsColourAndIsNamedAfterItsLabel) {
    LookAt<frmPlace>([this](Win32Form& form) {
        form.Named<TabStrip>(L"SSTab1").Tab(1);
        for (const auto& [name, text] :
             {std::pair{L"cmdWithCoordinates", 54}, std::pair{L"cmdWithoutCoordinates", 55}})
            EXPECT_EQ(Named(form, name).Win32Control::Text(), main_.GetText(text));
        auto& button = form.Named<Button>(L"cmdWithoutCoordinates");
        EXPECT_EQ(button.BackColour(), 255);
        button.BackColour(0x00C000);
        EXPECT_EQ(button.BackColour(), 0x00C000);
        int clicks = 0;
        button.Click = [&] { ++clicks; };
        const HWND window = WindowOf(form, L"cmdWithoutCoordinates");
        EXPECT_TRUE(PumpUntil(desktop_, [window] {
            UpdateWindow(window);
            RECT client{};
            GetClientRect(window, &client);
            const WindowContext context(window);
            return GetPixel(context, client.right / 2, client.bottom / 2) == 0x00C000;
        }));
        // A quick second click counts as well.
        ClickMiddle(window);
        ClickMiddle(window);
        EXPECT_TRUE(PumpUntil(desktop_, [&] { return clicks == 2; }));
    });
}

// Windows ends a text there; what stands behind it must not be lost with the next OK.
TEST_F(Forms, ANulDoesNotCutAText) {
    LookAt<frmRoom>([](Win32Form& form) {
        const std::wstring text = std::wstring(L"vorne") + L'\0' + L"hinten";
        auto& field = form.Named<TextField>(L"txtName");
        field.Text(text);
        EXPECT_EQ(field.Text(), L"vorne hinten");
        auto& list = form.Named<DropDown>(L"cboAreaType");
        list.Text(text);
        EXPECT_EQ(list.Text(), text);
        EXPECT_EQ(Named(form, L"cboAreaType").Win32Control::Text(), L"vorne hinten");
    });
}

TEST_F(Forms, AnUnknownNameOrKindIsAnError) {
    LookAt<frmRoom>([](Win32Form& form) {
        EXPECT_THROW(form.Named<Label>(L"lblNobody"), std::logic_error);
        EXPECT_THROW(form.Named<Label>(L"txtName"), std::logic_error);
    });
    EXPECT_THROW(desktop_.CreateForm(L"frmNobody"), std::logic_error);
}

TEST_F(Forms, ADropDownShowsTextsThatAreNotItsItems) {
    LookAt<frmRoom>([](Win32Form& form) {
        auto& list = form.Named<DropDown>(L"cboAreaType");
        const auto entries = [&] {
            return SendMessageW(WindowOf(form, L"cboAreaType"), CB_GETCOUNT, 0, 0);
        };
        ASSERT_EQ(list.ItemCount(), 4);
        EXPECT_EQ(list.Item(1), L" N");
        list.Text(L" N");
        EXPECT_EQ(list.Text(), L" N");
        EXPECT_EQ(entries(), 4);
        for (const wchar_t* foreign : {L"N", L"  Lager ", L" n", L"Fläche & mehr"}) {
            list.Text(foreign);
            EXPECT_EQ(list.Text(), foreign);
            EXPECT_EQ(list.ItemCount(), 4);
            // What assistive programs read is what is shown.
            EXPECT_EQ(Named(form, L"cboAreaType").Win32Control::Text(), foreign);
        }
        list.AddItem(L" X");
        EXPECT_EQ(list.Text(), L"Fläche & mehr");
        list.Text(L"");
        EXPECT_EQ(list.Text(), L"");
        list.Text(L" X");
        EXPECT_EQ(list.Text(), L" X");
        EXPECT_EQ(entries(), 5);
    });
}

} // namespace
} // namespace kalvrooms::Gui
