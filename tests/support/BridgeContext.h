#pragma once
// The main window as the bridge sees it: texts, colours, input and table, all recorded.

#include <memory>
#include <string>
#include <vector>

#include "host/clsKalvero.h"
#include "support/FileLayer.h"
#include "support/TestHost.h"

namespace kalvrooms::testing {

// What a writing tells of itself: rooms at their position, updated, and placed at the cross-hair.
struct ExportCounts {
    std::int32_t atPosition = 0, updated = 0, placed = 0;
};

inline ExportCounts writeTo(clsKalvero& bridge, const clsFloors& floors, bool block = true,
                            double dx = 1.0, double dy = 1.0, bool modify = true) {
    ExportCounts counts;
    bridge.ExportFloorsToKalvero(floors, modify, block, dx, dy, counts.atPosition, counts.updated,
                                 counts.placed);
    return counts;
}

class BridgeContext : public ExportWindow {
  public:
    BridgeContext() : server(host) {}
    // With another host than the one in memory.
    explicit BridgeContext(HostServer& other) : server(other) {}

    TestHost host;
    HostServer& server;
    FileLayer files;
    std::int32_t colorOld = 0x112233;
    std::int32_t colorNew = 0x445566;
    std::vector<bool> input; // every EnableInput
    std::vector<bool>& tableShown = files.table.Updates;
    std::vector<std::wstring> progress; // every ShowProgress
    bool inputEnabled = true;
    bool asBlock = true;

    HeadlessDesktop& desktop() { return files.platform.desktop; }
    std::vector<std::wstring> prompts() const {
        std::vector<std::wstring> texts;
        for (const Gui::Message& message : files.platform.desktop.Messages())
            texts.push_back(message.Prompt);
        return texts;
    }
    std::unique_ptr<clsKalvero> bridge() {
        return std::make_unique<clsKalvero>(server, files.services, *this);
    }

    Placement GetPlace() const override {
        return {.block = asBlock, .colorOld = colorOld, .colorNew = colorNew};
    }
    void EnableInput(bool enabled) override {
        inputEnabled = enabled;
        input.push_back(enabled);
    }
    void ShowProgress(const std::wstring& words) override { progress.push_back(words); }
};

} // namespace kalvrooms::testing
