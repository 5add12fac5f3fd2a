#pragma once
// A base of tests that go the program's own way to workbooks: file layer, automation adapter,
// application in a process of its own.

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "files/clsFileSytem.h"
#include "model/NumberText.h"
#include "model/RuntimeError.h"
#include "model/clsFloors.h"
#include "practice/workbook/WorkbookFile.h"
#include "support/FileLayer.h"
#include "support/RoomForTest.h"
#include "support/TemporaryFolder.h"
#include "win32/ComSpreadsheet.h"
#include "win32/PracticeSpreadsheetProcess.h"
#include "win32/Win32AnsiCodec.h"
#include "win32/Win32Locale.h"

namespace kalvrooms::testing {

// The real codec and the real automation.
class SpreadsheetContext final : public FileLayer {
  public:
    explicit SpreadsheetContext(std::shared_ptr<ComSession> knownNames)
        : session(std::move(knownNames)), spreadsheets_(MakeComSpreadsheetServer(session)) {}
    explicit SpreadsheetContext(DWORD patience)
        : SpreadsheetContext(std::make_shared<ComSession>(patience)) {}

    std::shared_ptr<ComSession> session;

    operator FileServices() { return {texts, table, platform.desktop, ansi_, *spreadsheets_}; }

  private:
    std::unique_ptr<SpreadsheetServer> spreadsheets_;
    Win32AnsiCodec ansi_;
};

class SpreadsheetTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
        HandInUserLocale(Win32UserLocale);
        forgetWhatSpreadsheetsWereTold();
        registerSpreadsheets(true);
    }
    static void TearDownTestSuite() {
        registerSpreadsheets(false);
        HandInUserLocale({});
        CoUninitialize();
    }

    explicit SpreadsheetTest(DWORD patience = 2000) : context(patience) {}
    ~SpreadsheetTest() override {
        forgetWhatSpreadsheetsWereTold();
        endSpreadsheetProcesses();
    }

    std::filesystem::path path(const std::wstring& name) const { return folder_ / name; }
    std::wstring name(const std::wstring& fileName) const { return path(fileName).wstring(); }
    std::string bytes(const std::wstring& fileName) const { return readBytes(path(fileName)); }
    void store(const std::wstring& fileName, const std::string& content) const {
        writeBytes(path(fileName), content);
    }
    void store(const std::wstring& fileName, const sheets::Workbook& workbook) const {
        store(fileName, sheets::WriteWorkbook(workbook));
    }
    sheets::Workbook stored(const std::wstring& fileName) const {
        return sheets::ReadWorkbook(bytes(fileName));
    }
    // The sheet that a reading takes.
    std::shared_ptr<sheets::Sheet> storedSheet(const std::wstring& fileName) const {
        const sheets::Workbook workbook = stored(fileName);
        return workbook.sheets[workbook.active];
    }

    void write(const std::wstring& fileName, const clsFloors& floors) {
        startAhead(fileName);
        clsFileSytem(context).WriteListToFile(name(fileName), floors);
    }
    void read(const std::wstring& fileName, clsFloors& floors) {
        startAhead(fileName);
        clsFileSytem(context).ReadListFromFile(name(fileName), floors);
    }
    std::vector<std::wstring> readContents(const std::wstring& fileName) {
        clsFloors floors;
        read(fileName, floors);
        return contentsOf(floors);
    }

    // What has to hold after every operation, whatever became of it.
    void expectQuietEnd() {
        EXPECT_TRUE(spreadsheetProcessesEnd()) << spreadsheetProcesses().size() << " left";
        EXPECT_EQ(context.platform.desktop.MousePointer(), Gui::DefaultPointer);
    }
    void expectNoMessage() { EXPECT_TRUE(context.platform.desktop.Messages().empty()); }

    SpreadsheetContext context;
    // Off, the system starts every instance itself, or finds none.
    bool startsAhead = true;

  private:
    void startAhead(const std::wstring& fileName) const {
        // One that is still on its way out is no user's.
        if (startsAhead && fileName.ends_with(L"xls") && spreadsheetProcessesEnd(300))
            offerSpreadsheet();
    }

    // With letters in its name that are no ASCII.
    const TemporaryFolder folder_{L"R\u00E4ume "};
};

// Rooms of all kinds on several storeys.
inline clsFloors programme(int rooms) {
    clsFloors floors;
    for (int i = 1; i <= rooms; ++i) {
        RoomForTest room;
        room.Name = L"R" + std::to_wstring(i);
        room.Function = i % 7 == 0 ? L"" : L"Gruppenr\u00E4ume";
        room.Area = 10.0 + i / 7.0;
        room.Story = std::to_wstring(i % 5) + L".OG";
        room.RoomID = i % 3 == 0 ? std::to_wstring(i) + L"-K" + std::to_wstring(i % 4) : L"";
        if (i % 4 == 1) {
            room.Type = CalculationByFile;
            room.Value = L"C:\\Projekte\\Schule\\" + std::to_wstring(i) + L".txt";
        } else if (i % 4 == 2) {
            room.Type = CalculationByDx;
            room.Value = L"4";
        }
        room.AddTo(floors);
    }
    return floors;
}

} // namespace kalvrooms::testing
