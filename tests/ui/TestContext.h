#pragma once
// What dialogs see of the main window, as plain members with a record of every change, on a
// headless platform and with the real German texts.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "app/clsText.h"
#include "headless/HeadlessPlatform.h"
#include "model/clsFloors.h"
#include "support/UserLocaleForTest.h"
#include "ui/frmGeometry.h"
#include "ui/frmPlace.h"
#include "ui/frmReport.h"
#include "ui/frmRoom.h"

namespace kalvrooms {

class TestContext final : public RoomEditing, public Options {
  public:
    explicit TestContext(HeadlessPlatform& platform)
        : text(platform.libraries, platform.environment), desktop_(platform.desktop) {}

    template <class Dialog>
    void Show() {
        const DialogServices services{desktop_, text, helpFile};
        if constexpr (std::is_same_v<Dialog, frmRoom>)
            frmRoom(services, *this).ShowModal();
        else if constexpr (std::is_same_v<Dialog, frmGeometry>)
            frmGeometry(services, room->Geometry).ShowModal();
        else if constexpr (std::is_same_v<Dialog, frmPlace>)
            frmPlace(services, *this).ShowModal();
        else
            frmReport(services, *this, counts).ShowModal();
    }

    Placement GetPlace() const override { return placement; }
    void SetPlace(const Placement& chosen) override {
        placement = chosen;
        calls.push_back(L"SetPlace");
    }
    bool NoReport() const override { return noReport; }
    void SetWithReport() override {
        noReport = false;
        calls.push_back(L"SetWithReport");
    }
    void SetWithoutReport() override {
        noReport = true;
        calls.push_back(L"SetWithoutReport");
    }
    std::shared_ptr<clsRoom> GetCurrentRoom() const override { return room; }
    void AddCurrentRoomsToListOfFloors(std::int32_t quantity) override {
        calls.push_back(L"AddCurrentRoomsToListOfFloors " + std::to_wstring(quantity));
        floors.AddRooms(*room, quantity);
    }
    void UpdateTable(bool warn) override {
        calls.push_back(warn ? L"UpdateTable True" : L"UpdateTable False");
    }

    clsText text;
    std::wstring helpFile = L"C:\\Hilfe\\quartino.chm";
    std::shared_ptr<clsRoom> room = std::make_shared<clsRoom>();
    clsFloors floors;
    Placement placement;
    ReportCounts counts;
    bool noReport = false;
    // Every change that a dialog asked for, in order.
    std::vector<std::wstring> calls;

  private:
    HeadlessDesktop& desktop_;
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
        context.Show<Dialog>();
    }

    static std::vector<std::wstring> firstOf(const std::vector<std::wstring>& list,
                                             std::size_t count) {
        return {list.begin(),
                list.begin() + static_cast<std::ptrdiff_t>(std::min(count, list.size()))};
    }

    UserLocaleForTest locale_{NumberLocale::German()};
    HeadlessPlatform platform;
    HeadlessDesktop& desktop = platform.desktop;
    TestContext context{platform};
    // The runtime errors that ended an event.
    std::vector<long> errors;

  private:
    std::unique_ptr<Gui::Form> mainForm_ = desktop.CreateForm(L"frmMain");
};

} // namespace kalvrooms
