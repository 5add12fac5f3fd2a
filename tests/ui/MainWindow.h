#pragma once
// The whole program on a headless desktop with a host in memory: what a user does with the main
// window, in milliseconds.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include "headless/AbsentServers.h"
#include "headless/HeadlessPlatform.h"
#include "support/TemporaryFolder.h"
#include "support/TestHost.h"
#include "ui/frmMain.h"

namespace kalvrooms::testing {

class MainWindow : public ::testing::Test {
  protected:
    MainWindow() {
        platform_.desktop.Design(L"frmMain", [](HeadlessForm& form) {
            form.Width(11000);
            form.Height(7500);
        });
    }
    void TearDown() override {
        main_.reset();
        EXPECT_EQ(desktop().UnusedScripts(), 0u);
        EXPECT_THAT(desktop().ProgrammingErrors(), ::testing::IsEmpty());
        EXPECT_THAT(desktop().ForcedUnloads(), ::testing::IsEmpty());
    }

    void show() {
        main_ = std::make_unique<frmMain>(platform_.Bundle(), host_, spreadsheets_);
        main_->SetLang(L"");
        main_->SetRegKey(L"Software\\Host");
        main_->HelpFile(L"C:\\q.chm");
        main_->Show();
    }
    HeadlessForm& form() { return desktop().FormNamed(L"frmMain"); }
    HeadlessGrid& table() { return form().Table(L"grdRooms"); }
    HeadlessDesktop& desktop() { return platform_.desktop; }
    std::wstring cell(int row, int column) { return table().Cells().Text(row, column); }
    // Adds rooms through the dialog, as a user does.
    void addRooms(const std::wstring& name, const std::wstring& quantity,
                  const std::wstring& storey = L"EG") {
        desktop().OnModal(L"frmRoom", [=](HeadlessForm& dialog) {
            dialog.Field(L"txtStoryCode").Text(storey);
            dialog.Field(L"txtName").Text(name);
            dialog.Field(L"txtQuantity").Text(quantity);
            dialog.Click(L"cmdOk");
        });
        form().ChooseMenu(L"mnuAddRoom");
    }
    std::wstring file(const std::string& name) const { return (folder_ / name).wstring(); }
    std::wstring writeList(const std::string& name, int rooms) {
        std::string list = "header \t header\r\n";
        for (int i = 1; i <= rooms; ++i)
            list += "R" + std::to_string(i) + " \t F \t 16 \t EG\r\n";
        writeBytes(folder_ / name, list);
        return file(name);
    }
    std::string contents(const std::string& name) const { return readBytes(folder_ / name); }
    // Whether the program asks before the list goes. Without an answer it goes unsaved.
    bool newAsks() {
        const std::size_t before = desktop().Messages().size();
        form().ChooseMenu(L"mnuNew");
        return desktop().Messages().size() > before;
    }
    std::vector<std::wstring> prompts() {
        std::vector<std::wstring> texts;
        for (const Gui::Message& message : desktop().Messages())
            texts.push_back(message.Prompt);
        return texts;
    }

    const TemporaryFolder folder_;
    AbsentSpreadsheetServer spreadsheets_;
    TestHost host_;
    HeadlessPlatform platform_;
    std::unique_ptr<frmMain> main_;
};

inline const std::wstring savePrompt = L" Sollen Ihre Änderungen gespeichert werden?";
inline const std::wstring limitPrompt =
    L" Ihre Raumliste besteht aus mehr als 150 Räumen. Bitte beachten Sie, mit dem Quatrinoen\r "
    L"können maximal 150 Räume bearbeitet werden.";

} // namespace kalvrooms::testing
