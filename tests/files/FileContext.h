#pragma once
// What files are read and written with: texts, table and the headless system. And a
// folder on the real disk that goes away with the test.

#include <filesystem>
#include <stdexcept>
#include <string>

#include "files/FilePath.h"
#include "model/clsFloors.h"
#include "practice/workbook/InProcessSpreadsheets.h"
#include "support/FileLayer.h"
#include "support/RoomForTest.h"
#include "support/TemporaryFolder.h"
#include "support/UserLocaleForTest.h"

namespace kalvrooms {

struct FileContext final : FileLayer {
    practice::spreadsheet::InProcessSpreadsheets Spreadsheets;

    operator FileServices() {
        return {texts, table, platform.desktop, platform.ansi, Spreadsheets};
    }
    // The active sheet of a workbook, which is made if need be.
    practice::spreadsheet::Sheet& SheetOf(const std::wstring& file) {
        auto& workbook = Spreadsheets.Files[file];
        if (workbook.sheets.empty())
            workbook.AddSheet();
        return workbook.ActiveSheet();
    }
};

// With letters in its name that are no ASCII, and names as the program keeps them.
class ListFolder {
  public:
    std::wstring Path(const std::wstring& name) const {
        return FileName(folder_.path()) + L"/" + name;
    }
    bool Has(const std::wstring& name) const {
        return std::filesystem::exists(FilePath(Path(name)));
    }
    void MakeFolder(const std::wstring& name) const {
        std::filesystem::create_directory(FilePath(Path(name)));
    }
    std::wstring Write(const std::wstring& name, const std::string& bytes) const {
        writeBytes(FilePath(Path(name)), bytes);
        return Path(name);
    }
    std::string Read(const std::wstring& name) const {
        if (!Has(name))
            throw std::runtime_error("the test finds no such file");
        return readBytes(FilePath(Path(name)));
    }

  private:
    TemporaryFolder folder_{L"Räume "};
};

// A room with something in every column of a list.
inline void expectEveryColumn(const clsRoom& room) {
    EXPECT_EQ(room.Name(), L"Büro 1");
    EXPECT_EQ(room.FunctionName(), L"Arbeiten");
    EXPECT_EQ(room.Geometry->Area(), 50.25);
    EXPECT_EQ(room.StoryCode(), L"EG");
    EXPECT_EQ(room.Enclosure(), L"a");
    EXPECT_EQ(room.Occupancy(), L"HNF 2");
    EXPECT_EQ(room.AreaType(), L"N");
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByDx);
    EXPECT_EQ(room.Geometry->CalculationValue(), L"10");
    EXPECT_EQ(room.ComponentID(), 12);
    EXPECT_EQ(room.FileID(), L"K3");
}

// A base of tests on one folder, one context and one list.
class FileTest : public testing::Test {
  protected:
    FileContext context;
    ListFolder folder;
    clsFloors floors;
    UserLocaleForTest locale{NumberLocale::German()};
};

class FileTestUnderBothLocales : public UnderBothLocales {
  protected:
    FileContext context;
    ListFolder folder;
    clsFloors floors;

    // A number as the user of this locale writes it.
    std::wstring local(std::wstring point) const {
        for (wchar_t& c : point)
            if (c == L'.')
                c = GetParam().DecimalMark.front();
        return point;
    }
    std::string localBytes(std::string point) const {
        for (char& c : point)
            if (c == '.')
                c = static_cast<char>(GetParam().DecimalMark.front());
        return point;
    }
};

} // namespace kalvrooms
