// The way to the drawing and back, with the practice host in a process of its own.

#include "journeys/JourneyTest.h"
#include "practice/server/FaultEffect.h"

#include <tlhelp32.h>

#include <optional>

namespace kalvrooms::testing {
namespace {

using ::testing::Field;

TEST_F(JourneyTest, RoomsAreReadFromTheDrawingChangedAndWrittenBack) {
    loadTwoRooms();
    QuartinoProcess quartino(folder);
    quartino.runByKeys(fileMenu, importLine);
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Flur 17", L"Flur 18"));
    EXPECT_THAT(quartino.column(Area), ElementsAre(number(L"13.5"), number(L"13.5")));
    EXPECT_THAT(quartino.column(Shape), ElementsAre(L"polygonal", L"polygonal"));
    quartino.picture(quartino.main(), "main-imported");

    quartino.clickCell(1, Name, false, 2);
    const HWND dialog = quartino.dialog(modifyTitle);
    EXPECT_FALSE(quartino.enabled(dialog, ID_ROOM_TXTAREA));
    quartino.picture(dialog, "room-polygon");
    quartino.type(dialog, ID_ROOM_TXTNAME, L"Halle");
    quartino.tabTo(dialog, ID_ROOM_TXTFUNCTION);
    quartino.type(dialog, ID_ROOM_TXTFUNCTION, L"Sport");
    ui::typeKey(VK_RETURN);
    quartino.waitForReturn(dialog, quartino.main());
    add(quartino, L"Neu", L"25", L"1");
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Flur 17", L"Halle", L"Neu"));

    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, exportLine);
        const HWND report = quartino.dialog(reportTitle);
        EXPECT_EQ(quartino.text(report, ID_REPORT_LBLTEXT1), L" Räume aktualisiert");
        EXPECT_EQ(quartino.text(report, ID_REPORT_LBLNUM1), L"2");
        EXPECT_FALSE(quartino.visible(report, ID_REPORT_LBLNUM2));
        EXPECT_EQ(quartino.text(report, ID_REPORT_LBLTEXT3), L" neuer Raum abgesetzt");
        ui::typeKey(VK_RETURN);
    });
    const Drawing drawing = practiceHost().drawing();
    EXPECT_THAT(drawing.elements,
                ElementsAre(Field(&Element::name, L"Flur 17"), Field(&Element::name, L"Halle"),
                            Field(&Element::name, L"Neu")))
        << "the same elements, and a new one";
    EXPECT_EQ(drawing.elements.at(1).function, L"Sport");

    // Read once more, the list is what the drawing shows.
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, importLine);
        quartino.click(quartino.messageBox(), IDNO);
    });
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Flur 17", L"Halle", L"Neu"));
    EXPECT_EQ(quartino.cell(1, Function), L"Sport");
    EXPECT_EQ(quartino.cell(2, Area), L"25");
}

// A window of the host, which answers as long as the host does.
HWND anyWindowOf(DWORD process) {
    for (HWND window = FindWindowExW(HWND_MESSAGE, nullptr, nullptr, nullptr); window;
         window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == process)
            return window;
    }
    return nullptr;
}

// A process that stands still for as long as this lives.
class Frozen {
  public:
    explicit Frozen(DWORD process) {
        const HANDLE threads = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
        THREADENTRY32 entry{};
        entry.dwSize = sizeof entry;
        for (BOOL more = Thread32First(threads, &entry); more;
             more = Thread32Next(threads, &entry)) {
            if (entry.th32OwnerProcessID != process)
                continue;
            threads_.push_back(OpenThread(THREAD_SUSPEND_RESUME, FALSE, entry.th32ThreadID));
            SuspendThread(threads_.back());
        }
        CloseHandle(threads);
    }
    ~Frozen() {
        for (const HANDLE thread : threads_) {
            ResumeThread(thread);
            CloseHandle(thread);
        }
    }
    Frozen(const Frozen&) = delete;
    Frozen& operator=(const Frozen&) = delete;

  private:
    std::vector<HANDLE> threads_;
};

TEST_F(JourneyTest, WhileTheHostIsAskedNothingElseStartsAndClosingWaits) {
    loadTwoRooms();
    QuartinoProcess quartino(folder);
    const HWND host = anyWindowOf(practiceHost().process().id());
    ASSERT_NE(host, nullptr);
    DWORD_PTR ignored = 0;
    const auto answers = [&] {
        return SendMessageTimeoutW(host, WM_NULL, 0, 0, SMTO_NORMAL, 300, &ignored) != 0;
    };
    ASSERT_TRUE(answers());
    practiceHost().failMember(L"GetElements", L"stall", L"4000");
    quartino.chooseByKeys(fileMenu, importLine);
    ui::waitFor("the host to hang", [&] { return !answers(); });
    // In that call it stays, however long the rest takes.
    std::optional<Frozen> frozen(practiceHost().process().id());

    // The window serves messages meanwhile, but no command. (The closing comes first: a host that
    // does not answer for five seconds would not be waited for.)
    const auto serves = [&](UINT message, int command = 0) {
        return SendMessageTimeoutW(quartino.main(), message, static_cast<WPARAM>(command), 0,
                                   SMTO_NORMAL, ui::usualLimit, &ignored) != 0;
    };
    EXPECT_TRUE(serves(WM_CLOSE));
    for (const int command : {ui::MenuAddRoom, ui::MenuNew, ui::MenuExport, ui::MenuPlace})
        EXPECT_TRUE(serves(WM_COMMAND, command)) << command;
    EXPECT_TRUE(quartino.onlyShows({quartino.main()}));
    EXPECT_THAT(quartino.column(Name), IsEmpty());
    EXPECT_FALSE(answers());
    frozen.reset();

    // The closing comes after the call: the list is whole and is asked about.
    const HWND box = quartino.messageBox();
    EXPECT_EQ(ui::messageText(box), savePrompt);
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Flur 17", L"Flur 18"));
    quartino.click(box, IDNO);
    EXPECT_EQ(quartino.program().waitForEnd(), 0u);
}

TEST_F(JourneyTest, AHostThatFailsIsToldAndTheListStays) {
    writeList(file(L"list.txt"), {{L"Aula", L"100"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    practiceHost().state(L"menu");
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, exportLine);
        const HWND box = quartino.messageBox();
        EXPECT_EQ(ui::messageText(box), L" Bitte beenden Sie die Menüaktion.");
        quartino.picture(box, "message-host");
        quartino.closeWithEnter(box);
    });
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Aula"));
    EXPECT_EQ(quartino.program().close(), 0u);
}

TEST_F(JourneyTest, InEnglishTheAttributesOfTheDrawingKeepTheNamesThatTheHostKnows) {
    folder.writeHandOver(keyPath, L"eng");
    Element element = roomElement(17, 3, L"Flur 17");
    element.attributes = {
        {L"Umschließungsart", L"", {}}, {L"Nutzen", L"", {}}, {L"Flächenart_DIN277", L"", {}}};
    loadDrawing({element});
    const std::filesystem::path outline = file(L"outline.txt");
    writeBytes(outline, "4\r\n0\t20\r\n4\t20\r\n4\t24\r\n0\t24\r\nend\r\n");
    writeList(file(L"list.txt"), {{L"Aula", L"16", outline.wstring(), L"0", L"0", L"17-K3"}});
    QuartinoProcess quartino(folder, L'F');
    quartino.command([&] {
        quartino.chooseByKeys(L'F', openLine);
        quartino.giveFileName(quartino.fileDialog(), file(L"list.txt").wstring());
    });
    quartino.command([&] {
        quartino.chooseByKeys(L'F', exportLine);
        const HWND report = quartino.dialog(reportTitle);
        EXPECT_EQ(quartino.text(report, ID_REPORT_LBLTEXT1), L" room updated");
        ui::typeKey(VK_RETURN);
    });
    const Drawing drawing = practiceHost().drawing();
    std::vector<std::wstring> texts;
    for (const Attribute& attribute : drawing.elements.at(0).attributes)
        texts.push_back(attribute.TextValue());
    EXPECT_THAT(texts, ElementsAre(L"a", L"HNF 2", L"N"));
}

// Ends the host's stalls.
void wakeHost() {
    const HANDLE wake = CreateEventW(nullptr, FALSE, FALSE, practice::WakeEvent);
    SetEvent(wake);
    CloseHandle(wake);
}

class AHostThatHangs : public JourneyTest, public ::testing::WithParamInterface<const wchar_t*> {};

TEST_P(AHostThatHangs, LetsTheUserLeaveWithTheList) {
    writeList(file(L"list.txt"), {{L"Aula", L"100"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    add(quartino, L"Neu", L"25", L"1");
    practiceHost().failMember(L"CreateRoomElement", L"stall", GetParam());
    quartino.chooseByKeys(fileMenu, exportLine);
    ui::waitFor("the writing", [&] { return !IsWindowEnabled(quartino.main()); });
    ui::waitFor("a window that can be closed", [&] { return IsWindowEnabled(quartino.main()); });
    PostMessageW(quartino.main(), WM_CLOSE, 0, 0);
    const HWND box = quartino.messageBox();
    EXPECT_EQ(ui::messageText(box), savePrompt);
    quartino.click(box, IDNO);
    EXPECT_EQ(quartino.program().waitForEnd(), 0u);
    EXPECT_GT(key[L"Width"], 0);
    wakeHost();
    EXPECT_TRUE(practiceHost().drawing().elements.empty());
}

INSTANTIATE_TEST_SUITE_P(For, AHostThatHangs, ::testing::Values(L"45000", L"ever"),
                         [](const auto& kind) {
                             return std::wstring(kind.param) == L"ever" ? "Ever" : "45Seconds";
                         });

TEST_F(JourneyTest, EscapeEndsReadingAndWritingBetweenTwoRooms) {
    loadTwoRooms();
    QuartinoProcess quartino(folder);
    const auto escapeAt = [&](const wchar_t* caption, const wchar_t* told) {
        ui::waitFor("the first room", [&] {
            return ui::textOf(quartino.main()).find(caption) != std::wstring::npos;
        });
        ui::typeKey(VK_ESCAPE);
        wakeHost();
        const HWND box = quartino.messageBox();
        EXPECT_EQ(ui::messageText(box), told);
        quartino.closeWithEnter(box);
    };
    practiceHost().failMember(L"RoomRecord", L"stall", L"ever");
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, importLine);
        escapeAt(L"Raum 1 von 2 wird gelesen",
                 L"Das Lesen wurde beendet. Gelesene Räume: 1 von 2.");
    });
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Flur 17"));
    EXPECT_EQ(ui::textOf(quartino.main()).find(L"Raum"), std::wstring::npos);

    add(quartino, L"Neu", L"25", L"1");
    practiceHost().failMember(L"RoomRecord", L"stall", L"ever");
    quartino.command([&] {
        quartino.chooseByKeys(fileMenu, exportLine);
        escapeAt(L"Raum 1 von 2 wird erzeugt",
                 L"Das Erzeugen wurde beendet. Erzeugte oder aktualisierte Räume: 1 von 2.");
        quartino.waitForKeys(quartino.dialog(reportTitle));
        ui::typeKey(VK_RETURN);
    });
    EXPECT_EQ(practiceHost().drawing().elements.size(), 2u);
}

} // namespace
} // namespace kalvrooms::testing
