#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "host/clsKalvero.h"
#include "model/NumberText.h"
#include "support/BridgeContext.h"
#include "support/RoomForTest.h"
#include "support/TemporaryFolder.h"

namespace kalvrooms::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

class Writing : public ::testing::Test {
  protected:
    ExportCounts write(bool block = true, double dx = 1.0, double dy = 1.0, bool modify = true) {
        return writeTo(*bridge_, floors_, block, dx, dy, modify);
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
    // The user gives up at the n-th placing, or the host does.
    void giveUpAtPlacing(int n,
                         const RuntimeError& error = RuntimeError(RuntimeError::DialogCancelled)) {
        context_.host.onCall = [this, n, error](const std::string& member) {
            if (member == "PlaceElements" && context_.host.counts[member] == n)
                throw error;
        };
    }
    // Where the rooms of the last block stand in relation to each other.
    std::vector<Point> corners() const {
        std::vector<Point> points;
        if (!context_.host.placements.empty())
            for (const Element& element : context_.host.placed(context_.host.placements.size() - 1))
                points.push_back(element.outline.at(0));
        return points;
    }
    void stand(std::int32_t id, const std::wstring& fileId, const Outline& outline,
               std::vector<Attribute> attributes = {}) {
        Element element;
        element.identity = {id, 3, fileId};
        element.name = L"old";
        element.outline = outline;
        element.attributes = std::move(attributes);
        context_.host.elements.push_back(element);
    }

    const TemporaryFolder folder_;
    BridgeContext context_;
    std::unique_ptr<clsKalvero> bridge_ = context_.bridge();
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
    EXPECT_EQ(write().placed, 150);
    EXPECT_THAT(context_.prompts(), IsEmpty());
}

TEST_F(Writing, OneHundredAndFiftyOneRoomsAreRefusedWithAStopMessage) {
    for (int i = 0; i < 151; ++i)
        addSquare(L"R", 16);
    EXPECT_EQ(write().placed, 0);
    ASSERT_THAT(
        context_.prompts(),
        ElementsAre(L" Die Raumliste besteht aus mehr als 150 Räumen. Es können maximal 150 "
                    L"Räume übertragen werden."));
    EXPECT_EQ(context_.desktop().Messages()[0].Symbol, Gui::Message::Icon::Stop);
    EXPECT_THAT(context_.host.elements, IsEmpty());
    EXPECT_THAT(context_.input, IsEmpty());
}

TEST_F(Writing, AHostInAMenuActionIsNotTouched) {
    addSquare(L"1", 16);
    context_.host.session.state.CreationError(L"Please terminate the menue interaction first.");
    write();
    EXPECT_THAT(context_.prompts(), ElementsAre(L" Bitte beenden Sie die Menüaktion."));
    EXPECT_EQ(context_.desktop().Messages()[0].Title, L" Quartino");
    EXPECT_EQ(context_.host.counts["ApplyChanges"], 0);
    EXPECT_THAT(context_.input, IsEmpty());
    EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
}

TEST_F(Writing, AHostWithKvdFilesOpenIsNotTouched) {
    addSquare(L"1", 16);
    context_.host.session.state.CreationError(L"Sorry, any Kvd or free plan is open");
    write();
    EXPECT_THAT(context_.prompts(),
                ElementsAre(L" KVD-Dateien können mit dem Quartino nicht bearbeitet werden. Bitte "
                            L"schließen Sie alle KVD-Dateien."));
    EXPECT_EQ(context_.host.counts["ApplyChanges"], 0);
}

TEST_F(Writing, EachOfTheThreeWordsCountsAsAbsentAtTheVeryStart) {
    addSquare(L"1", 16);
    for (const wchar_t* description :
         {L"any Kvd or free plan is open", L"menue interaction, please terminate",
          L"a menue interaction", L"interaction: terminate the menue",
          L"terminate the menue interaction",
          // Only the first place of a word counts.
          L"interaction, terminate the menue interaction",
          L"terminate: the menue interaction must terminate"}) {
        context_.host.session.state.CreationError(description);
        EXPECT_EQ(write().placed, 1) << ::testing::PrintToString(description);
    }
    EXPECT_THAT(context_.prompts(), IsEmpty());
    context_.host.session.state.CreationError(
        L"terminate the menue interaction, any Kvd or free plan");
    EXPECT_EQ(write().placed, 0);
    EXPECT_THAT(context_.prompts(), ElementsAre(::testing::HasSubstr(L"KVD-Dateien")));
}

TEST_F(Writing, AMenuActionIsNamedBeforeOpenKvdFiles) {
    addSquare(L"1", 16);
    context_.host.session.state.CreationError(
        L"Is any Kvd or free plan open? Please terminate the menue "
        L"interaction.");
    write();
    EXPECT_THAT(context_.prompts(), ElementsAre(L" Bitte beenden Sie die Menüaktion."));
    EXPECT_EQ(context_.host.counts["ApplyChanges"], 0);
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

TEST_F(Writing, ThePointerIsBusyAgainAfterEveryPlacing) {
    addSquare(L"1", 16);
    addSquare(L"2", 16);
    std::vector<std::pair<std::string, bool>> seen;
    context_.host.onCall = [&](const std::string& member) {
        if (member == "CreateRoomElement" || member == "PlaceElements" || member == "ApplyChanges")
            seen.emplace_back(member, context_.desktop().MousePointer() == Gui::HourglassPointer);
    };
    write(false);
    EXPECT_THAT(seen, ElementsAre(Pair("ApplyChanges", true), Pair("CreateRoomElement", true),
                                  Pair("PlaceElements", false), Pair("CreateRoomElement", true),
                                  Pair("PlaceElements", false), Pair("ApplyChanges", true)));
    seen.clear();
    write(true);
    EXPECT_THAT(seen, ElementsAre(Pair("ApplyChanges", true), Pair("CreateRoomElement", true),
                                  Pair("CreateRoomElement", true), Pair("PlaceElements", false),
                                  Pair("ApplyChanges", true)));
}

TEST_F(Writing, ThePointerIsBusyAgainAfterAPlacingThatTheUserGaveUp) {
    addSquare(L"1", 16);
    addSquare(L"2", 16);
    giveUpAtPlacing(2);
    std::vector<std::int16_t> pointers;
    const auto giveUp = context_.host.onCall;
    context_.host.onCall = [&](const std::string& member) {
        giveUp(member);
        if (member == "ApplyChanges")
            pointers.push_back(context_.desktop().MousePointer());
    };
    write(false);
    EXPECT_THAT(pointers, ElementsAre(Gui::HourglassPointer, Gui::HourglassPointer));
}

TEST_F(Writing, ARoomFoundByItsIdentityIsUpdatedInPlace) {
    stand(16, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    stand(17, L"K3", {{5, 5}, {6, 5}, {6, 6}});
    const Outline outline{{10, 20}, {14, 20}, {14, 26}};
    add(L"neu", CalculationByFile, pointFile("p.txt", outline), 12, L"EG", L"17- K3 ");
    const ExportCounts counts = write();
    EXPECT_EQ(counts.updated, 1);
    EXPECT_EQ(counts.atPosition, 0);
    EXPECT_EQ(counts.placed, 0);
    ASSERT_THAT(context_.host.elements, SizeIs(2));
    EXPECT_EQ(context_.host.elements[0].name, L"old");
    EXPECT_EQ(context_.host.elements[1].name, L"neu");
    EXPECT_EQ(context_.host.elements[1].outline, outline);
    EXPECT_EQ(context_.host.elements[1].colour, context_.colorOld);
    EXPECT_EQ(context_.host.counts["ChangeElements"], 1);
    EXPECT_EQ(context_.host.counts["AddElements"], 0);
    EXPECT_EQ(context_.host.counts["ApplyChanges"], 2);
}

TEST_F(Writing, TheIdentityOfAnElementIsTrimmedToo) {
    stand(17, L"  K3 ", {{0, 0}, {1, 0}, {1, 1}});
    add(L"neu", CalculationByFile, L"missing.txt", 12, L"EG", L"17-K3");
    EXPECT_EQ(write().updated, 1);
    ASSERT_THAT(context_.host.elements, SizeIs(1));
    EXPECT_EQ(context_.host.elements[0].name, L"neu");
}

TEST_F(Writing, OfTwoElementsWithOneIdentityTheFirstIsUpdated) {
    stand(16, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    stand(17, L"K3", {{2, 0}, {3, 0}, {3, 1}});
    stand(17, L"K3 ", {{4, 0}, {5, 0}, {5, 1}});
    stand(17, L"K3", {{6, 0}, {7, 0}, {7, 1}});
    add(L"neu", CalculationByFile, L"missing.txt", 12, L"EG", L"17-K3");
    EXPECT_EQ(write().updated, 1);
    std::vector<std::wstring> names;
    for (const Element& element : context_.host.elements)
        names.push_back(element.name);
    EXPECT_THAT(names, ElementsAre(L"old", L"neu", L"old", L"old"));
}

TEST_F(Writing, AnUpdatedRoomWithoutPointsKeepsItsOutline) {
    const Outline outline{{0, 0}, {1, 0}, {1, 1}};
    stand(17, L"K3", outline);
    add(L"neu", CalculationByFile, L"missing.txt", 12, L"EG", L"17-K3");
    EXPECT_EQ(write().updated, 1);
    EXPECT_EQ(context_.host.elements[0].outline, outline);
    EXPECT_EQ(context_.host.elements[0].name, L"neu");
}

TEST_F(Writing, WithoutPermissionStandingRoomsStayAsTheyAre) {
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    add(L"neu", CalculationByFile, L"missing.txt", 12, L"EG", L"17-K3");
    const ExportCounts counts = write(true, 1, 1, false);
    EXPECT_EQ(counts.updated, 0);
    EXPECT_EQ(counts.placed, 0);
    EXPECT_EQ(context_.host.elements[0].name, L"old");
    EXPECT_THAT(context_.host.elements, SizeIs(1));
}

TEST_F(Writing, ARoomWithPointsThatTheDrawingLacksIsCreatedWhereTheyAre) {
    const Outline outline{{10, 20}, {14, 20}, {14, 26}};
    add(L"neu", CalculationByFile, pointFile("p.txt", outline), 12, L"EG", L"99-K9");
    const ExportCounts counts = write();
    EXPECT_EQ(counts.atPosition, 1);
    EXPECT_EQ(counts.updated, 0);
    EXPECT_EQ(counts.placed, 0);
    ASSERT_THAT(context_.host.elements, SizeIs(1));
    EXPECT_EQ(context_.host.elements[0].outline, outline);
    EXPECT_EQ(context_.host.elements[0].colour, context_.colorOld);
    EXPECT_THAT(context_.host.placements, IsEmpty());
}

TEST_F(Writing, ARoomWhosePointsAreMissingIsPlacedAsASquare) {
    add(L"neu", CalculationByFile, L"missing.txt", 25);
    const ExportCounts counts = write();
    EXPECT_EQ(counts.atPosition, 0);
    EXPECT_EQ(counts.placed, 1);
    ASSERT_THAT(context_.host.placements, SizeIs(1));
    const Outline square = context_.host.placed(0)[0].outline;
    EXPECT_DOUBLE_EQ(square[1].x - square[0].x, 5);
    EXPECT_DOUBLE_EQ(square[2].y - square[1].y, 5);
    EXPECT_EQ(context_.host.elements[0].colour, context_.colorNew);
}

// The look-up in the modification list goes by the storey-local ID alone.
TEST_F(Writing, ARoomOfAnotherStoreyWithTheSameIdIsLaidOutAsASquareToo) {
    add(L"a", CalculationByFile, L"missing.txt", 25, L"EG");
    add(L"b", CalculationByDx, L"2", 16, L"OG");
    EXPECT_EQ(write().placed, 2);
    const Outline second = context_.host.placed(0)[1].outline;
    EXPECT_DOUBLE_EQ(second[1].x - second[0].x, 4);
}

TEST_F(Writing, AWrittenRoomIsNotDrawnAgainBecauseAnotherStoreysRoomHasItsId) {
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    add(L"a", CalculationByFile, L"missing.txt", 25, L"EG");
    add(L"b", CalculationByFile, L"missing.txt", 25, L"OG", L"17-K3");
    const ExportCounts counts = write();
    EXPECT_EQ(counts.updated, 1);
    EXPECT_EQ(counts.placed, 1);
    EXPECT_THAT(context_.host.elements, SizeIs(2));
}

TEST_F(Writing, GivingUpAtTheCrossHairIsNoErrorAndCostsNothingThatStands) {
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    add(L"da", CalculationByFile, L"missing.txt", 25, L"EG", L"17-K3");
    add(L"lagerichtig", CalculationByFile, pointFile("q.txt", {{5, 5}, {6, 5}, {6, 6}}), 1);
    addSquare(L"1", 16);
    addSquare(L"2", 16);
    addSquare(L"3", 16);
    giveUpAtPlacing(3);
    const ExportCounts counts = write(false);
    EXPECT_EQ(counts.updated, 1);
    EXPECT_EQ(counts.atPosition, 1);
    EXPECT_EQ(counts.placed, 2);
    EXPECT_THAT(context_.host.elements, SizeIs(4));
    EXPECT_THAT(context_.prompts(), IsEmpty());
    EXPECT_TRUE(context_.inputEnabled);
    EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
}

TEST_F(Writing, OfABlockThatIsGivenUpNothingIsPlaced) {
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    add(L"da", CalculationByFile, L"missing.txt", 25, L"EG", L"17-K3");
    addSquare(L"1", 16);
    addSquare(L"2", 16);
    giveUpAtPlacing(1);
    const ExportCounts counts = write(true);
    EXPECT_EQ(counts.updated, 1);
    EXPECT_EQ(counts.placed, 0);
    EXPECT_THAT(context_.host.elements, SizeIs(1));
    EXPECT_EQ(context_.host.elements[0].name, L"da");
    EXPECT_THAT(context_.prompts(), IsEmpty());
}

TEST_F(Writing, APlacingThatTheHostRefusesIsToldInItsWords) {
    addSquare(L"1", 16);
    addSquare(L"2", 16);
    giveUpAtPlacing(2, RuntimeError(RuntimeError::AutomationError, L"kein Fenster"));
    EXPECT_EQ(write(false).placed, 1);
    EXPECT_THAT(context_.host.elements, SizeIs(1));
    EXPECT_THAT(context_.prompts(),
                ElementsAre(L"Die Räume konnten nicht abgesetzt werden: kein Fenster"));
}

TEST_F(Writing, AHostThatIsGoneAtTheCrossHairIsAnError) {
    addSquare(L"1", 16);
    giveUpAtPlacing(1, RuntimeError(RuntimeError::ServerUnavailable));
    EXPECT_THROW(write(false), RuntimeError);
}

TEST_F(Writing, ProgressNamesEveryRoomOnceAndTheCaptionComesBack) {
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    addSquare(L"1", 16);
    add(L"da", CalculationByFile, L"missing.txt", 25, L"EG", L"17-K3");
    // Begun in the first pass, laid out in the second.
    add(L"ohne Punkte", CalculationByFile, L"missing.txt", 25);
    write();
    EXPECT_THAT(context_.progress, ElementsAre(L"Raum 1 von 3 wird erzeugt (Esc beendet)",
                                               L"Raum 2 von 3 wird erzeugt (Esc beendet)",
                                               L"Raum 3 von 3 wird erzeugt (Esc beendet)", L""));
}

TEST_F(Writing, AnOutlineThatIsNotToldIsWrittenAnew) {
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    add(L"da", CalculationByFile, pointFile("p.txt", {{0, 0}, {2, 0}, {2, 2}}), 25, L"EG",
        L"17-K3");
    context_.host.failMember = "Outline";
    EXPECT_EQ(write().updated, 1);
    EXPECT_EQ(context_.host.elements[0].outline[1], (Point{2, 0}));
}

TEST_F(Writing, EscapeEndsTheWritingBetweenTwoRooms) {
    for (int i = 0; i < 3; ++i)
        stand(17 + i, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    for (int i = 0; i < 3; ++i)
        add(L"neu", CalculationByFile, L"missing.txt", 25, L"EG", FromLong(17 + i) + L"-K3");
    addSquare(L"1", 16);
    context_.desktop().PressEscape(); // before: meant for something else
    context_.host.onCall = [&](const std::string& member) {
        if (member == "Add" && context_.host.counts["Add"] == 2)
            context_.desktop().PressEscape();
    };
    const ExportCounts counts = write();
    EXPECT_EQ(counts.updated, 2);
    EXPECT_EQ(counts.placed, 0);
    std::vector<std::wstring> names;
    for (const Element& element : context_.host.elements)
        names.push_back(element.name);
    EXPECT_THAT(names, ElementsAre(L"neu", L"neu", L"old"));
    EXPECT_THAT(context_.prompts(),
                ElementsAre(L"Das Erzeugen wurde beendet. Erzeugte oder aktualisierte Räume: 2 "
                            L"von 4."));
    EXPECT_TRUE(context_.inputEnabled);
    EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
}

TEST_F(Writing, EscapeKeepsWhatWasPlacedSinglyAndNothingOfAnUnfinishedBlock) {
    for (int i = 0; i < 3; ++i)
        addSquare(L"R", 16);
    int created = 0;
    context_.host.onCall = [&](const std::string& member) {
        if (member == "CreateRoomElement" && ++created % 3 == 2)
            context_.desktop().PressEscape();
    };
    EXPECT_EQ(write(false).placed, 2);
    EXPECT_THAT(context_.host.elements, SizeIs(2));
    created = 0;
    EXPECT_EQ(write(true).placed, 0);
    EXPECT_THAT(context_.host.elements, SizeIs(2));
    EXPECT_THAT(context_.prompts(), ElementsAre(::testing::HasSubstr(L": 2 von 3"),
                                                ::testing::HasSubstr(L": 0 von 3")));
}

TEST_F(Writing, AnOutlineIsSetOnlyWhenThePointFileSaysSomethingElse) {
    stand(17, L"K3", {{-0.365, 6.1E-17}, {1.0 / 3.0, 1.8E-15}, {1, 2}});
    const Outline before = context_.host.elements[0].outline;
    // As a reading writes it, with 15 digits; read again it says 0.365, 6.1 and 1.8.
    const auto file = [&](const char* last) {
        writeBytes(folder_ / "p.txt", "3\r\n-0.365\t6.1E-17\r\n0.333333333333333\t1.8E-15\r\n1\t" +
                                          std::string(last) + "\r\nend\r\n");
        return (folder_ / "p.txt").wstring();
    };
    add(L"neu", CalculationByFile, file("2"), 12, L"EG", L"17-K3");
    EXPECT_EQ(write().updated, 1);
    EXPECT_EQ(context_.host.elements[0].outline, before);
    EXPECT_EQ(context_.host.counts["Outline"], 1);
    EXPECT_EQ(context_.host.counts["SetOutline"], 0);
    file("3");
    EXPECT_EQ(write().updated, 1);
    EXPECT_EQ(context_.host.counts["SetOutline"], 1);
    EXPECT_EQ(context_.host.elements[0].outline[2], (Point{1, 3}));
}

TEST_F(Writing, APointMoreOrLessOrElsewhereIsAnotherOutline) {
    const Outline square{{0, 0}, {2, 0}, {2, 2}, {0, 2}};
    stand(17, L"K3", square);
    for (const Outline& other :
         {Outline{{0, 0}, {2, 0}, {2, 2}}, Outline{{0, 0}, {2, 0}, {2, 2}, {0, 2}, {-1, 1}},
          Outline{{1, 1}, {2, 0}, {2, 2}, {0, 2}, {-1, 1}}}) {
        floors_ = clsFloors();
        add(L"neu", CalculationByFile, pointFile("p.txt", other), 12, L"EG", L"17-K3");
        write();
        EXPECT_EQ(context_.host.elements[0].outline, other);
    }
}

TEST_F(Writing, ATextThatTheElementGivesIsNotWritten) {
    const std::wstring whole(40, L'n');
    const std::wstring cut(32, L'n');
    stand(17, L"K3", {});
    add(whole, CalculationByFile, L"missing.txt", 12, L"EG", L"17-K3");
    // Applying replaces the elements.
    const auto element = [this]() -> Element& { return context_.host.elements[0]; };
    element().storey = L" EG ";
    // Whole: nothing is cut, and nobody is warned of it.
    element().name = whole;
    write();
    EXPECT_EQ(element().name, whole);
    EXPECT_EQ(element().storey, L" EG ");
    EXPECT_THAT(context_.prompts(), IsEmpty());
    element().name = cut;
    write();
    EXPECT_EQ(context_.host.counts["RoomName"], 0);
    EXPECT_EQ(context_.host.counts["StoreyCode"], 0);
    EXPECT_EQ(context_.host.counts["RoomFunction"], 0);
    EXPECT_THAT(context_.prompts(), ElementsAre(::testing::HasSubstr(L"Raumbezeichnung")));
    element().name = L"anders";
    element().function = L"alt";
    write();
    EXPECT_EQ(element().name, cut);
    EXPECT_EQ(element().function, L"");
}

TEST_F(Writing, TwoRoomsWithOneIdentityHandTheirElementOverOnce) {
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}});
    add(L"a", CalculationByFile, L"missing.txt", 12, L"EG", L"17-K3");
    add(L"b", CalculationByFile, L"missing.txt", 12, L"EG", L"17-K3");
    EXPECT_EQ(write().updated, 1);
    EXPECT_EQ(context_.host.counts["Add"], 1);
    EXPECT_EQ(context_.host.elements[0].name, L"b");
}

TEST_F(Writing, ARoomWithoutPointsAndAreaIsNotDrawn) {
    add(L"a", CalculationByFile, L"missing.txt", 0);
    EXPECT_EQ(write().placed, 0);
    EXPECT_THAT(context_.host.elements, IsEmpty());
}

TEST_F(Writing, ABlockHasTwoRowsWithAFreeStripBetweenThem) {
    for (int i = 0; i < 4; ++i)
        addSquare(L"R", 16);
    const double dx = 2, dy = 3;
    EXPECT_EQ(write(true, dx, dy).placed, 4);
    ASSERT_THAT(context_.host.placements, SizeIs(1));
    EXPECT_EQ(context_.host.placements[0].mode, 10);
    // Limit: 1.5 gaps of 2 m and half of 16 m = 11 m; the second room ends its row at 6 + 2 <= 11,
    // the third would start at 12.
    EXPECT_THAT(corners(),
                ElementsAre(Point{0, 1.5}, Point{6, 1.5}, Point{0, -5.5}, Point{6, -5.5}));
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
    const auto elements = context_.host.placed(0);
    EXPECT_DOUBLE_EQ(elements[0].outline[0].y, 0.5);
    EXPECT_DOUBLE_EQ(elements[1].outline[0].y, -2.5);
    EXPECT_DOUBLE_EQ(elements[1].outline[0].x, 0);
    EXPECT_DOUBLE_EQ(elements[2].outline[0].y, -2.5);
    EXPECT_DOUBLE_EQ(elements[2].outline[0].x, 1.5);
}

TEST_F(Writing, HalfAGapCountsInTheLimitOfARow) {
    for (int i = 0; i < 4; ++i)
        addSquare(L"R", 16);
    // Limit: 1.5 gaps of 6 m and half of 16 m = 17 m; the second room ends its gap at 10 + 6 = 16.
    write(true, 6, 2);
    EXPECT_THAT(corners(), ElementsAre(Point{0, 1}, Point{10, 1}, Point{0, -5}, Point{10, -5}));
    // 12 + 8 = 20 reaches the limit of 1.5 * 8 + 8 and does not pass it.
    write(true, 8, 2);
    EXPECT_THAT(corners(), ElementsAre(Point{0, 1}, Point{12, 1}, Point{0, -5}, Point{12, -5}));
    write(true, 8.25, 2);
    EXPECT_THAT(corners(),
                ElementsAre(Point{0, 1}, Point{0, -5}, Point{12.25, -5}, Point{24.5, -5}));
}

TEST_F(Writing, HalfAMetreCountsInTheLimitOfARow) {
    for (int i = 0; i < 3; ++i)
        addSquare(L"R", 25);
    // Limit: one gap of 2.25 m and half of 15 m = 9.75 m; the second room ends its gap at 9.5.
    write(true, 2.25, 2);
    EXPECT_THAT(corners(), ElementsAre(Point{0, 1}, Point{7.25, 1}, Point{0, -6}));
    write(true, 2.75, 2);
    EXPECT_THAT(corners(), ElementsAre(Point{0, 1}, Point{0, -6}, Point{7.75, -6}));
}

TEST_F(Writing, RoomsWithoutPointsCountInTheLimitOfARowWithTheirDefaultSides) {
    add(L"a", CalculationByFile, L"missing.txt", 25);
    add(L"b", CalculationByDx, L"4", 12);
    add(L"c", CalculationByFile, L"missing.txt", 16);
    add(L"d", CalculationByDx, L"3", 6);
    EXPECT_EQ(write(true, 4, 4).placed, 4);
    // Limit: 1.5 gaps of 4 m and half of 5 + 4 + 4 + 3 m = 14 m; the second room ends its gap at
    // 9 + 4 = 13, the third would at 21.
    EXPECT_THAT(corners(), ElementsAre(Point{0, 2}, Point{9, 2}, Point{0, -6}, Point{8, -4}));
    std::vector<Point> opposite;
    for (const Element& element : context_.host.placed(0))
        opposite.push_back(element.outline.at(2));
    EXPECT_THAT(opposite, ElementsAre(Point{5, 7}, Point{13, 5}, Point{4, -2}, Point{11, -2}));
}

TEST_F(Writing, TheDefaultSidesAreRoundedIntoTheSumToo) {
    // 4.5 -> 4, 8.5 -> 8, 12.5 -> 12, each half to even: the limit is 2 + 12 / 2 = 8 m at 2 m.
    for (int i = 0; i < 3; ++i)
        add(L"R", CalculationByFile, L"missing.txt", 20.25);
    write(true, 2, 2);
    // The second room would end its gap at 6.5 + 2 = 8.5: past 8, not past half of 13.5 and 2.
    EXPECT_THAT(corners(), ElementsAre(Point{0, 1}, Point{0, -5.5}, Point{6.5, -5.5}));
}

TEST_F(Writing, ARoomThatIsNotDrawnCountsInTheLimitOfARowAsWell) {
    add(L"a", CalculationByFile, L"missing.txt", 0);
    for (int i = 0; i < 3; ++i)
        addSquare(L"R", 16);
    EXPECT_EQ(write(true, 4, 2).placed, 3);
    // Limit: 1.5 gaps of 4 m and half of 1 + 12 m = 12.5 m; the second square ends its gap at 12.
    EXPECT_THAT(corners(), ElementsAre(Point{0, 1}, Point{8, 1}, Point{0, -5}));
}

TEST_F(Writing, SingleRoomsAreHandedOverOneByOneAtTheOrigin) {
    addSquare(L"1", 16);
    add(L"2", CalculationByDx, L"2", 16);
    EXPECT_EQ(write(false).placed, 2);
    ASSERT_THAT(context_.host.placements, SizeIs(2));
    for (std::size_t n = 0; n < 2; ++n) {
        EXPECT_EQ(context_.host.placements[n].mode, 10);
        ASSERT_THAT(context_.host.placed(n), SizeIs(1));
        EXPECT_EQ(context_.host.placed(n)[0].outline[0], (Point{0, 0}));
    }
    EXPECT_EQ(context_.host.placed(1)[0].outline, (Outline{{0, 0}, {2, 0}, {2, 8}, {0, 8}}));
}

TEST_F(Writing, EachKindOfTextThatIsCutHasItsOwnWarningOncePerRun) {
    clsRoom room;
    room.Name(std::wstring(32, L'a'));
    floors_.AddRooms(room, 1);
    room.Name(std::wstring(33, L'n'));
    room.StoryCode(std::wstring(33, L's'));
    room.FunctionName(std::wstring(33, L'f'));
    floors_.AddRooms(room, 2);
    for (int i = 0; i < 3; ++i)
        context_.desktop().AnswerNext([this](const Gui::Message& message) {
            EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
            EXPECT_EQ(message.Title, L" Quartino");
            EXPECT_EQ(message.ButtonSet, Gui::Message::Buttons::Ok);
            return Gui::Answer::Ok;
        });
    write();
    EXPECT_THAT(
        context_.prompts(),
        ElementsAre(L" Für die Raumbezeichnung können nur 32 Zeichen übernommen werden.",
                    L" Für die Geschoss Kurzbezeichnung können nur 32 Zeichen übernommen werden.",
                    L" Für die Funktion können nur 32 Zeichen übernommen werden."));
    ASSERT_THAT(context_.host.elements, SizeIs(3));
    EXPECT_EQ(context_.host.elements[0].name, std::wstring(32, L'a'));
    for (const std::size_t cut : {1, 2}) {
        EXPECT_EQ(context_.host.elements[cut].name, std::wstring(32, L'n'));
        EXPECT_EQ(context_.host.elements[cut].storey, std::wstring(32, L's'));
        EXPECT_EQ(context_.host.elements[cut].function, std::wstring(32, L'f'));
    }
    const clsRoom kept = roomAt(floors_, 2);
    EXPECT_EQ(kept.Name(), std::wstring(33, L'n'));
    EXPECT_EQ(kept.StoryCode(), std::wstring(33, L's'));
    EXPECT_EQ(kept.FunctionName(), std::wstring(33, L'f'));
    write();
    EXPECT_THAT(context_.prompts(), SizeIs(3));
}

TEST_F(Writing, AWarningThatWasShownKeepsTheOthersToCome) {
    const std::wstring longText(40, L'x');
    const auto writeRoom = [&](const wchar_t* longField) {
        clsRoom room;
        if (longField == std::wstring(L"storey"))
            room.StoryCode(longText);
        else if (longField == std::wstring(L"function"))
            room.FunctionName(longText);
        else
            room.Name(longText);
        floors_ = clsFloors();
        floors_.AddRooms(room, 1);
        write();
    };
    writeRoom(L"storey");
    writeRoom(L"storey");
    EXPECT_THAT(context_.prompts(), ElementsAre(::testing::HasSubstr(L"Kurzbezeichnung")));
    writeRoom(L"function");
    writeRoom(L"function");
    EXPECT_THAT(context_.prompts(), SizeIs(2));
    EXPECT_THAT(context_.prompts().back(), ::testing::HasSubstr(L"Funktion"));
    writeRoom(L"name");
    writeRoom(L"name");
    EXPECT_THAT(context_.prompts(), SizeIs(3));
    EXPECT_THAT(context_.prompts().back(), ::testing::HasSubstr(L"Raumbezeichnung"));
}

TEST_F(Writing, AttributesAreMatchedByTheTextTablesNames) {
    stand(17, L"K3", {},
          {{L" Umschließungsart", L""},
           {L" Nutzen", L""},
           {L" Flächenart_DIN277", L""},
           {L"Nutzen", L""},
           {L"nutzen", L"bleibt"},
           {L"Flächenart 277", L"bleibt"}});
    clsRoom room;
    room.SetRoomID(L"17-K3");
    room.Geometry->SetTypeAndValue(CalculationByFile, L"missing.txt");
    room.Enclosure(L"a");
    room.Occupancy(L"HNF 3");
    room.AreaType(L"N");
    floors_.AddRooms(room, 1);
    EXPECT_EQ(write().updated, 1);
    std::vector<std::wstring> texts;
    for (const Attribute& attribute : context_.host.elements[0].attributes)
        texts.push_back(attribute.TextValue());
    EXPECT_THAT(texts, ElementsAre(L"a", L"HNF 3", L"N", L"HNF 3", L"bleibt", L"bleibt"));
}

TEST_F(Writing, NewElementsGetTheirAttributes) {
    clsRoom room;
    room.Occupancy(L"HNF 3");
    floors_.AddRooms(room, 1);
    write();
    std::map<std::wstring, std::wstring> texts;
    for (const Attribute& attribute : context_.host.elements[0].attributes)
        texts[attribute.name] = attribute.TextValue();
    EXPECT_EQ(texts[L"Nutzen"], L"HNF 3");
}

TEST_F(Writing, AttributesThatCannotBeWrittenDoNotStopTheWriting) {
    clsRoom room;
    room.Occupancy(L"HNF 3");
    floors_.AddRooms(room, 1);
    for (const char* member : {"Attributes", "Values", "Item", "TextValue"}) {
        context_.host.failMember = member;
        EXPECT_EQ(write().placed, 1) << member;
    }
}

TEST_F(Writing, NothingOfAnEarlierWritingAffectsTheNext) {
    add(L"a", CalculationByFile, L"missing.txt", 25, L"EG");
    write();
    floors_ = clsFloors();
    add(L"b", CalculationByDx, L"2", 16, L"OG");
    write();
    const Outline outline = context_.host.placed(1)[0].outline;
    EXPECT_DOUBLE_EQ(outline[1].x - outline[0].x, 2);
}

TEST_F(Writing, WhicheverCallFailsTheWindowIsBackAndTheNextWritingWorks) {
    context_.host.drawing.newElementAttributes = {L" Nutzen"};
    stand(17, L"K3", {{0, 0}, {1, 0}, {1, 1}}, {{L" Nutzen", L""}});
    add(L"neu", CalculationByFile, pointFile("p.txt", {{1, 1}, {2, 1}, {2, 2}}), 12, L"EG",
        L"17-K3");
    add(L"da", CalculationByFile, pointFile("q.txt", {{5, 5}, {6, 5}, {6, 6}}), 1);
    addSquare(L"1", 16);
    addSquare(L"2", 9);
    const auto standing = context_.host.elements;
    for (const bool block : {true, false}) {
        context_.host.calls = 0;
        write(block);
        const int calls = context_.host.calls;
        ASSERT_GT(calls, 20);
        for (int n = 1; n <= calls; ++n) {
            context_.host.elements = standing;
            context_.host.calls = 0;
            context_.host.failAt = n;
            try {
                write(block);
            } catch (const RuntimeError& error) {
                EXPECT_EQ(error.description(), L"failure of a test");
            }
            EXPECT_TRUE(context_.inputEnabled) << n;
            EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer) << n;
            EXPECT_EQ(floors_.GetCountOfRooms(), 4);
            context_.host.failAt = 0;
            context_.host.elements = standing;
            const ExportCounts counts = write(block);
            EXPECT_EQ(counts.updated, 1) << n;
            EXPECT_EQ(counts.atPosition, 1) << n;
            EXPECT_EQ(counts.placed, 2) << n;
        }
    }
    bridge_.reset();
    EXPECT_EQ(context_.host.LiveObjects(), 0);
}

TEST_F(Writing, AHostThatWasStartedAgainIsReachedByTheNextWriting) {
    addSquare(L"1", 16);
    context_.host.failNumber = RuntimeError::ServerUnavailable;
    context_.host.calls = 0;
    context_.host.failAt = 1; // the connection of the first day is dead
    EXPECT_EQ(write().placed, 1);
}

TEST_F(Writing, ABrokenConnectionIsReplacedByTheOneThatTheCheckHasMade) {
    addSquare(L"1", 16);
    context_.host.failNumber = 70;
    context_.host.calls = 0;
    context_.host.failAt = 1;
    EXPECT_EQ(write().placed, 1);
    const long held = context_.host.LiveObjects();
    write();
    EXPECT_EQ(context_.host.LiveObjects(), held);
}

TEST_F(Writing, CallsGrowWithRoomsAndElementsNeverWithTheirProduct) {
    const auto callsOf = [this](int rooms, int elements, bool polygonal) {
        floors_ = clsFloors();
        context_.host.elements.clear();
        for (int i = 1; i <= elements; ++i)
            stand(i, L"K3", {{0, 0}, {1, 0}, {1, 1}});
        const std::wstring path = pointFile("p.txt", {{1, 1}, {2, 1}, {2, 2}});
        for (int i = 1; i <= rooms; ++i)
            if (polygonal)
                add(L"r", CalculationByFile, path, 1, L"EG", std::to_wstring(i) + L"-K3");
            else
                addSquare(L"r", 16);
        context_.host.calls = 0;
        write();
        return context_.host.calls;
    };
    for (const bool polygonal : {false, true}) {
        // Ten rooms stand in the drawing, and one does not.
        const int base = callsOf(11, 10, polygonal);
        const int perRoom = (callsOf(111, 10, polygonal) - base) / 100;
        EXPECT_LE(perRoom, 10);
        EXPECT_EQ(callsOf(61, 10, polygonal), base + 50 * perRoom);
        // One call brings the identities of all elements.
        EXPECT_LE(callsOf(1, 5000, polygonal), callsOf(1, 10, polygonal));
    }
}

TEST_F(Writing, TheListIsNotChanged) {
    add(L"a", CalculationByFile, L"missing.txt", 25);
    add(L"b", CalculationByDx, L"keine Zahl", 16);
    write();
    clsRoom room = roomAt(floors_, 1);
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByFile);
    floors_.GetRoomByIndex(2, room);
    EXPECT_EQ(room.Geometry->CalculationType(), CalculationByDx);
}

} // namespace
} // namespace kalvrooms::testing
