#include "drawing/DrawingFile.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <string>

#include "support/TemporaryFolder.h"

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

const char* const School = R"({
 "project": {"name": "Schule am Markt", "folder": "C:\\Projekte\\Schule", "number": 4711},
 "attributeNames": {"231": "Umschließungsart", "293": "Bodenfläche"},
 "elements": [
  {"componentId": 17, "fileNumber": 3, "fileId": "K3", "name": "Klasse 1", "function": "Unterricht",
   "storey": "EG", "colour": 255, "outline": [[0,0],[5,0],[5,2.5],[0,2.5]],
   "attributes": [{"name": "Bodenfläche", "value": 12.5}, {"name": "Nutzen", "value": "2 Büro"}]}
 ],
 "placements": [{"mode": 10, "at": [1.5,-2], "componentIds": [17]}]
})";

std::string Refusal(const std::string& json) {
    try {
        ReadDrawing(json);
    } catch (const HostError& error) {
        return error.what();
    }
    return {};
}

class DrawingFiles : public ::testing::Test {
  protected:
    const TemporaryFolder folder;
};

TEST(DrawingFile, ReadsEveryField) {
    const Drawing drawing = ReadDrawing(School);
    EXPECT_EQ(drawing.project.name, L"Schule am Markt");
    EXPECT_EQ(drawing.project.folder, L"C:\\Projekte\\Schule");
    EXPECT_EQ(drawing.project.number, 4711);
    ASSERT_EQ(drawing.elements.size(), 1u);
    const Element& element = drawing.elements[0];
    EXPECT_EQ(element.identity.ComponentID, 17);
    EXPECT_EQ(element.identity.FileNumber, 3);
    EXPECT_EQ(element.identity.FileID, L"K3");
    EXPECT_EQ(element.name, L"Klasse 1");
    EXPECT_EQ(element.function, L"Unterricht");
    EXPECT_EQ(element.storey, L"EG");
    EXPECT_EQ(element.colour, 255);
    EXPECT_THAT(element.outline,
                ElementsAre(Point{0, 0}, Point{5, 0}, Point{5, 2.5}, Point{0, 2.5}));
    ASSERT_EQ(element.attributes.size(), 2u);
    EXPECT_EQ(element.attributes[0].name, L"Bodenfläche");
    EXPECT_EQ(element.attributes[0].NumberValue(), 12.5);
    EXPECT_EQ(element.attributes[0].TextValue(), L"12.5");
    EXPECT_EQ(element.attributes[1].NumberValue(), 0.0);
    EXPECT_EQ(element.attributes[1].TextValue(), L"2 Büro");
    ASSERT_EQ(drawing.placements.size(), 1u);
    EXPECT_EQ(drawing.placements[0].mode, 10);
    EXPECT_EQ(drawing.placements[0].at, (Point{1.5, -2}));
    EXPECT_THAT(drawing.placements[0].componentIds, ElementsAre(17));
}

TEST(DrawingFile, OnlyTheNamedNumbersHaveNamesWhenTheFileNamesAny) {
    const Drawing drawing = ReadDrawing(School);
    EXPECT_EQ(drawing.AttributeName(231), L"Umschließungsart");
    EXPECT_THROW(drawing.AttributeName(235), HostError);
    EXPECT_THROW(ReadDrawing(R"({"attributeNames":{}})").AttributeName(293), HostError);
}

TEST(DrawingFile, MissingKeysHaveDefaults) {
    const Drawing drawing = ReadDrawing("{}");
    EXPECT_EQ(drawing.project.name, L"");
    EXPECT_EQ(drawing.project.number, 0);
    EXPECT_TRUE(drawing.elements.empty());
    EXPECT_EQ(drawing.AttributeName(293), L"Bodenfläche");
    EXPECT_EQ(drawing.AttributeName(231), L"Umschließungsart");
    EXPECT_EQ(drawing.AttributeName(235), L"Nutzen");
    EXPECT_EQ(drawing.AttributeName(232), L"Flächenart 277");
}

TEST(DrawingFile, ElementsWithoutNumbersGetFreeOnes) {
    const Drawing drawing = ReadDrawing(R"({"elements":[{},{"componentId":8},{"fileNumber":4}]})");
    EXPECT_EQ(drawing.elements[0].identity.ComponentID, 9);
    EXPECT_EQ(drawing.elements[1].identity.ComponentID, 8);
    EXPECT_EQ(drawing.elements[2].identity.ComponentID, 10);
    EXPECT_EQ(drawing.elements[0].identity.FileNumber, 1);
    EXPECT_EQ(drawing.elements[2].identity.FileID, L"K4");
}

TEST(DrawingFile, WhatIsWrittenReadsTheSameAgain) {
    const std::string written = WriteDrawing(ReadDrawing(School));
    EXPECT_EQ(WriteDrawing(ReadDrawing(written)), written);
    EXPECT_THAT(written, HasSubstr("\"name\": \"Bodenfläche\",\n     \"value\": 12.5"));
    EXPECT_THAT(written, HasSubstr("\"value\": \"2 Büro\""));
}

TEST(DrawingFile, WritesTheKeysInTheirOrder) {
    const std::string written = WriteDrawing(ReadDrawing(School));
    std::size_t at = 0;
    for (const char* key :
         {"project", "name", "folder", "number", "attributeNames", "elements", "componentId",
          "fileNumber", "fileId", "name", "function", "storey", "colour", "outline", "attributes",
          "placements", "mode", "at", "componentIds"}) {
        std::string quoted("\"");
        quoted.append(key).append("\":");
        at = written.find(quoted, at);
        ASSERT_NE(at, std::string::npos) << key;
    }
}

TEST(DrawingFile, UnknownKeysSurvive) {
    const std::string written = WriteDrawing(
        ReadDrawing(R"({"author":"x","project":{"client":[1,{"a":null}]},)"
                    R"("elements":[{"layer":7,"attributes":[{"name":"a","unit":"m"}]}],)"
                    R"("placements":[{"by":"hand"}]})"));
    for (const char* kept :
         {"\"author\": \"x\"", "\"client\"", "\"layer\": 7", "\"unit\": \"m\"", "\"by\": \"hand\""})
        EXPECT_THAT(written, HasSubstr(kept));
}

TEST(DrawingFile, KeepsTheNamesForNewElements) {
    const Drawing drawing = ReadDrawing(R"({"newElementAttributes":[" Nutzen","Farbe"]})");
    ASSERT_TRUE(drawing.newElementAttributes);
    EXPECT_THAT(*drawing.newElementAttributes, ElementsAre(L" Nutzen", L"Farbe"));
    EXPECT_TRUE(ReadDrawing(WriteDrawing(drawing)).newElementAttributes);
    EXPECT_THAT(WriteDrawing(ReadDrawing("{}")), ::testing::Not(HasSubstr("newElementAttributes")));
}

TEST(DrawingFile, ARepeatedLastPointIsTakenAway) {
    const Drawing drawing = ReadDrawing(R"({"elements":[{"outline":[[0,0],[1,0],[1,1],[0,0]]}]})");
    EXPECT_EQ(drawing.elements[0].outline.size(), 3u);
}

TEST(DrawingFile, AByteOrderMarkIsPassedOver) {
    EXPECT_EQ(ReadDrawing("\xEF\xBB\xBF{\"project\":{\"name\":\"ä\"}}").project.name, L"ä");
}

TEST(DrawingFile, MalformedFilesAreRefusedWithThePlace) {
    const std::pair<const char*, const char*> refusals[] = {
        {"", "parse_error"},
        {"{\"elements\":[", "parse_error"},
        {"{\"project\":{\"name\":\"\xFF\"}}", "UTF-8"},
        {R"({"elements":[{"outline":[[1,1e999]]}]})", "number overflow"},
        {"[]", "is not an object"},
        {R"({"project":7})", "(/project) is not an object"},
        {R"({"project":{"name":7}})", "(/project/name) type must be string, but is number"},
        {R"({"elements":{}})", "(/elements) type must be array, but is object"},
        {R"({"elements":[{},3]})", "(/elements/1) is not an object"},
        {R"({"elements":[{"componentId":1.5}]})",
         "(/elements/0/componentId) is not a whole number"},
        {R"({"elements":[{"colour":99999999999}]})", "(/elements/0/colour) does not fit"},
        {R"({"elements":[{"colour":18446744073709551615}]})", "does not fit"},
        {R"({"elements":[{"outline":[[1,2],[3]]}]})",
         "(/elements/0/outline/1) is not a point [x,y]"},
        {R"({"elements":[{"outline":[[1,"2"]]}]})",
         "(/elements/0/outline/0/1) type must be number"},
        {R"({"elements":[{"attributes":[{"value":[]}]}]})",
         "(/elements/0/attributes/0/value) type must be number"},
        {R"({"attributeNames":{"29x":"a"}})", "29x"},
        {R"({"attributeNames":{"293":5}})", "(/attributeNames/293) type must be string"},
        {R"({"newElementAttributes":[1]})", "(/newElementAttributes/0)"},
        {R"({"placements":[{"componentIds":["1"]}]})", "(/placements/0/componentIds/0)"},
        {R"({"elements":[{"componentId":2147483647},{}]})", "none is left"},
    };
    for (const auto& [json, trouble] : refusals)
        EXPECT_THAT(Refusal(json), HasSubstr(trouble)) << json;
}

TEST(DrawingFile, EndlessNestingIsRefused) {
    EXPECT_THAT(Refusal("{\"x\":" + std::string(200000, '[')), HasSubstr("nested"));
}

TEST(DrawingFile, EveryCutOfAFileIsRefused) {
    const std::string whole = School;
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_THROW(ReadDrawing(whole.substr(0, length)), HostError) << length;
}

TEST_F(DrawingFiles, SaveAndLoadAndLeaveNothingBeside) {
    const auto file = folder / "a.json";
    SaveDrawing(ReadDrawing("{}"), file);
    SaveDrawing(ReadDrawing(School), file);
    EXPECT_EQ(LoadDrawing(file).elements.size(), 1u);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST_F(DrawingFiles, MissingFilesAndFoldersAreRefused) {
    EXPECT_THROW(LoadDrawing(folder / "none.json"), HostError);
    EXPECT_THROW(LoadDrawing(folder / "."), HostError);
    EXPECT_THROW(SaveDrawing(Drawing(), folder / "none/a.json"), HostError);
    std::filesystem::create_directories(folder / "taken" / "in");
    EXPECT_THROW(SaveDrawing(Drawing(), folder / "taken"), HostError);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

} // namespace
} // namespace kalvrooms::testing
