#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "host/clsKalvero.h"
#include "model/NumberText.h"
#include "support/BridgeContext.h"
#include "support/TemporaryFolder.h"

namespace kalvrooms::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class Writing : public ::testing::Test {
  protected:
    Writing() : folder_(temporaryFolder("quartino-writing")) {
        std::filesystem::create_directories(folder_);
    }
    ~Writing() override { std::filesystem::remove_all(folder_); }

    struct Counts {
        std::int32_t placed = 0, updated = 0, setDown = 0;
    };
    Counts write(bool block = true, double dx = 1.0, double dy = 1.0, bool modify = true) {
        Counts counts;
        bridge_->ExportFloorsToKalvero(floors_, modify, block, dx, dy, counts.placed,
                                       counts.updated, counts.setDown);
        return counts;
    }
    void add(const std::wstring& name, const std::wstring& type, const std::wstring& value,
             double area, const std::wstring& storey = L"EG", const std::wstring& key = L"") {
        clsRoom room;
        room.Name(name);
        room.StoryCode(storey);
        room.SetRoomID(key);
        room.Geometry->Area(area);
        room.Geometry->SetTypeAndValue(type, value);
        floors_.AddRooms(room, 1);
    }
    void addSquare(const std::wstring& name, double area, const std::wstring& storey = L"EG") {
        add(name, CalculationByRatio, L"1", area, storey);
    }
    std::wstring pointFile(const std::string& name, const Outline& points) {
        const auto path = folder_ / name;
        std::ofstream file(path, std::ios::binary);
        file << points.size() << "\r\n";
        for (const Point& point : points)
            file << point.x << '\t' << point.y << "\r\n";
        file << "end\r\n";
        return path.wstring();
    }
    void stand(std::int32_t id, const std::wstring& fileId, const Outline& outline,
               std::vector<ScriptedAttribute> attributes = {}) {
        ScriptedElement element;
        element.identity = {id, 3, fileId};
        element.name = L"old";
        element.outline = outline;
        element.attributes = std::move(attributes);
        context_.host.drawing.push_back(element);
    }

    std::filesystem::path folder_;
    BridgeContext context_;
    std::unique_ptr<clsKalvero> bridge_ = std::make_unique<clsKalvero>(context_);
    clsFloors floors_;
};

TEST_F(Writing, AnEmptyListIsRefusedWithItsMessage) {
    write();
    ASSERT_THAT(context_.prompts(),
                ElementsAre(L" Im Quartinoen wurden noch keine Räume eingeben."));
    EXPECT_EQ(context_.desktop().Messages()[0].Title, L" Quartino");
    EXPECT_EQ(context_.desktop().Messages()[0].Symbol, Gui::Message::Icon::None);
    EXPECT_EQ(context_.host.counts["GetDrawingService"], 0);
}

TEST_F(Writing, OneHundredAndFiftyRoomsAreWritten) {
    for (int i = 0; i < 150; ++i)
        addSquare(L"R", 16);
    EXPECT_EQ(write().setDown, 150);
    EXPECT_THAT(context_.prompts(), IsEmpty());
}

TEST_F(Writing, OneHundredAndFiftyOneRoomsAreRefusedWithAStopMessage) {
    for (int i = 0; i < 151; ++i)
        addSquare(L"R", 16);
    EXPECT_EQ(write().setDown, 0);
    ASSERT_THAT(
        context_.prompts(),
        ElementsAre(L" Die Raumliste besteht aus mehr als 150 Räumen. Es können maximal 150 "
                    L"Räume übertragen werden."));
    EXPECT_EQ(context_.desktop().Messages()[0].Symbol, Gui::Message::Icon::Stop);
    EXPECT_THAT(context_.host.drawing, IsEmpty());
    EXPECT_THAT(context_.input, IsEmpty());
}

TEST_F(Writing, AHostInAMenuActionIsNotTouched) {
    addSquare(L"1", 16);
    context_.host.creationError = L"Please terminate the menue interaction first.";
    write();
    EXPECT_THAT(context_.prompts(), ElementsAre(L" Bitte beenden Sie die Menüaktion."));
    EXPECT_EQ(context_.desktop().Messages()[0].Title, L" Quartino");
    EXPECT_EQ(context_.host.applies, 0);
    EXPECT_THAT(context_.input, IsEmpty());
    EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
}

TEST_F(Writing, AHostWithKvdFilesOpenIsNotTouched) {
    addSquare(L"1", 16);
    context_.host.creationError = L"Sorry, any Kvd or free plan is open";
    write();
    EXPECT_THAT(context_.prompts(),
                ElementsAre(L" KVD-Dateien können mit dem Quartino nicht bearbeitet werden. Bitte "
                            L"schließen Sie alle KVD-Dateien."));
    EXPECT_EQ(context_.host.applies, 0);
}

TEST_F(Writing, AWordAtTheVeryStartOfTheHostsDescriptionCountsAsAbsent) {
    addSquare(L"1", 16);
    context_.host.creationError = L"any Kvd or free plan is open";
    EXPECT_EQ(write().setDown, 1);
    context_.host.creationError = L"menue interaction, please terminate";
    EXPECT_EQ(write().setDown, 1);
    context_.host.creationError = L"a menue interaction";
    EXPECT_EQ(write().setDown, 1);
    EXPECT_THAT(context_.prompts(), IsEmpty());
}

TEST_F(Writing, InputIsOffAndThePointerBusyWhileTheHostIsCalled) {
    addSquare(L"1", 16);
    bool seen = false;
    context_.host.onCall = [&](const std::string& member) {
        if (member != "CreateRoomElement")
            return;
        seen = true;
        EXPECT_FALSE(context_.inputEnabled);
        EXPECT_EQ(context_.desktop().MousePointer(), Gui::HourglassPointer);
    };
    write();
    EXPECT_TRUE(seen);
    EXPECT_THAT(context_.input, ElementsAre(false, true));
    EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
}

TEST_F(Writing, ThePointerIsFreeWhileTheUserSetsRoomsDown) {
    addSquare(L"1", 16);
    context_.host.onCall = [&](const std::string& member) {
        if (member == "PlaceElements") {
            EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
        }
    };
    EXPECT_EQ(write().setDown, 1);
}

TEST_F(Writing, ARoomFoundByItsIdentityIsUpdatedInPlace) {
    stand(16, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    stand(17, L"K3", {{5, 5}, {6, 5}, {6, 6}});
    const Outline outline{{10, 20}, {14, 20}, {14, 26}};
    add(L"neu", CalculationByFile, pointFile("p.txt", outline), 12, L"EG", L"17- K3 ");
    const Counts counts = write();
    EXPECT_EQ(counts.updated, 1);
    EXPECT_EQ(counts.placed, 0);
    EXPECT_EQ(counts.setDown, 0);
    ASSERT_THAT(context_.host.drawing, SizeIs(2));
    EXPECT_EQ(context_.host.drawing[0].name, L"old");
    EXPECT_EQ(context_.host.drawing[1].name, L"neu");
    EXPECT_EQ(context_.host.drawing[1].outline, outline);
    EXPECT_EQ(context_.host.drawing[1].colour, context_.colorOld);
    EXPECT_EQ(context_.host.changeCalls, 1);
    EXPECT_EQ(context_.host.addCalls, 0);
    EXPECT_EQ(context_.host.applies, 2);
}

TEST_F(Writing, AnUpdatedRoomWithoutPointsKeepsItsOutline) {
    const Outline outline{{0, 0}, {1, 0}, {1, 1}};
    stand(17, L"K3", outline);
    add(L"neu", CalculationByFile, L"missing.txt", 12, L"EG", L"17-K3");
    EXPECT_EQ(write().updated, 1);
    EXPECT_EQ(context_.host.drawing[0].outline, outline);
    EXPECT_EQ(context_.host.drawing[0].name, L"neu");
}

TEST_F(Writing, WithoutPermissionStandingRoomsStayAsTheyAre) {
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    add(L"neu", CalculationByFile, L"missing.txt", 12, L"EG", L"17-K3");
    const Counts counts = write(true, 1, 1, false);
    EXPECT_EQ(counts.updated, 0);
    EXPECT_EQ(counts.setDown, 0);
    EXPECT_EQ(context_.host.drawing[0].name, L"old");
    EXPECT_THAT(context_.host.drawing, SizeIs(1));
}

TEST_F(Writing, ARoomWithPointsThatTheDrawingLacksIsCreatedWhereTheyAre) {
    const Outline outline{{10, 20}, {14, 20}, {14, 26}};
    add(L"neu", CalculationByFile, pointFile("p.txt", outline), 12, L"EG", L"99-K9");
    const Counts counts = write();
    EXPECT_EQ(counts.placed, 1);
    EXPECT_EQ(counts.updated, 0);
    EXPECT_EQ(counts.setDown, 0);
    ASSERT_THAT(context_.host.drawing, SizeIs(1));
    EXPECT_EQ(context_.host.drawing[0].outline, outline);
    EXPECT_EQ(context_.host.drawing[0].colour, context_.colorOld);
    EXPECT_THAT(context_.host.placings, IsEmpty());
}

TEST_F(Writing, ARoomWhosePointsAreMissingIsSetDownAsASquare) {
    add(L"neu", CalculationByFile, L"missing.txt", 25);
    const Counts counts = write();
    EXPECT_EQ(counts.placed, 0);
    EXPECT_EQ(counts.setDown, 1);
    ASSERT_THAT(context_.host.placings, SizeIs(1));
    const Outline& square = context_.host.placings[0].elements[0].outline;
    EXPECT_DOUBLE_EQ(square[1].x - square[0].x, 5);
    EXPECT_DOUBLE_EQ(square[2].y - square[1].y, 5);
    EXPECT_EQ(context_.host.drawing[0].colour, context_.colorNew);
}

// The look-up in the modification list goes by the storey-local ID alone.
TEST_F(Writing, ARoomOfAnotherStoreyWithTheSameIdIsLaidOutAsASquareToo) {
    add(L"a", CalculationByFile, L"missing.txt", 25, L"EG");
    add(L"b", CalculationByDx, L"2", 16, L"OG");
    EXPECT_EQ(write().setDown, 2);
    const Outline& second = context_.host.placings[0].elements[1].outline;
    EXPECT_DOUBLE_EQ(second[1].x - second[0].x, 4);
}

TEST_F(Writing, AWrittenRoomIsNotDrawnAgainBecauseAnotherStoreysRoomHasItsId) {
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    add(L"a", CalculationByFile, L"missing.txt", 25, L"EG");
    add(L"b", CalculationByFile, L"missing.txt", 25, L"OG", L"17-K3");
    const Counts counts = write();
    EXPECT_EQ(counts.updated, 1);
    EXPECT_EQ(counts.setDown, 1);
    EXPECT_THAT(context_.host.drawing, SizeIs(2));
}

TEST_F(Writing, RoomsSetDownBeforeTheUserGivesUpStay) {
    addSquare(L"1", 16);
    addSquare(L"2", 16);
    addSquare(L"3", 16);
    int placings = 0;
    context_.host.onCall = [&](const std::string& member) {
        if (member == "PlaceElements" && ++placings == 3)
            throw RuntimeError(RuntimeError::AutomationError, L"cancelled");
    };
    EXPECT_THROW(write(false), RuntimeError);
    EXPECT_THAT(context_.host.drawing, SizeIs(2));
    EXPECT_TRUE(context_.inputEnabled);
    EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
}

TEST_F(Writing, ARoomWithoutPointsAndAreaIsNotDrawn) {
    add(L"a", CalculationByFile, L"missing.txt", 0);
    EXPECT_EQ(write().setDown, 0);
    EXPECT_THAT(context_.host.drawing, IsEmpty());
}

TEST_F(Writing, ABlockHasTwoRowsWithAFreeStripBetweenThem) {
    for (int i = 0; i < 4; ++i)
        addSquare(L"R", 16);
    const double dx = 2, dy = 3;
    EXPECT_EQ(write(true, dx, dy).setDown, 4);
    ASSERT_THAT(context_.host.placings, SizeIs(1));
    EXPECT_EQ(context_.host.placings[0].mode, 10);
    // Limit: 1.5 gaps of 2 m and half of 16 m = 11 m; the second room ends its row at 6 + 2 <= 11,
    // the third would start at 12.
    std::vector<Point> corners;
    for (const ScriptedElement& element : context_.host.placings[0].elements)
        corners.push_back(element.outline[0]);
    EXPECT_THAT(corners, ElementsAre(Point{0, 1.5}, Point{6, 1.5}, Point{0, -5.5}, Point{6, -5.5}));
}

TEST_F(Writing, TheSumOfSidesIsRoundedAfterEachRoomHalfToEven) {
    // 0.5 + 0 -> 0, again and again: the limit stays half of the gaps only.
    for (int i = 0; i < 3; ++i)
        add(L"R", CalculationByDx, L"0.5", 1);
    const auto restore = [] { HandInUserLocale(nullptr); };
    HandInUserLocale([] { return NumberLocale::Point(); });
    write(true, 1.0, 1.0);
    restore();
    // Limit = 1 * 1 + 0 / 2 = 1: the first room fits (0 + 1 <= 1), the second does not.
    const auto& elements = context_.host.placings[0].elements;
    EXPECT_DOUBLE_EQ(elements[0].outline[0].y, 0.5);
    EXPECT_DOUBLE_EQ(elements[1].outline[0].y, -2.5);
    EXPECT_DOUBLE_EQ(elements[1].outline[0].x, 0);
    EXPECT_DOUBLE_EQ(elements[2].outline[0].y, -2.5);
    EXPECT_DOUBLE_EQ(elements[2].outline[0].x, 1.5);
}

TEST_F(Writing, SingleRoomsAreHandedOverOneByOneAtTheOrigin) {
    addSquare(L"1", 16);
    add(L"2", CalculationByDx, L"2", 16);
    EXPECT_EQ(write(false).setDown, 2);
    ASSERT_THAT(context_.host.placings, SizeIs(2));
    for (const ScriptedPlacing& placing : context_.host.placings) {
        EXPECT_EQ(placing.mode, 10);
        ASSERT_THAT(placing.elements, SizeIs(1));
        EXPECT_EQ(placing.elements[0].outline[0], (Point{0, 0}));
    }
    EXPECT_EQ(context_.host.placings[1].elements[0].outline[2], (Point{2, 8}));
}

TEST_F(Writing, TextsAreCutAt32CharactersWithOneWarningPerKindAndRun) {
    const std::wstring name(40, L'n');
    for (int i = 0; i < 2; ++i) {
        clsRoom room;
        room.Name(name);
        room.FunctionName(std::wstring(33, L'f'));
        room.StoryCode(std::wstring(32, L's'));
        floors_.AddRooms(room, 1);
    }
    write();
    EXPECT_THAT(context_.prompts(),
                ElementsAre(L" Für die Raumbezeichnung können nur 32 Zeichen übernommen werden.",
                            L" Für die Funktion können nur 32 Zeichen übernommen werden."));
    for (const ScriptedElement& element : context_.host.drawing) {
        EXPECT_EQ(element.name, name.substr(0, 32));
        EXPECT_EQ(element.function, std::wstring(32, L'f'));
        EXPECT_EQ(element.storey, std::wstring(32, L's'));
    }
    clsRoom kept;
    floors_.GetRoomByIndex(1, kept);
    EXPECT_EQ(kept.Name(), name);
    write();
    EXPECT_THAT(context_.prompts(), SizeIs(2));
    EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
}

TEST_F(Writing, AttributesAreMatchedByTheTextTablesNames) {
    context_.host.newElementAttributes = {
        {L" Umschließungsart", 0, L""},  {L" Nutzen", 0, L""},
        {L" Flächenart_DIN277", 0, L""}, {L"Nutzen", 0, L""},
        {L"nutzen", 0, L"bleibt"},       {L"Flächenart 277", 0, L"bleibt"}};
    clsRoom room;
    room.Enclosure(L"a");
    room.Occupancy(L"HNF 3");
    room.AreaType(L"N");
    floors_.AddRooms(room, 1);
    write();
    const auto& attributes = context_.host.drawing[0].attributes;
    EXPECT_EQ(attributes[0].text, L"a");
    EXPECT_EQ(attributes[1].text, L"HNF 3");
    EXPECT_EQ(attributes[2].text, L"N");
    EXPECT_EQ(attributes[3].text, L"HNF 3");
    EXPECT_EQ(attributes[4].text, L"bleibt");
    EXPECT_EQ(attributes[5].text, L"bleibt");
}

TEST_F(Writing, AttributesThatCannotBeWrittenDoNotStopTheWriting) {
    context_.host.newElementAttributes = {{L" Nutzen", 0, L"alt"}};
    addSquare(L"1", 16);
    for (const char* member : {"Attributes", "Values", "Item", "TextValue="}) {
        context_.host.failMember = member;
        EXPECT_EQ(write().setDown, 1) << member;
    }
}

TEST_F(Writing, NothingOfAnEarlierWritingAffectsTheNext) {
    add(L"a", CalculationByFile, L"missing.txt", 25, L"EG");
    write();
    floors_ = clsFloors();
    add(L"b", CalculationByDx, L"2", 16, L"OG");
    write();
    const Outline& outline = context_.host.placings[1].elements[0].outline;
    EXPECT_DOUBLE_EQ(outline[1].x - outline[0].x, 2);
}

TEST_F(Writing, WhicheverCallFailsTheWindowIsBackAndTheNextWritingWorks) {
    context_.host.newElementAttributes = {{L" Nutzen", 0, L""}};
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}}, {{L" Nutzen", 0, L""}});
    add(L"neu", CalculationByFile, pointFile("p.txt", {{1, 1}, {2, 1}, {2, 2}}), 12, L"EG",
        L"17-K3");
    add(L"da", CalculationByFile, pointFile("q.txt", {{5, 5}, {6, 5}, {6, 6}}), 1);
    addSquare(L"1", 16);
    addSquare(L"2", 9);
    const auto standing = context_.host.drawing;
    for (const bool block : {true, false}) {
        context_.host.calls = 0;
        write(block);
        const int calls = context_.host.calls;
        ASSERT_GT(calls, 20);
        for (int n = 1; n <= calls; ++n) {
            context_.host.drawing = standing;
            context_.host.calls = 0;
            context_.host.failAt = n;
            try {
                write(block);
            } catch (const RuntimeError& error) {
                EXPECT_EQ(error.description(), L"scripted failure");
            }
            EXPECT_TRUE(context_.inputEnabled) << n;
            EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer) << n;
            EXPECT_EQ(floors_.GetCountOfRooms(), 4);
            context_.host.failAt = 0;
            context_.host.drawing = standing;
            const Counts counts = write(block);
            EXPECT_EQ(counts.updated, 1) << n;
            EXPECT_EQ(counts.placed, 1) << n;
            EXPECT_EQ(counts.setDown, 2) << n;
        }
    }
    bridge_.reset();
    EXPECT_EQ(context_.host.liveObjects, 0);
}

TEST_F(Writing, AHostThatWasStartedAgainIsReachedByTheNextWriting) {
    addSquare(L"1", 16);
    context_.host.failNumber = RuntimeError::ServerUnavailable;
    context_.host.calls = 0;
    context_.host.failAt = 1; // the connection of the first day is dead
    EXPECT_EQ(write().setDown, 1);
}

TEST_F(Writing, CallsGrowWithRoomsAndElementsNeverWithTheirProduct) {
    const auto callsOf = [this](int rooms, int elements, bool polygonal) {
        floors_ = clsFloors();
        context_.host.drawing.clear();
        for (int i = 1; i <= elements; ++i)
            stand(i, L"K3", {{0, 0}, {1, 0}, {1, 1}});
        const std::wstring path = pointFile("p.txt", {{1, 1}, {2, 1}, {2, 2}});
        for (int i = 1; i <= rooms; ++i) {
            if (polygonal)
                add(L"r", CalculationByFile, path, 1, L"EG", std::to_wstring(i) + L"-K3");
            else
                addSquare(L"r", 16);
        }
        context_.host.calls = 0;
        write();
        return context_.host.calls;
    };
    for (const bool polygonal : {false, true}) {
        const int base = callsOf(1, 10, polygonal);
        const int more = callsOf(101, 10, polygonal);
        const int perRoom = (more - base) / 100;
        EXPECT_LE(perRoom, 10);
        // Handing over a list of new elements is one call more, however long the list is.
        EXPECT_NEAR(callsOf(51, 10, polygonal), base + 50 * perRoom, 1);
        // One call brings the identities of all elements.
        EXPECT_LE(callsOf(1, 5000, polygonal), base);
    }
}

TEST_F(Writing, TheListIsNotChanged) {
    add(L"a", CalculationByFile, L"missing.txt", 25);
    add(L"b", CalculationByDx, L"keine Zahl", 16);
    write();
    clsRoom room;
    floors_.GetRoomByIndex(1, room);
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByFile);
    floors_.GetRoomByIndex(2, room);
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByDx);
}

} // namespace
} // namespace kalvrooms::testing
