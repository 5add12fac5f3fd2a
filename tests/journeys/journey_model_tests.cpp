// A model as the drawing: its rooms go through the list and back into its file.

#include "journeys/JourneyTest.h"

namespace kalvrooms::testing {
namespace {

using ::testing::SizeIs;

// Longer than what a room's text may have on its way into the drawing.
constexpr const char* longName = "'Wohnen, Essen, Kochen und Arbeiten unter einem Dach'";

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

class ModelJourney : public JourneyTest {
  protected:
    ModelJourney() {
        before = readBytes(QUARTINO_SOURCE_DIR "/examples/haus/haus.ifc");
        before.replace(before.find("'Wohnen'"), 8, longName);
        writeBytes(file(L"haus.ifc"), before);
        practiceHost().control().call(L"LoadDrawing", file(L"haus.ifc").wstring());
    }

    // Writes the list into the drawing and closes the report; how many rooms were updated.
    std::wstring exportAll(QuartinoProcess& quartino) const {
        std::wstring updated;
        quartino.command([&] {
            quartino.chooseByKeys(fileMenu, exportLine);
            const HWND report = quartino.dialogWith(ID_REPORT_LBLNUM1);
            updated = quartino.text(report, ID_REPORT_LBLNUM1);
            ui::typeKey(VK_RETURN);
        });
        return updated;
    }
    std::string saved() const {
        practiceHost().control().call(L"SaveDrawing", file(L"neu.ifc").wstring());
        return readBytes(file(L"neu.ifc"));
    }

    std::string before;
};

TEST_F(ModelJourney, OnlyWhatWasChangedDiffersInTheSavedModel) {
    QuartinoProcess quartino(folder);
    quartino.runByKeys(fileMenu, importLine);
    EXPECT_THAT(quartino.column(Name), ElementsAre(L"E.01", L"E.02", L"E.03", L"E.04", L"O.01",
                                                   L"O.02", L"O.03", L"O.04", L"O.05"));
    EXPECT_EQ(quartino.cell(1, Function), L"Küche");
    EXPECT_EQ(quartino.cell(1, Area), number(L"12.25"));
    quartino.picture(quartino.main(), "main-model");
    EXPECT_EQ(exportAll(quartino), L"9");
    EXPECT_EQ(saved(), before);

    quartino.clickCell(1, Name, false, 2);
    const HWND dialog = quartino.dialog(modifyTitle);
    quartino.type(dialog, ID_ROOM_TXTNAME, L"E.02a");
    ui::typeKey(VK_RETURN);
    quartino.waitForReturn(dialog, quartino.main());
    EXPECT_EQ(exportAll(quartino), L"9");
    const std::vector<std::string> was = linesOf(before);
    const std::vector<std::string> is = linesOf(saved());
    ASSERT_THAT(is, SizeIs(was.size()));
    std::string changed;
    for (std::size_t i = 0; i < was.size(); ++i)
        if (was[i] != is[i])
            changed += was[i] + '\n' + is[i] + '\n';
    EXPECT_EQ(linesOf(changed).size(), 2u) << changed;
    EXPECT_NE(changed.find("'E.02a'"), std::string::npos) << changed;
}

} // namespace
} // namespace kalvrooms::testing
