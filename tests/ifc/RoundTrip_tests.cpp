// A model goes through the bridge into a list and back, as the user's commands do it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "drawing/DrawingFile.h"
#include "ifc/IfcDrawing.h"
#include "support/BridgeContext.h"
#include "support/RoomForTest.h"
#include "support/TemporaryFolder.h"

namespace kalvrooms::ifc {
namespace {

class RoundTrip : public ::testing::Test {
  protected:
    RoundTrip() : context_(host_) {
        host_.session.drawing = model_.Read();
        host_.session.drawing.project.folder = (folder_ / "p").wstring();
        host_.session.placing.At({100, 100});
        bridge_ = context_.bridge();
        bridge_->GetProjectName();
        bridge_->ImportFloorsFromKalvero(floors_);
    }

    void Export() { testing::writeTo(*bridge_, floors_); }
    std::string Written() const { return model_.Write(host_.session.drawing); }
    static std::string Original() { return readBytes(path()); }

    static std::filesystem::path path() {
        const char* given = std::getenv("QUARTINO_MODEL");
        return given
                   ? std::filesystem::path(given)
                   : std::filesystem::path(QUARTINO_SOURCE_DIR) / "examples" / "haus" / "haus.ifc";
    }

    const TemporaryFolder folder_;
    IfcDrawing model_{path()};
    DrawingHost host_;
    testing::BridgeContext context_;
    std::unique_ptr<clsKalvero> bridge_;
    clsFloors floors_;
};

TEST_F(RoundTrip, RoomsComeWithTheirAttributesAndTheAreaOfTheirQuantity) {
    EXPECT_EQ(floors_.GetCountOfRooms(), 9);
    const clsRoom room = roomAt(floors_, 1);
    EXPECT_EQ(room.Name(), L"E.01");
    EXPECT_EQ(room.Occupancy(), L"HNF 1");
    EXPECT_EQ(room.AreaType(), L"N");
    EXPECT_NEAR(room.Geometry->Area(), 44.257, 0.001) << "the quantity's, not the outline's";
}

// Also of another model: QUARTINO_MODEL names it.
TEST_F(RoundTrip, AListThatNothingWasChangedInLeavesEveryByte) {
    Export();
    EXPECT_TRUE(Written() == Original());
}

TEST_F(RoundTrip, ARenamedRoomChangesItsSpaceAndNothingElse) {
    for (Element& element : host_.session.drawing.elements)
        if (element.name == L"O.03")
            element.name = L"O.33";
    floors_ = clsFloors();
    bridge_->ImportFloorsFromKalvero(floors_);
    Export();
    std::istringstream before(Original());
    std::istringstream after(Written());
    int changed = 0;
    for (std::string was, is; std::getline(before, was) && std::getline(after, is);) {
        if (was != is) {
            ++changed;
            EXPECT_NE(is.find("'O.33'"), std::string::npos) << is;
        }
    }
    EXPECT_EQ(changed, 1);
}

TEST_F(RoundTrip, ARoomOfTheProgrammeIsPlacedAndFoundAgain) {
    clsRoom wanted;
    wanted.Name(L"D.01");
    wanted.StoryCode(L"DG");
    wanted.Geometry->Area(12.0);
    floors_.AddRooms(wanted, 1);
    Export();
    const std::filesystem::path saved = folder_ / "saved.ifc";
    SaveText(saved, model_.Write(host_.session.drawing));
    const IfcDrawing again(saved);
    EXPECT_TRUE(again.Troubles().empty());
    ASSERT_EQ(again.Model().Rooms().size(), 10u);
    const Room& room = again.Model().Rooms().back();
    EXPECT_EQ(room.name, L"D.01");
    EXPECT_EQ(room.storeyName, L"DG");
    EXPECT_NEAR(room.squareMetres, 12.0, 0.01);
    EXPECT_EQ(again.Read().elements.back().identity,
              host_.session.drawing.elements.back().identity);
}

} // namespace
} // namespace kalvrooms::ifc
