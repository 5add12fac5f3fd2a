// Room lists and point lists in workbooks, all the way from the file layer to the practice
// spreadsheet application in a process of its own.

#include "win32/SpreadsheetTest.h"

#include <cstdio>
#include <ostream>
#include <thread>

namespace kalvrooms::testing {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Le;
using ::testing::SizeIs;

using sheets::Cell;
using sheets::GeneralFormat;
using sheets::TextFormat;
using sheets::Value;

Value text(const std::wstring& words) {
    return words;
}

class Workbooks : public SpreadsheetTest {};

// --------------------------------------------------------------------------------- round trips

class WorkbookRoundTrip : public SpreadsheetTest, public ::testing::WithParamInterface<int> {};

// Sides keep 15 digits as texts; so the way over text alone is what the way over a workbook has to
// equal, to the last digit.
TEST_P(WorkbookRoundTrip, FromTextToWorkbookToTextIsAsGoodAsTextAlone) {
    // As users get it, for the lengths that they have.
    startsAhead = GetParam() != 150 && GetParam() != 1500;
    write(L"list.txt", programme(GetParam()));
    clsFloors fromText;
    read(L"list.txt", fromText);
    ASSERT_EQ(fromText.GetCountOfRooms(), GetParam());

    write(L"list.xls", fromText);
    expectQuietEnd();
    clsFloors fromWorkbook;
    read(L"list.xls", fromWorkbook);
    expectQuietEnd();
    write(L"workbook.txt", fromWorkbook);

    write(L"text.txt", fromText);
    clsFloors fromTextAgain;
    read(L"text.txt", fromTextAgain);
    write(L"text.txt", fromTextAgain);

    EXPECT_EQ(contentsOf(fromWorkbook), contentsOf(fromTextAgain));
    EXPECT_EQ(bytes(L"workbook.txt"), bytes(L"text.txt"));
    EXPECT_THAT(context.tableUpdates, ElementsAre(false));
    expectNoMessage();
}

INSTANTIATE_TEST_SUITE_P(Rooms, WorkbookRoundTrip, ::testing::Values(1, 150, 511, 1500));

TEST_F(Workbooks, TextsComeBackAsTypedAndStandInTextCells) {
    const std::vector<std::wstring> texts = {L"007",
                                             L"1/2",
                                             L"=1+1",
                                             L"-3",
                                             L"1E5",
                                             L"TRUE",
                                             L"#N/A",
                                             L"+1",
                                             L"-Flur",
                                             L"12:30",
                                             L"3-Mar",
                                             L"$5",
                                             L"5%",
                                             L"1,234",
                                             L"=SUM(A1)",
                                             L"=1+",
                                             L"(5)",
                                             L"2-10",
                                             L"'a",
                                             L"<b>&\"",
                                             std::wstring(300, L'x'),
                                             std::wstring(900, L'y'),
                                             std::wstring(901, L'z'),
                                             std::wstring(5000, L'w')};
    clsFloors floors;
    for (const std::wstring& words : texts) {
        RoomForTest room;
        room.name = room.function = room.enclosure = room.occupancy = room.areaType = words;
        room.story = words;
        room.addTo(floors);
    }
    write(L"texts.xls", floors);
    EXPECT_EQ(readContents(L"texts.xls"), contentsOf(floors));

    const auto sheet = storedSheet(L"texts.xls");
    for (std::size_t i = 0; i < texts.size(); ++i) {
        clsRoom room;
        floors.GetRoomByIndex(static_cast<std::int32_t>(i) + 1, room);
        for (const int column : {1, 2, 4, 5, 6, 7})
            EXPECT_EQ(sheet->At(static_cast<int>(i) + 2, column),
                      (Cell{room.Name(), L"", TextFormat}))
                << i << " in column " << column;
    }
    expectQuietEnd();
}

TEST_F(Workbooks, NumbersStandInNumberCellsWhateverTheUsersLanguage) {
    clsFloors floors;
    RoomForTest room;
    room.area = 12.5;
    room.type = CalculationByDx;
    room.value = L"5";
    room.addTo(floors);
    write(L"numbers.xls", floors);
    const auto sheet = storedSheet(L"numbers.xls");
    EXPECT_EQ(sheet->At(2, 3), (Cell{12.5, L"", GeneralFormat}));
    EXPECT_EQ(sheet->At(2, 9), (Cell{5.0, L"", GeneralFormat}));
    EXPECT_EQ(sheet->At(2, 10), (Cell{2.5, L"", GeneralFormat}));
    EXPECT_EQ(sheet->At(2, 8).value, text(L" "));
}

TEST_F(Workbooks, TheHeaderIsTheElevenTitlesAsTheTextTableHoldsThem) {
    write(L"list.xls", programme(1));
    const sheets::Workbook workbook = stored(L"list.xls");
    // The list stands on the sheet that was added to those of a new workbook.
    EXPECT_THAT(workbook.sheets, SizeIs(4));
    EXPECT_EQ(workbook.sheets[workbook.active]->name(), L"Sheet4");
    const int titles[] = {20, 21, 22, 23, 24, 25, 26, 30, 94, 95, 96};
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(workbook.sheets[workbook.active]->At(1, i + 1).value,
                  text(context.texts.GetText(titles[i])));
    EXPECT_EQ(workbook.sheets[workbook.active]->At(1, 12), Cell());
    for (std::size_t i = 0; i < workbook.sheets.size(); ++i)
        EXPECT_EQ(workbook.sheets[i]->cells().empty(), i != workbook.active);
}

TEST_F(Workbooks, OverAnOlderAndLongerListOnlyTheFirst101RowsAreCleared) {
    write(L"list.xls", programme(120));
    sheets::Workbook older = stored(L"list.xls");
    older.sheets[older.active]->Put({50, 12, 1, 2}, text(L"remark"), 2024);
    store(L"list.xls", older);
    const auto before = storedSheet(L"list.xls");

    write(L"list.xls", programme(3));
    const auto after = storedSheet(L"list.xls");
    for (int row = 5; row <= 101; ++row) {
        for (int column = 1; column <= 12; ++column)
            EXPECT_EQ(after->At(row, column).value, Value()) << row << " " << column;
    }
    EXPECT_EQ(after->At(50, 13).value, text(L"remark"));
    for (int row = 102; row <= 121; ++row) {
        for (int column = 1; column <= 11; ++column)
            EXPECT_EQ(after->At(row, column), before->At(row, column)) << row << " " << column;
    }
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(3));
    expectQuietEnd();
}

TEST_F(Workbooks, AListOf1500RoomsReplacesAnOlderOneInPlace) {
    write(L"list.xls", programme(2000));
    const sheets::Workbook before = stored(L"list.xls");
    clsFloors fewer = programme(1500);
    write(L"list.xls", fewer);
    EXPECT_EQ(stored(L"list.xls").sheets.size(), before.sheets.size());
    // Nothing ends the list now but the rows of the older one.
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(2000));
    expectQuietEnd();
}

TEST_F(Workbooks, AnEmptyListStartsNothingAndTouchesNothing) {
    startsAhead = false;
    store(L"list.xls", "as it was");
    write(L"list.xls", clsFloors());
    write(L"none.xls", clsFloors());
    EXPECT_EQ(bytes(L"list.xls"), "as it was");
    EXPECT_FALSE(std::filesystem::exists(path(L"none.xls")));
    EXPECT_EQ(context.session->Calls(), 0);
}

// English of the United States: whatever the user's language, formats and numbers mean the same.
TEST_F(Workbooks, EveryCallCarriesTheLocaleIdentifier1033) {
    for (const wchar_t* report : {L"new.txt", L"over.txt", L"reading.txt"}) {
        tellSpreadsheets(L"Report", name(report));
        if (report == std::wstring(L"reading.txt"))
            readContents(L"list.xls");
        else
            write(L"list.xls", programme(3));
        expectQuietEnd();
        auto calls = callsOf(path(report));
        EXPECT_GT(calls["calls"], 8);
        EXPECT_EQ(calls["locale.1033"], calls["calls"]);
    }
}

TEST_F(Workbooks, OlderVersionsOfTheApplicationSaveInTheirOwnForm) {
    tellSpreadsheets(L"Version", L"11.0");
    const clsFloors floors = programme(3);
    write(L"list.xls", floors);
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(3));
}

// --------------------------------------------------------------------------------- reading

TEST_F(Workbooks, ReadingEndsAtTheFirstRowWithAnEmptyFirstCell) {
    sheets::Workbook workbook = sheets::Workbook::New();
    sheets::Sheet& sheet = *workbook.sheets[0];
    sheet.Put({3, 1, 1, 1}, text(L"below the gap"), 2024);
    sheet.Put({2, 2, 1, 10}, text(L"beside"), 2024);
    store(L"list.xls", workbook);
    EXPECT_THAT(readContents(L"list.xls"), IsEmpty());
    sheet.Put({2, 1, 1, 1}, text(L"now there"), 2024);
    store(L"list.xls", workbook);
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(2));
}

TEST_F(Workbooks, CellsOfAllKindsAreReadAsTheUserSeesThem) {
    sheets::Workbook workbook = sheets::Workbook::New();
    sheets::Sheet& sheet = *workbook.sheets[0];
    sheet.Set(2, 1, {1234.5, L"", GeneralFormat});
    sheet.Set(2, 2, {true, L"", GeneralFormat});
    sheet.Set(2, 3, {std::wstring(L"no number"), L"", GeneralFormat});
    sheet.Set(2, 4, {sheets::ErrorValue{2007}, L"", GeneralFormat});
    sheet.Set(2, 5, {17.5, L"", L"$#,##0.00"});
    sheet.Set(2, 9, {sheets::ErrorValue{2042}, L"", GeneralFormat});
    store(L"list.xls", workbook);
    clsFloors floors;
    read(L"list.xls", floors);
    ASSERT_EQ(floors.GetCountOfRooms(), 1);
    clsRoom room;
    floors.GetRoomByIndex(1, room);
    EXPECT_EQ(room.Name(), FromDouble(1234.5));
    EXPECT_EQ(room.FunctionName(), L"True");
    EXPECT_EQ(room.Geometry->Area(), 0.0);
    EXPECT_EQ(room.StoryCode(), L"#DIV/0!");
    EXPECT_EQ(room.Enclosure(), FromDouble(17.5));
}

TEST_F(Workbooks, ADateIsItsTextAndNeverAnArea) {
    sheets::Workbook workbook = sheets::Workbook::New();
    constexpr double day = 45424; // 12 May 2024
    sheets::Sheet& sheet = *workbook.sheets[0];
    sheet.Set(2, 1, {std::wstring(L"a"), L"", GeneralFormat});
    for (const int column : {2, 3})
        sheet.Set(2, column, {day, L"", L"m/d/yyyy"});
    store(L"list.xls", workbook);
    clsFloors floors;
    read(L"list.xls", floors);
    ASSERT_EQ(floors.GetCountOfRooms(), 1);
    clsRoom room;
    floors.GetRoomByIndex(1, room);
    EXPECT_THAT(room.FunctionName(), HasSubstr(L"2024"));
    EXPECT_EQ(room.Geometry->Area(), 0.0);
}

TEST_F(Workbooks, ReadingTakesTheActiveSheet) {
    sheets::Workbook workbook = sheets::Workbook::New();
    workbook.sheets[0]->Put({2, 1, 1, 1}, text(L"first"), 2024);
    workbook.sheets[2]->Put({2, 1, 2, 1}, text(L"third"), 2024);
    workbook.active = 2;
    store(L"list.xls", workbook);
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(2));
}

TEST_F(Workbooks, AFileThatIsNoWorkbookAddsNothing) {
    store(L"list.xls", "a\tb\r\nc\td\r\n");
    EXPECT_THAT(readContents(L"list.xls"), IsEmpty());
    EXPECT_THAT(readContents(L"none.xls"), IsEmpty());
    expectNoMessage();
    expectQuietEnd();
}

// --------------------------------------------------------------------------------- without it

class NoSpreadsheets : public SpreadsheetTest {
  protected:
    void SetUp() override {
        registerSpreadsheets(false);
        startsAhead = false;
    }
    void TearDown() override { registerSpreadsheets(true); }
};

TEST_F(NoSpreadsheets, AWorkbooksNameGetsATextFileThatIsReadAgain) {
    write(L"plain.txt", programme(20));
    write(L"list.xls", programme(20));
    EXPECT_EQ(bytes(L"list.xls"), bytes(L"plain.txt"));
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(20));
    EXPECT_EQ(readContents(L"list.xls"), readContents(L"plain.txt"));
    expectNoMessage();
    expectQuietEnd();
}

TEST_F(NoSpreadsheets, ARealWorkbookGetsText73) {
    store(L"list.xls", sheets::Workbook::New());
    EXPECT_THAT(readContents(L"list.xls"), IsEmpty());
    ASSERT_THAT(context.headless.desktop.Messages(), SizeIs(1));
    EXPECT_EQ(context.headless.desktop.Messages()[0].Prompt, context.texts.GetText(73));
    store(L"binary.xls",
          std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + std::string(504, '\0'));
    EXPECT_THAT(readContents(L"binary.xls"), IsEmpty());
    EXPECT_THAT(context.headless.desktop.Messages(), SizeIs(2));
    expectQuietEnd();
}

TEST_F(NoSpreadsheets, APointFileAsWorkbookCannotBeRead) {
    store(L"points.xls", sheets::Workbook::New());
    PointArray points;
    EXPECT_FALSE(readPoints(L"points.xls", points));
    EXPECT_FALSE(points.IsSet());
    expectQuietEnd();
}

// --------------------------------------------------------------------------------- locked files

TEST_F(Workbooks, AProtectedFileStaysAsItIs) {
    write(L"list.xls", programme(5));
    const std::string before = bytes(L"list.xls");
    SetFileAttributesW(name(L"list.xls").c_str(), FILE_ATTRIBUTE_READONLY);
    const clsFloors floors = programme(9);
    const auto contents = contentsOf(floors);
    write(L"list.xls", floors);
    SetFileAttributesW(name(L"list.xls").c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(bytes(L"list.xls"), before);
    EXPECT_EQ(contentsOf(floors), contents);
    expectNoMessage();
    expectQuietEnd();
}

TEST_F(Workbooks, AFileThatIsOpenElsewhereStaysAsItIs) {
    write(L"list.xls", programme(5));
    const std::string before = bytes(L"list.xls");
    const clsFloors floors = programme(9);
    // Others may read it; nobody may do anything.
    for (const DWORD share : {DWORD{FILE_SHARE_READ}, DWORD{0}}) {
        const HANDLE lock = CreateFileW(name(L"list.xls").c_str(), GENERIC_READ, share, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        ASSERT_NE(lock, INVALID_HANDLE_VALUE);
        write(L"list.xls", floors);
        expectQuietEnd();
        clsFloors readMeanwhile;
        read(L"list.xls", readMeanwhile);
        EXPECT_EQ(readMeanwhile.GetCountOfRooms(), share == 0 ? 0 : 5);
        expectQuietEnd();
        CloseHandle(lock);
        EXPECT_EQ(bytes(L"list.xls"), before);
    }
    EXPECT_EQ(floors.GetCountOfRooms(), 9);
    expectNoMessage();
}

// --------------------------------------------------------------------------------- users' own

TEST_F(Workbooks, ReadingTakesOverARunningApplicationAndEndsIt) {
    write(L"list.xls", programme(5));
    write(L"other.xls", programme(2));
    const std::string other = bytes(L"other.xls");
    const RunningSpreadsheet running(L"--changed \"" + name(L"other.xls") + L"\"");
    clsFloors floors;
    read(L"list.xls", floors);
    EXPECT_EQ(floors.GetCountOfRooms(), 5);
    EXPECT_TRUE(running.ended(processLimit));
    // Its unsaved changes are lost and nobody was asked.
    EXPECT_EQ(bytes(L"other.xls"), other);
    expectQuietEnd();
}

TEST_F(Workbooks, ReadingAWorkbookThatItsUserHasOpenTakesWhatHeSees) {
    write(L"list.xls", programme(5));
    const RunningSpreadsheet running(L"\"" + name(L"list.xls") + L"\"");
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(5));
    EXPECT_TRUE(running.ended(processLimit));
    expectQuietEnd();
}

TEST_F(Workbooks, WritingLeavesARunningApplicationAlone) {
    write(L"list.xls", programme(5));
    write(L"open.xls", programme(3));
    const std::string before = bytes(L"open.xls");
    RunningSpreadsheet running(L"\"" + name(L"open.xls") + L"\"");
    write(L"list.xls", programme(9));
    write(L"open.xls", programme(9));
    EXPECT_FALSE(running.ended(0));
    EXPECT_TRUE(waitUntil([] { return spreadsheetProcesses().size() == 1; }, processLimit));
    EXPECT_EQ(bytes(L"open.xls"), before);
    running.tell(sheets::LeaveMessage);
    EXPECT_TRUE(running.ended(processLimit));
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(9));
    expectQuietEnd();
}

// --------------------------------------------------------------------------------- busy

class BusySpreadsheets : public SpreadsheetTest {
  protected:
    static constexpr DWORD patience = 600;
    BusySpreadsheets() : SpreadsheetTest(patience) {}

    DWORD timeOf(const std::function<void()>& operation) {
        const ULONGLONG start = GetTickCount64();
        operation();
        return static_cast<DWORD>(GetTickCount64() - start);
    }
};

TEST_F(BusySpreadsheets, ADialogOfTheRunningApplicationIsWaitedForOnceThenAnotherOneIsStarted) {
    write(L"list.xls", programme(5));
    RunningSpreadsheet running(L"");
    running.tell(sheets::DialogMessage);
    ASSERT_TRUE(waitUntil([&] { return running.hasDialog(); }, processLimit));
    clsFloors floors;
    EXPECT_THAT(timeOf([&] { read(L"list.xls", floors); }), AllOf(Ge(patience), Le(10000u)));
    EXPECT_EQ(floors.GetCountOfRooms(), 5);
    EXPECT_TRUE(running.hasDialog());
    EXPECT_TRUE(waitUntil([] { return spreadsheetProcesses().size() == 1; }, processLimit));
    EXPECT_EQ(context.headless.desktop.MousePointer(), Gui::DefaultPointer);
}

TEST_F(BusySpreadsheets, ADialogOfTheNewApplicationIsWaitedForOnlySoLong) {
    write(L"list.xls", programme(5));
    const std::string before = bytes(L"list.xls");
    tellSpreadsheets(L"Dialog", L"Activate now?");
    clsFloors list = programme(2);
    PointArray points;
    // A command each, which has the whole patience.
    const std::function<void(clsFileSytem)> commands[] = {
        [&](clsFileSytem files) { files.WriteListToFile(name(L"list.xls"), list); },
        [&](clsFileSytem files) { files.ReadListFromFile(name(L"list.xls"), list); },
        [&](clsFileSytem files) {
            EXPECT_FALSE(files.ReadPointsFromGeometryFile(name(L"list.xls"), points));
        },
    };
    for (const auto& command : commands) {
        SpreadsheetContext fresh(patience);
        const OfferedSpreadsheet instance;
        instance.waitUntilReady();
        EXPECT_THAT(timeOf([&] { command(clsFileSytem(fresh)); }), AllOf(Ge(patience), Le(10000u)));
        EXPECT_TRUE(instance.ended());
        EXPECT_EQ(fresh.headless.desktop.MousePointer(), Gui::DefaultPointer);
        EXPECT_TRUE(fresh.headless.desktop.Messages().empty());
        EXPECT_EQ(list.GetCountOfRooms(), 2);
        EXPECT_EQ(bytes(L"list.xls"), before);
    }
    EXPECT_FALSE(points.IsSet());
}

class PatientSpreadsheets : public SpreadsheetTest {
  protected:
    PatientSpreadsheets() : SpreadsheetTest(10000) {}
};

TEST_F(PatientSpreadsheets, ADialogThatIsAnsweredInTimeDoesNoHarm) {
    tellSpreadsheets(L"Dialog", L"Activate now?");
    offerSpreadsheet();
    std::thread user([] {
        Sleep(400);
        for (const DWORD process : spreadsheetProcesses())
            PostMessageW(spreadsheetControl(process), sheets::AnswerMessage, 2, 0);
    });
    clsFileSytem(context).WriteListToFile(name(L"list.xls"), programme(5));
    user.join();
    expectQuietEnd();
    forgetWhatSpreadsheetsWereTold();
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(5));
}

TEST_F(PatientSpreadsheets, CallsThatAreRejectedForAWhileAreTriedAgain) {
    const clsFloors floors = programme(20);
    tellSpreadsheets(L"Faults", L"1 later 2; 9 reject 3; range.Value later 2; SaveAs reject;"
                                L"Close later; Quit reject; 12 stall 300");
    write(L"list.xls", floors);
    expectQuietEnd();
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(20));
    expectQuietEnd();
}

// --------------------------------------------------------------------------------- faults

// What goes wrong with a call, and how the client comes to it.
struct FaultCase {
    const char* name;
    const wchar_t* instruction;
    // Members' names are asked for anew, as in a program that has just started: these calls fail
    // in their turn as well.
    bool asksForNames;
    // The call seems to have worked, so that nobody can know what is missing in the file.
    bool unnoticed;
};

std::ostream& operator<<(std::ostream& out, const FaultCase& fault) {
    return out << fault.name;
}

// Every call of an operation in turn meets a fault; `operation` is run and judged each time.
class SpreadsheetFaults : public SpreadsheetTest, public ::testing::WithParamInterface<FaultCase> {
  protected:
    using Operation = std::function<void(SpreadsheetContext&)>;

    // In the end the operation has to work again as if nothing had been.
    void forEveryCall(const Operation& operation, const std::function<void()>& judge) {
        // A rejected call is not tried again here: each of them is the operation's end.
        known_ = std::make_shared<ComSession>(0);
        if (!GetParam().asksForNames)
            run(operation, OfferedSpreadsheet());
        const int calls = callsIn(operation);
        ASSERT_GT(calls, 8);
        auto next = offered(1);
        for (int call = 1; call <= calls; ++call) {
            SCOPED_TRACE(call);
            const auto instance = std::move(next);
            run(operation, *instance);
            // Starts while the old one ends.
            if (call < calls)
                next = offered(call + 1);
            EXPECT_TRUE(instance->ended());
            judge();
            if (HasFailure())
                return;
        }
        forgetWhatSpreadsheetsWereTold();
        expectQuietEnd();
        healthy_ = true;
        run(operation, OfferedSpreadsheet());
        judge();
        expectQuietEnd();
        std::printf("%d calls, each meeting \"%s\"\n", calls, GetParam().name);
    }
    // Whether what the operation left has to be in order.
    bool noticed() const { return healthy_ || !GetParam().unnoticed; }
    bool healthy() const { return healthy_; }

  private:
    void run(const Operation& operation, const OfferedSpreadsheet& instance) {
        instance.waitUntilReady();
        SpreadsheetContext fresh(GetParam().asksForNames ? std::make_shared<ComSession>(0)
                                                         : known_);
        operation(fresh);
        EXPECT_EQ(fresh.headless.desktop.MousePointer(), Gui::DefaultPointer);
        EXPECT_TRUE(fresh.headless.desktop.Messages().empty());
    }
    int callsIn(const Operation& operation) {
        tellSpreadsheets(L"Report", name(L"report.txt"));
        run(operation, OfferedSpreadsheet());
        expectQuietEnd();
        forgetWhatSpreadsheetsWereTold();
        return callsOf(path(L"report.txt"))["calls"];
    }
    static std::unique_ptr<OfferedSpreadsheet> offered(int call) {
        tellSpreadsheets(L"Faults", std::to_wstring(call) + L" " + GetParam().instruction);
        return std::make_unique<OfferedSpreadsheet>();
    }

    std::shared_ptr<ComSession> known_;
    bool healthy_ = false;
};

class ListFaults : public SpreadsheetFaults {};
class NewFileFaults : public SpreadsheetFaults {};
class PointFaults : public SpreadsheetFaults {};

TEST_P(NewFileFaults, WhileWritingANewFileLeaveTheListAndNoPieceOfAFile) {
    const clsFloors floors = programme(20);
    const auto contents = contentsOf(floors);
    write(L"whole.xls", floors);
    const std::string whole = bytes(L"whole.xls");
    forEveryCall(
        [&](SpreadsheetContext& fresh) {
            std::filesystem::remove(path(L"list.xls"));
            clsFileSytem(fresh).WriteListToFile(name(L"list.xls"), floors);
        },
        [&] {
            EXPECT_EQ(contentsOf(floors), contents);
            if (healthy() || (noticed() && std::filesystem::exists(path(L"list.xls")))) {
                EXPECT_EQ(bytes(L"list.xls"), whole);
            }
        });
}

TEST_P(ListFaults, WhileWritingOverAFileLeaveTheOldListOrTheNewOne) {
    write(L"old.xls", programme(30));
    const std::string old = bytes(L"old.xls");
    const clsFloors floors = programme(20);
    const auto contents = contentsOf(floors);
    forEveryCall(
        [&](SpreadsheetContext& fresh) {
            store(L"list.xls", old);
            clsFileSytem(fresh).WriteListToFile(name(L"list.xls"), floors);
        },
        [&] {
            EXPECT_EQ(contentsOf(floors), contents);
            if (healthy() || (noticed() && bytes(L"list.xls") != old)) {
                const auto sheet = storedSheet(L"list.xls");
                clsRoom last;
                floors.GetRoomByIndex(20, last);
                EXPECT_EQ(sheet->At(21, 1).value, text(last.Name()));
                EXPECT_EQ(sheet->At(22, 1).value, Value());
            }
        });
}

TEST_P(ListFaults, WhileReadingLeaveTheListAsItWasOrWithAllRooms) {
    write(L"list.xls", programme(20));
    const std::string file = bytes(L"list.xls");
    const auto before = contentsOf(programme(2));
    std::unique_ptr<clsFloors> list;
    forEveryCall(
        [&](SpreadsheetContext& fresh) {
            list = std::make_unique<clsFloors>(programme(2));
            clsFileSytem(fresh).ReadListFromFile(name(L"list.xls"), *list);
        },
        [&] {
            if (list->GetCountOfRooms() != 22 || healthy()) {
                EXPECT_EQ(healthy(), list->GetCountOfRooms() == 22);
            }
            if (list->GetCountOfRooms() != 22) {
                EXPECT_EQ(contentsOf(*list), before);
            }
            EXPECT_EQ(bytes(L"list.xls"), file);
        });
}

TEST_P(PointFaults, WhileReadingPointsAreTold) {
    sheets::Workbook workbook = sheets::Workbook::New();
    for (int row = 1; row <= 4; ++row)
        workbook.sheets[0]->Put({row, 1, 1, 2}, 3.0, 2024);
    store(L"points.xls", workbook);
    PointArray points;
    bool done = false;
    forEveryCall(
        [&](SpreadsheetContext& fresh) {
            points = PointArray();
            done = clsFileSytem(fresh).ReadPointsFromGeometryFile(name(L"points.xls"), points);
        },
        [&] {
            EXPECT_TRUE(done || !healthy());
            if (done && noticed()) {
                EXPECT_EQ(points.Count(), 3);
            }
        });
}

constexpr FaultCase gone{"exit", L"exit", true, false};
constexpr FaultCase failing{"fail", L"fail", true, false};
constexpr FaultCase answeringNothing{"empty", L"empty", false, true};
constexpr FaultCase busyFromThenOn{"busy", L"later 1000000", false, false};

const auto nameOfFault = [](const auto& fault) { return std::string(fault.param.name); };
INSTANTIATE_TEST_SUITE_P(Modes, ListFaults,
                         ::testing::Values(gone, failing, answeringNothing, busyFromThenOn),
                         nameOfFault);
INSTANTIATE_TEST_SUITE_P(Modes, NewFileFaults,
                         ::testing::Values(gone, failing, answeringNothing, busyFromThenOn),
                         nameOfFault);
INSTANTIATE_TEST_SUITE_P(Modes, PointFaults,
                         ::testing::Values(gone, failing, answeringNothing, busyFromThenOn),
                         nameOfFault);

TEST_F(Workbooks, ARunningApplicationThatGoesAwayMeanwhileHarmsNothing) {
    write(L"list.xls", programme(5));
    for (const int call : {1, 2, 4, 8, 12}) {
        tellSpreadsheets(L"Faults", std::to_wstring(call) + L" exit");
        const RunningSpreadsheet running(L"");
        forgetWhatSpreadsheetsWereTold();
        SpreadsheetContext fresh(300);
        clsFloors list = programme(2);
        clsFileSytem(fresh).ReadListFromFile(name(L"list.xls"), list);
        // Gone at once it counts as not running.
        EXPECT_EQ(list.GetCountOfRooms(), call <= 2 ? 7 : 2) << call;
        EXPECT_EQ(fresh.headless.desktop.MousePointer(), Gui::DefaultPointer);
        expectQuietEnd();
    }
}

// --------------------------------------------------------------------------------- points

class WorkbookPoints : public SpreadsheetTest {
  protected:
    sheets::Workbook workbook = sheets::Workbook::New();

    void put(int row, int column, const Value& value) {
        workbook.sheets[0]->Set(row, column, {value, L"", GeneralFormat});
    }
    bool readPoints(PointArray& points) {
        store(L"points.xls", workbook);
        const bool done = SpreadsheetTest::readPoints(L"points.xls", points);
        expectQuietEnd();
        return done;
    }
    static std::vector<std::pair<double, double>> all(const PointArray& points) {
        std::vector<std::pair<double, double>> pairs;
        for (std::int32_t i = 0; i < points.Count(); ++i)
            pairs.emplace_back(points.X(i), points.Y(i));
        return pairs;
    }
};

using Pairs = std::vector<std::pair<double, double>>;

TEST_F(WorkbookPoints, AreReadFromColumnsAAndB) {
    put(1, 1, 3.0);
    for (int i = 0; i < 3; ++i) {
        put(i + 2, 1, i + 0.5);
        put(i + 2, 2, -i * 1000.25);
    }
    put(5 + 0, 3, 99.0);
    PointArray points;
    EXPECT_TRUE(readPoints(points));
    EXPECT_EQ(all(points), (Pairs{{0.5, 0}, {1.5, -1000.25}, {2.5, -2000.5}}));
}

TEST_F(WorkbookPoints, ARowThatIsNotNumericRepeatsTheFirstPoint) {
    put(1, 1, 4.0);
    put(2, 1, 7.0);
    put(2, 2, 8.0);
    put(3, 1, text(L"here"));
    put(3, 2, 1.0);
    put(4, 1, 1.0);
    put(5, 1, sheets::ErrorValue{2007});
    put(5, 2, 2.0);
    PointArray points;
    EXPECT_TRUE(readPoints(points));
    EXPECT_EQ(all(points), (Pairs{{7, 8}, {7, 8}, {7, 8}, {7, 8}}));
}

TEST_F(WorkbookPoints, AFirstRowThatIsNotNumericLeavesTheOrigin) {
    put(1, 1, 2.0);
    put(2, 1, text(L"x"));
    put(3, 1, text(L"y"));
    PointArray points;
    EXPECT_TRUE(readPoints(points));
    EXPECT_EQ(all(points), (Pairs{{0, 0}, {0, 0}}));
}

TEST_F(WorkbookPoints, WithoutACountThePointsStayUnset) {
    PointArray points;
    EXPECT_TRUE(readPoints(points));
    EXPECT_FALSE(points.IsSet());
    put(1, 1, text(L"points"));
    EXPECT_TRUE(readPoints(points));
    EXPECT_FALSE(points.IsSet());
}

TEST_F(WorkbookPoints, ACountIsRoundedAndBelowOneItIsAnError) {
    put(1, 1, 2.5);
    PointArray points;
    EXPECT_TRUE(readPoints(points));
    EXPECT_EQ(points.Count(), 2);
    put(1, 1, 0.0);
    PointArray none;
    EXPECT_FALSE(readPoints(none));
    EXPECT_FALSE(none.IsSet());
}

TEST_F(WorkbookPoints, TextsAreNumbersAsTheUserWritesThem) {
    put(1, 1, text(L"1"));
    put(2, 1, text(FromDouble(2.5)));
    put(2, 2, text(FromDouble(-0.25)));
    PointArray points;
    EXPECT_TRUE(readPoints(points));
    EXPECT_EQ(all(points), (Pairs{{2.5, -0.25}}));
}

TEST_F(WorkbookPoints, LongOutlinesComeInWhole) {
    constexpr int count = 1300;
    put(1, 1, static_cast<double>(count));
    Pairs expected;
    for (int i = 0; i < count; ++i) {
        put(i + 2, 1, i * 0.25);
        put(i + 2, 2, i * 2.0);
        expected.emplace_back(i * 0.25, i * 2.0);
    }
    PointArray points;
    EXPECT_TRUE(readPoints(points));
    EXPECT_EQ(all(points), expected);
}

// --------------------------------------------------------------------------------- figures

class WorkbookFigures : public SpreadsheetTest {
  protected:
    WorkbookFigures() : SpreadsheetTest(10000) { startsAhead = false; }

    struct Figures {
        std::int64_t calls;
        double total; // milliseconds
        double outside;
    };
    // The start of the application is left out.
    Figures of(const std::function<void()>& operation) {
        offerSpreadsheet();
        const std::int64_t calls = context.session->Calls();
        const auto inside = context.session->TimeInCalls();
        const auto start = std::chrono::steady_clock::now();
        operation();
        const std::chrono::duration<double, std::milli> total =
            std::chrono::steady_clock::now() - start;
        const std::chrono::duration<double, std::milli> spent =
            context.session->TimeInCalls() - inside;
        EXPECT_TRUE(spreadsheetProcessesEnd());
        return {context.session->Calls() - calls, total.count(), (total - spent).count()};
    }
    static void print(const char* what, int rooms, const Figures& figures) {
        std::printf("%-22s %5d rooms %4lld calls %8.1f ms, %5.2f %% of it outside the calls\n",
                    what, rooms, static_cast<long long>(figures.calls), figures.total,
                    100.0 * figures.outside / figures.total);
    }
};

// Calls of an operation: a few once and for all, and one reference and one transfer for every 512
// rows.
TEST_F(WorkbookFigures, CallsGrowWithBlocksOfRoomsNotWithRooms) {
    constexpr int roomsPerBlock = 512;
    const auto blocks = [](int rooms) { return (rooms + roomsPerBlock - 1) / roomsPerBlock; };
    // The names of members are asked for once.
    for (int i = 0; i < 2; ++i)
        of([&] { write(L"list.xls", programme(1)); });
    of([&] { readContents(L"list.xls"); });
    for (const int rooms : {1, 150, 1500, 5000}) {
        const clsFloors floors = programme(rooms);
        std::filesystem::remove(path(L"list.xls"));
        const Figures fresh = of([&] { write(L"list.xls", floors); });
        const Figures again = of([&] { write(L"list.xls", floors); });
        clsFloors back;
        const Figures reading = of([&] { read(L"list.xls", back); });
        print("writing a new workbook", rooms, fresh);
        print("writing over it", rooms, again);
        print("reading it", rooms, reading);
        EXPECT_EQ(back.GetCountOfRooms(), rooms);
        EXPECT_EQ(fresh.calls, 21 + 2 * blocks(rooms));
        EXPECT_EQ(again.calls, 21 + 2 * blocks(rooms));
        // The row below the last room is read as well.
        EXPECT_EQ(reading.calls, 9 + 2 * blocks(rooms + 2));
    }
}

TEST_F(WorkbookFigures, OutsideOfTheApplicationsCallsGoesLessThanATenthOfTheTime) {
    const clsFloors floors = programme(1500);
    of([&] { write(L"list.xls", programme(1)); });
    std::filesystem::remove(path(L"list.xls"));
    const Figures writing = of([&] { write(L"list.xls", floors); });
    clsFloors back;
    const Figures reading = of([&] { read(L"list.xls", back); });
    print("writing a new workbook", 1500, writing);
    print("reading it", 1500, reading);
    EXPECT_LT(writing.outside, 0.1 * writing.total);
    EXPECT_LT(reading.outside, 0.1 * reading.total);
}

} // namespace
} // namespace kalvrooms::testing
