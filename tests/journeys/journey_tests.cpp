// What people do all day, on the real windows: keys and mouse go in as the system delivers them,
// and what the windows show and the files hold afterwards is looked at.

#include "journeys/JourneyTest.h"

namespace kalvrooms::testing {
namespace {

// --- rooms --------------------------------------------------------------------------------------

TEST_F(JourneyTest, ThreeRoomsAreAddedByTheKeyboardAlone) {
    QuartinoProcess quartino(folder);
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - Schule");
    EXPECT_EQ(ui::rowCount(quartino.table()), 99);
    const auto before = quartino.commandsDone();

    // The Enter that chooses in the menu is still held down when the dialog opens.
    quartino.openMenu(editMenu);
    quartino.picture(quartino.main(), "menu");
    ui::pressKey(VK_RETURN);
    const HWND dialog = quartino.dialog(addTitle);
    quartino.waitForFocus(dialog, ID_ROOM_TXTSTORYCODE);
    ui::releaseKey(VK_RETURN);
    quartino.tabTo(dialog, ID_ROOM_TXTNAME);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), dialog})) << "OK came from the menu's Enter";
    ui::typeKey(VK_TAB, {VK_SHIFT});

    quartino.type(dialog, ID_ROOM_TXTSTORYCODE, L" EG ");
    quartino.tabTo(dialog, ID_ROOM_TXTNAME);
    quartino.type(dialog, ID_ROOM_TXTNAME, L"Büro 1");
    quartino.tabTo(dialog, ID_ROOM_TXTFUNCTION);
    quartino.type(dialog, ID_ROOM_TXTFUNCTION, L"Verwaltung");
    quartino.tabTo(dialog, ID_ROOM_TXTAREA);
    // The whole text is selected on entry; letters and signs do not get in.
    quartino.type(dialog, ID_ROOM_TXTAREA, L"x1-2.5m", L"12.5");
    quartino.tabTo(dialog, ID_ROOM_CMDGEOMETRY);
    // A field is put in order when it is left.
    quartino.waitForText(dialog, ID_ROOM_TXTAREA, number(L"12.500"));
    for (const auto& [list, entry] :
         {std::pair<int, const wchar_t*>{ID_ROOM_CBOENCLOSURETYPE, L"a"},
          {ID_ROOM_CBOOCCUPANCY, L" NF"},
          {ID_ROOM_CBOAREATYPE, L" N"}}) {
        quartino.tabTo(dialog, list);
        ui::typeKey(VK_DOWN);
        quartino.waitForText(dialog, list, entry);
    }
    quartino.tabTo(dialog, ID_ROOM_TXTQUANTITY);
    quartino.type(dialog, ID_ROOM_TXTQUANTITY, L"a3.", L"3");
    quartino.picture(dialog, "room-add");

    // Pressed on a field, Enter acts when it is released, whatever has the focus then.
    ui::pressKey(VK_RETURN);
    quartino.tabTo(dialog, {ID_ROOM_CMDOK, ID_ROOM_CMDCANCEL});
    EXPECT_TRUE(IsWindowVisible(dialog));
    EXPECT_THAT(quartino.column(Name), IsEmpty());
    ui::releaseKey(VK_RETURN);
    quartino.waitForCommand(before);
    EXPECT_FALSE(IsWindow(dialog));

    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Büro 1", L"Büro2", L"Büro3"));
    const std::wstring row[] = {L"Büro3", L"Verwaltung", number(L"12.5"), L"EG", L"a",
                                L"NF",    L"N",          L"quadratisch"};
    for (int column = Name; column <= Shape; ++column)
        EXPECT_EQ(quartino.cell(2, column), row[column]);
    EXPECT_EQ(ui::rowCount(quartino.table()), 99);
    quartino.picture(quartino.main(), "main-added");
}

TEST_F(JourneyTest, ADoubleClickModifiesARoomAndOnAnEmptyRowAddsOne) {
    writeList(file(L"list.txt"), {{L"Aula", L"100"}, {L"Flur", L"20"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    ASSERT_THAT(quartino.column(Name), ElementsAre(L"Aula", L"Flur"));

    const auto before = quartino.commandsDone();
    quartino.clickCell(1, Area, false, 2);
    HWND dialog = quartino.dialog(modifyTitle);
    EXPECT_FALSE(quartino.enabled(dialog, ID_ROOM_TXTSTORYCODE));
    EXPECT_FALSE(quartino.enabled(dialog, ID_ROOM_TXTQUANTITY));
    EXPECT_EQ(quartino.text(dialog, ID_ROOM_TXTNAME), L"Flur");
    // A value that the list does not offer is shown all the same.
    EXPECT_EQ(quartino.text(dialog, ID_ROOM_CBOOCCUPANCY), L"HNF 2");
    quartino.picture(dialog, "room-modify");
    quartino.type(dialog, ID_ROOM_TXTNAME, L"Gang");
    quartino.tabTo(dialog, {ID_ROOM_TXTFUNCTION, ID_ROOM_TXTAREA});
    quartino.type(dialog, ID_ROOM_TXTAREA, L"21,5");
    // Enter normalizes the field that still has the focus.
    ui::typeKey(VK_RETURN);
    quartino.waitForReturn(dialog, quartino.main());
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Aula", L"Gang"));
    EXPECT_THAT(quartino.column(Area), ElementsAre(L"100", number(L"21.5")));

    quartino.clickCell(4, Function, false, 2);
    dialog = quartino.dialog(addTitle);
    EXPECT_TRUE(quartino.enabled(dialog, ID_ROOM_TXTSTORYCODE));
    EXPECT_TRUE(quartino.enabled(dialog, ID_ROOM_TXTQUANTITY));
    ui::typeKey(VK_ESCAPE);
    quartino.waitForReturn(dialog, quartino.main());
    EXPECT_EQ(quartino.column(Name).size(), 2u);
    EXPECT_EQ(quartino.commandsDone(), before);
}

// The geometry of a room in the table, from its dialog.
class GeometryJourney : public JourneyTest {
  protected:
    HWND openGeometry(QuartinoProcess& quartino, int row) {
        quartino.clickCell(row, Name, false, 2);
        room = quartino.dialog(modifyTitle);
        quartino.waitForFocus(room, ID_ROOM_TXTNAME);
        quartino.tabTo(room, {ID_ROOM_TXTFUNCTION, ID_ROOM_TXTAREA, ID_ROOM_CMDGEOMETRY});
        ui::typeKey(VK_SPACE);
        return quartino.dialog(geometryTitle);
    }
    void confirmRoom(QuartinoProcess& quartino) const {
        quartino.click(room, ID_ROOM_CMDOK);
        quartino.waitForReturn(room, quartino.main());
    }

    HWND room = nullptr;
};

TEST_F(GeometryJourney, GeometryComesFromASideOrFromAFile) {
    const std::filesystem::path points =
        file(L"Umriss der Aula mit einem Namen, der für die Schaltfläche zu lang ist.txt");
    writeBytes(points, "4\r\n0\t0\r\n10\t0\r\n10\t5\r\n0\t5\r\nend\r\n");
    const std::wstring path = points.wstring();
    QuartinoProcess quartino(folder);
    add(quartino, L"R 1", L"50", L"2");
    HWND dialog = openGeometry(quartino, 0);
    quartino.click(dialog, ID_GEOMETRY_OPTXDIRECTION);
    ui::waitFor("the option", [&] { return quartino.checked(dialog, ID_GEOMETRY_OPTXDIRECTION); });
    EXPECT_FALSE(quartino.checked(dialog, ID_GEOMETRY_OPTRATIO));
    quartino.tabTo(dialog, ID_GEOMETRY_TXTDX);
    quartino.type(dialog, ID_GEOMETRY_TXTDX, L"10");
    quartino.picture(dialog, "geometry");
    ui::typeKey(VK_RETURN);
    quartino.waitForReturn(dialog, room);
    // The room dialog does not take the same Enter.
    quartino.keysWereHandled(room);
    EXPECT_TRUE(IsWindowVisible(room));
    confirmRoom(quartino);

    dialog = openGeometry(quartino, 1);
    quartino.click(dialog, ID_GEOMETRY_CMDEXCELFILE);
    const HWND files = quartino.fileDialog();
    quartino.picture(files, "file-points");
    quartino.giveFileName(files, path);
    quartino.waitForReturn(files, dialog);
    quartino.waitForText(dialog, ID_GEOMETRY_CMDEXCELFILE, path.substr(path.size() - 55));
    quartino.click(dialog, ID_GEOMETRY_OPTEXCELFILE);
    ui::waitFor("the option", [&] { return quartino.checked(dialog, ID_GEOMETRY_OPTEXCELFILE); });
    quartino.picture(dialog, "geometry-file");
    quartino.click(dialog, ID_GEOMETRY_CMDOK);
    quartino.waitForReturn(dialog, room);
    confirmRoom(quartino);
    EXPECT_THAT(quartino.column(Shape), ElementsAre(L"rechteckig", L"polygonal"));
    quartino.picture(quartino.main(), "main-geometry");

    saveAs(quartino, file(L"sides.txt"));
    const auto rooms = roomsIn(file(L"sides.txt"));
    ASSERT_EQ(rooms.size(), 2u);
    using Sides = std::vector<std::wstring>;
    EXPECT_EQ(Sides(rooms[0].begin() + 7, rooms[0].begin() + 10), (Sides{L"", L"10", L"5"}));
    EXPECT_EQ(Sides(rooms[1].begin() + 7, rooms[1].begin() + 10), (Sides{path, L"0", L"0"}));
}

// --- the table and the files --------------------------------------------------------------------

// The names of the rooms, one after the other.
std::wstring names(const QuartinoProcess& quartino) {
    std::wstring joined;
    for (const std::wstring& name : quartino.column(Name))
        joined += name;
    return joined;
}

void waitForNames(const QuartinoProcess& quartino, const std::wstring& order) {
    ui::waitFor("the order " + toAnsi(order), [&] { return names(quartino) == order; });
}

void deleteSecondLineByContextMenu(const QuartinoProcess& quartino) {
    quartino.command([&] {
        quartino.clickCell(1, Name, true);
        quartino.waitForPopup();
        ui::parkMouse();
        for (int i = 0; i <= deleteLine; ++i)
            ui::typeKey(VK_DOWN);
        ui::typeKey(VK_RETURN);
    });
}

TEST_F(JourneyTest, AListIsSortedThinnedSavedAndOpenedAgain) {
    writeList(file(L"list.txt"), {{L"b", L"100"}, {L"c", L"9"}, {L"a", L"20"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - list.txt");
    ASSERT_EQ(names(quartino), L"bca");
    quartino.clickHeader(Name);
    waitForNames(quartino, L"abc");
    // Numbers are sorted as numbers.
    quartino.clickHeader(Area);
    waitForNames(quartino, L"cab");
    quartino.runByKeys(editMenu, descendingLine);
    EXPECT_EQ(names(quartino), L"bac");
    quartino.runByKeys(editMenu, ascendingLine);
    EXPECT_EQ(names(quartino), L"cab");

    // The context menu: on a header as well, which is not sorted by it.
    quartino.clickHeader(Name, true);
    quartino.waitForPopup();
    quartino.picture(quartino.main(), "context-menu");
    ui::typeKey(VK_ESCAPE);
    quartino.waitForNoPopup();
    EXPECT_EQ(names(quartino), L"cab");
    // The second line of the sorted table is the list's third room; nobody asks before it goes.
    deleteSecondLineByContextMenu(quartino);
    EXPECT_EQ(names(quartino), L"bc");

    // Saving without a question, to the name that the list has.
    quartino.runByKeys(fileMenu, saveLine);
    auto rooms = roomsIn(file(L"list.txt"));
    ASSERT_EQ(rooms.size(), 2u);
    EXPECT_THAT(rooms[0], ElementsAre(L"b", L"Büro", L"100", L"EG", L"a", L"HNF 2", L"N", L"",
                                      L"10", L"10", L""));
    saveAs(quartino, file(L"second.txt"));
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - second.txt");
    EXPECT_EQ(readBytes(file(L"second.txt")), readBytes(file(L"list.txt")));

    // A file that is there is replaced only after a question; giving up changes nothing.
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, saveAsLine);
        const HWND files = quartino.fileDialog();
        quartino.picture(files, "file-save");
        quartino.giveFileName(files, file(L"list.txt").wstring());
        const HWND box = quartino.messageBox();
        ui::press(box, IDNO);
        quartino.waitForReturn(box, files);
        ui::typeKey(VK_ESCAPE);
    });
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - second.txt");

    // Nothing was changed since, so that nobody asks.
    quartino.runByKeys(fileMenu, newLine);
    EXPECT_EQ(names(quartino), L"");
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - Schule");
    open(quartino, file(L"second.txt"));
    EXPECT_EQ(names(quartino), L"bc");
    EXPECT_EQ(quartino.program().close(), 0u);
}

// --- options and report -------------------------------------------------------------------------

class OptionsJourney : public JourneyTest {
  protected:
    static void showTab(HWND dialog, int tab, int control) {
        ui::clickAt(ui::control(dialog, ID_PLACE_SSTAB1), tab == 0 ? 20 : 120, 10);
        ui::waitFor("the tab", [&] { return QuartinoProcess::visible(dialog, control); });
    }
    static void chooseColour(QuartinoProcess& quartino, HWND dialog) {
        constexpr int firstColours = 0x2D0; // the field of the system's basic colours
        quartino.click(dialog, ID_PLACE_CMDWITHCOORDINATES);
        const HWND colours = quartino.ownedBy(dialog);
        quartino.picture(colours, "colour");
        ui::clickAt(ui::control(colours, firstColours), 5, 5);
        quartino.click(colours, IDOK);
        quartino.waitForReturn(colours, dialog);
        const HWND button = ui::control(dialog, ID_PLACE_CMDWITHCOORDINATES);
        ui::waitFor("the colour on the button",
                    [&] { return ui::Picture(ui::placeOf(button)).redness() == 127; });
    }
    // In a message, whose Enter does not press OK once more.
    static void expectDistanceRefused(QuartinoProcess& quartino, HWND dialog) {
        quartino.click(dialog, ID_PLACE_TXTDX);
        quartino.type(dialog, ID_PLACE_TXTDX, L"-0a", L"0");
        ui::typeKey(VK_RETURN);
        const HWND box = quartino.messageBox();
        EXPECT_EQ(ui::messageText(box), L" Abstände müssen größer als Null sein.");
        EXPECT_EQ(ui::textOf(box), L"Quartino");
        quartino.picture(box, "message-distances");
        ui::pressKey(VK_RETURN);
        quartino.waitForReturn(box, dialog);
        ui::releaseKey(VK_RETURN);
        quartino.keysWereHandled(dialog);
        EXPECT_TRUE(quartino.onlyShows({quartino.main(), dialog}));
    }
};

TEST_F(OptionsJourney, OptionsAreSetOnBothTabs) {
    const std::filesystem::path outline = file(L"Umriss.txt");
    writeBytes(outline, "4\r\n0\t20\r\n4\t20\r\n4\t24\r\n0\t24\r\nend\r\n");
    writeList(file(L"list.txt"), {{L"neu", L"16"}, {L"alt", L"16", outline.wstring(), L"0", L"0"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    ui::waitFor("the colours of the rows",
                [&] { return quartino.rednessOfRow(0) > 150 && quartino.rednessOfRow(1) < 50; });

    quartino.command([&] {
        quartino.chooseByKeys(extrasMenu, 0);
        const HWND dialog = quartino.dialog(optionsTitle);
        EXPECT_TRUE(quartino.checked(dialog, ID_PLACE_OPTBLOCK));
        EXPECT_FALSE(quartino.visible(dialog, ID_PLACE_CHKUPDATE));
        quartino.picture(dialog, "options-arrangement");
        showTab(dialog, 1, ID_PLACE_CHKUPDATE);
        EXPECT_TRUE(quartino.checked(dialog, ID_PLACE_CHKUPDATE));
        chooseColour(quartino, dialog);
        quartino.picture(dialog, "options-display");
        quartino.click(dialog, ID_PLACE_CHKUPDATE);
        ui::waitFor("the report off",
                    [&] { return !quartino.checked(dialog, ID_PLACE_CHKUPDATE); });
        showTab(dialog, 0, ID_PLACE_OPTBLOCK);
        expectDistanceRefused(quartino, dialog);
        quartino.click(dialog, ID_PLACE_TXTDX);
        quartino.type(dialog, ID_PLACE_TXTDX, L"2,5");
        ui::typeKey(VK_RETURN);
    });
    ui::waitFor("the colours of the rows", [&] { return quartino.rednessOfRow(1) > 100; });
    EXPECT_EQ(quartino.program().close(), 0u);
    EXPECT_EQ(key[L"Report"], 2);
    EXPECT_EQ(key[L"ColorOld"], RGB(255, 128, 128));
    EXPECT_EQ(key[L"ColorNew"], 255);
}

TEST_F(JourneyTest, TheReportShowsTheRowsThatCount) {
    const std::filesystem::path outline = file(L"Umriss.txt");
    writeBytes(outline, "4\r\n0\t20\r\n4\t20\r\n4\t24\r\n0\t24\r\nend\r\n");
    loadTwoRooms();
    // One element of the drawing, one with an outline of its own, and two to be placed.
    writeList(file(L"all.txt"), {{L"alt", L"13", outline.wstring(), L"0", L"0", L"17-K3"},
                                 {L"lagerichtig", L"16", outline.wstring(), L"0", L"0", L""},
                                 {L"neu 1", L"16"},
                                 {L"neu 2", L"16"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"all.txt"));
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, exportLine);
        const HWND dialog = quartino.dialog(reportTitle);
        EXPECT_EQ(quartino.text(dialog, ID_REPORT_LBLTOP), L" Es wurden");
        LONG bottom = ui::placeOf(ui::control(dialog, ID_REPORT_LBLTOP)).bottom;
        // The rows have the colours that the rooms get in the drawing.
        for (const auto& [count, text, row, red] :
             {std::tuple{ID_REPORT_LBLNUM1, ID_REPORT_LBLTEXT1, L"1 Raum aktualisiert", false},
              {ID_REPORT_LBLNUM2, ID_REPORT_LBLTEXT2, L"1 neuer Raum lagerichtig erzeugt", false},
              {ID_REPORT_LBLNUM3, ID_REPORT_LBLTEXT3, L"2 neue Räume abgesetzt", true}}) {
            EXPECT_EQ(quartino.text(dialog, count) + quartino.text(dialog, text), row);
            const HWND words = ui::control(dialog, text);
            EXPECT_EQ(ui::placeOf(words).top, ui::placeOf(ui::control(dialog, count)).top);
            EXPECT_GE(ui::placeOf(words).top, bottom);
            bottom = ui::placeOf(words).bottom;
            ui::waitFor("the colour of a row", [&, red = red] {
                return (ui::Picture(ui::placeOf(words)).redness() > 100) == red;
            });
        }
        quartino.picture(dialog, "report-all");
        quartino.click(dialog, ID_REPORT_CHKNOREPORT);
        ui::waitFor("the mark", [&] { return quartino.checked(dialog, ID_REPORT_CHKNOREPORT); });
        ui::typeKey(VK_ESCAPE);
    });
    // From now on there is none.
    quartino.runByKeys(fileMenu, exportLine);
}

} // namespace
} // namespace kalvrooms::testing
