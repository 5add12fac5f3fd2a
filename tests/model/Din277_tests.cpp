#include "model/Din277.h"

#include <gtest/gtest.h>

namespace kalvrooms {
namespace {

TEST(Din277, KnowsTheWordsOfTodayAndOfBefore) {
    for (const wchar_t* text : {L"NUF 1", L"NUF 7", L"TF", L"VF", L"NF", L"HNF 1", L"HNF 6", L"NNF",
                                L"FF", L"NUF", L"HNF"}) {
        const auto use = ParseDin277Use(text);
        ASSERT_TRUE(use) << text;
        EXPECT_EQ(use->Text(), text);
    }
    EXPECT_EQ(ParseDin277Use(L"HNF 5"), (Din277Use{L"HNF", 5}));
}

TEST(Din277, LetsBlanksSmallLettersAndWhatFollowsPass) {
    EXPECT_EQ(ParseDin277Use(L" nuf2"), (Din277Use{L"NUF", 2}));
    EXPECT_EQ(ParseDin277Use(L"NUF 2.1 Büroräume"), (Din277Use{L"NUF", 2}));
    EXPECT_EQ(ParseDin277Use(L"TF - Technik"), (Din277Use{L"TF", 0}));
}

TEST(Din277, OtherWordsAreNone) {
    for (const wchar_t* text :
         {L"", L"Büro", L"HNF 7", L"NUF 8", L"NUF 0", L"TF 1", L"HNF 12", L"VFX"})
        EXPECT_FALSE(ParseDin277Use(text)) << text;
}

TEST(Din277, ClassesHaveNumbers) {
    EXPECT_EQ(Din277UseByNumber(L"5.2"), (Din277Use{L"NUF", 5}));
    EXPECT_EQ(Din277UseByNumber(L"8"), (Din277Use{L"TF", 0}));
    EXPECT_EQ(Din277UseByNumber(L"9.1"), (Din277Use{L"VF", 0}));
    EXPECT_FALSE(Din277UseByNumber(L"0"));
    EXPECT_FALSE(Din277UseByNumber(L"12"));
    EXPECT_FALSE(Din277UseByNumber(L"Büro"));
}

} // namespace
} // namespace kalvrooms
