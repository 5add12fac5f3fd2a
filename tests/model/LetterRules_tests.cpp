#include "model/LetterRules.h"

#include <utility>

#include <gtest/gtest.h>

namespace kalvrooms {
namespace {

// The C library of Windows knows plain letters only; the program asks the system itself there.
#ifndef _WIN32
TEST(PlainLetterRules, LetterCaseIsIgnoredInLatinGreekAndCyrillic) {
    const LetterRules plain = LetterRules::Plain();
    const std::pair<std::wstring, std::wstring> pairs[] = {
        {L"AZ", L"az"},          {L"ÄÖÜ", L"äöü"},         {L"ÀÞ", L"àþ"},
        {L"ŸĀĶ", L"ÿāķ"},        {L"ĹŇŊŶ", L"ĺňŋŷ"},       {L"ŹŽ", L"źž"},
        {L"ΑΩΪΫ", L"αωϊϋ"},      {L"ΆΈΉΊΌΎΏ", L"άέήίόύώ"}, {L"ΣΑΣ", L"σας"},
        {L"АЯЁЏ", L"аяёџ"},      {L"ҐӐԮ", L"ґӑԯ"},   {L"ӀӁ", L"ӏӂ"},
        {L"Geschoß", L"GESCHOß"}};
    for (const auto& [one, other] : pairs)
        EXPECT_EQ(plain.Fold(one), plain.Fold(other)) << one.size();
}
#endif

TEST(PlainLetterRules, OtherCharactersStayAsTheyAre) {
    const LetterRules plain = LetterRules::Plain();
    const std::pair<std::wstring, std::wstring> pairs[] = {
        {L"ß", L"SS"}, {L"ß", L"ss"}, {L"×", L"÷"},          {L"\u0130", L"i"}, {L"A", L"Ä"},
        {L"A", L"Α"},  {L"1", L"2"},  {L"@", L"`"},          {L"[", L"{"},      {L"EG", L"E G"},
        {L"ŉ", L"Ŋ"},  {L"ĸ", L"Ĺ"},  {L"\u0483", L"\u0484"}};
    for (const auto& [one, other] : pairs)
        EXPECT_NE(plain.Fold(one), plain.Fold(other)) << one.size();
}

TEST(PlainLetterRules, TextsStandInTheOrderOfTheirLettersWithoutRegardToCase) {
    const LetterRules plain = LetterRules::Plain();
    EXPECT_EQ(plain.SortKey(L"Bar"), plain.SortKey(L"bAR"));
    EXPECT_LT(plain.SortKey(L""), plain.SortKey(L"a"));
    EXPECT_LT(plain.SortKey(L"a"), plain.SortKey(L"B"));
    EXPECT_LT(plain.SortKey(L"A"), plain.SortKey(L"a1"));
}

TEST(HandedInLetterRules, AreAskedUntilThePlainOnesAreBack) {
    HandInLetterRules({[](const std::wstring& text) { return text + L"!"; },
                       [](const std::wstring&) { return std::string("key"); }});
    EXPECT_EQ(FoldedCase(L"a"), L"a!");
    EXPECT_EQ(SortKey(L"a"), "key");
    // One alone does not do.
    HandInLetterRules({[](const std::wstring& text) { return text; }, {}});
    EXPECT_EQ(FoldedCase(L"a"), L"A");
    EXPECT_EQ(SortKey(L"a"), "A");
}

} // namespace
} // namespace kalvrooms
