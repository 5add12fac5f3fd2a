#include "app/clsText.h"

#include <gmock/gmock.h>

#include "headless/HeadlessSystem.h"
#include "model/RuntimeError.h"

namespace kalvrooms::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TextTable : public ::testing::Test {
  protected:
    HeadlessResourceLibraries libraries_;
    HeadlessEnvironment environment_;
    clsText text_{libraries_, environment_};
};

TEST_F(TextTable, StartsWithTheGermanTextsLeadingBlankIncluded) {
    EXPECT_EQ(text_.GetText(1), L" Quartino");
    EXPECT_EQ(text_.GetText(20), L" Bezeichnung ");
    EXPECT_EQ(text_.GetText(38), L" ");
    EXPECT_EQ(text_.GetText(75), L"");
    EXPECT_EQ(text_.GetText(95), L" Breite(Dy)");
    EXPECT_EQ(text_.GetText(98), L" Raum modifizieren ");
}

TEST_F(TextTable, EntriesWithoutDefaultAreEmptyAndNumbersBeyondAreAnError) {
    EXPECT_EQ(text_.GetText(0), L"");
    EXPECT_EQ(text_.GetText(99), L"");
    EXPECT_EQ(text_.GetText(150), L"");
    EXPECT_EQ(text_.GetText(200), L"");
    for (const std::int32_t number : {-1, 201}) {
        try {
            text_.GetText(number);
            FAIL() << number;
        } catch (const RuntimeError& error) {
            EXPECT_EQ(error.number(), RuntimeError::SubscriptOutOfRange);
        }
        EXPECT_THROW(text_.GetTextWithoutDot(number), RuntimeError);
    }
}

TEST_F(TextTable, DotsAreCutOffWithTheBlankBeforeThemLeft) {
    EXPECT_EQ(text_.GetTextWithoutDot(5), L" &Neu ");
    EXPECT_EQ(text_.GetTextWithoutDot(6), L" Öffnen ");
    EXPECT_EQ(text_.GetTextWithoutDot(2), L" OK");
    libraries_.Put(L"C:\\Quartino\\zorvinta_eng.dll", {{102, L"...all"}, {103, L"a...b...c"}});
    text_.SetLanguage(L"eng");
    EXPECT_EQ(text_.GetTextWithoutDot(2), L"...all");
    EXPECT_EQ(text_.GetTextWithoutDot(3), L"a");
}

TEST_F(TextTable, ALibraryReplacesEntryByEntry) {
    libraries_.Put(L"C:\\Quartino\\zorvinta_eng.dll", {{101, L" Rooms"},
                                                       {198, L" Modify "},
                                                       {199, L"new"},
                                                       {300, L"last"},
                                                       {301, L"beyond"},
                                                       {100, L"before"},
                                                       {102, L""}});
    text_.SetLanguage(L"eng");
    EXPECT_THAT(libraries_.Loads(), ElementsAre(L"C:\\Quartino\\zorvinta_eng.dll"));
    EXPECT_EQ(text_.GetText(0), L"");
    EXPECT_EQ(text_.GetText(1), L" Rooms");
    EXPECT_EQ(text_.GetText(2), L" OK");
    EXPECT_EQ(text_.GetText(3), L" Abbrechen");
    EXPECT_EQ(text_.GetText(98), L" Modify ");
    EXPECT_EQ(text_.GetText(99), L"new");
    EXPECT_EQ(text_.GetText(200), L"last");
    EXPECT_EQ(libraries_.OpenLibraries(), 0);
    ASSERT_EQ(libraries_.Reads().size(), 200u);
    EXPECT_EQ(libraries_.Reads().front(), 101u);
    EXPECT_EQ(libraries_.Reads().back(), 300u);
}

TEST_F(TextTable, CodesThatNameNoLanguageDoNotTouchTheDisk) {
    for (const wchar_t* code : {L"", L"xxx", L"de", L"germ"})
        text_.SetLanguage(code);
    EXPECT_THAT(libraries_.Loads(), IsEmpty());
    EXPECT_EQ(text_.GetText(2), L" OK");
}

TEST_F(TextTable, TheCodeXxxInCapitalsIsALanguage) {
    text_.SetLanguage(L"XXX");
    EXPECT_THAT(libraries_.Loads(), ElementsAre(L"C:\\Quartino\\zorvinta_XXX.dll"));
    EXPECT_EQ(text_.GetText(2), L" OK");
}

TEST_F(TextTable, CodesWithPathCharactersReachNoOtherFolder) {
    for (const wchar_t* code : {L"..\\", L"\\..", L"../", L"a/b", L"C:\\", L"a:b", L"e?g", L"*ng",
                                L"e\"g", L"<ng", L"|ng"})
        text_.SetLanguage(code);
    text_.SetLanguage(std::wstring(L"e\0g", 3));
    EXPECT_THAT(libraries_.Loads(), IsEmpty());
}

TEST_F(TextTable, ADriveRootAsFolderGetsNoSecondBackslash) {
    environment_.Folder = L"D:\\";
    text_.SetLanguage(L"eng");
    EXPECT_THAT(libraries_.Loads(), ElementsAre(L"D:\\zorvinta_eng.dll"));
}

} // namespace
} // namespace kalvrooms::testing
