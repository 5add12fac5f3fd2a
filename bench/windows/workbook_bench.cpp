// Lists as workbooks: the whole operation beside the time in the spreadsheet application's calls.

#include "bench/windows/Figure.h"
#include "win32/SpreadsheetTest.h"

namespace kalvrooms::testing {
namespace {

constexpr int rooms = 1500;
constexpr int turns = 3;

// The start of the application is left out.
void beside(const char* name, SpreadsheetContext& context, const std::function<void()>& operation) {
    double whole = 1e9;
    double inCalls = 0.0;
    for (int turn = 0; turn < turns; ++turn) {
        offerSpreadsheet();
        const auto before = context.session->TimeInCalls();
        const double all = bench::milliseconds(operation);
        if (all < whole) {
            whole = all;
            inCalls =
                std::chrono::duration<double, std::milli>(context.session->TimeInCalls() - before)
                    .count();
        }
        if (!spreadsheetProcessesEnd())
            throw std::runtime_error("the spreadsheet application stays");
    }
    bench::figure(name, whole, "ms", "time in the application's calls", inCalls);
}

void measure() {
    forgetWhatSpreadsheetsWereTold();
    registerSpreadsheets(true);
    SpreadsheetContext context(10000u);
    const std::wstring file =
        (std::filesystem::temp_directory_path() / L"quartino-bench.xls").wstring();
    const clsFloors floors = programme(rooms);
    beside(
        "writing 1500 rooms as a new workbook", context,
        [&] {
            std::filesystem::remove(file);
            clsFileSytem(context).WriteListToFile(file, floors);
        });
    beside("writing 1500 rooms over a workbook", context,
           [&] { clsFileSytem(context).WriteListToFile(file, floors); });
    clsFloors back;
    beside("reading 1500 rooms from a workbook", context, [&] {
        back = clsFloors();
        clsFileSytem(context).ReadListFromFile(file, back);
    });
    std::filesystem::remove(file);
    registerSpreadsheets(false);
    if (back.GetCountOfRooms() != rooms)
        throw std::runtime_error("not all rooms were read");
}

} // namespace
} // namespace kalvrooms::testing

int wmain() {
    const kalvrooms::ComApartment apartment;
    kalvrooms::HandInUserLocale(kalvrooms::Win32UserLocale);
    try {
        kalvrooms::testing::measure();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
