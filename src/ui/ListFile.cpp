#include "ui/ListFile.h"

#include "app/Messages.h"
#include "app/TextNumbers.h"
#include "files/clsFileSytem.h"

namespace kalvrooms {

FileOutcome ListFile::Read(const std::wstring& fileName, clsFloors& floors) {
    // Before the reading: what changes meanwhile counts as changed since.
    state_ = StateOf(fileName);
    whole_ = false;
    const FileOutcome outcome = clsFileSytem(services_).ReadListFromFile(fileName, floors);
    whole_ = outcome.complete;
    return outcome;
}

void ListFile::TellOfReading(const std::wstring& fileName, const FileOutcome& outcome) const {
    if (!outcome.failure)
        return;
    const std::wstring what = outcome.row > 0
                                  ? MessageText(services_.texts, TextNumber::ListNotReadWhole,
                                                {std::to_wstring(outcome.row)})
                                  : MessageText(services_.texts, TextNumber::ListNotRead);
    tell(what + reasonLines(fileName, outcome));
}

bool ListFile::Write(const std::wstring& fileName, const clsFloors& floors) {
    const FileState before = StateOf(fileName);
    const FileOutcome outcome = clsFileSytem(services_).WriteListToFile(fileName, floors);
    // What is there after a failure may be somebody else's, who came in between.
    state_ = outcome.complete || !before.there ? StateOf(fileName) : before;
    whole_ = whole_ || outcome.complete;
    if (!outcome.complete)
        tell(MessageText(services_.texts, TextNumber::ListNotSaved) +
             reasonLines(fileName, outcome));
    return outcome.complete;
}

bool ListFile::MayBeOverwritten(const std::wstring& fileName) const {
    const FileState now = StateOf(fileName);
    if (!now.there || now == state_)
        return true;
    const Gui::Message question{MessageText(services_.texts, TextNumber::FileChanged) +
                                    line(TextNumber::FileLine, {fileName}),
                                MessageText(services_.texts, TextNumber::Title),
                                Gui::Message::Buttons::YesNo};
    return services_.desktop.ShowMessage(question) == Gui::Answer::Yes;
}

RuntimeError ListFile::NamingTheRoom(const RuntimeError& error, const clsFloors& floors) const {
    clsRoom room;
    for (std::int32_t index = 1; index <= floors.GetCountOfRooms(); ++index) {
        floors.GetRoomByIndex(index, room);
        try {
            room.Geometry->dx();
            room.Geometry->dy();
        } catch (const RuntimeError& found) {
            if (found.number() == error.number())
                return RuntimeError(error.number(), reason(error, &room));
        }
    }
    return error;
}

std::wstring ListFile::reason(const RuntimeError& error, const clsRoom* room) const {
    if (room == nullptr)
        return DescriptionText(services_.texts, error);
    const std::vector<std::wstring> place = {room->Name(), room->StoryCode()};
    if (room->Geometry->Area() < 0.0)
        return MessageText(services_.texts, TextNumber::RoomWithNegativeArea, place);
    return DescriptionText(services_.texts, error) + line(TextNumber::RoomLine, place);
}

std::wstring ListFile::reasonLines(const std::wstring& fileName, const FileOutcome& outcome) const {
    std::wstring lines = line(TextNumber::FileLine, {fileName});
    if (outcome.busy)
        lines += line(TextNumber::ReasonLine,
                      {MessageText(services_.texts, TextNumber::SpreadsheetIsBusy)});
    else if (outcome.failure)
        lines += line(TextNumber::ReasonLine, {reason(*outcome.failure, outcome.room.get())});
    if (!outcome.oldFile.empty())
        lines += line(TextNumber::OldFileIsThere, {outcome.oldFile});
    return lines;
}

std::wstring ListFile::line(std::int32_t number, const std::vector<std::wstring>& parts) const {
    return L"\r" + MessageText(services_.texts, number, parts);
}

void ListFile::tell(const std::wstring& prompt) const {
    services_.desktop.ShowMessage({prompt, MessageText(services_.texts, TextNumber::Title)});
}

} // namespace kalvrooms
