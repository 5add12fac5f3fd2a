#pragma once
// The main window as the file layer knows it, for programs that are no tests: the built-in texts,
// the headless system, and no spreadsheet application.

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

#include "app/clsText.h"
#include "files/SpreadsheetApplication.h"
#include "headless/HeadlessPlatform.h"
#include "support/FileLayerContext.h"

namespace kalvrooms {

class NoSpreadsheets final : public SpreadsheetServer {
  public:
    std::unique_ptr<SpreadsheetApplication> AttachRunning() override { return nullptr; }
    std::unique_ptr<SpreadsheetApplication> CreateInstance() override { return nullptr; }
};

class PlainContext final : public FileLayerContext {
  public:
    std::wstring GetText(std::int32_t number) const override { return texts_.GetText(number); }
    std::wstring GetTextWithoutDot(std::int32_t number) const override {
        return texts_.GetTextWithoutDot(number);
    }
    Platform& System() const override { return system_; }

    void UpdateTable(bool) override { notAsked(); }

  private:
    void notAsked() const override { throw std::logic_error("the file layer does not ask this"); }

    NoSpreadsheets spreadsheets_;
    HeadlessPlatform headless_{spreadsheets_};
    clsText texts_{headless_.libraries, headless_.environment};
    Platform& system_ = headless_.Bundle();
};

} // namespace kalvrooms
