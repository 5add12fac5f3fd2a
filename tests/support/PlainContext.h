#pragma once
// The main window as the file layer knows it, for programs that are no tests: the built-in texts,
// the headless system, and no spreadsheet application.

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "app/ProgramContext.h"
#include "app/clsText.h"
#include "files/SpreadsheetApplication.h"
#include "platform/headless/HeadlessPlatform.h"

namespace kalvrooms {

class NoSpreadsheets final : public SpreadsheetServer {
  public:
    std::unique_ptr<SpreadsheetApplication> AttachRunning() override { return nullptr; }
    std::unique_ptr<SpreadsheetApplication> CreateInstance() override { return nullptr; }
};

class PlainContext final : public ProgramContext {
  public:
    std::wstring GetText(std::int32_t number) const override { return texts_.GetText(number); }
    std::wstring GetTextWithoutDot(std::int32_t number) const override {
        return texts_.GetTextWithoutDot(number);
    }
    Platform& System() const override { return system_; }

    void SetRegKey(const std::wstring&) override { unused(); }
    void SetLang(const std::wstring&) override { unused(); }
    void GetReport(std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&,
                   bool&) const override {
        unused();
    }
    void SetWithoutReport() override { unused(); }
    void SetWithReport() override { unused(); }
    void GetPlace(double&, double&, bool&, std::int32_t&, std::int32_t&, bool&) const override {
        unused();
    }
    void SetPlace(double, double, bool, std::int32_t, std::int32_t) override { unused(); }
    void WriteListToFile() override { unused(); }
    void ReadListFromFile() override { unused(); }
    std::shared_ptr<clsRoom> GetCurrentRoom() const override { unused(); }
    void AddCurrentRoomsToListOfFloors(std::int32_t) override { unused(); }
    void UpdateTable(bool) override { unused(); }
    void EnableInput(bool) override { unused(); }
    std::wstring HelpFile() const override { unused(); }
    void HelpFile(const std::wstring&) override { unused(); }

  private:
    [[noreturn]] static void unused() {
        throw std::logic_error("the file layer does not ask this");
    }

    NoSpreadsheets spreadsheets_;
    HeadlessPlatform headless_{spreadsheets_};
    clsText texts_{headless_.libraries, headless_.environment};
    Platform& system_ = headless_.Bundle();
};

} // namespace kalvrooms
