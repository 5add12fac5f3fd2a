#include "files/TextStream.h"

#include "FileContext.h"

namespace kalvrooms {
namespace {

class TextReaderTest : public testing::Test {
  protected:
    std::vector<std::wstring> linesOf(const std::string& bytes) {
        TextReader reader(folder.Write(L"a.txt", bytes), codec, longestLine);
        std::vector<std::wstring> lines;
        while (!reader.AtEnd())
            lines.emplace_back(reader.ReadLine());
        return lines;
    }
    long openError(const std::wstring& path) {
        return errorOf([&] { TextReader reader(path, codec); });
    }

    using Lines = std::vector<std::wstring>;
    static constexpr std::size_t longestLine = 200'000;
    HeadlessAnsiCodec codec;
    ListFolder folder;
};

TEST_F(TextReaderTest, EndsLinesAtLfAndAtCrLf) {
    EXPECT_EQ(linesOf("a\r\nb\nc\r\n"), (Lines{L"a", L"b", L"c"}));
}

TEST_F(TextReaderTest, TakesALastLineWithoutEnd) {
    EXPECT_EQ(linesOf("a\r\nb"), (Lines{L"a", L"b"}));
    EXPECT_EQ(linesOf("a\r\nb\r"), (Lines{L"a", L"b"}));
}

TEST_F(TextReaderTest, TakesEmptyLines) {
    EXPECT_EQ(linesOf("\r\n\n\r\n"), (Lines{L"", L"", L""}));
}

TEST_F(TextReaderTest, KeepsALoneCarriageReturnInsideALine) {
    EXPECT_EQ(linesOf("a\rb\r\n"), (Lines{L"a\rb"}));
    EXPECT_EQ(linesOf("a\r\r\n"), (Lines{L"a\r"}));
}

TEST_F(TextReaderTest, KeepsNulAndEndOfTextCharacters) {
    EXPECT_EQ(linesOf(std::string("a\0b\x1A\r\nc", 7)),
              (Lines{std::wstring(L"a\0b\x1A", 4), L"c"}));
}

TEST_F(TextReaderTest, ReadsTheCodePage) {
    EXPECT_EQ(linesOf("\xE4\xF6\xFC\xDF\x80"), (Lines{L"äöüß€"}));
}

TEST_F(TextReaderTest, AnEmptyFileIsAtItsEnd) {
    EXPECT_TRUE(linesOf("").empty());
}

TEST_F(TextReaderTest, ReadingAtTheEndIsAnError) {
    TextReader reader(folder.Write(L"a.txt", "x\r\n"), codec);
    reader.ReadLine();
    EXPECT_EQ(errorOf([&] { reader.ReadLine(); }), RuntimeError::InputPastEndOfFile);
    EXPECT_EQ(errorOf([&] { reader.ReadLine(); }), RuntimeError::InputPastEndOfFile);
}

// Around the size of the buffer, so that a line end falls on its border at least once.
TEST_F(TextReaderTest, FindsLinesOfAnyLengthAcrossTheBuffer) {
    for (std::size_t length = 65'530; length <= 65'540; ++length) {
        const std::string first(length, 'x');
        const std::string second(2 * length, 'y');
        const Lines lines = linesOf(first + "\r\n" + second + "\r\nz");
        ASSERT_EQ(lines.size(), 3U);
        EXPECT_EQ(lines[0], std::wstring(length, L'x'));
        EXPECT_EQ(lines[1], std::wstring(2 * length, L'y'));
        EXPECT_EQ(lines[2], L"z");
    }
}

TEST_F(TextReaderTest, RefusesALineThatNeverEnds) {
    const std::string tooLong(longestLine + 1, '\0');
    EXPECT_EQ(errorOf([&] { linesOf(tooLong); }), RuntimeError::OutOfMemory);
}

TEST_F(TextReaderTest, TakesTheLongestLine) {
    const std::string longest(longestLine, 'x');
    const Lines lines = linesOf(longest + "\nz");
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].size(), longestLine);
}

TEST_F(TextReaderTest, TellsWhyAFileCannotBeOpened) {
    folder.MakeFolder(L"Ordner");
    EXPECT_EQ(openError(folder.Path(L"fehlt.txt")), RuntimeError::FileNotFound);
    EXPECT_EQ(openError(folder.Path(L"fehlt") + L"/a.txt"), RuntimeError::PathNotFound);
    EXPECT_EQ(openError(folder.Path(L"Ordner")), RuntimeError::PermissionDenied);
    EXPECT_EQ(openError(L""), RuntimeError::InvalidProcedureCall);
    EXPECT_EQ(openError(folder.Path(L"a") + std::wstring(1, L'\0') + L"b"),
              RuntimeError::BadFileName);
}

TEST_F(TextReaderTest, AFileInPlaceOfAFolderIsNoFolder) {
    folder.Write(L"a.txt", "x");
    EXPECT_EQ(openError(folder.Path(L"a.txt") + L"/b.txt"), RuntimeError::PathNotFound);
}

class TextWriterTest : public testing::Test {
  protected:
    long openError(const std::wstring& path) {
        return errorOf([&] { TextWriter writer(path, codec); });
    }
    HeadlessAnsiCodec codec;
    ListFolder folder;
};

TEST_F(TextWriterTest, EndsEveryLineWithCrLf) {
    TextWriter writer(folder.Path(L"a.txt"), codec);
    writer.WriteLine(L"a");
    writer.WriteLine(L"");
    writer.WriteLine(L"ß");
    writer.Close();
    EXPECT_EQ(folder.Read(L"a.txt"), "a\r\n\r\n\xDF\r\n");
}

TEST_F(TextWriterTest, ReplacesALongerFile) {
    folder.Write(L"a.txt", std::string(1000, 'x'));
    TextWriter writer(folder.Path(L"a.txt"), codec);
    writer.WriteLine(L"a");
    writer.Close();
    EXPECT_EQ(folder.Read(L"a.txt"), "a\r\n");
}

TEST_F(TextWriterTest, WritesAQuestionMarkForWhatTheCodePageLacks) {
    TextWriter writer(folder.Path(L"a.txt"), codec);
    writer.WriteLine(L"\u0416-\u4E2D-ä");
    writer.Close();
    EXPECT_EQ(folder.Read(L"a.txt"), "?-?-\xE4\r\n");
}

TEST_F(TextWriterTest, OpensFilesWhoseNamesTheCodePageLacks) {
    TextWriter writer(folder.Path(L"Räume \u4E2D\u0416.txt"), codec);
    writer.WriteLine(L"a");
    writer.Close();
    TextReader reader(folder.Path(L"Räume \u4E2D\u0416.txt"), codec);
    EXPECT_EQ(reader.ReadLine(), L"a");
}

TEST_F(TextWriterTest, LeavesWhatWasWrittenWhenItIsNotClosed) {
    {
        TextWriter writer(folder.Path(L"a.txt"), codec);
        writer.WriteLine(L"a");
    }
    EXPECT_EQ(folder.Read(L"a.txt"), "a\r\n");
}

TEST_F(TextWriterTest, TellsWhyAFileCannotBeCreated) {
    folder.MakeFolder(L"Ordner");
    EXPECT_EQ(openError(folder.Path(L"fehlt") + L"/a.txt"), RuntimeError::PathNotFound);
    EXPECT_EQ(openError(folder.Path(L"Ordner")), RuntimeError::PermissionDenied);
    EXPECT_EQ(openError(L""), RuntimeError::InvalidProcedureCall);
}

TEST_F(TextWriterTest, AReadOnlyFileStaysAsItIs) {
    const std::wstring path = folder.Write(L"a.txt", "x");
    std::filesystem::permissions(FilePath(path), std::filesystem::perms::owner_read |
                                                     std::filesystem::perms::group_read |
                                                     std::filesystem::perms::others_read);
    const bool writable = static_cast<bool>(std::ofstream(FilePath(path), std::ios::app));
    const long error = openError(path);
    // Somebody with all rights, as in a container, may write it all the same.
    EXPECT_EQ(error, writable ? 0 : static_cast<long>(RuntimeError::PermissionDenied));
    std::filesystem::permissions(FilePath(path), std::filesystem::perms::owner_all);
    EXPECT_EQ(folder.Read(L"a.txt"), writable ? "" : "x");
}

#ifndef _WIN32
TEST_F(TextWriterTest, ALinkIntoAFolderThatIsMissingIsABadName) {
    const std::wstring link = folder.Path(L"a.txt");
    std::filesystem::create_symlink(FilePath(folder.Path(L"fehlt") + L"/a.txt"), FilePath(link));
    EXPECT_EQ(openError(link), RuntimeError::BadFileName);
}

TEST_F(TextWriterTest, AFullDiskIsNoSuccess) {
    TextWriter writer(L"/dev/full", codec);
    writer.WriteLine(L"a");
    EXPECT_EQ(errorOf([&] { writer.Close(); }), RuntimeError::DeviceError);
}

TEST_F(TextWriterTest, AFullDiskShowsWhileALongFileIsWritten) {
    TextWriter writer(L"/dev/full", codec);
    const std::wstring line(200'000, L'x');
    EXPECT_EQ(errorOf([&] { writer.WriteLine(line); }), RuntimeError::DeviceError);
}

TEST_F(TextReaderTest, StopsReadingAnEndlessDevice) {
    TextReader reader(L"/dev/zero", codec, 1U << 20);
    EXPECT_EQ(errorOf([&] { reader.ReadLine(); }), RuntimeError::OutOfMemory);
}
#endif

} // namespace
} // namespace kalvrooms
