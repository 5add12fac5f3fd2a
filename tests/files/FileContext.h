#pragma once
// What files are read and written with: texts, table and the headless system. And a
// folder on the real disk that goes away with the test.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "app/clsText.h"
#include "files/FilePath.h"
#include "files/FileServices.h"
#include "headless/HeadlessPlatform.h"
#include "model/UserLocaleForTest.h"
#include "model/clsFloors.h"
#include "practice/workbook/InProcessSpreadsheets.h"
#include "support/RoomForTest.h"

namespace kalvrooms {

class FileContext final : public RoomTable {
  public:
    practice::spreadsheet::InProcessSpreadsheets Spreadsheets;
    HeadlessPlatform Headless;
    clsText Texts{Headless.libraries, Headless.environment};
    // The argument of every refreshing of the table, in order.
    std::vector<bool> TableUpdates;
    // Stands for a table that cannot be refreshed.
    long FailingUpdate = 0;

    operator FileServices() {
        return {Texts, *this, Headless.desktop, Headless.ansi, Spreadsheets};
    }
    void UpdateTable(bool warn) override {
        TableUpdates.push_back(warn);
        if (FailingUpdate != 0)
            throw RuntimeError(FailingUpdate);
    }
    // The active sheet of a workbook, which is made if need be.
    practice::spreadsheet::Sheet& SheetOf(const std::wstring& file) {
        auto& workbook = Spreadsheets.Files[file];
        if (workbook.sheets.empty())
            workbook.AddSheet();
        return workbook.ActiveSheet();
    }
};

// With letters in its name that are no ASCII.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() /
                FilePath(L"Räume " + std::to_wstring(random()) + std::to_wstring(random()));
        std::filesystem::create_directories(path_);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::wstring Path(const std::wstring& name) const {
        const std::u32string text = path_.u32string();
        // The folder of temporary files and the numbers are ASCII, the umlaut needs no surrogates.
        return std::wstring(text.begin(), text.end()) + L"/" + name;
    }
    bool Has(const std::wstring& name) const {
        return std::filesystem::exists(path_ / FilePath(name));
    }
    void MakeFolder(const std::wstring& name) const {
        std::filesystem::create_directory(path_ / FilePath(name));
    }

    std::wstring Write(const std::wstring& name, const std::string& bytes) const {
        std::ofstream file(path_ / FilePath(name), std::ios::binary | std::ios::trunc);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        file.close();
        if (!file)
            throw std::runtime_error("the test cannot write its file");
        return Path(name);
    }
    std::string Read(const std::wstring& name) const {
        std::ifstream file(path_ / FilePath(name), std::ios::binary);
        if (!file)
            throw std::runtime_error("the test finds no such file");
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

  private:
    std::filesystem::path path_;
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
    TemporaryFolder folder;
    clsFloors floors;
    UserLocaleForTest locale{NumberLocale::German()};
};

class FileTestUnderBothLocales : public UnderBothLocales {
  protected:
    FileContext context;
    TemporaryFolder folder;
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
