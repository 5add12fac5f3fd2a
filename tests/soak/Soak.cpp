// The same work over and over on the real program, with both practice servers: open a list, read
// the drawing, edit, write the drawing, save as text and as workbook. What the program holds after
// each cycle goes into a table; at the end it must not hold more than soon after the start.
//   QuartinoSoak CYCLES DRAWING LIST TABLE.csv
// What dialogs lose by themselves (under Wine each one some memory, one for files a handle too) is
// measured on dialogs of this program first, and taken off.

#include <windows.h>

#include <commdlg.h>
#include <objbase.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <thread>
#include <vector>

#include "practice/PracticeHostProcess.h"
#include "soak/Resources.h"
#include "ui/ListFileDialog.h"
#include "win32/ControlIds.h"
#include "win32/PracticeSpreadsheetProcess.h"
#include "win32/SystemDialogs.h"

namespace {

using namespace kalvrooms;
namespace ui = kalvrooms::driver;
namespace fs = std::filesystem;

constexpr const wchar_t* settingsKey = L"Software\\QuartinoSoak";
constexpr int settled = 20;           // cycles until everything has been used once
constexpr int watched = 1000;         // cycles at the end that must not rise
constexpr int betweenUserCounts = 50; // counting them stops everybody
constexpr double allowed = 0.02;

struct Kind {
    const char* name;
    bool sparse = false; // not counted in every cycle
};
constexpr std::array kinds = {Kind{"private bytes"},     Kind{"GDI objects"},
                              Kind{"kernel handles"},    Kind{"objects of the host"},
                              Kind{"spreadsheets"},      Kind{"temporary files"},
                              Kind{"USER objects", true}};
using Counts = std::array<double, kinds.size()>;

class Soak {
  public:
    Soak(const std::wstring& drawing, const fs::path& list, const fs::path& folder)
        : drawing_(drawing), list_(list), folder_(folder),
          host_({}, L"--hidden --place 0,0 --start \"" +
                        (ui::binFolder() / L"Quartino.exe").wstring() + L"\" --settings-key " +
                        settingsKey) {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        testing::forgetWhatSpreadsheetsWereTold();
        testing::registerSpreadsheets(true);
        ui::waitFor("the main window", [this] {
            id_ = ui::childOf(host_.process().id(), L"Quartino.exe");
            main_ = id_ ? ui::windowOfClass(id_, L"QuartinoMain") : nullptr;
            return main_ != nullptr;
        });
        process_ = OpenProcess(PROCESS_ALL_ACCESS, FALSE, id_);
    }
    ~Soak() {
        TerminateProcess(process_, 1);
        CloseHandle(process_);
        testing::registerSpreadsheets(false);
        RegDeleteTreeW(HKEY_CURRENT_USER, settingsKey);
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    Soak(const Soak&) = delete;
    Soak& operator=(const Soak&) = delete;

    void cycle() {
        // It comes up while the other commands run.
        testing::OfferedSpreadsheet spreadsheet;
        host_.control().call(L"LoadDrawing", drawing_);
        command(ui::MenuOpen, fileName(list_));
        command(ui::MenuImport, [](HWND) { return false; });
        command(ui::MenuModifyRoom, [](HWND dialog) {
            ui::setText(ui::control(dialog, ID_ROOM_TXTFUNCTION), L"Lager");
            ui::press(dialog, ID_ROOM_CMDOK);
            return true;
        });
        command(ui::MenuExport, [](HWND report) {
            ui::press(report, ID_REPORT_CMDOK);
            return true;
        });
        saveAs(L"Liste.txt");
        spreadsheet.waitUntilReady();
        saveAs(L"Liste.xls");
        if (!testing::spreadsheetProcessesEnd())
            throw ui::WaitFailed("an object of the spreadsheet application is held");
    }

    Counts counts(bool sparse) const {
        double files = 0;
        for (const auto& entry : fs::recursive_directory_iterator(fs::temp_directory_path()))
            files += entry.is_regular_file() ? 1 : 0;
        return {testing::privateBytes(process_),
                testing::gdiObjects(process_),
                testing::kernelHandles(process_),
                static_cast<double>(host_.liveObjects()),
                static_cast<double>(testing::spreadsheetProcesses().size()),
                files,
                sparse ? testing::userObjects(process_) : 0.0};
    }

    void leave() {
        PostMessageW(main_, WM_CLOSE, 0, 0);
        if (WaitForSingleObject(process_, ui::usualLimit) != WAIT_OBJECT_0)
            throw ui::WaitFailed("the program does not end");
    }

  private:
    using Answer = std::function<bool(HWND)>; // true: the dialog was answered

    static Answer fileName(const fs::path& file) {
        return [file](HWND dialog) {
            if (!ui::isFileDialog(dialog))
                return false;
            ui::enterFileName(dialog, file.wstring());
            return true;
        };
    }

    // Every command of the cycle has one dialog at the most, and no message.
    void command(int id, const Answer& answer) const {
        bool answered = false;
        ui::runCommand(main_, id, [&] {
            for (const HWND window : ui::windowsOf(id_)) {
                if (ui::isMessageBox(window))
                    throw ui::WaitFailed("message: " + ToUtf8(ui::messageText(window)));
                if (!answered && window != main_ && IsWindowEnabled(window))
                    answered = answer(window);
            }
        });
    }

    void saveAs(const wchar_t* name) const {
        const fs::path file = folder_ / name;
        fs::remove(file);
        command(ui::MenuSaveAs, fileName(file));
        if (!fs::exists(file))
            throw ui::WaitFailed("a list was not saved");
    }

    std::wstring drawing_;
    fs::path list_, folder_;
    testing::PracticeHostProcess host_;
    DWORD id_ = 0;
    HANDLE process_ = nullptr;
    HWND main_ = nullptr;
};

// By how much the line through the values rises from one to the next.
double slope(const std::vector<double>& values) {
    const auto count = static_cast<double>(values.size());
    double products = 0, squares = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double x = static_cast<double>(i) - (count - 1) / 2;
        products += x * values[i];
        squares += x * x;
    }
    return squares > 0 ? products / squares : 0.0;
}

// A dialog of the program as its resources describe it, without anything behind it.
void showBareDialog(int id) {
    const DLGPROC nothing = [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; };
    const HWND dialog =
        CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), nullptr, nothing, 0);
    if (!dialog)
        throw ui::WaitFailed("a dialog of the program cannot be created");
    ShowWindow(dialog, SW_SHOW);
    UpdateWindow(dialog);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);
    DestroyWindow(dialog);
}

// What the dialogs of one cycle leave behind: the same ones, in this program and round by round,
// and nothing else. It has the program's manifest, for with it the system makes other controls.
Counts lostByDialogs(int rounds, const fs::path& list, const fs::path& folder) {
    struct Step {
        BOOL(WINAPI* call)(OPENFILENAMEW*);
        fs::path proposed, chosen; // the one chosen before is proposed
    };
    const fs::path text = folder / L"Liste.txt", workbook = folder / L"Liste.xls";
    const std::array steps = {Step{GetOpenFileNameW, workbook, list},
                              Step{GetSaveFileNameW, list, text},
                              Step{GetSaveFileNameW, text, workbook}};
    const auto run = [](const Step& step) {
        std::jthread user([&step](const std::stop_token& closed) {
            HWND dialog = nullptr;
            while (!closed.stop_requested() &&
                   !(dialog = ui::findWindow(GetCurrentProcessId(), ui::isFileDialog)))
                Sleep(10);
            // A name that comes before the dialog is complete is overwritten.
            for (; !closed.stop_requested() && IsWindow(dialog); Sleep(50))
                ui::enterFileName(dialog, step.chosen.wstring());
        });
        Gui::FileDialog dialog = ListFileDialog(step.proposed.wstring());
        if (step.call == GetSaveFileNameW)
            dialog.Flags = Gui::OverwritePrompt | Gui::HideReadOnly;
        Gui::RunFileDialog(
            dialog, nullptr, [&step](OPENFILENAMEW& data) { return step.call(&data) != FALSE; },
            [] { return CommDlgExtendedError(); });
    };
    fs::create_directories(folder);
    const HANDLE self = OpenProcess(PROCESS_ALL_ACCESS, FALSE, GetCurrentProcessId());
    std::vector<double> bytes, handles;
    double userBefore = 0.0;
    for (int round = 0; round < rounds; ++round) {
        std::for_each(steps.begin(), steps.end(), run);
        showBareDialog(IDD_ROOM);
        showBareDialog(IDD_REPORT);
        // The first ones load what all of them use.
        if (round < rounds / 4)
            continue;
        if (bytes.empty())
            userBefore = testing::userObjects(self);
        bytes.push_back(testing::privateBytes(self));
        handles.push_back(testing::kernelHandles(self));
    }
    const double user = testing::userObjects(self) - userBefore;
    CloseHandle(self);
    const double between = std::max<double>(1, static_cast<double>(bytes.size()) - 1);
    return {slope(bytes), 0.0, slope(handles), 0.0, 0.0, 0.0, user / between};
}

struct Verdict {
    double first, last, trend; // the trend: rise over the last cycles
    bool holds;
};

Verdict verdictOn(const std::vector<Counts>& all, std::size_t kind, double lostInACycle) {
    std::vector<double> values;
    for (std::size_t cycle = 0; cycle < all.size(); ++cycle)
        if ((cycle + 1 >= settled || all.size() < settled) &&
            (!kinds[kind].sparse || all[cycle][kind] > 0))
            values.push_back(all[cycle][kind] - lostInACycle * static_cast<double>(cycle));
    Verdict verdict{values.front(), values.back(), 0.0, false};
    const auto tail =
        static_cast<std::size_t>(kinds[kind].sparse ? watched / betweenUserCounts : watched);
    if (values.size() > tail)
        values.erase(values.begin(), values.end() - static_cast<std::ptrdiff_t>(tail));
    verdict.trend = slope(values) * static_cast<double>(values.size() - 1);
    const double limit = allowed * verdict.first;
    // Downwards as well: what would be taken off too much must not hide what rises.
    verdict.holds =
        std::abs(verdict.last - verdict.first) <= limit && std::abs(verdict.trend) <= limit / 2;
    return verdict;
}

// One line for each kind; true when all of them stand where they stood.
bool judge(const std::vector<Counts>& all, const Counts& lost) {
    bool good = true;
    std::printf("%-20s %14s %14s %9s %14s %17s\n", "after cycle",
                std::to_string(std::min<std::size_t>(settled, all.size())).c_str(),
                std::to_string(all.size()).c_str(), "change", "trend", "lost by dialogs");
    for (std::size_t kind = 0; kind < kinds.size(); ++kind) {
        const Verdict verdict = verdictOn(all, kind, lost[kind]);
        std::printf("%-20s %14.0f %14.0f %+8.2f%% %+14.1f %15.1f a cycle%s\n", kinds[kind].name,
                    verdict.first, verdict.last,
                    verdict.first > 0 ? (verdict.last / verdict.first - 1) * 100 : 0.0,
                    verdict.trend, lost[kind], verdict.holds ? "" : "  MOVES");
        // A few cycles only show that the way is open.
        good = good && (verdict.holds || all.size() < 2 * settled);
    }
    return good;
}

bool run(int cycles, const wchar_t* drawing, const wchar_t* list, const wchar_t* table) {
    const fs::path folder = fs::temp_directory_path() / L"Quartino Dauerlauf";
    const Counts lost = lostByDialogs(cycles < settled ? 1 : 300, list, folder);
    Soak soak(drawing, list, folder);
    std::ofstream file{fs::path(table)};
    file << "cycle";
    for (const Kind& kind : kinds)
        file << ',' << kind.name;
    file << '\n';
    std::vector<Counts> all;
    for (int cycle = 1; cycle <= cycles; ++cycle) {
        soak.cycle();
        const bool sparse = cycle == settled || cycle == cycles || cycle % betweenUserCounts == 0;
        all.push_back(soak.counts(sparse));
        file << cycle;
        for (const double count : all.back())
            file << ',' << static_cast<long long>(count);
        file << std::endl;
    }
    soak.leave();
    return judge(all, lost);
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 5)
        return 2;
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    int result = 1;
    try {
        result = run(std::max(1, _wtoi(argv[1])), argv[2], argv[3], argv[4]) ? 0 : 1;
    } catch (const std::exception& error) {
        std::printf("%s\n", error.what());
    }
    CoUninitialize();
    return result;
}
