// Workbooks through the real program: what its user does in the main window, what the windows show
// and what the files hold afterwards.

#include "win32/SpreadsheetTest.h"

#include "journeys/QuartinoProcess.h"
#include "journeys/SessionEnd.h"
#include "support/Drawings.h"

namespace kalvrooms::testing {
namespace {

namespace ui = kalvrooms::driver;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr const wchar_t* keyPath = L"Software\\QuartinoWorkbookJourneys";

class WorkbookJourney : public SpreadsheetTest {
  protected:
    WorkbookJourney() {
        folder_.writeHandOver(keyPath);
        startHost();
        practiceHost().clearFaults();
        practiceHost().load(drawingOf({}));
    }

    // The first of all processes comes up while the system's own services are still starting.
    static void startHost() {
        driver::waitFor("the practice host", [] {
            try {
                return practiceHost().running();
            } catch (const driver::CallFailed&) {
                return false;
            }
        });
    }
    static clsFloors roomsNamed(const std::vector<std::wstring>& names) {
        clsFloors floors;
        for (const std::wstring& words : names) {
            RoomForTest room;
            room.Name = words;
            room.Area = 12.5;
            room.AddTo(floors);
        }
        return floors;
    }
    void open(QuartinoProcess& quartino, const std::wstring& fileName) const {
        quartino.open(path(fileName));
    }
    void saveAs(QuartinoProcess& quartino, const std::wstring& fileName) const {
        quartino.saveAs(path(fileName));
    }

    // Saves while the program has something to say, which begins so, and answers with Enter.
    static void saveAndRead(QuartinoProcess& quartino, const std::wstring& beginning) {
        quartino.command([&] {
            quartino.chooseByKeys(fileMenu, saveLine);
            const HWND box = quartino.messageBox();
            EXPECT_THAT(ui::messageText(box), ::testing::StartsWith(beginning));
            EXPECT_EQ(ui::textOf(box), L" Quartino");
            quartino.closeWithEnter(box);
        });
    }

    ProgramFolder folder_;
    SettingsKey key_{keyPath};
};

constexpr const wchar_t* notSaved = L"Die Raumliste wurde nicht gespeichert.";

// The end of the session is asked for by another process, whose question stands meanwhile.
TEST_F(WorkbookJourney, AWorkbookIsSavedWhileTheSystemWaitsForTheEndOfTheSession) {
    QuartinoProcess quartino(folder_);
    write(L"list.xls", roomsNamed({L"Flur", L"Lager"}));
    open(quartino, L"list.xls");
    EXPECT_TRUE(spreadsheetProcessesEnd());
    quartino.endCommandWith(VK_DELETE);
    const SessionEnd session(quartino.main());
    quartino.closeWithEnter(quartino.messageBox());
    quartino.giveFileName(quartino.fileDialog(), name(L"kept.xls"));
    session.expectConsent();
    EXPECT_TRUE(spreadsheetProcessesEnd());
    EXPECT_EQ(readContents(L"kept.xls"), contentsOf(roomsNamed({L"Lager"})));
    PostMessageW(quartino.main(), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(quartino.program().waitForEnd(), 0u);
}

TEST_F(WorkbookJourney, AWorkbookIsOpenedSavedInPlaceAndUnderANewName) {
    const std::vector<std::wstring> names = {L"007", L"1/2", L"=1+1", L"-3", L"1E5", L"TRUE"};
    write(L"list.xls", roomsNamed(names));
    expectQuietEnd();
    const auto contents = contentsOf(roomsNamed(names));
    const std::wstring twelveAndAHalf = FromDouble(12.5);

    QuartinoProcess quartino(folder_);
    open(quartino, L"list.xls");
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - list.xls");
    EXPECT_EQ(quartino.column(Name), names);
    EXPECT_EQ(quartino.column(Area), std::vector<std::wstring>(names.size(), twelveAndAHalf));
    EXPECT_TRUE(spreadsheetProcessesEnd());

    saveAs(quartino, L"second.xls");
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - second.xls");
    EXPECT_TRUE(spreadsheetProcessesEnd());
    EXPECT_THAT(stored(L"second.xls").sheets, SizeIs(4));
    EXPECT_EQ(storedSheet(L"second.xls")->At(2, 1), (sheets::Cell{L"007", TextNumberFormat}));
    EXPECT_EQ(storedSheet(L"second.xls")->At(2, 3), sheets::Cell{12.5});

    // What is behind the list in a workbook stays when it is saved in place.
    sheets::Workbook workbook = stored(L"second.xls");
    workbook.ActiveSheet().Set(3, 13, {L"remark"});
    store(L"second.xls", workbook);
    // That was somebody else: the program asks, and Enter means Yes.
    saveAndRead(quartino, L"Die Datei wurde inzwischen von jemand anderem geändert.");
    EXPECT_TRUE(spreadsheetProcessesEnd());
    quartino.runByKeys(fileMenu, saveLine);
    EXPECT_TRUE(spreadsheetProcessesEnd());
    EXPECT_EQ(storedSheet(L"second.xls")->At(3, 13).value, CellValue(L"remark"));
    EXPECT_EQ(quartino.program().close(), 0u);
    EXPECT_EQ(readContents(L"second.xls"), contents);
}

TEST_F(WorkbookJourney, AnApplicationThatGoesAwayLeavesTheListAndTheNextCommandAFreshOne) {
    write(L"list.xls", roomsNamed({L"a", L"b"}));
    expectQuietEnd();
    QuartinoProcess quartino(folder_);
    open(quartino, L"list.xls");
    ASSERT_THAT(quartino.column(Name), ElementsAre(L"a", L"b"));
    EXPECT_TRUE(spreadsheetProcessesEnd());

    const std::string before = bytes(L"list.xls");
    tellSpreadsheets(L"Faults", L"range.Value exit");
    saveAndRead(quartino, notSaved);
    forgetWhatSpreadsheetsWereTold();
    EXPECT_TRUE(spreadsheetProcessesEnd());
    EXPECT_TRUE(quartino.onlyShows({quartino.main()}));
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"a", L"b"));
    EXPECT_EQ(bytes(L"list.xls"), before);

    saveAs(quartino, L"second.xls");
    EXPECT_TRUE(spreadsheetProcessesEnd());
    EXPECT_EQ(quartino.program().close(), 0u);
    EXPECT_EQ(readContents(L"second.xls"), readContents(L"list.xls"));
}

class JourneyWithoutSpreadsheets : public WorkbookJourney {
  protected:
    void SetUp() override {
        registerSpreadsheets(false);
        startsAhead = false;
    }
    void TearDown() override { registerSpreadsheets(true); }
};

TEST_F(JourneyWithoutSpreadsheets, AWorkbooksNameMeansText) {
    store(L"real.xls", sheets::Workbook::New());
    write(L"plain.txt", roomsNamed({L"a", L"b"}));

    QuartinoProcess quartino(folder_);
    open(quartino, L"plain.txt");
    saveAs(quartino, L"list.xls");
    EXPECT_EQ(bytes(L"list.xls"), bytes(L"plain.txt"));
    open(quartino, L"list.xls");
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"a", L"b"));

    const auto before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, openLine);
    quartino.giveFileName(quartino.fileDialog(), name(L"real.xls"));
    const HWND box = quartino.messageBox();
    EXPECT_EQ(ui::messageText(box), context.texts.GetText(73));
    quartino.closeWithEnter(box);
    quartino.waitForCommand(before);
    EXPECT_THAT(quartino.column(Name), IsEmpty());
    EXPECT_EQ(quartino.program().close(), 0u);
}

} // namespace
} // namespace kalvrooms::testing
