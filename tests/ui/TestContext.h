#pragma once
// What dialogs see of the main window, as plain members with a record of every change, on a
// headless platform and with the real German texts.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/ProgramContext.h"
#include "app/clsText.h"
#include "files/SpreadsheetApplication.h"
#include "headless/HeadlessPlatform.h"
#include "model/UserLocaleForTest.h"
#include "model/clsFloors.h"

namespace kalvrooms {

// Dialogs do not ask for spreadsheets.
class NoSpreadsheets final : public SpreadsheetServer {
  public:
    std::unique_ptr<SpreadsheetApplication> AttachRunning() override { return nullptr; }
    std::unique_ptr<SpreadsheetApplication> CreateInstance() override {
        throw RuntimeError(RuntimeError::CannotCreateObject);
    }
};

class TestContext final : public ProgramContext {
  public:
    explicit TestContext(HeadlessPlatform& platform)
        : platform_(platform), text(platform.libraries, platform.environment) {}

    void SetRegKey(const std::wstring& path) override { regKey = path; }
    void SetLang(const std::wstring& code) override { text.SetLanguage(code); }
    std::wstring GetText(std::int32_t number) const override { return text.GetText(number); }
    std::wstring GetTextWithoutDot(std::int32_t number) const override {
        return text.GetTextWithoutDot(number);
    }
    void GetReport(std::int32_t& old, std::int32_t& fresh, std::int32_t& updatedRooms,
                   std::int32_t& newRooms, std::int32_t& setDownRooms,
                   bool& withoutReport) const override {
        old = colorOld;
        fresh = colorNew;
        updatedRooms = updated;
        newRooms = newAtPosition;
        setDownRooms = setDown;
        withoutReport = noReport;
    }
    void SetWithoutReport() override {
        noReport = true;
        calls.push_back(L"SetWithoutReport");
    }
    void SetWithReport() override {
        noReport = false;
        calls.push_back(L"SetWithReport");
    }
    void GetPlace(double& x, double& y, bool& asBlock, std::int32_t& old, std::int32_t& fresh,
                  bool& withoutReport) const override {
        x = distanceX;
        y = distanceY;
        asBlock = block;
        old = colorOld;
        fresh = colorNew;
        withoutReport = noReport;
    }
    void SetPlace(double x, double y, bool asBlock, std::int32_t old, std::int32_t fresh) override {
        distanceX = x;
        distanceY = y;
        block = asBlock;
        colorOld = old;
        colorNew = fresh;
        calls.push_back(L"SetPlace");
    }
    void WriteListToFile() override { calls.push_back(L"WriteListToFile"); }
    void ReadListFromFile() override { calls.push_back(L"ReadListFromFile"); }
    std::shared_ptr<clsRoom> GetCurrentRoom() const override { return room; }
    void AddCurrentRoomsToListOfFloors(std::int32_t quantity) override {
        calls.push_back(L"AddCurrentRoomsToListOfFloors " + std::to_wstring(quantity));
        floors.AddRooms(*room, quantity);
    }
    void UpdateTable(bool warn) override {
        calls.push_back(warn ? L"UpdateTable True" : L"UpdateTable False");
    }
    void EnableInput(bool) override {}
    std::wstring HelpFile() const override { return helpFile; }
    void HelpFile(const std::wstring& path) override { helpFile = path; }
    Platform& System() const override { return platform_.Bundle(); }

  private:
    HeadlessPlatform& platform_;

  public:
    clsText text;
    std::wstring regKey;
    std::wstring helpFile = L"C:\\Hilfe\\quartino.chm";
    std::shared_ptr<clsRoom> room = std::make_shared<clsRoom>();
    clsFloors floors;
    double distanceX = 1.0;
    double distanceY = 1.0;
    bool block = true;
    std::int32_t colorOld = 0;
    std::int32_t colorNew = 255;
    std::int32_t updated = 0;
    std::int32_t newAtPosition = 0;
    std::int32_t setDown = 0;
    bool noReport = false;
    // Every change that a dialog asked for, in order.
    std::vector<std::wstring> calls;
};

// A dialog over a main window that is shown, with a decimal comma unless a test says otherwise.
class DialogTest : public testing::Test {
  protected:
    DialogTest() {
        desktop.RuntimeErrorHandler = [this](const RuntimeError& error) {
            errors.push_back(error.number());
        };
        mainForm_->Show();
    }

    void TearDown() override {
        EXPECT_EQ(desktop.ProgrammingErrors(), std::vector<std::wstring>());
        EXPECT_EQ(desktop.ForcedUnloads(), std::vector<std::wstring>());
        EXPECT_EQ(desktop.UnusedScripts(), 0u);
    }

    void useDecimalPoint() {
        HandInUserLocale([] { return NumberLocale::Point(); });
    }

    // Shows a dialog while a script acts as its user.
    template <class Dialog>
    void show(const std::wstring& name, std::function<void(HeadlessForm&)> user) {
        desktop.OnModal(name, std::move(user));
        Dialog(context).ShowModal();
    }

    static std::vector<std::wstring> firstOf(const std::vector<std::wstring>& list,
                                             std::size_t count) {
        return {list.begin(),
                list.begin() + static_cast<std::ptrdiff_t>(std::min(count, list.size()))};
    }

    UserLocaleForTest locale_{NumberLocale::German()};
    NoSpreadsheets spreadsheets;
    HeadlessPlatform platform{spreadsheets};
    HeadlessDesktop& desktop = platform.desktop;
    TestContext context{platform};
    // The runtime errors that ended an event.
    std::vector<long> errors;

  private:
    std::unique_ptr<Gui::Form> mainForm_ = desktop.CreateForm(L"frmMain");
};

} // namespace kalvrooms
