// Every language's source, held against the German texts that are built into the program.

#include "app/Messages.h"
#include "app/clsText.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cctype>
#include <cwctype>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "headless/HeadlessSystem.h"
#include "lang/LanguageSource.h"

namespace kalvrooms::testing {
namespace {

// Menus by the numbers of their entries; the first is the menu bar.
const std::vector<std::vector<std::int32_t>> menus = {
    {4, 12, 18}, {5, 6, 7, 8, 9, 10, 11}, {13, 14, 15, 16, 17}, {19}};
// A menu entry, but also a window's title, which shows every character as it is.
constexpr std::int32_t optionsText = 19;
constexpr std::size_t longestText = 255;

std::vector<std::filesystem::path> languageFiles() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(QUARTINO_SOURCE_DIR "/lang"))
        if (entry.path().extension() == ".txt")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::size_t blanksBefore(const std::wstring& text) {
    return std::min(text.find_first_not_of(L' '), text.size());
}

std::size_t blanksAfter(const std::wstring& text) {
    const std::size_t last = text.find_last_not_of(L' ');
    return last == std::wstring::npos ? 0 : text.size() - 1 - last;
}

// The letter that "&" marks, in capitals; 0 without one.
wchar_t accessKey(const std::wstring& text) {
    const std::size_t mark = text.find(L'&');
    return mark == std::wstring::npos || mark + 1 == text.size()
               ? L'\0'
               : static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(text[mark + 1])));
}

class Translation : public ::testing::TestWithParam<std::filesystem::path> {
  protected:
    std::wstring german(std::int32_t number) const {
        const std::wstring text = german_.GetText(number);
        return text.empty() ? GermanMessage(number) : text;
    }
    std::wstring translated(std::int32_t number) const {
        const auto found = texts_.find(number);
        return found == texts_.end() ? german(number) : found->second;
    }
    std::map<std::int32_t, std::wstring> texts_ = TranslationsOf(GetParam());

  private:
    HeadlessResourceLibraries libraries_;
    HeadlessEnvironment environment_;
    clsText german_{libraries_, environment_};
};

TEST_P(Translation, IsNamedAfterACodeThatTheProgramTakes) {
    const std::string code = GetParam().stem().string();
    EXPECT_EQ(code.size(), 3u);
    EXPECT_NE(code, "xxx");
    EXPECT_TRUE(std::all_of(code.begin(), code.end(), [](unsigned char c) {
        return std::isalnum(c);
    })) << code;
}

TEST_P(Translation, HasEveryTextAndNoOther) {
    // Names of attributes in the drawing, which the host knows by these and no others.
    const std::set<std::int32_t> staysGerman = {24, 92, 93};
    for (std::int32_t number = 0; number <= clsText::LastText; ++number)
        EXPECT_EQ(texts_.contains(number), !german(number).empty() && !staysGerman.contains(number))
            << "text " << number;
    for (const auto& [number, text] : texts_)
        EXPECT_FALSE(text.empty()) << "text " << number;
}

TEST_P(Translation, KeepsBlanksAndDots) {
    for (const auto& [number, text] : texts_) {
        const std::wstring original = german(number);
        EXPECT_EQ(blanksBefore(text), blanksBefore(original)) << "text " << number;
        EXPECT_EQ(blanksAfter(text), blanksAfter(original)) << "text " << number;
        EXPECT_EQ(text.ends_with(L" ..."), original.ends_with(L" ...")) << "text " << number;
        EXPECT_EQ(text.find(L"...") != std::wstring::npos,
                  original.find(L"...") != std::wstring::npos)
            << "text " << number;
        // The report's first line is half a sentence in German; others may prefer a heading.
        if (number != 29 && number != 57) {
            EXPECT_EQ(text.ends_with(L':'), original.ends_with(L':')) << "text " << number;
        }
    }
}

TEST_P(Translation, NamesTheSamePartsOfAMessage) {
    for (const auto& [number, text] : texts_)
        for (const wchar_t* part : {L"%1", L"%2", L"%3"})
            EXPECT_EQ(text.find(part) != std::wstring::npos,
                      german(number).find(part) != std::wstring::npos)
                << "text " << number;
}

TEST_P(Translation, FitsIntoTheProgramsBuffer) {
    for (const auto& [number, text] : texts_)
        EXPECT_LE(text.size(), longestText) << "text " << number;
}

TEST_P(Translation, HasAccessKeysInMenusOnlyAndEachOnceInItsMenu) {
    std::map<std::int32_t, bool> inMenu;
    for (const auto& menu : menus) {
        std::map<wchar_t, std::int32_t> keys;
        for (const std::int32_t number : menu) {
            inMenu[number] = number != optionsText;
            const wchar_t key = accessKey(translated(number));
            if (key == L'\0')
                continue;
            EXPECT_TRUE(std::iswalnum(static_cast<std::wint_t>(key))) << "text " << number;
            const auto [other, isNew] = keys.emplace(key, number);
            EXPECT_TRUE(isNew) << "texts " << other->second << " and " << number;
        }
    }
    for (const auto& [number, text] : texts_) {
        EXPECT_LE(std::count(text.begin(), text.end(), L'&'), inMenu[number] ? 1 : 0)
            << "text " << number;
    }
}

INSTANTIATE_TEST_SUITE_P(Languages, Translation, ::testing::ValuesIn(languageFiles()),
                         [](const auto& parameter) { return parameter.param.stem().string(); });

TEST(Languages, EnglishIsOneOfThem) {
    std::vector<std::string> codes;
    for (const auto& file : languageFiles())
        codes.push_back(file.stem().string());
    EXPECT_THAT(codes, ::testing::Contains("eng"));
}

TEST(Languages, TheGermanMenusHaveNoAccessKeyTwice) {
    HeadlessResourceLibraries libraries;
    HeadlessEnvironment environment;
    const clsText german(libraries, environment);
    for (const auto& menu : menus) {
        std::vector<wchar_t> keys;
        for (const std::int32_t number : menu)
            if (const wchar_t key = accessKey(german.GetText(number)))
                keys.push_back(key);
        std::sort(keys.begin(), keys.end());
        EXPECT_EQ(std::adjacent_find(keys.begin(), keys.end()), keys.end());
    }
}

} // namespace
} // namespace kalvrooms::testing
