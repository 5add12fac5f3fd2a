#include "files/clsExcel.h"

#include <algorithm>

#include "FileContext.h"
#include "files/clsFileSytem.h"
#include "practice/workbook/SheetError.h"

namespace kalvrooms {
namespace {

using practice::FaultMode;

class Workbook : public FileTestUnderBothLocales {
  protected:
    practice::spreadsheet::InProcessSpreadsheets& spreadsheets = context.Spreadsheets;
    const std::wstring file = folder.Path(L"Räume.xls");

    practice::spreadsheet::Sheet& sheet() { return context.SheetOf(file); }
    const CellValue& at(int row, int column) { return sheet().At(row, column).value; }
    void put(int row, int column, CellValue value) { sheet().Set(row, column, {std::move(value)}); }
    // An instance of the user, with workbooks that were never saved.
    void startByUser(int workbooks) {
        for (spreadsheets.StartByUser(); workbooks > 0; --workbooks)
            spreadsheets.Running->application.Add()->saved = false;
    }
    void write(const clsFloors& list) { clsFileSytem(context).WriteListToFile(file, list); }
    void read(clsFloors& list) { clsFileSytem(context).ReadListFromFile(file, list); }
    FileOutcome outcomeOfWriting() { return clsFileSytem(context).WriteListToFile(file, floors); }
    // A row as the user typed it into the sheet.
    void putRow(int row, const std::vector<CellValue>& values) {
        for (std::size_t i = 0; i < values.size(); ++i)
            put(row, static_cast<int>(i) + 1, values[i]);
    }
    void addRooms(int count, const std::wstring& prefix = L"Raum ") {
        for (int i = 1; i <= count; ++i) {
            RoomForTest{.Name = prefix + std::to_wstring(i),
                        .Area = i * 0.5,
                        .Story = L"OG" + std::to_wstring(i / 100)}
                .AddTo(floors);
        }
    }
    int callsOfWriting(int rooms) {
        floors = clsFloors();
        addRooms(rooms);
        spreadsheets.ForgetCalls();
        write(floors);
        return spreadsheets.Calls();
    }
    int callsOfReading() {
        clsFloors list;
        spreadsheets.ForgetCalls();
        read(list);
        return spreadsheets.Calls();
    }
    void expectClosed() {
        EXPECT_EQ(spreadsheets.LeftBehind(), 0);
        EXPECT_EQ(spreadsheets.OpenObjects(), 0);
        EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
    }
};
INSTANTIATE_TEST_SUITE_P(Locales, Workbook,
                         testing::Values(NumberLocale::German(), NumberLocale::Point()));

using Log = std::vector<std::string>;

// ------------------------------------------------------------------------- writing

TEST_P(Workbook, HoldsTitlesInItsFirstRow) {
    addRooms(1);
    write(floors);
    const std::vector<std::wstring> titles = {
        L" Bezeichnung ",     L" Funktion",    L" Fläche in qm", L" Geschoss",
        L" Umschließungsart", L" Nutzungsart", L" Flächenart",   L" Geometrie",
        L" Länge (Dx)",       L" Breite(Dy)",  L" Raum-ID"};
    for (int column = 1; column <= 11; ++column)
        EXPECT_EQ(at(1, column), CellValue(titles[static_cast<std::size_t>(column) - 1]));
    EXPECT_EQ(at(1, 12), CellValue());
    expectClosed();
}

TEST_P(Workbook, HoldsARoomInEveryRow) {
    RoomForTest{.Name = L"Büro 1", .Area = 50.25, .Value = L"1", .RoomID = L"12-K3"}.AddTo(floors);
    RoomForTest{.Name = L"Saal",
                .Function = L"",
                .Area = 7.0,
                .Type = CalculationByFile,
                .Value = L"C:\\P\\3-17.txt"}
        .AddTo(floors);
    write(floors);
    const double side = roomAt(floors, 1).Geometry->dx();
    const std::vector<CellValue> first = {L"Büro 1", L"Arbeiten", 50.25, L"EG", L"a",    L"HNF 2",
                                          L"N",      L" ",        side,  side,  L"12-K3"};
    const std::vector<CellValue> second = {L"Saal", CellValue(), 7.0,        L"EG",
                                           L"a",    L"HNF 2",    L"N",       L"C:\\P\\3-17.txt",
                                           0.0,     0.0,         CellValue()};
    for (int column = 1; column <= 11; ++column) {
        EXPECT_EQ(at(2, column), first[static_cast<std::size_t>(column) - 1]) << column;
        EXPECT_EQ(at(3, column), second[static_cast<std::size_t>(column) - 1]) << column;
    }
    EXPECT_EQ(at(4, 1), CellValue());
}

TEST_P(Workbook, KeepsTextsThatLookLikeSomethingElse) {
    std::vector<std::wstring> texts = {L"1,000", L"=1+1", L"-3", L"1E5",  L"TRUE", L"1/2", L"1,5",
                                       L"1.5",   L"'a",   L"+7", L"12 %", L"#N/A", L"007"};
    texts.insert(texts.begin(), {std::wstring(300, L'x'), std::wstring(5000, L'9')});
    for (const std::wstring& text : texts) {
        RoomForTest{
            .Name = text, .Function = text, .Enclosure = text, .Occupancy = text, .AreaType = text}
            .AddTo(floors);
    }
    write(floors);
    const auto count = static_cast<int>(texts.size());
    for (int i = 0; i < count; ++i)
        for (const int column : {1, 2, 5, 6, 7})
            EXPECT_EQ(at(i + 2, column), CellValue(texts[static_cast<std::size_t>(i)]));
    clsFloors again;
    read(again);
    ASSERT_EQ(again.GetCountOfRooms(), count);
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(roomAt(again, i + 1).Name(), texts[static_cast<std::size_t>(i)]);
        EXPECT_EQ(roomAt(again, i + 1).AreaType(), texts[static_cast<std::size_t>(i)]);
    }
}

TEST_P(Workbook, KeepsNumbersAsNumbersWhateverTheCellsWereFormattedFor) {
    sheet().Format({1, 1, 200, 12}, L"@");
    RoomForTest{.Area = 12.5, .Type = CalculationByDx, .Value = local(L"2.5")}.AddTo(floors);
    write(floors);
    EXPECT_EQ(at(2, 3), CellValue(12.5));
    EXPECT_EQ(at(2, 9), CellValue(2.5));
    EXPECT_EQ(at(2, 10), CellValue(5.0));
}

TEST_P(Workbook, IsMadeInAnApplicationOfItsOwn) {
    startByUser(1);
    addRooms(1);
    write(floors);
    EXPECT_FALSE(spreadsheets.Running->ended);
    EXPECT_EQ(spreadsheets.Running->application.workbooks().size(), 1U);
    ASSERT_EQ(spreadsheets.Created().size(), 1U);
    EXPECT_FALSE(spreadsheets.Created()[0]->application.displayAlerts);
    EXPECT_EQ(spreadsheets.Log().front(), "CreateInstance");
}

TEST_P(Workbook, ThatIsNewGetsItsRoomsOnAnAddedSheet) {
    addRooms(2);
    write(floors);
    EXPECT_EQ(spreadsheets.Files.at(file).sheets.size(), 4U);
    EXPECT_EQ(spreadsheets.Log(),
              (Log{"CreateInstance", "DisplayAlerts", "AutomationSecurity", "OpenWorkbook",
                   "AddWorkbook", "AddWorksheet", "NumberFormat", "NumberFormat", "NumberFormat",
                   "Values=", "Values=", "SaveAs", "CloseWorkbooks", "Quit"}));
}

TEST_P(Workbook, ThatExistsIsOpenedClearedAndSavedInPlace) {
    put(1, 1, L"alt");
    addRooms(2);
    write(floors);
    EXPECT_EQ(spreadsheets.Files.at(file).sheets.size(), 1U);
    EXPECT_EQ(
        spreadsheets.Log(),
        (Log{"CreateInstance", "DisplayAlerts", "AutomationSecurity", "OpenWorkbook",
             "OpenWorkbook", "ActiveSheet", "Fill", "NumberFormat", "NumberFormat", "NumberFormat",
             "NumberFormat", "Values=", "Values=", "Values", "Save", "CloseWorkbooks", "Quit"}));
    expectClosed();
}

TEST_P(Workbook, IsClearedInRows1To101AndColumns1To12Only) {
    for (int row = 1; row <= 121; ++row)
        for (int column = 1; column <= 13; ++column)
            put(row, column, L"alt");
    addRooms(3);
    write(floors);
    for (int column = 1; column <= 12; ++column) {
        EXPECT_EQ(at(5, column), CellValue()) << column;
        EXPECT_EQ(at(101, column), CellValue()) << column;
        EXPECT_EQ(at(102, column), CellValue(L"alt")) << column;
        EXPECT_EQ(at(121, column), CellValue(L"alt")) << column;
    }
    EXPECT_EQ(at(2, 12), CellValue());
    EXPECT_EQ(at(2, 13), CellValue(L"alt"));
    EXPECT_EQ(at(2, 1), CellValue(L"Raum 1"));
    EXPECT_EQ(at(4, 1), CellValue(L"Raum 3"));

    clsFloors again;
    read(again);
    EXPECT_EQ(again.GetCountOfRooms(), 3);
}

TEST_P(Workbook, IsWrittenAndReadOnTheSheetThatIsActive) {
    spreadsheets.Files[file] = practice::spreadsheet::Workbook::New();
    spreadsheets.Files[file].active = 1;
    addRooms(1);
    write(floors);
    EXPECT_EQ(spreadsheets.Files[file].sheets[1]->At(2, 1).value, CellValue(L"Raum 1"));
    EXPECT_EQ(spreadsheets.Files[file].sheets[0]->At(2, 1).value, CellValue());
    clsFloors again;
    read(again);
    EXPECT_EQ(again.GetCountOfRooms(), 1);
}

TEST_P(Workbook, OfAnEmptyListIsNotTouched) {
    put(1, 1, L"alt");
    write(floors);
    EXPECT_EQ(spreadsheets.Calls(), 0);
    EXPECT_EQ(at(1, 1), CellValue(L"alt"));
    EXPECT_EQ(context.platform.desktop.PointerHistory().front(), Gui::HourglassPointer);
    expectClosed();
}

TEST_P(Workbook, ThatCannotBeSavedIsNotReported) {
    addRooms(1);
    spreadsheets.ReadOnlyFiles = {file};
    write(floors);
    EXPECT_FALSE(spreadsheets.Files.contains(file));
    expectClosed();

    put(2, 1, L"alt");
    write(floors);
    EXPECT_EQ(at(2, 1), CellValue(L"alt"));
    EXPECT_EQ(spreadsheets.Log().back(), "Quit");
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
    expectClosed();
}

TEST_P(Workbook, IsLeftAloneWhenASideCannotBeComputed) {
    put(2, 1, L"alt");
    addRooms(1);
    RoomForTest{.Type = CalculationByDx, .Value = L"0"}.AddTo(floors);
    const auto before = contentsOf(floors);
    EXPECT_EQ(errorOf([&] { clsExcel(context).WriteListToFile(file, floors); }),
              RuntimeError::DivisionByZero);
    EXPECT_EQ(at(2, 1), CellValue(L"alt"));
    EXPECT_EQ(contentsOf(floors), before);
    // Only a completed operation closes the application; references into it are released.
    EXPECT_EQ(spreadsheets.LeftBehind(), 1);
    EXPECT_EQ(spreadsheets.OpenObjects(), 0);
    EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
}

TEST_P(Workbook, DoesNotChangeTheListThatIsWritten) {
    RoomForTest{.Type = CalculationByDy, .Value = L"abc"}.AddTo(floors);
    const auto before = contentsOf(floors);
    write(floors);
    EXPECT_EQ(contentsOf(floors), before);
    EXPECT_EQ(std::get<std::wstring>(at(2, 8)), L" ");
}

TEST_P(Workbook, NeedsTheApplicationForWriting) {
    addRooms(1);
    const auto error = [&] {
        return errorOf([&] { clsExcel(context).WriteListToFile(file, floors); });
    };
    spreadsheets.FailAt(1, FaultMode::Empty);
    EXPECT_EQ(error(), RuntimeError::CannotCreateObject);
    spreadsheets.FailAt(1);
    EXPECT_EQ(error(), RuntimeError::CannotCreateObject);
    spreadsheets.Installed = false;
    EXPECT_EQ(error(), RuntimeError::CannotCreateObject);
    EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
}

// ------------------------------------------------------------------------- reading

TEST_P(Workbook, IsReadColumnByColumn) {
    putRow(2, {L" Büro 1 ", L"Arbeiten", 50.25, L"EG", L"a", L"HNF 2", L"N", L" ", 10.0, 5.0,
               L"12-K3"});
    read(floors);
    ASSERT_EQ(floors.GetCountOfRooms(), 1);
    expectEveryColumn(roomAt(floors, 1));
    expectClosed();
}

TEST_P(Workbook, WithNumbersInItsTextColumnsIsReadByTheUsersLocale) {
    putRow(2, {7.0, 1.5, local(L"12.5"), -3.0, true, false, 1e20, CellValue(), 2.5, L"1",
               CellValue()});
    read(floors);
    const clsRoom room = roomAt(floors, 1);
    EXPECT_EQ(room.Name(), L"7");
    EXPECT_EQ(room.FunctionName(), local(L"1.5"));
    EXPECT_EQ(room.Geometry->Area(), 12.5);
    EXPECT_EQ(room.StoryCode(), L"-3");
    EXPECT_EQ(room.Enclosure(), L"True");
    EXPECT_EQ(room.Occupancy(), L"False");
    EXPECT_EQ(room.AreaType(), L"1E+20");
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByDx);
    EXPECT_EQ(room.Geometry->CalculationValue(), local(L"2.5"));
}

TEST_P(Workbook, WithAnAreaThatIsNoNumberHasArea0) {
    const std::vector<CellValue> areas = {
        L"x", CellValue(), true, CellError{L"#DIV/0!"}, L"1e400", CellDate{L"12.05.2024"}};
    for (std::size_t i = 0; i < areas.size(); ++i)
        putRow(static_cast<int>(i) + 2, {L"a", L"b", areas[i]});
    read(floors);
    ASSERT_EQ(floors.GetCountOfRooms(), static_cast<int>(areas.size()));
    for (std::size_t i = 0; i < areas.size(); ++i)
        EXPECT_EQ(roomAt(floors, static_cast<int>(i) + 1).Geometry->Area(), 0.0) << i;
}

TEST_P(Workbook, WithErrorsInItsCellsLosesNoRoom) {
    putRow(2, {CellError{L"#REF!"}, CellError{L"#N/A"}, 1.0, L"EG", L"", L"", L"", L"",
               CellError{L"#DIV/0!"}, 3.0, CellError{L"#N/A"}});
    putRow(3, {L"danach"});
    read(floors);
    ASSERT_EQ(floors.GetCountOfRooms(), 2);
    EXPECT_EQ(roomAt(floors, 1).Name(), L"#REF!");
    EXPECT_EQ(roomAt(floors, 1).FunctionName(), L"#N/A");
    EXPECT_EQ(roomAt(floors, 1).Geometry->CalculationType(), CalculationByDy);
    EXPECT_EQ(roomAt(floors, 1).ComponentID(), -1);
}

TEST_P(Workbook, NamesThePointFileInColumn8) {
    putRow(2, {L"a", L"", 1.0, L"EG", L"", L"", L"", L" C:\\p.txt ", 3.0, 4.0});
    putRow(3, {L"b", L"", 1.0, L"EG", L"", L"", L"", L"   ", 3.0, 4.0});
    read(floors);
    EXPECT_EQ(roomAt(floors, 1).Geometry->CalculationType(), CalculationByFile);
    EXPECT_EQ(roomAt(floors, 1).Geometry->CalculationValue(), L" C:\\p.txt ");
    EXPECT_EQ(roomAt(floors, 2).Geometry->CalculationType(), CalculationByDx);
}

TEST_P(Workbook, EndsAtTheFirstRowWithoutName) {
    putRow(2, {L"a"});
    putRow(3, {CellValue(), L"no name"});
    putRow(4, {L"b"});
    read(floors);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);

    put(2, 1, L"");
    clsFloors none;
    read(none);
    EXPECT_EQ(none.GetCountOfRooms(), 0);
}

TEST_P(Workbook, TakesABlankForAName) {
    putRow(2, {L" "});
    putRow(3, {L"b"});
    read(floors);
    ASSERT_EQ(floors.GetCountOfRooms(), 2);
    EXPECT_EQ(roomAt(floors, 1).Name(), L"");
}

TEST_P(Workbook, OfAnyLengthIsReadToTheLastRowOfTheSheet) {
    for (const int rooms : {510, 511, 512, 1023, 1024, 2047}) {
        spreadsheets.Files.clear();
        sheet().rows = 2048;
        for (int row = 2; row <= rooms + 1; ++row)
            put(row, 1, L"Raum " + std::to_wstring(row));
        clsFloors list;
        read(list);
        EXPECT_EQ(list.GetCountOfRooms(), rooms);
    }
}

TEST_P(Workbook, RefreshesTheTableBeforeTheApplicationIsClosed) {
    putRow(2, {L"a"});
    read(floors);
    EXPECT_EQ(context.table.Updates, std::vector<bool>{false});

    context.table.FailingUpdate = RuntimeError::Overflow;
    read(floors);
    EXPECT_EQ(spreadsheets.LeftBehind(), 1);
    EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
}

TEST_P(Workbook, IsReadInTheApplicationThatIsRunningAndEndsIt) {
    startByUser(2);
    putRow(2, {L"a"});
    read(floors);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);
    EXPECT_TRUE(spreadsheets.Created().empty());
    EXPECT_FALSE(spreadsheets.Running->application.displayAlerts);
    EXPECT_TRUE(spreadsheets.Running->ended);
    EXPECT_TRUE(spreadsheets.Running->application.workbooks().empty());
    EXPECT_EQ(spreadsheets.Log(), (Log{"AttachRunning", "DisplayAlerts?", "DisplayAlerts",
                                       "AutomationSecurity?", "AutomationSecurity", "OpenWorkbook",
                                       "ActiveSheet", "Values", "CloseWorkbooks", "Quit"}));
}

TEST_P(Workbook, IsReadInANewApplicationWhenTheRunningOneDoesNotAnswer) {
    startByUser(0);
    spreadsheets.FailAt(2); // its alerts
    putRow(2, {L"a"});
    read(floors);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);
    EXPECT_EQ(spreadsheets.Created().size(), 1U);
    EXPECT_FALSE(spreadsheets.Running->ended);
    expectClosed();
}

TEST_P(Workbook, NeedsTheApplicationForReading) {
    putRow(2, {L"a"});
    const auto error = [&] {
        return errorOf([&] { clsExcel(context).ReadListFromFile(file, floors); });
    };
    spreadsheets.FailAt(2); // creating one
    EXPECT_EQ(error(), RuntimeError::ObjectVariableNotSet);
    spreadsheets.FailAt(2, FaultMode::Empty);
    EXPECT_EQ(error(), RuntimeError::ObjectVariableNotSet);
    spreadsheets.Installed = false;
    EXPECT_EQ(error(), RuntimeError::ObjectVariableNotSet);
    EXPECT_EQ(floors.GetCountOfRooms(), 0);
    EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
}

TEST_P(Workbook, ThatIsMissingGivesTheApplicationsError) {
    EXPECT_EQ(errorOf([&] { clsExcel(context).ReadListFromFile(L"fehlt.xls", floors); }),
              practice::spreadsheet::SheetError::ApplicationDefined);
    EXPECT_EQ(spreadsheets.LeftBehind(), 1);
    EXPECT_TRUE(context.table.Updates.empty());
}

TEST_P(Workbook, EndsAtAnIdentifierThatDoesNotConvert) {
    putRow(2, {L"a"});
    putRow(3, {L"b", L"", L"", L"", L"", L"", L"", L"", L"", L"", L"x-K"});
    EXPECT_EQ(errorOf([&] { clsExcel(context).ReadListFromFile(file, floors); }),
              RuntimeError::TypeMismatch);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);
    EXPECT_EQ(spreadsheets.LeftBehind(), 1);
}

// A reference into the application would keep its process alive after it was told to quit.
TEST_P(Workbook, IsLetGoBeforeTheApplicationIsToldToQuit) {
    addRooms(1);
    write(floors);
    EXPECT_EQ(spreadsheets.ObjectsAtQuit(), 1); // the application itself
    read(floors);
    EXPECT_EQ(spreadsheets.ObjectsAtQuit(), 1);
}

TEST_P(Workbook, HasAMemberThatDoesNothing) {
    clsExcel(context).onlyATest();
    EXPECT_EQ(spreadsheets.Calls(), 0);
}

// ------------------------------------------------------------------------- round trips, failures

TEST_P(Workbook, KeepsAListAsTheTextFileDoes) {
    addRooms(600);
    RoomForTest{.Area = 50.0, .Value = L"2", .RoomID = L"12-K3"}.AddTo(floors);
    RoomForTest{.Type = CalculationByFile, .Value = L"C:\\p.txt"}.AddTo(floors);
    clsFloors fromText;
    clsFileSytem(context).WriteListToFile(folder.Path(L"a.txt"), floors);
    clsFileSytem(context).ReadListFromFile(folder.Path(L"a.txt"), fromText);

    write(fromText);
    clsFloors fromWorkbook;
    read(fromWorkbook);
    EXPECT_EQ(contentsOf(fromWorkbook), contentsOf(fromText));
}

TEST_P(Workbook, WithANamelessRoomEndsThereWhenItIsReadAgain) {
    addRooms(2);
    RoomForTest{.Name = L"", .Story = L"OG0"}.AddTo(floors);
    RoomForTest{.Name = L"danach", .Story = L"OG0"}.AddTo(floors);
    write(floors);
    EXPECT_EQ(at(5, 1), CellValue(L"danach"));
    clsFloors again;
    read(again);
    EXPECT_EQ(again.GetCountOfRooms(), 2);
}

TEST_P(Workbook, CostsAlmostNoCallsForARoom) {
    const int oneRoom = callsOfWriting(1);
    const int oneReading = callsOfReading();
    const int many = callsOfWriting(1025);
    const int manyReading = callsOfReading();
    EXPECT_LE(oneRoom, 14);
    EXPECT_LE(oneReading, 9);
    // One call for 512 rooms.
    // And opening it a second time, clearing it, a fourth format, no AddWorkbook; each block is
    // looked at again, as the workbook is there already.
    EXPECT_EQ(many - oneRoom, 2 + 2 + 3);
    EXPECT_EQ(manyReading - oneReading, 2);
}

TEST_P(Workbook, CostsOneCallMoreForEveryTextTooLongForABlock) {
    floors = clsFloors();
    addRooms(3);
    write(floors);
    spreadsheets.ForgetCalls();
    write(floors);
    const int shortTexts = spreadsheets.Calls();
    floors = clsFloors();
    addRooms(3, std::wstring(901, L'1'));
    spreadsheets.ForgetCalls();
    write(floors);
    EXPECT_EQ(spreadsheets.Calls(), shortTexts + 3);
}

constexpr FaultMode allModes[] = {FaultMode::Fail, FaultMode::Exit, FaultMode::Empty,
                                  FaultMode::Reject};

TEST_P(Workbook, SurvivesAFailureOfAnyCallOfWriting) {
    for (const FaultMode mode : allModes) {
        // More than a block of calls takes, for one mode.
        const int rooms = mode == FaultMode::Fail ? 513 : 3;
        floors = clsFloors();
        addRooms(rooms);
        const auto before = contentsOf(floors);
        for (const bool isNew : {true, false}) {
            const auto writeAnew = [&](int failing) {
                spreadsheets.Files.clear();
                if (!isNew)
                    put(2, 1, L"alt");
                spreadsheets.ForgetCalls();
                if (failing > 0)
                    spreadsheets.FailAt(failing, mode);
                EXPECT_NO_THROW(write(floors));
            };
            writeAnew(0);
            const int calls = spreadsheets.Calls();
            ASSERT_EQ(spreadsheets.Log().back(), "Quit");
            for (int n = 1; n <= calls; ++n) {
                writeAnew(n);
                EXPECT_EQ(contentsOf(floors), before);
                EXPECT_EQ(spreadsheets.OpenObjects(), 0);
                EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
                // What is on the disk is the old workbook or the whole new one, unless a call only
                // seemed to have worked.
                if (mode != FaultMode::Empty && spreadsheets.Files.contains(file) &&
                    at(2, 1) != CellValue(L"alt")) {
                    clsFloors again;
                    spreadsheets.ForgetCalls();
                    read(again);
                    EXPECT_EQ(again.GetCountOfRooms(), rooms) << n;
                }
            }
        }
    }
}

TEST_P(Workbook, SurvivesAFailureOfAnyCallOfReading) {
    addRooms(513);
    write(floors);
    spreadsheets.ForgetCalls();
    clsFloors whole;
    read(whole);
    const auto complete = contentsOf(whole);
    const int calls = spreadsheets.Calls();
    for (const FaultMode mode : allModes) {
        for (int n = 1; n <= calls; ++n) {
            spreadsheets.ForgetCalls();
            spreadsheets.FailAt(n, mode);
            clsFloors list;
            EXPECT_NO_THROW(read(list));
            const auto contents = contentsOf(list);
            ASSERT_LE(contents.size(), complete.size());
            EXPECT_TRUE(std::equal(contents.begin(), contents.end(), complete.begin())) << n;
            EXPECT_EQ(spreadsheets.OpenObjects(), 0);
            EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
        }
    }
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
}

// ------------------------------------------------------------------------- the user's own

TEST_P(Workbook, IsOpenedWithItsMacrosOff) {
    put(2, 1, L"alt");
    addRooms(1);
    write(floors);
    read(floors);
    startByUser(0);
    read(floors);
    PointArray points;
    clsFileSytem(context).ReadPointsFromGeometryFile(file, points);
    ASSERT_EQ(spreadsheets.Created().size(), 3U);
    for (const auto& instance : spreadsheets.Created())
        EXPECT_EQ(instance->application.opensWithMacros, 0);
    EXPECT_EQ(spreadsheets.Running->application.opensWithMacros, 0);

    // One that does not know the switch is used all the same; one that is busy is not.
    spreadsheets.ForgetCalls();
    spreadsheets.FailAt(4);
    floors = clsFloors();
    read(floors);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);
    spreadsheets.ForgetCalls();
    spreadsheets.FailAt(4, FaultMode::Reject);
    EXPECT_TRUE(clsFileSytem(context).ReadListFromFile(file, floors).busy);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);
}

TEST_P(Workbook, LeavesTheUsersApplicationAsItWasSetUnlessItIsEnded) {
    put(2, 1, L"a");
    put(3, 1, L"b");
    put(3, 11, L"x-K");
    for (const bool alerts : {true, false}) {
        // The last one fails at no call, but at the identifier in row 3.
        const int calls = 8;
        for (int n = 1; n <= calls + 1; ++n) {
            startByUser(0);
            spreadsheets.Running->application.displayAlerts = alerts;
            spreadsheets.Running->application.automationSecurity = 2;
            spreadsheets.ForgetCalls();
            if (n <= calls)
                spreadsheets.FailAt(n);
            read(floors);
            EXPECT_FALSE(spreadsheets.Running->ended) << n;
            EXPECT_EQ(spreadsheets.Running->application.displayAlerts, alerts) << n;
            EXPECT_EQ(spreadsheets.Running->application.automationSecurity, 2) << n;
        }
    }
}

TEST_P(Workbook, OfABusyApplicationIsNotTakenForMissing) {
    addRooms(2);
    for (const int call : {1, 2, 3, 4, 5}) {
        spreadsheets.Files.clear();
        put(2, 1, L"alt");
        put(2, 12, L"noch etwas");
        spreadsheets.ForgetCalls();
        spreadsheets.FailAt(call, FaultMode::Reject);
        const FileOutcome outcome = outcomeOfWriting();
        EXPECT_FALSE(outcome.complete) << call;
        EXPECT_TRUE(outcome.busy) << call;
        EXPECT_EQ(at(2, 1), CellValue(L"alt")) << call;
        EXPECT_EQ(at(2, 12), CellValue(L"noch etwas")) << call;
        EXPECT_FALSE(folder.Has(L"Räume.xls")) << call;
    }
    for (const int call : {2, 3, 5}) {
        clsFloors list;
        spreadsheets.ForgetCalls();
        spreadsheets.FailAt(call, FaultMode::Reject);
        EXPECT_TRUE(clsFileSytem(context).ReadListFromFile(file, list).busy) << call;
        EXPECT_EQ(list.GetCountOfRooms(), 0);
    }
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
}

TEST_P(Workbook, LeavesTheFormatsOfNumbersAlone) {
    const int rooms = 600;
    addRooms(rooms);
    sheet().Format({1, 1, 700, 12}, L"0.0 \"x\"");
    sheet().Format({2, 3, 300, 1}, L"0.00 \"m²\"");
    sheet().Format({100, 9, 5, 2}, TextNumberFormat);
    sheet().Format({200, 3, 1, 1}, TextNumberFormat);
    write(floors);
    const auto formatAt = [&](int row, int column) { return sheet().At(row, column).format; };
    for (int row = 2; row <= rooms + 1; ++row) {
        const bool wasText = row == 200;
        EXPECT_EQ(formatAt(row, 3), wasText     ? GeneralNumberFormat
                                    : row < 302 ? L"0.00 \"m²\""
                                                : L"0.0 \"x\"")
            << row;
        for (const int column : {9, 10})
            EXPECT_EQ(formatAt(row, column),
                      row >= 100 && row < 105 ? GeneralNumberFormat : L"0.0 \"x\"")
                << row;
        for (const int column : {3, 9, 10})
            EXPECT_TRUE(std::holds_alternative<double>(at(row, column))) << row << " " << column;
        for (const int column : {1, 2, 4, 5, 6, 7, 8, 11})
            EXPECT_EQ(formatAt(row, column), TextNumberFormat) << row << " " << column;
    }
    EXPECT_EQ(formatAt(rooms + 2, 1), L"0.0 \"x\"");
}

TEST_P(Workbook, TakesNoDateForASideAnAreaOrACoordinate) {
    putRow(2, {L"a", L"", CellDate{L"12.05"}, L"", L"", L"", L"", L"", CellDate{L"12.05"},
               CellDate{L"3.05"}});
    read(floors);
    ASSERT_EQ(floors.GetCountOfRooms(), 1);
    clsRoom room = roomAt(floors, 1);
    EXPECT_EQ(room.Geometry->Area(), 0.0);
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByRatio);
    EXPECT_EQ(room.Geometry->CalculationValue(), L"1");

    spreadsheets.Files.clear();
    putRow(1, {2.0});
    putRow(2, {1.0, 2.0});
    putRow(3, {CellDate{L"12.05"}, 3.0});
    PointArray points;
    EXPECT_TRUE(clsFileSytem(context).ReadPointsFromGeometryFile(file, points));
    EXPECT_EQ(points.X(1), 1.0);
    EXPECT_EQ(points.Y(1), 2.0);
    PointArray unset;
    put(1, 1, CellDate{L"2.05"});
    EXPECT_TRUE(clsFileSytem(context).ReadPointsFromGeometryFile(file, unset));
    EXPECT_FALSE(unset.IsSet());
}

TEST_P(Workbook, ThatIsSavedIsWholeWhateverBecomesOfTheApplication) {
    addRooms(1);
    write(floors);
    spreadsheets.ForgetCalls();
    write(floors);
    const int calls = spreadsheets.Calls();
    spreadsheets.ForgetCalls();
    spreadsheets.FailAt(calls);
    EXPECT_TRUE(outcomeOfWriting().complete);
}

TEST_P(Workbook, TellsWhyItWasNotSavedOrNotReadWhole) {
    addRooms(1);
    EXPECT_TRUE(outcomeOfWriting().complete);
    spreadsheets.ReadOnlyFiles = {file};
    const FileOutcome refused = outcomeOfWriting();
    EXPECT_FALSE(refused.complete);
    EXPECT_EQ(refused.failure->number(), practice::spreadsheet::SheetError::ApplicationDefined);
    EXPECT_FALSE(refused.room);
    EXPECT_EQ(spreadsheets.LeftBehind(), 0);

    RoomForTest{.Name = L"zu wenig", .Area = -3.0}.AddTo(floors);
    const FileOutcome negative = outcomeOfWriting();
    ASSERT_TRUE(negative.room);
    EXPECT_EQ(negative.room->Name(), L"zu wenig");
    EXPECT_EQ(at(2, 1), CellValue(L"Raum 1"));

    for (int row = 3; row < 700; ++row)
        put(row, 1, L"Raum");
    put(600, 11, L"x-K");
    const FileOutcome cut = clsFileSytem(context).ReadListFromFile(file, floors);
    EXPECT_FALSE(cut.complete);
    EXPECT_EQ(cut.row, 600);
    EXPECT_EQ(cut.failure->number(), RuntimeError::TypeMismatch);

    // An application that cannot be closed takes nothing from the list.
    put(600, 11, CellValue());
    spreadsheets.ForgetCalls();
    clsFloors whole;
    read(whole);
    spreadsheets.ForgetCalls();
    spreadsheets.FailAt(static_cast<int>(callsOfReading()));
    EXPECT_TRUE(clsFileSytem(context).ReadListFromFile(file, floors).complete);
}

} // namespace
} // namespace kalvrooms
