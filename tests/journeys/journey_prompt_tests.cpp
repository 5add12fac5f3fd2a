// Nothing is lost without a question: the save prompt on every way that ends a list, and the
// warning about lists that are too long.

#include "journeys/JourneyTest.h"

#include <atomic>
#include <thread>

namespace kalvrooms::testing {
namespace {

constexpr const wchar_t* question = L" Sollen Ihre Änderungen gespeichert werden?";

class SavePrompt : public JourneyTest {
  protected:
    HWND prompt(QuartinoProcess& quartino) const {
        const HWND box = quartino.messageBox();
        EXPECT_EQ(quartino.messageOf(box), question);
        EXPECT_EQ(ui::textOf(box), L" Quartino");
        // Two buttons; a third way out there is none.
        EXPECT_NE(GetDlgItem(box, IDYES), nullptr);
        EXPECT_NE(GetDlgItem(box, IDNO), nullptr);
        EXPECT_EQ(GetDlgItem(box, IDCANCEL), nullptr);
        return box;
    }
    void no(QuartinoProcess& quartino) const {
        const HWND box = prompt(quartino);
        quartino.click(GetDlgItem(box, IDNO));
        quartino.waitUntilGone(box);
    }
    void yes(QuartinoProcess& quartino, const std::filesystem::path& list) const {
        quartino.closeWithEnter(prompt(quartino));
        quartino.giveFileName(quartino.fileDialog(), list.wstring());
    }
    void yesWithoutAName(QuartinoProcess& quartino) const {
        quartino.closeWithEnter(prompt(quartino));
        const HWND files = quartino.fileDialog();
        ui::typeKey(VK_ESCAPE);
        quartino.waitUntilGone(files);
    }

    // A way that ends the list, and the rooms that stand there afterwards.
    void expectAsked(const std::function<void(QuartinoProcess&)>& start,
                     const std::vector<std::wstring>& afterwards, const std::wstring& title) const {
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"2");
        const std::vector<std::wstring> rooms = quartino.column(Name);
        ASSERT_EQ(rooms.size(), 2u);
        const std::wstring titleBefore = ui::textOf(quartino.main());

        auto before = quartino.commandsDone();
        start(quartino);
        yesWithoutAName(quartino);
        quartino.waitForCommand(before);
        EXPECT_EQ(quartino.column(Name), rooms) << "giving up the name gives up the command";
        EXPECT_EQ(ui::textOf(quartino.main()), titleBefore);

        before = quartino.commandsDone();
        start(quartino);
        yes(quartino, file(L"kept.txt"));
        quartino.waitForCommand(before);
        EXPECT_EQ(roomsIn(file(L"kept.txt")).size(), 2u);
        EXPECT_EQ(quartino.column(Name), afterwards);
        EXPECT_EQ(ui::textOf(quartino.main()), title);

        add(quartino, L"Noch", L"30", L"1");
        const std::string kept = readBytes(file(L"kept.txt"));
        before = quartino.commandsDone();
        start(quartino);
        no(quartino);
        quartino.waitForCommand(before);
        EXPECT_EQ(quartino.column(Name), afterwards);
        EXPECT_EQ(ui::textOf(quartino.main()), title);
        EXPECT_EQ(readBytes(file(L"kept.txt")), kept);
    }
};

TEST_F(SavePrompt, ComesBeforeANewList) {
    expectAsked([](QuartinoProcess& quartino) { quartino.chooseByKeys(fileMenu, 0); }, {},
                L" Quartino - Schule");
}

TEST_F(SavePrompt, ComesBeforeAnotherListIsOpened) {
    writeList(file(L"list.txt"), {{L"Aula", L"100"}, {L"Flur", L"20"}});
    expectAsked(
        [this](QuartinoProcess& quartino) {
            quartino.chooseByKeys(fileMenu, openLine);
            quartino.giveFileName(quartino.fileDialog(), file(L"list.txt").wstring());
        },
        {L"Aula", L"Flur"}, L" Quartino - list.txt");
}

TEST_F(SavePrompt, ComesBeforeTheDrawingIsRead) {
    loadDrawing({element(17, 3, 0), element(18, 3, 10)});
    expectAsked([](QuartinoProcess& quartino) { quartino.chooseByKeys(fileMenu, importLine); },
                {L"Flur 17", L"Flur 18"}, L" Quartino - Schule");
}

TEST_F(SavePrompt, ComesWhenTheWindowIsClosed) {
    {
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"1");
        ui::typeKey(VK_F4, {VK_MENU});
        no(quartino);
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
        EXPECT_EQ(key.values().size(), 7u);
    }
    {
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"1");
        quartino.chooseByKeys(fileMenu, 6);
        yes(quartino, file(L"kept.txt"));
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
        EXPECT_EQ(roomsIn(file(L"kept.txt")).size(), 1u);
    }
    {
        // Yes without a name is no way to call off the end.
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"1");
        ui::typeKey(VK_F4, {VK_MENU});
        yesWithoutAName(quartino);
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
    }
    {
        // An empty list is nothing to save, whatever was done to it.
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"1");
        const auto before = quartino.commandsDone();
        quartino.chooseByKeys(editMenu, deleteLine);
        quartino.waitForCommand(before);
        EXPECT_THAT(quartino.column(Name), IsEmpty());
        ui::typeKey(VK_F4, {VK_MENU});
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
    }
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
    {
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
    {
        // Another program calls the end off: the list is still there, and so are the commands.
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"1");
        {
            const SessionEnd session(quartino.main());
            no(quartino);
            session.expectConsent();
        }
        SendMessageW(quartino.main(), WM_ENDSESSION, FALSE, 0);
        quartino.waitForKeys(quartino.main());
        add(quartino, L"Noch", L"30", L"1");
        EXPECT_THAT(quartino.column(Name), ElementsAre(L"Neu", L"Noch"));
        // The next end is asked about anew, and answered once.
        const SessionEnd session(quartino.main());
        no(quartino);
        session.expectConsent();
        PostMessageW(quartino.main(), WM_ENDSESSION, TRUE, 0);
        EXPECT_EQ(quartino.program().waitForEnd(), 0u);
    }
    {
        // With a dialog open the list is asked about all the same.
        QuartinoProcess quartino(folder);
        add(quartino, L"Neu", L"20", L"1");
        quartino.chooseByKeys(editMenu, addLine);
        quartino.dialog(addTitle);
        const SessionEnd session(quartino.main());
        yes(quartino, file(L"under a dialog.txt"));
        session.expectConsent();
        EXPECT_EQ(roomsIn(file(L"under a dialog.txt")).size(), 1u);
    }
}

TEST_F(JourneyTest, MoreThanAHundredAndFiftyRoomsAreWarnedAbout) {
    std::vector<ListedRoom> rooms(150, {L"Raum", L"16"});
    writeList(file(L"150.txt"), rooms);
    rooms.push_back({L"Raum", L"16"});
    writeList(file(L"151.txt"), rooms);
    const std::wstring warning =
        L" Ihre Raumliste besteht aus mehr als 150 Räumen. Bitte beachten Sie, mit dem Quatrinoen\r"
        L" können maximal 150 Räume bearbeitet werden.";
    QuartinoProcess quartino(folder);
    const auto expectWarning = [&](const char* picture) {
        const HWND box = quartino.messageBox();
        EXPECT_EQ(quartino.messageOf(box), warning);
        EXPECT_EQ(ui::textOf(box), L" Quartino");
        EXPECT_EQ(GetDlgItem(box, IDNO), nullptr);
        if (picture)
            quartino.picture(box, picture);
        quartino.closeWithEnter(box);
    };
    open(quartino, file(L"150.txt"));
    EXPECT_EQ(ui::rowCount(quartino.table()), 150);

    auto before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, openLine);
    quartino.giveFileName(quartino.fileDialog(), file(L"151.txt").wstring());
    expectWarning("message-limit");
    quartino.waitForCommand(before);
    EXPECT_EQ(ui::rowCount(quartino.table()), 151);
    EXPECT_EQ(quartino.cell(150, Area), L"16");

    // Modifying and deleting do not warn; adding does, once it was too much.
    before = quartino.commandsDone();
    quartino.chooseByKeys(editMenu, modifyLine);
    HWND dialog = quartino.dialog(modifyTitle);
    ui::typeKey(VK_RETURN);
    quartino.waitForCommand(before);
    for (int i = 0; i < 3; ++i) {
        before = quartino.commandsDone();
        quartino.chooseByKeys(editMenu, deleteLine);
        quartino.waitForCommand(before);
    }
    EXPECT_EQ(ui::rowCount(quartino.table()), 148);
    add(quartino, L"Neu", L"20", L"2");
    EXPECT_EQ(ui::rowCount(quartino.table()), 150);

    before = quartino.commandsDone();
    quartino.chooseByKeys(editMenu, addLine);
    dialog = quartino.dialog(addTitle);
    ui::typeKey(VK_RETURN);
    quartino.waitUntilGone(dialog);
    expectWarning(nullptr);
    quartino.waitForCommand(before);
    EXPECT_EQ(ui::rowCount(quartino.table()), 151);

    // The limit is not enforced for the list, but for the drawing.
    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, exportLine);
    const HWND box = quartino.messageBox();
    EXPECT_EQ(quartino.messageOf(box),
              L" Die Raumliste besteht aus mehr als 150 Räumen. Es können maximal 150 Räume "
              L"übertragen werden.");
    quartino.closeWithEnter(box);
    quartino.waitForCommand(before);
    EXPECT_EQ(practiceHost().drawing().find(L"componentId"), std::wstring::npos);
}

} // namespace
} // namespace kalvrooms::testing
