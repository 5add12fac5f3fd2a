// Open workbooks, their files and the questions to the user, with a disk in memory.

#include "practice/workbook/Application.h"

#include "practice/server/CallLog.h"
#include "practice/workbook/Settings.h"
#include "practice/workbook/SheetError.h"
#include "practice/workbook/WorkbookFile.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <string>

namespace kalvrooms::practice::spreadsheet {
namespace {

struct MemoryDisk {
    std::map<std::wstring, std::string> files;
    std::set<std::wstring> writeProtected;
    int open = 0;
};

class MemoryFile : public OpenFile {
  public:
    MemoryFile(MemoryDisk& disk, std::wstring name) : disk_(disk), name_(std::move(name)) {
        ++disk_.open;
    }
    ~MemoryFile() override { --disk_.open; }
    bool ReadOnly() const override { return disk_.writeProtected.contains(name_); }
    std::string Read() override { return disk_.files.at(name_); }
    void Write(std::string_view bytes) override { disk_.files[name_] = std::string(bytes); }

  private:
    MemoryDisk& disk_;
    std::wstring name_;
};

class MemoryFiles : public FileStore {
  public:
    MemoryDisk disk;

    std::wstring FullName(const std::wstring& name) const override {
        return name.starts_with(L"C:\\") ? name : L"C:\\" + name;
    }
    bool Exists(const std::wstring& name) const override { return disk.files.contains(name); }
    std::unique_ptr<OpenFile> Open(const std::wstring& name) override {
        if (!Exists(name))
            throw SheetError(L"no such file");
        return std::make_unique<MemoryFile>(disk, name);
    }
    std::unique_ptr<OpenFile> Create(const std::wstring& name) override {
        if (disk.writeProtected.contains(name))
            throw SheetError(L"no writing");
        disk.files[name].clear();
        return std::make_unique<MemoryFile>(disk, name);
    }
};

class SheetApplication : public testing::Test {
  protected:
    SheetApplication() {
        Workbook workbook = Workbook::New();
        workbook.sheets[0]->Set(1, 1, {1.0, L"", GeneralFormat});
        files.disk.files[L"C:\\old.xls"] = WriteWorkbook(workbook);
        files.disk.files[L"C:\\text.xls"] = "a\tb\r\n";
    }
    static void change(const WorkbookPointer& workbook) {
        workbook->book.sheets[0]->Put({1, 1, 1, 1}, 2.0, 2024);
        workbook->saved = false;
    }
    Value stored(const std::wstring& name) const {
        return ReadWorkbook(files.disk.files.at(name)).sheets[0]->At(1, 1).value;
    }

    MemoryFiles files;
    Application application{files};
};

TEST_F(SheetApplication, HandsBackAWorkbookThatIsOpen) {
    const auto first = application.Open(L"old.xls");
    EXPECT_EQ(application.Open(L"C:\\OLD.XLS"), first);
    EXPECT_EQ(application.workbooks().size(), 1u);
    EXPECT_EQ(files.disk.open, 1);
    EXPECT_EQ(first->name, L"old.xls");
    EXPECT_EQ(first->fullName, L"C:\\old.xls");
    EXPECT_TRUE(first->saved);
}

TEST_F(SheetApplication, OpensNothingButWorkbooks) {
    EXPECT_THROW(application.Open(L"none.xls"), SheetError);
    EXPECT_THROW(application.Open(L"text.xls"), SheetError);
    EXPECT_TRUE(application.workbooks().empty());
    EXPECT_EQ(files.disk.open, 0);
}

TEST_F(SheetApplication, SavesInPlaceAndUnderANewName) {
    const auto old = application.Open(L"old.xls");
    change(old);
    application.Save(*old);
    EXPECT_TRUE(old->saved);
    EXPECT_EQ(stored(L"C:\\old.xls"), Value(2.0));
    application.SaveAs(*old, L"new.xls", 56);
    EXPECT_EQ(old->name, L"new.xls");
    EXPECT_EQ(stored(L"C:\\new.xls"), Value(2.0));
    application.Save(*application.Add());
    EXPECT_TRUE(files.Exists(L"C:\\Book1.xls"));
}

TEST_F(SheetApplication, TakesItsOwnFormAlone) {
    const auto added = application.Add();
    EXPECT_THROW(application.SaveAs(*added, L"new.xls", 51), SheetError);
    EXPECT_FALSE(files.Exists(L"C:\\new.xls"));
    application.SaveAs(*added, L"new.xls", -4143);
    EXPECT_TRUE(files.Exists(L"C:\\new.xls"));
}

TEST_F(SheetApplication, AProtectedWorkbookIsReadOnly) {
    files.disk.writeProtected.insert(L"C:\\old.xls");
    const auto old = application.Open(L"old.xls");
    EXPECT_TRUE(old->ReadOnly());
    change(old);
    EXPECT_THROW(application.Save(*old), SheetError);
    application.displayAlerts = false;
    EXPECT_THROW(application.SaveAs(*old, L"old.xls", 56), SheetError);
    EXPECT_EQ(stored(L"C:\\old.xls"), Value(1.0));
    EXPECT_FALSE(old->saved);
}

TEST_F(SheetApplication, WithoutAlertsItAsksNothingAndDropsChanges) {
    application.displayAlerts = false;
    change(application.Open(L"old.xls"));
    application.SaveAs(*application.Add(), L"text.xls", 56);
    EXPECT_TRUE(application.CloseAll());
    EXPECT_TRUE(application.workbooks().empty());
    EXPECT_EQ(files.disk.open, 0);
    EXPECT_EQ(stored(L"C:\\old.xls"), Value(1.0));
    EXPECT_EQ(stored(L"C:\\text.xls"), Value());
}

TEST_F(SheetApplication, AsksBeforeItDropsChanges) {
    const auto old = application.Open(L"old.xls");
    change(old);
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
    EXPECT_EQ(stored(L"C:\\old.xls"), Value(2.0));
}

TEST_F(SheetApplication, AsksBeforeItReplacesAFile) {
    const auto added = application.Add();
    EXPECT_THROW(application.SaveAs(*added, L"old.xls", 56), DialogOpen);
    application.AnswerDialog(Answer::No);
    EXPECT_THROW(application.SaveAs(*added, L"old.xls", 56), SheetError);
    EXPECT_EQ(stored(L"C:\\old.xls"), Value(1.0));
    EXPECT_THROW(application.SaveAs(*added, L"old.xls", 56), DialogOpen);
    application.AnswerDialog(Answer::Yes);
    application.SaveAs(*added, L"old.xls", 56);
    EXPECT_EQ(stored(L"C:\\old.xls"), Value());
}

TEST_F(SheetApplication, AnInstructionAboutChangesSparesTheQuestion) {
    auto old = application.Open(L"old.xls");
    change(old);
    EXPECT_TRUE(application.Close(*old, false));
    EXPECT_EQ(stored(L"C:\\old.xls"), Value(1.0));
    old = application.Open(L"old.xls");
    change(old);
    EXPECT_TRUE(application.Close(*old, true));
    EXPECT_EQ(stored(L"C:\\old.xls"), Value(2.0));
}

TEST_F(SheetApplication, HoldsOneWorkbookOfAName) {
    application.Open(L"old.xls");
    files.disk.files[L"C:\\other\\old.xls"] = files.disk.files[L"C:\\old.xls"];
    EXPECT_THROW(application.Open(L"C:\\other\\old.xls"), SheetError);
    EXPECT_THROW(application.SaveAs(*application.Add(), L"C:\\other\\old.xls", 56), SheetError);
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
    EXPECT_THROW(Arm(calls, L"1"), HostError);
    EXPECT_THROW(Arm(calls, L"1 explode"), HostError);
    EXPECT_THROW(Arm(calls, L"0 fail"), HostError);
    EXPECT_THROW(Arm(calls, L"1 stall long"), HostError);
}

} // namespace
} // namespace kalvrooms::practice::spreadsheet
