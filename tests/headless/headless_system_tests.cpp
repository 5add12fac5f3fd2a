#include "headless/HeadlessSystem.h"

#include <gtest/gtest.h>

namespace kalvrooms {

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

} // namespace kalvrooms
