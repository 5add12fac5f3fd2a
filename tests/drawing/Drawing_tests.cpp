#include "drawing/Drawing.h"
#include "drawing/DrawingService.h"

#include <gmock/gmock.h>

#include <limits>

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;

Outline Rectangle(double width, double height, Point corner = {}) {
    return {corner,
            {corner.x + width, corner.y},
            {corner.x + width, corner.y + height},
            {corner.x, corner.y + height}};
}

Element Room(std::int32_t component, std::int32_t file, const std::wstring& fileId) {
    Element element;
    element.identity.ComponentID = component;
    element.identity.FileNumber = file;
    element.identity.FileID = fileId;
    element.name = L"Raum " + std::to_wstring(component);
    return element;
}

std::vector<std::wstring> Names(const Element& element) {
    std::vector<std::wstring> names;
    for (const Attribute& attribute : element.attributes)
        names.push_back(attribute.name);
    return names;
}

TEST(Drawing, AreaFollowsTheShoelaceWhateverTheDirection) {
    EXPECT_DOUBLE_EQ(Area(Rectangle(4, 2.5)), 10.0);
    EXPECT_DOUBLE_EQ(Area({{0, 0}, {0, 2}, {2, 2}, {2, 0}}), 4.0);
    EXPECT_DOUBLE_EQ(Area({{0, 0}, {4, 0}, {4, 1}, {1, 1}, {1, 3}, {0, 3}}), 6.0);
    EXPECT_EQ(Area({}), 0.0);
    EXPECT_EQ(Area({{1, 1}, {2, 2}}), 0.0);
    EXPECT_DOUBLE_EQ(Area(Rectangle(4, 2.5, {4'400'000.25, 5'300'000.75})), 10.0);
}

TEST(Drawing, ANewElementCarriesTheCatalogueAndTheNamesAWriterLooksFor) {
    EXPECT_THAT(Names(Drawing().NewElement()),
                ElementsAre(L"Bodenfläche", L"Umschließungsart", L"Nutzen", L"Flächenart 277",
                            L"Flächenart_DIN277"));
}

TEST(Drawing, ANameInTheCatalogueIsNotCarriedTwice) {
    Drawing drawing;
    drawing.attributeNames = {{293, L"Fläche"}, {235, L"Nutzen"}};
    EXPECT_THAT(Names(drawing.NewElement()),
                ElementsAre(L"Fläche", L"Nutzen", L"Umschließungsart", L"Flächenart_DIN277"));
}

TEST(Drawing, TheFilesOwnListOfNamesHoldsInsteadOfOurs) {
    Drawing drawing;
    drawing.newElementAttributes = {L" Nutzen", L"Farbe"};
    EXPECT_THAT(Names(drawing.NewElement()), ElementsAre(L"Bodenfläche", L" Nutzen", L"Farbe"));
}

TEST(Drawing, TheFloorAreaIsANumberAndTheOthersAreTexts) {
    const Element element = Drawing().NewElement();
    EXPECT_TRUE(std::holds_alternative<double>(element.attributes[0].value));
    for (std::size_t i = 1; i < element.attributes.size(); ++i)
        EXPECT_TRUE(std::holds_alternative<std::wstring>(element.attributes[i].value));
}

TEST(Drawing, InsertedElementsGetTheNextComponentAndTheLowestNumberedFile) {
    Drawing drawing;
    drawing.elements = {Room(40, 0, L"KVD"), Room(7, 5, L"K5"), Room(9, 3, L"Drei"),
                        Room(3, -1, L"N")};
    const Element& first = drawing.elements[drawing.Insert(drawing.NewElement())];
    EXPECT_EQ(first.identity.ComponentID, 41);
    EXPECT_EQ(first.identity.FileNumber, 3);
    EXPECT_EQ(first.identity.FileID, L"Drei");
    EXPECT_EQ(drawing.elements[drawing.Insert(drawing.NewElement())].identity.ComponentID, 42);
}

TEST(Drawing, TheFirstElementOfAnEmptyDrawingGoesToFileOne) {
    Drawing drawing;
    drawing.elements = {Room(2, 0, L"KVD")};
    const Element& element = drawing.elements[drawing.Insert(drawing.NewElement())];
    EXPECT_EQ(element.identity.FileNumber, 1);
    EXPECT_EQ(element.identity.FileID, L"K1");
}

TEST(Drawing, AFullDrawingRefusesMore) {
    Drawing drawing;
    drawing.elements = {Room(std::numeric_limits<std::int32_t>::max(), 1, L"K1")};
    EXPECT_THROW(drawing.Insert(drawing.NewElement()), HostError);
}

class DrawingServices : public ::testing::Test {
  protected:
    DrawingSession session;
    std::vector<Element>& elements = session.drawing.elements;
    DrawingService service{session};
};

TEST_F(DrawingServices, LetNothingReachTheDrawingBeforeTheyApply) {
    elements = {Room(1, 1, L"K1")};
    {
        DrawingService forgotten(session);
        const WorkingElements copies = forgotten.Elements();
        copies[0]->element.name = L"anders";
        forgotten.Change(copies);
        forgotten.Add({forgotten.NewElement()});
        EXPECT_EQ(elements.size(), 1u);
        EXPECT_EQ(elements[0].name, L"Raum 1");
    }
    service.Apply();
    EXPECT_EQ(elements.size(), 1u);
    EXPECT_EQ(elements[0].name, L"Raum 1");
}

TEST_F(DrawingServices, WriteChangesOverTheSameElements) {
    elements = {Room(1, 1, L"K1"), Room(1, 2, L"K2"), Room(2, 1, L"K1")};
    const WorkingElementPtr copy = service.Elements()[1];
    copy->element.name = L"anders";
    copy->element.colour = 255;
    service.Change({copy});
    service.Apply();
    ASSERT_EQ(elements.size(), 3u);
    EXPECT_EQ(elements[0].name, L"Raum 1");
    EXPECT_EQ(elements[1].name, L"anders");
    EXPECT_EQ(elements[1].colour, 255);
    EXPECT_TRUE(session.drawing.placements.empty());
}

TEST_F(DrawingServices, TakeElementsOverAsTheyAreWhenHandedOver) {
    elements = {Room(1, 1, L"K1")};
    const WorkingElements copies = service.Elements();
    copies[0]->element.name = L"vorher";
    service.Change(copies);
    copies[0]->element.name = L"nachher";
    service.Apply();
    EXPECT_EQ(elements[0].name, L"vorher");
}

TEST_F(DrawingServices, ChangeNothingWhenTheyFail) {
    elements = {Room(1, 1, L"K1"), Room(2, 1, L"K1")};
    const WorkingElements copies = service.Elements();
    copies[0]->element.name = L"anders";
    service.Change({copies[0]});
    service.Change({copies[1]});
    elements.pop_back();
    EXPECT_THROW(service.Apply(), HostError);
    EXPECT_EQ(elements[0].name, L"Raum 1");
}

TEST_F(DrawingServices, LeaveAddedElementsWhereTheyAreAndGiveThemTheirIdentity) {
    const WorkingElementPtr room = service.NewElement();
    EXPECT_EQ(room->element.identity.ComponentID, -1);
    room->element.outline = Rectangle(3, 2, {10, 20});
    room->element.colour = 255;
    service.Add({room});
    service.Apply();
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_EQ(elements[0].outline, Rectangle(3, 2, {10, 20}));
    EXPECT_EQ(elements[0].colour, 255);
    EXPECT_EQ(elements[0].attributes[0].name, L"Bodenfläche");
    EXPECT_EQ(elements[0].attributes[0].NumberValue(), 6.0);
    EXPECT_EQ(room->element.identity.ComponentID, 1);
    EXPECT_TRUE(session.drawing.placements.empty());

    room->element.name = L"danach";
    service.Change({room});
    service.Apply();
    EXPECT_EQ(elements[0].name, L"danach");
}

TEST_F(DrawingServices, LetTheFloorAreaFollowTheOutline) {
    elements = {Room(1, 1, L"K1"), Room(2, 1, L"K1")};
    elements[0].attributes = {{L"Bodenfläche", L"alt"}};
    const auto change = [this](const Outline& outline) {
        const WorkingElements copies = service.Elements();
        for (const WorkingElementPtr& copy : copies)
            copy->element.outline = outline;
        service.Change(copies);
        service.Apply();
    };
    change(Rectangle(3, 2));
    EXPECT_EQ(elements[0].attributes[0].NumberValue(), 6.0);
    EXPECT_TRUE(elements[1].attributes.empty());
    change({{1, 1}});
    EXPECT_EQ(elements[0].attributes[0].NumberValue(), 0.0);
}

TEST_F(DrawingServices, KeepTheFloorAreaOfAnElementWithoutOutline) {
    elements = {Room(1, 1, L"K1")};
    elements[0].attributes = {{L"Bodenfläche", 12.5}};
    service.Change(service.Elements());
    service.Apply();
    EXPECT_EQ(elements[0].attributes[0].NumberValue(), 12.5);
}

TEST_F(DrawingServices, TakeAnElementInOnce) {
    const WorkingElementPtr room = service.NewElement();
    EXPECT_THROW(service.Change({room}), HostError);
    EXPECT_THROW(service.Add({room, room}), HostError);
    service.Add({room});
    EXPECT_THROW(service.Add({room}), HostError);
    service.Apply();
    EXPECT_THROW(service.Add({room}), HostError);
    EXPECT_EQ(elements.size(), 1u);
}

TEST_F(DrawingServices, TakeAChangedElementOnceUntilItIsApplied) {
    elements = {Room(1, 1, L"K1"), Room(2, 1, L"K1")};
    const WorkingElementPtr copy = service.Elements()[0];
    EXPECT_THROW(service.Change({copy, copy}), HostError);
    service.Change({copy});
    EXPECT_THROW(service.Change({copy}), HostError);
    EXPECT_THROW(service.Change({service.Elements()[0]}), HostError);
    service.Apply();
    service.Change({copy});
}

TEST_F(DrawingServices, LeaveElementsOfNativeDrawingsAlone) {
    elements = {Room(1, 0, L"KVD"), Room(2, 1, L"K1")};
    const WorkingElements copies = service.Elements();
    copies[1]->element.name = L"anders";
    EXPECT_THROW(service.Change({copies[1], copies[0]}), HostError);
    service.Apply();
    EXPECT_EQ(elements[1].name, L"Raum 2");
}

TEST_F(DrawingServices, RefuseEverythingWhileTheStateForbidsIt) {
    elements = {Room(1, 1, L"K1")};
    session.placing.At({0, 0});
    const WorkingElements copies = service.Elements();
    const WorkingElementPtr room = service.NewElement();
    const WorkingElementPtr placed = service.NewElement();
    for (const wchar_t* state : {L"menu", L"kvd"}) {
        session.state.Set(state);
        EXPECT_THROW(DrawingService{session}, HostError);
        EXPECT_THROW(service.Elements(), HostError);
        EXPECT_THROW(service.NewElement(), HostError);
        EXPECT_THROW(service.Change(copies), HostError);
        EXPECT_THROW(service.Add({room}), HostError);
        EXPECT_THROW(service.Place({placed}, PlaceAtCrossHair), HostError);
        EXPECT_THROW(service.Apply(), HostError);
    }
    session.state.Set(L"");
    service.Change(copies);
    service.Add({room});
    service.Place({placed}, PlaceAtCrossHair);
    service.Apply();
    EXPECT_EQ(elements.size(), 3u);
}

TEST(ElementTexts, HaveAtMost32Characters) {
    EXPECT_EQ(ElementText(std::wstring(32, L'x')).size(), 32u);
    EXPECT_THROW(ElementText(std::wstring(33, L'x')), HostError);
}

class UnattendedPlacing : public DrawingServices {
  protected:
    UnattendedPlacing() { session.placing.At({100, 50}); }

    WorkingElementPtr NewRoom(double width, Point corner = {}) {
        WorkingElementPtr room = service.NewElement();
        room->element.outline = Rectangle(width, 2, corner);
        return room;
    }
};

TEST_F(UnattendedPlacing, SingleRoomsStandOneBesideTheOther) {
    service.Place({NewRoom(4)}, PlaceAtCrossHair);
    service.Place({NewRoom(2.5)}, PlaceAtCrossHair);
    service.Place({NewRoom(3)}, PlaceAtCrossHair);
    service.Apply();
    EXPECT_EQ(elements[0].outline, Rectangle(4, 2, {100, 50}));
    EXPECT_EQ(elements[1].outline, Rectangle(2.5, 2, {105, 50}));
    EXPECT_EQ(elements[2].outline, Rectangle(3, 2, {108.5, 50}));
    ASSERT_EQ(session.drawing.placements.size(), 3u);
    EXPECT_EQ(session.drawing.placements[2].mode, 10);
    EXPECT_EQ(session.drawing.placements[2].at, (Point{108.5, 50}));
    EXPECT_THAT(session.drawing.placements[2].componentIds, ElementsAre(3));
}

TEST_F(UnattendedPlacing, ALaterExportGoesOnBehindTheRow) {
    for (int run = 0; run < 2; ++run) {
        DrawingService another(session);
        another.Place({NewRoom(4)}, PlaceAtCrossHair);
        another.Apply();
    }
    EXPECT_EQ(elements[1].outline, Rectangle(4, 2, {105, 50}));
    session.placing.At({0, 0});
    service.Place({NewRoom(4)}, PlaceAtCrossHair);
    service.Apply();
    EXPECT_EQ(elements[2].outline, Rectangle(4, 2));
}

TEST_F(UnattendedPlacing, RoomsThatWereNotAppliedLeaveNoGap) {
    DrawingService(session).Place({NewRoom(4)}, PlaceAtCrossHair);
    service.Place({NewRoom(4)}, PlaceAtCrossHair);
    service.Apply();
    EXPECT_EQ(elements[0].outline, Rectangle(4, 2, {100, 50}));
}

TEST_F(UnattendedPlacing, ABlockIsShiftedAsAWhole) {
    service.Place({NewRoom(4)}, PlaceAtCrossHair);
    service.Place({NewRoom(4, {0, 0.5}), NewRoom(3, {5, 0.5}), NewRoom(3, {0, -2.5})},
                  PlaceAtCrossHair);
    service.Apply();
    EXPECT_EQ(elements[1].outline, Rectangle(4, 2, {100, 50.5}));
    EXPECT_EQ(elements[2].outline, Rectangle(3, 2, {105, 50.5}));
    EXPECT_EQ(elements[3].outline, Rectangle(3, 2, {100, 47.5}));
    ASSERT_EQ(session.drawing.placements.size(), 2u);
    EXPECT_EQ(session.drawing.placements[1].at, (Point{100, 50}));
    EXPECT_THAT(session.drawing.placements[1].componentIds, ElementsAre(2, 3, 4));
}

TEST_F(UnattendedPlacing, AnEmptyListCannotBePlaced) {
    EXPECT_THROW(service.Place({}, PlaceAtCrossHair), HostError);
}

TEST_F(UnattendedPlacing, OnlyTheCrossHairIsKnown) {
    EXPECT_THROW(service.Place({NewRoom(4)}, 9), HostError);
}

using AttendedPlacing = DrawingServices;

TEST_F(AttendedPlacing, TheClickSaysWhere) {
    std::vector<Outline> seen;
    session.placing.OnClick([&](const std::vector<Outline>& outlines) {
        seen = outlines;
        return Point{7, 8};
    });
    const WorkingElementPtr room = service.NewElement();
    room->element.outline = Rectangle(4, 2);
    service.Place({room}, PlaceAtCrossHair);
    service.Apply();
    EXPECT_THAT(seen, ElementsAre(Rectangle(4, 2)));
    EXPECT_EQ(elements[0].outline, Rectangle(4, 2, {7, 8}));
    EXPECT_EQ(session.drawing.placements[0].at, (Point{7, 8}));
}

TEST_F(AttendedPlacing, CancellingQueuesNothing) {
    session.placing.OnClick([](const std::vector<Outline>&) -> Point { throw PlacingCancelled(); });
    EXPECT_THROW(service.Place({service.NewElement()}, PlaceAtCrossHair), PlacingCancelled);
    service.Apply();
    EXPECT_TRUE(elements.empty());
}

TEST_F(AttendedPlacing, WithoutAWindowNothingCanBePlaced) {
    EXPECT_THROW(service.Place({service.NewElement()}, PlaceAtCrossHair), HostError);
}

} // namespace
} // namespace kalvrooms::testing
