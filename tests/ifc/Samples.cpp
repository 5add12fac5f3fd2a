#include "ifc/Samples.h"

#include <numbers>

namespace kalvrooms::ifc {
namespace {

constexpr double pi = std::numbers::pi;
const std::string degrees =
    "#90=IFCSIUNIT(*,.PLANEANGLEUNIT.,$,.RADIAN.);\n"
    "#91=IFCMEASUREWITHUNIT(IFCPLANEANGLEMEASURE(0.0174532925199433),#90);\n"
    "#92=IFCDIMENSIONALEXPONENTS(0,0,0,0,0,0,0);\n"
    "#93=IFCCONVERSIONBASEDUNIT(#92,.PLANEANGLEUNIT.,'DEGREE',#91);\n";

std::string name(int number) {
    std::string text = "#";
    return text.append(std::to_string(number));
}

// #from=IFCCARTESIANPOINT(...) and so on.
std::string points(int from, const std::vector<std::string>& coordinates) {
    std::string lines;
    for (const std::string& point : coordinates)
        lines += name(from++) + "=IFCCARTESIANPOINT((" + point + "));\n";
    return lines;
}

// (#from,#from+1,...,#from)
std::string loop(int from, int count, bool closed = true) {
    std::string list = "(";
    for (int i = 0; i < count; ++i)
        list += (i ? ",#" : "#") + std::to_string(from + i);
    return list + (closed ? ",#" + std::to_string(from) : "") + ")";
}

ModelText model(const std::string& lines, const std::string& schema = "IFC4") {
    ModelText text;
    text.schema = schema;
    text.lines = lines;
    return text;
}

ModelText profile(const std::string& profile, const std::string& schema = "IFC4") {
    return model(Extruded(profile), schema);
}

ModelText inUnit(ModelText text, const std::string& unit, const std::string& lines = "") {
    text.lengthUnit = unit;
    text.lines += lines;
    return text;
}

ModelText inDegrees(ModelText text) {
    text.otherUnits = "#93";
    text.lines += degrees;
    return text;
}

ModelText mapped(const std::string& target) {
    return model("#100=IFCMAPPEDITEM(#102,#103);\n#102=IFCREPRESENTATIONMAP(#5,#104);\n" + target +
                 "#104=IFCSHAPEREPRESENTATION(#6,'Body','SweptSolid',(#105));\n"
                 "#105=IFCEXTRUDEDAREASOLID(#106,#5,#7,3.);\n"
                 "#106=IFCRECTANGLEPROFILEDEF(.AREA.,$,#107,4.,5.);\n"
                 "#107=IFCAXIS2PLACEMENT2D(#108,$);\n#108=IFCCARTESIANPOINT((2.,2.5));\n");
}

// The corners of a body on a ground of 4 by 5 metres, whose roof is 1 m smaller on each side.
const std::vector<std::string> bodyPoints = {"0.,0.,0.", "4.,0.,0.", "4.,5.,0.", "0.,5.,0.",
                                             "1.,1.,3.", "3.,1.,3.", "3.,4.,3.", "1.,4.,3."};

std::string bodyFaces(int from, const std::string& bound) {
    const std::vector<std::string> loops = {"#201,#204,#203,#202", "#205,#206,#207,#208",
                                            "#201,#202,#206,#205", "#202,#203,#207,#206",
                                            "#203,#204,#208,#207", "#204,#201,#205,#208"};
    std::string lines = points(201, bodyPoints);
    for (std::size_t i = 0; i < loops.size(); ++i) {
        const int id = from + 3 * static_cast<int>(i);
        lines += name(id) + "=IFCFACE((" + name(id + 1) + "));\n" + name(id + 1) + "=" + bound +
                 "(" + name(id + 2) + ",.T.);\n" + name(id + 2) + "=IFCPOLYLOOP((" + loops[i] +
                 "));\n";
    }
    return lines;
}
const std::string sixFaces = "#300,#303,#306,#309,#312,#315";

void addProfiles(std::vector<Sample>& samples) {
    const auto add = [&](const char* name, const std::string& text, double area, const Box& box) {
        samples.push_back({name, profile(text + ";\n"), area, box});
    };
    add("rectangle", "IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,4.,5.)", 20, {-2, -2.5, 2, 2.5});
    add("rounded rectangle", "IFCROUNDEDRECTANGLEPROFILEDEF(.AREA.,$,#8,4.,5.,1.)", 16 + pi,
        {-2, -2.5, 2, 2.5});
    add("hollow rectangle", "IFCRECTANGLEHOLLOWPROFILEDEF(.AREA.,$,#8,4.,5.,0.5,$,$)", 20,
        {-2, -2.5, 2, 2.5});
    add("circle", "IFCCIRCLEPROFILEDEF(.AREA.,$,#8,2.)", 4 * pi, {-2, -2, 2, 2});
    add("hollow circle", "IFCCIRCLEHOLLOWPROFILEDEF(.AREA.,$,#8,2.,0.5)", 4 * pi, {-2, -2, 2, 2});
    add("ellipse", "IFCELLIPSEPROFILEDEF(.AREA.,$,#8,3.,2.)", 6 * pi, {-3, -2, 3, 2});
    add("I", "IFCISHAPEPROFILEDEF(.AREA.,$,#8,4.,5.,1.,1.,$,$,$)", 11, {-2, -2.5, 2, 2.5});
    add("I with fillets", "IFCISHAPEPROFILEDEF(.AREA.,$,#8,4.,5.,1.,1.,0.5,$,$)", 12 - pi / 4,
        {-2, -2.5, 2, 2.5});
    add("L", "IFCLSHAPEPROFILEDEF(.AREA.,$,#8,5.,4.,1.,$,$,$)", 8, {-2, -2.5, 2, 2.5});
    add("T", "IFCTSHAPEPROFILEDEF(.AREA.,$,#8,5.,4.,1.,1.,$,$,$,$,$)", 8, {-2, -2.5, 2, 2.5});
    add("U", "IFCUSHAPEPROFILEDEF(.AREA.,$,#8,5.,4.,1.,1.,$,$,$)", 11, {-2, -2.5, 2, 2.5});
    add("Z", "IFCZSHAPEPROFILEDEF(.AREA.,$,#8,5.,4.,1.,1.,$,$)", 8, {-2, -2.5, 2, 2.5});
    add("C", "IFCCSHAPEPROFILEDEF(.AREA.,$,#8,5.,4.,1.,2.,$)", 13, {-2, -2.5, 2, 2.5});
    add("asymmetric I", "IFCASYMMETRICISHAPEPROFILEDEF(.AREA.,$,#8,4.,5.,1.,1.,$,2.,2.,$,$,$,$,$)",
        10, {-2, -2.5, 2, 2.5});
    add("trapezium", "IFCTRAPEZIUMPROFILEDEF(.AREA.,$,#8,4.,2.,5.,3.)", 15, {-2, -2.5, 3, 2.5});
    add("closed curve",
        "IFCARBITRARYCLOSEDPROFILEDEF(.AREA.,$,#110);\n#110=IFCPOLYLINE(" + loop(111, 6) + ");\n" +
            points(111, {"0.,0.", "4.,0.", "4.,2.", "2.,2.", "2.,5.", "0.,5."}) +
            "#120=IFCCARTESIANPOINT((0.,0.))",
        14, {0, 0, 4, 5});
    add("closed curve with voids",
        "IFCARBITRARYPROFILEDEFWITHVOIDS(.AREA.,$,#110,(#120));\n#110=IFCPOLYLINE(" + loop(111, 4) +
            ");\n" + points(111, {"0.,0.", "4.,0.", "4.,5.", "0.,5."}) +
            "#120=IFCCIRCLE(#121,0.5);\n#121=IFCAXIS2PLACEMENT2D(#122,$);\n"
            "#122=IFCCARTESIANPOINT((2.,2.))",
        20, {0, 0, 4, 5});
    add("derived profile",
        "IFCDERIVEDPROFILEDEF(.AREA.,$,#110,#111,$);\n"
        "#110=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,4.,5.);\n"
        "#111=IFCCARTESIANTRANSFORMATIONOPERATOR2D(#112,#114,#113,2.);\n#112=IFCDIRECTION((0.,1.));"
        "\n"
        "#114=IFCDIRECTION((-1.,0.));\n"
        "#113=IFCCARTESIANPOINT((10.,0.))",
        80, {5, -4, 15, 4});
    add("derived profile of a small circle",
        "IFCDERIVEDPROFILEDEF(.AREA.,$,#110,#111,$);\n#110=IFCCIRCLEPROFILEDEF(.AREA.,$,#8,0.02);\n"
        "#111=IFCCARTESIANTRANSFORMATIONOPERATOR2D($,$,#10,100.)",
        4 * pi, {-2, -2, 2, 2});
    add("mirrored profile",
        "IFCMIRROREDPROFILEDEF(.AREA.,$,#110,*,$);\n"
        "#110=IFCRECTANGLEPROFILEDEF(.AREA.,$,#111,4.,5.);\n#111=IFCAXIS2PLACEMENT2D(#112,$);\n"
        "#112=IFCCARTESIANPOINT((10.,0.))",
        20, {-12, -2.5, -8, 2.5});
    add("composite profile",
        "IFCCOMPOSITEPROFILEDEF(.AREA.,$,(#110,#111),$);\n"
        "#110=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,4.,5.);\n"
        "#111=IFCRECTANGLEPROFILEDEF(.AREA.,$,#112,2.,2.);\n#112=IFCAXIS2PLACEMENT2D(#113,$);\n"
        "#113=IFCCARTESIANPOINT((3.,0.))",
        24, {-2, -2.5, 4, 2.5});
}

void addCurves(std::vector<Sample>& samples) {
    const auto closed = [](const std::string& curve) {
        return profile("IFCARBITRARYCLOSEDPROFILEDEF(.AREA.,$,#110);\n#110=" + curve);
    };
    const double halfRound = 8 + 2 * pi;
    samples.push_back(
        {"indexed curve with an arc",
         closed("IFCINDEXEDPOLYCURVE(#111,(IFCLINEINDEX((1,2,3)),IFCARCINDEX((3,4,5)),"
                "IFCLINEINDEX((5,1))),.F.);\n#111=IFCCARTESIANPOINTLIST2D(((0.,0.),(4.,0.),(4.,2.),"
                "(2.,4.),(0.,2.)));\n"),
         halfRound,
         {0, 0, 4, 4}});
    samples.push_back({"indexed curve of all points",
                       closed("IFCINDEXEDPOLYCURVE(#111,$,.F.);\n#111=IFCCARTESIANPOINTLIST2D(((0.,"
                              "0.),(4.,0.),(4.,5.),(0.,5.),(0.,0.)));\n"),
                       20,
                       {0, 0, 4, 5}});
    const std::string composite =
        "IFCCOMPOSITECURVE((#112,#113),.F.);\n"
        "#112=IFCCOMPOSITECURVESEGMENT(.CONTINUOUS.,.T.,#114);\n#114=IFCPOLYLINE((#115,#116,#117,#"
        "118));\n" +
        points(115, {"0.,2.", "0.,0.", "4.,0.", "4.,2."}) +
        "#130=IFCAXIS2PLACEMENT2D(#131,#132);\n#131=IFCCARTESIANPOINT((2.,2.));\n"
        "#132=IFCDIRECTION((1.,0.));\n";
    const std::string segment = "#113=IFCCOMPOSITECURVESEGMENT(.CONTINUOUS.,.T.,#120);\n";
    const std::string circle = "#121=IFCCIRCLE(#130,2.);\n";
    samples.push_back(
        {"circle trimmed by parameters",
         closed(composite + segment + circle +
                "#120=IFCTRIMMEDCURVE(#121,(IFCPARAMETERVALUE(0.)),(IFCPARAMETERVALUE("
                "3.14159265358979)),.T.,.PARAMETER.);\n"),
         halfRound,
         {0, 0, 4, 4}});
    samples.push_back(
        {"circle trimmed by degrees against its sense",
         inDegrees(closed(composite + "#113=IFCCOMPOSITECURVESEGMENT(.CONTINUOUS.,.F.,#120);\n" +
                          circle +
                          "#120=IFCTRIMMEDCURVE(#121,(IFCPARAMETERVALUE(180.)),("
                          "IFCPARAMETERVALUE(0.)),.F.,.PARAMETER.);\n")),
         halfRound,
         {0, 0, 4, 4}});
    samples.push_back({"circle trimmed by points",
                       closed(composite + segment + circle +
                              "#120=IFCTRIMMEDCURVE(#121,(#118),(#115),.T.,.CARTESIAN.);\n"),
                       halfRound,
                       {0, 0, 4, 4}});
    samples.push_back({"ellipse trimmed by parameters",
                       closed(composite + segment +
                              "#121=IFCELLIPSE(#130,2.,1.);\n#120=IFCTRIMMEDCURVE(#121,("
                              "IFCPARAMETERVALUE(0.)),(IFCPARAMETERVALUE(3.14159265358979)),.T.,"
                              ".PARAMETER.);\n"),
                       8 + pi,
                       {0, 0, 4, 3}});
    samples.push_back({"trimmed line",
                       closed(composite + segment +
                              "#121=IFCLINE(#118,#122);\n#122=IFCVECTOR(#123,2.);\n"
                              "#123=IFCDIRECTION((-1.,0.));\n#120=IFCTRIMMEDCURVE(#121,("
                              "IFCPARAMETERVALUE(0.)),(IFCPARAMETERVALUE(2.)),.T.,.PARAMETER.);\n"),
                       8,
                       {0, 0, 4, 2}});
    // A parabola above a side of 4 m: two thirds of 4 by 2.
    samples.push_back(
        {"b-spline",
         closed(composite + segment +
                "#120=IFCBSPLINECURVEWITHKNOTS(2,(#118,#124,#115),.UNSPECIFIED.,.F.,"
                ".F.,(3,3),(0.,1.),.UNSPECIFIED.);\n#124=IFCCARTESIANPOINT((2.,6.));\n"),
         8 + 16.0 / 3,
         {0, 0, 4, 4}});
    // From the middle of the first side to the last corner; as a curve whose sense is mistaken,
    // too.
    const std::string corners =
        "=IFCPOLYLINE((#124,#125,#126,#115));\n" + points(124, {"4.,0.", "4.,4.", "0.,4."});
    const auto trimmed = [&](const std::string& name, const std::string& curve, double area = 16) {
        samples.push_back({name, closed(composite + segment + curve), area, {0, 0, 4, 4}});
    };
    const std::string byParameters = "#120=IFCTRIMMEDCURVE(#121,(IFCPARAMETERVALUE(0.5)),("
                                     "IFCPARAMETERVALUE(3.)),.T.,.PARAMETER.);\n";
    trimmed("polyline trimmed by parameters", byParameters + "#121" + corners);
    trimmed("composite curve trimmed by parameters",
            byParameters +
                "#121=IFCCOMPOSITECURVE((#127),.F.);\n"
                "#127=IFCCOMPOSITECURVESEGMENT(.CONTINUOUS.,.T.,#128);\n#128" +
                corners);
    trimmed("polyline trimmed by points against its way",
            "#120=IFCTRIMMEDCURVE(#121,(#115,IFCPARAMETERVALUE(1.)),(#118),.F.,.CARTESIAN.);\n"
            "#121" +
                corners);
    trimmed("b-spline trimmed by parameters",
            "#120=IFCTRIMMEDCURVE(#121,(IFCPARAMETERVALUE(2.)),(IFCPARAMETERVALUE(4.)),.T.,"
            ".PARAMETER.);\n#121=IFCBSPLINECURVEWITHKNOTS(2,(#118,#124,#115),.UNSPECIFIED.,.F.,"
            ".F.,(3,3),(2.,4.),.UNSPECIFIED.);\n#124=IFCCARTESIANPOINT((2.,6.));\n",
            8 + 16.0 / 3);
    trimmed(
        "curve on a surface",
        "#120=IFCSURFACECURVE(#121,(),.CURVE_3D.);\n#121=IFCPOLYLINE((#118,#125,#126,#115));\n" +
            points(125, {"4.,4.", "0.,4."}));
    samples.push_back(
        {"line trimmed by points",
         closed(composite + segment +
                "#121=IFCLINE(#118,#122);\n#122=IFCVECTOR(#123,2.);\n#123=IFCDIRECTION((-1.,0.));\n"
                "#120=IFCTRIMMEDCURVE(#121,(#118),(#115),.T.,.CARTESIAN.);\n"),
         8,
         {0, 0, 4, 2}});
    samples.push_back(
        {"circle trimmed to itself",
         closed("IFCTRIMMEDCURVE(#121,(IFCPARAMETERVALUE(1.)),(IFCPARAMETERVALUE(1.)),"
                ".T.,.PARAMETER.);\n#121=IFCCIRCLE(#8,2.);\n"),
         4 * pi,
         {-2, -2, 2, 2}});
    const auto spline = [&](const std::string& name, const std::string& curve,
                            const std::vector<std::string>& between, double area,
                            const char* schema = "IFC4") {
        ModelText text =
            closed(composite + segment + "#120=" + curve + ";\n" + points(124, between));
        text.schema = schema;
        samples.push_back({name, text, area, {0, 0, 4, 4}});
    };
    spline("rational b-spline",
           "IFCRATIONALBSPLINECURVEWITHKNOTS(2,(#118,#124,#125,#126,#115),.UNSPECIFIED.,.F.,.F.,"
           "(3,2,3),(0.,0.5,1.),.UNSPECIFIED.,(1.,0.70710678,1.,0.70710678,1.))",
           {"4.,4.", "2.,4.", "0.,4."}, halfRound);
    spline("bezier", "IFCBEZIERCURVE(2,(#118,#124,#115),.UNSPECIFIED.,.F.,.F.)", {"2.,6."},
           8 + 16.0 / 3, "IFC2X3");
    spline("two beziers", "IFCBEZIERCURVE(2,(#118,#124,#125,#126,#115),.UNSPECIFIED.,.F.,.F.)",
           {"4.,4.", "2.,4.", "0.,4."}, 12 + 8.0 / 3, "IFC2X3");
    samples.push_back({"whole circle", closed("IFCCIRCLE(#8,2.);\n"), 4 * pi, {-2, -2, 2, 2}});
}

void addSolids(std::vector<Sample>& samples) {
    const std::string rectangle = "#101=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,4.,5.);\n";
    const Box box{-2, -2.5, 2, 2.5};
    const auto add = [&](const char* name, const std::string& lines, double area, const Box& seen,
                         const char* schema = "IFC4") {
        samples.push_back({name, model(lines, schema), area, seen});
    };
    add("extruded downwards",
        "#100=IFCEXTRUDEDAREASOLID(#101,#5,#102,3.);\n#102=IFCDIRECTION((0.,0.,-1.));\n" +
            rectangle,
        20, box, "IFC2X3");
    // A section through the building, drawn out along Y: X stays, the profile's Y is height.
    add("extruded along the ground",
        "#100=IFCEXTRUDEDAREASOLID(#101,#102,#7,6.);\n#102=IFCAXIS2PLACEMENT3D(#4,#103,#104);\n"
        "#103=IFCDIRECTION((0.,-1.,0.));\n#104=IFCDIRECTION((1.,0.,0.));\n" +
            rectangle,
        24, {-2, -6, 2, 0}, "IFC2X3");
    add("tapered",
        "#100=IFCEXTRUDEDAREASOLIDTAPERED(#101,#5,#7,3.,#102);\n" + rectangle +
            "#102=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,2.,2.5);\n",
        20, box);
    // A profile of 2 by 3 m beside the axis, turned by a quarter: between radius 1 and 3.
    add("revolved about the vertical",
        "#100=IFCREVOLVEDAREASOLID(#101,#102,#103,1.5707963267949);\n"
        "#101=IFCRECTANGLEPROFILEDEF(.AREA.,$,#110,2.,3.);\n#110=IFCAXIS2PLACEMENT2D(#111,$);\n"
        "#111=IFCCARTESIANPOINT((2.,1.5));\n#102=IFCAXIS2PLACEMENT3D(#4,#104,#105);\n"
        "#104=IFCDIRECTION((0.,-1.,0.));\n#105=IFCDIRECTION((1.,0.,0.));\n"
        "#103=IFCAXIS1PLACEMENT(#4,#106);\n#106=IFCDIRECTION((0.,1.,0.));\n",
        2 * pi, {0, 0, 3, 3});
    add("block", "#100=IFCCSGSOLID(#101);\n#101=IFCBLOCK(#5,4.,5.,3.);\n", 20, {0, 0, 4, 5});
    add("cylinder", "#100=IFCCSGSOLID(#101);\n#101=IFCRIGHTCIRCULARCYLINDER(#5,3.,2.);\n", 4 * pi,
        {-2, -2, 2, 2});
    add("pyramid", "#100=IFCCSGSOLID(#101);\n#101=IFCRECTANGULARPYRAMID(#5,4.,5.,3.);\n", 20,
        {0, 0, 4, 5});
    add("cone", "#100=IFCCSGSOLID(#101);\n#101=IFCRIGHTCIRCULARCONE(#5,3.,2.);\n", 4 * pi,
        {-2, -2, 2, 2});
    add("sphere", "#100=IFCCSGSOLID(#101);\n#101=IFCSPHERE(#5,2.);\n", 4 * pi, {-2, -2, 2, 2});
    add("clipped by a half space",
        "#100=IFCBOOLEANCLIPPINGRESULT(.DIFFERENCE.,#102,#103);\n"
        "#102=IFCEXTRUDEDAREASOLID(#101,#5,#7,3.);\n" +
            rectangle +
            "#103=IFCHALFSPACESOLID(#104,.F.);\n#104=IFCPLANE(#105);\n"
            "#105=IFCAXIS2PLACEMENT3D(#106,$,$);\n#106=IFCCARTESIANPOINT((0.,0.,2.));\n",
        20, box, "IFC2X3");
    const std::string way = "=IFCPOLYLINE((#4,#111));\n#111=IFCCARTESIANPOINT((4.,0.,0.));\n";
    add("disk along a line", "#100=IFCSWEPTDISKSOLID(#110,1.,$,$,$);\n#110" + way, 8,
        {0, -1, 4, 1});
    // Its X axis stands upright.
    add("profile along a line",
        "#100=IFCFIXEDREFERENCESWEPTAREASOLID(#101,#5,#110,$,$,#7);\n"
        "#101=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,3.,2.);\n#110" +
            way,
        8, {0, -1, 4, 1});
    // Its height lies along X, and no direction is left for its own X but Y.
    add("axis along the usual direction",
        "#100=IFCEXTRUDEDAREASOLID(#101,#110,#7,3.);\n#110=IFCAXIS2PLACEMENT3D(#4,#111,$);\n"
        "#111=IFCDIRECTION((1.,0.,0.));\n" +
            rectangle,
        12, {0, -2, 3, 2});
    add("tapered to another kind of profile",
        "#100=IFCEXTRUDEDAREASOLIDTAPERED(#101,#5,#7,3.,#102);\n" + rectangle +
            "#102=IFCCIRCLEPROFILEDEF(.AREA.,$,#8,1.);\n",
        20, box);
    add("bounding box", "#100=IFCBOUNDINGBOX(#4,4.,5.,3.);\n", 20, {0, 0, 4, 5});
    add("union",
        "#100=IFCBOOLEANRESULT(.UNION.,#102,#103);\n#102=IFCEXTRUDEDAREASOLID(#101,#5,#7,3.);\n" +
            rectangle +
            "#103=IFCEXTRUDEDAREASOLID(#107,#5,#7,3.);\n"
            "#107=IFCRECTANGLEPROFILEDEF(.AREA.,$,#108,2.,2.);\n#108=IFCAXIS2PLACEMENT2D(#109,$);\n"
            "#109=IFCCARTESIANPOINT((2.,0.));\n",
        22, {-2, -2.5, 3, 2.5});
}

void addFaceSets(std::vector<Sample>& samples) {
    const Box box{0, 0, 4, 5};
    const std::string faces = bodyFaces(300, "IFCFACEOUTERBOUND");
    const auto add = [&](const char* name, const std::string& lines, const char* schema = "IFC4") {
        samples.push_back({name, model(lines, schema), 20, box});
    };
    add("faceted brep",
        "#100=IFCFACETEDBREP(#101);\n#101=IFCCLOSEDSHELL((" + sixFaces + "));\n" + faces, "IFC2X3");
    add("face based surfaces",
        "#100=IFCFACEBASEDSURFACEMODEL((#101));\n#101=IFCCONNECTEDFACESET((" + sixFaces + "));\n" +
            faces,
        "IFC2X3");
    add("shell based surfaces",
        "#100=IFCSHELLBASEDSURFACEMODEL((#101));\n#101=IFCOPENSHELL((" + sixFaces + "));\n" +
            bodyFaces(300, "IFCFACEBOUND"),
        "IFC2X3");
    // A half round, with an edge and a curve that go the other way.
    samples.push_back(
        {"advanced brep",
         model("#100=IFCADVANCEDBREP(#101);\n#101=IFCCLOSEDSHELL((#102));\n"
               "#102=IFCADVANCEDFACE((#103),#119,.T.);\n#103=IFCFACEOUTERBOUND(#104,.T.);\n"
               "#104=IFCEDGELOOP((#105,#106,#107,#108));\n#105=IFCORIENTEDEDGE(*,*,#109,.T.);\n"
               "#106=IFCORIENTEDEDGE(*,*,#110,.F.);\n#107=IFCORIENTEDEDGE(*,*,#111,.T.);\n"
               "#108=IFCORIENTEDEDGE(*,*,#112,.F.);\n#109=IFCEDGE(#113,#114);\n"
               "#110=IFCEDGECURVE(#115,#114,#117,.T.);\n#111=IFCEDGE(#115,#116);\n"
               "#112=IFCEDGECURVE(#113,#116,#118,.F.);\n#113=IFCVERTEXPOINT(#124);\n"
               "#114=IFCVERTEXPOINT(#125);\n#115=IFCVERTEXPOINT(#126);\n"
               "#116=IFCVERTEXPOINT(#127);\n#117=IFCLINE(#126,#120);\n#118=IFCCIRCLE(#122,2.);\n"
               "#119=IFCPLANE(#5);\n#120=IFCVECTOR(#121,1.);\n#121=IFCDIRECTION((-1.,0.,0.));\n"
               "#122=IFCAXIS2PLACEMENT3D(#123,$,$);\n#123=IFCCARTESIANPOINT((2.,2.,0.));\n" +
               points(124, {"0.,2.,0.", "0.,0.,0.", "4.,0.,0.", "4.,2.,0."})),
         8 + 2 * pi,
         {0, 0, 4, 4}});
    const std::string list =
        "#101=IFCCARTESIANPOINTLIST3D(((0.,0.,0.),(4.,0.,0.),(4.,5.,0.),(0.,5.,"
        "0.),(1.,1.,3.),(3.,1.,3.),(3.,4.,3.),(1.,4.,3.)));\n";
    const auto triangles = [&](const char* name, const char* first, const char* last) {
        add(name, "#100=IFCTRIANGULATEDFACESET(#101,$,.T.,((" + std::string(first) +
                      "),(1,3,2),(5,6,7),(5,7,8),(1,2,6),(1,6,5),(2,3,7),(2,7,6),(3,4,8),(3,8,7),"
                      "(4,1,5),(4,5,8))," +
                      last + ");\n" + list);
    };
    triangles("triangles", "1,4,3", "$");
    triangles("triangles with normals", "1,4,3", "((1,1,1),(1,1,1))");
    triangles("triangles by numbers of numbers", "1,9,3", "(1,2,3,4,5,6,7,8,4)");
    add("polygons",
        "#100=IFCPOLYGONALFACESET(#101,.T.,(#102,#103,#104,#105,#106,#107),$);\n" + list +
            "#102=IFCINDEXEDPOLYGONALFACE((1,4,3,2));\n#103=IFCINDEXEDPOLYGONALFACE((5,6,7,8));\n"
            "#104=IFCINDEXEDPOLYGONALFACE((1,2,6,5));\n#105=IFCINDEXEDPOLYGONALFACE((2,3,7,6));\n"
            "#106=IFCINDEXEDPOLYGONALFACE((3,4,8,7));\n#107=IFCINDEXEDPOLYGONALFACE((4,1,5,8));\n",
        "IFC4X3");
}

void addPlaces(std::vector<Sample>& samples) {
    samples.push_back({"mapped and mirrored",
                       mapped("#103=IFCCARTESIANTRANSFORMATIONOPERATOR3D(#110,#112,#111,1.,#7);\n"
                              "#110=IFCDIRECTION((0.,1.,0.));\n#112=IFCDIRECTION((1.,0.,0.));\n"
                              "#111=IFCCARTESIANPOINT((10.,0.,0.));\n"),
                       20,
                       {10, 0, 15, 4}});
    samples.push_back(
        {"mapped to a scale",
         mapped("#103=IFCCARTESIANTRANSFORMATIONOPERATOR3DNONUNIFORM(#110,#112,#111,2.,#7,3.,1.);\n"
                "#110=IFCDIRECTION((1.,0.,0.));\n#112=IFCDIRECTION((0.,1.,0.));\n"
                "#111=IFCCARTESIANPOINT((10.,0.,0.));\n"),
         120,
         {10, 0, 18, 15}});
    samples.push_back(
        {"mapped curve",
         model("#100=IFCMAPPEDITEM(#102,#103);\n#102=IFCREPRESENTATIONMAP(#8,#104);\n"
               "#103=IFCCARTESIANTRANSFORMATIONOPERATOR2D(#105,$,#106,2.);\n"
               "#104=IFCSHAPEREPRESENTATION(#6,'FootPrint','Curve2D',(#107));\n"
               "#105=IFCDIRECTION((0.,1.));\n#106=IFCCARTESIANPOINT((10.,0.));\n"
               "#107=IFCPOLYLINE(" +
               loop(111, 4) + ");\n" + points(111, {"0.,0.", "2.,0.", "2.,1.", "0.,1."})),
         8,
         {8, 0, 10, 4}});
    ModelText placed = profile("IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,4.,5.);\n");
    placed.spacePlacement = "#120";
    placed.lines +=
        "#120=IFCLOCALPLACEMENT(#121,#122);\n#121=IFCLOCALPLACEMENT(#9,#123);\n"
        "#122=IFCAXIS2PLACEMENT3D(#124,$,$);\n#124=IFCCARTESIANPOINT((10.,0.,1.));\n"
        "#123=IFCAXIS2PLACEMENT3D(#125,#7,#126);\n#125=IFCCARTESIANPOINT((0.,100.,3.));\n"
        "#126=IFCDIRECTION((0.,1.,0.));\n";
    samples.push_back({"turned and moved", placed, 20, {-2.5, 108, 2.5, 112}});
    samples.push_back({"millimetres",
                       inUnit(model("#100=IFCEXTRUDEDAREASOLID(#101,#5,#7,3000.);\n"
                                    "#101=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,4000.,5000.);\n",
                                    "IFC2X3"),
                              "IFCSIUNIT(*,.LENGTHUNIT.,.MILLI.,.METRE.)"),
                       20,
                       {-2, -2.5, 2, 2.5}});
    const std::string foot = "IFCCONVERSIONBASEDUNIT(#94,.LENGTHUNIT.,'FOOT',#95)";
    const std::string feet = "#94=IFCDIMENSIONALEXPONENTS(1,0,0,0,0,0,0);\n"
                             "#95=IFCMEASUREWITHUNIT(IFCRATIOMEASURE(0.3048),#96);\n"
                             "#96=IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.);\n";
    const std::string sides = "#100=IFCEXTRUDEDAREASOLID(#101,#5,#7,10.);\n"
                              "#101=IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,10.,20.);\n";
    samples.push_back({"feet",
                       inUnit(model(sides, "IFC2X3"), foot, feet),
                       200 * 0.3048 * 0.3048,
                       {-1.524, -3.048, 1.524, 3.048}});
    // An inch as a twelfth of a foot.
    samples.push_back(
        {"inches of feet",
         inUnit(model(sides), "IFCCONVERSIONBASEDUNIT(#94,.LENGTHUNIT.,'INCH',#97)",
                feet +
                    "#97=IFCMEASUREWITHUNIT(IFCRATIOMEASURE(0.0833333333333333),#98);\n"
                    "#98=" +
                    foot + ";\n"),
         200 * 0.0254 * 0.0254,
         {-0.127, -0.254, 0.127, 0.254}});
}

} // namespace

std::vector<Sample> Samples() {
    std::vector<Sample> samples;
    addProfiles(samples);
    addCurves(samples);
    addSolids(samples);
    addFaceSets(samples);
    addPlaces(samples);
    return samples;
}

} // namespace kalvrooms::ifc
