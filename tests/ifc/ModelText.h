#pragma once
// Models written in tests: a project in metres with one building, one storey and one room, and what
// a test adds.

#include <string>

namespace kalvrooms::ifc {

struct ModelText {
    std::string schema = "IFC4";
    std::string lengthUnit = "IFCSIUNIT(*,.LENGTHUNIT.,$,.METRE.)";
    // Further units, as "#90,#91" with their instances among the lines.
    std::string otherUnits;
    // Numbers below 100 are the model's own.
    std::string lines;
    std::string spacePlacement = "#9";
    // Items of the room's body.
    std::string items = "#100";
    std::string shape = "#22";

    std::string Text() const {
        return "ISO-10303-21;\nHEADER;\nFILE_DESCRIPTION(('ViewDefinition "
               "[CoordinationView]'),'2;1');\n"
               "FILE_NAME('test.ifc','2024-01-01T00:00:00',(''),(''),'','','');\n"
               "FILE_SCHEMA(('" +
               schema +
               "'));\nENDSEC;\nDATA;\n"
               "#1=IFCPROJECT('0000000000000000000001',$,'Haus',$,$,$,$,(#6),#2);\n"
               "#2=IFCUNITASSIGNMENT((#3" +
               (otherUnits.empty() ? "" : "," + otherUnits) +
               "));\n"
               "#3=" +
               lengthUnit +
               ";\n"
               "#4=IFCCARTESIANPOINT((0.,0.,0.));\n"
               "#5=IFCAXIS2PLACEMENT3D(#4,$,$);\n"
               "#6=IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-05,#5,$);\n"
               "#7=IFCDIRECTION((0.,0.,1.));\n"
               "#8=IFCAXIS2PLACEMENT2D(#10,$);\n"
               "#9=IFCLOCALPLACEMENT($,#5);\n"
               "#10=IFCCARTESIANPOINT((0.,0.));\n"
               "#11=IFCBUILDING('0000000000000000000011',$,'Haus',$,$,#9,$,$,.ELEMENT.,$,$,$);\n"
               "#12=IFCBUILDINGSTOREY('0000000000000000000012',$,'EG',$,$,#9,$,$,.ELEMENT.,0.);\n"
               "#13=IFCRELAGGREGATES('0000000000000000000013',$,$,$,#1,(#11));\n"
               "#14=IFCRELAGGREGATES('0000000000000000000014',$,$,$,#11,(#12));\n"
               "#15=IFCRELAGGREGATES('0000000000000000000015',$,$,$,#12,(#20));\n"
               "#20=IFCSPACE('0000000000000000000020',$,'1.01',$,$," +
               spacePlacement + "," + shape +
               ",'B\\X2\\00FC\\X0\\ro',.ELEMENT.,.INTERNAL.,$);\n"
               "#21=IFCSHAPEREPRESENTATION(#6,'Body','SweptSolid',(" +
               items +
               "));\n"
               "#22=IFCPRODUCTDEFINITIONSHAPE($,$,(#21));\n" +
               lines + "ENDSEC;\nEND-ISO-10303-21;\n";
    }
};

// A swept solid #100 over the profile #101, 3 units high.
inline std::string Extruded(const std::string& profile) {
    return "#100=IFCEXTRUDEDAREASOLID(#101,#5,#7,3.);\n#101=" + profile;
}

// A room of 4 by 5 metres.
inline const std::string Rectangle = Extruded("IFCRECTANGLEPROFILEDEF(.AREA.,$,#8,4.,5.);\n");

} // namespace kalvrooms::ifc
