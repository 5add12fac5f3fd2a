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

} // namespace
} // namespace kalvrooms::testing
