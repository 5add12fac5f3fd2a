// Nothing is lost without a question: the save prompt, also when the session ends.

#include "journeys/JourneyTest.h"
#include "journeys/SessionEnd.h"

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

} // namespace
} // namespace kalvrooms::testing
