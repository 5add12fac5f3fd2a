#include "ui/MainWindow.h"

#include <new>

#include "model/NumberText.h"

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST_F(MainWindow, ShowsTheMenusWithTheirTextsAndTheirKeys) {
    show();
    struct Entry {
        const wchar_t* name;
        const wchar_t* caption;
        const wchar_t* keys;
    };
    const Entry entries[] = {{L"mnuFile", L" &Datei", L""},
                             {L"mnuNew", L" &Neu ...", L"Strg+N"},
                             {L"mnuOpen", L" Öffnen ...", L"Strg+O"},
                             {L"mnuSave", L" &Speichern", L"Strg+S"},
                             {L"mnuSaveAS", L" Speichern &unter", L"Strg+Umschalt+S"},
                             {L"mnuImport", L" Räume &aus dem Teilbild lesen", L"Strg+L"},
                             {L"mnuExport", L" Räume im Teilbild erzeugen", L"Strg+E"},
                             {L"mnuEnd", L" Beenden", L""},
                             {L"mnuRecord", L" &Bearbeiten", L""},
                             {L"mnuAddRoom", L" Raum &hinzufügen ...", L"Einfg"},
                             {L"mnuModifyRoom", L" Raum &modifizieren ...", L"Eingabe, F2"},
                             {L"mnuDeleteRoom", L" Raum löschen", L"Entf"},
                             {L"mnuSortAscending", L" Aufsteigend sortieren", L"Strg+Nach oben"},
                             {L"mnuSortDescending", L" Absteigend sortieren", L"Strg+Nach unten"},
                             {L"mnuExtras", L" &Extras", L""},
                             {L"mnuPlace", L" Optionen ...", L""}};
    for (const auto& [name, caption, keys] : entries) {
        EXPECT_EQ(form().MenuNamed(name).Caption(), caption);
        EXPECT_EQ(form().MenuNamed(name).Shortcut(), keys);
    }
    for (const wchar_t* separator : {L"mnuSep1", L"mnusep2", L"mnusep3", L"mnusep4"})
        EXPECT_TRUE(form().MenuNamed(separator).IsSeparator());
}

TEST_F(MainWindow, AKeyDoesWhatItsMenuEntryDoes) {
    show();
    addRooms(L"b", L"1");
    addRooms(L"a", L"1");
    const auto title = [this](int key) {
        std::wstring shown;
        desktop().OnModal(L"frmRoom", [&](HeadlessForm& dialog) {
            shown = dialog.Text();
            dialog.Click(L"cmdCancel");
        });
        form().PressKey(key);
        return shown;
    };
    EXPECT_EQ(title(Gui::KeyInsert), L" Raum hinzufügen ");
    EXPECT_EQ(title(Gui::KeyEnter), L" Raum modifizieren ");
    EXPECT_EQ(title(Gui::KeyF2), L" Raum modifizieren ");
    form().PressKey({Gui::KeyUpArrow, true});
    EXPECT_EQ(cell(1, 0), L"a");
    form().PressKey({Gui::KeyDownArrow, true});
    EXPECT_EQ(cell(1, 0), L"b");
    const auto fileDialogs = [this](const Gui::KeyStroke& keys) {
        desktop().CancelFileDialog();
        form().PressKey(keys);
        return desktop().FileDialogs().back().Save;
    };
    EXPECT_TRUE(fileDialogs({'S', true}));
    EXPECT_TRUE(fileDialogs({'S', true, true}));
    EXPECT_FALSE(fileDialogs({'O', true}));
    EXPECT_EQ(desktop().FileDialogs().size(), 3u);
    form().PressKey(Gui::KeyDelete);
    EXPECT_EQ(table().Cells().LastFilledRow(), 1);
    // Asks, and then the list is gone.
    form().PressKey({'N', true});
    EXPECT_THAT(prompts(), ElementsAre(savePrompt));
    EXPECT_EQ(table().Cells().LastFilledRow(), 0);
    form().PressKey({'L', true});
    form().PressKey({'E', true});
    EXPECT_THAT(prompts(), SizeIs(2));
}

TEST_F(MainWindow, TheTableStaysWhereItIsAfterModifyingAndTheOptions) {
    show();
    addRooms(L"1", L"60");
    const auto expectSamePlace = [this](int row) {
        EXPECT_EQ(table().Row(), row);
        EXPECT_EQ(table().Col(), 2);
        EXPECT_EQ(table().TopRow(), 20);
    };
    const auto go = [this](int row) {
        table().TopRow(20);
        table().Row(row);
        table().Col(2);
    };
    for (const wchar_t* button : {L"cmdOk", L"cmdCancel"}) {
        go(30);
        desktop().OnModal(L"frmRoom", [&](HeadlessForm& dialog) { dialog.Click(button); });
        form().ChooseMenu(L"mnuModifyRoom");
        expectSamePlace(30);
        go(80); // an empty row
        desktop().OnModal(L"frmPlace", [&](HeadlessForm& dialog) { dialog.Click(button); });
        form().ChooseMenu(L"mnuPlace");
        expectSamePlace(80);
    }
    // The order of the list comes back, and the room is found in it.
    go(1);
    form().ChooseMenu(L"mnuSortDescending");
    go(31);
    EXPECT_EQ(cell(31, 0), L"30");
    desktop().OnModal(L"frmRoom", [](HeadlessForm& dialog) { dialog.Click(L"cmdOk"); });
    form().ChooseMenu(L"mnuModifyRoom");
    EXPECT_EQ(cell(30, 0), L"30");
    expectSamePlace(30);
    form().ChooseMenu(L"mnuSortDescending");
    go(31);
    desktop().OnModal(L"frmPlace", [](HeadlessForm& dialog) { dialog.Click(L"cmdOk"); });
    form().ChooseMenu(L"mnuPlace");
    expectSamePlace(30);
}

TEST_F(MainWindow, AfterDeletingTheRoomThatStoodBelowIsTheCurrentOne) {
    show();
    addRooms(L"1", L"5");
    table().Row(2);
    form().ChooseMenu(L"mnuDeleteRoom");
    EXPECT_EQ(table().Row(), 2);
    EXPECT_EQ(cell(2, 0), L"3");
    form().ChooseMenu(L"mnuSortDescending"); // 5 4 3 1
    table().Row(2);
    form().ChooseMenu(L"mnuDeleteRoom"); // 1 3 5, and 3 was below 4
    EXPECT_EQ(cell(table().Row(), 0), L"3");
    form().ChooseMenu(L"mnuDeleteRoom");
    EXPECT_EQ(cell(table().Row(), 0), L"5");
    // Below the last one is none: the one above it then.
    form().ChooseMenu(L"mnuDeleteRoom");
    EXPECT_EQ(cell(table().Row(), 0), L"1");
    form().ChooseMenu(L"mnuDeleteRoom");
    EXPECT_EQ(table().Row(), 1);
    table().Row(40);
    form().ChooseMenu(L"mnuDeleteRoom");
    EXPECT_EQ(table().Row(), 40);
}

TEST_F(MainWindow, StepsAreTakenBackAndDoneAgainByKeysAndChangeTheList) {
    show();
    const Gui::KeyStroke undo{'Z', true};
    const Gui::KeyStroke redo{'Y', true};
    form().PressKey(undo);
    addRooms(L"1", L"3");
    table().Row(2);
    form().ChooseMenu(L"mnuDeleteRoom");
    desktop().OnModal(L"frmRoom", [](HeadlessForm& dialog) {
        dialog.Field(L"txtName").Text(L"Flur");
        dialog.Click(L"cmdOk");
    });
    form().ChooseMenu(L"mnuModifyRoom");
    const auto names = [this] { return cell(1, 0) + L"|" + cell(2, 0) + L"|" + cell(3, 0); };
    EXPECT_EQ(names(), L"1|Flur|");
    desktop().ChooseFile(file("list.txt"), 1);
    form().ChooseMenu(L"mnuSave");
    table().Row(1);
    form().PressKey(undo);
    EXPECT_EQ(names(), L"1|3|");
    EXPECT_EQ(table().Row(), 2);
    form().PressKey(undo);
    EXPECT_EQ(names(), L"1|2|3");
    EXPECT_EQ(table().Row(), 2);
    form().PressKey(undo);
    EXPECT_EQ(names(), L"||");
    form().PressKey(undo);
    for (const wchar_t* expected : {L"1|2|3", L"1|3|", L"1|Flur|", L"1|Flur|"}) {
        form().PressKey(redo);
        EXPECT_EQ(names(), expected);
    }
    // The list counts as changed.
    form().Close();
    EXPECT_THAT(prompts(), ElementsAre(savePrompt));
}

TEST_F(MainWindow, ANewListHasNoStepsToTakeBack) {
    show();
    addRooms(L"1", L"3");
    form().ChooseMenu(L"mnuNew");
    form().PressKey({'Z', true});
    EXPECT_EQ(table().Cells().LastFilledRow(), 0);
    addRooms(L"1", L"3");
    desktop().ChooseFile(writeList("other.txt", 2), 1);
    form().ChooseMenu(L"mnuOpen");
    form().PressKey({'Z', true});
    EXPECT_EQ(table().Cells().LastFilledRow(), 2);
    form().Close();
    EXPECT_THAT(prompts(), SizeIs(2)) << "what was opened did not change";
}

TEST_F(MainWindow, ACancelledRoomDialogShowsWhatTheGeometryDialogChanged) {
    show();
    addRooms(L"1", L"2");
    table().Row(2);
    EXPECT_EQ(cell(2, 7), L"quadratisch");
    desktop().OnModal(L"frmGeometry", [](HeadlessForm& dialog) {
        dialog.Click(L"optXDirection");
        dialog.Type(L"txtDx", L"2");
        dialog.Click(L"cmdOk");
    });
    desktop().OnModal(L"frmRoom", [](HeadlessForm& dialog) {
        dialog.Click(L"cmdGeometry");
        dialog.Click(L"cmdCancel");
    });
    form().ChooseMenu(L"mnuModifyRoom");
    EXPECT_EQ(cell(2, 7), L"rechteckig");
    EXPECT_EQ(table().Row(), 2);
    form().PressKey({'Z', true});
    EXPECT_EQ(cell(2, 7), L"quadratisch");
}

TEST_F(MainWindow, EveryChangeOfTheLanguageStartsFromTheGermanTexts) {
    const std::wstring folder = platform_.environment.Folder;
    platform_.libraries.Put(folder + L"\\zorvinta_eng.dll",
                            {{101, L" Rooms"}, {104, L" &File"}, {250, L"extra"}});
    platform_.libraries.Put(folder + L"\\zorvinta_fra.dll", {{101, L" Pièces"}});
    main_ = std::make_unique<frmMain>(platform_.Bundle(), host_, spreadsheets_);
    const std::pair<const wchar_t*, const wchar_t*> languages[] = {{L"fra", L" Pièces"},
                                                                   {L"", L" Quartino"},
                                                                   {L"xxx", L" Quartino"},
                                                                   {L"de", L" Quartino"},
                                                                   {L"ita", L" Quartino"}};
    for (const auto& [code, first] : languages) {
        main_->SetLang(L"eng");
        EXPECT_EQ(main_->GetText(1), L" Rooms");
        main_->SetLang(code);
        EXPECT_EQ(main_->GetText(1), first);
        EXPECT_EQ(main_->GetText(4), L" &Datei");
        EXPECT_EQ(main_->GetText(150), L"");
    }
}

TEST_F(MainWindow, CarriesTheProjectInItsCaption) {
    show();
    EXPECT_EQ(form().Text(), L" Quartino - Schule");
    host_.drawing.project.name = L"RaumProgramm";
    form().ChooseMenu(L"mnuNew");
    EXPECT_EQ(form().Text(), L" Quartino");
}

TEST_F(MainWindow, AnEmptyListShowsAHundredRowsWithOnlyTheHeaderFilled) {
    show();
    EXPECT_EQ(table().Cells().Rows(), 100);
    EXPECT_EQ(table().Cells().Columns(), 11);
    EXPECT_EQ(cell(0, 0), L" Bezeichnung ");
    EXPECT_EQ(cell(0, 6), L" Flächenart");
    EXPECT_EQ(cell(0, 7), L" Geometrie");
    EXPECT_EQ(cell(0, 8), L"ID");
    EXPECT_EQ(cell(0, 9), L"");
    EXPECT_EQ(cell(1, 0), L"");
    EXPECT_EQ(table().Row(), 1);
    EXPECT_EQ(table().Col(), 0);
    for (int column = 0; column < 7; ++column)
        EXPECT_EQ(table().Cells().CellAlignment(0, column), Gui::Alignment::Centre);
}

TEST_F(MainWindow, ARoomFillsItsRow) {
    HandInUserLocale([] { return NumberLocale::German(); });
    show();
    addRooms(L"Büro 1", L"2");
    HandInUserLocale(nullptr);
    EXPECT_EQ(cell(1, 0), L"Büro 1");
    EXPECT_EQ(cell(1, 2), L"16");
    EXPECT_EQ(cell(1, 3), L"EG");
    EXPECT_EQ(cell(1, 7), L"quadratisch");
    EXPECT_EQ(cell(1, 8), L"2");
    EXPECT_EQ(cell(2, 0), L"Büro2");
    EXPECT_EQ(cell(2, 8), L"3");
    EXPECT_EQ(cell(3, 0), L"");
    for (int column = 0; column < 7; ++column) {
        EXPECT_EQ(table().Cells().TextColour(1, column), 255);
        EXPECT_EQ(table().Cells().CellAlignment(1, column), Gui::Alignment::Centre);
    }
    EXPECT_EQ(table().Cells().TextColour(1, 7), std::nullopt);
    EXPECT_EQ(table().Row(), 1);
    EXPECT_EQ(table().Col(), 0);
    EXPECT_TRUE(table().Redrawing());
}

TEST_F(MainWindow, RoomsFromTheDrawingHaveTheColourOfExistingRooms) {
    host_.drawing.project.folder = folder_.path().wstring();
    Element element;
    element.identity = {17, 3, L"K3"};
    element.name = L"a";
    element.storey = L"EG";
    element.outline = {{0, 0}, {1, 0}, {1, 1}};
    host_.elements.push_back(element);
    show();
    form().ChooseMenu(L"mnuImport");
    EXPECT_EQ(cell(1, 0), L"a");
    EXPECT_EQ(cell(1, 7), L"polygonal");
    EXPECT_EQ(table().Cells().TextColour(1, 0), 0);
}

TEST_F(MainWindow, RowsGrowWithTheList) {
    show();
    for (const auto& [rooms, rows] : {std::pair{99, 100}, {100, 101}, {151, 152}}) {
        desktop().ChooseFile(writeList("list.txt", rooms), 1);
        form().ChooseMenu(L"mnuOpen");
        EXPECT_EQ(table().Cells().Rows(), rows);
        EXPECT_EQ(cell(rooms, 0), L"R" + std::to_wstring(rooms));
    }
}

TEST_F(MainWindow, AListOverTheLimitIsShownWholeAfterAWarningAndAddingWarnsAgain) {
    show();
    addRooms(L"R1", L"150");
    EXPECT_THAT(prompts(), IsEmpty());
    addRooms(L"R1", L"1");
    EXPECT_THAT(prompts(), ElementsAre(limitPrompt));
    desktop().AnswerNext(Gui::Answer::No);
    desktop().ChooseFile(writeList("longer.txt", 151), 1);
    form().ChooseMenu(L"mnuOpen");
    EXPECT_THAT(prompts(), ElementsAre(limitPrompt, savePrompt, limitPrompt));
    EXPECT_EQ(table().Cells().Rows(), 152);
    main_->UpdateTable(false);
    EXPECT_THAT(prompts(), SizeIs(3));
    // An addition that was called off warns, too.
    desktop().OnModal(L"frmRoom", [](HeadlessForm& dialog) { dialog.Click(L"cmdCancel"); });
    form().ChooseMenu(L"mnuAddRoom");
    ASSERT_THAT(prompts(), SizeIs(4));
    const Gui::Message& warning = desktop().Messages()[3];
    EXPECT_EQ(warning.Prompt, limitPrompt);
    EXPECT_EQ(warning.Symbol, Gui::Message::Icon::Exclamation);
    EXPECT_EQ(warning.ButtonSet, Gui::Message::Buttons::Ok);
    EXPECT_EQ(warning.Title, L" Quartino");
}

TEST_F(MainWindow, RowsBehindTheRoomsAreEmptyAndCentred) {
    show();
    const auto expectEmptyFrom = [this](int first) {
        ASSERT_EQ(table().Cells().Rows(), 100);
        for (int row = first; row < 100; ++row) {
            for (int column = 0; column < 7; ++column) {
                EXPECT_EQ(cell(row, column), L"") << row << ", " << column;
                EXPECT_EQ(table().Cells().TextColour(row, column), std::nullopt) << row;
                EXPECT_EQ(table().Cells().CellAlignment(row, column), Gui::Alignment::Centre)
                    << row << ", " << column;
            }
            EXPECT_EQ(cell(row, 8), L"") << row;
        }
    };
    desktop().ChooseFile(writeList("list.txt", 99), 1);
    form().ChooseMenu(L"mnuOpen");
    EXPECT_EQ(cell(99, 0), L"R99");
    desktop().ChooseFile(writeList("shorter.txt", 2), 1);
    form().ChooseMenu(L"mnuOpen");
    EXPECT_EQ(cell(2, 0), L"R2");
    expectEmptyFrom(3);
    form().ChooseMenu(L"mnuNew");
    expectEmptyFrom(1);
}

TEST_F(MainWindow, TheTableLeavesRoomForFrameAndMenu) {
    show();
    EXPECT_EQ(table().Width(), 11000 - 135);
    EXPECT_EQ(table().Height(), 7500 - 825);
    // Surplus 10865 - 9600 = 1265, a seventh is 180.7.
    EXPECT_EQ(table().ColWidth(0), 1500 + 181);
    EXPECT_EQ(table().ColWidth(1), 2400 + 181);
    EXPECT_EQ(table().ColWidth(2), 1000 + 181);
    EXPECT_EQ(table().ColWidth(4), 1400 + 181);
    for (int column = 7; column < 11; ++column)
        EXPECT_EQ(table().ColWidth(column), 0);
    EXPECT_EQ(table().Bars(), Gui::ScrollBars::Vertical);
    form().DragTo(9600 + 135, 825);
    EXPECT_EQ(table().ColWidth(0), 1500);
    EXPECT_EQ(table().Bars(), Gui::ScrollBars::Vertical);
    EXPECT_EQ(table().Height(), 0);
    form().DragTo(9600 + 134, 800);
    EXPECT_EQ(table().Bars(), Gui::ScrollBars::Both);
    EXPECT_EQ(table().ColWidth(3), 1000);
    form().DragTo(100, 100);
    EXPECT_EQ(table().Width(), 0);
    EXPECT_EQ(table().Height(), 0);
}

TEST_F(MainWindow, AVeryWideWindowKeepsItsColumns) {
    show();
    form().DragTo(60000, 7500);
    EXPECT_EQ(table().ColWidth(0), 1500 + 4681); // a seventh of 32767
    EXPECT_THAT(prompts(), IsEmpty());
}

TEST_F(MainWindow, AHeaderClickSortsTheTableButNotTheList) {
    show();
    for (const wchar_t* name : {L"10", L"9", L"b", L"A"})
        addRooms(name, L"1");
    form().ClickCell(L"grdRooms", Gui::MouseButton::Left, 0, 0);
    EXPECT_EQ(cell(1, 0), L"9");
    EXPECT_EQ(cell(2, 0), L"10");
    EXPECT_EQ(cell(3, 0), L"A");
    EXPECT_EQ(cell(4, 0), L"b");
    EXPECT_EQ(cell(5, 0), L"");
    form().ChooseMenu(L"mnuSortDescending");
    EXPECT_EQ(cell(1, 0), L"b");
    EXPECT_EQ(cell(4, 0), L"9");
    main_->UpdateTable(false);
    EXPECT_EQ(cell(1, 0), L"10");
}

TEST_F(MainWindow, GeometryAndIdAreNeverSortKeys) {
    show();
    for (const wchar_t* name : {L"b", L"a"})
        addRooms(name, L"1");
    table().Col(8);
    form().ChooseMenu(L"mnuSortAscending");
    EXPECT_EQ(table().Col(), 0);
    EXPECT_EQ(cell(1, 0), L"a");
}

TEST_F(MainWindow, AColumnBeforeTheFirstCountsAsTheFirstWhenSorting) {
    show();
    for (const wchar_t* name : {L"b", L"a", L"c"})
        addRooms(name, L"1");
    table().Col(-1);
    form().ChooseMenu(L"mnuSortAscending");
    EXPECT_EQ(table().Col(), 0);
    EXPECT_EQ(cell(1, 0), L"a");
    EXPECT_EQ(cell(3, 0), L"c");
    table().Col(-1);
    form().ChooseMenu(L"mnuSortDescending");
    EXPECT_EQ(table().Col(), 0);
    EXPECT_EQ(cell(1, 0), L"c");
    EXPECT_EQ(cell(3, 0), L"a");
    EXPECT_THAT(prompts(), IsEmpty());
}

TEST_F(MainWindow, SortingASingleRoomLeavesTheCurrentRowAlone) {
    show();
    addRooms(L"a", L"1");
    form().ClickCell(L"grdRooms", Gui::MouseButton::Left, 0, 3);
    EXPECT_EQ(table().Row(), 0);
    EXPECT_EQ(table().Col(), 3);
    for (const wchar_t* menu : {L"mnuSortAscending", L"mnuSortDescending"}) {
        table().Row(5);
        form().ChooseMenu(menu);
        EXPECT_EQ(table().Row(), 5) << ::testing::PrintToString(menu);
    }
    EXPECT_EQ(cell(1, 0), L"a");
    // With a second room, the rooms are selected from the first row on.
    addRooms(L"b", L"1");
    form().ClickCell(L"grdRooms", Gui::MouseButton::Left, 0, 3);
    EXPECT_EQ(table().Row(), 1);
}

TEST_F(MainWindow, SortingDoesNotMakeTheListDirty) {
    show();
    desktop().ChooseFile(writeList("list.txt", 3), 1);
    form().ChooseMenu(L"mnuOpen");
    EXPECT_FALSE(newAsks());
    desktop().ChooseFile(file("list.txt"), 1);
    form().ChooseMenu(L"mnuOpen");
    form().ChooseMenu(L"mnuSortDescending");
    EXPECT_FALSE(newAsks());
}

// Also without a room on its row, when the table is built anew, and when the dialog is called off.
TEST_F(MainWindow, DeletingModifyingAndAddingMakeTheListDirty) {
    show();
    struct Case {
        const wchar_t* menu;
        int row;
        const wchar_t* button; // of the dialog, if one comes up
    };
    for (const auto& [menu, row, button] :
         {Case{L"mnuDeleteRoom", 1, nullptr}, Case{L"mnuDeleteRoom", 0, nullptr},
          Case{L"mnuDeleteRoom", 50, nullptr}, Case{L"mnuModifyRoom", 1, L"cmdOk"},
          Case{L"mnuModifyRoom", 1, L"cmdCancel"}, Case{L"mnuAddRoom", 1, L"cmdCancel"}}) {
        SCOPED_TRACE(::testing::PrintToString(std::wstring(menu)) + std::to_string(row));
        desktop().ChooseFile(writeList("list.txt", 3), 1);
        form().ChooseMenu(L"mnuOpen");
        if (button) {
            desktop().OnModal(L"frmRoom", [name = button](HeadlessForm& dialog) {
                dialog.Field(L"txtArea").Text(L"99");
                dialog.Click(name);
            });
        } else {
            form().ChooseMenu(L"mnuSortDescending");
            ASSERT_EQ(cell(1, 0), L"R3");
        }
        table().Row(row);
        form().ChooseMenu(menu);
        EXPECT_EQ(cell(1, 0), L"R1");
        EXPECT_EQ(cell(1, 2), button && std::wstring(button) == L"cmdOk" ? L"99" : L"16");
        EXPECT_EQ(cell(3, 0), row == 1 && !button ? L"" : L"R3");
        EXPECT_EQ(cell(4, 0), L"");
        EXPECT_TRUE(newAsks());
        EXPECT_EQ(prompts().back(), savePrompt);
    }
}

TEST_F(MainWindow, OpeningAndSavingUnderAnotherNameMakeAChangedListClean) {
    show();
    addRooms(L"a", L"1");
    desktop().AnswerNext(Gui::Answer::No);
    desktop().ChooseFile(writeList("list.txt", 3), 1);
    form().ChooseMenu(L"mnuOpen");
    EXPECT_THAT(prompts(), ElementsAre(savePrompt));
    EXPECT_FALSE(newAsks());
    EXPECT_EQ(cell(1, 0), L"");
    addRooms(L"a", L"1");
    desktop().ChooseFile(file("mine.txt"), 1);
    form().ChooseMenu(L"mnuSaveAS");
    EXPECT_FALSE(newAsks());
    EXPECT_EQ(cell(1, 0), L"");
}

TEST_F(MainWindow, TheRightButtonOpensTheEditMenuAndDoesNotSort) {
    show();
    addRooms(L"b", L"1");
    addRooms(L"a", L"1");
    form().ClickCell(L"grdRooms", Gui::MouseButton::Right, 0, 0);
    EXPECT_THAT(desktop().Popups(), ElementsAre(L"mnuRecord"));
    EXPECT_EQ(cell(1, 0), L"b");
}

TEST_F(MainWindow, ARightClickTakesTheDoubleClickBehindItAway) {
    show();
    addRooms(L"a", L"1");
    const std::size_t before = desktop().ModalForms().size();
    for (const int row : {1, 5}) {
        form().ClickCell(L"grdRooms", Gui::MouseButton::Left, row, 0);
        form().ClickCell(L"grdRooms", Gui::MouseButton::Right, row, 0);
        EXPECT_EQ(table().Row(), row);
        desktop().Dispatch(table().DoubleClick);
        EXPECT_THAT(desktop().ModalForms(), SizeIs(before)) << row;
    }
    EXPECT_THAT(desktop().Popups(), ElementsAre(L"mnuRecord", L"mnuRecord"));
    // The left button gives it back.
    desktop().OnModal(L"frmRoom", [](HeadlessForm& dialog) { dialog.Click(L"cmdCancel"); });
    form().DoubleClickCell(L"grdRooms", 1, 0);
    EXPECT_THAT(desktop().ModalForms(), SizeIs(before + 1));
}

TEST_F(MainWindow, ADoubleClickModifiesARoomOrAddsOne) {
    show();
    addRooms(L"a", L"1");
    std::vector<std::wstring> captions;
    for (int i = 0; i < 2; ++i)
        desktop().OnModal(L"frmRoom", [&](HeadlessForm& dialog) {
            captions.push_back(dialog.Text());
            dialog.Click(L"cmdCancel");
        });
    form().DoubleClickCell(L"grdRooms", 1, 0);
    form().DoubleClickCell(L"grdRooms", 5, 0);
    EXPECT_THAT(captions, ElementsAre(L" Raum modifizieren ", L" Raum hinzufügen "));
    form().ClickCell(L"grdRooms", Gui::MouseButton::Left, 0, 0);
    table().DoubleClick();
    EXPECT_THAT(captions, SizeIs(2));
}

TEST_F(MainWindow, ModifyingChangesTheRoomOfTheSortedRow) {
    show();
    addRooms(L"b", L"1");
    addRooms(L"a", L"1");
    form().ChooseMenu(L"mnuSortAscending");
    table().Row(2);
    desktop().OnModal(L"frmRoom", [&](HeadlessForm& dialog) {
        EXPECT_EQ(dialog.Field(L"txtName").Text(), L"b");
        dialog.Field(L"txtName").Text(L"c");
        dialog.Click(L"cmdOk");
    });
    form().ChooseMenu(L"mnuModifyRoom");
    EXPECT_EQ(cell(1, 0), L"c");
    EXPECT_EQ(cell(2, 0), L"a");
}

TEST_F(MainWindow, TheAddTemplateKeepsWhatTheLastDialogPutIntoIt) {
    show();
    addRooms(L"Büro 1", L"3", L"OG");
    desktop().OnModal(L"frmRoom", [&](HeadlessForm& dialog) {
        EXPECT_EQ(dialog.Field(L"txtName").Text(), L"Büro4");
        EXPECT_EQ(dialog.Field(L"txtStoryCode").Text(), L"OG");
        EXPECT_EQ(dialog.Field(L"txtQuantity").Text(), L"1");
        dialog.Click(L"cmdCancel");
    });
    form().ChooseMenu(L"mnuAddRoom");
}

TEST_F(MainWindow, AddingAfterModifyingStartsFromTheTemplateAgain) {
    show();
    addRooms(L"Büro 1", L"1");
    desktop().OnModal(L"frmRoom", [](HeadlessForm& dialog) {
        dialog.Field(L"txtName").Text(L"Flur");
        dialog.Click(L"cmdOk");
    });
    form().ChooseMenu(L"mnuModifyRoom");
    desktop().OnModal(L"frmRoom", [](HeadlessForm& dialog) {
        EXPECT_EQ(dialog.Text(), L" Raum hinzufügen ");
        EXPECT_EQ(dialog.Field(L"txtName").Text(), L"Büro2");
        EXPECT_TRUE(dialog.Field(L"txtQuantity").Enabled());
        dialog.Field(L"txtName").Text(L"Lager");
        dialog.Click(L"cmdOk");
    });
    form().ChooseMenu(L"mnuAddRoom");
    EXPECT_EQ(cell(1, 0), L"Flur");
    EXPECT_EQ(cell(2, 0), L"Lager");
    EXPECT_EQ(cell(3, 0), L"");
}

TEST_F(MainWindow, DeletingTakesTheSelectedRoomWithoutAsking) {
    show();
    addRooms(L"1", L"3");
    table().Row(2);
    form().ChooseMenu(L"mnuDeleteRoom");
    EXPECT_THAT(prompts(), IsEmpty());
    EXPECT_EQ(cell(1, 0), L"1");
    EXPECT_EQ(cell(2, 0), L"3");
    EXPECT_EQ(cell(3, 0), L"");
    table().Row(50);
    form().ChooseMenu(L"mnuDeleteRoom");
    table().Row(0);
    form().ChooseMenu(L"mnuDeleteRoom");
    EXPECT_EQ(cell(2, 0), L"3");
    EXPECT_THAT(prompts(), IsEmpty());
}

TEST_F(MainWindow, OpeningAsksForAFileInTheProjectFolderAndShowsItsRooms) {
    host_.drawing.project.folder = L"C:\\Projekte";
    show();
    desktop().ChooseFile(writeList("Liste.txt", 2), 1);
    form().ChooseMenu(L"mnuOpen");
    ASSERT_THAT(desktop().FileDialogs(), SizeIs(1));
    const auto& asked = desktop().FileDialogs()[0];
    EXPECT_FALSE(asked.Save);
    EXPECT_EQ(asked.Asked.FileName, L"C:\\Projekte\\*.xls");
    EXPECT_EQ(asked.Asked.Filter, L"Text Files(*.txt)|*.txt|Microsoft Excel-Dateien (*.xls)|*.xls");
    EXPECT_EQ(asked.Asked.FilterIndex, 2);
    EXPECT_EQ(asked.Asked.DefaultExtension, L"xls");
    EXPECT_EQ(asked.Asked.Flags, 0x3004u);
    EXPECT_EQ(form().Text(), L" Quartino - Liste.txt");
    EXPECT_EQ(cell(2, 0), L"R2");
    desktop().CancelFileDialog();
    form().ChooseMenu(L"mnuSaveAS");
    EXPECT_TRUE(desktop().FileDialogs()[1].Save);
    EXPECT_EQ(desktop().FileDialogs()[1].Asked.Flags, 6u);
    EXPECT_EQ(desktop().FileDialogs()[1].Asked.FilterIndex, 1);
    EXPECT_EQ(desktop().FileDialogs()[1].Asked.FileName, file("Liste.txt"));
    EXPECT_THAT(prompts(), IsEmpty());
}

TEST_F(MainWindow, GivingUpTheOpenDialogChangesNothing) {
    show();
    addRooms(L"a", L"1");
    desktop().CancelFileDialog();
    form().ChooseMenu(L"mnuOpen");
    EXPECT_EQ(cell(1, 0), L"a");
    EXPECT_EQ(form().Text(), L" Quartino - Schule");
    EXPECT_THAT(prompts(), IsEmpty());
}

TEST_F(MainWindow, OpeningOverUnsavedRoomsOffersToSaveThemFirst) {
    show();
    addRooms(L"a", L"1");
    desktop().ChooseFile(writeList("other.txt", 2), 1);
    desktop().AnswerNext(Gui::Answer::Yes);
    desktop().ChooseFile(file("mine.txt"), 1);
    form().ChooseMenu(L"mnuOpen");
    EXPECT_THAT(prompts(), ElementsAre(savePrompt));
    EXPECT_THAT(contents("mine.txt"), ::testing::HasSubstr("\na \t"));
    EXPECT_EQ(cell(1, 0), L"R1");
    EXPECT_EQ(form().Text(), L" Quartino - other.txt");
}

TEST_F(MainWindow, GivingUpTheSavingKeepsTheUnsavedRooms) {
    show();
    addRooms(L"a", L"1");
    for (const wchar_t* menu : {L"mnuNew", L"mnuImport"}) {
        desktop().AnswerNext(Gui::Answer::Yes);
        desktop().CancelFileDialog();
        form().ChooseMenu(menu);
        EXPECT_EQ(cell(1, 0), L"a") << menu;
    }
    desktop().ChooseFile(writeList("other.txt", 2), 1);
    desktop().AnswerNext(Gui::Answer::Yes);
    desktop().CancelFileDialog();
    form().ChooseMenu(L"mnuOpen");
    EXPECT_EQ(cell(1, 0), L"a");
}

TEST_F(MainWindow, SavingAListThatWasNeverSavedAsksForAName) {
    show();
    addRooms(L"a", L"1");
    desktop().ChooseFile(file("mine.txt"), 1);
    form().ChooseMenu(L"mnuSave");
    EXPECT_EQ(form().Text(), L" Quartino - mine.txt");
    const std::string first = contents("mine.txt");
    EXPECT_THAT(first, ::testing::HasSubstr("\na \t"));
    addRooms(L"b", L"1");
    form().ChooseMenu(L"mnuSave");
    EXPECT_THAT(desktop().FileDialogs(), SizeIs(1));
    EXPECT_THAT(contents("mine.txt"), ::testing::HasSubstr("\nb \t"));
    EXPECT_FALSE(newAsks());
}

TEST_F(MainWindow, NewClearsTheListAndResetsTheName) {
    show();
    addRooms(L"a", L"1");
    desktop().ChooseFile(file("mine.txt"), 1);
    form().ChooseMenu(L"mnuSave");
    form().ChooseMenu(L"mnuNew");
    EXPECT_EQ(form().Text(), L" Quartino - Schule");
    addRooms(L"b", L"1");
    desktop().CancelFileDialog();
    form().ChooseMenu(L"mnuSave");
    // The file kind stayed that of the text file, and with it the pattern.
    EXPECT_EQ(desktop().FileDialogs().back().Asked.FileName, L"C:\\Projekte\\*.txt");
}

TEST_F(MainWindow, AnsweringNoThrowsTheChangesAway) {
    show();
    addRooms(L"a", L"1");
    desktop().AnswerNext(Gui::Answer::No);
    form().ChooseMenu(L"mnuNew");
    EXPECT_EQ(desktop().Messages()[0].ButtonSet, Gui::Message::Buttons::YesNo);
    EXPECT_EQ(desktop().Messages()[0].Symbol, Gui::Message::Icon::None);
    EXPECT_EQ(desktop().Messages()[0].Title, L" Quartino");
    EXPECT_EQ(cell(1, 0), L"");
    EXPECT_THAT(desktop().FileDialogs(), IsEmpty());
}

TEST_F(MainWindow, ClosingAsksForUnsavedRoomsAndIsNeverCalledOff) {
    show();
    addRooms(L"a", L"1");
    desktop().AnswerNext(Gui::Answer::Yes);
    desktop().CancelFileDialog();
    form().Close();
    EXPECT_THAT(prompts(), ElementsAre(savePrompt));
    EXPECT_FALSE(desktop().IsLoaded(L"frmMain"));
    EXPECT_EQ(platform_.registry.Number(L"Software\\Host\\QTO", L"Report"), 1);
}

TEST_F(MainWindow, ClosingAnEmptyListNeverAsksEvenIfItWasChanged) {
    show();
    form().ChooseMenu(L"mnuDeleteRoom");
    form().ChooseMenu(L"mnuEnd");
    EXPECT_THAT(prompts(), IsEmpty());
    EXPECT_FALSE(desktop().IsLoaded(L"frmMain"));
}

TEST_F(MainWindow, SettingsComeBackWithTheNextRun) {
    show();
    EXPECT_EQ(form().Width(), 11000);
    form().Left(150);
    form().Top(300);
    form().DragTo(12000.5f, 8001.5f);
    main_->SetPlace({2, 3, false, 0x010203, 0x040506});
    main_->SetWithoutReport();
    form().Close();
    const std::wstring key = L"Software\\Host\\QTO";
    EXPECT_EQ(platform_.registry.Number(key, L"Width"), 12000);
    EXPECT_EQ(platform_.registry.Number(key, L"Height"), 8002);
    show();
    EXPECT_EQ(form().Left(), 150);
    EXPECT_EQ(form().Top(), 300);
    EXPECT_EQ(form().Width(), 12000);
    const Placement placement = main_->GetPlace();
    EXPECT_EQ(placement.distanceX, 1.0);
    EXPECT_EQ(placement.distanceY, 1.0);
    EXPECT_TRUE(placement.block);
    EXPECT_EQ(placement.colorOld, 0x010203);
    EXPECT_EQ(placement.colorNew, 0x040506);
    EXPECT_TRUE(main_->NoReport());
}

TEST_F(MainWindow, AStoredSizeOfZeroMakesAllSettingsCountForNothing) {
    platform_.registry.Put(L"Software\\Host\\QTO", L"Report", 2);
    platform_.registry.Put(L"Software\\Host\\QTO", L"Height", 0);
    platform_.registry.Put(L"Software\\Host\\QTO", L"Width", 9000);
    platform_.registry.Put(L"Software\\Host\\QTO", L"ColorNew", 7);
    show();
    EXPECT_EQ(form().Width(), 11000);
    EXPECT_FALSE(main_->NoReport());
    EXPECT_EQ(main_->GetPlace().colorNew, 255);
}

TEST_F(MainWindow, AStoredSizeWithoutColoursMakesThemBlack) {
    platform_.registry.Put(L"Software\\Host\\QTO", L"Height", 6000);
    platform_.registry.Put(L"Software\\Host\\QTO", L"Width", 9000);
    show();
    EXPECT_EQ(main_->GetPlace().colorNew, 0);
}

// A registry in which one step goes wrong in a way that the calls themselves do not report.
class BreakingRegistry : public Registry {
  public:
    explicit BreakingRegistry(Registry& registry) : registry_(registry) {}

    // "Create", "Open" or the name of a value; empty: nothing breaks.
    std::wstring breakAt;
    std::function<void()> raise;
    int broken = 0;

    void step(const std::wstring& name) {
        if (name != breakAt)
            return;
        ++broken;
        raise();
    }
    std::unique_ptr<RegistryKey> CreateKey(const std::wstring& path, const std::wstring& keyClass,
                                           std::uint32_t options,
                                           std::uint32_t accessMask) override {
        step(L"Create");
        return wrap(registry_.CreateKey(path, keyClass, options, accessMask));
    }
    std::unique_ptr<RegistryKey> OpenKey(const std::wstring& path,
                                         std::uint32_t accessMask) override {
        step(L"Open");
        return wrap(registry_.OpenKey(path, accessMask));
    }

  private:
    class Key : public RegistryKey {
      public:
        Key(BreakingRegistry& owner, std::unique_ptr<RegistryKey> key)
            : owner_(owner), key_(std::move(key)) {}
        bool QueryDword(const std::wstring& name, std::int32_t& value) override {
            owner_.step(name);
            return key_->QueryDword(name, value);
        }
        bool SetDword(const std::wstring& name, std::int32_t value) override {
            owner_.step(name);
            return key_->SetDword(name, value);
        }

      private:
        BreakingRegistry& owner_;
        std::unique_ptr<RegistryKey> key_;
    };
    std::unique_ptr<RegistryKey> wrap(std::unique_ptr<RegistryKey> key) {
        return key ? std::make_unique<Key>(*this, std::move(key)) : nullptr;
    }

    Registry& registry_;
};

class BrokenSettings : public MainWindow {
  protected:
    BrokenSettings() {
        for (const auto& [name, value] : {std::pair{L"Report", 2},
                                          {L"Height", 6000},
                                          {L"Width", 9000},
                                          {L"Top", 11},
                                          {L"Left", 22},
                                          {L"ColorOld", 3},
                                          {L"ColorNew", 4}})
            platform_.registry.Put(key_, name, value);
    }
    void showWithIt() {
        main_ = std::make_unique<frmMain>(bundle_, host_, spreadsheets_);
        main_->SetLang(L"");
        main_->SetRegKey(L"Software\\Host");
        main_->Show();
    }
    // Every kind of error that the runtime may raise.
    const std::vector<std::function<void()>> errors_ = {
        [] { throw RuntimeError(RuntimeError::PermissionDenied); }, [] { throw std::bad_alloc(); }};
    const std::wstring key_ = L"Software\\Host\\QTO";
    BreakingRegistry registry_{platform_.registry};
    Platform bundle_{desktop(), platform_.ansi, registry_, platform_.libraries,
                     platform_.environment};
};

TEST_F(BrokenSettings, WhateverBreaksWhileTheyAreReadTheWindowOpensAsDesigned) {
    for (const auto& raise : errors_) {
        for (const wchar_t* step :
             {L"Open", L"Report", L"Height", L"Width", L"Top", L"Left", L"ColorOld", L"ColorNew"}) {
            SCOPED_TRACE(::testing::PrintToString(step));
            registry_.breakAt = step;
            registry_.raise = raise;
            registry_.broken = 0;
            showWithIt();
            EXPECT_EQ(registry_.broken, 1);
            EXPECT_TRUE(form().Visible());
            EXPECT_EQ(form().Width(), 11000);
            EXPECT_EQ(form().Height(), 7500);
            EXPECT_EQ(main_->GetPlace().colorOld, 0);
            EXPECT_EQ(main_->GetPlace().colorNew, 255);
            EXPECT_FALSE(main_->NoReport());
            EXPECT_EQ(platform_.registry.OpenKeys(), 0);
            main_.reset();
        }
    }
    EXPECT_THAT(prompts(), IsEmpty());
}

TEST_F(BrokenSettings, WhateverBreaksWhileTheyAreWrittenTheWindowClosesWithoutAMessage) {
    for (const auto& raise : errors_) {
        for (const wchar_t* step : {L"Create", L"Report", L"Height", L"ColorNew"}) {
            SCOPED_TRACE(::testing::PrintToString(step));
            registry_.breakAt.clear();
            showWithIt();
            registry_.breakAt = step;
            registry_.raise = raise;
            registry_.broken = 0;
            form().Close();
            EXPECT_EQ(registry_.broken, 1);
            EXPECT_FALSE(desktop().IsLoaded(L"frmMain"));
            EXPECT_EQ(platform_.registry.OpenKeys(), 0);
            main_.reset();
        }
    }
    EXPECT_THAT(prompts(), IsEmpty());
}

TEST_F(BrokenSettings, AWindowSizeThatIsNoWholeNumberIsNotStored) {
    showWithIt();
    form().DragTo(1e12f, 7500);
    form().Close();
    EXPECT_THAT(prompts(), IsEmpty());
    EXPECT_FALSE(desktop().IsLoaded(L"frmMain"));
    EXPECT_EQ(platform_.registry.Number(key_, L"Width"), 9000);
}

TEST_F(BrokenSettings, TheyAreStoredEvenIfTheyCouldNotBeRead) {
    registry_.breakAt = L"Open";
    registry_.raise = errors_[0];
    showWithIt();
    form().Close();
    EXPECT_EQ(platform_.registry.Number(key_, L"Width"), 11000);
}

TEST_F(MainWindow, TheStoredGeometryIsSetInItsOrder) {
    for (const auto& [name, value] :
         {std::pair{L"Left", 11}, {L"Top", 22}, {L"Height", 6000}, {L"Width", 9000}})
        platform_.registry.Put(L"Software\\Host\\QTO", name, value);
    show();
    std::vector<std::wstring> set;
    for (const std::wstring& entry : form().Journal())
        for (const wchar_t* property : {L"Left=", L"Top=", L"Height=", L"Width="})
            if (entry.starts_with(std::wstring(L"frmMain.") + property))
                set.push_back(entry.substr(8));
    ASSERT_GE(set.size(), 4u);
    EXPECT_THAT(std::vector<std::wstring>(set.end() - 4, set.end()),
                ElementsAre(::testing::StartsWith(L"Left=11"), ::testing::StartsWith(L"Top=22"),
                            ::testing::StartsWith(L"Height=6000"),
                            ::testing::StartsWith(L"Width=9000")));
}

TEST_F(MainWindow, TheSavePromptAsksForANameEvenWhenTheListHasOne) {
    show();
    addRooms(L"a", L"1");
    desktop().ChooseFile(file("mine.txt"), 1);
    form().ChooseMenu(L"mnuSave");
    addRooms(L"b", L"1");
    desktop().AnswerNext(Gui::Answer::Yes);
    desktop().ChooseFile(file("other.txt"), 1);
    form().ChooseMenu(L"mnuNew");
    EXPECT_THAT(desktop().FileDialogs(), SizeIs(2));
    EXPECT_THAT(contents("other.txt"), ::testing::HasSubstr("\nb \t"));
}

TEST_F(MainWindow, AnEmptyChosenNameOpensAndSavesNothing) {
    show();
    addRooms(L"a", L"1");
    desktop().ChooseFile(L"", 1);
    form().ChooseMenu(L"mnuOpen");
    EXPECT_EQ(cell(1, 0), L"a");
    desktop().ChooseFile(L"", 1);
    form().ChooseMenu(L"mnuSaveAS");
    EXPECT_EQ(form().Text(), L" Quartino - Schule");
    EXPECT_EQ(desktop().FileDialogs()[1].Asked.FileName, L"C:\\Projekte\\*.xls");
}

TEST_F(MainWindow, AnEmptyChosenNameToOpenForgetsTheFileOfTheList) {
    show();
    addRooms(L"a", L"1");
    desktop().ChooseFile(file("mine.txt"), 1);
    form().ChooseMenu(L"mnuSave");
    desktop().ChooseFile(L"", 2);
    form().ChooseMenu(L"mnuOpen");
    EXPECT_EQ(desktop().FileDialogs().back().Asked.FileName, file("mine.txt"));
    EXPECT_EQ(cell(1, 0), L"a");
    // The list has no name any more; the file kind is still that of the file that was saved.
    desktop().CancelFileDialog();
    form().ChooseMenu(L"mnuSave");
    ASSERT_THAT(desktop().FileDialogs(), SizeIs(3));
    EXPECT_TRUE(desktop().FileDialogs()[2].Save);
    EXPECT_EQ(desktop().FileDialogs()[2].Asked.FileName, L"C:\\Projekte\\*.txt");
    EXPECT_EQ(desktop().FileDialogs()[2].Asked.FilterIndex, 1);
}

TEST_F(MainWindow, ModifyingWithoutASelectedRoomStartsFromTheAddTemplate) {
    show();
    addRooms(L"Büro 1", L"149", L"OG");
    const auto addFromTemplate = [this](const std::wstring& name) {
        desktop().OnModal(L"frmRoom", [=](HeadlessForm& dialog) {
            EXPECT_EQ(dialog.Text(), L" Raum hinzufügen ");
            EXPECT_EQ(dialog.Field(L"txtName").Text(), name);
            EXPECT_EQ(dialog.Field(L"txtStoryCode").Text(), L"OG");
            EXPECT_TRUE(dialog.Field(L"txtStoryCode").Enabled());
            EXPECT_TRUE(dialog.Field(L"txtQuantity").Enabled());
            dialog.Click(L"cmdOk");
        });
        form().ChooseMenu(L"mnuModifyRoom");
    };
    // A room that was modified before is not the one to start from.
    desktop().OnModal(L"frmRoom", [](HeadlessForm& dialog) {
        dialog.Field(L"txtName").Text(L"Flur");
        dialog.Click(L"cmdOk");
    });
    form().ChooseMenu(L"mnuModifyRoom");
    table().Row(0);
    addFromTemplate(L"Büro150");
    EXPECT_EQ(table().Cells().Rows(), 151);
    EXPECT_EQ(cell(150, 0), L"Büro150");
    // Unlike adding, it does not warn of a list that has grown too long.
    table().Row(0);
    addFromTemplate(L"Büro151");
    EXPECT_EQ(table().Cells().Rows(), 152);
    EXPECT_EQ(cell(1, 0), L"Flur");
    EXPECT_EQ(cell(151, 0), L"Büro151");
    EXPECT_THAT(prompts(), IsEmpty());
}

TEST_F(MainWindow, ModifyingAnEmptyRowOrARoomTheListDoesNotHaveAddsOne) {
    show();
    addRooms(L"Büro 1", L"2");
    for (const wchar_t* name : {L"Büro3", L"Büro4"}) {
        if (name == std::wstring(L"Büro3"))
            table().Row(50);
        else
            table().Cells().Text(1, 8, L"99");
        desktop().OnModal(L"frmRoom", [=](HeadlessForm& dialog) {
            EXPECT_EQ(dialog.Text(), L" Raum hinzufügen ");
            EXPECT_EQ(dialog.Field(L"txtName").Text(), name);
            dialog.Click(L"cmdOk");
        });
        form().ChooseMenu(L"mnuModifyRoom");
    }
    EXPECT_EQ(cell(1, 0), L"Büro 1");
    EXPECT_EQ(cell(3, 0), L"Büro3");
    EXPECT_EQ(cell(4, 0), L"Büro4");
    EXPECT_EQ(cell(5, 0), L"");
}

TEST_F(MainWindow, NoCommandStartsWhileTheWindowIsUnloading) {
    show();
    addRooms(L"a", L"1");
    desktop().AnswerNext([&](const Gui::Message&) {
        form().MenuNamed(L"mnuDeleteRoom").Click();
        return Gui::Answer::Yes;
    });
    desktop().ChooseFile(file("mine.txt"), 1);
    form().Close();
    EXPECT_THAT(contents("mine.txt"), ::testing::HasSubstr("\na \t"));
}

TEST_F(MainWindow, TheEndOfTheSessionAsksAsOftenAsSomethingIsUnsaved) {
    show();
    EXPECT_TRUE(form().AskForSessionEnd());
    addRooms(L"1", L"1");
    EXPECT_TRUE(form().AskForSessionEnd());
    EXPECT_THAT(prompts(), SizeIs(1));
    // Called off while the question stood, or later: asked again.
    EXPECT_TRUE(form().AskForSessionEnd());
    EXPECT_THAT(prompts(), SizeIs(2));
    desktop().AnswerNext(Gui::Answer::Yes);
    desktop().ChooseFile(file("kept.txt"), 1);
    EXPECT_TRUE(form().AskForSessionEnd());
    EXPECT_TRUE(form().AskForSessionEnd());
    EXPECT_THAT(prompts(), SizeIs(3)) << "nothing is unsaved any more";
    EXPECT_TRUE(form().Loaded());
    EXPECT_FALSE(platform_.registry.HasKey(L"Software\\Host\\QTO"));
    form().EndSession();
    EXPECT_FALSE(desktop().IsLoaded(L"frmMain"));
    EXPECT_THAT(prompts(), SizeIs(3));
    EXPECT_TRUE(platform_.registry.HasKey(L"Software\\Host\\QTO"));
}

TEST_F(MainWindow, WhoGoesOnWorkingBeforeTheSessionEndsIsAskedOnceMore) {
    show();
    addRooms(L"1", L"1");
    EXPECT_TRUE(form().AskForSessionEnd());
    addRooms(L"2", L"1");
    form().EndSession();
    EXPECT_THAT(prompts(), SizeIs(2));
}

TEST_F(MainWindow, AnAnsweredQuestionIsNotRepeatedWhenTheSessionEnds) {
    show();
    addRooms(L"1", L"1");
    EXPECT_TRUE(form().AskForSessionEnd());
    form().EndSession();
    EXPECT_THAT(prompts(), SizeIs(1));
}

TEST_F(MainWindow, TheSessionWaitsForTheQuestionThatStandsAndGetsNoSecondOne) {
    show();
    addRooms(L"1", L"1");
    const auto askedMeanwhile = [this](const Gui::Message&) {
        EXPECT_EQ(form().SessionReason(), L"Die Raumliste ist noch nicht gespeichert.");
        EXPECT_FALSE(form().AskForSessionEnd());
        return Gui::Answer::No;
    };
    desktop().AnswerNext(askedMeanwhile);
    EXPECT_TRUE(form().AskForSessionEnd());
    EXPECT_EQ(form().SessionReason(), L"");
    desktop().AnswerNext(askedMeanwhile);
    form().ChooseMenu(L"mnuNew");
    EXPECT_THAT(prompts(), SizeIs(2));
    // Ended all the same: the settings are kept, and nobody is asked twice.
    addRooms(L"1", L"1");
    desktop().AnswerNext([this](const Gui::Message&) {
        EXPECT_FALSE(platform_.registry.HasKey(L"Software\\Host\\QTO"));
        form().EndSession();
        EXPECT_TRUE(platform_.registry.HasKey(L"Software\\Host\\QTO"));
        return Gui::Answer::No;
    });
    form().Close();
    EXPECT_THAT(prompts(), SizeIs(3));
}

TEST_F(MainWindow, TheReleaseOfF1OpensTheHelp) {
    show();
    form().PressKey(Gui::KeyF1);
    ASSERT_THAT(desktop().HelpCalls(), SizeIs(1));
    EXPECT_EQ(desktop().HelpCalls()[0].File, L"C:\\q.chm");
    EXPECT_EQ(desktop().HelpCalls()[0].Context, 20u);
    form().ReleaseKey(Gui::KeyF1);
    EXPECT_THAT(desktop().HelpCalls(), SizeIs(1));
}

TEST_F(MainWindow, WritingToTheDrawingEndsWithTheReport) {
    show();
    addRooms(L"a", L"3");
    bool shown = false;
    desktop().OnModal(L"frmReport", [&](HeadlessForm& report) {
        shown = true;
        EXPECT_EQ(report.ControlNamed(L"lblNum3").Text(), L"3");
        EXPECT_TRUE(form().Enabled());
        report.Click(L"cmdOk");
    });
    form().ChooseMenu(L"mnuExport");
    EXPECT_TRUE(shown);
    EXPECT_THAT(host_.elements, SizeIs(3));
    EXPECT_EQ(host_.elements[0].colour, 255);
    // Without the report, and with nothing written, no dialog comes up.
    main_->SetWithoutReport();
    form().ChooseMenu(L"mnuExport");
    main_->SetWithReport();
    form().ChooseMenu(L"mnuNew");
    form().ChooseMenu(L"mnuExport");
    EXPECT_EQ(
        std::count(desktop().ModalForms().begin(), desktop().ModalForms().end(), L"frmReport"), 1);
}

TEST_F(MainWindow, WritingArrangesNewRoomsByTheOptions) {
    show();
    main_->SetWithoutReport();
    addRooms(L"a", L"4");
    main_->SetPlace({6, 2, true, 0, 255});
    form().ChooseMenu(L"mnuExport");
    ASSERT_THAT(host_.placements, SizeIs(1));
    EXPECT_EQ(host_.placed(0).at(1).outline.at(0), (Point{10, 1})); // beside a room of 4 by 4
    host_.placements.clear();
    main_->SetPlace({6, 2, false, 0, 255});
    form().ChooseMenu(L"mnuExport");
    EXPECT_THAT(host_.placements, SizeIs(4));
}

TEST_F(MainWindow, TheReportCountsUpdatedRoomsRoomsAtTheirPositionAndRoomsPlaced) {
    std::filesystem::create_directories(folder_ / "p");
    host_.drawing.project.folder = (folder_ / "p").wstring();
    for (std::int32_t id = 17; id <= 19; ++id) {
        Element element;
        element.identity = {id, 3, L"K3"};
        element.name = L"alt";
        element.storey = L"EG";
        element.outline = {{0, 0}, {1, 0}, {1, 1}};
        host_.elements.push_back(element);
    }
    show();
    form().ChooseMenu(L"mnuImport");
    desktop().OnModal(L"frmRoom", [](HeadlessForm& dialog) {
        dialog.Field(L"txtName").Text(L"umbenannt");
        dialog.Click(L"cmdOk");
    });
    form().ChooseMenu(L"mnuModifyRoom");
    addRooms(L"neu", L"3");
    // Two rooms have gone from the drawing since; their coordinates are known all the same.
    host_.elements.resize(1);
    std::vector<std::wstring> shown;
    desktop().OnModal(L"frmReport", [&](HeadlessForm& report) {
        for (const wchar_t* label : {L"lblNum1", L"lblNum2", L"lblNum3"})
            shown.push_back(report.ControlNamed(label).Text());
        report.Click(L"cmdOk");
    });
    form().ChooseMenu(L"mnuExport");
    EXPECT_THAT(shown, ElementsAre(L"1", L"2", L"3"));
    ASSERT_THAT(host_.elements, SizeIs(6));
    EXPECT_EQ(host_.elements[0].name, L"umbenannt");
}

TEST_F(MainWindow, AnErrorOfTheHostIsShownAndTheProgramGoesOn) {
    show();
    addRooms(L"a", L"3");
    host_.failMember = "ApplyChanges";
    form().ChooseMenu(L"mnuExport");
    ASSERT_THAT(prompts(), SizeIs(1));
    EXPECT_THAT(prompts()[0], ::testing::HasSubstr(L"440"));
    EXPECT_THAT(prompts()[0], ::testing::HasSubstr(L"failure of a test"));
    EXPECT_EQ(desktop().Messages()[0].Title, L" Quartino");
    EXPECT_TRUE(form().Enabled());
    EXPECT_EQ(cell(3, 0), L"a2");
    host_.failMember.clear();
    desktop().OnModal(L"frmReport", [](HeadlessForm& report) { report.Click(L"cmdOk"); });
    form().ChooseMenu(L"mnuExport");
    EXPECT_THAT(host_.elements, SizeIs(3));
}

TEST_F(MainWindow, NoSecondCommandStartsAndNoClosingHappensWhileTheHostIsCalled) {
    show();
    addRooms(L"a", L"1");
    bool seen = false;
    host_.onCall = [&](const std::string& member) {
        if (member != "GetElements" || seen)
            return;
        seen = true;
        // A call across processes serves the messages of this window.
        form().ChooseMenu(L"mnuDeleteRoom");
        form().Close();
        EXPECT_TRUE(desktop().IsLoaded(L"frmMain"));
    };
    desktop().AnswerNext(Gui::Answer::No); // the unsaved room
    form().ChooseMenu(L"mnuImport");
    EXPECT_TRUE(seen);
    EXPECT_FALSE(desktop().IsLoaded(L"frmMain"));
}

TEST_F(MainWindow, AHostThatHangsKeepsNobodyFromLeaving) {
    show();
    addRooms(L"R", L"1");
    host_.onCall = [&](const std::string& member) {
        if (member != "CreateRoomElement")
            return;
        EXPECT_FALSE(form().Enabled());
        EXPECT_FALSE(form().ServesInput());
        EXPECT_FALSE(form().Enabled());
        host_.hangs = true;
        EXPECT_TRUE(form().ServesInput());
        EXPECT_TRUE(form().Enabled());
        // Asked about the list, the user does not save it.
        EXPECT_THAT(desktop().Messages(), IsEmpty());
        form().Close();
        EXPECT_THAT(prompts(), ElementsAre(savePrompt));
        EXPECT_TRUE(desktop().ProcessEnded());
        EXPECT_EQ(platform_.registry.Number(L"Software\\Host\\QTO", L"Height"), 7500);
    };
    // Here the process goes on, and with it the writing.
    desktop().OnModal(L"frmReport", [](HeadlessForm& report) { report.Click(L"cmdOk"); });
    form().ChooseMenu(L"mnuExport");
}

TEST_F(MainWindow, RoomsThatWereReadUntilTheHostHangsAreNotLostUnasked) {
    Element element;
    element.identity = {17, 3, L"K3"};
    host_.elements = {element, element};
    show();
    host_.onCall = [&](const std::string& member) {
        if (member != "Record" || host_.counts[member] != 2)
            return;
        host_.hangs = true;
        EXPECT_TRUE(form().ServesInput());
        form().Close();
        EXPECT_THAT(prompts(), ElementsAre(savePrompt));
        EXPECT_TRUE(desktop().ProcessEnded());
    };
    form().ChooseMenu(L"mnuImport");
}

TEST_F(MainWindow, AHostThatAnswersAgainTakesTheInputBack) {
    show();
    addRooms(L"R", L"1");
    const auto served = [this](bool hangs) {
        host_.hangs = hangs;
        const bool serves = form().ServesInput();
        EXPECT_EQ(form().Enabled(), serves);
        return serves;
    };
    host_.onCall = [&](const std::string& member) {
        if (member != "PlaceElements")
            return;
        EXPECT_TRUE(served(true));
        EXPECT_FALSE(served(false));
        // A question that stands is not joined by another one.
        desktop().AnswerNext([&](const Gui::Message&) {
            EXPECT_FALSE(form().ServesInput());
            form().Close();
            return Gui::Answer::No;
        });
        host_.hangs = true;
        EXPECT_TRUE(form().AskForSessionEnd());
        EXPECT_THAT(prompts(), ElementsAre(savePrompt));
        host_.hangs = false;
    };
    desktop().OnModal(L"frmReport", [](HeadlessForm& report) { report.Click(L"cmdOk"); });
    form().ChooseMenu(L"mnuExport");
    EXPECT_TRUE(form().Enabled());
    EXPECT_FALSE(desktop().ProcessEnded());
}

TEST_F(MainWindow, TheCaptionTellsHowFarReadingIsAndComesBack) {
    Element element;
    element.identity = {17, 3, L"K3"};
    host_.elements = {element, element};
    show();
    std::vector<std::wstring> captions;
    host_.onCall = [&](const std::string& member) {
        if (member == "Record")
            captions.push_back(form().Text());
    };
    const std::wstring before = form().Text();
    form().ChooseMenu(L"mnuImport");
    EXPECT_THAT(captions, ElementsAre(L" Quartino - Raum 1 von 2 wird gelesen (Esc beendet)",
                                      L" Quartino - Raum 2 von 2 wird gelesen (Esc beendet)"));
    EXPECT_EQ(form().Text(), before);
}

TEST_F(MainWindow, ImportReplacesTheListAndMakesItDirty) {
    show();
    addRooms(L"a", L"1");
    Element element;
    element.identity = {17, 3, L"K3"};
    element.name = L"aus dem Teilbild";
    host_.elements.push_back(element);
    form().ChooseMenu(L"mnuImport");
    EXPECT_THAT(prompts(), ElementsAre(savePrompt));
    EXPECT_EQ(cell(1, 0), L"aus dem Teilbild");
    EXPECT_EQ(cell(2, 0), L"");
    form().ChooseMenu(L"mnuNew");
    EXPECT_THAT(prompts(), ElementsAre(savePrompt, savePrompt));
}

TEST_F(MainWindow, SettingThePlacementLeavesTheReportSwitchAlone) {
    show();
    main_->SetWithoutReport();
    main_->SetPlace({2, 3, false, 4, 5});
    Placement placement = main_->GetPlace();
    EXPECT_TRUE(main_->NoReport());
    EXPECT_EQ(placement.distanceX, 2.0);
    EXPECT_EQ(placement.distanceY, 3.0);
    EXPECT_FALSE(placement.block);
    EXPECT_EQ(placement.colorOld, 4);
    EXPECT_EQ(placement.colorNew, 5);
    main_->SetWithReport();
    main_->SetPlace({3, 2, true, 5, 4});
    placement = main_->GetPlace();
    EXPECT_FALSE(main_->NoReport());
    EXPECT_TRUE(placement.block);
}

TEST_F(MainWindow, OptionsRebuildTheTableInTheNewColours) {
    show();
    addRooms(L"a", L"1");
    desktop().OnModal(L"frmPlace", [&](HeadlessForm& options) {
        desktop().ChooseColour(0x00FF00);
        options.SelectTab(L"SSTab1", 1);
        options.Click(L"cmdWithoutCoordinates");
        options.Click(L"cmdOk");
    });
    form().ChooseMenu(L"mnuPlace");
    EXPECT_EQ(table().Cells().TextColour(1, 0), 0x00FF00);
}

} // namespace
} // namespace kalvrooms::testing
