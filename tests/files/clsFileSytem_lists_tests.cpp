#include "files/clsFileSytem.h"

#include <algorithm>

#include "FileContext.h"

namespace kalvrooms {
namespace {

const std::string germanHeader =
    " Bezeichnung  \t  Funktion \t  Fl\xE4"
    "che in qm \t  Geschoss \t  Umschlie\xDFungsart \t  Nutzungsart \t  Fl\xE4"
    "chenart \t  Geometrie \t  L\xE4nge (Dx) \t  Breite(Dy) \t  Raum-ID\r\n";

constexpr int manyRooms = 2000;

class TextList : public FileTest {
  protected:
    std::string written() {
        clsFileSytem(context).WriteListToFile(folder.Path(L"a.txt"), floors);
        return folder.Read(L"a.txt");
    }
    // The list after reading a file with these lines below a header.
    clsFloors& listOf(const std::string& lines) { return fileOf(germanHeader + lines); }
    clsFloors& fileOf(const std::string& bytes) {
        list_ = std::make_unique<clsFloors>();
        clsFileSytem(context).ReadListFromFile(folder.Write(L"r.txt", bytes), *list_);
        return *list_;
    }

  private:
    std::unique_ptr<clsFloors> list_;
};

class TextListUnderBothLocales : public FileTestUnderBothLocales {
  protected:
    std::string written(const clsFloors& list) {
        clsFileSytem(context).WriteListToFile(folder.Path(L"a.txt"), list);
        return folder.Read(L"a.txt");
    }
    void read(clsFloors& list, const std::string& lines) {
        clsFileSytem(context).ReadListFromFile(folder.Write(L"r.txt", germanHeader + lines), list);
    }
};
INSTANTIATE_TEST_SUITE_P(Locales, TextListUnderBothLocales,
                         testing::Values(NumberLocale::German(), NumberLocale::Point()));

// ------------------------------------------------------------------------- writing

TEST_P(TextListUnderBothLocales, IsWrittenLineByLine) {
    RoomForTest{
        .Name = L"Büro 1", .Function = L"Arbeiten", .Area = 50.0, .Value = L"2", .RoomID = L"12-K3"}
        .AddTo(floors);
    RoomForTest{.Name = L"Saal",
                .Function = L"",
                .Area = 12.345,
                .Story = L"1.OG",
                .Enclosure = L"",
                .Type = CalculationByFile,
                .Value = L"C:\\P\\3-17.txt"}
        .AddTo(floors);
    RoomForTest{.Name = L"", .Area = 7.5, .Story = L"1.OG", .Type = CalculationByDx, .Value = L"3"}
        .AddTo(floors);
    EXPECT_EQ(
        written(floors),
        germanHeader +
            "B\xFCro 1 \t Arbeiten \t 50 \t EG \t a \t HNF 2 \t N \t   \t 10 \t 5 \t 12-K3\r\n" +
            localBytes("Saal \t  \t 12.345 \t ") +
            "1.OG \t  \t HNF 2 \t N \t C:\\P\\3-17.txt \t 0 \t 0 \t \r\n" +
            localBytes(" \t Arbeiten \t 7.5 \t ") + "1.OG \t a \t HNF 2 \t N \t   \t 3 \t " +
            localBytes("2.5") + " \t \r\n");
}

TEST_P(TextListUnderBothLocales, HasNumbersWithFifteenDigitsAndWithoutGrouping) {
    RoomForTest{.Area = 1234567.5, .Type = CalculationByDx, .Value = local(L"0.3")}.AddTo(floors);
    RoomForTest{.Area = 1e300}.AddTo(floors);
    const std::string bytes = written(floors);
    EXPECT_NE(bytes.find(localBytes(" 1234567.5 \t ")), std::string::npos);
    EXPECT_NE(bytes.find(localBytes(" \t 0.3 \t 4115225 \t ")), std::string::npos);
    EXPECT_NE(bytes.find(" \t 1E+300 \t "), std::string::npos);
    EXPECT_NE(bytes.find(" \t 1E+150 \t 1E+150 \t "), std::string::npos);
}

TEST_F(TextList, HasTheTitlesOfTheLanguageInForce) {
    context.platform.libraries.Put(context.platform.environment.Folder + L"\\zorvinta_eng.dll",
                                   {{120, L"Name"}, {122, L"Area"}, {196, L" ID "}});
    context.texts.SetLanguage(L"eng");
    RoomForTest().AddTo(floors);
    const std::string bytes = written();
    EXPECT_EQ(bytes.substr(0, bytes.find('\n')),
              "Name \t  Funktion \t Area \t  Geschoss \t  Umschlie\xDFungsart \t  Nutzungsart \t  "
              "Fl\xE4"
              "chenart \t  Geometrie \t  L\xE4nge (Dx) \t  Breite(Dy) \t  ID \r");
}

TEST_F(TextList, ThatIsEmptyWritesNoFile) {
    clsFileSytem(context).WriteListToFile(folder.Path(L"a.txt"), floors);
    EXPECT_FALSE(folder.Has(L"a.txt"));
    folder.Write(L"a.txt", "old");
    EXPECT_EQ(written(), "old");
    clsFileSytem(context).WriteListToFile(folder.Write(L"a.xls", "old"), floors);
    EXPECT_EQ(folder.Read(L"a.xls"), "old");
    EXPECT_EQ(context.Spreadsheets.Calls(), 0);
}

TEST_F(TextList, IsNotChangedByWriting) {
    // Asking for the sides of such a room changes its calculation type.
    RoomForTest{.Type = CalculationByDy, .Value = L"abc"}.AddTo(floors);
    RoomForTest{.Type = L"unknown", .Value = L"abc"}.AddTo(floors);
    const auto before = contentsOf(floors);
    const std::string bytes = written();
    EXPECT_EQ(contentsOf(floors), before);
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 3);
}

TEST_F(TextList, HasQuestionMarksForWhatTheCodePageLacks) {
    RoomForTest{.Name = L"\u0416\u4E2D Büro", .Function = L"€"}.AddTo(floors);
    RoomForTest{.Name = L"zwei"}.AddTo(floors);
    const std::string bytes = written();
    EXPECT_NE(bytes.find("?? B\xFCro \t \x80 \t 20"), std::string::npos);
    EXPECT_NE(bytes.find("\r\nzwei \t "), std::string::npos);
}

// ------------------------------------------------------------------------- reading

TEST_P(TextListUnderBothLocales, IsReadFieldByField) {
    read(floors, localBytes("B\xFCro 1 \t Arbeiten \t 50.25 \t ") +
                     "EG \t a \t HNF 2 \t N \t   \t 10 \t 5 \t 12-K3\r\n");
    ASSERT_EQ(floors.GetCountOfRooms(), 1);
    const clsRoom room = roomAt(floors, 1);
    expectEveryColumn(room);
    EXPECT_EQ(room.FileNumber(), -1);
    EXPECT_EQ(room.ProjectNumber(), -1);
    EXPECT_FALSE(room.IsNew());
}

TEST_P(TextListUnderBothLocales, ReadsAreasByTheUsersLocale) {
    read(floors, localBytes("a\t\t1.5\nb\t\t -2 \nc\t\tx\nd\t\t\ne\t\t1e400\nf\t\t1E3\n"));
    ASSERT_EQ(floors.GetCountOfRooms(), 6);
    const double expected[] = {1.5, -2.0, 0.0, 0.0, 0.0, 1000.0};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(roomAt(floors, i + 1).Geometry->Area(), expected[i]) << i;
}

TEST(TextListOfAnotherLocale, CanReadOtherAreas) {
    FileContext context;
    ListFolder folder;
    clsFloors floors;
    {
        const UserLocaleForTest german(NumberLocale::German());
        RoomForTest{.Area = 12.5}.AddTo(floors);
        clsFileSytem(context).WriteListToFile(folder.Path(L"a.txt"), floors);
    }
    const UserLocaleForTest point(NumberLocale::Point());
    clsFloors read;
    clsFileSytem(context).ReadListFromFile(folder.Path(L"a.txt"), read);
    EXPECT_EQ(roomAt(read, 1).Geometry->Area(), 125.0); // the comma groups digits here
}

TEST_F(TextList, CutsBlanksOffItsFields) {
    const clsRoom room =
        roomAt(listOf("   a b  \t  c\t d  \t  e \t\t  \t f\t \t\t\t 1-x y \r\n"), 1);
    EXPECT_EQ(room.Name(), L"a b");
    EXPECT_EQ(room.FunctionName(), L"c");
    EXPECT_EQ(room.StoryCode(), L"e");
    EXPECT_EQ(room.Enclosure(), L"");
    EXPECT_EQ(room.Occupancy(), L"");
    EXPECT_EQ(room.AreaType(), L"f");
    EXPECT_EQ(room.FileID(), L"x y");
}

TEST_F(TextList, IgnoresWhatStandsBehindTheEleventhTab) {
    const clsRoom room = roomAt(listOf("a\tb\t1\tEG\tc\td\te\t\t1\t1\t7-K\tf\tg\r\n"), 1);
    EXPECT_EQ(room.FileID(), L"K");
}

TEST_F(TextList, FillsMissingFieldsWithEmptyTexts) {
    const clsRoom room = roomAt(listOf("Lager"), 1);
    EXPECT_EQ(room.Name(), L"Lager");
    EXPECT_EQ(room.FunctionName(), L"");
    EXPECT_EQ(room.Geometry->Area(), 0.0);
    EXPECT_EQ(room.StoryCode(), L"unbelegt");
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByRatio);
    EXPECT_EQ(room.Geometry->CalculationValue(), L"1");
    EXPECT_EQ(room.ComponentID(), -1);
}

TEST_F(TextList, TakesABlankLineAsARoom) {
    const clsFloors& list = listOf("\r\n   \r\n");
    ASSERT_EQ(list.GetCountOfRooms(), 2);
    EXPECT_EQ(list.GetCountOfFloors(), 1);
    const clsRoom room = roomAt(list, 1);
    EXPECT_EQ(room.Name(), L"");
    EXPECT_EQ(room.Geometry->Area(), 0.0);
    EXPECT_EQ(room.StoryCode(), L"unbelegt");
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByRatio);
    EXPECT_EQ(room.Geometry->CalculationValue(), L"1");
}

TEST_F(TextList, AddsNothingFromAHeaderAlone) {
    EXPECT_EQ(listOf("").GetCountOfRooms(), 0);
    EXPECT_EQ(fileOf("\r\n").GetCountOfRooms(), 0);
    EXPECT_EQ(fileOf("no tab, no line end").GetCountOfRooms(), 0);
}

TEST_F(TextList, NeverLooksAtTheWordsOfItsHeader) {
    EXPECT_EQ(fileOf("\r\nRaum\r\n").GetCountOfRooms(), 1);
    EXPECT_EQ(fileOf("one word\r\nRaum\r\n").GetCountOfRooms(), 1);
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
}

TEST_F(TextList, TakesLinesThatEndWithLfAndALastOneWithoutEnd) {
    const clsFloors& list = fileOf("h\na\nb\r\nc");
    ASSERT_EQ(list.GetCountOfRooms(), 3);
    EXPECT_EQ(roomAt(list, 1).Name(), L"a");
    EXPECT_EQ(roomAt(list, 2).Name(), L"b");
    EXPECT_EQ(roomAt(list, 3).Name(), L"c");
}

TEST_F(TextList, TakesAPathInTheEighthFieldForAPointFile) {
    const clsRoom room = roomAt(listOf("a\t\t7\tEG\t\t\t\t C:\\P\\1-2.txt \t3\t4\t\r\n"), 1);
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByFile);
    EXPECT_EQ(room.Geometry->CalculationValue(), L"C:\\P\\1-2.txt");
    EXPECT_EQ(room.Geometry->Area(), 7.0);
}

TEST_F(TextList, DerivesTheGeometryFromTheSides) {
    struct Case {
        const char* sides;
        std::wstring type;
        std::wstring value;
    };
    for (const Case& c :
         {Case{"4\t4", CalculationByRatio, L"1"}, Case{"10\t5", CalculationByDx, L"10"},
          Case{"0\t7", CalculationByDy, L"7"}, Case{"x\t7", CalculationByDy, L"7"},
          Case{"-2\t0", CalculationByRatio, L"1"}, Case{"x\ty", CalculationByRatio, L"1"},
          Case{" 2,50 \t1", CalculationByDx, L"2,50"}}) {
        const clsRoom room =
            roomAt(listOf("a\t\t50\tEG\t\t\t\t \t" + std::string(c.sides) + "\t\r\n"), 1);
        EXPECT_EQ(room.Geometry->CalculationType(), c.type) << c.sides;
        EXPECT_EQ(room.Geometry->CalculationValue(), c.value) << c.sides;
    }
}

TEST_F(TextList, FilesRoomsUnderTheirStoreys) {
    const clsFloors& list = listOf("a\t\t1\tEG\nb\t\t1\tOG\nc\t\t1\teg\nd\t\t1\t\n");
    EXPECT_EQ(list.GetCountOfFloors(), 3);
    EXPECT_EQ(roomAt(list, 1).Name(), L"a");
    EXPECT_EQ(roomAt(list, 2).Name(), L"c");
    EXPECT_EQ(roomAt(list, 3).Name(), L"b");
    EXPECT_EQ(roomAt(list, 4).StoryCode(), L"unbelegt");
}

TEST_F(TextList, IsAppendedToTheRoomsThatAreThere) {
    RoomForTest{.Name = L"alt"}.AddTo(floors);
    const auto before = contentsOf(floors);
    clsFileSytem(context).ReadListFromFile(
        folder.Write(L"r.txt", germanHeader + "neu\t\t1\tEG\r\n"), floors);
    ASSERT_EQ(floors.GetCountOfRooms(), 2);
    EXPECT_EQ(contentsOf(floors)[0], before[0]);
}

TEST_F(TextList, EndsWithoutAWordAtAnIdentifierThatDoesNotConvert) {
    for (const char* key : {"x-K3", "-12", "99999999999-K3", "a-b"}) {
        const clsFloors& list = listOf("gut\t\t1\tEG\nschlecht\t\t1\tEG\t\t\t\t\t1\t1\t" +
                                       std::string(key) + "\ndanach\t\t1\tEG\n");
        ASSERT_EQ(list.GetCountOfRooms(), 1) << key;
        EXPECT_EQ(roomAt(list, 1).Name(), L"gut");
    }
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
}

TEST_F(TextList, RefreshesNoTable) {
    listOf("a\r\n");
    EXPECT_TRUE(context.table.Updates.empty());
}

// ------------------------------------------------------------------------- text or workbook

TEST_F(TextList, IsAWorkbookByTheEndOfItsNameAlone) {
    RoomForTest().AddTo(floors);
    const auto asksForApplication = [&](const std::wstring& name) {
        context.Spreadsheets.ForgetCalls();
        clsFileSytem(context).WriteListToFile(folder.Path(name), floors);
        return context.Spreadsheets.Calls() > 0;
    };
    EXPECT_TRUE(asksForApplication(L"a.xls"));
    EXPECT_TRUE(asksForApplication(L"axls"));
    EXPECT_TRUE(asksForApplication(L"a.xls  "));
    EXPECT_FALSE(asksForApplication(L"a.XLS"));
    EXPECT_FALSE(asksForApplication(L"a.Xls"));
    EXPECT_FALSE(asksForApplication(L"a.xlsx"));
    EXPECT_FALSE(asksForApplication(L"xls.txt"));
    EXPECT_FALSE(asksForApplication(L"ls"));
    EXPECT_TRUE(folder.Has(L"a.XLS") && folder.Has(L"a.xlsx") && folder.Has(L"xls.txt"));
}

TEST_F(TextList, TakesAWorkbooksNameWithoutTheApplication) {
    context.Spreadsheets.Installed = false;
    RoomForTest{.Name = L"eins", .RoomID = L"7-K"}.AddTo(floors);
    RoomForTest{.Name = L"zwei", .Story = L"OG"}.AddTo(floors);
    EXPECT_TRUE(clsFileSytem(context).WriteListToFile(folder.Path(L"a.xls"), floors).complete);
    EXPECT_EQ(folder.Read(L"a.xls"), written());

    clsFloors read;
    EXPECT_TRUE(clsFileSytem(context).ReadListFromFile(folder.Path(L"a.xls"), read).complete);
    EXPECT_EQ(contentsOf(read), contentsOf(floors));
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
    EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
}

TEST_F(TextList, SaysThatARealWorkbookNeedsTheApplication) {
    context.Spreadsheets.Installed = false;
    const std::string workbook("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1\0\0\0\0 no tab", 20);
    const FileOutcome outcome = clsFileSytem(context).ReadListFromFile(
        folder.Write(L"a.xls", workbook + "\nx\ty\n"), floors);
    EXPECT_FALSE(outcome.complete);
    EXPECT_FALSE(outcome.failure);
    EXPECT_EQ(floors.GetCountOfRooms(), 0);
    ASSERT_EQ(context.platform.desktop.Messages().size(), 1U);
    const Gui::Message& message = context.platform.desktop.Messages().front();
    EXPECT_EQ(message.Prompt,
              L" Exceldateien können nur gelesen werden, wenn Excel installiert ist.");
    EXPECT_EQ(message.Title, L"Quartino");
    EXPECT_EQ(message.ButtonSet, Gui::Message::Buttons::Ok);
    EXPECT_EQ(message.Symbol, Gui::Message::Icon::None);
    // The hourglass must be gone when the user is to press a button.
    EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
}

TEST_F(TextList, TakesNoBinaryBytesForAHeaderThatHappenToHoldATab) {
    context.Spreadsheets.Installed = false;
    const std::string workbook("PK\x03\x04\t\0\t\0", 8);
    clsFileSytem(context).ReadListFromFile(folder.Write(L"a.xls", workbook + "\na\tb\n"), floors);
    EXPECT_EQ(floors.GetCountOfRooms(), 0);
    EXPECT_EQ(context.platform.desktop.Messages().size(), 1U);
}

TEST_F(TextList, EndsWithoutAWordWhenItIsMissingAsAWorkbookToo) {
    context.Spreadsheets.Installed = false;
    folder.Write(L"leer.xls", "");
    clsFileSytem(context).ReadListFromFile(folder.Path(L"fehlt.xls"), floors);
    clsFileSytem(context).ReadListFromFile(folder.Path(L"leer.xls"), floors);
    EXPECT_EQ(floors.GetCountOfRooms(), 0);
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
}

TEST_F(TextList, IsNotWrittenForOtherErrorsOfTheApplication) {
    RoomForTest().AddTo(floors);
    context.Spreadsheets.FailAt(2); // the alerts
    clsFileSytem(context).WriteListToFile(folder.Path(L"a.xls"), floors);
    EXPECT_FALSE(folder.Has(L"a.xls"));
}

TEST_F(TextList, IsNotReadForOtherErrorsOfTheApplication) {
    folder.Write(L"a.xls", germanHeader + "a\r\n");
    clsFileSytem(context).ReadListFromFile(folder.Path(L"a.xls"), floors); // cannot open it
    EXPECT_EQ(floors.GetCountOfRooms(), 0);
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
}

// ------------------------------------------------------------------------- how it ended

TEST_F(TextList, ThatFailsHalfWayLeavesTheOldFile) {
    for (int i = 1; i <= 5; ++i)
        RoomForTest{.Name = L"Raum " + std::to_wstring(i), .Area = i == 2 ? -1.0 : 20.0}.AddTo(
            floors);
    for (const wchar_t* name : {L"a.txt", L"ohne Programm.xls"}) {
        context.Spreadsheets.Installed = false;
        const std::wstring file = folder.Write(name, "die alte Liste");
        const FileOutcome outcome = clsFileSytem(context).WriteListToFile(file, floors);
        EXPECT_FALSE(outcome.complete);
        ASSERT_TRUE(outcome.failure);
        EXPECT_EQ(outcome.failure->number(), RuntimeError::InvalidProcedureCall);
        ASSERT_TRUE(outcome.room);
        EXPECT_EQ(outcome.room->Name(), L"Raum 2");
        EXPECT_EQ(outcome.oldFile, file);
        EXPECT_EQ(folder.Read(name), "die alte Liste");
        // What was written until then stays as well.
        EXPECT_NE(folder.Read(std::wstring(name) + L".new").find("\r\nRaum 1 \t "),
                  std::string::npos);
    }
    // Without an old file it stays under its own name.
    const FileOutcome outcome =
        clsFileSytem(context).WriteListToFile(folder.Path(L"neu.txt"), floors);
    EXPECT_EQ(outcome.oldFile, L"");
    EXPECT_NE(folder.Read(L"neu.txt").find("\r\nRaum 1 \t "), std::string::npos);
    EXPECT_FALSE(folder.Has(L"neu.txt.new"));
}

TEST_F(TextList, TakesTheOldFilesPlaceOnceItIsComplete) {
    RoomForTest().AddTo(floors);
    const std::string fresh = written();
    folder.Write(L"a.txt", std::string(10'000, 'x'));
    EXPECT_TRUE(clsFileSytem(context).WriteListToFile(folder.Path(L"a.txt"), floors).complete);
    EXPECT_EQ(folder.Read(L"a.txt"), fresh);
    EXPECT_FALSE(folder.Has(L"a.txt.new"));
#ifndef _WIN32
    std::filesystem::create_symlink(FilePath(folder.Path(L"a.txt")),
                                    FilePath(folder.Path(L"b.txt")));
    RoomForTest().AddTo(floors);
    EXPECT_TRUE(clsFileSytem(context).WriteListToFile(folder.Path(L"b.txt"), floors).complete);
    EXPECT_TRUE(std::filesystem::is_symlink(FilePath(folder.Path(L"b.txt"))));
    EXPECT_EQ(folder.Read(L"a.txt"), folder.Read(L"b.txt"));
#endif
}

TEST_F(TextList, TellsWhyItWasNotWritten) {
    EXPECT_TRUE(clsFileSytem(context).WriteListToFile(folder.Path(L"leer.txt"), floors).complete);
    RoomForTest().AddTo(floors);
    folder.MakeFolder(L"Ordner.txt");
    const auto errorFor = [&](const std::wstring& file) {
        const FileOutcome outcome = clsFileSytem(context).WriteListToFile(file, floors);
        EXPECT_FALSE(outcome.complete);
        EXPECT_FALSE(outcome.room);
        return outcome.failure->number();
    };
    EXPECT_EQ(errorFor(folder.Path(L"fehlt") + L"/a.txt"), RuntimeError::PathNotFound);
    EXPECT_EQ(errorFor(folder.Path(L"Ordner.txt")), RuntimeError::PermissionDenied);
    EXPECT_EQ(errorFor(std::wstring(1, L'\0')), RuntimeError::BadFileName);
    // The old list is named also where the new one cannot even be begun.
    const std::wstring kept = folder.Write(L"alt.txt", "x");
    folder.MakeFolder(L"alt.txt.new");
    EXPECT_EQ(clsFileSytem(context).WriteListToFile(kept, floors).oldFile, kept);
    for (const std::wstring& path : {std::wstring(), std::wstring(5000, L'x')})
        EXPECT_NE(errorFor(path), 0);
#ifndef _WIN32
    EXPECT_EQ(errorFor(L"/dev/full"), RuntimeError::DeviceError);
#endif
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
    RoomForTest{.Name = L"durch Null", .Type = CalculationByDx, .Value = L"0"}.AddTo(floors);
    const FileOutcome outcome =
        clsFileSytem(context).WriteListToFile(folder.Path(L"a.txt"), floors);
    EXPECT_EQ(outcome.failure->number(), RuntimeError::DivisionByZero);
    EXPECT_EQ(folder.Read(L"a.txt"),
              germanHeader + "B\xFCro \t Arbeiten \t 20 \t EG \t a \t HNF 2 \t N \t   \t "
                             "4,47213595499958 \t 4,47213595499958 \t \r\n");
}

TEST_F(TextList, TellsInWhichRowTheReadingEnded) {
    const auto outcomeOf = [&](const std::string& bytes) {
        return clsFileSytem(context).ReadListFromFile(folder.Write(L"r.txt", bytes), floors);
    };
    EXPECT_TRUE(outcomeOf(germanHeader).complete);
    EXPECT_TRUE(outcomeOf(germanHeader + "a\r\n\r\n").complete);
    const FileOutcome cut = outcomeOf(germanHeader + "a\nb\nc\t\t\t\t\t\t\t\t\t\tx-y\nd\n");
    EXPECT_FALSE(cut.complete);
    EXPECT_EQ(cut.row, 4);
    EXPECT_EQ(cut.failure->number(), RuntimeError::TypeMismatch);
    const FileOutcome empty = outcomeOf("");
    EXPECT_FALSE(empty.complete);
    EXPECT_EQ(empty.row, 0);
    const FileOutcome missing =
        clsFileSytem(context).ReadListFromFile(folder.Path(L"fehlt.txt"), floors);
    EXPECT_EQ(missing.failure->number(), RuntimeError::FileNotFound);
    const auto before = contentsOf(floors);
    folder.MakeFolder(L"Ordner.txt");
    for (const std::wstring& path :
         {folder.Path(L"fehlt.txt"), folder.Path(L"fehlt") + L"/a.txt", folder.Path(L"Ordner.txt"),
          std::wstring(), std::wstring(1, L'\0'), std::wstring(5000, L'x')}) {
        const FileOutcome outcome = clsFileSytem(context).ReadListFromFile(path, floors);
        EXPECT_FALSE(outcome.complete);
        EXPECT_EQ(outcome.row, 0);
    }
    EXPECT_EQ(contentsOf(floors), before);
    EXPECT_TRUE(context.platform.desktop.Messages().empty());
}

TEST_F(TextList, HasABlankForEveryLineBreakInAText) {
    RoomForTest{.Name = L"eins\r\nzwei\ndrei\rvier", .Function = L"\n", .AreaType = L"a\r\n\r\nb"}
        .AddTo(floors);
    RoomForTest{.Name = L"danach"}.AddTo(floors);
    const std::string bytes = written();
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'), 3);
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\r'), 3);
    EXPECT_NE(bytes.find("\r\neins zwei drei vier \t "), std::string::npos);
    EXPECT_NE(bytes.find(" \t a  b \t "), std::string::npos);
    clsFloors read;
    clsFileSytem(context).ReadListFromFile(folder.Path(L"a.txt"), read);
    ASSERT_EQ(read.GetCountOfRooms(), 2);
    EXPECT_EQ(roomAt(read, 2).Name(), L"danach");
}

TEST_F(TextList, KeepsTextBehindANul) {
    const std::wstring name = std::wstring(L"vorne") + L'\0' + L"hinten";
    RoomForTest{.Name = name}.AddTo(floors);
    written();
    clsFloors read;
    clsFileSytem(context).ReadListFromFile(folder.Path(L"a.txt"), read);
    EXPECT_EQ(roomAt(read, 1).Name(), name);
}

// ------------------------------------------------------------------------- round trips

TEST_F(TextList, KeepsSidesButNotTheKindOfGeometry) {
    RoomForTest{.Area = 50.0, .Value = L"2"}.AddTo(floors);
    RoomForTest{.Area = 16.0, .Value = L" 1"}.AddTo(floors);
    RoomForTest{.Type = CalculationByFile, .Value = L"C:\\a b\\p.txt"}.AddTo(floors);
    written();
    clsFloors read;
    clsFileSytem(context).ReadListFromFile(folder.Path(L"a.txt"), read);
    ASSERT_EQ(read.GetCountOfRooms(), 3);
    EXPECT_EQ(roomAt(read, 1).Geometry->CalculationType(), CalculationByDx);
    EXPECT_EQ(roomAt(read, 1).Geometry->CalculationValue(), L"10");
    EXPECT_EQ(roomAt(read, 1).Geometry->Area(), 50.0);
    EXPECT_EQ(roomAt(read, 2).Geometry->CalculationType(), CalculationByRatio);
    EXPECT_EQ(roomAt(read, 2).Geometry->CalculationValue(), L"1");
    EXPECT_EQ(roomAt(read, 3).Geometry->CalculationType(), CalculationByFile);
    EXPECT_EQ(roomAt(read, 3).Geometry->CalculationValue(), L"C:\\a b\\p.txt");
}

TEST_P(TextListUnderBothLocales, KeepsWhatTheFormatCanHold) {
    std::mt19937 random(3);
    const std::wstring letters = L"abcXYZ 0123456789-+=.,;'\"äöüÄÖÜß€()/&%\u00A0";
    const auto text = [&](std::size_t longest) {
        std::wstring result;
        for (std::size_t length = random() % (longest + 1); length > 0; --length)
            result += letters[random() % letters.size()];
        return result;
    };
    for (int round = 0; round < 300; ++round) {
        const bool polygonal = round % 4 == 0;
        RoomForTest{.Name = text(20),
                    .Function = text(20),
                    .Area = static_cast<double>(random() % 100'000 + 1) / 1000.0,
                    .Story = L"OG" + std::to_wstring(round / 50),
                    .Enclosure = text(3),
                    .Occupancy = text(8),
                    .AreaType = text(300),
                    .Type = polygonal ? CalculationByFile : CalculationByRatio,
                    .Value = polygonal ? L"C:\\" + Trim(text(30)) + L"x" : local(L"1.25"),
                    .RoomID = round % 3 == 0 ? std::to_wstring(random() % 1000) + L"-K" : L""}
            .AddTo(floors);
    }
    written(floors);
    clsFloors read;
    clsFileSytem(context).ReadListFromFile(folder.Path(L"a.txt"), read);
    ASSERT_EQ(read.GetCountOfRooms(), 300);
    for (int index = 1; index <= 300; ++index) {
        const clsRoom before = roomAt(floors, index);
        const clsRoom after = roomAt(read, index);
        EXPECT_EQ(after.Name(), before.Name());
        EXPECT_EQ(after.FunctionName(), before.FunctionName());
        EXPECT_EQ(after.Geometry->Area(), before.Geometry->Area());
        EXPECT_EQ(after.StoryCode(), before.StoryCode());
        EXPECT_EQ(after.Enclosure(), before.Enclosure());
        EXPECT_EQ(after.Occupancy(), before.Occupancy());
        EXPECT_EQ(after.AreaType(), before.AreaType());
        EXPECT_EQ(after.GetRoomID(), before.GetRoomID());
        EXPECT_EQ(after.Geometry->FileName(), before.Geometry->FileName());
        EXPECT_NEAR(after.Geometry->dx(), before.Geometry->dx(), 1e-12);
        EXPECT_NEAR(after.Geometry->dy(), before.Geometry->dy(), 1e-12);
    }
}

// ------------------------------------------------------------------------- bad input

TEST_F(TextList, CutOffAnywhereLosesOnlyWhatWasCutOff) {
    RoomForTest{.Name = L"eins", .RoomID = L"12-K3"}.AddTo(floors);
    RoomForTest{.Name = L"zwei", .Type = CalculationByFile, .Value = L"C:\\p.txt", .RoomID = L"1-K"}
        .AddTo(floors);
    RoomForTest{.Name = L"drei", .Area = 12.5}.AddTo(floors);
    const std::string whole = written();
    const auto complete = contentsOf(fileOf(whole));
    ASSERT_EQ(complete.size(), 3U);
    for (std::size_t length = 0; length < whole.size();
         length += length + 20 < germanHeader.size() ? 20 : 1) {
        const std::string part = whole.substr(0, length);
        const auto ends = std::count(part.begin(), part.end(), '\n');
        const auto contents = contentsOf(fileOf(part));
        const std::size_t whollyThere = ends > 0 ? static_cast<std::size_t>(ends - 1) : 0;
        ASSERT_GE(contents.size(), whollyThere) << length;
        ASSERT_LE(contents.size(), whollyThere + 1) << length;
        EXPECT_TRUE(std::equal(complete.begin(),
                               complete.begin() + static_cast<std::ptrdiff_t>(whollyThere),
                               contents.begin()))
            << length;
    }
    // Half a line end is as good as a whole one.
    EXPECT_EQ(contentsOf(fileOf(whole.substr(0, whole.size() - 1))), complete);
}

TEST_F(TextList, OfRandomBytesDoesNoHarm) {
    RoomForTest{.Name = L"alt", .Story = L"ein Geschoss, das es sonst nicht gibt"}.AddTo(floors);
    const auto before = contentsOf(floors);
    std::mt19937 random(5);
    for (int round = 0; round < 50; ++round) {
        std::string bytes = round % 2 == 0 ? "" : germanHeader;
        for (int i = 0; i < 1000; ++i) {
            const auto byte = random() % 260;
            bytes += byte < 256 ? static_cast<char>(byte) : '\t';
        }
        EXPECT_NO_THROW(
            clsFileSytem(context).ReadListFromFile(folder.Write(L"r.txt", bytes), floors));
    }
    EXPECT_EQ(contentsOf(floors)[0], before[0]);
}

TEST_F(TextList, TakesALineOfAMegabyte) {
    const std::string name(1'000'000, 'n');
    const clsFloors& list = listOf(name + " \t f \t 1 \t EG\r\nzwei\t\t2\tEG\r\n");
    ASSERT_EQ(list.GetCountOfRooms(), 2);
    EXPECT_EQ(roomAt(list, 1).Name().size(), name.size());
    EXPECT_EQ(roomAt(list, 2).Name(), L"zwei");
}

TEST_F(TextList, TakesALineOfAMillionTabsDigitsAndNuls) {
    for (const char c : {'\t', '9', '\0', '-', ' '}) {
        const clsFloors& list = listOf(std::string(1'000'000, c) + "\r\nzwei\t\t2\tEG\r\n");
        EXPECT_EQ(list.GetCountOfRooms(), 2) << static_cast<int>(c);
    }
}

TEST_F(TextList, TakesNumbersBeyondEveryRange) {
    const clsFloors& list = listOf("a\t\t1e308\tEG\t\t\t\t\t1e308\t99999999999\t\n"
                                   "b\t\t99999999999\tEG\t\t\t\t\t1e309\t-1e309\t\n");
    ASSERT_EQ(list.GetCountOfRooms(), 2);
    EXPECT_EQ(roomAt(list, 1).Geometry->Area(), 1e308);
    EXPECT_EQ(roomAt(list, 1).Geometry->CalculationValue(), L"1e308");
    EXPECT_EQ(roomAt(list, 2).Geometry->Area(), 99999999999.0);
    EXPECT_EQ(roomAt(list, 2).Geometry->CalculationType(), CalculationByRatio);
}

TEST_F(TextList, TakesManyRooms) {
    std::string bytes = germanHeader;
    for (int i = 1; i <= manyRooms; ++i) {
        const std::string number = std::to_string(i);
        bytes += "Raum " + number + " \t f \t " + number + " \t " + std::to_string(i % 40) +
                 " \t a \t b \t c \t   \t 1 \t 2 \t \r\n";
    }
    clsFloors& list = fileOf(bytes);
    ASSERT_EQ(list.GetCountOfRooms(), manyRooms);
    EXPECT_EQ(list.GetCountOfFloors(), 40);
    EXPECT_EQ(roomAt(list, manyRooms).Name(), L"Raum " + std::to_wstring(manyRooms));
    clsFileSytem(context).WriteListToFile(folder.Path(L"a.txt"), list);
    const std::string again = folder.Read(L"a.txt");
    EXPECT_EQ(std::count(again.begin(), again.end(), '\n'), manyRooms + 1);
}

} // namespace
} // namespace kalvrooms
