#include "headless/AbsentServers.h"
#include "headless/HeadlessSystem.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "model/UserLocaleForTest.h"

namespace kalvrooms {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(HeadlessAnsiCodec, KnowsTheWesternCodePage) {
    const HeadlessAnsiCodec ansi;
    EXPECT_EQ(ansi.Encode(L"Aä€ß\r\n"), "A\xE4\x80\xDF\r\n");
    EXPECT_EQ(ansi.Decode("A\xE4\x80\xDF\x9F"), L"Aä€ßŸ");
    EXPECT_EQ(ansi.Encode(std::wstring(1, L'\0')), std::string(1, '\0'));
}

TEST(HeadlessAnsiCodec, PutsAQuestionMarkForACharacterThatThePageLacks) {
    const HeadlessAnsiCodec ansi;
    EXPECT_EQ(ansi.Encode(L"a\x0151\x4E2D\x0080z"), "a???z");
}

TEST(HeadlessAnsiCodec, MapsEveryByteThereAndBack) {
    const HeadlessAnsiCodec ansi;
    for (int byte = 0; byte < 256; ++byte) {
        const std::string bytes(1, static_cast<char>(byte));
        const std::wstring text = ansi.Decode(bytes);
        ASSERT_EQ(text.size(), 1u);
        EXPECT_EQ(ansi.Encode(text), bytes) << byte;
    }
    for (const wchar_t undefined : {0x81, 0x8D, 0x8F, 0x90, 0x9D})
        EXPECT_EQ(ansi.Decode(std::string(1, static_cast<char>(undefined))),
                  std::wstring(1, undefined));
}

TEST(HeadlessRegistry, StoresNumbersUnderItsKeys) {
    HeadlessRegistry registry;
    EXPECT_EQ(registry.OpenKey(L"Software\\Kalvero", 1), nullptr);
    {
        const auto key = registry.CreateKey(L"Software\\Kalvero", L"0", 0, 3);
        ASSERT_TRUE(key);
        EXPECT_EQ(registry.OpenKeys(), 1);
        EXPECT_TRUE(key->SetDword(L"Left", -5));
        std::int32_t value = 0;
        EXPECT_TRUE(key->QueryDword(L"LEFT", value));
        EXPECT_EQ(value, -5);
        value = 77;
        EXPECT_FALSE(key->QueryDword(L"Top", value));
        EXPECT_EQ(value, 77);
    }
    EXPECT_EQ(registry.OpenKeys(), 0);
    EXPECT_TRUE(registry.HasKey(L"software\\kalvero"));
    EXPECT_EQ(registry.Number(L"Software\\Kalvero", L"Left"), -5);
    EXPECT_THROW(registry.Number(L"Software\\Kalvero", L"Top"), std::logic_error);
    registry.Remove(L"Software\\Kalvero", L"Left");
    EXPECT_EQ(registry.Find(L"Software\\Kalvero", L"Left"), nullptr);
}

TEST(HeadlessRegistry, ReadsNothingButFourBytesOfTheRightType) {
    HeadlessRegistry registry;
    registry.Put(L"Key", L"Text", {HeadlessRegistry::TypeString, {1, 0, 0, 0}});
    registry.Put(L"Key", L"Short", {HeadlessRegistry::TypeDword, {1, 0}});
    registry.Put(L"Key", L"Good", {HeadlessRegistry::TypeDword, {1, 2, 3, 4}});
    const auto key = registry.OpenKey(L"Key", 0x20019);
    std::int32_t value = 9;
    EXPECT_FALSE(key->QueryDword(L"Text", value));
    EXPECT_FALSE(key->QueryDword(L"Short", value));
    EXPECT_EQ(value, 9);
    EXPECT_TRUE(key->QueryDword(L"Good", value));
    EXPECT_EQ(value, 0x04030201);
}

TEST(HeadlessRegistry, HoldsAKeyToWhatItWasOpenedFor) {
    HeadlessRegistry registry;
    registry.Put(L"Key", L"A", 1);
    std::int32_t value = 0;
    EXPECT_FALSE(registry.OpenKey(L"Key", 1)->SetDword(L"A", 2));
    EXPECT_FALSE(registry.OpenKey(L"Key", 2)->QueryDword(L"A", value));
    EXPECT_EQ(registry.Number(L"Key", L"A"), 1);
}

TEST(HeadlessRegistry, RecordsItsCallsInOrder) {
    HeadlessRegistry registry;
    registry.CreateKey(L"Key", L"0", 0, 0x4001F)->SetDword(L"Report", 2);
    using Operation = HeadlessRegistry::Operation;
    ASSERT_EQ(registry.Calls().size(), 3u);
    EXPECT_EQ(registry.Calls()[0].What, Operation::Create);
    EXPECT_EQ(registry.Calls()[0].Class, L"0");
    EXPECT_EQ(registry.Calls()[0].AccessMask, 0x4001Fu);
    EXPECT_EQ(registry.Calls()[1].What, Operation::Set);
    EXPECT_EQ(registry.Calls()[1].Name, L"Report");
    EXPECT_EQ(registry.Calls()[1].Type, HeadlessRegistry::TypeDword);
    EXPECT_EQ(registry.Calls()[1].Number, 2);
    EXPECT_EQ(registry.Calls()[2].What, Operation::Close);
    registry.ForgetCalls();
    EXPECT_THAT(registry.Calls(), IsEmpty());
}

TEST(HeadlessRegistry, FailsOnRequest) {
    HeadlessRegistry registry;
    registry.Put(L"Key", L"A", 1);
    registry.FailCreate = true;
    EXPECT_EQ(registry.CreateKey(L"New", L"0", 0, 3), nullptr);
    EXPECT_FALSE(registry.HasKey(L"New"));
    registry.FailSet = true;
    registry.FailQuery = true;
    std::int32_t value = 7;
    {
        const auto key = registry.OpenKey(L"Key", 3);
        EXPECT_FALSE(key->SetDword(L"A", 2));
        EXPECT_FALSE(key->QueryDword(L"A", value));
    }
    EXPECT_EQ(value, 7);
    EXPECT_EQ(registry.Number(L"Key", L"A"), 1);
    registry.FailOpen = true;
    EXPECT_EQ(registry.OpenKey(L"Key", 3), nullptr);
}

TEST(HeadlessResourceLibraries, LoadsByPathAndCutsLongStrings) {
    HeadlessResourceLibraries libraries;
    libraries.Put(L"C:\\a.dll", {{101, L"eins"}, {102, std::wstring(300, L'x')}});
    EXPECT_EQ(libraries.Load(L"C:\\b.dll"), nullptr);
    {
        const auto library = libraries.Load(L"C:\\a.dll");
        ASSERT_TRUE(library);
        EXPECT_EQ(libraries.OpenLibraries(), 1);
        EXPECT_EQ(library->String(101), L"eins");
        EXPECT_EQ(library->String(102).size(), 255u);
        EXPECT_EQ(library->String(103), L"");
    }
    EXPECT_EQ(libraries.OpenLibraries(), 0);
    EXPECT_THAT(libraries.Loads(), ElementsAre(L"C:\\b.dll", L"C:\\a.dll"));
    EXPECT_THAT(libraries.Reads(), ElementsAre(101u, 102u, 103u));
}

TEST(AbsentHostServer, CreatesNothing) {
    AbsentHostServer host;
    EXPECT_EQ(errorOf([&] { host.CreateHostApplication(); }), RuntimeError::CannotCreateObject);
    EXPECT_EQ(errorOf([&] { host.CreateRoomFilter(); }), RuntimeError::CannotCreateObject);
    EXPECT_EQ(errorOf([&] { host.CreateAttributeCatalogue(); }), RuntimeError::CannotCreateObject);
}

} // namespace kalvrooms
