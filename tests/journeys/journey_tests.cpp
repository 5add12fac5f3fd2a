// What people do all day, on the real windows: keys and mouse go in as the system delivers them,
// and what the windows show and the files hold afterwards is looked at.

#include "journeys/JourneyTest.h"

namespace kalvrooms::testing {
namespace {

// --- rooms
// ----------------------------------------------------------------------------------------

TEST_F(JourneyTest, ThreeRoomsAreAddedByTheKeyboardAlone) {
    QuartinoProcess quartino(folder);
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - Schule");
    EXPECT_EQ(ui::rowCount(quartino.table()), 99);
    const auto before = quartino.commandsDone();

    // The Enter that chooses in the menu is still held down when the dialog opens.
    quartino.openMenu(editMenu);
    quartino.picture(quartino.main(), "menu");
    pressKey(VK_RETURN);
    const HWND dialog = quartino.dialog(addTitle);
    quartino.waitForFocus(dialog, ID_ROOM_TXTSTORYCODE);
    releaseKey(VK_RETURN);
    quartino.tabTo(dialog, ID_ROOM_TXTNAME);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), dialog})) << "OK came from the menu's Enter";
    ui::typeKey(VK_TAB, {VK_SHIFT});
    quartino.waitForFocus(dialog, ID_ROOM_TXTSTORYCODE);

    quartino.type(dialog, ID_ROOM_TXTSTORYCODE, L" EG ");
    quartino.tabTo(dialog, ID_ROOM_TXTNAME);
    quartino.type(dialog, ID_ROOM_TXTNAME, L"Büro 1");
    quartino.tabTo(dialog, ID_ROOM_TXTFUNCTION);
    quartino.type(dialog, ID_ROOM_TXTFUNCTION, L"Verwaltung");
    quartino.tabTo(dialog, ID_ROOM_TXTAREA);
    EXPECT_EQ(quartino.text(dialog, ID_ROOM_TXTAREA), number(L"16.000"));
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
        EXPECT_EQ(quartino.text(dialog, list), L" kein Eintrag");
        ui::typeKey(VK_DOWN);
        quartino.waitForText(dialog, list, entry);
    }
    quartino.tabTo(dialog, ID_ROOM_TXTQUANTITY);
    EXPECT_EQ(quartino.text(dialog, ID_ROOM_TXTQUANTITY), L"1");
    quartino.type(dialog, ID_ROOM_TXTQUANTITY, L"a3.", L"3");
    quartino.picture(dialog, "room-add");
    quartino.tabTo(dialog, ID_ROOM_CMDOK);
    quartino.tabTo(dialog, ID_ROOM_CMDCANCEL);
    quartino.tabTo(dialog, ID_ROOM_TXTSTORYCODE);

    // Enter acts when it is released, whatever has the focus.
    pressKey(VK_RETURN);
    quartino.tabTo(dialog, ID_ROOM_TXTNAME);
    EXPECT_TRUE(IsWindowVisible(dialog));
    EXPECT_THAT(quartino.column(Name), IsEmpty());
    releaseKey(VK_RETURN);
    quartino.waitForCommand(before);
    EXPECT_FALSE(IsWindow(dialog));

    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Büro 1", L"Büro2", L"Büro3"));
    EXPECT_THAT(quartino.column(Function),
                ElementsAre(L"Verwaltung", L"Verwaltung", L"Verwaltung"));
    EXPECT_EQ(quartino.cell(2, Area), number(L"12.5"));
    EXPECT_EQ(quartino.cell(2, Story), L"EG");
    EXPECT_EQ(quartino.cell(2, Enclosure), L"a");
    EXPECT_EQ(quartino.cell(2, Occupancy), L"NF");
    EXPECT_EQ(quartino.cell(2, AreaType), L"N");
    EXPECT_EQ(quartino.cell(2, Shape), L"quadratisch");
    EXPECT_EQ(ui::rowCount(quartino.table()), 99);
    quartino.picture(quartino.main(), "main-added");

    // The next room starts with what the last one was given.
    quartino.chooseByKeys(editMenu, addLine);
    const HWND again = quartino.dialog(addTitle);
    EXPECT_EQ(quartino.text(again, ID_ROOM_TXTSTORYCODE), L"EG");
    EXPECT_EQ(quartino.text(again, ID_ROOM_TXTAREA), number(L"12.500"));
    EXPECT_EQ(quartino.text(again, ID_ROOM_CBOENCLOSURETYPE), L"a");
    EXPECT_EQ(quartino.text(again, ID_ROOM_TXTQUANTITY), L"1");
    ui::typeKey(VK_ESCAPE);
    quartino.waitUntilGone(again);
    EXPECT_EQ(quartino.column(Name).size(), 3u);
}

TEST_F(JourneyTest, ADoubleClickModifiesARoomAndOnAnEmptyRowAddsOne) {
    writeList(file(L"list.txt"), {{L"Aula", L"100"}, {L"Flur", L"20"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    ASSERT_THAT(quartino.column(Name), ElementsAre(L"Aula", L"Flur"));
    auto before = quartino.commandsDone();

    quartino.clickCell(1, Area, false, 2);
    HWND dialog = quartino.dialog(modifyTitle);
    EXPECT_FALSE(quartino.enabled(dialog, ID_ROOM_TXTSTORYCODE));
    EXPECT_FALSE(quartino.enabled(dialog, ID_ROOM_TXTQUANTITY));
    EXPECT_EQ(quartino.text(dialog, ID_ROOM_TXTQUANTITY), L"1");
    EXPECT_EQ(quartino.text(dialog, ID_ROOM_TXTNAME), L"Flur");
    // A value that the list does not offer is shown all the same.
    EXPECT_EQ(quartino.text(dialog, ID_ROOM_CBOOCCUPANCY), L"HNF 2");
    quartino.picture(dialog, "room-modify");
    quartino.type(dialog, ID_ROOM_TXTNAME, L"Gang");
    quartino.tabTo(dialog, ID_ROOM_TXTFUNCTION);
    quartino.tabTo(dialog, ID_ROOM_TXTAREA);
    quartino.type(dialog, ID_ROOM_TXTAREA, L"21,5");
    // Enter normalizes the field that still has the focus.
    ui::typeKey(VK_RETURN);
    quartino.waitUntilGone(dialog);
    quartino.waitForKeys(quartino.main());
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Aula", L"Gang"));
    EXPECT_THAT(quartino.column(Area), ElementsAre(L"100", number(L"21.5")));
    EXPECT_EQ(quartino.cell(1, Occupancy), L"HNF 2");

    // What is cancelled leaves everything as it was.
    quartino.clickCell(0, Name, false, 2);
    dialog = quartino.dialog(modifyTitle);
    quartino.type(dialog, ID_ROOM_TXTNAME, L"Halle");
    quartino.click(quartino.control(dialog, ID_ROOM_CMDCANCEL));
    quartino.waitUntilGone(dialog);
    quartino.waitForKeys(quartino.main());
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Aula", L"Gang"));

    quartino.clickCell(4, Function, false, 2);
    dialog = quartino.dialog(addTitle);
    EXPECT_TRUE(quartino.enabled(dialog, ID_ROOM_TXTSTORYCODE));
    EXPECT_TRUE(quartino.enabled(dialog, ID_ROOM_TXTQUANTITY));
    ui::typeKey(VK_ESCAPE);
    quartino.waitUntilGone(dialog);
    EXPECT_EQ(quartino.commandsDone(), before);

    // Modifying without a room is adding.
    quartino.waitForKeys(quartino.main());
    before = quartino.commandsDone();
    quartino.clickCell(4, Function);
    quartino.chooseByKeys(editMenu, modifyLine);
    dialog = quartino.dialog(addTitle);
    ui::typeKey(VK_ESCAPE);
    quartino.waitForCommand(before);
}

TEST_F(JourneyTest, GeometryIsChangedInEachOfTheFourWays) {
    const std::filesystem::path points =
        file(L"Umriss der Aula mit einem Namen, der für die Schaltfläche zu lang ist.txt");
    writeBytes(points, "4\r\n0\t0\r\n10\t0\r\n10\t5\r\n0\t5\r\nend\r\n");
    const std::wstring path = points.wstring();
    ASSERT_GT(path.size(), 55u);
    QuartinoProcess quartino(folder);
    add(quartino, L"R 1", L"50", L"4");
    ASSERT_THAT(quartino.column(Shape),
                ElementsAre(L"quadratisch", L"quadratisch", L"quadratisch", L"quadratisch"));

    // Opens the geometry dialog of a room by the keyboard.
    HWND room = nullptr;
    const auto openGeometry = [&](int row) {
        quartino.clickCell(row, Name, false, 2);
        room = quartino.dialog(modifyTitle);
        quartino.waitForFocus(room, ID_ROOM_TXTNAME);
        quartino.tabTo(room, ID_ROOM_TXTFUNCTION);
        quartino.tabTo(room, ID_ROOM_TXTAREA);
        quartino.tabTo(room, ID_ROOM_CMDGEOMETRY);
        ui::typeKey(VK_SPACE);
        const HWND dialog = quartino.dialog(geometryTitle);
        EXPECT_TRUE(quartino.checked(dialog, ID_GEOMETRY_OPTRATIO));
        EXPECT_EQ(quartino.text(dialog, ID_GEOMETRY_TXTRATIO), number(L"1.00"));
        return dialog;
    };
    const auto confirm = [&](HWND dialog) {
        ui::typeKey(VK_RETURN);
        quartino.waitUntilGone(dialog);
        // The room dialog does not take the same Enter.
        quartino.waitForKeys(room);
        quartino.keysWereHandled(room);
        EXPECT_TRUE(IsWindowVisible(room));
        ui::typeKey(VK_RETURN);
        quartino.waitUntilGone(room);
        quartino.waitForKeys(quartino.main());
    };

    HWND dialog = openGeometry(0);
    quartino.click(quartino.control(dialog, ID_GEOMETRY_OPTXDIRECTION));
    ui::waitFor("the option", [&] { return quartino.checked(dialog, ID_GEOMETRY_OPTXDIRECTION); });
    EXPECT_FALSE(quartino.checked(dialog, ID_GEOMETRY_OPTRATIO));
    // Without a side it cannot be confirmed, and nothing is said about it.
    ui::typeKey(VK_RETURN);
    quartino.tabTo(dialog, ID_GEOMETRY_TXTDX);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), room, dialog}));
    quartino.waitForText(dialog, ID_GEOMETRY_TXTDX, number(L"0.000"));
    quartino.type(dialog, ID_GEOMETRY_TXTDX, L"10");
    quartino.picture(dialog, "geometry");
    confirm(dialog);

    dialog = openGeometry(1);
    quartino.click(quartino.control(dialog, ID_GEOMETRY_OPTYDIRECTION));
    quartino.waitForFocus(dialog, ID_GEOMETRY_OPTYDIRECTION);
    quartino.tabTo(dialog, ID_GEOMETRY_TXTDY);
    quartino.type(dialog, ID_GEOMETRY_TXTDY, L"10");
    confirm(dialog);

    dialog = openGeometry(2);
    quartino.click(quartino.control(dialog, ID_GEOMETRY_TXTRATIO));
    quartino.waitForFocus(dialog, ID_GEOMETRY_TXTRATIO);
    quartino.type(dialog, ID_GEOMETRY_TXTRATIO, L"2");
    confirm(dialog);

    dialog = openGeometry(3);
    quartino.click(quartino.control(dialog, ID_GEOMETRY_CMDEXCELFILE));
    HWND files = quartino.fileDialog();
    ui::typeKey(VK_ESCAPE);
    quartino.waitUntilGone(files);
    quartino.waitForKeys(dialog);
    quartino.keysWereHandled(dialog);
    EXPECT_EQ(quartino.text(dialog, ID_GEOMETRY_CMDEXCELFILE), L"");
    quartino.click(quartino.control(dialog, ID_GEOMETRY_CMDEXCELFILE));
    files = quartino.fileDialog();
    quartino.picture(files, "file-points");
    quartino.giveFileName(files, path);
    quartino.waitUntilGone(files);
    quartino.waitForKeys(dialog);
    quartino.waitForText(dialog, ID_GEOMETRY_CMDEXCELFILE, path.substr(path.size() - 55));
    EXPECT_TRUE(quartino.checked(dialog, ID_GEOMETRY_OPTRATIO));
    quartino.click(quartino.control(dialog, ID_GEOMETRY_OPTEXCELFILE));
    quartino.waitForText(dialog, ID_GEOMETRY_TXTRATIO, L"");
    EXPECT_TRUE(quartino.checked(dialog, ID_GEOMETRY_OPTEXCELFILE));
    quartino.picture(dialog, "geometry-file");
    quartino.click(quartino.control(dialog, ID_GEOMETRY_CMDOK));
    quartino.waitUntilGone(dialog);
    quartino.waitForKeys(room);
    // The area becomes locked when the room is opened the next time.
    EXPECT_TRUE(quartino.enabled(room, ID_ROOM_TXTAREA));
    ui::typeKey(VK_RETURN);
    quartino.waitUntilGone(room);
    quartino.waitForKeys(quartino.main());

    EXPECT_THAT(quartino.column(Shape),
                ElementsAre(L"rechteckig", L"rechteckig", L"rechteckig", L"polygonal"));
    quartino.picture(quartino.main(), "main-geometry");
    quartino.clickCell(3, Name, false, 2);
    room = quartino.dialog(modifyTitle);
    EXPECT_FALSE(quartino.enabled(room, ID_ROOM_TXTAREA));
    quartino.picture(room, "room-polygon");
    ui::typeKey(VK_ESCAPE);
    quartino.waitUntilGone(room);
    quartino.waitForKeys(quartino.main());

    saveAs(quartino, file(L"sides.txt"));
    const auto rooms = roomsIn(file(L"sides.txt"));
    ASSERT_EQ(rooms.size(), 4u);
    using Sides = std::vector<std::wstring>;
    for (const auto& [row, sides] : {std::pair<std::size_t, Sides>{0, {L"", L"10", L"5"}},
                                     {1, {L"", L"5", L"10"}},
                                     {2, {L"", L"10", L"5"}},
                                     {3, {path, L"0", L"0"}}})
        EXPECT_EQ(Sides(rooms[row].begin() + 7, rooms[row].begin() + 10), sides) << row;
}

TEST_F(JourneyTest, AnEmptyQuantityIsARuntimeErrorAndTheDialogStays) {
    QuartinoProcess quartino(folder);
    quartino.chooseByKeys(editMenu, addLine);
    const HWND dialog = quartino.dialog(addTitle);
    // First the missing storey: the Enter that closes the message does not press OK once more.
    quartino.waitForText(dialog, ID_ROOM_TXTSTORYCODE, L"EG");
    quartino.waitForFocus(dialog, ID_ROOM_TXTSTORYCODE);
    ui::typeKey(VK_DELETE);
    quartino.waitForText(dialog, ID_ROOM_TXTSTORYCODE, L"");
    ui::typeKey(VK_RETURN);
    HWND box = quartino.messageBox();
    EXPECT_EQ(quartino.messageOf(box), L" Bitte geben Sie eine Geschoss Kurzbezeichung ein.");
    EXPECT_EQ(ui::textOf(box), L" Quartino");
    quartino.picture(box, "message-storey");
    pressKey(VK_RETURN);
    quartino.waitUntilGone(box);
    quartino.waitForKeys(dialog);
    releaseKey(VK_RETURN);
    quartino.keysWereHandled(dialog);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), dialog}));

    quartino.click(quartino.control(dialog, ID_ROOM_TXTSTORYCODE));
    quartino.type(dialog, ID_ROOM_TXTSTORYCODE, L"123456789");
    ui::typeKey(VK_RETURN);
    box = quartino.messageBox();
    EXPECT_EQ(quartino.messageOf(box), L" Bitte geben Sie eine Geschoss Kurzbezeichung ein.");
    quartino.closeWithEnter(box);
    quartino.waitForKeys(dialog);
    ui::typeKey(VK_END);
    ui::typeKey(VK_BACK);
    quartino.waitForText(dialog, ID_ROOM_TXTSTORYCODE, L"12345678");

    quartino.click(quartino.control(dialog, ID_ROOM_TXTQUANTITY));
    quartino.waitForFocus(dialog, ID_ROOM_TXTQUANTITY);
    ui::typeKey(VK_DELETE);
    quartino.waitForText(dialog, ID_ROOM_TXTQUANTITY, L"");
    ui::typeKey(VK_RETURN);
    box = quartino.messageBox();
    EXPECT_THAT(toAnsi(quartino.messageOf(box)), ::testing::StartsWith("Laufzeitfehler 13:"));
    EXPECT_EQ(ui::textOf(box), L" Quartino");
    quartino.picture(box, "message-error");
    quartino.closeWithEnter(box);
    quartino.waitForKeys(dialog);
    quartino.keysWereHandled(dialog);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), dialog}));
    EXPECT_THAT(quartino.column(Name), IsEmpty());

    // The program goes on: with a quantity the room is added.
    quartino.click(quartino.control(dialog, ID_ROOM_TXTQUANTITY));
    quartino.type(dialog, ID_ROOM_TXTQUANTITY, L"0");
    ui::typeKey(VK_RETURN);
    quartino.waitUntilGone(dialog);
    ui::waitFor("the room", [&] { return quartino.column(Story).size() == 1; });
    EXPECT_EQ(quartino.cell(0, Story), L"12345678");
}

// --- the table and the files
// ----------------------------------------------------------------------

TEST_F(JourneyTest, AListIsSortedThinnedSavedAndOpenedAgain) {
    writeList(file(L"list.txt"), {{L"b", L"100"}, {L"c", L"9"}, {L"a", L"20"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - list.txt");
    const auto names = [&] {
        std::wstring joined;
        for (const std::wstring& name : quartino.column(Name))
            joined += name;
        return joined;
    };
    const auto waitForNames = [&](const std::wstring& order) {
        ui::waitFor("the order " + toAnsi(order), [&] { return names() == order; });
    };
    ASSERT_EQ(names(), L"bca");
    quartino.clickHeader(Name);
    waitForNames(L"abc");
    // Numbers are sorted as numbers.
    quartino.clickHeader(Area);
    waitForNames(L"cab");
    auto before = quartino.commandsDone();
    quartino.chooseByKeys(editMenu, descendingLine);
    quartino.waitForCommand(before);
    EXPECT_EQ(names(), L"bac");
    before = quartino.commandsDone();
    quartino.chooseByKeys(editMenu, ascendingLine);
    quartino.waitForCommand(before);
    EXPECT_EQ(names(), L"cab");

    // The context menu: on a header as well, which is not sorted by it.
    quartino.clickHeader(Name, true);
    ui::waitFor("the context menu", [&] { return quartino.openPopup() != nullptr; });
    quartino.picture(quartino.main(), "context-menu");
    ui::typeKey(VK_ESCAPE);
    quartino.waitForNoPopup();
    EXPECT_EQ(names(), L"cab");
    // The second line of the sorted table is the list's third room; nobody asks before it goes.
    before = quartino.commandsDone();
    quartino.clickCell(1, Name, true);
    ui::waitFor("the context menu", [&] { return quartino.openPopup() != nullptr; });
    quartino.parkMouse();
    for (int i = 0; i <= deleteLine; ++i)
        ui::typeKey(VK_DOWN);
    ui::typeKey(VK_RETURN);
    quartino.waitForCommand(before);
    EXPECT_EQ(names(), L"bc");

    // Saving without a question, to the name that the list has.
    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, saveLine);
    quartino.waitForCommand(before);
    auto rooms = roomsIn(file(L"list.txt"));
    ASSERT_EQ(rooms.size(), 2u);
    EXPECT_THAT(rooms[0], ElementsAre(L"b", L"Büro", L"100", L"EG", L"a", L"HNF 2", L"N", L"",
                                      L"10", L"10", L""));

    saveAs(quartino, file(L"second.txt"));
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - second.txt");
    EXPECT_EQ(readBytes(file(L"second.txt")), readBytes(file(L"list.txt")));

    // A file that is there is replaced only after a question; giving up changes nothing.
    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, saveAsLine);
    const HWND files = quartino.fileDialog();
    quartino.picture(files, "file-save");
    quartino.giveFileName(files, file(L"list.txt").wstring());
    const HWND box = quartino.messageBox();
    ui::press(box, IDNO);
    quartino.waitUntilGone(box);
    quartino.waitForKeys(files);
    ui::typeKey(VK_ESCAPE);
    quartino.waitForCommand(before);
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - second.txt");

    // Nothing was changed since, so that nobody asks.
    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, 0);
    quartino.waitForCommand(before);
    EXPECT_EQ(names(), L"");
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - Schule");
    open(quartino, file(L"second.txt"));
    EXPECT_EQ(names(), L"bc");
    EXPECT_EQ(quartino.program().close(), 0u);
}

TEST_F(JourneyTest, TheSavePromptSavesOrLetsGo) {
    {
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"2");
        // No: the list goes unsaved.
        auto before = quartino.commandsDone();
        quartino.chooseByKeys(fileMenu, 0);
        HWND box = quartino.messageBox();
        EXPECT_EQ(quartino.messageOf(box), L" Sollen Ihre Änderungen gespeichert werden?");
        EXPECT_EQ(ui::textOf(box), L" Quartino");
        quartino.picture(box, "message-save");
        quartino.click(GetDlgItem(box, IDNO));
        quartino.waitForCommand(before);
        EXPECT_THAT(quartino.column(Name), IsEmpty());

        // Yes: always under a new name, and the program ends afterwards.
        add(quartino, L"Saal", L"30", L"1");
        ui::typeKey(VK_F4, {VK_MENU});
        box = quartino.messageBox();
        quartino.closeWithEnter(box);
        quartino.giveFileName(quartino.fileDialog(), file(L"kept.txt").wstring());
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
        const auto rooms = roomsIn(file(L"kept.txt"));
        ASSERT_EQ(rooms.size(), 1u);
        EXPECT_EQ(rooms[0][0], L"Saal");
    }
    {
        // Yes without a name is no way to call off the end.
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"1");
        ui::typeKey(VK_F4, {VK_MENU});
        quartino.closeWithEnter(quartino.messageBox());
        quartino.fileDialog();
        ui::typeKey(VK_ESCAPE);
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
        EXPECT_EQ(key.values().size(), 7u);
    }
}

// --- options and report
// ---------------------------------------------------------------------------

TEST_F(JourneyTest, OptionsAreSetOnBothTabs) {
    QuartinoProcess quartino(folder);
    const auto openOptions = [&] {
        quartino.chooseByKeys(extrasMenu, 0);
        return quartino.dialog(optionsTitle);
    };
    const auto showTab = [](HWND dialog, int tab) {
        const HWND tabs = QuartinoProcess::control(dialog, ID_PLACE_SSTAB1);
        QuartinoProcess::clickAt(tabs, tab == 0 ? 20 : 120, 10);
        ui::waitFor("the tab", [&] {
            return QuartinoProcess::visible(dialog,
                                            tab == 0 ? ID_PLACE_OPTBLOCK : ID_PLACE_CHKUPDATE);
        });
    };
    HWND dialog = openOptions();
    EXPECT_TRUE(quartino.checked(dialog, ID_PLACE_OPTBLOCK));
    EXPECT_EQ(quartino.text(dialog, ID_PLACE_TXTDX), number(L"1.000"));
    EXPECT_EQ(quartino.text(dialog, ID_PLACE_TXTDY), number(L"1.000"));
    EXPECT_FALSE(quartino.visible(dialog, ID_PLACE_CHKUPDATE));
    quartino.picture(dialog, "options-arrangement");

    // The colour dialog of the system; giving it up leaves this dialog open.
    showTab(dialog, 1);
    EXPECT_TRUE(quartino.checked(dialog, ID_PLACE_CHKUPDATE));
    quartino.picture(dialog, "options-display");
    quartino.click(quartino.control(dialog, ID_PLACE_CMDWITHCOORDINATES));
    const HWND colours = quartino.ownedBy(dialog);
    quartino.picture(colours, "colour");
    pressKey(VK_ESCAPE);
    quartino.waitUntilGone(colours);
    quartino.waitForKeys(dialog);
    releaseKey(VK_ESCAPE);
    quartino.keysWereHandled(dialog);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), dialog}));

    // Distances of zero are refused; the report switch holds all the same.
    quartino.click(quartino.control(dialog, ID_PLACE_CHKUPDATE));
    ui::waitFor("the report off", [&] { return !quartino.checked(dialog, ID_PLACE_CHKUPDATE); });
    showTab(dialog, 0);
    quartino.click(quartino.control(dialog, ID_PLACE_TXTDX));
    quartino.type(dialog, ID_PLACE_TXTDX, L"-0a", L"0");
    ui::typeKey(VK_RETURN);
    HWND box = quartino.messageBox();
    EXPECT_EQ(quartino.messageOf(box), L" Abstände müssen größer als Null sein.");
    EXPECT_EQ(ui::textOf(box), L"Quartino");
    quartino.picture(box, "message-distances");
    pressKey(VK_RETURN);
    quartino.waitUntilGone(box);
    quartino.waitForKeys(dialog);
    releaseKey(VK_RETURN);
    quartino.keysWereHandled(dialog);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), dialog}));
    quartino.waitForText(dialog, ID_PLACE_TXTDX, number(L"0.000"));
    auto before = quartino.commandsDone();
    ui::typeKey(VK_ESCAPE);
    quartino.waitForCommand(before);

    dialog = openOptions();
    EXPECT_FALSE(quartino.checked(dialog, ID_PLACE_CHKUPDATE));
    EXPECT_EQ(quartino.text(dialog, ID_PLACE_TXTDX), number(L"1.000"));
    quartino.click(quartino.control(dialog, ID_PLACE_TXTDY));
    quartino.type(dialog, ID_PLACE_TXTDY, L"2,5");
    before = quartino.commandsDone();
    ui::typeKey(VK_RETURN);
    quartino.waitForCommand(before);

    // One by one: the distances are gone for the rest of the run.
    dialog = openOptions();
    EXPECT_EQ(quartino.text(dialog, ID_PLACE_TXTDY), number(L"2.500"));
    quartino.click(quartino.control(dialog, ID_PLACE_OPTSINGLE));
    ui::waitFor("the option", [&] { return quartino.checked(dialog, ID_PLACE_OPTSINGLE); });
    EXPECT_FALSE(quartino.checked(dialog, ID_PLACE_OPTBLOCK));
    EXPECT_TRUE(quartino.enabled(dialog, ID_PLACE_TXTDX));
    before = quartino.commandsDone();
    quartino.click(quartino.control(dialog, ID_PLACE_CMDOK));
    quartino.waitForCommand(before);

    dialog = openOptions();
    EXPECT_TRUE(quartino.checked(dialog, ID_PLACE_OPTSINGLE));
    EXPECT_EQ(quartino.text(dialog, ID_PLACE_TXTDX), L"");
    EXPECT_EQ(quartino.text(dialog, ID_PLACE_TXTDY), L"");
    quartino.click(quartino.control(dialog, ID_PLACE_OPTBLOCK));
    ui::waitFor("the option", [&] { return quartino.checked(dialog, ID_PLACE_OPTBLOCK); });
    quartino.click(quartino.control(dialog, ID_PLACE_CMDOK));
    box = quartino.messageBox();
    EXPECT_EQ(quartino.messageOf(box), L" Abstände müssen größer als Null sein.");
    quartino.closeWithEnter(box);
    quartino.waitForKeys(dialog);
    before = quartino.commandsDone();
    ui::typeKey(VK_ESCAPE);
    quartino.waitForCommand(before);
    EXPECT_EQ(quartino.program().close(), 0u);
    EXPECT_EQ(key[L"Report"], 2);
    EXPECT_EQ(key[L"ColorOld"], 0);
    EXPECT_EQ(key[L"ColorNew"], 255);
}

// What a report shows of its rows, from top to bottom, and its height in pixels.
struct Shown {
    std::wstring top;
    std::vector<std::wstring> rows;
    int height = 0;
};

Shown shownBy(HWND dialog) {
    Shown shown{QuartinoProcess::text(dialog, ID_REPORT_LBLTOP), {}, 0};
    LONG bottom = QuartinoProcess::placeIn(dialog, ID_REPORT_LBLTOP).bottom;
    for (const auto& [count, text] : {std::pair<int, int>{ID_REPORT_LBLNUM1, ID_REPORT_LBLTEXT1},
                                      {ID_REPORT_LBLNUM2, ID_REPORT_LBLTEXT2},
                                      {ID_REPORT_LBLNUM3, ID_REPORT_LBLTEXT3}}) {
        EXPECT_EQ(QuartinoProcess::visible(dialog, count), QuartinoProcess::visible(dialog, text));
        if (!QuartinoProcess::visible(dialog, count))
            continue;
        shown.rows.push_back(QuartinoProcess::text(dialog, count) +
                             QuartinoProcess::text(dialog, text));
        const RECT number = QuartinoProcess::placeIn(dialog, count);
        const RECT words = QuartinoProcess::placeIn(dialog, text);
        EXPECT_EQ(number.top, words.top);
        EXPECT_LE(number.right, words.left);
        EXPECT_GE(number.top, bottom);
        bottom = number.bottom;
    }
    for (const int id : {ID_REPORT_CHKNOREPORT, ID_REPORT_LBLOPTION, ID_REPORT_CMDOK}) {
        const RECT place = QuartinoProcess::placeIn(dialog, id);
        EXPECT_GE(place.top, bottom);
        bottom = place.bottom;
    }
    RECT client{}, whole{};
    GetClientRect(dialog, &client);
    EXPECT_LE(bottom, client.bottom);
    GetWindowRect(dialog, &whole);
    shown.height = static_cast<int>(whole.bottom - whole.top);
    return shown;
}

TEST_F(JourneyTest, TheReportShowsTheRowsThatCount) {
    const std::filesystem::path outline = file(L"Umriss.txt");
    writeBytes(outline, "4\r\n0\t20\r\n4\t20\r\n4\t24\r\n0\t24\r\nend\r\n");
    loadDrawing({element(17, 3, 0), element(18, 3, 10)});
    QuartinoProcess quartino(folder);
    const auto row = [](HWND dialog) {
        return QuartinoProcess::placeIn(dialog, ID_REPORT_LBLNUM1);
    };

    // One room, set down.
    writeList(file(L"one.txt"), {{L"Neu", L"16"}});
    open(quartino, file(L"one.txt"));
    auto before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, exportLine);
    HWND dialog = quartino.dialog(reportTitle);
    const Shown one = shownBy(dialog);
    EXPECT_EQ(one.top, L" Es wurde");
    EXPECT_THAT(one.rows, ElementsAre(L"1 neuer Raum abgesetzt"));
    EXPECT_EQ(QuartinoProcess::placeIn(dialog, ID_REPORT_LBLNUM3).top, row(dialog).top);
    EXPECT_FALSE(quartino.checked(dialog, ID_REPORT_CHKNOREPORT));
    quartino.picture(dialog, "report-one");
    // Nothing is called off by Escape; Enter closes, whatever has the focus.
    ui::typeKey(VK_ESCAPE);
    quartino.keysWereHandled(dialog);
    EXPECT_TRUE(IsWindowVisible(dialog));
    ui::typeKey(VK_RETURN);
    quartino.waitForCommand(before);

    // Rooms read from the drawing and written back: updated ones only.
    loadDrawing({element(17, 3, 0), element(18, 3, 10)});
    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, importLine);
    quartino.waitForCommand(before);
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Flur 17", L"Flur 18"));
    quartino.picture(quartino.main(), "main-imported");
    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, exportLine);
    dialog = quartino.dialog(reportTitle);
    const Shown updated = shownBy(dialog);
    EXPECT_EQ(updated.top, L" Es wurden");
    EXPECT_THAT(updated.rows, ElementsAre(L"2 Räume aktualisiert"));
    EXPECT_EQ(updated.height, one.height);
    quartino.picture(dialog, "report-updated");
    ui::typeKey(VK_RETURN);
    quartino.waitForCommand(before);

    // Each kind: an element of the drawing, an outline of its own, and two to be set down.
    writeList(file(L"all.txt"), {{L"alt", L"13", outline.wstring(), L"0", L"0", L"17-K3"},
                                 {L"lagerichtig", L"16", outline.wstring(), L"0", L"0", L""},
                                 {L"neu 1", L"16"},
                                 {L"neu 2", L"16"}});
    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, openLine);
    quartino.giveFileName(quartino.fileDialog(), file(L"all.txt").wstring());
    // What was read from the drawing counts as unsaved.
    const HWND box = quartino.messageBox();
    EXPECT_EQ(quartino.messageOf(box), L" Sollen Ihre Änderungen gespeichert werden?");
    quartino.click(GetDlgItem(box, IDNO));
    quartino.waitForCommand(before);
    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, exportLine);
    dialog = quartino.dialog(reportTitle);
    const Shown all = shownBy(dialog);
    EXPECT_EQ(all.top, L" Es wurden");
    EXPECT_THAT(all.rows, ElementsAre(L"1 Raum aktualisiert", L"1 neuer Raum lagerichtig erzeugt",
                                      L"2 neue Räume abgesetzt"));
    // A row is a quarter of an inch.
    const HDC screen = GetDC(nullptr);
    const int pitch = GetDeviceCaps(screen, LOGPIXELSY) / 4;
    ReleaseDC(nullptr, screen);
    EXPECT_EQ(all.height, one.height + 2 * pitch);
    quartino.picture(dialog, "report-all");
    quartino.click(quartino.control(dialog, ID_REPORT_CHKNOREPORT));
    ui::waitFor("the mark", [&] { return quartino.checked(dialog, ID_REPORT_CHKNOREPORT); });
    quartino.click(quartino.control(dialog, ID_REPORT_CMDOK));
    quartino.waitForCommand(before);

    // From now on there is none, and the options know it.
    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, exportLine);
    quartino.waitForCommand(before);
    quartino.chooseByKeys(extrasMenu, 0);
    dialog = quartino.dialog(optionsTitle);
    EXPECT_FALSE(quartino.checked(dialog, ID_PLACE_CHKUPDATE));
    before = quartino.commandsDone();
    ui::typeKey(VK_ESCAPE);
    quartino.waitForCommand(before);
}

TEST_F(JourneyTest, TheReportTakesTheShapeOfItsCounts) {
    const std::filesystem::path outline = file(L"Umriss.txt");
    writeBytes(outline, "4\r\n0\t20\r\n4\t20\r\n4\t24\r\n0\t24\r\nend\r\n");
    QuartinoProcess quartino(folder);
    struct Case {
        int updated, atPosition, setDown;
        std::wstring top;
        std::vector<std::wstring> rows;
    };
    int height[4] = {};
    for (const Case& c : std::vector<Case>{
             {1, 0, 0, L" Es wurde", {L"1 Raum aktualisiert"}},
             {0, 1, 0, L" Es wurde", {L"1 neuer Raum lagerichtig erzeugt"}},
             {0, 0, 3, L" Es wurden", {L"3 neue Räume abgesetzt"}},
             {1,
              1,
              0,
              L" Es wurden",
              {L"1 Raum aktualisiert", L"1 neuer Raum lagerichtig erzeugt"}},
             {2, 0, 1, L" Es wurden", {L"2 Räume aktualisiert", L"1 neuer Raum abgesetzt"}},
             {0,
              3,
              5,
              L" Es wurden",
              {L"3 neue Räume lagerichtig erzeugt", L"5 neue Räume abgesetzt"}},
             {2,
              2,
              2,
              L" Es wurden",
              {L"2 Räume aktualisiert", L"2 neue Räume lagerichtig erzeugt",
               L"2 neue Räume abgesetzt"}}}) {
        SCOPED_TRACE(toAnsi(c.rows.front()));
        std::vector<ListedRoom> rooms;
        for (int i = 0; i < c.updated; ++i)
            rooms.push_back(
                {L"alt", L"13", outline.wstring(), L"0", L"0", std::to_wstring(17 + i) + L"-K3"});
        for (int i = 0; i < c.atPosition; ++i)
            rooms.push_back({L"lagerichtig", L"16", outline.wstring(), L"0", L"0"});
        for (int i = 0; i < c.setDown; ++i)
            rooms.push_back({L"neu", L"16"});
        writeList(file(L"rooms.txt"), rooms);
        loadDrawing({element(17, 3, 0), element(18, 3, 10)});
        open(quartino, file(L"rooms.txt"));

        const auto before = quartino.commandsDone();
        quartino.chooseByKeys(fileMenu, exportLine);
        const HWND dialog = quartino.dialog(reportTitle);
        const Shown shown = shownBy(dialog);
        EXPECT_EQ(shown.top, c.top);
        EXPECT_EQ(shown.rows, c.rows);
        int& usual = height[c.rows.size()];
        if (usual == 0)
            usual = shown.height;
        EXPECT_EQ(shown.height, usual) << "as high as any other report with that many rows";
        // The rows have the colours that the rooms get in the drawing.
        const std::pair<int, int> colours[] = {
            {ID_REPORT_LBLTEXT1, 0}, {ID_REPORT_LBLTEXT2, 0}, {ID_REPORT_LBLTEXT3, 200}};
        for (const auto& [text, redness] : colours) {
            if (!quartino.visible(dialog, text))
                continue;
            const HWND label = quartino.control(dialog, text);
            ui::waitFor("the colour of a row",
                        [&] { return (quartino.rednessOf(label) > 100) == (redness > 100); });
        }
        ui::typeKey(VK_RETURN);
        quartino.waitForCommand(before);
    }
    EXPECT_LT(height[1], height[2]);
    EXPECT_EQ(height[2] - height[1], height[3] - height[2]);
}

TEST_F(JourneyTest, AColourThatIsChosenIsTheRoomsColour) {
    constexpr int firstColours = 0x2D0; // the field of the system's basic colours
    const std::filesystem::path outline = file(L"Umriss.txt");
    writeBytes(outline, "4\r\n0\t20\r\n4\t20\r\n4\t24\r\n0\t24\r\nend\r\n");
    writeList(file(L"list.txt"), {{L"neu", L"16"}, {L"alt", L"16", outline.wstring(), L"0", L"0"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    ui::waitFor("the colours of the rows",
                [&] { return quartino.rednessOfRow(0) > 150 && quartino.rednessOfRow(1) < 50; });

    quartino.chooseByKeys(extrasMenu, 0);
    const HWND dialog = quartino.dialog(optionsTitle);
    ui::typeKey(VK_TAB, {VK_CONTROL});
    ui::waitFor("the other tab", [&] { return quartino.visible(dialog, ID_PLACE_CHKUPDATE); });
    quartino.click(quartino.control(dialog, ID_PLACE_CMDWITHCOORDINATES));
    const HWND colours = quartino.ownedBy(dialog);
    quartino.clickAt(quartino.control(colours, firstColours), 5, 5);
    quartino.click(quartino.control(colours, IDOK));
    quartino.waitUntilGone(colours);
    quartino.waitForKeys(dialog);
    const HWND button = quartino.control(dialog, ID_PLACE_CMDWITHCOORDINATES);
    ui::waitFor("the colour on the button", [&] { return quartino.rednessOf(button) == 127; });
    const auto before = quartino.commandsDone();
    ui::typeKey(VK_RETURN);
    quartino.waitForCommand(before);
    ui::waitFor("the colours of the rows", [&] { return quartino.rednessOfRow(1) > 100; });
    EXPECT_EQ(quartino.program().close(), 0u);
    EXPECT_EQ(key[L"ColorOld"], RGB(255, 128, 128));
    EXPECT_EQ(key[L"ColorNew"], 255);
}

// --- keys and places
// ------------------------------------------------------------------------------

TEST_F(JourneyTest, F1IsHarmlessWithoutAHelpFileAndEscapeLeavesEveryDialog) {
    QuartinoProcess quartino(folder);
    ui::typeKey(VK_F1);
    auto before = quartino.commandsDone();
    quartino.chooseByKeys(editMenu, addLine);
    const HWND room = quartino.dialog(addTitle);
    ui::typeKey(VK_F1);
    quartino.tabTo(room, ID_ROOM_TXTNAME);
    quartino.tabTo(room, ID_ROOM_TXTFUNCTION);
    quartino.tabTo(room, ID_ROOM_TXTAREA);
    quartino.tabTo(room, ID_ROOM_CMDGEOMETRY);
    ui::typeKey(VK_SPACE);
    const HWND geometry = quartino.dialog(geometryTitle);
    ui::typeKey(VK_F1);
    quartino.keysWereHandled(geometry);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), room, geometry}));
    pressKey(VK_ESCAPE);
    quartino.keysWereHandled(geometry);
    EXPECT_TRUE(IsWindowVisible(geometry)) << "acts when it is released";
    releaseKey(VK_ESCAPE);
    quartino.waitUntilGone(geometry);
    quartino.waitForKeys(room);
    quartino.tabTo(room, ID_ROOM_CBOENCLOSURETYPE);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), room})) << "the Escape of another dialog";

    // Pressed over an open list, Escape closes the list; released, it leaves the dialog.
    const HWND list = quartino.control(room, ID_ROOM_CBOENCLOSURETYPE);
    ui::typeKey(VK_F4);
    ui::waitFor("the open list",
                [&] { return SendMessageW(list, CB_GETDROPPEDSTATE, 0, 0) != FALSE; });
    quartino.picture(room, "room-list");
    ui::typeKey(VK_ESCAPE);
    quartino.waitForCommand(before);

    quartino.chooseByKeys(extrasMenu, 0);
    const HWND options = quartino.dialog(optionsTitle);
    ui::typeKey(VK_F1);
    quartino.keysWereHandled(options);
    EXPECT_TRUE(quartino.onlyShows({quartino.main(), options}));
    before = quartino.commandsDone();
    ui::typeKey(VK_ESCAPE);
    quartino.waitForCommand(before);
    EXPECT_TRUE(quartino.onlyShows({quartino.main()}));
    // The help control was not even asked.
    EXPECT_THAT(folder.helpCalls(), IsEmpty());
}

TEST_F(JourneyTest, TwoStartsRememberThePlaceOfTheWindow) {
    const auto placeOf = [](HWND window) {
        RECT place{};
        GetWindowRect(window, &place);
        return place;
    };
    const RECT moved{120, 90, 120 + 840, 90 + 480};
    const auto waitForPlace = [&](HWND window) {
        ui::waitFor("the place of the window", [&] {
            const RECT place = placeOf(window);
            return EqualRect(&place, &moved) != FALSE;
        });
    };
    {
        QuartinoProcess quartino(folder);
        EXPECT_FALSE(key.exists());
        SetWindowPos(quartino.main(), nullptr, 120, 90, 840, 480, SWP_NOZORDER | SWP_NOACTIVATE);
        waitForPlace(quartino.main());
        ui::typeKey(VK_F4, {VK_MENU});
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
    }
    {
        QuartinoProcess quartino(folder);
        waitForPlace(quartino.main());
        quartino.picture(quartino.main(), "main-second-start");
        // The last entry of the first menu ends the program as well.
        quartino.chooseByKeys(fileMenu, 6);
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
    }
}

} // namespace
} // namespace kalvrooms::testing
