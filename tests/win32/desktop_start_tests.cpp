// The outermost frame of the program.

#include "win32/StartUp.h"

#include "practice/driver/UiDriver.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <new>
#include <random>
#include <stdexcept>
#include <vector>

namespace kalvrooms::Gui {
namespace {

struct Told {
    HWND owner;
    std::wstring text, title;
    UINT style;
};

class StartUpFrame : public testing::Test {
  protected:
    StartUpFrame() {
        dialogs_.MessageBoxCall = [this](HWND owner, const wchar_t* text, const wchar_t* title,
                                         UINT style) {
            told_.push_back({owner, text, title, style});
            return IDOK;
        };
    }
    void Expect(const std::function<void()>& program, const std::wstring& text) {
        told_.clear();
        EXPECT_EQ(RunToItsEnd(program, dialogs_), 1);
        ASSERT_EQ(told_.size(), 1U);
        EXPECT_EQ(told_[0].owner, nullptr);
        EXPECT_EQ(told_[0].text, text);
        EXPECT_EQ(told_[0].title, L"Quartino");
        EXPECT_EQ(told_[0].style & MB_ICONMASK, static_cast<UINT>(MB_ICONSTOP));
        EXPECT_EQ(told_[0].style & MB_TYPEMASK, static_cast<UINT>(MB_OK));
    }

    SystemDialogs dialogs_;
    std::vector<Told> told_;
};

TEST_F(StartUpFrame, AProgramThatEndsWellSaysNothing) {
    bool ran = false;
    EXPECT_EQ(RunToItsEnd([&] { ran = true; }, dialogs_), 0);
    EXPECT_TRUE(ran);
    EXPECT_TRUE(told_.empty());
}

TEST_F(StartUpFrame, WhatNobodyTrappedEndsInAMessage) {
    Expect([] { throw RuntimeError(RuntimeError::Overflow, L"Überlauf"); },
           L"Quartino muss beendet werden.\rÜberlauf");
    Expect([] { throw std::runtime_error("no window"); },
           L"Quartino muss beendet werden.\rno window");
    Expect([] { throw std::bad_alloc(); },
           L"Quartino muss beendet werden.\rDer Speicher reicht nicht aus");
    Expect([] { throw 1; }, L"Quartino muss beendet werden.");
}

TEST(HelpFiles, OneWithoutAFullPathLiesInTheProgramsFolderAndNeverInTheCurrentOne) {
    std::vector<std::string> opened;
    const auto call = [&](HWND, const char* file, UINT, DWORD_PTR) { opened.push_back(file); };
    const std::filesystem::path program = driver::binFolder();
    const std::filesystem::path before = std::filesystem::current_path();
    const std::filesystem::path elsewhere =
        std::filesystem::temp_directory_path() / std::to_wstring(std::random_device()());
    const std::wstring name = elsewhere.filename().wstring() + L".chm";
    std::filesystem::create_directories(elsewhere / L"sub");
    for (const std::filesystem::path& file : {elsewhere / name, elsewhere / L"sub" / name})
        std::ofstream(file).put('x');
    std::filesystem::current_path(elsewhere);
    const std::wstring drive = elsewhere.root_name().wstring();
    const std::wstring paths[] = {name, L".\\" + name, L"sub\\" + name, L"sub/" + name,
                                  drive + name};
    for (const std::wstring& path : paths)
        OpenHelpFile(nullptr, path, 20, call);
    EXPECT_TRUE(opened.empty());

    std::filesystem::create_directories(program / elsewhere.filename());
    for (const std::wstring& path : {name, elsewhere.filename().wstring() + L"\\" + name}) {
        std::ofstream(program / path).put('x');
        OpenHelpFile(nullptr, path, 20, call);
        std::filesystem::remove(program / path);
        ASSERT_EQ(opened.size(), 1U);
        EXPECT_EQ(std::filesystem::path(opened.back()), program / path);
        opened.clear();
    }
    std::filesystem::remove(program / elsewhere.filename());
    // A full path is one wherever the program is.
    OpenHelpFile(nullptr, (elsewhere / name).wstring(), 20, call);
    EXPECT_EQ(opened.size(), 1U);
    std::filesystem::current_path(before);
    std::filesystem::remove_all(elsewhere);
}

TEST(HelpFiles, ABareNameIsLookedForWhereHelpFilesAre) {
    std::vector<std::string> opened;
    const auto call = [&](HWND, const char* file, UINT, DWORD_PTR) { opened.push_back(file); };
    // Of this run alone: another one may use the same program.
    const std::wstring name =
        L"quartino-hilfe-probe-" + std::to_wstring(std::random_device()()) + L".chm";
    OpenHelpFile(nullptr, name, 20, call);
    EXPECT_TRUE(opened.empty());

    wchar_t windows[MAX_PATH] = L"";
    GetWindowsDirectoryW(windows, MAX_PATH);
    wchar_t temporary[MAX_PATH] = L"";
    GetTempPathW(MAX_PATH, temporary);
    const auto makeFile = [](const std::wstring& path) {
        const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr);
        ASSERT_NE(file, INVALID_HANDLE_VALUE);
        CloseHandle(file);
    };
    const auto expectOpened = [&](const std::wstring& path) {
        ASSERT_EQ(opened.size(), 1U);
        EXPECT_EQ(opened[0], std::string(path.begin(), path.end()));
        opened.clear();
    };

    const std::wstring shared = std::wstring(windows) + L"\\Help\\" + name;
    makeFile(shared);
    OpenHelpFile(nullptr, name, 20, call);
    DeleteFileW(shared.c_str());
    expectOpened(shared);

    // The folder that an installation has told.
    constexpr const wchar_t* key = L"Software\\Microsoft\\Windows\\HTML Help";
    std::wstring folder = temporary;
    makeFile(folder + name);
    ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, key, name.c_str(), REG_SZ, folder.c_str(),
                              static_cast<DWORD>((folder.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
    OpenHelpFile(nullptr, name, 20, call);
    RegDeleteKeyValueW(HKEY_CURRENT_USER, key, name.c_str());
    DeleteFileW((folder + name).c_str());
    expectOpened(folder + name);

    // Beside the program.
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring beside = program;
    beside = beside.substr(0, beside.find_last_of(L'\\') + 1) + name;
    makeFile(beside);
    OpenHelpFile(nullptr, name, 20, call);
    DeleteFileW(beside.c_str());
    expectOpened(beside);

    OpenHelpFile(nullptr, name, 20, call);
    EXPECT_TRUE(opened.empty());
}

} // namespace
} // namespace kalvrooms::Gui
