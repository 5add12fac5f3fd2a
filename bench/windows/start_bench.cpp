// From the start of the program to its window, beside a program that has nothing but a window.

#include <windows.h>

#include <objbase.h>

#include <algorithm>

#include "bench/windows/Figure.h"
#include "practice/PracticeHostProcess.h"
#include "support/Drawings.h"

namespace {

using namespace kalvrooms;

// Closes the program again.
double untilShown(const wchar_t* program, const wchar_t* windowClass) {
    const std::wstring line = L"\"" + (driver::binFolder() / program).wstring() + L"\"";
    std::unique_ptr<driver::Process> process;
    HWND window = nullptr;
    const double time = bench::milliseconds([&] {
        process = std::make_unique<driver::Process>(line);
        window = driver::waitForWindow("a window", *process, [&](HWND shown) {
            return driver::classOf(shown) == windowClass;
        });
    });
    PostMessageW(window, WM_CLOSE, 0, 0);
    process->waitForEnd();
    return time;
}

} // namespace

int wmain() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    int result = 0;
    try {
        const kalvrooms::testing::PracticeHostProcess host;
        double quartino = 1e9, empty = 1e9;
        for (int turn = 0; turn < 5; ++turn) {
            quartino = std::min(quartino, untilShown(L"Quartino.exe", L"QuartinoMain"));
            empty = std::min(empty, untilShown(L"EmptyWindow.exe", L"EmptyWindow"));
        }
        bench::figure("start to main window", quartino, "ms", "a program with an empty window",
                      empty);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        result = 1;
    }
    CoUninitialize();
    return result;
}
