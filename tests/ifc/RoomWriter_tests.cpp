#include "ifc/RoomWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "ifc/JoinOutlines.h"
#include "ifc/ModelText.h"

namespace kalvrooms::ifc {
namespace {

class RoomWriting : public ::testing::Test {
  protected:
    // The model with a change of its first room.
    std::string Changed(const ModelText& model, const RoomChange& change) {
        const StepFile file(model.Text());
        const Building building(file);
        RoomWriter writer(building);
        writer.Change(building.Rooms().at(0), change);
        return writer.Text();
    }

    std::string Added(const ModelText& model, const RoomChange& room) {
        const StepFile file(model.Text());
        const Building building(file);
        RoomWriter writer(building);
        writer.Add("2x00000000000000000099", room);
        return writer.Text();
    }

    // What a text reads as; the room of that name.
    const Room& RoomOf(const std::string& text, const std::wstring& name = L"1.01") {
        file_ = std::make_unique<StepFile>(text);
        building_ = std::make_unique<Building>(*file_);
        for (const std::string& trouble : building_->Troubles())
            ADD_FAILURE() << trouble;
        for (const Room& room : building_->Rooms())
            if (room.name == name)
                return room;
        ADD_FAILURE() << "the room is missing";
        return building_->Rooms().at(0);
    }

    std::unique_ptr<StepFile> file_;
    std::unique_ptr<Building> building_;
};

ModelText with(const std::string& lines, const std::string& schema = "IFC4") {
    ModelText model;
    model.schema = schema;
    model.lines = Rectangle + lines;
    return model;
}

// The lines that one text has and the other one lacks.
std::vector<std::string> linesBeyond(const std::string& text, const std::string& other) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        if (other.find(line + "\n") == std::string::npos)
            lines.push_back(line);
    return lines;
}

const std::string net =
    "#200=IFCRELDEFINESBYPROPERTIES('0000000000000000000200',$,$,$,(#20),#201);\n"
    "#201=IFCELEMENTQUANTITY('0000000000000000000201',$,'BaseQuantities',$,$,("
    "#202));\n#202=IFCQUANTITYAREA('NetFloorArea',$,$,18.,$);\n";
const std::string use =
    "#210=IFCRELDEFINESBYPROPERTIES('0000000000000000000210',$,$,$,(#20),#211);\n"
    "#211=IFCPROPERTYSET('0000000000000000000211',$,'P',$,(#212));\n"
    "#212=IFCPROPERTYSINGLEVALUE('Nutzen',$,IFCTEXT('NF'),$);\n";
const std::string secondRoom =
    "#30=IFCSPACE('0000000000000000000030',$,'1.02',$,$,#9,#31,$,.ELEMENT.,.INTERNAL.,$);\n"
    "#31=IFCPRODUCTDEFINITIONSHAPE($,$,(#21));\n"
    "#32=IFCRELAGGREGATES('0000000000000000000032',$,$,$,#12,(#30));\n";
const std::string upperStorey =
    "#40=IFCBUILDINGSTOREY('0000000000000000000040',$,'OG',$,$,#42,$,$,.ELEMENT.,3.);\n"
    "#41=IFCRELAGGREGATES('0000000000000000000041',$,$,$,#11,(#40));\n"
    "#42=IFCLOCALPLACEMENT(#9,#43);\n#43=IFCAXIS2PLACEMENT3D(#44,$,$);\n"
    "#44=IFCCARTESIANPOINT((0.,0.,3.));\n";

RoomChange named(const wchar_t* name) {
    RoomChange change;
    change.name = name;
    return change;
}

RoomChange inStorey(const wchar_t* storey) {
    RoomChange change;
    change.storey = storey;
    return change;
}

RoomChange outlined(const Outline& outline) {
    RoomChange change;
    change.outline = outline;
    return change;
}

TEST_F(RoomWriting, WithoutAChangeEveryByteStays) {
    const ModelText model = with(net + use);
    EXPECT_EQ(Changed(model, {}), model.Text());
}

TEST_F(RoomWriting, ANewNameChangesOneInstance) {
    const ModelText model = with(net + use);
    const std::string text = Changed(model, named(L"1.01 Büro"));
    EXPECT_EQ(linesBeyond(text, model.Text()),
              std::vector<std::string>{
                  "#20=IFCSPACE('0000000000000000000020',$,'1.01 B\\X2\\00FC\\X0\\ro',$,$,#9,#22,"
                  "'B\\X2\\00FC\\X0\\ro',.ELEMENT.,.INTERNAL.,$);"});
    EXPECT_EQ(linesBeyond(model.Text(), text).size(), 1u);
    EXPECT_EQ(RoomOf(text, L"1.01 Büro").function, L"Büro");
}

TEST_F(RoomWriting, AnAttributeIsWrittenWhereItStands) {
    RoomChange change;
    change.occupancy = L"HNF 2";
    const ModelText model = with(use);
    const std::string text = Changed(model, change);
    EXPECT_EQ(
        linesBeyond(text, model.Text()),
        std::vector<std::string>{"#212=IFCPROPERTYSINGLEVALUE('Nutzen',$,IFCTEXT('HNF 2'),$);"});
}

TEST_F(RoomWriting, AnAttributeThatTheModelLacksGoesIntoASetOfOurOwn) {
    RoomChange change;
    change.enclosure = L"a";
    change.occupancy = L"";
    change.areaType = L"N";
    const ModelText model = with("");
    const std::string text = Changed(model, change);
    EXPECT_EQ(linesBeyond(text, model.Text()).size(), 4u)
        << "two properties, their set, its relation";
    const Room& room = RoomOf(text);
    EXPECT_EQ(room.properties.enclosure.text, L"a");
    EXPECT_EQ(room.properties.areaType.text, L"N");
    EXPECT_EQ(room.properties.areaType.set.definition, room.properties.enclosure.set.definition);

    // The next one joins them.
    RoomWriter writer(*building_);
    RoomChange next;
    next.occupancy = L"VF";
    writer.Change(room, next);
    const std::string again = writer.Text();
    EXPECT_EQ(linesBeyond(again, text).size(), 2u);
    EXPECT_EQ(RoomOf(again).properties.occupancy.text, L"VF");
    EXPECT_EQ(RoomOf(again).properties.enclosure.text, L"a");
}

TEST_F(RoomWriting, AnEmptyAttributeMakesNothingNew) {
    RoomChange change;
    change.enclosure = change.occupancy = change.areaType = L"";
    const ModelText model = with("");
    EXPECT_EQ(Changed(model, change), model.Text());
}

TEST_F(RoomWriting, APropertyThatOtherRoomsShareStaysAsItIs) {
    ModelText model = with(use + secondRoom);
    model.lines.replace(model.lines.find("(#20),#211"), 10, "(#20,#30),#211");
    RoomChange change;
    change.occupancy = L"VF";
    const std::string text = Changed(model, change);
    EXPECT_EQ(RoomOf(text).properties.occupancy.text, L"VF");
    EXPECT_EQ(RoomOf(text, L"1.02").properties.occupancy.text, L"NF");
}

TEST_F(RoomWriting, WhatStandsInASharedComplexOneStaysAsItIs) {
    const std::string others =
        "#220=IFCRELDEFINESBYPROPERTIES('0000000000000000000220',$,$,$,(#30),#221);\n"
        "#221=IFCPROPERTYSET('0000000000000000000221',$,'Q',$,(#213));\n"
        "#230=IFCRELDEFINESBYPROPERTIES('0000000000000000000230',$,$,$,(#30),#231);\n"
        "#231=IFCELEMENTQUANTITY('0000000000000000000231',$,'Q',$,$,(#203));\n";
    ModelText model =
        with(use + net + secondRoom + others + "#213=IFCCOMPLEXPROPERTY('D',$,'',(#212));\n" +
             "#203=IFCPHYSICALCOMPLEXQUANTITY('D',$,(#202),'',$,$);\n");
    model.lines.replace(model.lines.find("(#212))"), 7, "(#213))");
    model.lines.replace(model.lines.find("(#202))"), 7, "(#203))");
    RoomChange change = outlined({{0, 0}, {2, 0}, {2, 3}, {0, 3}});
    change.occupancy = L"VF";
    const std::string text = Changed(model, change);
    EXPECT_EQ(RoomOf(text).properties.occupancy.text, L"VF");
    EXPECT_EQ(RoomOf(text).squareMetres, 6.0);
    EXPECT_EQ(RoomOf(text, L"1.02").properties.occupancy.text, L"NF");
    EXPECT_EQ(RoomOf(text, L"1.02").squareMetres, 18.0);
}

TEST_F(RoomWriting, AnEnumeratedAttributeMayLeaveItsEnumeration) {
    RoomChange change;
    change.occupancy = L"VF";
    ModelText model = with(use + "#213=IFCPROPERTYENUMERATION('E',(IFCLABEL('NF')),$);\n");
    model.lines.replace(model.lines.find("#212="), std::string::npos,
                        "#212=IFCPROPERTYENUMERATEDVALUE('Nutzen',$,(IFCLABEL('NF')),#213);\n"
                        "#213=IFCPROPERTYENUMERATION('E',(IFCLABEL('NF')),$);\n");
    const std::string text = Changed(model, change);
    EXPECT_NE(text.find("#212=IFCPROPERTYENUMERATEDVALUE('Nutzen',$,(IFCLABEL('VF')),$);"),
              std::string::npos);
}

class RoomWritingInEverySchema : public RoomWriting,
                                 public ::testing::WithParamInterface<const char*> {};

TEST_P(RoomWritingInEverySchema, AnOutlineBecomesABodyAFootprintAndAnArea) {
    const Outline outline{{1, 1}, {7, 1}, {7, 4}, {3, 4}, {3, 3}, {1, 3}};
    const ModelText model = with(net, GetParam());
    const std::string text = Changed(model, outlined(outline));
    const Room& room = RoomOf(text);
    EXPECT_EQ(room.outline, outline);
    EXPECT_NEAR(room.squareMetres, 16.0, 1e-9);
    EXPECT_EQ(room.areaFrom, AreaFrom::Net);
    EXPECT_NE(text.find("'FootPrint','GeometricCurveSet'"), std::string::npos);
    EXPECT_NE(text.find(",3.);"), std::string::npos) << "as high as the room was";
    EXPECT_EQ(linesBeyond(model.Text(), text).size(), 2u) << "the shape and the quantity";
}

TEST_P(RoomWritingInEverySchema, ANewRoomHasAllThatARoomHas) {
    RoomChange wanted = named(L"2.01");
    wanted.function = L"Flur";
    wanted.storey = L"OG";
    wanted.occupancy = L"VF";
    wanted.outline = Outline{{0, 0}, {2, 0}, {2, 3}, {0, 3}};
    const ModelText model = with(upperStorey, GetParam());
    const std::string text = Added(model, wanted);
    const Room& room = RoomOf(text, L"2.01");
    EXPECT_EQ(room.globalId, L"2x00000000000000000099");
    EXPECT_EQ(room.function, L"Flur");
    EXPECT_EQ(room.storeyName, L"OG");
    EXPECT_EQ(room.outline, *wanted.outline);
    EXPECT_NEAR(room.squareMetres, 6.0, 1e-9);
    EXPECT_EQ(room.areaFrom, AreaFrom::Net);
    EXPECT_EQ(room.properties.occupancy.text, L"VF");
    EXPECT_TRUE(linesBeyond(model.Text(), text).empty());
    const bool old = std::string(GetParam()) == "IFC2X3";
    EXPECT_NE(text.find(old ? "'NetFloorArea',$,$,6.);" : "'NetFloorArea',$,$,6.,$);"),
              std::string::npos);
    EXPECT_NE(text.find(old ? "'BaseQuantities'" : "'Qto_SpaceBaseQuantities'"), std::string::npos);
    EXPECT_NE(text.find(",2.5);"), std::string::npos) << "the storey above all has no height";
}

TEST_F(RoomWriting, NewInstancesHaveTheOwnerHistoryOfTheModel) {
    RoomChange room = inStorey(L"DG");
    room.occupancy = L"VF";
    room.outline = Outline{{0, 0}, {2, 0}, {2, 3}, {0, 3}};
    const StepFile file([] {
        std::string model = with("#99=IFCOWNERHISTORY($,$,$,.NOCHANGE.,$,$,$,0);\n").Text();
        return model.replace(model.find("',$,'Haus',$,$,$,$,(#6)"), 3, "',#99");
    }());
    const Building building(file);
    RoomWriter writer(building);
    writer.Add("2x00000000000000000099", room);
    int owned = 0;
    for (const std::string& line : linesBeyond(writer.Text(), file.Text()))
        owned += line.find("',#99,") != std::string::npos ? 1 : 0;
    EXPECT_EQ(owned, 7) << "storey, space, properties, quantities, and what relates the last three";
}

INSTANTIATE_TEST_SUITE_P(Schemas, RoomWritingInEverySchema,
                         ::testing::Values("IFC2X3", "IFC4", "IFC4X3_ADD2"));

TEST_F(RoomWriting, UnitsAreTheModels) {
    ModelText model;
    model.lines = "#100=IFCEXTRUDEDAREASOLID(#101,#5,#7,3000.);\n"
                  "#101=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,4000.,5000.);\n";
    model.lengthUnit = "IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.)";
    const std::string text = Changed(model, outlined({{0, 0}, {1.5, 0}, {1.5, 2}, {0, 2}}));
    EXPECT_NE(text.find("IFCCARTESIANPOINT((1500.,2000.))"), std::string::npos);
    EXPECT_NE(text.find("'NetFloorArea',$,$,3000000.,$)"), std::string::npos);
    EXPECT_NEAR(RoomOf(text).squareMetres, 3.0, 1e-9);
}

TEST_F(RoomWriting, AnOutlineStandsWhereItIsInAPlaceThatIsTurned) {
    ModelText model =
        with("#120=IFCLOCALPLACEMENT(#9,#121);\n#121=IFCAXIS2PLACEMENT3D(#122,#7,#123);\n"
             "#122=IFCCARTESIANPOINT((10.,20.,1.));\n#123=IFCDIRECTION((0.,1.,0.));\n");
    model.spacePlacement = "#120";
    const Outline outline{{1, 1}, {3, 1}, {3, 4}, {1, 4}};
    EXPECT_EQ(RoomOf(Changed(model, outlined(outline))).outline, outline);
}

TEST_F(RoomWriting, ARoomMovesToAnotherStoreyWithItsPlace) {
    ModelText model = with(upperStorey + secondRoom +
                           "#120=IFCLOCALPLACEMENT(#9,#121);\n#121=IFCAXIS2PLACEMENT3D(#4,$,$);\n");
    model.spacePlacement = "#120";
    const std::string text = Changed(model, inStorey(L"OG"));
    EXPECT_NE(text.find("#120=IFCLOCALPLACEMENT(#42,#121);"), std::string::npos);
    const Room& room = RoomOf(text);
    EXPECT_EQ(room.storeyName, L"OG");
    EXPECT_EQ(room.outline.front(), (Point{-2, -2.5}));
    EXPECT_EQ(RoomOf(text, L"1.02").storeyName, L"EG");
    EXPECT_EQ(linesBeyond(text, model.Text()).size(), 2u) << "its place, and its part of a storey";
}

TEST_F(RoomWriting, OthersThatStandOnTheSamePlaceStay) {
    const ModelText model = with(upperStorey);
    const std::string text = Changed(model, inStorey(L"OG"));
    EXPECT_NE(text.find("#9=IFCLOCALPLACEMENT($,#5);"), std::string::npos);
    EXPECT_EQ(RoomOf(text).storeyName, L"OG");
}

TEST_F(RoomWriting, AStoreyThatTheModelLacksIsMade) {
    const ModelText model = with(upperStorey);
    const std::string text = Changed(model, inStorey(L"DG"));
    EXPECT_EQ(RoomOf(text).storeyName, L"DG");
    ASSERT_EQ(building_->Storeys().size(), 3u);
    EXPECT_EQ(building_->Storeys()[2].name, L"DG");
    EXPECT_EQ(building_->Storeys()[2].elevation, 6.0);
    EXPECT_EQ(building_->Relations().ParentOf(building_->Storeys()[2].instance).whole, 11u);

    const std::string cellar = Changed(model, inStorey(L"KG"));
    RoomOf(cellar);
    EXPECT_EQ(building_->Storeys()[0].name, L"KG");
    EXPECT_EQ(building_->Storeys()[0].elevation, -3.0);
}

TEST_F(RoomWriting, AStoreyIsKnownByWhatAListHoldsOfItsName) {
    const std::pair<const char*, const wchar_t*> names[] = {
        {"OG ", L"og"},
        {"O\\X\\0AG", L"O G"},
        {"Obergeschoss des gro\\X\\DFen Hauses am See", L"Obergeschoss des großen Hauses a"},
        {"\\X2\\4E2D\\X0\\ OG", L"? OG"}};
    for (const auto& [stands, arrives] : names) {
        ModelText model = with(upperStorey);
        model.lines.replace(model.lines.find("'OG'"), 4, "'" + std::string(stands) + "'");
        EXPECT_EQ(RoomOf(Changed(model, inStorey(arrives))).storey, 40u) << stands;
        EXPECT_EQ(building_->Storeys().size(), 2u) << stands;
    }
}

TEST_F(RoomWriting, ANewRoomIsAsHighAsItsStoreyOfTheSameBuilding) {
    RoomChange room = inStorey(L"EG");
    room.outline = Outline{{0, 0}, {2, 0}, {2, 3}, {0, 3}};
    ModelText model = with(upperStorey);
    EXPECT_NE(Added(model, room).find("#7,3.);"), std::string::npos);
    const std::string beside =
        "#60=IFCBUILDING('0000000000000000000060',$,'2',$,$,#9,$,$,.ELEMENT.,$,$,$);\n"
        "#61=IFCBUILDINGSTOREY('0000000000000000000061',$,'ZG',$,$,#9,$,$,.ELEMENT.,1.75);\n"
        "#62=IFCRELAGGREGATES('0000000000000000000062',$,$,$,#60,(#61));\n";
    EXPECT_EQ(Added(with(upperStorey + beside), room).find("#7,1.75);"), std::string::npos);
}

TEST_F(RoomWriting, RoomsThatChangePlacesLeaveNoRelationWithoutMembers) {
    const std::string third =
        "#50=IFCSPACE('0000000000000000000050',$,'2.01',$,$,#9,#51,$,.ELEMENT.,.INTERNAL.,$);\n"
        "#51=IFCPRODUCTDEFINITIONSHAPE($,$,(#21));\n"
        "#52=IFCRELAGGREGATES('0000000000000000000052',$,$,$,#40,(#50));\n";
    const StepFile file(with(upperStorey + secondRoom + third).Text());
    const Building building(file);
    RoomWriter writer(building);
    for (const Room& room : building.Rooms())
        writer.Change(room, inStorey(room.storeyName == L"EG" ? L"OG" : L"EG"));
    const std::string text = writer.Text();
    EXPECT_EQ(RoomOf(text, L"1.01").storeyName, L"OG");
    EXPECT_EQ(RoomOf(text, L"1.02").storeyName, L"OG");
    EXPECT_EQ(RoomOf(text, L"2.01").storeyName, L"EG");
    EXPECT_EQ(text.find("()"), std::string::npos);
}

} // namespace
} // namespace kalvrooms::ifc
