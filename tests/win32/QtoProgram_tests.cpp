// qto as the user starts it on Windows: wide arguments, bytes as they are, the system's own
// separators and marks. What its commands do is tested in the process.

#include <gmock/gmock.h>

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "model/Utf8.h"
#include "practice/driver/UiDriver.h"
#include "support/TemporaryFolder.h"

namespace kalvrooms::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// A file that a process writes to as its standard output or reads as its input.
class StreamFile {
  public:
    StreamFile(const std::filesystem::path& file, DWORD access, DWORD disposition) {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        handle_ = CreateFileW(file.c_str(), access, FILE_SHARE_READ, &inherited, disposition,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    StreamFile(const StreamFile&) = delete;
    StreamFile& operator=(const StreamFile&) = delete;
    ~StreamFile() { CloseHandle(handle_); }
    HANDLE handle() const { return handle_; }

  private:
    HANDLE handle_;
};

class QtoProgram : public ::testing::Test {
  protected:
    // The exit code; what it says comes into `out` and `err`.
    DWORD run(const std::wstring& arguments, const std::string& input = {}) {
        writeBytes(folder / "in", input);
        DWORD code = 0;
        {
            const StreamFile in(folder / "in", GENERIC_READ, OPEN_EXISTING);
            const StreamFile outFile(folder / "out", GENERIC_WRITE, CREATE_ALWAYS);
            const StreamFile errFile(folder / "err", GENERIC_WRITE, CREATE_ALWAYS);
            STARTUPINFOW start{};
            start.cb = sizeof start;
            start.dwFlags = STARTF_USESTDHANDLES;
            start.hStdInput = in.handle();
            start.hStdOutput = outFile.handle();
            start.hStdError = errFile.handle();
            std::wstring line =
                L"\"" + (driver::binFolder() / L"qto.exe").wstring() + L"\" " + arguments;
            PROCESS_INFORMATION process{};
            if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                folder.path().c_str(), &start, &process))
                throw driver::WaitFailed("qto cannot be started");
            WaitForSingleObject(process.hProcess, driver::usualLimit);
            GetExitCodeProcess(process.hProcess, &code);
            CloseHandle(process.hThread);
            CloseHandle(process.hProcess);
        }
        out = readBytes(folder / "out");
        err = readBytes(folder / "err");
        return code;
    }

    const TemporaryFolder folder;
    std::string out;
    std::string err;
};

TEST_F(QtoProgram, AModelInAFileOfAnyNameGoesThroughAListAndBackByteForByte) {
    std::filesystem::copy_file(std::filesystem::path(QUARTINO_SOURCE_DIR "/examples/haus/haus.ifc"),
                               folder / L"Größe Ωж.ifc");
    ASSERT_EQ(run(L"read \"Größe Ωж.ifc\" Räume.txt"), 0u) << err;
    ASSERT_EQ(run(L"list Räume.txt --json"), 0u) << err;
    EXPECT_THAT(out, Not(HasSubstr("\r")));
    const nlohmann::json rooms = nlohmann::json::parse(out);
    ASSERT_EQ(rooms.size(), 9u);
    EXPECT_EQ(rooms[1].at("function"), "Küche");
    EXPECT_EQ(rooms[1].at("area"), 12.25);
    EXPECT_EQ(rooms[1].at("outline").size(), 4u);
    EXPECT_THAT(rooms[1].at("pointFile").get<std::string>(), HasSubstr("\\1-1605806478.txt"));

    ASSERT_EQ(run(L"write Räume.txt \"Größe Ωж.ifc\" neu.ifc"), 0u) << err;
    EXPECT_EQ(readBytes(folder / "neu.ifc"), readBytes(folder / L"Größe Ωж.ifc"));
}

TEST_F(QtoProgram, SpeaksTheLanguageAndWritesTheMarksOfItsUser) {
    wchar_t mark[4] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, mark, 4);
    const bool comma = mark[0] == L',';
    ASSERT_EQ(run(L"--help"), 0u);
    EXPECT_THAT(out, HasSubstr(comma ? "prüft eine Liste" : "checks a list"));
    ASSERT_EQ(
        run(L"read - -",
            R"({"elements":[{"name":"A","attributes":[{"name":"Bodenfläche","value":2.5}]}]})"),
        0u)
        << err;
    EXPECT_THAT(out, HasSubstr(comma ? "\r\nA \t  \t 2,5 \t " : "\r\nA \t  \t 2.5 \t "));
}

TEST_F(QtoProgram, EndsWithTheCodeOfWhatItFound) {
    EXPECT_EQ(run(L"check -", "header \t \r\nA \t  \t viel"), 1u);
    EXPECT_EQ(run(L"list \"gibt es nicht.txt\""), 2u);
    EXPECT_THAT(err, HasSubstr("gibt es nicht.txt: "));
}

} // namespace
} // namespace kalvrooms::testing
