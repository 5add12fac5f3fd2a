#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "files/FilePath.h"
#include "host/clsKalvero.h"
#include "support/BridgeContext.h"
#include "support/RoomForTest.h"
#include "support/TemporaryFolder.h"

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

class Reading : public ::testing::Test {
  protected:
    Reading() {
        // The separator is a backslash on every system; elsewhere than on Windows the file name
        // simply contains it.
        std::filesystem::create_directories(folder_ / "p");
        context_.host.drawing.project.folder = (folder_ / "p").wstring();
        bridge_ = context_.bridge();
        bridge_->GetProjectName();
    }

    Element& stand(std::int32_t id, std::int32_t fileNumber, const std::wstring& name,
                   const std::wstring& storey = L"EG") {
        Element element;
        element.identity = {id, fileNumber, L"K" + std::to_wstring(fileNumber)};
        element.name = name;
        element.storey = storey;
        element.outline = {{0, 0}, {12.5, 0}, {12.5, -3}};
        context_.host.elements.push_back(element);
        return context_.host.elements.back();
    }
    std::wstring pathOf(const std::wstring& file) const {
        return context_.host.drawing.project.folder + PathSeparator + file;
    }
    std::string contents(const std::wstring& file) const { return readBytes(pathOf(file)); }
    clsRoom room(std::int32_t index) const { return roomAt(floors_, index); }
    void writeBack() { EXPECT_EQ(writeTo(*bridge_, floors_).updated, floors_.GetCountOfRooms()); }

    const TemporaryFolder folder_;
    BridgeContext context_;
    std::unique_ptr<clsKalvero> bridge_;
    clsFloors floors_;
};

TEST_F(Reading, ADrawingWithoutRoomsLeavesTheListAndShowsNothing) {
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(floors_.GetCountOfRooms(), 0);
    EXPECT_THAT(context_.prompts(), IsEmpty());
    EXPECT_THAT(context_.tableShown, ElementsAre(true));
}

TEST_F(Reading, ARoomCarriesIdentityTextsAndAttributes) {
    auto& element = stand(17, 3, L" Raum 7 ");
    element.function = L"Büro";
    element.attributes = {{L"Bodenfläche", 12.5},    {L"Umschließungsart", L"bc"},
                          {L"Flächenart 277", L"N"}, {L"Nutzen", L"HNF 2"},
                          {L"nutzen", L"andere"},    {L"Nutzen", L"HNF 3"}};
    bridge_->ImportFloorsFromKalvero(floors_);
    ASSERT_EQ(floors_.GetCountOfRooms(), 1);
    const clsRoom read = room(1);
    EXPECT_EQ(read.Name(), L"Raum 7");
    EXPECT_EQ(read.FunctionName(), L"Büro");
    EXPECT_EQ(read.StoryCode(), L"EG");
    EXPECT_EQ(read.ProjectNumber(), 4711);
    EXPECT_EQ(read.FileNumber(), 3);
    EXPECT_EQ(read.GetRoomID(), L"17-K3");
    EXPECT_EQ(read.Geometry->Area(), 12.5);
    EXPECT_EQ(read.Enclosure(), L"bc");
    EXPECT_EQ(read.AreaType(), L"N");
    EXPECT_EQ(read.Occupancy(), L"HNF 3");
    EXPECT_EQ(read.Geometry->CalculationType(), CalculationByFile);
    EXPECT_EQ(read.Geometry->CalculationValue(), pathOf(L"3-17.txt"));
    EXPECT_EQ(contents(L"3-17.txt"), "3\r\n0\t0\r\n12.5\t0\r\n12.5\t-3\r\nend\r\n");
}

TEST_F(Reading, TheHostsOwnAttributeNamesComeFirst) {
    context_.host.drawing.attributeNames = {
        {293, L"Area"}, {231, L"Walls"}, {235, L" Nutzen"}, {232, L"Type"}};
    auto& element = stand(1, 1, L"r");
    element.attributes = {{L"Area", 5.0},
                          {L"Bodenfläche", 6.0},
                          {L" Nutzen", L"VF"},
                          {L"Walls", L"a"},
                          {L"Type", L"N"}};
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(room(1).Geometry->Area(), 5);
    EXPECT_EQ(room(1).Occupancy(), L"VF");
    EXPECT_EQ(room(1).Enclosure(), L"a");
    EXPECT_EQ(room(1).AreaType(), L"N");
    EXPECT_EQ(context_.host.counts["AttributeName"], 4);
}

TEST_F(Reading, BlanksInAttributeNamesCount) {
    context_.host.drawing.attributeNames = {{232, L" Flächenart"}};
    stand(1, 1, L"r").attributes = {{L" Bodenfläche", 5.0},       {L"Bodenfläche ", 6.0},
                                    {L" Umschließungsart", L"a"}, {L"Umschließungsart ", L"b"},
                                    {L" Nutzen", L"VF"},          {L"Nutzen ", L"TF"},
                                    {L"Flächenart", L"N"}};
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(room(1).Geometry->Area(), 0);
    EXPECT_EQ(room(1).Enclosure(), L"");
    EXPECT_EQ(room(1).Occupancy(), L"");
    EXPECT_EQ(room(1).AreaType(), L"");
}

TEST_F(Reading, ARoomWithoutFloorAreaHasNone) {
    stand(1, 1, L"ohne alles");
    stand(2, 1, L"mit anderen").attributes = {{L"Nutzen", L"VF"}};
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(room(1).Geometry->Area(), 0);
    EXPECT_EQ(room(2).Geometry->Area(), 0);
    EXPECT_EQ(room(2).Occupancy(), L"VF");
}

TEST_F(Reading, AttributesThatCannotBeReadLeaveEmptyTextsAndNoArea) {
    stand(1, 1, L"r").attributes = {{L"Bodenfläche", 12.5},
                                    {L"Umschließungsart", L"bc"},
                                    {L"Flächenart 277", L"N"},
                                    {L"Nutzen", L"HNF 2"}};
    for (const char* member : {"Attributes", "Values"}) {
        floors_ = clsFloors();
        context_.host.failMember = member;
        bridge_->ImportFloorsFromKalvero(floors_);
        ASSERT_EQ(floors_.GetCountOfRooms(), 1) << member;
        EXPECT_EQ(room(1).Name(), L"r") << member;
        EXPECT_EQ(room(1).Geometry->Area(), 0) << member;
        EXPECT_EQ(room(1).Enclosure(), L"") << member;
        EXPECT_EQ(room(1).AreaType(), L"") << member;
        EXPECT_EQ(room(1).Occupancy(), L"") << member;
    }
}

TEST_F(Reading, TheMessageAboutNativeDrawingsComesAfterTheHourglass) {
    stand(1, 0, L"kvd");
    std::size_t shapes = 0;
    context_.desktop().AnswerNext([&](const Gui::Message&) {
        EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
        shapes = context_.desktop().PointerHistory().size();
        return Gui::Answer::Ok;
    });
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_THAT(context_.prompts(), SizeIs(1));
    EXPECT_THAT(context_.desktop().PointerHistory(), ::testing::Contains(Gui::HourglassPointer));
    // The indicator has ended and not merely made a break.
    EXPECT_EQ(context_.desktop().PointerHistory().size(), shapes);
}

TEST_F(Reading, ElementsOfNativeDrawingsAreSkippedWithOneMessage) {
    stand(1, 1, L"a");
    stand(2, 0, L"kvd");
    stand(3, -5, L"kvd");
    stand(4, 2, L"b");
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(floors_.GetCountOfRooms(), 2);
    EXPECT_THAT(context_.prompts(),
                ElementsAre(L" Räume aus KVD-Dateien können nicht gelesen werden."));
    EXPECT_EQ(context_.desktop().Messages()[0].Title, L" Quartino");
}

TEST_F(Reading, StoreysFollowTheFirstRoomAndSpellingsShareOne) {
    stand(1, 1, L"a", L"OG");
    stand(2, 1, L"b", L"EG");
    stand(3, 1, L"c", L"eg");
    stand(4, 1, L"d", L"");
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(floors_.GetCountOfFloors(), 3);
    EXPECT_EQ(room(1).Name(), L"a");
    EXPECT_EQ(room(3).StoryCode(), L"eg");
    EXPECT_EQ(room(4).StoryCode(), L"unbelegt");
}

TEST_F(Reading, ABlockedHostEndsTheReadingBeforeAnyRoom) {
    stand(1, 1, L"a");
    context_.host.session.state.CreationError(L"Please terminate the menue interaction first.");
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(floors_.GetCountOfRooms(), 0);
    EXPECT_THAT(context_.tableShown, IsEmpty());
    EXPECT_THAT(context_.prompts(), ElementsAre(L" Bitte beenden Sie die Menüaktion."));
    EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
}

TEST_F(Reading, ThePointerIsFreeDuringTheHostsMessage) {
    context_.host.session.state.CreationError(L"Sorry, any Kvd or free plan is open");
    bool asked = false;
    context_.desktop().AnswerNext([&](const Gui::Message&) {
        asked = true;
        EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
        return Gui::Answer::Ok;
    });
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_TRUE(asked);
}

TEST_F(Reading, APointFileThatCannotBeWrittenLeavesTheRoomItsData) {
    context_.host.drawing.project.folder = (folder_ / "gone" / "deep").wstring();
    bridge_->GetProjectName();
    stand(17, 3, L"a").function = L"Büro";
    stand(18, 3, L"b");
    bridge_->ImportFloorsFromKalvero(floors_);
    ASSERT_EQ(floors_.GetCountOfRooms(), 2);
    EXPECT_EQ(room(1).FunctionName(), L"Büro");
    EXPECT_EQ(room(1).Geometry->CalculationValue(), pathOf(L"3-17.txt"));
    EXPECT_THAT(context_.prompts(), ElementsAre(StartsWith(L"Umrisse, die nicht gespeichert werden "
                                                           L"konnten: 2. ")));
}

TEST_F(Reading, AnOutlineThatCannotBeReadMovesTheOlderOneAside) {
    stand(17, 3, L"a");
    bridge_->ImportFloorsFromKalvero(floors_);
    const std::string older = contents(L"3-17.txt");
    EXPECT_NE(older, "");
    std::ofstream(std::filesystem::path(pathOf(L"3-17.txt.bak"))) << "oldest";
    for (const bool outline : {false, true}) {
        floors_ = clsFloors();
        // Refused by the host, or none at all.
        context_.host.failMember = outline ? "" : "Outline";
        context_.host.elements[0].outline.clear();
        bridge_->ImportFloorsFromKalvero(floors_);
        EXPECT_EQ(floors_.GetCountOfRooms(), 1);
        EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(pathOf(L"3-17.txt"))));
        EXPECT_EQ(contents(L"3-17.txt.bak"), older);
    }
    // One that is put there afterwards counts.
    std::ofstream(std::filesystem::path(pathOf(L"3-17.txt"))) << older;
    writeBack();
    EXPECT_THAT(context_.host.elements[0].outline, SizeIs(3));
}

TEST_F(Reading, AFolderWithAPointFilesNameIsNotTouched) {
    stand(17, 3, L"a");
    std::filesystem::create_directory(pathOf(L"3-17.txt"));
    context_.host.failMember = "Outline";
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_TRUE(std::filesystem::is_directory(pathOf(L"3-17.txt")));
    EXPECT_FALSE(std::filesystem::exists(pathOf(L"3-17.txt.bak")));
}

TEST_F(Reading, AnOlderOutlineThatCannotBeMovedAsideDoesNotGetIntoTheDrawing) {
    stand(17, 3, L"a");
    bridge_->ImportFloorsFromKalvero(floors_);
    std::filesystem::create_directories(std::filesystem::path(pathOf(L"3-17.txt.bak")) / "full");
    const Outline moved{{5, 5}, {9, 5}, {9, 9}};
    context_.host.elements[0].outline = moved;
    floors_ = clsFloors();
    context_.host.failMember = "Outline";
    bridge_->ImportFloorsFromKalvero(floors_);
    context_.host.failMember.clear();
    writeBack();
    EXPECT_EQ(context_.host.elements[0].outline, moved);
    // Once the outline is known, its file counts again.
    floors_ = clsFloors();
    bridge_->ImportFloorsFromKalvero(floors_);
    writeBytes(pathOf(L"3-17.txt"), "3\r\n0\t0\r\n7\t0\r\n7\t7\r\nend\r\n");
    writeBack();
    EXPECT_EQ(context_.host.elements[0].outline[1], (Point{7, 0}));
}

TEST_F(Reading, WhatIsReadAndWrittenBackUneditedLeavesTheDrawingAsItIs) {
    Element& element = stand(17, 3, std::wstring(40, L'n'), std::wstring(33, L's'));
    element.outline = {
        {-0.365, 6.1E-17}, {1.0 / 3.0, 1.8E-15}, {1E20, -0.5}, {12345.6789012345, 3}};
    element.attributes = {
        {L"Bodenfläche", 12.5}, {L"Umschließungsart", L"bc"}, {L"Nutzen", L"HNF 2"}};
    context_.host.drawing.floorArea = [](const Element&) { return 12.5; };
    const Element before = element;
    bridge_->ImportFloorsFromKalvero(floors_);
    const int read = context_.host.counts["Outline"];
    writeBack();
    const Element& after = context_.host.elements[0];
    EXPECT_EQ(after.outline, before.outline);
    EXPECT_EQ(after.name, before.name);
    EXPECT_EQ(after.storey, before.storey);
    for (std::size_t i = 0; i < before.attributes.size(); ++i)
        EXPECT_EQ(after.attributes[i].value, before.attributes[i].value);
    // One call more and one less.
    EXPECT_EQ(context_.host.counts["Outline"], read + 1);
    EXPECT_EQ(context_.host.counts["SetOutline"], 0);
    EXPECT_THAT(context_.prompts(), IsEmpty());
}

TEST_F(Reading, RoomsReadInPartAreToldOnceAndLoseNothingInTheDrawing) {
    for (int i = 1; i <= 3; ++i) {
        Element& element = stand(i, 1, L"r", L"EG");
        element.function = L"Büro";
        element.attributes = {{L"Nutzen", L"VF"}, {L"Umschließungsart", L"a"}};
    }
    context_.host.onCall = [this](const std::string& member) {
        const int n = context_.host.counts[member];
        if ((member == "Values" && n == 1) || (member == "Outline" && n == 2))
            throw RuntimeError(RuntimeError::AutomationError, L"failure of a test");
    };
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_THAT(context_.prompts(), ElementsAre(::testing::StartsWith(
                                        L"Räume, die nicht vollständig gelesen werden konnten: "
                                        L"2. ")));
    for (std::int32_t id = 2; id <= 4; ++id) {
        std::shared_ptr<clsRoom> stored;
        floors_.GetRoomByID(L"EG", id, stored);
        stored->Occupancy(L"HNF 1");
        stored->FunctionName(id == 3 ? L"Lager" : L"");
    }
    writeBack();
    const auto& elements = context_.host.elements;
    EXPECT_EQ(elements[0].attributes[0].TextValue(), L"VF");
    EXPECT_EQ(elements[0].attributes[1].TextValue(), L"a");
    EXPECT_EQ(elements[0].function, L"Büro");
    EXPECT_EQ(elements[1].attributes[0].TextValue(), L"VF");
    // What was typed goes into the drawing.
    EXPECT_EQ(elements[1].function, L"Lager");
    EXPECT_EQ(elements[2].attributes[0].TextValue(), L"HNF 1");
    EXPECT_EQ(elements[2].function, L"");
    // Read whole, they are rooms like all others.
    floors_ = clsFloors();
    bridge_->ImportFloorsFromKalvero(floors_);
    std::shared_ptr<clsRoom> stored;
    floors_.GetRoomByID(L"EG", 2, stored);
    EXPECT_EQ(stored->Occupancy(), L"VF");
    stored->Occupancy(L"HNF 1");
    writeBack();
    EXPECT_EQ(elements[0].attributes[0].TextValue(), L"HNF 1");
    EXPECT_THAT(context_.prompts(), SizeIs(1));
}

TEST_F(Reading, ARoomIsReadInPartWhenAnAttributeDoesNotTellItsValue) {
    stand(1, 1, L"r").attributes = {{L"Bodenfläche", 12.5},
                                    {L"Umschließungsart", L"a"},
                                    {L"Flächenart 277", L"N"},
                                    {L"Nutzen", L"VF"},
                                    {L"Farbe", L"rot"}};
    std::size_t told = 0;
    for (std::size_t at = 0; at < 5; ++at) {
        context_.host.telling = [at](std::vector<HostAttributeValue>& values) {
            values[at].Number.reset();
            values[at].Text.reset();
        };
        bridge_->ImportFloorsFromKalvero(floors_);
        // The last is none of a room's.
        EXPECT_THAT(context_.prompts(), SizeIs(at < 4 ? ++told : told)) << at;
    }
    // But one without a name may be.
    context_.host.telling = [](auto& values) { values[4].Name.reset(); };
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_THAT(context_.prompts(), SizeIs(told + 1));
}

TEST_F(Reading, AnElementThatDoesNotTellItsFileIsNoNativeOne) {
    stand(1, 1, L"a");
    stand(2, 1, L"b");
    context_.host.onCall = [this](const std::string& member) {
        if (member == "Record" && context_.host.counts[member] == 1)
            throw RuntimeError(RuntimeError::AutomationError, L"failure of a test");
    };
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(floors_.GetCountOfRooms(), 1);
    EXPECT_THAT(context_.prompts(), ElementsAre(::testing::HasSubstr(L"konnten: 1. ")));
}

TEST_F(Reading, TheWalkEndsWithTheHost) {
    for (int i = 1; i <= 5; ++i)
        stand(i, 1, L"r");
    std::size_t told = 0;
    for (const char* member : {"Item", "Record", "Values", "Outline"}) {
        floors_ = clsFloors();
        context_.host.counts.clear();
        bool dead = false;
        context_.host.onCall = [&](const std::string& called) {
            dead = dead || (called == member && context_.host.counts[called] == 3);
            if (dead && called != "CreateHostApplication")
                throw RuntimeError(RuntimeError::ServerUnavailable);
        };
        bridge_->ImportFloorsFromKalvero(floors_);
        context_.host.onCall = nullptr;
        EXPECT_EQ(floors_.GetCountOfRooms(), 2) << member;
        EXPECT_EQ(context_.host.counts["Item"], 3) << member;
        ASSERT_THAT(context_.prompts(), SizeIs(++told)) << member;
        EXPECT_EQ(context_.prompts().back(),
                  L"Die CAD-Anwendung antwortet nicht mehr. Gelesene Räume: 2 von 5.");
    }
}

TEST_F(Reading, TwentyElementsInARowThatCannotBeTakenEndTheWalk) {
    for (int i = 1; i <= 60; ++i)
        stand(i, 1, L"r");
    context_.host.onCall = [this](const std::string& member) {
        const int n = context_.host.counts[member];
        if (member == "Item" && n != 1 && n != 21)
            throw RuntimeError(RuntimeError::AutomationError, L"failure of a test");
    };
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(context_.host.counts["Item"], 41);
    EXPECT_EQ(floors_.GetCountOfRooms(), 2);
    ASSERT_THAT(context_.prompts(), SizeIs(2));
    EXPECT_THAT(context_.prompts()[0], StartsWith(L"Räume, die nicht vollständig gelesen werden "
                                                  L"konnten: 19."));
    EXPECT_EQ(context_.prompts()[1], L"Zu viele Räume hintereinander konnten nicht gelesen "
                                     L"werden. Gelesene Räume: 2 von 60.");
}

TEST_F(Reading, ADrawingThatCannotBeReadAtAllIsNotTakenForAnEmptyOne) {
    stand(17, 1, L"r");
    for (const char* member : {"GetDrawingService", "CreateRoomFilter", "GetElements", "Count"}) {
        context_.host.failMember = member;
        floors_ = clsFloors();
        const std::size_t before = context_.prompts().size();
        bridge_->ImportFloorsFromKalvero(floors_);
        ASSERT_THAT(context_.prompts(), SizeIs(before + 1)) << member;
        EXPECT_EQ(context_.prompts().back(),
                  L"Das Teilbild konnte nicht gelesen werden: failure of a test");
    }
}

TEST_F(Reading, ProgressNamesEveryRoomAndEscapeEndsTheReadingBetweenTwo) {
    for (int i = 1; i <= 3; ++i)
        stand(i, 1, L"r");
    context_.desktop().PressEscape(); // before: meant for something else
    context_.host.onCall = [this](const std::string& member) {
        if (member == "Record" && context_.host.counts[member] == 2)
            context_.desktop().PressEscape();
    };
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(floors_.GetCountOfRooms(), 2);
    EXPECT_THAT(context_.tableShown, ElementsAre(true));
    EXPECT_THAT(context_.progress, ElementsAre(L"Raum 1 von 3 wird gelesen (Esc beendet)",
                                               L"Raum 2 von 3 wird gelesen (Esc beendet)", L""));
    EXPECT_THAT(context_.prompts(),
                ElementsAre(L"Das Lesen wurde beendet. Gelesene Räume: 2 von 3."));
    EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
}

TEST_F(Reading, TheProjectFolderIsAskedAnew) {
    std::filesystem::create_directories(folder_ / "q");
    context_.host.drawing.project.folder = (folder_ / "q").wstring();
    stand(17, 3, L"a");
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_NE(contents(L"3-17.txt"), "");
    EXPECT_EQ(room(1).Geometry->FileName(), pathOf(L"3-17.txt"));
}

TEST_F(Reading, WithoutAProjectFolderNoPointFileIsWritten) {
    // Without a folder the path lies in the root, where no other run may have a file like that.
    const auto id = static_cast<std::int32_t>(std::random_device()() / 4);
    stand(id, 3, L"a");
    stand(id + 1, 3, L"b");
    const Outline before = context_.host.elements[0].outline;
    for (const bool failing : {true, false}) {
        floors_ = clsFloors();
        context_.host.failMember = failing ? "ProjectFolder" : "";
        if (!failing)
            context_.host.drawing.project.folder.clear();
        bridge_->ImportFloorsFromKalvero(floors_);
        ASSERT_EQ(floors_.GetCountOfRooms(), 2);
        EXPECT_EQ(room(1).Geometry->Info(), L"polygonal");
        EXPECT_TRUE(std::filesystem::is_empty(folder_ / "p"));
        EXPECT_FALSE(std::filesystem::exists(room(1).Geometry->FileName()));
        EXPECT_THAT(context_.prompts().back(),
                    L"Der Projektordner ist nicht bekannt. Die Räume wurden ohne ihre Umrisse "
                    L"gelesen.");
        EXPECT_THAT(context_.prompts(), SizeIs(failing ? 1 : 2));
    }
    // What happens to lie there is not the room's outline, wherever the test may write it.
    const std::filesystem::path stray(room(1).Geometry->FileName());
    std::ofstream(stray) << "3\n0\t0\n1\t0\n1\t1\n";
    writeBack();
    std::error_code ignored;
    std::filesystem::remove(stray, ignored);
    EXPECT_EQ(context_.host.elements[0].outline, before);
    EXPECT_THAT(context_.host.elements, SizeIs(2));
}

TEST_F(Reading, AFolderThatNoFileCanLieInCostsNoRoomAndNoOutline) {
    stand(17, 3, L"a");
    const Outline before = context_.host.elements[0].outline;
    context_.host.drawing.project.folder = std::wstring(1, wchar_t{0xD800}); // no Unicode
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_THAT(context_.prompts(), ElementsAre(StartsWith(L"Umrisse, die nicht gespeichert werden "
                                                           L"konnten: 1. ")));
    ASSERT_EQ(floors_.GetCountOfRooms(), 1);
    writeBack();
    EXPECT_EQ(context_.host.elements[0].outline, before);
}

TEST_F(Reading, ABrokenConnectionIsReplacedByTheOneThatTheCheckHasMade) {
    stand(17, 3, L"a");
    context_.host.failNumber = 70;
    context_.host.calls = 0;
    context_.host.failAt = 1;
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(floors_.GetCountOfRooms(), 1);
    EXPECT_THAT(context_.prompts(), IsEmpty());
    // So is one that breaks later.
    floors_ = clsFloors();
    context_.host.counts.clear();
    context_.host.onCall = [this](const std::string& member) {
        if (member == "GetElements" && context_.host.counts[member] == 1)
            throw RuntimeError(RuntimeError::ServerUnavailable);
    };
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(floors_.GetCountOfRooms(), 1);
    // What the new one refuses is asked of no other.
    context_.host.counts.clear();
    context_.host.onCall = nullptr;
    context_.host.failMember = "GetElements";
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(context_.host.counts["GetElements"], 1);
}

TEST_F(Reading, AConnectionThatWasMadeAnewIsNotTakenForBroken) {
    context_.host.onCall = [this](const std::string& member) {
        if (member == "GetDrawingService" && context_.host.counts[member] == 1)
            throw RuntimeError(RuntimeError::ServerUnavailable);
        if (member == "GetElements")
            throw RuntimeError(RuntimeError::AutomationError);
    };
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(context_.host.counts["GetElements"], 1);
}

TEST_F(Reading, WhicheverCallFailsTheWalkGoesOnAndThePointerIsBack) {
    for (int i = 1; i <= 3; ++i)
        stand(i, 1, L"r").attributes = {{L"Nutzen", L"VF"}};
    context_.host.calls = 0;
    bridge_->ImportFloorsFromKalvero(floors_);
    const int calls = context_.host.calls;
    ASSERT_GT(calls, 15);
    for (int n = 1; n <= calls; ++n) {
        floors_ = clsFloors();
        context_.host.calls = 0;
        context_.host.failAt = n;
        bridge_->ImportFloorsFromKalvero(floors_);
        EXPECT_LE(floors_.GetCountOfRooms(), 3) << n;
        EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer) << n;
        context_.host.failAt = 0;
        floors_ = clsFloors();
        bridge_->ImportFloorsFromKalvero(floors_);
        EXPECT_EQ(floors_.GetCountOfRooms(), 3) << n;
    }
    bridge_.reset();
    EXPECT_EQ(context_.host.LiveObjects(), 0);
}

TEST_F(Reading, CallsGrowWithElementsOnly) {
    const auto callsOf = [this](int elements) {
        context_.host.elements.clear();
        for (int i = 1; i <= elements; ++i)
            stand(i, 1, L"r").attributes = {{L"Nutzen", L"VF"}, {L"a", L""}, {L"b", L""}};
        floors_ = clsFloors();
        context_.host.calls = 0;
        bridge_->ImportFloorsFromKalvero(floors_);
        return context_.host.calls;
    };
    const int none = callsOf(0);
    EXPECT_LE(none, 16);
    EXPECT_EQ(callsOf(100), none + 100 * 5);
}

TEST_F(Reading, WhatWasReadIsRecognisedAndUpdatedByTheNextWriting) {
    stand(17, 3, L"a");
    stand(18, 3, L"b");
    bridge_->ImportFloorsFromKalvero(floors_);
    std::shared_ptr<clsRoom> stored;
    floors_.GetRoomByID(L"EG", 2, stored);
    ASSERT_TRUE(stored);
    stored->Name(L"umbenannt");
    const Outline before = context_.host.elements[0].outline;
    const ExportCounts counts = writeTo(*bridge_, floors_);
    EXPECT_EQ(counts.updated, 2);
    EXPECT_EQ(counts.atPosition, 0);
    EXPECT_EQ(counts.placed, 0);
    ASSERT_THAT(context_.host.elements, SizeIs(2));
    EXPECT_EQ(context_.host.elements[0].name, L"umbenannt");
    EXPECT_EQ(context_.host.elements[0].outline, before);
}

TEST_F(Reading, RoomsCreatedByOneWritingAreUpdatedByTheNextOnceTheyWereRead) {
    clsRoom fresh;
    fresh.Name(L"neu");
    floors_.AddRooms(fresh, 3);
    EXPECT_EQ(writeTo(*bridge_, floors_).placed, 3);
    floors_ = clsFloors();
    bridge_->ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(floors_.GetCountOfRooms(), 3);
    const ExportCounts counts = writeTo(*bridge_, floors_);
    EXPECT_EQ(counts.updated, 3);
    EXPECT_EQ(counts.placed, 0);
    EXPECT_THAT(context_.host.elements, SizeIs(3));
}

class Project : public ::testing::Test {
  protected:
    BridgeContext context_;
};

TEST_F(Project, GivesItsNameTrimmedAndItsFolderOnlyAfterwards) {
    context_.host.drawing.project.name = L"  Schule am Park ";
    const auto bridge = context_.bridge();
    EXPECT_EQ(bridge->GetProjectPath(), L"");
    EXPECT_EQ(bridge->GetProjectName(), L"Schule am Park");
    EXPECT_EQ(bridge->GetProjectPath(), L"C:\\Projekte");
    EXPECT_EQ(context_.host.counts["UpdateProjectInfo"], 1);
    EXPECT_EQ(context_.host.counts["GetProject"], 2);
}

TEST_F(Project, WithoutNameItIsRaumProgramm) {
    context_.host.drawing.project.name = L"   ";
    const auto bridge = context_.bridge();
    EXPECT_EQ(bridge->GetProjectName(), L"RaumProgramm");
}

TEST_F(Project, HostErrorsAreIgnored) {
    const auto bridge = context_.bridge();
    for (const char* member : {"UpdateProjectInfo", "GetProject", "ProjectName", "ProjectFolder"}) {
        context_.host.failMember = member;
        const std::wstring name = bridge->GetProjectName();
        EXPECT_TRUE(name == L"RaumProgramm" || name == L"Schule") << member;
    }
    context_.host.failMember = "UpdateProjectInfo";
    EXPECT_EQ(bridge->GetProjectName(), L"Schule");
}

TEST_F(Project, AHostThatWasStartedAgainIsAsked) {
    const auto bridge = context_.bridge();
    context_.host.failNumber = RuntimeError::ServerUnavailable;
    context_.host.calls = 0;
    context_.host.failAt = 1;
    EXPECT_EQ(bridge->GetProjectName(), L"Schule");
}

TEST_F(Project, AHostThatCannotBeReachedAtStartIsAskedAgainLater) {
    context_.host.session.state.CreationError(L"not yet");
    const auto bridge = context_.bridge();
    EXPECT_EQ(bridge->GetProjectName(), L"RaumProgramm");
    context_.host.session.state.CreationError(L"");
    EXPECT_EQ(bridge->GetProjectName(), L"Schule");
}

} // namespace
} // namespace kalvrooms::testing
