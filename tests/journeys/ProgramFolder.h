#pragma once
// A folder with a copy of the program, as the host installs it, and the key with its settings.

#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "practice/PracticeHostProcess.h"
#include "support/TemporaryFolder.h"

namespace kalvrooms::testing {

// One practice host for all tests of the run, started when first asked for.
PracticeHostProcess& practiceHost();

class ProgramFolder {
  public:
    // Copies the program and its libraries. The folder's name is not plain ASCII.
    ProgramFolder();

    const std::filesystem::path& path() const { return folder_.path(); }
    std::filesystem::path handOver() const { return folder_ / L"kalvqtotemp"; }
    // Four lines as the host writes them.
    void writeHandOver(const std::wstring& settingsKey, const std::wstring& language = L"xxx",
                       const std::wstring& helpFile = L"C:\\Hilfe\\quartino.kalvhelp") const;

    // What the help control was asked for: file, command, context number, title of the owner.
    struct HelpCall {
        std::string file;
        int command = 0;
        int context = 0;
        std::string owner;
        bool operator==(const HelpCall&) const = default;
    };
    std::vector<HelpCall> helpCalls() const;

  private:
    const TemporaryFolder folder_{L"Quartino Prüfung "};
};

std::string toAnsi(const std::wstring& text);
std::wstring fromAnsi(const std::string& bytes);

// A key of the current user's hive that is gone before and after.
class SettingsKey {
  public:
    explicit SettingsKey(std::wstring path);
    ~SettingsKey();
    SettingsKey(const SettingsKey&) = delete;
    SettingsKey& operator=(const SettingsKey&) = delete;

    const std::wstring& path() const { return path_; }
    bool exists() const;
    void set(const std::wstring& name, DWORD type, const std::string& bytes) const;
    void set(const std::wstring& name, std::int32_t value) const;
    struct Value {
        std::wstring name;
        DWORD type = 0;
        std::string bytes;
        std::int32_t number() const;
    };
    // In the order in which the registry lists them.
    std::vector<Value> values() const;
    // Error: fails the test when the value is missing or no DWORD.
    std::int32_t operator[](const std::wstring& name) const;

  private:
    std::wstring path_;
};

} // namespace kalvrooms::testing
