// The main window with its own code on the real table: what filling it costs.

#include "desktop_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "headless/AbsentServers.h"
#include "headless/HeadlessPlatform.h"
#include "ui/frmMain.h"

namespace kalvrooms::Gui {
namespace {

class FilledTable : public testing::Test {
  protected:
    // Microseconds per room of filling the table anew and painting it, the best of some turns.
    double costPerRoom(std::int32_t rooms) {
        frmMain main(platform_, host_, spreadsheets_);
        main.SetLang(L"");
        main.Show();
        main.AddCurrentRoomsToListOfFloors(rooms);
        double best = 1e9;
        for (int turn = 0; turn < 7; ++turn) {
            const auto start = std::chrono::steady_clock::now();
            main.UpdateTable(false);
            const std::chrono::duration<double, std::micro> spent =
                std::chrono::steady_clock::now() - start;
            best = std::min(best, spent.count() / rooms);
        }
        return best;
    }

    AbsentHostServer host_;
    AbsentSpreadsheetServer spreadsheets_;
    HeadlessPlatform headless_;
    Win32Desktop desktop_;
    Platform platform_{desktop_, headless_.ansi, headless_.registry, headless_.libraries,
                       headless_.environment};
};

TEST_F(FilledTable, ALongListCostsNoMorePerRoomThanAShortOne) {
    const double few = costPerRoom(1000);
    const double many = costPerRoom(10000);
    std::printf("filling the table: %.2f us per room of 1000, %.2f us of 10000\n", few, many);
    // A tenth for the clock.
    EXPECT_LT(many, few * 1.1);
}

} // namespace
} // namespace kalvrooms::Gui
