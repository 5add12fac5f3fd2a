#include "ifc/TroubleText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "support/TemporaryFolder.h"

namespace kalvrooms::ifc {
namespace {

TEST(TroubleText, KeepsThePlaceAndTheValue) {
    EXPECT_EQ(InGerman("line 8, #7: a number is expected, not 'x'"),
              "Zeile 8, #7: eine Zahl wird erwartet, hier steht 'x'");
    EXPECT_EQ(InGerman("line 6, #1: a reference to an instance is expected and missing"),
              "Zeile 6, #1: ein Verweis auf eine Instanz wird erwartet und fehlt");
    EXPECT_EQ(InGerman("space #20: its ground has 2 parts; the largest one is taken"),
              "Raum #20: sein Grundriss hat 2 Teile; der größte wird genommen");
    EXPECT_EQ(InGerman("the index of a point is expected"),
              "die Nummer eines Punkts wird erwartet");
}

TEST(TroubleText, KnowsWhateverTheReadersSay) {
    const std::filesystem::path source(QUARTINO_SOURCE_DIR "/src");
    std::vector<std::filesystem::path> files{source / "drawing/DrawingFile.cpp"};
    for (const auto& file : std::filesystem::directory_iterator(source / "ifc"))
        if (file.path().extension() == ".cpp")
            files.push_back(file.path());
    const std::regex said(
        R"re((?:Refuse|refuse|Trouble|StepError|HostError|runtime_error)\(\s*(?:json(?:\[i\])?,\s*)?L?"([^"]+)")re");
    int count = 0;
    for (const std::filesystem::path& file : files) {
        const std::string text = readBytes(file);
        for (std::sregex_iterator found(text.begin(), text.end(), said), end; found != end;
             ++found) {
            const std::string trouble = (*found)[1];
            EXPECT_NE(InGerman(trouble), trouble) << file;
            ++count;
        }
    }
    EXPECT_GT(count, 60);
}

} // namespace
} // namespace kalvrooms::ifc
