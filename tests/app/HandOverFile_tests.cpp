#include "app/HandOverFile.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "headless/HeadlessSystem.h"
#include "support/TemporaryFolder.h"

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;

class RecordedValues final : public StartValues {
  public:
    std::wstring helpFile, regKey, language;
    std::vector<std::wstring> order;

    void HelpFile(const std::wstring& path) override {
        helpFile = path;
        order.push_back(L"help");
    }
    void SetRegKey(const std::wstring& path) override {
        regKey = path;
        order.push_back(L"key");
    }
    void SetLang(const std::wstring& code) override {
        language = code;
        order.push_back(L"language");
    }
};

// The folder's name and the file's are joined by a backslash whatever the system; elsewhere than on
// Windows that makes one odd file name, which serves as well.
class HandOver : public ::testing::Test {
  protected:
    HandOver() {
        environment_.Folder = (folder_ / "here").wstring();
        if constexpr (std::filesystem::path::preferred_separator == L'\\')
            std::filesystem::create_directories(folder_ / "here");
        path_ = environment_.Folder + L"\\kalvqtotemp";
    }
    void read(const std::string& content) {
        writeBytes(path_, content);
        read();
    }
    void read() { ReadHandOverFile(environment_, ansi_, values_); }
    const TemporaryFolder folder_;
    std::wstring path_;
    HeadlessEnvironment environment_;
    HeadlessAnsiCodec ansi_;
    RecordedValues values_;
};

TEST_F(HandOver, AppliesHelpFileKeyAndLanguageInThisOrder) {
    read("own line\r\nC:\\Hilfe\\quartino.kalvhelp\r\n Software\\Host \r\neng\r\nmore\r\n");
    EXPECT_EQ(values_.helpFile, L"C:\\Hilfe\\quartino.chm");
    EXPECT_EQ(values_.regKey, L" Software\\Host ");
    EXPECT_EQ(values_.language, L"eng");
    EXPECT_THAT(values_.order, ElementsAre(L"help", L"key", L"language"));
}

TEST_F(HandOver, ASecondLineOfExactlyEightCharactersGivesChm) {
    read("x\r\n12345678\r\n");
    EXPECT_EQ(values_.helpFile, L"chm");
    EXPECT_THAT(values_.order, ElementsAre(L"help"));
}

TEST_F(HandOver, ASecondLineThatIsTooShortStopsTheReading) {
    read("x\r\n1234567\r\nkey\r\neng\r\n");
    EXPECT_TRUE(values_.order.empty());
}

TEST_F(HandOver, ReadingStopsWhereTheFileEnds) {
    read();
    EXPECT_TRUE(values_.order.empty());
    read("");
    read("one line");
    EXPECT_TRUE(values_.order.empty());
    read("x\r\nC:\\q.12345678\r\nkey");
    EXPECT_THAT(values_.order, ElementsAre(L"help", L"key"));
    EXPECT_EQ(values_.regKey, L"key");
}

TEST_F(HandOver, OtherLineEndsAreTakenToo) {
    read("x\nC:\\q.12345678\nkey\neng");
    EXPECT_EQ(values_.language, L"eng");
    values_.order.clear();
    read("x\rC:\\q.12345678\rkey\rger\r");
    EXPECT_EQ(values_.language, L"ger");
}

TEST_F(HandOver, LongLinesNulBytesAndUmlautsAreKept) {
    const std::string longPath(40000, 'a');
    read("x\r\n" + longPath + "12345678\r\nk\xE4y" + std::string(1, '\0') + "z\r\nxxx\r\n");
    EXPECT_EQ(values_.helpFile, std::wstring(40000, L'a') + L"chm");
    EXPECT_EQ(values_.regKey, std::wstring(L"k\u00E4y") + L'\0' + L"z");
    EXPECT_EQ(values_.language, L"xxx");
}

TEST_F(HandOver, ABackslashFollowsTheFolderEvenWhereItEndsInOne) {
    // As a drive's root is reported.
    environment_.Folder += L'\\';
    path_ = environment_.Folder + L"\\kalvqtotemp";
    read("x\r\nC:\\q.12345678\r\nkey\r\neng\r\n");
    EXPECT_THAT(values_.order, ElementsAre(L"help", L"key", L"language"));
}

TEST_F(HandOver, AFolderOfThatNameIsPassedOver) {
    std::filesystem::create_directories(std::filesystem::path(path_));
    read();
    EXPECT_TRUE(values_.order.empty());
}

TEST_F(HandOver, TheFileIsLeftAsItIs) {
    read("own\r\nC:\\q.12345678\r\nkey\r\neng\r\n");
    EXPECT_EQ(readBytes(path_), "own\r\nC:\\q.12345678\r\nkey\r\neng\r\n");
}

} // namespace
} // namespace kalvrooms::testing
