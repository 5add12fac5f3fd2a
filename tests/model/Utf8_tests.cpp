#include "model/Utf8.h"

#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace kalvrooms {
namespace {

TEST(Utf8, HasOneToFourBytesForACharacter) {
    const std::pair<std::wstring, std::string> pairs[] = {{L"", ""},
                                                          {L"az\x7F", "az\x7F"},
                                                          {L"\x80", "\xC2\x80"},
                                                          {L"\u07FF", "\xDF\xBF"},
                                                          {L"\u0800", "\xE0\xA0\x80"},
                                                          {L"\uD7FF", "\xED\x9F\xBF"},
                                                          {L"\uE000", "\xEE\x80\x80"},
                                                          {L"\uFFFF", "\xEF\xBF\xBF"},
                                                          {L"\U00010000", "\xF0\x90\x80\x80"},
                                                          {L"\U0001F600", "\xF0\x9F\x98\x80"},
                                                          {L"\U0010FFFF", "\xF4\x8F\xBF\xBF"}};
    for (const auto& [text, bytes] : pairs) {
        EXPECT_EQ(ToUtf8(text), bytes);
        EXPECT_EQ(FromUtf8(bytes), text) << bytes;
        EXPECT_EQ(FromUtf8(bytes + "ü"), text + L"ü") << bytes;
    }
}

TEST(Utf8, EachByteThatBelongsToNoCharacterIsReplaced) {
    const std::pair<std::string, std::wstring> pairs[] = {{"\x80", L"?"},
                                                          {"\xC1\xBF", L"??"},
                                                          {"a\xC3", L"a?"},
                                                          {"\xC3z", L"?z"},
                                                          {"\xE2\x82z", L"??z"},
                                                          {"\xE0\x9F\xBF", L"???"},
                                                          {"\xED\xA0\x80", L"???"},
                                                          {"\xED\xBF\xBF", L"???"},
                                                          {"\xF0\x8F\xBF\xBF", L"????"},
                                                          {"\xF4\x90\x80\x80", L"????"},
                                                          {"\xF5\xFF", L"??"}};
    for (const auto& [bytes, marks] : pairs) {
        std::wstring text = marks;
        for (wchar_t& c : text)
            if (c == L'?')
                c = L'\uFFFD';
        EXPECT_EQ(FromUtf8(bytes), text) << bytes.size();
    }
}

TEST(Utf8, HalfAPairIsReplaced) {
    const std::wstring first(1, static_cast<wchar_t>(0xD800));
    const std::wstring second(1, static_cast<wchar_t>(0xDFFF));
    EXPECT_EQ(ToUtf8(first), "\xEF\xBF\xBD");
    EXPECT_EQ(ToUtf8(first + L"z"), "\xEF\xBF\xBDz");
    EXPECT_EQ(ToUtf8(second + first), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

} // namespace
} // namespace kalvrooms
