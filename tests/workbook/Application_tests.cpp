// Open workbooks, their files and the questions to the user; and what a test may tell beforehand.

#include "practice/workbook/InProcessSpreadsheets.h"
#include "practice/workbook/Settings.h"
#include "practice/workbook/SheetError.h"

#include <gtest/gtest.h>

#include <string>

namespace kalvrooms::practice::spreadsheet {
namespace {

constexpr int exchangeForm = 56;
constexpr int ownForm = -4143;

class SheetApplication : public testing::Test {
  protected:
    SheetApplication() {
        server.Files[L"old.xls"] = Workbook::New();
        change(server.Files[L"old.xls"], 1.0);
    }
    static void change(const Workbook& workbook, double value) {
        workbook.sheets[0]->Fill({1, 1, 1, 1}, value);
    }
    WorkbookPointer changed(const std::wstring& name) {
        const WorkbookPointer workbook = application.Open(name);
        change(workbook->book, 2.0);
        workbook->saved = false;
        return workbook;
    }
    CellValue stored(const std::wstring& name) const {
        return server.Files.at(name).sheets[0]->At(1, 1).value;
    }

    InProcessSpreadsheets server;
    Application& application = server.StartByUser()->application;
};

TEST_F(SheetApplication, HandsBackAWorkbookThatIsOpen) {
    const auto first = application.Open(L"old.xls");
    EXPECT_EQ(application.Open(L"OLD.XLS"), first);
    EXPECT_EQ(application.workbooks().size(), 1u);
    server.Files[L"C:\\other\\old.xls"] = Workbook::New();
    EXPECT_THROW(application.Open(L"C:\\other\\old.xls"), SheetError);
    EXPECT_THROW(application.Open(L"none.xls"), SheetError);
}

TEST_F(SheetApplication, SavesInPlaceAndUnderANewName) {
    const auto old = changed(L"old.xls");
    EXPECT_EQ(stored(L"old.xls"), CellValue(1.0));
    application.Save(*old);
    EXPECT_TRUE(old->saved);
    EXPECT_EQ(stored(L"old.xls"), CellValue(2.0));
    application.SaveAs(*old, L"C:\\new.xls", exchangeForm);
    EXPECT_EQ(old->name, L"new.xls");
    EXPECT_EQ(stored(L"C:\\new.xls"), CellValue(2.0));
    EXPECT_THROW(application.Save(*application.Add()), SheetError);
}

TEST_F(SheetApplication, TakesTheFormsOfItsVersionAlone) {
    const auto added = application.Add();
    EXPECT_THROW(application.SaveAs(*added, L"new.xls", 51), SheetError);
    application.version = 11;
    EXPECT_THROW(application.SaveAs(*added, L"new.xls", exchangeForm), SheetError);
    EXPECT_FALSE(server.Files.contains(L"new.xls"));
    application.SaveAs(*added, L"new.xls", ownForm);
    EXPECT_TRUE(server.Files.contains(L"new.xls"));
}

TEST_F(SheetApplication, AProtectedWorkbookIsReadOnly) {
    server.ReadOnlyFiles.insert(L"old.xls");
    application.displayAlerts = false;
    const auto old = changed(L"old.xls");
    EXPECT_THROW(application.Save(*old), SheetError);
    EXPECT_THROW(application.SaveAs(*old, L"old.xls", exchangeForm), SheetError);
    EXPECT_EQ(stored(L"old.xls"), CellValue(1.0));
    EXPECT_FALSE(old->saved);
}

TEST_F(SheetApplication, WithoutAlertsItAsksNothingAndDropsChanges) {
    application.displayAlerts = false;
    server.Files[L"other.xls"] = server.Files[L"old.xls"].Copy();
    changed(L"old.xls");
    application.SaveAs(*application.Add(), L"other.xls", exchangeForm);
    EXPECT_TRUE(application.CloseAll());
    EXPECT_TRUE(application.workbooks().empty());
    EXPECT_EQ(stored(L"old.xls"), CellValue(1.0));
    EXPECT_EQ(stored(L"other.xls"), CellValue());
}

TEST_F(SheetApplication, AsksBeforeItDropsChanges) {
    const auto old = changed(L"old.xls");
    EXPECT_THROW(application.CloseAll(), DialogOpen);
    EXPECT_FALSE(application.dialog().empty());
    application.AnswerDialog(Answer::Cancel);
    EXPECT_TRUE(application.dialog().empty());
    EXPECT_FALSE(application.CloseAll());
    EXPECT_TRUE(old->isOpen);

    EXPECT_THROW(application.CloseAll(), DialogOpen);
    application.AnswerDialog(Answer::Yes);
    EXPECT_TRUE(application.CloseAll());
    EXPECT_FALSE(old->isOpen);
    EXPECT_EQ(stored(L"old.xls"), CellValue(2.0));
}

TEST_F(SheetApplication, AsksBeforeItReplacesAFile) {
    const auto added = application.Add();
    const auto save = [&] { application.SaveAs(*added, L"old.xls", exchangeForm); };
    EXPECT_THROW(save(), DialogOpen);
    application.AnswerDialog(Answer::No);
    EXPECT_THROW(save(), SheetError);
    EXPECT_EQ(stored(L"old.xls"), CellValue(1.0));
    EXPECT_THROW(save(), DialogOpen);
    application.AnswerDialog(Answer::Yes);
    save();
    EXPECT_EQ(stored(L"old.xls"), CellValue());
}

TEST(Settings, ArmTheFaultsOfCallsAndMembers) {
    CallLog calls;
    Arm(calls, L"2 later; worksheet.SaveAs fail no room ;; 4 exit");
    EXPECT_FALSE(calls.Enter(L"range", L"Value"));
    EXPECT_EQ(calls.Enter(L"range", L"Value")->mode, FaultMode::Later);
    const auto failing = calls.Enter(L"worksheet", L"SaveAs");
    ASSERT_TRUE(failing);
    EXPECT_EQ(failing->mode, FaultMode::Fail);
    EXPECT_EQ(failing->description, L"no room ");
    EXPECT_EQ(calls.Enter(L"range", L"Value")->mode, FaultMode::Exit);
    EXPECT_FALSE(calls.Enter(L"range", L"Value"));
}

TEST(Settings, RefuseFaultsThatThereAreNot) {
    CallLog calls;
    for (const auto* faults : {L"1", L"1 explode", L"0 fail", L"1 stall long"})
        EXPECT_THROW(Arm(calls, faults), HostError);
}

} // namespace
} // namespace kalvrooms::practice::spreadsheet
