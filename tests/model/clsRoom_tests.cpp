#include "model/clsRoom.h"

#include <memory>

#include "support/UserLocaleForTest.h"

namespace kalvrooms {

namespace {

std::wstring nextOf(const std::wstring& name, std::int32_t id = 0) {
    clsRoom room;
    room.Name(name);
    room.ID(id);
    room.IncrementRoomNumber();
    return room.Name();
}

void expectNext(std::initializer_list<std::pair<const wchar_t*, const wchar_t*>> names) {
    for (const auto& [name, next] : names)
        EXPECT_EQ(nextOf(name), next);
}

long errorOfNext(const std::wstring& name, std::int32_t id = 0) {
    return errorOf([&] { nextOf(name, id); });
}

class SeriesUnderBothLocales : public UnderBothLocales {};
INSTANTIATE_TEST_SUITE_P(CommaAndPoint, SeriesUnderBothLocales,
                         testing::Values(NumberLocale::German(), NumberLocale::Point()));

} // namespace

// What a storey's rooms all say is stored once: long lists would not fit into the memory otherwise.
TEST(clsRoom, SharesTheWordsThatOtherRoomsHaveToo) {
    clsRoom one;
    clsRoom other;
    for (clsRoom* room : {&one, &other}) {
        room->StoryCode(L" 1. Obergeschoss ");
        room->Enclosure(L"a");
        room->Occupancy(L"HNF 3");
        room->AreaType(L"N");
        room->SetRoomID(L"12-K3");
    }
    EXPECT_EQ(&one.StoryCode(), &other.StoryCode());
    EXPECT_EQ(&one.Enclosure(), &other.Enclosure());
    EXPECT_EQ(&one.Occupancy(), &other.Occupancy());
    EXPECT_EQ(&one.AreaType(), &other.AreaType());
    EXPECT_EQ(&one.FileID(), &other.FileID());
    other.StoryCode(L"EG");
    EXPECT_EQ(one.StoryCode(), L"1. Obergeschoss");
}

TEST(clsRoom, ANewRoomHasItsDefaults) {
    const clsRoom room;
    EXPECT_EQ(room.Name(), L"1");
    EXPECT_EQ(room.FunctionName(), L"");
    EXPECT_EQ(room.StoryCode(), L"EG");
    EXPECT_EQ(room.Enclosure(), L"");
    EXPECT_EQ(room.Occupancy(), L"");
    EXPECT_EQ(room.AreaType(), L"");
    EXPECT_EQ(room.FileNumber(), -1);
    EXPECT_EQ(room.FileID(), L"");
    EXPECT_EQ(room.ComponentID(), -1);
    EXPECT_EQ(room.ProjectNumber(), -1);
    EXPECT_EQ(room.ID(), 0);
    EXPECT_FALSE(room.IsNew());
    EXPECT_EQ(room.GetRoomID(), L"");
    ASSERT_TRUE(room.Geometry);
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByRatio);
    EXPECT_EQ(room.Geometry->CalculationValue(), L" 1");
    EXPECT_EQ(room.Geometry->Area(), 16.0);
}

TEST(clsRoom, EveryRoomOwnsAGeometryOfItsOwn) {
    const clsRoom a;
    const clsRoom b;
    a.Geometry->Area(20.0);
    EXPECT_EQ(b.Geometry->Area(), 16.0);
}

TEST(clsRoom, TheGeometryCanBeReplaced) {
    clsRoom room;
    room.Geometry = std::make_shared<clsGeometry>();
    EXPECT_EQ(room.Geometry->Area(), 0.0);
    EXPECT_EQ(room.Geometry->CalculationType(), L"");
}

TEST(clsRoom, TextsLoseTheBlanksAtBothEnds) {
    using Set = void (clsRoom::*)(std::wstring_view);
    using Get = const std::wstring& (clsRoom::*)() const;
    const std::pair<Set, Get> texts[] = {{&clsRoom::Name, &clsRoom::Name},
                                         {&clsRoom::FunctionName, &clsRoom::FunctionName},
                                         {&clsRoom::StoryCode, &clsRoom::StoryCode},
                                         {&clsRoom::Enclosure, &clsRoom::Enclosure},
                                         {&clsRoom::Occupancy, &clsRoom::Occupancy},
                                         {&clsRoom::AreaType, &clsRoom::AreaType},
                                         {&clsRoom::FileID, &clsRoom::FileID}};
    clsRoom room;
    for (const auto& [set, get] : texts) {
        (room.*set)(L"  Küche 1 ");
        EXPECT_EQ((room.*get)(), L"Küche 1");
        (room.*set)(L"   ");
        EXPECT_EQ((room.*get)(), L"");
    }
}

TEST(clsRoom, OnlyBlanksAreRemoved) {
    clsRoom room;
    room.Name(L"\tA\u00A0");
    EXPECT_EQ(room.Name(), L"\tA\u00A0");
}

TEST(clsRoom, NumbersAndFlagsAreStoredUnchecked) {
    clsRoom room;
    room.ID(-7);
    EXPECT_EQ(room.ID(), -7);
    room.ComponentID(-2147483647 - 1);
    EXPECT_EQ(room.ComponentID(), -2147483647 - 1);
    room.FileNumber(2147483647);
    EXPECT_EQ(room.FileNumber(), 2147483647);
    room.ProjectNumber(0);
    EXPECT_EQ(room.ProjectNumber(), 0);
    room.IsNew(true);
    EXPECT_TRUE(room.IsNew());
    room.IsNew(false);
    EXPECT_FALSE(room.IsNew());
}

// Of fewer than three characters or without hyphen there is nothing to split; without file, the
// room is not known in the drawing.
TEST(clsRoom, SetRoomIDSplitsAtTheFirstHyphen) {
    struct Case {
        const wchar_t* key;
        std::int32_t component;
        const wchar_t* file;
        const wchar_t* again;
    };
    const Case cases[] = {{L"12-K3", 12, L"K3", L"12-K3"}, {L"7-a-b-c", 7, L"a-b-c", L"7-a-b-c"},
                          {L" 1-", 1, L"", L""},           {L"1- ", 1, L" ", L""},
                          {L"12-", 12, L"", L""},          {L" 12 - K3 ", 12, L" K3 ", L"12- K3 "}};
    clsRoom room;
    for (const auto& [key, component, file, again] : cases) {
        room.SetRoomID(key);
        EXPECT_EQ(room.ComponentID(), component) << key;
        EXPECT_EQ(room.FileID(), file) << key;
        EXPECT_EQ(room.GetRoomID(), again) << key;
    }
    for (const wchar_t* key : {L"", L"1-", L"-1", L"--", L"123", L"abcdef", L"   "}) {
        room.SetRoomID(L"12-K3");
        room.SetRoomID(key);
        EXPECT_EQ(room.ComponentID(), -1) << key;
        EXPECT_EQ(room.FileID(), L"") << key;
        EXPECT_EQ(room.GetRoomID(), L"") << key;
    }
}

TEST(clsRoom, SetRoomIDRoundsLikeEveryConversion) {
    const UserLocaleForTest locale(NumberLocale::German());
    clsRoom room;
    room.SetRoomID(L"2,5-K");
    EXPECT_EQ(room.ComponentID(), 2);
    room.SetRoomID(L"3,5-K");
    EXPECT_EQ(room.ComponentID(), 4);
    room.SetRoomID(L"1.000-K");
    EXPECT_EQ(room.ComponentID(), 1000);
}

TEST(clsRoom, SetRoomIDRaisesWhenTheLeftPartIsNo32BitNumber) {
    clsRoom room;
    room.SetRoomID(L"12-K3");
    EXPECT_EQ(errorOf([&] { room.SetRoomID(L"-12"); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([&] { room.SetRoomID(L"  -K3"); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([&] { room.SetRoomID(L"abc-K4"); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(room.GetRoomID(), L"12-K3");
    EXPECT_EQ(errorOf([&] { room.SetRoomID(L"2147483648-K4"); }), RuntimeError::Overflow);
    EXPECT_EQ(room.GetRoomID(), L"12-K3"); // a failed call changes nothing
}

TEST(clsRoom, GetRoomIDNeedsAComponentAndAFile) {
    clsRoom room;
    room.ComponentID(0);
    EXPECT_EQ(room.GetRoomID(), L"");
    room.FileID(L"F");
    EXPECT_EQ(room.GetRoomID(), L"0-F");
    room.ComponentID(-1);
    EXPECT_EQ(room.GetRoomID(), L"");
}

TEST_P(SeriesUnderBothLocales, ANumberCountsOn) {
    expectNext({{L"7", L"8"}, {L"9", L"10"}, {L"009", L"10"}, {L"0", L"1"}, {L"-1", L"0"}});
    expectNext({{L"-5", L"-4"}, {L"+5", L"6"}, {L"(5)", L"-4"}, {L"999999999", L"1000000000"}});
}

TEST_P(SeriesUnderBothLocales, ANumberOfTenCharactersStays) {
    expectNext({{L"1234567890", L"1234567890"}, {L"0000000001", L"0000000001"}});
    expectNext({{L"2147483647", L"2147483647"}});
    expectNext({{L"12345678901234567890", L"12345678901234567890"}});
}

TEST_P(SeriesUnderBothLocales, ATrailingNumberCountsOn) {
    expectNext({{L"WC1", L"WC2"}, {L"WC9", L"WC10"}, {L"R099", L"R100"}, {L"R007", L"R8"}});
}

TEST_P(SeriesUnderBothLocales, TheBlankBeforeATrailingNumberBelongsToIt) {
    expectNext({{L"Raum 12", L"Raum13"}, {L"Raum   12", L"Raum13"}, {L"Raum\t12", L"Raum13"}});
}

TEST_P(SeriesUnderBothLocales, TheSignBeforeATrailingNumberBelongsToIt) {
    expectNext({{L"Büro-3", L"Büro-2"}, {L"Büro-1", L"Büro0"}, {L"Büro+3", L"Büro4"}});
    expectNext({{L"Büro -3", L"Büro-2"}, {L"Büro - 3", L"Büro-2"}, {L"Büro--3", L"Büro--2"}});
}

TEST_P(SeriesUnderBothLocales, ANameWithoutTrailingNumberGetsTheIDPlusOne) {
    EXPECT_EQ(nextOf(L"Flur", 4), L"Flur5");
    EXPECT_EQ(nextOf(L"WC", 0), L"WC1");
    EXPECT_EQ(nextOf(L"WC", -3), L"WC-2");
    EXPECT_EQ(nextOf(L"Raum 5)", 1), L"Raum 5)2");
    EXPECT_EQ(nextOf(L"Raum 5-", 1), L"Raum 5-2"); // the first character from the right decides
    EXPECT_EQ(nextOf(L"Raum 5a", 1), L"Raum 5a2");
}

TEST_P(SeriesUnderBothLocales, AnEmptyNameGetsTheIDPlusOne) {
    EXPECT_EQ(nextOf(L"", 0), L"1");
    EXPECT_EQ(nextOf(L"   ", 7), L"8");
}

TEST_P(SeriesUnderBothLocales, AnExponentIsNoPartOfATrailingNumber) {
    EXPECT_EQ(nextOf(L"R1e5"), L"R1e6"); // "e5" ends the search
}

TEST_P(SeriesUnderBothLocales, UpToTenTrailingCharactersCount) {
    expectNext({{L"R123456789", L"R123456790"}, {L"R1234567890", L"R1234567891"}});
    expectNext({{L"R12345678901", L"R12345678901"}});
    EXPECT_EQ(nextOf(L"R 1234567890"), L"R 1234567890"); // the blank is the eleventh
    EXPECT_EQ(nextOf(L"R00000000000000000001"), L"R00000000000000000001");
}

TEST_P(SeriesUnderBothLocales, TheLargestNumberOverflows) {
    EXPECT_EQ(errorOfNext(L"R2147483647"), RuntimeError::Overflow);
    EXPECT_EQ(errorOfNext(L"R9999999999"), RuntimeError::Overflow);
    EXPECT_EQ(nextOf(L"R2147483646"), L"R2147483647");
    EXPECT_EQ(errorOfNext(L"9e9"), RuntimeError::Overflow);
    EXPECT_EQ(errorOfNext(L"", 2147483647), RuntimeError::Overflow);
    EXPECT_EQ(errorOfNext(L"Flur", 2147483647), RuntimeError::Overflow);
}

TEST_P(SeriesUnderBothLocales, AFailedStepLeavesTheName) {
    clsRoom room;
    room.Name(L"R2147483647");
    EXPECT_EQ(errorOf([&] { room.IncrementRoomNumber(); }), RuntimeError::Overflow);
    EXPECT_EQ(room.Name(), L"R2147483647");
}

TEST(clsRoom, ASeriesReadsFractionsUnderTheUsersLocale) {
    {
        const UserLocaleForTest locale(NumberLocale::German());
        EXPECT_EQ(nextOf(L"1,5"), L"3");
        EXPECT_EQ(nextOf(L"2,5"), L"3");
        EXPECT_EQ(nextOf(L"1.05"), L"106");
        EXPECT_EQ(nextOf(L"EG.5"), L"EG.6");    // ".5" is no number here
        EXPECT_EQ(nextOf(L"EG,5"), L"EG1");     // ",5" is a half, rounded to the even 0
        EXPECT_EQ(nextOf(L"R 1.05"), L"R 1.6"); // ".05" ends the search
        EXPECT_EQ(nextOf(L"5 €"), L"6");
    }
    {
        const UserLocaleForTest locale(NumberLocale::Point());
        EXPECT_EQ(nextOf(L"1.5"), L"3");
        EXPECT_EQ(nextOf(L"1,05"), L"106");
        EXPECT_EQ(nextOf(L"EG,5"), L"EG,6");
        EXPECT_EQ(nextOf(L"EG.5"), L"EG1");
        EXPECT_EQ(nextOf(L"R1.05"), L"R2"); // the number is 1.05
    }
}

TEST_P(SeriesUnderBothLocales, ANameOfAMillionCharactersIsCountedOn) {
    // Not compared with EXPECT_EQ, which would print the names.
    const std::wstring letters(1'000'000, L'x');
    EXPECT_TRUE(nextOf(letters + L"7") == letters + L"8");
    EXPECT_TRUE(nextOf(letters, 4) == letters + L"5");
    const std::wstring digits(1'000'000, L'7');
    EXPECT_TRUE(nextOf(L"x" + digits) == L"x" + digits);
    EXPECT_TRUE(nextOf(digits) == digits);
}

} // namespace kalvrooms
