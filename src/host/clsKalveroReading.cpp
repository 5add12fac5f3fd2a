// Reads the rooms of the drawing.

#include <filesystem>
#include <optional>

#include "app/Messages.h"
#include "app/TextNumbers.h"
#include "files/FilePath.h"
#include "files/clsFileSytem.h"
#include "host/BridgeOperation.h"
#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms {
namespace {

// Moves a file aside, over one that was moved there before. True when nothing is left at the path
// that could be read as a file.
bool setAside(const std::wstring& path) {
    try {
        const std::filesystem::path file = FilePath(path);
        if (!std::filesystem::exists(file) || std::filesystem::is_directory(file))
            return true;
        std::error_code failure;
        std::filesystem::rename(file, FilePath(path + L".bak"), failure);
        return !failure;
    } catch (const std::exception&) {
        // No file can have a name like that.
        return true;
    }
}

} // namespace

// The host's names of the attributes that are read, as its catalogue gives them.
struct clsKalvero::AttributeNames {
    std::wstring area = L"Bodenfläche";
    std::wstring enclosure = L"Umschließungsart";
    std::wstring occupancy = L"Nutzen";
    std::wstring areaType = L"Flächenart 277";

    explicit AttributeNames(HostServer& server) {
        std::unique_ptr<HostAttributeCatalogue> catalogue;
        if (!Attempt([&] { catalogue = server.CreateAttributeCatalogue(); }) || !catalogue)
            return;
        const auto ask = [&](std::int32_t number, std::wstring& name) {
            Attempt([&] {
                std::wstring answer = catalogue->AttributeName(number);
                if (!answer.empty())
                    name = std::move(answer);
            });
        };
        ask(293, area);
        ask(231, enclosure);
        ask(235, occupancy);
        ask(232, areaType);
    }
};

// What one reading knows, and what it has to tell at its end.
struct clsKalvero::Reading {
    std::int32_t projectNumber = 0;
    // Of the point files; empty when the host does not tell it.
    std::wstring folder;
    std::int32_t total = 0;
    std::int32_t read = 0;
    std::int32_t readInPart = 0;
    std::int32_t outlinesNotStored = 0;
    // Why there is nothing to read.
    std::optional<RuntimeError> failure;
    bool skippedNative = false;
    bool withoutFolder = false;
    bool gaveUp = false;
    bool ended = false;
    bool hostIsGone = false;

    // Tells whether the step went well.
    bool attempt(const std::function<void()>& step) {
        try {
            step();
            return true;
        } catch (const RuntimeError& error) {
            if (error.number() == RuntimeError::ServerUnavailable)
                hostIsGone = true;
            failure = error;
            return false;
        }
    }
};

void clsKalvero::ImportFloorsFromKalvero(clsFloors& floors) {
    Reading reading;
    {
        Busy busy(wait_, desktop_);
        busy->StartWait();
        auto elements = selectRooms(reading);
        broken_ = broken_ || reading.hostIsGone;
        const HostApplication* const before = application_.get();
        if (hostForbidsAccess())
            return;
        // A broken connection has brought nothing; the check has made another one.
        if (!elements && application_.get() != before) {
            reading = {};
            elements = selectRooms(reading);
        }
        readRooms(elements.get(), reading, floors);
        files_.table.UpdateTable(true);
    }
    tellOf(reading);
}

std::unique_ptr<HostElementList> clsKalvero::selectRooms(Reading& reading) {
    std::unique_ptr<HostDrawingService> service;
    std::unique_ptr<HostRoomSelection> filter;
    std::unique_ptr<HostElementList> elements;
    reading.attempt([&] { service = getDrawingService(); });
    reading.attempt([&] { filter = host_.CreateRoomFilter(); });
    if (application_) {
        std::unique_ptr<HostProject> project;
        reading.attempt([&] { project = getProject(); });
        if (project) {
            reading.attempt([&] { reading.projectNumber = project->ProjectNumber(); });
            // Another project may have been opened since its name was asked for.
            reading.attempt([&] { reading.folder = project->ProjectFolder(); });
        }
    }
    reading.attempt([&] {
        if (filter)
            filter->SelectRooms();
    });
    reading.attempt([&] {
        if (service && filter)
            elements = service->GetElements(*filter);
    });
    return elements;
}

void clsKalvero::readRooms(HostElementList* elements, Reading& reading, clsFloors& floors) {
    if (!elements || !reading.attempt([&] { reading.total = elements->Count(); }))
        return;
    reading.failure.reset();
    const AttributeNames names(host_);
    Progress progress(window_, files_, TextNumber::ReadingProgress, reading.total);
    std::int32_t failuresInARow = 0;
    for (std::int32_t begun = 0; begun < reading.total && !reading.hostIsGone; ++begun) {
        if (!progress.next(begun)) {
            reading.ended = true;
            return;
        }
        std::unique_ptr<HostRoomElement> element;
        HostRoomRecord record;
        reading.attempt([&] { element = elements->Item(begun + 1); });
        failuresInARow = element ? 0 : failuresInARow + 1;
        if (failuresInARow == MostFailuresInARow) {
            // They are no rooms.
            reading.readInPart -= failuresInARow - 1;
            reading.gaveUp = true;
            return;
        }
        if (!element || !reading.attempt([&] { record = element->Record(); }))
            // One that went away has a message of its own.
            reading.readInPart += reading.hostIsGone ? 0 : 1;
        else if (record.Identity.FileNumber <= 0)
            reading.skippedNative = true;
        else
            readRoom(*element, record, names, reading, floors);
    }
}

void clsKalvero::readRoom(HostRoomElement& element, const HostRoomRecord& record,
                          const AttributeNames& names, Reading& reading, clsFloors& floors) {
    clsRoom room;
    room.ProjectNumber(reading.projectNumber);
    room.FileNumber(record.Identity.FileNumber);
    room.ComponentID(record.Identity.ComponentID);
    room.FileID(record.Identity.FileID);
    room.FunctionName(record.RoomFunction);
    room.StoryCode(record.StoreyCode);
    room.Name(record.RoomName);
    bool whole = ReadRoomAttributes(element, room, names, reading) && record.Whole;
    const std::wstring path = reading.folder + PathSeparator +
                              FromLong(record.Identity.FileNumber) + L"-" +
                              FromLong(record.Identity.ComponentID) + L".txt";
    whole = readOutline(element, path, reading) && whole;
    // The host went away during this room: what is missing is unknown.
    if (reading.hostIsGone)
        return;
    room.Geometry->SetTypeAndValue(CalculationByFile, path);
    const std::wstring key = IdentityKey(room.ComponentID(), room.FileID());
    // Without its identity the room is still known by its place in the project folder.
    std::set<std::wstring>& inPart = key.empty() ? unidentified_ : readInPart_;
    const std::wstring& mark = key.empty() ? path : key;
    if (whole) {
        inPart.erase(mark);
    } else {
        inPart.insert(mark);
        ++reading.readInPart;
    }
    floors.AddRoom(room);
    ++reading.read;
}

bool clsKalvero::ReadRoomAttributes(HostRoomElement& element, clsRoom& room,
                                    const AttributeNames& names, Reading& reading) {
    room.AreaType(L"");
    room.Enclosure(L"");
    room.Occupancy(L"");
    room.Geometry->Area(0.0);
    std::vector<HostAttributeValue> values;
    bool whole = reading.attempt([&] {
        if (const auto attributes = element.Attributes())
            values = attributes->Values();
    });
    for (const HostAttributeValue& value : values) {
        bool told = value.Name.has_value();
        const std::wstring text = value.Text.value_or(L"");
        if (value.Name == names.area) {
            told = value.Number.has_value();
            room.Geometry->Area(value.Number.value_or(0.0));
        } else if (value.Name == names.enclosure) {
            told = value.Text.has_value();
            room.Enclosure(text);
        } else if (value.Name == names.areaType) {
            told = value.Text.has_value();
            room.AreaType(text);
        } else if (value.Name == names.occupancy) {
            told = value.Text.has_value();
            room.Occupancy(text);
        }
        whole = whole && told;
    }
    return whole;
}

bool clsKalvero::readOutline(HostRoomElement& element, const std::wstring& path, Reading& reading) {
    if (reading.folder.empty()) {
        reading.withoutFolder = true;
        withoutOutline_.insert(path);
        return true;
    }
    Outline outline;
    const bool told = reading.attempt([&] { outline = element.Outline(); });
    withoutOutline_.erase(path);
    const bool stored = told && Attempt([&] { writePoints(path, outline); });
    if (!stored && !outline.empty())
        ++reading.outlinesNotStored;
    // The next writing would put the older outline into the drawing.
    if (!stored && !setAside(path))
        withoutOutline_.insert(path);
    return told;
}

void clsKalvero::writePoints(const std::wstring& path, const Outline& outline) {
    clsFileSytem(files_).WritePointsToGeometryFile(path, PointsOf(outline));
}

void clsKalvero::tellOf(const Reading& reading) {
    if (reading.skippedNative)
        desktop_.ShowMessage(
            {texts_.GetText(TextNumber::NoKvdRooms), texts_.GetText(TextNumber::Title)});
    if (reading.readInPart > 0)
        tell(TextNumber::RoomsReadInPart, {FromLong(reading.readInPart)});
    if (reading.withoutFolder)
        tell(TextNumber::NoProjectFolder);
    if (reading.outlinesNotStored > 0)
        tell(TextNumber::OutlinesNotStored, {FromLong(reading.outlinesNotStored)});
    const std::vector<std::wstring> parts{FromLong(reading.read), FromLong(reading.total)};
    if (reading.hostIsGone)
        tell(TextNumber::HostIsGone, parts);
    else if (reading.failure && reading.total == 0)
        tell(TextNumber::DrawingNotRead, {DescriptionText(texts_, *reading.failure)});
    else if (reading.gaveUp)
        tell(TextNumber::ReadingGivenUp, parts);
    else if (reading.ended)
        tell(TextNumber::ReadingEnded, parts);
}

} // namespace kalvrooms
