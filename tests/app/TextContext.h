#pragma once
// The main window as start-up sees it before it is shown: takes help file, settings key and
// language, and remembers in which order.

#include <string>
#include <vector>

#include "app/ProgramContext.h"
#include "headless/HeadlessDesktop.h"
#include "headless/HeadlessSystem.h"

namespace kalvrooms::testing {

class TextContext : public ProgramContext {
  public:
    HeadlessDesktop desktop;
    HeadlessAnsiCodec ansi;
    HeadlessRegistry registry;
    HeadlessResourceLibraries libraries;
    HeadlessEnvironment environment;
    std::wstring helpFile, regKey, language;
    std::vector<std::wstring> order;

    void SetRegKey(const std::wstring& path) override {
        regKey = path;
        order.push_back(L"key");
    }
    void SetLang(const std::wstring& code) override {
        language = code;
        order.push_back(L"language");
    }
    std::wstring GetText(std::int32_t) const override { return {}; }
    std::wstring GetTextWithoutDot(std::int32_t) const override { return {}; }
    void GetReport(std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&,
                   bool&) const override {}
    void SetWithoutReport() override {}
    void SetWithReport() override {}
    void GetPlace(double&, double&, bool&, std::int32_t&, std::int32_t&, bool&) const override {}
    void SetPlace(double, double, bool, std::int32_t, std::int32_t) override {}
    void WriteListToFile() override {}
    void ReadListFromFile() override {}
    std::shared_ptr<clsRoom> GetCurrentRoom() const override { return nullptr; }
    void AddCurrentRoomsToListOfFloors(std::int32_t) override {}
    void UpdateTable(bool) override {}
    void EnableInput(bool) override {}
    std::wstring HelpFile() const override { return helpFile; }
    void HelpFile(const std::wstring& path) override {
        helpFile = path;
        order.push_back(L"help");
    }
    Platform& System() const override { return platform_; }

  private:
    AbsentHostServer host_;
    // Nothing here asks for spreadsheets.
    struct None {
    } none_;
    mutable Platform platform_{desktop,
                               ansi,
                               registry,
                               libraries,
                               environment,
                               host_,
                               reinterpret_cast<SpreadsheetServer&>(none_)};
};

} // namespace kalvrooms::testing
