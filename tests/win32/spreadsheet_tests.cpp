// Room lists and point lists in workbooks, all the way from the file layer to the practice
// spreadsheet application in a process of its own.

#include "practice/workbook/Application.h"
#include "win32/SpreadsheetTest.h"

#include <cstdio>
#include <ostream>
#include <thread>

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

using sheets::Cell;

CellValue text(const std::wstring& words) {
    return words;
}

class Workbooks : public SpreadsheetTest {};

// --------------------------------------------------------------------------------- round trips

class WorkbookRoundTrip : public SpreadsheetTest, public ::testing::WithParamInterface<int> {};

// Sides keep 15 digits as texts; so the way over text alone is what the way over a workbook has to
// equal, to the last digit.
TEST_P(WorkbookRoundTrip, FromTextToWorkbookToTextIsAsGoodAsTextAlone) {
    // As users get it, for a long list.
    startsAhead = GetParam() == 1;
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
    EXPECT_THAT(context.table.Updates, ElementsAre(false));
    expectNoMessage();
}

INSTANTIATE_TEST_SUITE_P(Rooms, WorkbookRoundTrip, ::testing::Values(1, 1500));

TEST_F(Workbooks, TextsComeBackAsTypedAndStandInTextCells) {
    const std::vector<std::wstring> texts = {L"007",
                                             L"=1+1",
                                             L"-3",
                                             L"1/2",
                                             L"TRUE",
                                             L"'a",
                                             std::wstring(901, L'z'),
                                             std::wstring(5000, L'w')};
    clsFloors floors;
    for (const std::wstring& words : texts) {
        RoomForTest room;
        room.Name = room.Function = room.Enclosure = room.Occupancy = room.AreaType = words;
        room.Story = words;
        room.AddTo(floors);
    }
    write(L"texts.xls", floors);
    EXPECT_EQ(readContents(L"texts.xls"), contentsOf(floors));

    const auto sheet = storedSheet(L"texts.xls");
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const clsRoom room = roomAt(floors, static_cast<std::int32_t>(i) + 1);
        for (const int column : {1, 2, 4, 5, 6, 7})
            EXPECT_EQ(sheet->At(static_cast<int>(i) + 2, column),
                      (Cell{room.Name(), TextNumberFormat}))
                << i << " in column " << column;
    }
    expectQuietEnd();
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

TEST_F(Workbooks, CellsOfAllKindsAreReadAsTheUserSeesThem) {
    sheets::Workbook workbook = sheets::Workbook::New();
    sheets::Sheet& sheet = *workbook.sheets[0];
    sheet.Set(2, 1, {1234.5});
    sheet.Set(2, 2, {true});
    sheet.Set(2, 3, {std::wstring(L"no number")});
    sheet.Set(2, 4, {CellError{L"#DIV/0!"}});
    sheet.Set(2, 5, {17.5, L"$#,##0.00"});
    const CellValue date = CellDate{L"2024-05-12T00:00:00.000"};
    sheet.Set(2, 6, {date});
    sheet.Set(2, 9, {date});
    sheet.Set(2, 10, {4.0});
    store(L"list.xls", workbook);
    clsFloors floors;
    read(L"list.xls", floors);
    ASSERT_EQ(floors.GetCountOfRooms(), 1);
    const clsRoom room = roomAt(floors, 1);
    EXPECT_EQ(room.Name(), FromDouble(1234.5));
    EXPECT_EQ(room.FunctionName(), L"True");
    EXPECT_EQ(room.Geometry->Area(), 0.0);
    EXPECT_EQ(room.StoryCode(), L"#DIV/0!");
    EXPECT_EQ(room.Enclosure(), FromDouble(17.5));
    EXPECT_THAT(room.Occupancy(), HasSubstr(L"2024"));
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByDy);
}

// --------------------------------------------------------------------------------- locked files,
// users' own

TEST_F(Workbooks, AFileThatIsProtectedOrOpenElsewhereStaysAsItIs) {
    write(L"list.xls", programme(5));
    const std::string before = bytes(L"list.xls");
    const clsFloors floors = programme(9);
    SetFileAttributesW(name(L"list.xls").c_str(), FILE_ATTRIBUTE_READONLY);
    write(L"list.xls", floors);
    expectQuietEnd();
    SetFileAttributesW(name(L"list.xls").c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(bytes(L"list.xls"), before);
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

TEST_F(Workbooks, ReadingTakesOverARunningApplicationAndEndsIt) {
    write(L"list.xls", programme(5));
    write(L"other.xls", programme(2));
    const std::string other = bytes(L"other.xls");
    const RunningSpreadsheet running(L"--changed \"" + name(L"other.xls") + L"\"");
    clsFloors floors;
    read(L"list.xls", floors);
    EXPECT_EQ(floors.GetCountOfRooms(), 5);
    EXPECT_TRUE(running.ended());
    // Its unsaved changes are lost and nobody was asked.
    EXPECT_EQ(bytes(L"other.xls"), other);
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
    EXPECT_TRUE(driver::comesAbout([] { return spreadsheetProcesses().size() == 1; }));
    EXPECT_EQ(bytes(L"open.xls"), before);
    running.tell(sheets::LeaveMessage);
    EXPECT_TRUE(running.ended());
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(9));
    expectQuietEnd();
}

TEST_F(Workbooks, ARunningApplicationGetsItsSettingsBackWhenAListFails) {
    sheets::Workbook workbook = sheets::Workbook::New();
    workbook.sheets[0]->Set(2, 1, {L"a"});
    workbook.sheets[0]->Set(3, 1, {L"b"});
    workbook.sheets[0]->Set(3, 11, {L"x-K"});
    store(L"list.xls", workbook);
    const RunningSpreadsheet running(L"");
    clsFloors floors;
    const FileOutcome outcome = clsFileSytem(context).ReadListFromFile(name(L"list.xls"), floors);
    EXPECT_FALSE(outcome.complete);
    EXPECT_EQ(outcome.row, 3);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);
    EXPECT_FALSE(running.ended(0));
    EXPECT_EQ(running.ask(sheets::AskAlertsMessage), 1u);
    EXPECT_EQ(running.ask(sheets::AskSecurityMessage),
              static_cast<DWORD_PTR>(sheets::Application::MacrosRun));
}

TEST_F(Workbooks, AreOpenedWithTheirMacrosOff) {
    write(L"list.xls", programme(3));
    expectQuietEnd();
    tellSpreadsheets(L"Report", name(L"report.txt"));
    EXPECT_THAT(readContents(L"list.xls"), SizeIs(3));
    expectQuietEnd();
    auto calls = callsOf(path(L"report.txt"));
    EXPECT_GE(calls["application.AutomationSecurity"], 1);
    ASSERT_TRUE(calls.contains("opened with macros"));
    EXPECT_EQ(calls["opened with macros"], 0);
}

// --------------------------------------------------------------------------------- busy

// A rejected call is tried again after every tenth of a second of the patience.
class BusySpreadsheets : public SpreadsheetTest {
  protected:
    static constexpr DWORD patience = 600;
    static constexpr int attempts = 7;
    BusySpreadsheets() : SpreadsheetTest(patience) {
        tellSpreadsheets(L"Report", name(L"report.txt"));
    }
    int callsMet() const { return callsOf(path(L"report.txt"))["calls"]; }
};

TEST_F(BusySpreadsheets, ADialogOfTheRunningApplicationIsWaitedForOnceThenAnotherOneIsStarted) {
    RunningSpreadsheet running(L"");
    forgetWhatSpreadsheetsWereTold();
    sheets::Workbook workbook = sheets::Workbook::New();
    workbook.sheets[0]->Set(2, 1, {L"a"});
    store(L"list.xls", workbook);
    running.tell(sheets::DialogMessage);
    ASSERT_TRUE(driver::comesAbout([&] { return running.hasDialog(); }));
    clsFloors floors;
    read(L"list.xls", floors);
    EXPECT_EQ(floors.GetCountOfRooms(), 1);
    EXPECT_TRUE(running.hasDialog());
    EXPECT_TRUE(driver::comesAbout([] { return spreadsheetProcesses().size() == 1; }));
    EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
    running.tell(sheets::LeaveMessage);
    ASSERT_TRUE(running.ended());
    EXPECT_EQ(callsMet(), attempts);
}

TEST_F(BusySpreadsheets, ADialogOfTheNewApplicationIsWaitedForOnlySoLong) {
    store(L"list.xls", sheets::Workbook::New());
    const std::string before = bytes(L"list.xls");
    tellSpreadsheets(L"Dialog", L"Activate now?");
    const OfferedSpreadsheet instance;
    instance.waitUntilReady();
    EXPECT_TRUE(clsFileSytem(context).WriteListToFile(name(L"list.xls"), programme(2)).busy);
    EXPECT_TRUE(instance.ended());
    EXPECT_EQ(callsMet(), attempts);
    EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
    expectNoMessage();
    EXPECT_EQ(bytes(L"list.xls"), before);
}

// The application comes free just after the patience ended: by then it must not be asked to put a
// new workbook in the place of the one that it could not open in time.
TEST_F(BusySpreadsheets, AWorkbookThatCouldNotBeOpenedInTimeIsNotReplaced) {
    sheets::Workbook workbook = sheets::Workbook::New();
    workbook.sheets[0]->Set(3, 14, {L"of the user"});
    for (const std::wstring mode : {L"later", L"reject", L"edited"}) {
        store(L"list.xls", workbook);
        const std::string before = bytes(L"list.xls");
        tellSpreadsheets(L"Faults", L"workbooks.Open " + mode + L" " + std::to_wstring(attempts));
        SpreadsheetContext fresh(patience);
        const OfferedSpreadsheet instance;
        instance.waitUntilReady();
        const FileOutcome outcome =
            clsFileSytem(fresh).WriteListToFile(name(L"list.xls"), programme(2));
        EXPECT_FALSE(outcome.complete);
        EXPECT_TRUE(outcome.busy);
        EXPECT_TRUE(instance.ended());
        EXPECT_EQ(bytes(L"list.xls"), before);
    }
}

class PatientSpreadsheets : public SpreadsheetTest {
  protected:
    PatientSpreadsheets() : SpreadsheetTest(10000) {}
};

TEST_F(PatientSpreadsheets, ADialogThatIsAnsweredInTimeDoesNoHarm) {
    tellSpreadsheets(L"Dialog", L"Activate now?");
    const OfferedSpreadsheet instance;
    instance.waitUntilReady();
    std::thread user([&] {
        EXPECT_TRUE(driver::comesAbout([&] { return instance.ask(sheets::AskCallsMessage) > 0; }));
        instance.tell(sheets::AnswerMessage, 2);
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
    int firstCall;
    // Members' names are asked for anew, as in a program that has just started: these calls fail
    // in their turn as well.
    bool asksForNames;
    // The call seems to have worked, so that nobody can know what is missing in the file.
    bool unnoticed;
};

std::ostream& operator<<(std::ostream& out, const FaultCase& fault) {
    return out << fault.name;
}

// Every fourth call of an operation meets a fault, another one in each of the four modes;
// `operation` is run and judged each time.
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
        constexpr int step = 4;
        auto next = offered(GetParam().firstCall);
        for (int call = GetParam().firstCall; call <= calls; call += step) {
            SCOPED_TRACE(call);
            const auto instance = std::move(next);
            run(operation, *instance);
            // Starts while the old one ends.
            if (call + step <= calls)
                next = offered(call + step);
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
        EXPECT_EQ(fresh.platform.desktop.MousePointer(), Gui::DefaultPointer);
        EXPECT_TRUE(fresh.platform.desktop.Messages().empty());
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
                const clsRoom last = roomAt(floors, 20);
                EXPECT_EQ(sheet->At(21, 1).value, text(last.Name()));
                EXPECT_EQ(sheet->At(22, 1).value, CellValue());
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

INSTANTIATE_TEST_SUITE_P(Modes, ListFaults,
                         ::testing::Values(FaultCase{"exit", L"exit", 1, true, false},
                                           FaultCase{"fail", L"fail", 2, true, false},
                                           FaultCase{"empty", L"empty", 3, false, true},
                                           FaultCase{"busy", L"later 1000000", 4, false, false}),
                         [](const auto& fault) { return std::string(fault.param.name); });

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
        EXPECT_EQ(fresh.platform.desktop.MousePointer(), Gui::DefaultPointer);
        expectQuietEnd();
    }
}

// --------------------------------------------------------------------------------- figures

class WorkbookFigures : public SpreadsheetTest {
  protected:
    WorkbookFigures() : SpreadsheetTest(10000) { startsAhead = false; }

    // The start of the application is left out.
    std::int64_t callsOf(const std::function<void()>& operation) {
        offerSpreadsheet();
        const std::int64_t before = context.session->Calls();
        operation();
        EXPECT_TRUE(spreadsheetProcessesEnd());
        return context.session->Calls() - before;
    }
};

// Calls of an operation: a few once and for all, and one reference and one transfer for every 512
// rows.
TEST_F(WorkbookFigures, CallsGrowWithBlocksOfRoomsNotWithRooms) {
    constexpr int roomsPerBlock = 512;
    const auto blocks = [](int rooms) { return (rooms + roomsPerBlock - 1) / roomsPerBlock; };
    // The names of members are asked for once.
    for (int i = 0; i < 2; ++i)
        callsOf([&] { write(L"list.xls", programme(1)); });
    callsOf([&] { readContents(L"list.xls"); });
    for (const int rooms : {1, 600}) {
        const clsFloors floors = programme(rooms);
        std::filesystem::remove(path(L"list.xls"));
        EXPECT_EQ(callsOf([&] { write(L"list.xls", floors); }), 22 + 2 * blocks(rooms));
        // What is there already is looked at again, for cells that turn numbers into texts.
        EXPECT_EQ(callsOf([&] { write(L"list.xls", floors); }), 24 + 4 * blocks(rooms));
        clsFloors back;
        // The row below the last room is read as well.
        EXPECT_EQ(callsOf([&] { read(L"list.xls", back); }), 10 + 2 * blocks(rooms + 2));
        EXPECT_EQ(back.GetCountOfRooms(), rooms);
    }
}

} // namespace
} // namespace kalvrooms::testing
