// Plays the main job on the real windows: opens a room list, writes it into the drawing of the
// practice host, closes the report, and leaves pictures and a summary.

#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include "drawing/DrawingFile.h"
#include "drawing/Text.h"
#include "practice/driver/LateBound.h"
#include "practice/driver/UiDriver.h"
#include "win32/ControlIds.h"

namespace {

using namespace kalvrooms;
namespace ui = kalvrooms::driver;

constexpr DWORD longLimit = 240000; // milliseconds, for a whole command

std::wstring quoted(const std::wstring& text) {
    return L"\"" + text + L"\"";
}

struct Arguments {
    std::map<std::wstring, std::wstring> values;
    bool openOnly = false;
    const std::wstring& operator[](const wchar_t* name) const {
        static const std::wstring none;
        const auto found = values.find(name);
        return found == values.end() ? none : found->second;
    }
};

class Tour {
  public:
    explicit Tour(const Arguments& arguments) : arguments_(arguments), out_(arguments[L"--out"]) {}

    int play() {
        start();
        if (main_) {
            if (isModel())
                readModel();
            // The spreadsheet application may be asked for a list that is a workbook.
            if (!arguments_[L"--list"].empty())
                command(ui::MenuOpen, [this](HWND dialog) { return answerFileDialog(dialog); });
            summary_["rooms.listed"] = listedRooms();
            if (arguments_.openOnly)
                return leaveRunning();
            picture(L"main", main_);
            command(ui::MenuExport, [this](HWND dialog) { return answerReport(dialog); });
        }
        finish();
        return 0;
    }

    // Leaves what is known so far and shuts the host down cleanly.
    void giveUp(const std::string& reason) {
        try {
            if (control_)
                control_.call(L"Quit");
        } catch (const ui::CallFailed&) {
            // It is gone already.
        }
        control_ = {};
        messages_.emplace_back(reason.begin(), reason.end());
        write();
    }

  private:
    void start() {
        std::wstring line = quoted(arguments_[L"--host"]) + L" --known-while-running --drawing " +
                            quoted(arguments_[L"--drawing"]) + L" --save " +
                            quoted(out_ + (isModel() ? L"\\drawing.ifc" : L"\\drawing.json")) +
                            L" --svg " + quoted(out_ + L"\\drawing.svg") + L" --start " +
                            quoted(arguments_[L"--quartino"]) + L" --settings-key " +
                            quoted(arguments_[L"--settings-key"]);
        if (isModel())
            line += L" --project-folder " + quoted(arguments_[L"--project-folder"]);
        if (!arguments_[L"--place"].empty())
            line += L" --place " + arguments_[L"--place"];
        host_ = std::make_unique<ui::Process>(line);
        // The host starts Quartino when it can be called; asked any earlier, the system would start
        // a second host.
        ui::waitFor("Quartino's process", [this] {
            quartino_ = ui::childOf(host_->id(), L"Quartino.exe");
            if (!quartino_ && !host_->running())
                throw ui::WaitFailed("the practice host ended at once");
            return quartino_ != 0;
        });
        control_ = ui::LateBound::create(L"KALVCOMSERVERLib.PracticeControl");
        const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, quartino_);
        ui::waitFor("the main window", [&] {
            answerMessages();
            main_ = ui::windowOfClass(quartino_, L"QuartinoMain");
            return main_ || WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
        });
        CloseHandle(process);
    }

    // A model comes with a folder for the outlines of its rooms.
    bool isModel() const { return !arguments_[L"--project-folder"].empty(); }

    // Its rooms come into the list; without another place, new ones are placed on their right.
    void readModel() {
        command(ui::MenuImport, [](HWND) { return false; });
        summary_["rooms.read"] = listedRooms();
        picture(L"rooms", main_);
        if (arguments_.openOnly || !arguments_[L"--place"].empty())
            return;
        const Drawing drawing = ReadDrawing(ToUtf8(control_.text(L"DrawingText")));
        double right = 0.0;
        for (const Element& element : drawing.elements)
            for (const Point& point : element.outline)
                right = std::max(right, point.x);
        control_.call(L"PlaceAt", std::ceil(right) + 2.0, 0.0);
    }

    // Chooses a menu entry and answers what comes up until the command has ended.
    void command(int id, const std::function<bool(HWND)>& answer) {
        ui::runCommand(
            main_, id,
            [&] {
                answerMessages();
                for (const HWND window : ui::windowsOf(quartino_))
                    if (window != main_ && !ui::isMessageBox(window) && IsWindowEnabled(window) &&
                        answer(window))
                        break;
            },
            longLimit);
        given_.clear();
    }

    void answerMessages() {
        for (const HWND window : ui::windowsOf(quartino_)) {
            if (!ui::isMessageBox(window) || answered_.contains(window))
                continue;
            std::wstring text = ui::messageText(window);
            for (wchar_t& c : text)
                if (c == L'\r' || c == L'\n')
                    c = L' ';
            answered_.insert(window);
            // A list that was read is given up for the next one; nobody is told anything by that.
            const bool question = GetDlgItem(window, IDNO) != nullptr;
            if (!question)
                messages_.push_back(text);
            ui::press(window, question ? IDNO : IDOK);
            ui::waitUntilGone(window);
        }
    }

    // Gives the name; a dialog that stays after a message about the name is given up.
    bool answerFileDialog(HWND dialog) {
        if (!ui::isFileDialog(dialog))
            return false;
        if (given_.insert(dialog).second) {
            messagesBefore_ = messages_.size();
            ui::enterFileName(dialog, arguments_[L"--list"]);
        } else if (messages_.size() > messagesBefore_) {
            ui::press(dialog, IDCANCEL);
        }
        return true;
    }

    bool answerReport(HWND dialog) {
        const HWND ok = GetDlgItem(dialog, ID_REPORT_CMDOK);
        if (!ok || !GetDlgItem(dialog, ID_REPORT_LBLNUM1) || !given_.insert(dialog).second)
            return false;
        summary_["rooms.updated"] = shownCount(dialog, ID_REPORT_LBLNUM1);
        summary_["rooms.placed"] = shownCount(dialog, ID_REPORT_LBLNUM2);
        summary_["rooms.setdown"] = shownCount(dialog, ID_REPORT_LBLNUM3);
        picture(L"report", dialog);
        ui::press(dialog, ID_REPORT_CMDOK);
        return true;
    }

    static long shownCount(HWND dialog, int control) {
        const HWND label = GetDlgItem(dialog, control);
        return IsWindowVisible(label) ? std::wcstol(ui::textOf(label).c_str(), nullptr, 10) : 0;
    }

    // Rooms stand at the top of the table; the rows below are empty.
    long listedRooms() const {
        constexpr int idColumn = 8;
        const HWND table = FindWindowExW(main_, nullptr, L"SysListView32", nullptr);
        int low = 0;
        int high = ui::rowCount(table);
        while (low < high) {
            const int middle = low + (high - low) / 2;
            if (ui::cellText(table, middle, idColumn).empty())
                high = middle;
            else
                low = middle + 1;
        }
        return low;
    }

    void picture(const std::wstring& name, HWND window) {
        SetForegroundWindow(window);
        ui::Picture::ofWindow(window).save(out_ + L"\\" + name + L".bmp");
    }

    int leaveRunning() {
        host_.release();
        return 0;
    }

    void finish() {
        summary_["host.calls"] = control_.number(L"CallCount");
        control_.call(L"SaveDrawing", out_ + L"\\drawing.json");
        if (isModel())
            control_.call(L"SaveDrawing", out_ + L"\\drawing.ifc");
        control_.call(L"ExportSvg", out_ + L"\\drawing.svg");
        summary_["rooms.drawing"] =
            static_cast<long>(ReadDrawing(ToUtf8(control_.text(L"DrawingText"))).elements.size());
        if (main_) {
            PostMessageW(main_, WM_CLOSE, 0, 0);
            const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, quartino_);
            ui::waitFor("the end of Quartino", [&] {
                answerMessages();
                return WaitForSingleObject(process, 0) == WAIT_OBJECT_0;
            });
            CloseHandle(process);
        }
        // Nothing stands in front of the drawing any more.
        if (const HWND window = ui::windowOfClass(host_->id(), L"KalveroPracticeHost"))
            picture(L"drawing", window);
        control_.call(L"Quit");
        control_ = {};
        host_->waitForEnd();
        write();
    }

    void write() {
        std::ofstream file(std::filesystem::path(out_ + L"\\summary.txt"), std::ios::binary);
        if (isModel())
            file << "rooms.read=" << summary_["rooms.read"] << '\n';
        for (const char* name : {"rooms.listed", "rooms.updated", "rooms.placed", "rooms.setdown",
                                 "rooms.drawing", "host.calls"})
            file << name << '=' << summary_[name] << '\n';
        for (const std::wstring& message : messages_)
            file << "message=" << ToUtf8(message) << '\n';
    }

    const Arguments& arguments_;
    std::wstring out_;
    std::unique_ptr<ui::Process> host_;
    ui::LateBound control_;
    DWORD quartino_ = 0;
    HWND main_ = nullptr;
    std::map<std::string, long> summary_;
    std::vector<std::wstring> messages_;
    std::set<HWND> answered_;
    std::set<HWND> given_;
    std::size_t messagesBefore_ = 0;
};

} // namespace

int wmain(int argc, wchar_t** argv) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::wstring name = argv[i];
        if (name == L"--open-only")
            arguments.openOnly = true;
        else if (i + 1 < argc)
            arguments.values[name] = argv[++i];
    }
    SetProcessDPIAware(); // places on the screen are the real ones
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    int result = 1;
    {
        Tour tour(arguments);
        try {
            result = tour.play();
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
            tour.giveUp(error.what());
        }
    }
    CoUninitialize();
    return result;
}
