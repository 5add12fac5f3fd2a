#include "journeys/ProgramFolder.h"

#include <gtest/gtest.h>

#include <objbase.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace kalvrooms::testing {
namespace {

std::wstring freshName() {
    static int count = 0;
    return L"Quartino Prüfung " + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(++count);
}

class HostOfTheRun : public ::testing::Environment {
  public:
    PracticeHostProcess& get() {
        if (!host_) {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            host_ = std::make_unique<PracticeHostProcess>(R"({"project": {"name": "Schule"}})");
        }
        return *host_;
    }
    void TearDown() override {
        if (host_) {
            host_.reset();
            CoUninitialize();
        }
    }

  private:
    std::unique_ptr<PracticeHostProcess> host_;
};

auto* const hostOfTheRun =
    static_cast<HostOfTheRun*>(::testing::AddGlobalTestEnvironment(new HostOfTheRun));

} // namespace

PracticeHostProcess& practiceHost() {
    return hostOfTheRun->get();
}

void writeBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string readBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string toAnsi(const std::wstring& text) {
    std::string bytes(text.size() * 4, '\0');
    bytes.resize(static_cast<std::size_t>(
        WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                            static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

std::wstring fromAnsi(const std::string& bytes) {
    std::wstring text(bytes.size(), L'\0');
    text.resize(static_cast<std::size_t>(
        MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                            static_cast<int>(text.size()))));
    return text;
}

// --- the folder ---------------------------------------------------------------------------------

ProgramFolder::ProgramFolder() : folder_(std::filesystem::temp_directory_path() / freshName()) {
    // A run that was broken off may have left one of that name.
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
    std::filesystem::create_directories(folder_);
    const std::filesystem::path bin = binFolder();
    const std::filesystem::path aids = bin / L"test-libraries";
    for (const auto& file :
         {bin / L"Quartino.exe", bin / L"zorvinta_eng.dll", aids / L"zorvinta_prb.dll",
          aids / L"zorvinta_bla.dll", aids / L"hhctrl.ocx"})
        std::filesystem::copy_file(file, folder_ / file.filename());
}

ProgramFolder::~ProgramFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void ProgramFolder::writeHandOver(const std::wstring& settingsKey, const std::wstring& language,
                                  const std::wstring& helpFile) const {
    writeBytes(handOver(), toAnsi(L"Kalvero\r\n" + helpFile + L"\r\n" + settingsKey + L"\r\n" +
                                  language + L"\r\n"));
}

void ProgramFolder::removeHandOver() const {
    std::filesystem::remove_all(handOver());
}

std::vector<ProgramFolder::HelpCall> ProgramFolder::helpCalls() const {
    std::vector<HelpCall> calls;
    std::istringstream lines(readBytes(folder_ / L"help-calls"));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream parts(line);
        HelpCall call;
        std::string command, context;
        std::getline(parts, call.file, '|');
        std::getline(parts, command, '|');
        std::getline(parts, context, '|');
        std::getline(parts, call.owner);
        call.command = std::stoi(command);
        call.context = std::stoi(context);
        calls.push_back(call);
    }
    return calls;
}

// --- the program --------------------------------------------------------------------------------

RunningProgram::RunningProgram(const ProgramFolder& folder)
    : process_(L"\"" + (folder.path() / L"Quartino.exe").wstring() + L"\"") {}

HWND RunningProgram::mainWindow() {
    driver::waitFor("the main window", [this] {
        for (const HWND window : windows()) {
            if (window != answered_ && driver::isMessageBox(window))
                throw driver::WaitFailed("a message instead of the main window");
            if (driver::classOf(window) == L"QuartinoMain")
                main_ = window;
        }
        if (!main_ && !process_.running())
            throw driver::WaitFailed("the program ended instead of showing its window");
        return main_ != nullptr;
    });
    return main_;
}

HWND RunningProgram::messageBox() {
    HWND box = nullptr;
    driver::waitFor("a message", [&] {
        for (const HWND window : windows()) {
            if (driver::classOf(window) == L"QuartinoMain" && !main_)
                throw driver::WaitFailed("the main window instead of a message");
            if (driver::isMessageBox(window))
                box = window;
        }
        if (!box && !process_.running())
            throw driver::WaitFailed("the program ended instead of showing a message");
        return box != nullptr;
    });
    return box;
}

HWND RunningProgram::dialog(const std::wstring& title) {
    HWND found = nullptr;
    driver::waitFor("the dialog" + toAnsi(title), [&] {
        for (const HWND window : windows())
            if (driver::textOf(window) == title && window != main_)
                found = window;
        return found != nullptr;
    });
    return found;
}

void RunningProgram::answer(HWND messageBox) {
    answered_ = messageBox;
    // A box with one button numbers it as the one or the other, by version of the system.
    driver::press(messageBox, GetDlgItem(messageBox, IDOK) ? IDOK : IDCANCEL);
}

DWORD RunningProgram::close() {
    PostMessageW(main_, WM_CLOSE, 0, 0);
    driver::waitFor("the end of the program", [this] {
        for (const HWND window : windows())
            if (driver::isMessageBox(window))
                throw driver::WaitFailed("a message at the end of the program");
        return !process_.running();
    });
    return process_.waitForEnd();
}

void takePicture(HWND window, const std::string& name) {
    const char* folder = std::getenv("QUARTINO_PICTURES");
    if (!folder || !*folder)
        return;
    RECT r{};
    GetWindowRect(window, &r);
    const std::string file = std::string(folder) + "/" + name;
    // Done when two pictures in a row are the same: then everything has been painted.
    const std::string script =
        "take() { import -silent -window root -crop " + std::to_string(r.right - r.left) + "x" +
        std::to_string(r.bottom - r.top) + "+" + std::to_string(r.left) + "+" +
        std::to_string(r.top) + " +repage -strip $1; }; cd '" + folder + "'; take " + name +
        ".1.png; while sleep 0.2; take " + name + ".2.png; ! cmp -s " + name + ".1.png " + name +
        ".2.png; do mv " + name + ".2.png " + name + ".1.png; done; rm " + name + ".1.png; mv " +
        name + ".2.png " + name + ".png";
    const std::wstring result = L"\\\\?\\unix" + std::wstring(file.begin(), file.end()) + L".png";
    DeleteFileW(result.c_str());
    std::string line = "/bin/bash -c \"" + script + "\"";
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    ASSERT_TRUE(CreateProcessA("\\\\?\\unix/bin/bash", line.data(), nullptr, nullptr, FALSE, 0,
                               nullptr, nullptr, &startup, &process));
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    driver::waitFor("the picture " + name,
                    [&] { return GetFileAttributesW(result.c_str()) != INVALID_FILE_ATTRIBUTES; });
}

// --- the settings -------------------------------------------------------------------------------

SettingsKey::SettingsKey(std::wstring path) : path_(std::move(path)) {
    if (path_.empty())
        throw std::invalid_argument("the whole hive is no settings key");
    RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
}

SettingsKey::~SettingsKey() {
    // Moved away.
    if (path_.empty())
        return;
    RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
}

bool SettingsKey::exists() const {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

void SettingsKey::set(const std::wstring& name, DWORD type, const std::string& bytes) const {
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, path_.c_str(), name.c_str(), type, bytes.data(),
                              static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
}

void SettingsKey::set(const std::wstring& name, std::int32_t value) const {
    set(name, REG_DWORD, std::string(reinterpret_cast<const char*>(&value), sizeof value));
}

std::int32_t SettingsKey::Value::number() const {
    EXPECT_EQ(type, static_cast<DWORD>(REG_DWORD));
    EXPECT_EQ(bytes.size(), sizeof(std::int32_t));
    std::int32_t value = 0;
    std::memcpy(&value, bytes.data(), std::min(bytes.size(), sizeof value));
    return value;
}

std::vector<SettingsKey::Value> SettingsKey::values() const {
    std::vector<Value> found;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return found;
    for (DWORD index = 0;; ++index) {
        wchar_t name[256] = L"";
        DWORD nameLength = 256;
        DWORD type = 0;
        std::string bytes(4096, '\0');
        DWORD size = static_cast<DWORD>(bytes.size());
        if (RegEnumValueW(key, index, name, &nameLength, nullptr, &type,
                          reinterpret_cast<BYTE*>(bytes.data()), &size) != ERROR_SUCCESS)
            break;
        bytes.resize(size);
        found.push_back({name, type, bytes});
    }
    RegCloseKey(key);
    return found;
}

std::int32_t SettingsKey::operator[](const std::wstring& name) const {
    for (const Value& value : values())
        if (value.name == name)
            return value.number();
    ADD_FAILURE() << "no value " << toAnsi(name);
    return -1;
}

} // namespace kalvrooms::testing
