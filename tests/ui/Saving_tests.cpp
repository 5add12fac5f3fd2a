#include "ui/MainWindow.h"

namespace kalvrooms::testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

class Saving : public MainWindow {
  protected:
    // A list of five rooms, one of which has an area below zero or an identifier that is none.
    std::wstring writeListWith(const std::string& name, const std::string& thirdRoom) {
        writeFile(name, "header \t header\r\nR1 \t F \t 16 \t EG\r\nR2 \t F \t 16 \t EG\r\n" +
                            thirdRoom + "\r\nR4 \t F \t 16 \t EG\r\nR5 \t F \t 16 \t EG\r\n");
        return file(name);
    }
    void writeFile(const std::string& name, const std::string& bytes) {
        writeBytes(folder_ / name, bytes);
    }
    void open(const std::wstring& path) {
        desktop().ChooseFile(path, 1);
        form().ChooseMenu(L"mnuOpen");
    }
    // Whether the program takes the list for changed.
    bool isChanged() {
        const std::size_t before = desktop().Messages().size();
        desktop().AnswerNext(Gui::Answer::Yes);
        desktop().CancelFileDialog();
        form().ChooseMenu(L"mnuNew");
        const bool asked = desktop().Messages().size() > before;
        EXPECT_EQ(asked, desktop().UnusedScripts() == 0);
        return asked;
    }

    static inline const std::string negativeRoom = "R3 \t F \t -1 \t OG";
    static inline const std::string roomWithBadKey =
        "R3 \t F \t 16 \t OG \t \t \t \t \t 4 \t 4 \t x-K";
};

TEST_F(Saving, ThatFailsIsToldAndTheListStaysChanged) {
    show();
    open(writeListWith("list.txt", negativeRoom));
    EXPECT_THAT(prompts(), IsEmpty());
    const std::string before = contents("list.txt");
    form().ChooseMenu(L"mnuSave");
    ASSERT_THAT(prompts(), SizeIs(1));
    EXPECT_EQ(prompts()[0],
              L"Die Raumliste wurde nicht gespeichert.\rDatei: " + file("list.txt") +
                  L"\rGrund: Der Raum \"R3\" im Geschoss \"OG\" hat eine negative Fläche.\rDie "
                  L"bisherige Liste ist unverändert erhalten: " +
                  file("list.txt"));
    EXPECT_EQ(desktop().Messages()[0].Title, L" Quartino");
    EXPECT_EQ(desktop().Messages()[0].ButtonSet, Gui::Message::Buttons::Ok);
    EXPECT_EQ(contents("list.txt"), before);
    EXPECT_TRUE(isChanged());
    EXPECT_EQ(cell(3, 0), L"R4");
}

TEST_F(Saving, AfterAYesIsAskedForAgainUntilItWorked) {
    show();
    addRooms(L"a", L"1");
    std::filesystem::create_directories(folder_ / "folder.txt");
    for (const char* name : {"folder.txt", "missing/list.txt", "kept.txt"}) {
        desktop().AnswerNext(Gui::Answer::Yes);
        desktop().ChooseFile(file(name), 1);
        if (std::string(name) != "kept.txt")
            desktop().AnswerNext(Gui::Answer::Ok);
    }
    form().ChooseMenu(L"mnuNew");
    EXPECT_THAT(prompts(),
                ElementsAre(savePrompt, HasSubstr(L"\rGrund: Zugriff wurde verweigert"), savePrompt,
                            HasSubstr(L"\rGrund: Pfad wurde nicht gefunden"), savePrompt));
    EXPECT_THAT(contents("kept.txt"), HasSubstr("\na \t"));
    EXPECT_EQ(cell(1, 0), L"");
}

TEST_F(Saving, AtTheEndIsAskedForAgainUntilNo) {
    show();
    addRooms(L"a", L"1");
    desktop().AnswerNext(Gui::Answer::Yes);
    desktop().ChooseFile(file("missing/list.txt"), 1);
    desktop().AnswerNext(Gui::Answer::Ok);
    desktop().AnswerNext(Gui::Answer::No);
    form().Close();
    EXPECT_THAT(prompts(), ElementsAre(savePrompt, StartsWith(L"Die Raumliste"), savePrompt));
    EXPECT_FALSE(desktop().IsLoaded(L"frmMain"));
}

TEST_F(Saving, AListThatWasReadInPartAsksForAName) {
    show();
    const std::wstring whole = writeListWith("whole.txt", roomWithBadKey);
    const std::string before = contents("whole.txt");
    open(whole);
    ASSERT_THAT(prompts(), SizeIs(1));
    EXPECT_EQ(prompts()[0], L"Die Raumliste wurde nicht ganz gelesen: Zeile 4 und alles danach "
                            L"fehlt.\rDatei: " +
                                whole + L"\rGrund: Typen unverträglich");
    EXPECT_EQ(cell(2, 0), L"R2");
    EXPECT_EQ(cell(3, 0), L"");
    EXPECT_TRUE(isChanged());
    desktop().CancelFileDialog();
    form().ChooseMenu(L"mnuSave");
    EXPECT_EQ(contents("whole.txt"), before);
    desktop().ChooseFile(file("part.txt"), 1);
    form().ChooseMenu(L"mnuSave");
    EXPECT_THAT(contents("part.txt"), HasSubstr("\nR2 \t"));
    // It has a file of its own now.
    const std::size_t dialogs = desktop().FileDialogs().size();
    form().ChooseMenu(L"mnuSave");
    EXPECT_EQ(desktop().FileDialogs().size(), dialogs);
    EXPECT_EQ(contents("whole.txt"), before);
}

TEST_F(Saving, AFileThatCannotBeReadIsToldAndNeverOverwrittenUnasked) {
    show();
    open(file("missing.txt"));
    EXPECT_THAT(prompts(),
                ElementsAre(L"Die Raumliste konnte nicht gelesen werden.\rDatei: " +
                            file("missing.txt") + L"\rGrund: Datei wurde nicht gefunden"));
    // A real workbook without the application: text 73 says it all.
    writeFile("book.xls", "PK no list");
    desktop().ChooseFile(file("book.xls"), 2);
    form().ChooseMenu(L"mnuOpen");
    ASSERT_THAT(prompts(), SizeIs(2));
    EXPECT_THAT(prompts()[1], HasSubstr(L"Exceldateien"));
    addRooms(L"a", L"1");
    desktop().CancelFileDialog();
    form().ChooseMenu(L"mnuSave");
    EXPECT_EQ(contents("book.xls"), "PK no list");
    // A new list has nothing to do with it.
    desktop().AnswerNext(Gui::Answer::No);
    form().ChooseMenu(L"mnuNew");
    addRooms(L"b", L"1");
    desktop().ChooseFile(file("own.txt"), 1);
    form().ChooseMenu(L"mnuSave");
    form().ChooseMenu(L"mnuSave");
    EXPECT_THAT(contents("own.txt"), HasSubstr("\nb \t"));
}

TEST_F(Saving, AsksBeforeItOverwritesWhatSomebodyElseWrote) {
    show();
    open(writeListWith("list.txt", "R3 \t F \t 16 \t EG"));
    form().ChooseMenu(L"mnuSave");
    form().ChooseMenu(L"mnuSave");
    EXPECT_THAT(prompts(), IsEmpty());
    std::string theirs = contents("list.txt");
    theirs.replace(theirs.find("R5"), 2, "R6");
    writeFile("list.txt", theirs);
    addRooms(L"a", L"1");
    for (int i = 0; i < 2; ++i) {
        desktop().AnswerNext([this](const Gui::Message&) {
            EXPECT_FALSE(form().AskForSessionEnd()) << "which would ask on top";
            return Gui::Answer::No;
        });
        form().ChooseMenu(L"mnuSave");
        EXPECT_EQ(contents("list.txt"), theirs);
    }
    ASSERT_THAT(prompts(), SizeIs(2));
    EXPECT_EQ(prompts()[0], L"Die Datei wurde inzwischen von jemand anderem geändert. Soll sie "
                            L"trotzdem überschrieben werden?\rDatei: " +
                                file("list.txt"));
    EXPECT_EQ(desktop().Messages()[0].ButtonSet, Gui::Message::Buttons::YesNo);
    EXPECT_TRUE(isChanged());

    desktop().AnswerNext(Gui::Answer::Yes);
    form().ChooseMenu(L"mnuSave");
    EXPECT_THAT(contents("list.txt"), AllOf(HasSubstr("\na \t"), HasSubstr("\nR5 \t")));
    const std::size_t messages = desktop().Messages().size();
    form().ChooseMenu(L"mnuSave");
    // A file that is gone can be written again.
    std::filesystem::remove(folder_ / "list.txt");
    form().ChooseMenu(L"mnuSave");
    EXPECT_THAT(contents("list.txt"), HasSubstr("\na \t"));
    EXPECT_EQ(desktop().Messages().size(), messages);
}

// Somebody else saves the workbook while the application is too busy to do it for us.
class BusySpreadsheets : public SpreadsheetServer {
  public:
    std::unique_ptr<SpreadsheetApplication> AttachRunning() override { return nullptr; }
    std::unique_ptr<SpreadsheetApplication> CreateInstance() override {
        class Busy : public RuntimeError {
          public:
            Busy() : RuntimeError(AutomationError) {}
            bool IsBusy() const noexcept override { return true; }
        };
        meanwhile();
        throw Busy();
    }
    std::function<void()> meanwhile;
};

TEST_F(Saving, ThatFailsDoesNotMakeTheirFileOurs) {
    BusySpreadsheets spreadsheets;
    spreadsheets.meanwhile = [this] { writeFile("list.xls", "theirs"); };
    writeFile("list.xls", "before");
    main_ = std::make_unique<frmMain>(platform_.Bundle(), host_, spreadsheets);
    main_->SetLang(L"");
    main_->Show();
    addRooms(L"a", L"1");
    desktop().ChooseFile(file("list.xls"), 2);
    form().ChooseMenu(L"mnuSaveAS");
    form().ChooseMenu(L"mnuSave");
    ASSERT_THAT(prompts(), SizeIs(2));
    EXPECT_THAT(prompts()[0], StartsWith(L"Die Raumliste wurde nicht gespeichert."));
    EXPECT_THAT(prompts()[1], StartsWith(L"Die Datei wurde inzwischen von jemand anderem"));
    main_.reset();
}

TEST_F(Saving, IntoTheDrawingNamesTheRoomWithTheNegativeArea) {
    show();
    open(writeListWith("list.txt", negativeRoom));
    form().ChooseMenu(L"mnuExport");
    EXPECT_THAT(prompts(),
                ElementsAre(AllOf(HasSubstr(L"5"), EndsWith(L"\rDer Raum \"R3\" im Geschoss \"OG\" "
                                                            L"hat eine negative Fläche."))));
}

} // namespace
} // namespace kalvrooms::testing
