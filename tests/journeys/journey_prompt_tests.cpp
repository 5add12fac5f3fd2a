// Nothing is lost without a question: the save prompt, also when the session ends, and the warning
// about lists that are too long.

#include "journeys/JourneyTest.h"

#include <atomic>
#include <thread>

namespace kalvrooms::testing {
namespace {

using ::testing::HasSubstr;

class SavePrompt : public JourneyTest {
  protected:
    static HWND prompt(QuartinoProcess& quartino) {
        const HWND box = quartino.messageBox();
        EXPECT_EQ(ui::messageText(box), savePrompt);
        EXPECT_EQ(ui::textOf(box), L" Quartino");
        // Two buttons; a third way out there is none.
        EXPECT_NE(GetDlgItem(box, IDYES), nullptr);
        EXPECT_NE(GetDlgItem(box, IDNO), nullptr);
        EXPECT_EQ(GetDlgItem(box, IDCANCEL), nullptr);
        return box;
    }
    static void no(QuartinoProcess& quartino) { quartino.click(prompt(quartino), IDNO); }
    // The Yes button has the focus.
    static void yes(QuartinoProcess& quartino, const std::filesystem::path& list) {
        quartino.closeWithEnter(prompt(quartino));
        quartino.giveFileName(quartino.fileDialog(), list.wstring());
    }
    static void yesWithoutAName(QuartinoProcess& quartino) {
        quartino.closeWithEnter(prompt(quartino));
        const HWND files = quartino.fileDialog();
        ui::typeKey(VK_ESCAPE);
        ui::waitUntilGone(files);
    }
};

TEST_F(SavePrompt, ComesBeforeAListGoes) {
    QuartinoProcess quartino(folder);
    add(quartino, L"Neu", L"20", L"2");
    const std::vector<std::wstring> rooms = quartino.column(Name);
    ASSERT_EQ(rooms.size(), 2u);

    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, newLine);
        quartino.picture(prompt(quartino), "message-save");
        yesWithoutAName(quartino);
    });
    EXPECT_EQ(quartino.column(Name), rooms) << "giving up the name gives up the command";

    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, newLine);
        yes(quartino, file(L"kept.txt"));
    });
    EXPECT_EQ(roomsIn(file(L"kept.txt")).size(), 2u);
    EXPECT_THAT(quartino.column(Name), IsEmpty());
    EXPECT_EQ(ui::textOf(quartino.main()), L" Quartino - Schule");

    add(quartino, L"Noch", L"30", L"1");
    const std::string kept = readBytes(file(L"kept.txt"));
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, newLine);
        no(quartino);
    });
    EXPECT_THAT(quartino.column(Name), IsEmpty());
    EXPECT_EQ(readBytes(file(L"kept.txt")), kept);
}

TEST_F(SavePrompt, ComesWhenTheWindowIsClosed) {
    {
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"1");
        ui::typeKey(VK_F4, {VK_MENU});
        yes(quartino, file(L"kept.txt"));
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
        EXPECT_EQ(roomsIn(file(L"kept.txt")).size(), 1u);
        EXPECT_EQ(key.values().size(), 7u);
    }
    {
        // Yes without a name is no way to call off the end.
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"1");
        quartino.chooseByKeys(fileMenu, endLine);
        yesWithoutAName(quartino);
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
    }
}

TEST_F(SavePrompt, ComesAgainAfterASaveThatFailedAndTheOldFileStays) {
    writeList(file(L"list.txt"), {{L"Eins", L"16"}, {L"Zwei", L"-1"}, {L"Drei", L"16"}});
    const std::string old = readBytes(file(L"list.txt"));
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    const auto readFailure = [&](const std::filesystem::path& list) {
        const HWND box = quartino.messageBox();
        const std::wstring text = ui::messageText(box);
        EXPECT_THAT(text, HasSubstr(L"Die Raumliste wurde nicht gespeichert."));
        EXPECT_THAT(text, HasSubstr(L"Datei: " + list.wstring()));
        EXPECT_THAT(text, HasSubstr(L"Der Raum \"Zwei\" im Geschoss \"EG\" hat eine negative "
                                    L"Fläche."));
        EXPECT_EQ(ui::textOf(box), L" Quartino");
        quartino.picture(box, "message-not-saved");
        quartino.closeWithEnter(box);
    };
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, saveLine);
        readFailure(file(L"list.txt"));
    });
    EXPECT_EQ(readBytes(file(L"list.txt")), old);
    // The list counts as changed, and a Yes that comes to nothing is asked for again.
    quartino.chooseByKeys(fileMenu, endLine);
    yes(quartino, file(L"other.txt"));
    readFailure(file(L"other.txt"));
    no(quartino);
    EXPECT_EQ(quartino.program().waitForEnd(), 0u);
    EXPECT_EQ(readBytes(file(L"list.txt")), old);
}

TEST_F(SavePrompt, AListThatWasReadInPartIsSavedUnderAnotherName) {
    writeList(file(L"list.txt"),
              {{L"Eins", L"16"}, {L"Zwei", L"16", L" ", L"4", L"4", L"x-K"}, {L"Drei", L"16"}});
    const std::string complete = readBytes(file(L"list.txt"));
    QuartinoProcess quartino(folder);
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, openLine);
        quartino.giveFileName(quartino.fileDialog(), file(L"list.txt").wstring());
        const HWND box = quartino.messageBox();
        EXPECT_THAT(ui::messageText(box), HasSubstr(L"Zeile 3 und alles danach fehlt."));
        quartino.closeWithEnter(box);
    });
    EXPECT_THAT(quartino.column(Name), ::testing::ElementsAre(L"Eins"));
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, saveLine);
        quartino.giveFileName(quartino.fileDialog(), file(L"part.txt").wstring());
    });
    EXPECT_EQ(readBytes(file(L"list.txt")), complete);
    EXPECT_EQ(roomsIn(file(L"part.txt")).size(), 1u);
    EXPECT_EQ(quartino.program().close(), 0u);
}

TEST_F(JourneyTest, ANegativeAreaIsRefusedAndNamedWhereAListBringsOne) {
    writeList(file(L"list.txt"), {{L"Eins", L"16"}, {L"Zwei", L"-1"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, exportLine);
        const HWND box = quartino.messageBox();
        EXPECT_THAT(ui::messageText(box),
                    HasSubstr(L"Der Raum \"Zwei\" im Geschoss \"EG\" hat eine "
                              L"negative Fläche."));
        quartino.closeWithEnter(box);
    });
    quartino.command([&] {
        quartino.chooseByKeys(editMenu, addLine);
        const HWND dialog = quartino.dialog(addTitle);
        ui::setText(ui::control(dialog, ID_ROOM_TXTAREA), L"-5");
        ui::typeKey(VK_RETURN);
        const HWND box = quartino.messageBox();
        EXPECT_EQ(ui::messageText(box), L"Bitte geben Sie eine Fläche ein, die nicht negativ ist.");
        quartino.closeWithEnter(box);
        EXPECT_TRUE(IsWindowVisible(dialog));
        quartino.waitForKeys(dialog);
        ui::typeKey(VK_ESCAPE);
    });
    EXPECT_EQ(quartino.column(Name).size(), 2u);
}

// The system that asks whether the session may end, and waits for the answer.
class SessionEnd {
  public:
    explicit SessionEnd(HWND window)
        : asking_([this, window] {
              SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, 0, SMTO_NORMAL, ui::usualLimit,
                                  &answer_);
              answered_ = true;
          }) {}
    ~SessionEnd() { asking_.join(); }
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

    bool answered() const { return answered_; }
    void expectConsent() const {
        ui::waitFor("the answer to the system", [this] { return answered(); });
        EXPECT_EQ(answer_, static_cast<DWORD_PTR>(TRUE));
    }

  private:
    DWORD_PTR answer_ = 0;
    std::atomic<bool> answered_ = false;
    std::thread asking_;
};

TEST_F(SavePrompt, ComesWhileTheSystemStillWaitsForTheEndOfTheSession) {
    QuartinoProcess quartino(folder);
    add(quartino, L"Neu", L"20", L"2");
    const SessionEnd session(quartino.main());
    quartino.closeWithEnter(prompt(quartino));
    const HWND files = quartino.fileDialog();
    EXPECT_FALSE(session.answered());
    quartino.giveFileName(files, file(L"kept.txt").wstring());
    session.expectConsent();
    EXPECT_EQ(roomsIn(file(L"kept.txt")).size(), 2u);
    PostMessageW(quartino.main(), WM_ENDSESSION, TRUE, 0);
    EXPECT_EQ(quartino.program().waitForEnd(), 0u);
    EXPECT_EQ(key.values().size(), 7u);
}

TEST_F(JourneyTest, MoreThanAHundredAndFiftyRoomsAreWarnedAboutAndNotWritten) {
    writeList(file(L"151.txt"), std::vector<ListedRoom>(151, {L"Raum", L"16"}));
    QuartinoProcess quartino(folder);
    const auto expectWarning = [&](const std::wstring& text) {
        const HWND box = quartino.messageBox();
        EXPECT_EQ(ui::messageText(box), text);
        EXPECT_EQ(ui::textOf(box), L" Quartino");
        EXPECT_EQ(GetDlgItem(box, IDNO), nullptr);
        quartino.picture(box, "message-limit");
        quartino.closeWithEnter(box);
    };
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, openLine);
        quartino.giveFileName(quartino.fileDialog(), file(L"151.txt").wstring());
        expectWarning(L" Ihre Raumliste besteht aus mehr als 150 Räumen. Bitte beachten Sie, mit "
                      L"dem Quatrinoen\r können maximal 150 Räume bearbeitet werden.");
    });
    EXPECT_EQ(ui::rowCount(quartino.table()), 151);
    EXPECT_EQ(quartino.cell(150, Area), L"16");
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, exportLine);
        expectWarning(L" Die Raumliste besteht aus mehr als 150 Räumen. Es können maximal 150 "
                      L"Räume übertragen werden.");
    });
    EXPECT_THAT(practiceHost().drawing().elements, IsEmpty());
}

} // namespace
} // namespace kalvrooms::testing
