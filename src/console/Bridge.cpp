#include "console/Bridge.h"

#include <map>

#include "app/Messages.h"
#include "app/TextNumbers.h"
#include "app/clsText.h"
#include "host/clsKalvero.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

class NoWindow final : public ExportWindow {
  public:
    explicit NoWindow(const Placement& placement) : placement_(placement) {}
    Placement GetPlace() const override { return placement_; }
    void EnableInput(bool) override {}
    void ShowProgress(const std::wstring&) override {}

  private:
    const Placement placement_;
};

} // namespace

// The program's own texts. Names of attributes and titles of columns are data and stay German.
class ConsoleServices::MessageTexts final : public Texts {
  public:
    MessageTexts(HeadlessPlatform& platform, const Speech& say)
        : texts_(platform.libraries, platform.environment), say_(say) {}

    std::wstring GetText(std::int32_t number) const override {
        static const std::map<std::int32_t, const wchar_t*> english = {
#include "EnglishTexts.inc"
        };
        const bool title = number >= TextNumber::Name && number <= TextNumber::AreaType;
        const auto found = english.find(number);
        return say_.german || title || found == english.end() ? texts_.GetText(number)
                                                              : found->second;
    }
    std::wstring GetTextWithoutDot(std::int32_t number) const override {
        return texts_.GetTextWithoutDot(number);
    }

  private:
    const clsText texts_;
    const Speech say_;
};

ConsoleServices::ConsoleServices(const Speech& say)
    : texts_(std::make_unique<MessageTexts>(platform_, say)), files_{
                                                                  *texts_, *this, platform_.desktop,
                                                                  platform_.ansi, spreadsheets_} {}

std::vector<std::string> ConsoleServices::Messages() const {
    std::vector<std::string> messages;
    for (const Gui::Message& message : platform_.desktop.Messages())
        messages.push_back(ToUtf8(Trim(message.Prompt)));
    return messages;
}

std::string ConsoleServices::Description(const RuntimeError& error) const {
    return ToUtf8(DescriptionText(*texts_, error));
}

void ReadFromDrawing(DrawingHost& host, const FileServices& files, clsFloors& floors) {
    NoWindow window({});
    clsKalvero bridge(host, files, window);
    bridge.GetProjectName(); // which asks for the folder of the point files
    bridge.ImportFloorsFromKalvero(floors);
}

WrittenRooms WriteIntoDrawing(DrawingHost& host, const FileServices& files, const clsFloors& floors,
                              const Placement& placement) {
    NoWindow window(placement);
    clsKalvero bridge(host, files, window);
    WrittenRooms written;
    bridge.ExportFloorsToKalvero(floors, true, placement.block, placement.distanceX,
                                 placement.distanceY, written.atPosition, written.updated,
                                 written.placed);
    return written;
}

} // namespace kalvrooms
