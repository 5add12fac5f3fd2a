// Language libraries on the real system: loaded as data, overlaid text by text, odd ones survived.

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/clsText.h"
#include "journeys/ProgramFolder.h"
#include "lang/LanguageSource.h"
#include "win32/Win32ResourceLibraries.h"

namespace kalvrooms::testing {
namespace {

constexpr std::int32_t lastDefault = 98;

class LanguageLibrary : public ::testing::Test {
  protected:
    struct Folder : Environment {
        std::wstring path;
        std::wstring ExecutableFolder() const override { return path; }
    };

    LanguageLibrary() {
        environment.path = folder.path().wstring();
        for (std::int32_t number = 0; number <= clsText::LastText; ++number)
            german.push_back(clsText(libraries, environment).GetText(number));
    }
    std::filesystem::path library(const std::wstring& code) const {
        return folder.path() / (L"zorvinta_" + code + L".dll");
    }
    std::filesystem::path english() const { return library(L"eng"); }
    // The texts with the language applied.
    std::vector<std::wstring> texts(const std::wstring& code) {
        clsText table(libraries, environment);
        table.SetLanguage(code);
        std::vector<std::wstring> all;
        for (std::int32_t number = 0; number <= clsText::LastText; ++number)
            all.push_back(table.GetText(number));
        return all;
    }
    // Replaces the resources of a copy of the English library.
    void build(const std::wstring& code, const std::function<void(HANDLE)>& fill) {
        std::filesystem::copy_file(english(), library(code));
        const HANDLE update = BeginUpdateResourceW(library(code).c_str(), TRUE);
        ASSERT_NE(update, nullptr);
        fill(update);
        ASSERT_TRUE(EndUpdateResourceW(update, FALSE));
    }

    ProgramFolder folder;
    Folder environment;
    Win32ResourceLibraries libraries;
    std::vector<std::wstring> german;
};

TEST_F(LanguageLibrary, EnglishReplacesEveryText) {
    const std::map<std::int32_t, std::wstring> source =
        TranslationsOf(QUARTINO_SOURCE_DIR "/lang/eng.txt");
    const std::vector<std::wstring> english = texts(L"eng");
    int replaced = 0;
    for (std::int32_t number = 0; number <= clsText::LastText; ++number) {
        const auto found = source.find(number);
        EXPECT_EQ(english[static_cast<std::size_t>(number)],
                  found == source.end() ? german[static_cast<std::size_t>(number)] : found->second)
            << "text " << number;
        replaced +=
            english[static_cast<std::size_t>(number)] != german[static_cast<std::size_t>(number)];
    }
    // Names and letters that are the same in both languages are few.
    EXPECT_GT(replaced, 70);
}

TEST_F(LanguageLibrary, IsReleasedAfterwards) {
    texts(L"eng");
    EXPECT_TRUE(DeleteFileW(english().c_str()));
}

TEST_F(LanguageLibrary, WithoutSomeTextsLeavesThoseGerman) {
    std::vector<std::wstring> expected = german;
    expected[1] = L" Sprachprobe";
    EXPECT_EQ(texts(L"prb"), expected);
}

TEST_F(LanguageLibrary, ThatIsNoneLeavesGerman) {
    writeBytes(library(L"emp"), "");
    writeBytes(library(L"txt"), "1 = \" Quartino\"\r\n");
    std::string bytes = readBytes(english());
    const auto header = static_cast<unsigned char>(bytes[0x3C]) |
                        static_cast<unsigned>(static_cast<unsigned char>(bytes[0x3D])) << 8;
    // The first half only.
    writeBytes(library(L"cut"), bytes.substr(0, header + 100));
    std::filesystem::create_directories(library(L"dir"));
    for (const wchar_t* code : {L"emp", L"txt", L"cut", L"dir", L"non"})
        EXPECT_EQ(texts(code), german) << toAnsi(code);
}

TEST_F(LanguageLibrary, OfAnotherMachineIsDataAllTheSame) {
    std::string bytes = readBytes(english());
    const auto header = static_cast<unsigned char>(bytes[0x3C]) |
                        static_cast<unsigned>(static_cast<unsigned char>(bytes[0x3D])) << 8;
    ASSERT_EQ(bytes.substr(header, 6), std::string("PE\0\0\x64\x86", 6));
    bytes[header + 4] = '\x64';
    bytes[header + 5] = '\xAA';
    writeBytes(library(L"arm"), bytes);
    // Systems differ in whether they open it; what they never do is run it or stop.
    const std::vector<std::wstring> found = texts(L"arm");
    EXPECT_TRUE(found == german || found == texts(L"eng"));
}

TEST_F(LanguageLibrary, WithoutStringsLeavesGermanAndItsCodeNeverRuns) {
    std::filesystem::copy_file(folder.path() / L"hhctrl.ocx", library(L"cod"));
    EXPECT_EQ(texts(L"cod"), german);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / L"code-ran"));
    // The same library does run its code where it is loaded as one.
    const HMODULE module = LoadLibraryW(library(L"cod").c_str());
    ASSERT_NE(module, nullptr);
    FreeLibrary(module);
    EXPECT_TRUE(std::filesystem::exists(folder.path() / L"code-ran"));
}

TEST_F(LanguageLibrary, ThreeHundredLongStringsAreCutAt255Characters) {
    static constexpr int perBlock = 16;
    static constexpr WORD length = 5000;
    build(L"big", [](HANDLE update) {
        // String resources 96 to 415, of which the program asks for 101 to 300.
        for (int block = 7; block < 27; ++block) {
            std::vector<WORD> data;
            for (int i = 0; i < perBlock; ++i) {
                data.push_back(length);
                const int number = (block - 1) * perBlock + i;
                data.insert(data.end(), length, static_cast<WORD>(L'A' + number % 26));
            }
            EXPECT_TRUE(UpdateResourceW(update, reinterpret_cast<LPWSTR>(RT_STRING),
                                        MAKEINTRESOURCEW(block), LANG_NEUTRAL, data.data(),
                                        static_cast<DWORD>(data.size() * sizeof(WORD))));
        }
    });
    const std::vector<std::wstring> found = texts(L"big");
    EXPECT_EQ(found[0], L"");
    for (int number = 1; number <= clsText::LastText; ++number)
        EXPECT_EQ(found[static_cast<std::size_t>(number)],
                  std::wstring(255, static_cast<wchar_t>(L'A' + (number + 100) % 26)))
            << "text " << number;
}

TEST_F(LanguageLibrary, GivesTextsBeyondTheLastDefaultToo) {
    build(L"mor", [](HANDLE update) {
        // Block 13 holds the strings 192 to 207, block 19 those from 288 to 303.
        for (const auto& [block, first] : {std::pair{13, 192}, std::pair{19, 288}}) {
            std::vector<WORD> data;
            for (int number = first; number < first + 16; ++number) {
                const std::wstring text = std::to_wstring(number);
                data.push_back(static_cast<WORD>(text.size()));
                data.insert(data.end(), text.begin(), text.end());
            }
            UpdateResourceW(update, reinterpret_cast<LPWSTR>(RT_STRING), MAKEINTRESOURCEW(block),
                            LANG_NEUTRAL, data.data(),
                            static_cast<DWORD>(data.size() * sizeof(WORD)));
        }
    });
    const std::vector<std::wstring> found = texts(L"mor");
    EXPECT_EQ(found[91], german[91]);
    EXPECT_EQ(found[92], L"192");
    EXPECT_EQ(found[lastDefault], L"198");
    EXPECT_EQ(found[lastDefault + 1], L"199");
    EXPECT_EQ(found[107], L"207");
    EXPECT_EQ(found[108], L"");
    EXPECT_EQ(found[188], L"288");
    EXPECT_EQ(found[200], L"300");
}

TEST_F(LanguageLibrary, CodesOfOtherLengthAndXxxAreNoLanguage) {
    for (const wchar_t* code : {L"", L"e", L"en", L"engl", L"xxx"}) {
        if (!std::filesystem::exists(library(code)))
            std::filesystem::copy_file(english(), library(code));
        EXPECT_EQ(texts(code), german) << toAnsi(code);
    }
}

TEST_F(LanguageLibrary, CodesInCapitalsAreLanguages) {
    std::filesystem::copy_file(english(), library(L"xxx"));
    EXPECT_EQ(texts(L"XXX"), texts(L"eng"));
    EXPECT_EQ(texts(L"ENG"), texts(L"eng"));
    EXPECT_NE(texts(L"ENG"), german);
}

TEST_F(LanguageLibrary, CodesWithPathCharactersReachNoOtherFolder) {
    // Where such a code would lead if it were taken as part of a path.
    for (const wchar_t* name : {L"zorvinta_a", L"zorvinta_"})
        std::filesystem::create_directories(folder.path() / name);
    std::filesystem::copy_file(english(), folder.path() / L"zorvinta_a" / L"b.dll");
    std::filesystem::copy_file(english(), folder.path() / L"zorvinta_" / L"ab.dll");
    std::filesystem::copy_file(english(), folder.path() / L"zorvinta_a" / L".dll");
    for (const wchar_t* code : {L"a\\b", L"a/b", L"\\ab", L"/ab", L"a\\.", L"..\\", L"../", L"C:\\",
                                L"a:b", L"e?g", L"*ng", L"e\"g", L"<ng", L"|ng"})
        EXPECT_EQ(texts(code), german) << toAnsi(code);
    EXPECT_EQ(texts(std::wstring(L"e\0g", 3)), german);
    // Letters that the code page lacks become "?", which no file's name has.
    EXPECT_EQ(texts(L"\u4E2D\u6587e"), german);
}

} // namespace
} // namespace kalvrooms::testing
