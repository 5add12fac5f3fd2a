#include "ifc/IfcDrawing.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "drawing/DrawingFile.h"
#include "drawing/DrawingHost.h"
#include "ifc/ModelText.h"
#include "support/TemporaryFolder.h"

namespace kalvrooms::ifc {
namespace {

class IfcDrawings : public ::testing::Test {
  protected:
    IfcDrawings() {
        model_.lines =
            Rectangle +
            "#200=IFCRELDEFINESBYPROPERTIES('0000000000000000000200',$,$,$,(#20),#201);\n"
            "#201=IFCELEMENTQUANTITY('0000000000000000000201',$,'BaseQuantities',$,$,("
            "#202));\n#202=IFCQUANTITYAREA('NetFloorArea',$,$,18.,$);\n";
    }

    IfcDrawing& Open() {
        writeBytes(path_, model_.Text());
        return Open(path_);
    }
    IfcDrawing& Open(const std::filesystem::path& path) {
        opened_ = std::make_unique<IfcDrawing>(path);
        return *opened_;
    }

    // The host around the model's drawing.
    void Serve() { host_.session.drawing = Open().Read(); }

    const TemporaryFolder folder_;
    std::filesystem::path path_ = folder_ / "model.ifc";
    ModelText model_;
    std::unique_ptr<IfcDrawing> opened_;
    DrawingHost host_;
};

TEST_F(IfcDrawings, EveryRoomIsAnElementWithTheAttributesOfAWriter) {
    const Drawing drawing = Open().Read();
    EXPECT_EQ(drawing.project.name, L"Haus");
    EXPECT_EQ(drawing.project.folder, folder_.path().wstring());
    EXPECT_EQ(drawing.AttributeName(AreaTypeNumber), L"Flächenart_DIN277");
    ASSERT_EQ(drawing.elements.size(), 1u);
    const Element& element = drawing.elements[0];
    EXPECT_EQ(element.identity.FileID, L"0000000000000000000020");
    EXPECT_EQ(element.identity.FileNumber, 1);
    EXPECT_GE(element.identity.ComponentID, 0);
    EXPECT_EQ(element.name, L"1.01");
    EXPECT_EQ(element.function, L"Büro");
    EXPECT_EQ(element.storey, L"EG");
    EXPECT_EQ(element.outline.size(), 4u);
    ASSERT_EQ(element.attributes.size(), 4u);
    EXPECT_EQ(element.attributes[0].name, L"Bodenfläche");
    EXPECT_EQ(element.attributes[0].NumberValue(), 18.0);
    EXPECT_EQ(element.attributes[1].name, L"Umschließungsart");
    EXPECT_EQ(element.attributes[2].name, L"Nutzen");
    EXPECT_EQ(element.attributes[3].name, L"Flächenart_DIN277");
    EXPECT_EQ(drawing.NewElement().attributes.size(), 4u);
}

TEST_F(IfcDrawings, WithoutAChangeTheFileIsTheSame) {
    const IfcDrawing& model = Open();
    EXPECT_EQ(model.Write(model.Read()), model_.Text());
}

TEST_F(IfcDrawings, WhatAListCannotHoldIsNoChange) {
    model_.lines +=
        "#30=IFCSPACE('0000000000000000000030',$,'\\X2\\4E2D\\X0\\ 2',$,$,#9,#22,"
        "'Ein Name, der l\\X\\E4nger ist als zweiunddrei\\X\\DFig Zeichen\\X\\0Aund mehr',"
        ".ELEMENT.,.INTERNAL.,$);\n"
        "#31=IFCRELAGGREGATES('0000000000000000000031',$,$,$,#12,(#30));\n";
    const IfcDrawing& model = Open();
    Drawing drawing = model.Read();
    Element& element = drawing.elements[1];
    element.name = L"? 2 ";
    element.function = element.function.substr(0, 32);
    for (Point& point : element.outline)
        point.x += 1e-7;
    element.outline.push_back(element.outline.front());
    CloseOutline(element.outline);
    EXPECT_EQ(model.Write(drawing), model_.Text());
    element.function += L"!";
    EXPECT_NE(model.Write(drawing), model_.Text());
}

TEST_F(IfcDrawings, ARoomThatTheHostTakesInBecomesASpace) {
    Serve();
    const auto service = host_.CreateHostApplication()->GetDrawingService();
    const auto list = service->CreateElementList();
    const auto room = service->CreateRoomElement();
    room->RoomName(L"9.99");
    room->StoreyCode(L"DG");
    room->Outline({{0, 0}, {3, 0}, {3, 2}, {0, 2}, {0, 0}});
    list->Add(*room);
    service->AddElements(*list);
    service->ApplyChanges();
    const HostIdentity identity = room->Record().Identity;
    EXPECT_EQ(identity.FileID.size(), 22u);
    EXPECT_EQ(identity.FileNumber, 1);

    SaveText(path_, opened_->Write(host_.session.drawing));
    const Drawing again = Open(path_).Read();
    ASSERT_EQ(again.elements.size(), 2u);
    EXPECT_EQ(again.elements[1].identity, identity) << "the same identity when it is read again";
    EXPECT_EQ(again.elements[1].name, L"9.99");
    EXPECT_EQ(again.elements[1].storey, L"DG");
    EXPECT_EQ(again.elements[1].attributes[0].NumberValue(), 6.0);
}

TEST_F(IfcDrawings, TheModelsAreaStandsAsLongAsItsOutlineDoes) {
    Drawing drawing = Open().Read();
    Element element = drawing.elements[0];
    element.name = L"new";
    drawing.Replace(element, 0);
    EXPECT_EQ(drawing.elements[0].attributes[0].NumberValue(), 18.0);
    element.outline = {{0, 0}, {2, 0}, {2, 2}, {0, 2}};
    drawing.Replace(element, 0);
    EXPECT_EQ(drawing.elements[0].attributes[0].NumberValue(), 4.0);
}

TEST_F(IfcDrawings, SavingTwiceSaysTheSame) {
    const IfcDrawing& model = Open();
    Drawing drawing = model.Read();
    drawing.elements[0].storey = L"DG";
    const std::string once = model.Write(drawing);
    SaveText(path_, opened_->Write(drawing));
    const std::string twice = model.Write(drawing);
    // New instances but for their random GlobalIds.
    EXPECT_EQ(once.size(), twice.size());
}

TEST_F(IfcDrawings, AFileThatIsNoModelIsRefused) {
    writeBytes(path_, "ISO-10303-21;\nHEADER;\nENDSEC;\nDATA;\n#1=X('a);\n");
    try {
        Open(path_);
        ADD_FAILURE() << "it was read";
    } catch (const HostError& error) {
        EXPECT_EQ(error.description(), L"line 5, #1: a text without an end");
    }
    EXPECT_THROW(Open(folder_ / "missing.ifc"), HostError);
}

} // namespace
} // namespace kalvrooms::ifc
