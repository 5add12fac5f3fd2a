// How long the program takes to show its window, beside a program that has nothing but a window.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "journeys/ProgramFolder.h"

namespace kalvrooms::testing {
namespace {

// Milliseconds from starting the program to its window being visible; closes it again.
double untilShown(const std::wstring& program, const wchar_t* windowClass) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    driver::Process process(L"\"" + program + L"\"");
    HWND window = nullptr;
    driver::waitFor("a window", [&] {
        window = driver::windowOfClass(process.id(), windowClass);
        return window && IsWindowVisible(window);
    });
    const double time = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(process.waitForEnd(), 0u);
    return time;
}

TEST(ColdStart, TheMainWindowStandsHardlyLaterThanAnEmptyOne) {
    practiceHost().clearFaults();
    const ProgramFolder folder;
    folder.writeHandOver(L"Software\\QuartinoTest");
    const SettingsKey settings(L"Software\\QuartinoTest");
    double quartino = 1e9;
    double empty = 1e9;
    for (int turn = 0; turn < 5; ++turn) {
        quartino = std::min(
            quartino, untilShown((folder.path() / L"Quartino.exe").wstring(), L"QuartinoMain"));
        empty = std::min(empty,
                         untilShown((binFolder() / L"EmptyWindow.exe").wstring(), L"EmptyWindow"));
    }
    std::printf("from the start to the window: %.0f ms, an empty one %.0f ms\n", quartino, empty);
    // Finding the host and the libraries for it are what is left.
    EXPECT_LT(quartino - empty, 500);
}

} // namespace
} // namespace kalvrooms::testing
