#include "ifc/StepText.h"

#include <gtest/gtest.h>

namespace kalvrooms::ifc {
namespace {

TEST(StepText, ReadsEveryWayOfWritingALetter) {
    EXPECT_EQ(DecodeText("plain"), L"plain");
    EXPECT_EQ(DecodeText("don''t \\\\ do"), L"don't \\ do");
    EXPECT_EQ(DecodeText("Fl\\X2\\00E4\\X0\\che"), L"Fläche");
    EXPECT_EQ(DecodeText("\\X2\\00C400D6\\X0\\x"), L"ÄÖx");
    EXPECT_EQ(DecodeText("\\X4\\000000FC\\X0\\"), L"ü");
    EXPECT_EQ(DecodeText("B\\X\\FCro"), L"Büro");
    EXPECT_EQ(DecodeText("B\\S\\|ro"), L"Büro");
    EXPECT_EQ(DecodeText("\\PE\\\\S\\0\\S\\1"), L"\x0410\x0411");
    EXPECT_EQ(DecodeText("\\PA\\\\S\\d"), L"ä");
}

TEST(StepText, ReadsLettersBeyondTheBasicPlane) {
    EXPECT_EQ(DecodeText("\\X4\\0001F600\\X0\\"), std::wstring(L"\U0001F600"));
    EXPECT_EQ(DecodeText("\\X2\\D83DDE00\\X0\\"), std::wstring(L"\U0001F600"));
}

TEST(StepText, ReadsBytesThatDoNotBelongThere) {
    EXPECT_EQ(DecodeText("B\xC3\xBCro"), L"Büro") << "UTF-8";
    EXPECT_EQ(DecodeText("B\xFCro"), L"Büro") << "Latin 1";
}

TEST(StepText, AnEscapeThatIsNoneStays) {
    EXPECT_EQ(DecodeText("C:\\Temp"), L"C:\\Temp");
    EXPECT_EQ(DecodeText("\\X2\\00E"), L"\\X2\\00E");
    EXPECT_EQ(DecodeText("\\X\\G1"), L"\\X\\G1");
    EXPECT_EQ(DecodeText("\\X2\\D83D\\X0\\"), L"") << "half a pair";
}

TEST(StepText, WhatIsWrittenReadsBack) {
    EXPECT_EQ(EncodeText(L"don't \\ do"), "'don''t \\\\ do'");
    EXPECT_EQ(EncodeText(L"Fläche ÄÖ"), "'Fl\\X2\\00E4\\X0\\che \\X2\\00C400D6\\X0\\'");
    EXPECT_EQ(EncodeText(L"\U0001F600ü"), "'\\X4\\0001F600\\X0\\\\X2\\00FC\\X0\\'");
    for (const std::wstring text : {L"", L"Büro 'A' \\X2\\", L"\t", L"a\U0001F600\x20AC\x4E2D-"}) {
        const std::string written = EncodeText(text);
        EXPECT_EQ(DecodeText(std::string_view(written).substr(1, written.size() - 2)), text);
    }
}

TEST(StepText, NumbersHaveADecimalPoint) {
    EXPECT_EQ(EncodeReal(0.0), "0.");
    EXPECT_EQ(EncodeReal(-12.5), "-12.5");
    EXPECT_EQ(EncodeReal(3.0), "3.");
    EXPECT_EQ(EncodeReal(3000000.0), "3000000.");
    EXPECT_EQ(EncodeReal(1e-7), "1.E-07");
    EXPECT_EQ(EncodeReal(1.5e300), "1.5E+300");
}

} // namespace
} // namespace kalvrooms::ifc
