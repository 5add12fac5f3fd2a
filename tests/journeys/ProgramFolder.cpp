#include "journeys/ProgramFolder.h"
#include "support/Drawings.h"

#include <gtest/gtest.h>

#include <objbase.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace kalvrooms::testing {
namespace {

class HostOfTheRun : public ::testing::Environment {
  public:
    PracticeHostProcess& get() {
        if (!host_) {
            CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
            host_ = std::make_unique<PracticeHostProcess>(drawingOf({}));
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

ProgramFolder::ProgramFolder() {
    const std::filesystem::path bin = driver::binFolder();
    const std::filesystem::path aids = bin / L"test-libraries";
    for (const auto& file :
         {bin / L"Quartino.exe", bin / L"zorvinta_eng.dll", aids / L"zorvinta_prb.dll",
          aids / L"zorvinta_bla.dll", aids / L"hhctrl.ocx"})
        std::filesystem::copy_file(file, folder_ / file.filename());
}

void ProgramFolder::writeHandOver(const std::wstring& settingsKey, const std::wstring& language,
                                  const std::wstring& helpFile) const {
    writeBytes(handOver(), toAnsi(L"Kalvero\r\n" + helpFile + L"\r\n" + settingsKey + L"\r\n" +
                                  language + L"\r\n"));
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

// --- the settings -------------------------------------------------------------------------------

SettingsKey::SettingsKey(std::wstring path) : path_(std::move(path)) {
    if (path_.empty())
        throw std::invalid_argument("the whole hive is no settings key");
    RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
}

SettingsKey::~SettingsKey() {
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
