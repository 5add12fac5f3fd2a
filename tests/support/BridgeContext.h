#pragma once
// The main window as the bridge sees it: texts, colours, input and table, all recorded.

#include <memory>
#include <string>
#include <vector>

#include "app/ProgramContext.h"
#include "app/clsText.h"
#include "files/SpreadsheetApplication.h"
#include "headless/HeadlessPlatform.h"
#include "model/RuntimeError.h"
#include "support/ScriptedHost.h"

namespace kalvrooms::testing {

class NoSpreadsheets : public SpreadsheetServer {
  public:
    std::unique_ptr<SpreadsheetApplication> AttachRunning() override { return nullptr; }
    std::unique_ptr<SpreadsheetApplication> CreateInstance() override {
        throw RuntimeError(RuntimeError::CannotCreateObject);
    }
};

class BridgeContext : public ProgramContext {
  public:
    BridgeContext() : BridgeContext(nullptr) {}
    // With another host than the one in memory.
    explicit BridgeContext(HostServer* server)
        : platform(spreadsheets, server ? server : &host),
          text_(platform.libraries, platform.environment) {}

    NoSpreadsheets spreadsheets;
    ScriptedHost host;
    HeadlessPlatform platform;
    std::int32_t colorOld = 0x112233;
    std::int32_t colorNew = 0x445566;
    std::vector<bool> input;      // every EnableInput
    std::vector<bool> tableShown; // every UpdateTable with its argument
    bool inputEnabled = true;
    bool asBlock = true;

    HeadlessDesktop& desktop() { return platform.desktop; }
    std::vector<std::wstring> prompts() const {
        std::vector<std::wstring> texts;
        for (const Gui::Message& message : platform.desktop.Messages())
            texts.push_back(message.Prompt);
        return texts;
    }

    void SetRegKey(const std::wstring&) override {}
    void SetLang(const std::wstring& code) override { text_.SetLanguage(code); }
    std::wstring GetText(std::int32_t number) const override { return text_.GetText(number); }
    std::wstring GetTextWithoutDot(std::int32_t number) const override {
        return text_.GetTextWithoutDot(number);
    }
    void GetReport(std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&, std::int32_t&,
                   bool&) const override {}
    void SetWithoutReport() override {}
    void SetWithReport() override {}
    void GetPlace(double& distanceX, double& distanceY, bool& block, std::int32_t& old,
                  std::int32_t& fresh, bool& noReport) const override {
        distanceX = distanceY = 1.0;
        block = asBlock;
        old = colorOld;
        fresh = colorNew;
        noReport = false;
    }
    void SetPlace(double, double, bool, std::int32_t, std::int32_t) override {}
    void WriteListToFile() override {}
    void ReadListFromFile() override {}
    std::shared_ptr<clsRoom> GetCurrentRoom() const override { return nullptr; }
    void AddCurrentRoomsToListOfFloors(std::int32_t) override {}
    void UpdateTable(bool warn) override { tableShown.push_back(warn); }
    void EnableInput(bool enabled) override {
        inputEnabled = enabled;
        input.push_back(enabled);
    }
    std::wstring HelpFile() const override { return {}; }
    void HelpFile(const std::wstring&) override {}
    Platform& System() const override { return const_cast<HeadlessPlatform&>(platform).Bundle(); }

  private:
    clsText text_;
};

} // namespace kalvrooms::testing
