#include "ifc/Building.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "ifc/GlobalId.h"
#include "ifc/JoinOutlines.h"
#include "ifc/ModelText.h"

namespace kalvrooms::ifc {
namespace {

// A model with its text.
struct Read {
    explicit Read(const ModelText& model) : file(model.Text()), building(file) {}
    const Room& First() const { return building.Rooms().at(0); }
    StepFile file;
    Building building;
};

ModelText with(const std::string& lines) {
    ModelText model;
    model.lines = Rectangle + lines;
    return model;
}

std::string properties(const std::string& property, const std::string& name = "Pset_Irgendwas") {
    return "#200=IFCRELDEFINESBYPROPERTIES('0000000000000000000200',$,$,$,(#20),#201);\n"
           "#201=IFCPROPERTYSET('0000000000000000000201',$,'" +
           name + "',$,(#202));\n#202=" + property + ";\n";
}

std::string quantities(const std::string& members, const std::string& lines) {
    return "#200=IFCRELDEFINESBYPROPERTIES('0000000000000000000200',$,$,$,(#20),#201);\n"
           "#201=IFCELEMENTQUANTITY('0000000000000000000201',$,'BaseQuantities',$,$,(" +
           members + "));\n" + lines;
}

TEST(Rooms, HaveTheirNamesTheirStoreyAndTheirIdentity) {
    const Read read(with(""));
    const Room& room = read.First();
    EXPECT_EQ(room.globalId, L"0000000000000000000020");
    EXPECT_EQ(room.name, L"1.01");
    EXPECT_EQ(room.function, L"Büro");
    EXPECT_EQ(room.storeyName, L"EG");
    EXPECT_EQ(room.storey, 12u);
    EXPECT_GE(room.componentId, 0);
    EXPECT_TRUE(read.building.Troubles().empty());
}

TEST(Rooms, OutlinesRunCounterClockwiseWithoutARepeatedPoint) {
    const Read read(with(""));
    EXPECT_EQ(read.First().outline, (Outline{{-2, -2.5}, {2, -2.5}, {2, 2.5}, {-2, 2.5}}));
}

TEST(Rooms, AreFoundInTheirStoreyThroughRoomsThatTheyArePartOf) {
    ModelText model = with("#30=IFCSPACE('0000000000000000000030',$,'1.01a',$,$,#9,$,$,.PARTIAL.,"
                           ".INTERNAL.,$);\n"
                           "#31=IFCRELAGGREGATES('0000000000000000000031',$,$,$,#20,(#30));\n");
    const Read read(model);
    ASSERT_EQ(read.building.Rooms().size(), 2u);
    EXPECT_EQ(read.building.Rooms()[1].name, L"1.01a");
    EXPECT_EQ(read.building.Rooms()[1].storeyName, L"EG");
}

TEST(Rooms, MayBeContainedInTheirStoreyOrStandInNone) {
    const Read read(with("#30=IFCSPACE('0000000000000000000030',$,'2',$,$,#9,#22,$,.ELEMENT.,"
                         ".INTERNAL.,$);\n#31=IFCSPACE('0000000000000000000031',$,'3',$,$,#9,#22,$,"
                         ".ELEMENT.,.INTERNAL.,$);\n"
                         "#32=IFCRELCONTAINEDINSPATIALSTRUCTURE('0000000000000000000032',$,$,$,("
                         "#30,#999),#12);\n"));
    ASSERT_EQ(read.building.Rooms().size(), 3u);
    EXPECT_EQ(read.building.Rooms()[1].storeyName, L"EG");
    EXPECT_EQ(read.building.Rooms()[2].storeyName, L"");
    EXPECT_EQ(read.building.Troubles(),
              std::vector<std::string>{"space #31: it stands in no storey"});
}

TEST(Rooms, ComeStoreyByStoreyFromBelow) {
    const Read read(with("#40=IFCBUILDINGSTOREY('0000000000000000000040',$,'UG',$,$,#9,$,$,"
                         ".ELEMENT.,-3.);\n"
                         "#41=IFCRELAGGREGATES('0000000000000000000041',$,$,$,#11,(#40));\n"
                         "#42=IFCRELAGGREGATES('0000000000000000000042',$,$,$,#40,(#43));\n"
                         "#43=IFCSPACE('0000000000000000000043',$,'0.01',$,$,#9,#22,$,.ELEMENT.,"
                         ".INTERNAL.,$);\n"));
    ASSERT_EQ(read.building.Storeys().size(), 2u);
    EXPECT_EQ(read.building.Storeys()[0].name, L"UG");
    EXPECT_EQ(read.building.Storeys()[0].elevation, -3.0);
    EXPECT_EQ(read.First().name, L"0.01");
}

TEST(Areas, OfQuantitiesNetGoesBeforeGrossAndBothBeforeAnyOther) {
    const std::string any = "#202=IFCQUANTITYAREA('GSA BIM Area',$,$,17.,$);\n";
    const std::string gross = "#203=IFCQUANTITYAREA('GrossFloorArea',$,$,19.,$);\n";
    const std::string net = "#204=IFCQUANTITYAREA('Net Floor Area',$,$,18.,$);\n";
    const std::string wall = "#205=IFCQUANTITYAREA('NetWallArea',$,$,50.,$);\n";
    const auto area = [](const std::string& members, const std::string& lines) {
        const Read read(with(quantities(members, lines)));
        return std::pair(read.First().squareMetres, read.First().areaFrom);
    };
    EXPECT_EQ(area("#205,#202,#203,#204", wall + any + gross + net),
              std::pair(18.0, AreaFrom::Net));
    EXPECT_EQ(area("#205,#202,#203", wall + any + gross), std::pair(19.0, AreaFrom::Gross));
    EXPECT_EQ(area("#205,#202", wall + any), std::pair(17.0, AreaFrom::Any));
    EXPECT_EQ(area("#205", wall), std::pair(20.0, AreaFrom::Outline));
    EXPECT_EQ(area("#206", "#206=IFCQUANTITYAREA('NetFloorArea',$,$,0.,$);\n"),
              std::pair(20.0, AreaFrom::Outline))
        << "a quantity that nobody filled in";
    EXPECT_EQ(area("#207", "#207=IFCPHYSICALCOMPLEXQUANTITY('Raum',$,(#204),'',$,$);\n" + net),
              std::pair(18.0, AreaFrom::Net));
}

TEST(Areas, MayBePropertiesOfTheSpace) {
    const Read any(with(properties("IFCPROPERTYSINGLEVALUE('Area',$,IFCAREAMEASURE(17.),$)")));
    EXPECT_EQ(any.First().squareMetres, 17.0);
    EXPECT_EQ(any.First().areaFrom, AreaFrom::Any);
    const Read net(with(properties("IFCPROPERTYSINGLEVALUE('Nettogrundfl\\X2\\00E4\\X0\\che',$,"
                                   "IFCREAL(16.5),$)")));
    EXPECT_EQ(net.First().squareMetres, 16.5);
    EXPECT_EQ(net.First().areaFrom, AreaFrom::Net);
}

TEST(Areas, AreInTheirOwnUnitOrTheProjects) {
    ModelText model = with(quantities("#202", "#202=IFCQUANTITYAREA('NetFloorArea',$,$,18000000.,"
                                              "$);\n#90=IFCSIUNIT(*,.AREAUNIT.,.MILLI.,"
                                              ".SQUARE_METRE.);\n"));
    model.otherUnits = "#90";
    EXPECT_NEAR(Read(model).First().squareMetres, 18.0, 1e-9);
    model = with(quantities("#202", "#202=IFCQUANTITYAREA('NetFloorArea',$,#91,180000.,$);\n"
                                    "#91=IFCSIUNIT(*,.AREAUNIT.,.CENTI.,.SQUARE_METRE.);\n"));
    EXPECT_NEAR(Read(model).First().squareMetres, 18.0, 1e-9);
    model = with(quantities("#202", "#202=IFCQUANTITYAREA('NetFloorArea',$,$,18000000.,$);\n"));
    model.lengthUnit = "IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.)";
    EXPECT_NEAR(Read(model).First().squareMetres, 18.0, 1e-9) << "length squared";
}

TEST(Attributes, ComeFromPropertySetsWhateverTheirLanguage) {
    const std::string names[] = {"Umschlie\\X2\\00DF\\X0\\ungsart", "NUTZEN",
                                 "Fl\\X\\E4chenart 277", "Fl\\X2\\00E4\\X0\\chenart_DIN277"};
    const auto of = [](const std::string& name) {
        const Read read(
            with(properties("IFCPROPERTYSINGLEVALUE('" + name + "',$,IFCLABEL('x y'),$)")));
        const SpaceProperties& had = read.First().properties;
        return had.enclosure.text + L"|" + had.occupancy.text + L"|" + had.areaType.text;
    };
    EXPECT_EQ(of(names[0]), L"x y||");
    EXPECT_EQ(of(names[1]), L"|x y|");
    EXPECT_EQ(of(names[2]), L"||x y");
    EXPECT_EQ(of(names[3]), L"||x y");
    EXPECT_EQ(of("Nutzer"), L"||");
}

TEST(Attributes, MayBeEnumeratedNumbersOrNothing) {
    const auto of = [](const std::string& property) {
        return Read(with(properties(property))).First().properties.occupancy.text;
    };
    EXPECT_EQ(of("IFCPROPERTYENUMERATEDVALUE('Nutzen',$,(IFCLABEL('HNF 2')),$)"), L"HNF 2");
    EXPECT_EQ(of("IFCPROPERTYSINGLEVALUE('Nutzen',$,IFCREAL(3.),$)"), L"3");
    EXPECT_EQ(of("IFCPROPERTYSINGLEVALUE('Nutzen',$,$,$)"), L"");
    EXPECT_EQ(of("IFCCOMPLEXPROPERTY('DIN 277',$,'',(#203));\n#203=IFCPROPERTYSINGLEVALUE('Nutzen',"
                 "$,IFCTEXT('VF'),$)"),
              L"VF");
}

TEST(Attributes, TheRoomsOwnGoBeforeItsTypesAndOursBeforeAll) {
    const std::string type =
        "#210=IFCRELDEFINESBYTYPE('0000000000000000000210',$,$,$,(#20),#211);\n"
        "#211=IFCSPACETYPE('0000000000000000000211',$,'T',$,$,(#212),$,$,$,.SPACE.,$);\n"
        "#212=IFCPROPERTYSET('0000000000000000000212',$,'T',$,(#213));\n"
        "#213=IFCPROPERTYSINGLEVALUE('Nutzen',$,IFCLABEL('of type'),$);\n";
    const std::string set = properties("IFCPROPERTYSINGLEVALUE('Nutzen',$,IFCLABEL('of room'),$)");
    const std::string own = "#220=IFCRELDEFINESBYPROPERTIES('0000000000000000000220',$,$,$,(#20),"
                            "IFCPROPERTYSETDEFINITIONSET((#221)));\n"
                            "#221=IFCPROPERTYSET('0000000000000000000221',$,'Quartino',$,(#222));\n"
                            "#222=IFCPROPERTYSINGLEVALUE('Nutzen',$,IFCLABEL(''),$);\n";
    EXPECT_EQ(Read(with(type)).First().properties.occupancy.text, L"of type");
    EXPECT_EQ(Read(with(type + set)).First().properties.occupancy.text, L"of room");
    EXPECT_EQ(Read(with(type + set + own)).First().properties.occupancy.text, L"");
}

TEST(Attributes, AClassOfDin277SaysTheUse) {
    const auto of = [](const std::string& reference, const std::string& source) {
        const Read read(with("#200=IFCRELASSOCIATESCLASSIFICATION('0000000000000000000200',$,$,$,(#"
                             "20),#201);\n#201=IFCCLASSIFICATIONREFERENCE($," +
                             reference + ",#202,$,$);\n#202=IFCCLASSIFICATION($,$,$,'" + source +
                             "',$,$,$);\n"));
        const SpaceProperties& had = read.First().properties;
        return had.enclosure.text + L"|" + had.occupancy.text;
    };
    EXPECT_EQ(of("'NUF 2','Buero'", "DIN 277"), L"|NUF 2");
    EXPECT_EQ(of("'hnf5',$", "Raumarten"), L"|HNF 5");
    EXPECT_EQ(of("'5.2','Unterricht'", "DIN 277-2:2005"), L"|NUF 5");
    EXPECT_EQ(of("'9.1','Flur'", "DIN277"), L"|VF");
    EXPECT_EQ(of("'a',$", "DIN 277"), L"a|");
    EXPECT_EQ(of("'5.2','Unterricht'", "Uniclass"), L"|");
}

TEST(Outlines, AFootprintGoesBeforeTheBody) {
    ModelText model =
        with("#300=IFCSHAPEREPRESENTATION(#6,'FootPrint','GeometricCurveSet',(#301));\n"
             "#301=IFCGEOMETRICCURVESET((#302,#303));\n#302=IFCPOLYLINE((#310,#311,#312));\n"
             "#303=IFCPOLYLINE((#312,#313,#310));\n#310=IFCCARTESIANPOINT((0.,0.));\n"
             "#311=IFCCARTESIANPOINT((3.,0.));\n#312=IFCCARTESIANPOINT((3.,3.));\n"
             "#313=IFCCARTESIANPOINT((0.,3.));\n#320=IFCPRODUCTDEFINITIONSHAPE($,$,(#21,#300));\n");
    model.shape = "#320";
    EXPECT_EQ(Read(model).First().outline, (Outline{{0, 0}, {3, 0}, {3, 3}, {0, 3}}));
}

TEST(Outlines, OfSeveralPartsTheLargestIsTakenAndItIsSaid) {
    ModelText model = with("#110=IFCEXTRUDEDAREASOLID(#111,#5,#7,3.);\n#111=IFCRECTANGLEPROFILEDEF("
                           ".AREA.,$,#112,1.,1.);\n#112=IFCAXIS2PLACEMENT2D(#113,$);\n"
                           "#113=IFCCARTESIANPOINT((10.,0.));\n");
    model.items = "#110,#100";
    const Read read(model);
    EXPECT_NEAR(SignedArea(read.First().outline), 20.0, 1e-9);
    EXPECT_EQ(
        read.building.Troubles(),
        std::vector<std::string>{"space #20: its ground has 2 parts; the largest one is taken"});
}

TEST(Outlines, ASpaceWithoutAShapeIsARoomWithoutOutlineAndItIsSaid) {
    ModelText model = with("");
    model.shape = "$";
    const Read read(model);
    EXPECT_TRUE(read.First().outline.empty());
    EXPECT_EQ(read.First().areaFrom, AreaFrom::Nothing);
    EXPECT_EQ(read.building.Troubles(),
              std::vector<std::string>{"space #20: it has no shape that can be used"});
}

// What becomes of a room whose shape the lines break.
std::string troubleWith(const std::string& lines, const std::string& placement = "#9") {
    ModelText model;
    model.lines = lines;
    model.spacePlacement = placement;
    const Read read(model);
    EXPECT_TRUE(read.First().outline.empty());
    return read.building.Troubles().empty() ? "" : read.building.Troubles().front();
}

TEST(BrokenModels, WhatIsWrongIsNamedAndTheRoomStays) {
    EXPECT_EQ(troubleWith(""), "line 24, #21: the instance is missing, not #100");
    EXPECT_EQ(troubleWith("#100=IFCEXTRUDEDAREASOLID(#101,#5,#7,'x');\n"),
              "line 26, #100: a number is expected, not 'x'");
    EXPECT_EQ(troubleWith(Rectangle + "#120=IFCLOCALPLACEMENT(#121,#5);\n"
                                      "#121=IFCLOCALPLACEMENT(#120,#5);\n",
                          "#120"),
              "line 28, #120: the placement stands on itself");
}

TEST(BrokenModels, AnItemThatCannotBeReadLeavesTheOthers) {
    ModelText model = with("#110=IFCSPIRAL(1.);\n");
    model.items = "#110,#100";
    const Read read(model);
    EXPECT_NEAR(SignedArea(read.First().outline), 20.0, 1e-9);
    EXPECT_EQ(read.building.Troubles().size(), 1u);
}

TEST(BrokenModels, AShapeThatIsReadWholeIsTakenBeforeOneInPart) {
    ModelText model =
        with("#102=IFCEXTRUDEDAREASOLID(#103,#5,#7,3.);\n"
             "#103=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,2.,2.);\n#110=IFCSPIRAL(1.);\n"
             "#120=IFCPRODUCTDEFINITIONSHAPE($,$,(#121,#21));\n"
             "#121=IFCSHAPEREPRESENTATION(#6,'FootPrint','SweptSolid',(#110,#102));\n");
    model.shape = "#120";
    EXPECT_NEAR(SignedArea(Read(model).First().outline), 20.0, 1e-9);
}

TEST(BrokenModels, ParametersOfACurveOfSeveralKindsAreRefused) {
    EXPECT_NE(troubleWith(Extruded("IFCARBITRARYCLOSEDPROFILEDEF(.AREA.,$,#110);\n") +
                          "#110=IFCTRIMMEDCURVE(#111,(IFCPARAMETERVALUE(0.)),(IFCPARAMETERVALUE("
                          "180.)),.T.,.PARAMETER.);\n#111=IFCCOMPOSITECURVE((#112),.F.);\n"
                          "#112=IFCCOMPOSITECURVESEGMENT(.CONTINUOUS.,.T.,#113);\n"
                          "#113=IFCCIRCLE(#8,2.);\n")
                  .find("points are expected where a curve"),
              std::string::npos);
}

TEST(BrokenModels, ShapesThatAreNoneAreRefusedInWords) {
    const auto curve = [](const std::string& lines) {
        return Extruded("IFCARBITRARYCLOSEDPROFILEDEF(.AREA.,$,#110);\n") + "#110=" + lines + ";\n";
    };
    const auto spline = [&](const std::string& degree, const std::string& knots,
                            const std::string& weights = "1.,1.,1.") {
        return curve("IFCRATIONALBSPLINECURVEWITHKNOTS(" + degree +
                     ",(#111,#111,#111),.UNSPECIFIED.,.F.,.F.," + knots + ",.UNSPECIFIED.,(" +
                     weights + "));\n#111=IFCCARTESIANPOINT((1.,1.))");
    };
    const std::pair<std::string, const char*> refused[] = {
        {spline("0", "(3,3),(0.,1.)"), "a degree from 1 to 24"},
        {spline("3", "(3,3),(0.,1.)"), "more points than the degree"},
        {spline("2", "(3,3),(0.)"), "a knot for each multiplicity"},
        {spline("2", "(3,2),(0.,1.)"), "the knots do not fit the points"},
        {spline("2", "(6),(0.)"), "knots that grow"},
        {spline("2", "(3,3),(0.,1.)", "1.,0.,1."), "a weight greater than 0"},
        {curve("IFCINDEXEDPOLYCURVE(#111,(IFCLINEINDEX((1,3))),.F.);\n"
               "#111=IFCCARTESIANPOINTLIST2D(((0.,0.),(4.,0.)))"),
         "the index of a point"},
        {curve("IFCCOMPOSITECURVE((#8),.F.)"), "a segment of a composite curve"},
        {curve("IFCCIRCLE(#8,0.)"), "a radius greater than 0"},
        {curve("IFCTRIMMEDCURVE(#111,(),(),.T.,.PARAMETER.);\n#111=IFCCIRCLE(#8,1.)"),
         "a trimming point"},
        {curve("IFCTRIMMEDCURVE(#111,(#10),(#10),.T.,.CARTESIAN.);\n#111=IFCPOLYLINE((#10))"),
         "a curve that can be trimmed"},
        {curve("IFCPOLYLINE((#8))"), "a point is expected"},
        {curve("IFCPOLYLINE((#111));\n#111=IFCCARTESIANPOINT((1.))"), "coordinates are expected"},
        {curve("IFCPOLYLINE((#111));\n#111=IFCCARTESIANPOINT((1.,2.,3.,4.))"),
         "at most three coordinates"},
        {Extruded("IFCCENTERLINEPROFILEDEF(.AREA.,$,#8,1.);\n"), "a kind of profile that is known"},
        {"#100=IFCEXTRUDEDAREASOLID(#101,#4,#7,3.);\n#101=IFCCIRCLEPROFILEDEF(.AREA.,$,#8,1.);\n",
         "axes are expected"},
        {"#100=IFCEXTRUDEDAREASOLID(#101,#5,#4,3.);\n#101=IFCCIRCLEPROFILEDEF(.AREA.,$,#8,1.);\n",
         "a direction is expected"},
        {"#100=IFCMAPPEDITEM(#101,#5);\n#101=IFCREPRESENTATIONMAP(#5,#21);\n",
         "an operator of a mapped item"},
        {"#100=IFCSWEPTDISKSOLID(#101,1.,$,$,$);\n#101=IFCPOLYLINE((#4));\n",
         "a directrix with two points"},
        {"#100=IFCFACETEDBREP(#101);\n#101=IFCCLOSEDSHELL((#102));\n#102=IFCFACE(());\n",
         "a face with a bound"},
        {"#100=IFCTRIANGULATEDFACESET(#101,$,.T.,((1,2,3)),$);\n"
         "#101=IFCCARTESIANPOINTLIST3D(((0.,0.,0.),(4.,0.,0.)));\n",
         "the index of a point"},
    };
    for (const auto& [lines, words] : refused)
        EXPECT_NE(troubleWith(lines).find(words), std::string::npos) << lines;
    EXPECT_NE(troubleWith(Rectangle, "#5").find("a local placement"), std::string::npos);
}

TEST(BrokenModels, UnitsThatAreNoneAreRefusedInWords) {
    const std::pair<const char*, const char*> refused[] = {
        {"IFCSIUNIT(*,.LENGTHUNIT.,.MEGA_.,.METRE.)", "a prefix of a unit"},
        {"IFCCONVERSIONBASEDUNIT($,.LENGTHUNIT.,'FOOT',#90);\n"
         "#90=IFCMEASUREWITHUNIT(IFCRATIOMEASURE(1.),#3)",
         "the unit is made of itself"},
        {"IFCCONVERSIONBASEDUNIT($,.LENGTHUNIT.,'FOOT',#90);\n"
         "#90=IFCMEASUREWITHUNIT(IFCRATIOMEASURE(0.),#91);\n"
         "#91=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.)",
         "a unit is greater than 0"},
        {"IFCCONTEXTDEPENDENTUNIT($,.LENGTHUNIT.,'ELL')", "a unit with a known size"},
    };
    for (const auto& [unit, words] : refused) {
        ModelText model = with("");
        model.lengthUnit = unit;
        try {
            const Read read(model);
            ADD_FAILURE() << unit;
        } catch (const StepError& error) {
            EXPECT_NE(std::string(error.what()).find(words), std::string::npos) << error.what();
        }
    }
}

TEST(BrokenModels, CrossingsWithoutEndAreRefused) {
    std::string lines;
    std::string points;
    for (int i = 0; i < 3000; ++i) {
        points += (i ? ",#" : "#") + std::to_string(200 + i);
        lines += "#" + std::to_string(200 + i) + "=IFCCARTESIANPOINT((" +
                 std::to_string(i * 1499 % 2999) + ".," + std::to_string(i * i % 2999) + ".));\n";
    }
    EXPECT_NE(troubleWith("#100=IFCPOLYLINE((" + points + ",#200));\n" + lines).find("too many"),
              std::string::npos);
}

TEST(BrokenModels, UnitsThatAreMadeOfTooManyOthersAreRefused) {
    std::string many = "#92";
    for (int i = 0; i < 16; ++i)
        many += ",#92";
    const Read read(with(quantities("#202", "#202=IFCQUANTITYAREA('NetFloorArea',$,#90,18.,$);\n"
                                            "#90=IFCDERIVEDUNIT((" +
                                                many +
                                                "),.USERDEFINED.,$);\n"
                                                "#92=IFCDERIVEDUNITELEMENT(#3,2);\n")));
    EXPECT_EQ(read.building.Troubles(),
              std::vector<std::string>{"line 31, #90: the unit is made of too many others"});
}

TEST(BrokenModels, WhatARelationLeadsToMayBeMissing) {
    const Read read(
        with("#200=IFCRELDEFINESBYPROPERTIES('0000000000000000000200',$,$,$,(#20),#201);\n"
             "#210=IFCRELDEFINESBYTYPE('0000000000000000000210',$,$,$,(#20),#211);\n"
             "#220=IFCRELASSOCIATESCLASSIFICATION('0000000000000000000220',$,$,$,(#20),#221);\n"));
    EXPECT_EQ(read.building.Troubles(),
              (std::vector<std::string>{"line 28, #200: the instance is missing, not #201",
                                        "line 29, #210: the instance is missing, not #211",
                                        "line 30, #220: the instance is missing, not #221"}));
}

TEST(BrokenModels, ShapesThatAreMadeOfThemselvesAreRefused) {
    EXPECT_NE(troubleWith("#100=IFCMAPPEDITEM(#101,#102);\n#101=IFCREPRESENTATIONMAP(#5,#21);\n"
                          "#102=IFCCARTESIANTRANSFORMATIONOPERATOR3D($,$,#4,1.,$);\n")
                  .find("too many shapes within each other"),
              std::string::npos);
    EXPECT_NE(
        troubleWith("#100=IFCBOOLEANRESULT(.DIFFERENCE.,#100,#100);\n").find("too many points"),
        std::string::npos);
    EXPECT_NE(troubleWith("#100=IFCBOOLEANRESULT(.UNION.,#100,#100);\n").find("too many"),
              std::string::npos);
}

TEST(BrokenModels, PropertiesThatAreMadeOfThemselvesAreRefused) {
    const auto trouble = [](const std::string& lines) {
        const Read read(with(lines));
        return read.building.Troubles().size() == 1 ? read.building.Troubles()[0] : "";
    };
    EXPECT_EQ(trouble(properties("IFCCOMPLEXPROPERTY('A',$,'',(#203));\n"
                                 "#203=IFCCOMPLEXPROPERTY('B',$,'',(#202))")),
              "line 30, #202: the property is within itself");
    std::string wide = "#209";
    for (int i = 0; i < 199; ++i)
        wide += ",#209";
    std::string lines = "IFCCOMPLEXPROPERTY('A',$,'',(#203))";
    for (int i = 203; i < 208; ++i)
        lines += ";\n#" + std::to_string(i) + "=IFCCOMPLEXPROPERTY('A',$,'',(#" +
                 std::to_string(i + 1) + ",#" + std::to_string(i + 1) + "))";
    lines += ";\n#208=IFCCOMPLEXPROPERTY('A',$,'',(" + wide +
             "));\n#209=IFCPROPERTYSINGLEVALUE('Nutzen',$,IFCTEXT('VF'),$)";
    EXPECT_NE(trouble(properties(lines)).find("#208: the space has too many properties"),
              std::string::npos);
}

TEST(BrokenModels, ARelationThatCannotBeReadIsPassedOver) {
    const Read read(
        with("#200=IFCRELDEFINESBYPROPERTIES('0000000000000000000200',$,$,$,'x',#1);\n"));
    EXPECT_EQ(read.building.Rooms().size(), 1u);
    ASSERT_EQ(read.building.Troubles().size(), 1u);
    EXPECT_EQ(read.building.Troubles()[0], "line 28, #200: a list is expected, not 'x'");
}

TEST(BrokenModels, AnotherSchemaIsRefused) {
    ModelText model = with("");
    model.schema = "AUTOMOTIVE_DESIGN";
    const StepFile file(model.Text());
    EXPECT_THROW(Building{file}, StepError);
}

TEST(Identity, NumbersHave31BitsAndStayTheSame) {
    const std::vector<std::string> ids = {"1xS3BCk291UvhgP2dvNMKI", "2gRXFgjRn2HPE$YoDLX3FV"};
    const std::vector<std::int32_t> numbers = ComponentIds(ids);
    EXPECT_GE(numbers[0], 0);
    EXPECT_GE(numbers[1], 0);
    EXPECT_EQ(ComponentIds({ids[1], ids[0]}), (std::vector<std::int32_t>{numbers[1], numbers[0]}));
}

TEST(Identity, TheLaterOfTwoThatCollideIsNumberedOn) {
    const std::int32_t number = ComponentIds({"A"})[0];
    EXPECT_EQ(ComponentIds({"A", "A", "A"}),
              (std::vector<std::int32_t>{number, number + 1, number + 2}));
}

TEST(Identity, ANewGlobalIdHas22LettersOf128Bits) {
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        const std::string id = NewGlobalId();
        EXPECT_EQ(id.size(), 22u);
        EXPECT_LE(id[0], '3');
        EXPECT_EQ(
            id.find_first_not_of("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwx"
                                 "yz_$"),
            std::string::npos);
        EXPECT_TRUE(seen.insert(id).second);
    }
}

} // namespace
} // namespace kalvrooms::ifc
