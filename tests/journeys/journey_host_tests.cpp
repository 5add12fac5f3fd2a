// The way to the drawing and back, with the practice host in a process of its own.

#include "journeys/JourneyTest.h"

namespace kalvrooms::testing {
namespace {

std::size_t countOf(const std::wstring& text, const std::wstring& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::wstring::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST_F(JourneyTest, RoomsAreReadFromTheDrawingChangedAndWrittenBack) {
    loadDrawing({element(17, 3, 0), element(18, 3, 10)});
    QuartinoProcess quartino(folder);
    auto before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, importLine);
    quartino.waitForCommand(before);
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Flur 17", L"Flur 18"));
    EXPECT_THAT(quartino.column(Area), ElementsAre(number(L"13.5"), number(L"13.5")));
    EXPECT_THAT(quartino.column(Shape), ElementsAre(L"polygonal", L"polygonal"));

    quartino.clickCell(1, Name, false, 2);
    const HWND dialog = quartino.dialog(modifyTitle);
    EXPECT_FALSE(quartino.enabled(dialog, ID_ROOM_TXTAREA));
    quartino.type(dialog, ID_ROOM_TXTNAME, L"Halle");
    quartino.tabTo(dialog, ID_ROOM_TXTFUNCTION);
    quartino.type(dialog, ID_ROOM_TXTFUNCTION, L"Sport");
    ui::typeKey(VK_RETURN);
    quartino.waitUntilGone(dialog);
    quartino.waitForKeys(quartino.main());
    add(quartino, L"Neu", L"25", L"1");
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Flur 17", L"Halle", L"Neu"));

    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, exportLine);
    const HWND report = quartino.dialog(reportTitle);
    EXPECT_EQ(quartino.text(report, ID_REPORT_LBLTEXT1), L" Räume aktualisiert");
    EXPECT_EQ(quartino.text(report, ID_REPORT_LBLNUM1), L"2");
    EXPECT_FALSE(quartino.visible(report, ID_REPORT_LBLNUM2));
    EXPECT_EQ(quartino.text(report, ID_REPORT_LBLTEXT3), L" neuer Raum abgesetzt");
    ui::typeKey(VK_RETURN);
    quartino.waitForCommand(before);

    const std::wstring drawing = practiceHost().drawing();
    EXPECT_EQ(countOf(drawing, L"\"componentId\""), 3u) << "the same elements, and a new one";
    for (const wchar_t* text : {L"Flur 17", L"Halle", L"Sport", L"Neu"})
        EXPECT_NE(drawing.find(text), std::wstring::npos) << toAnsi(text);
    EXPECT_EQ(drawing.find(L"Flur 18"), std::wstring::npos);

    // Read once more, the list is what the drawing shows.
    before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, importLine);
    const HWND box = quartino.messageBox();
    quartino.click(GetDlgItem(box, IDNO));
    quartino.waitForCommand(before);
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

TEST_F(JourneyTest, WhileTheHostIsAskedNothingElseStartsAndClosingWaits) {
    loadDrawing({element(17, 3, 0), element(18, 3, 10)});
    QuartinoProcess quartino(folder);
    const HWND host = anyWindowOf(practiceHost().id());
    ASSERT_NE(host, nullptr);
    const auto answers = [&] {
        DWORD_PTR ignored = 0;
        return SendMessageTimeoutW(host, WM_NULL, 0, 0, SMTO_NORMAL, 300, &ignored) != 0;
    };
    ASSERT_TRUE(answers());
    practiceHost().failMember(L"GetElements", L"stall", L"4000");
    quartino.chooseByKeys(fileMenu, importLine);
    ui::waitFor("the host to hang", [&] { return !answers(); });

    // The window serves messages meanwhile, but no command.
    for (const int command : {ui::MenuAddRoom, ui::MenuNew, ui::MenuExport, ui::MenuPlace}) {
        DWORD_PTR ignored = 0;
        EXPECT_NE(SendMessageTimeoutW(quartino.main(), WM_COMMAND, static_cast<WPARAM>(command), 0,
                                      SMTO_NORMAL, ui::usualLimit, &ignored),
                  0)
            << command;
    }
    DWORD_PTR ignored = 0;
    EXPECT_NE(
        SendMessageTimeoutW(quartino.main(), WM_CLOSE, 0, 0, SMTO_NORMAL, ui::usualLimit, &ignored),
        0);
    EXPECT_TRUE(quartino.onlyShows({quartino.main()}));
    EXPECT_THAT(quartino.column(Name), IsEmpty());
    EXPECT_FALSE(answers()) << "all of this was to be while the host was asked";

    // The closing comes after the call: the list is whole and is asked about.
    const HWND box = quartino.messageBox();
    EXPECT_EQ(quartino.messageOf(box), L" Sollen Ihre Änderungen gespeichert werden?");
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Flur 17", L"Flur 18"));
    quartino.closeWithEnter(box);
    quartino.giveFileName(quartino.fileDialog(), file(L"read.txt").wstring());
    EXPECT_EQ(quartino.program().waitForEnd(), 0u);
    EXPECT_EQ(roomsIn(file(L"read.txt")).size(), 2u);
}

TEST_F(JourneyTest, AHostThatFailsIsToldAndTheListStays) {
    writeList(file(L"list.txt"), {{L"Aula", L"100"}});
    QuartinoProcess quartino(folder);
    open(quartino, file(L"list.txt"));
    practiceHost().state(L"menu");
    const auto before = quartino.commandsDone();
    quartino.chooseByKeys(fileMenu, exportLine);
    const HWND box = quartino.messageBox();
    EXPECT_FALSE(quartino.messageOf(box).empty());
    quartino.picture(box, "message-host");
    quartino.closeWithEnter(box);
    practiceHost().state(L"");
    quartino.waitForCommand(before);
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"Aula"));
    EXPECT_EQ(quartino.program().close(), 0u);
}

} // namespace
} // namespace kalvrooms::testing
