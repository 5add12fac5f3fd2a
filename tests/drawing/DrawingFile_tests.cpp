#include "drawing/DrawingFile.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace kalvrooms::practice {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

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

class TemporaryFolder {
  public:
    TemporaryFolder()
        : path_(std::filesystem::temp_directory_path() /
                ("practice-drawing-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)))) {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    std::filesystem::path operator/(const char* name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

TEST(DrawingFile, ReadsEveryField) {
    const Drawing drawing = ReadDrawing(School);
    EXPECT_EQ(drawing.project.name, L"Schule am Markt");
    EXPECT_EQ(drawing.project.folder, L"C:\\Projekte\\Schule");
    EXPECT_EQ(drawing.project.number, 4711);
    ASSERT_EQ(drawing.elements.size(), 1u);
    const Element& element = drawing.elements[0];
    EXPECT_EQ(element.componentId, 17);
    EXPECT_EQ(element.fileNumber, 3);
    EXPECT_EQ(element.fileId, L"K3");
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
    EXPECT_EQ(drawing.elements[0].componentId, 9);
    EXPECT_EQ(drawing.elements[1].componentId, 8);
    EXPECT_EQ(drawing.elements[2].componentId, 10);
    EXPECT_EQ(drawing.elements[0].fileNumber, 1);
    EXPECT_EQ(drawing.elements[2].fileId, L"K4");
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
    EXPECT_THAT(WriteDrawing(ReadDrawing("{}")), testing::Not(HasSubstr("newElementAttributes")));
}

TEST(DrawingFile, ARepeatedLastPointIsTakenAway) {
    const Drawing drawing = ReadDrawing(R"({"elements":[{"outline":[[0,0],[1,0],[1,1],[0,0]]}]})");
    EXPECT_EQ(drawing.elements[0].outline.size(), 3u);
}

TEST(DrawingFile, AByteOrderMarkIsPassedOver) {
    EXPECT_EQ(ReadDrawing("\xEF\xBB\xBF{\"project\":{\"name\":\"ä\"}}").project.name, L"ä");
}

TEST(DrawingFile, MalformedFilesAreRefusedWithThePlace) {
    EXPECT_THAT(Refusal(""), HasSubstr("not JSON"));
    EXPECT_THAT(Refusal("{\"elements\":["), HasSubstr("not JSON"));
    EXPECT_THAT(Refusal("{\"project\":{\"name\":\"\xFF\"}}"), HasSubstr("not JSON"));
    EXPECT_THAT(Refusal("[]"), HasSubstr("it is not an object"));
    EXPECT_THAT(Refusal(R"({"project":7})"), HasSubstr("project is not an object"));
    EXPECT_THAT(Refusal(R"({"project":{"name":7}})"), HasSubstr("project.name is not a text"));
    EXPECT_THAT(Refusal(R"({"elements":{}})"), HasSubstr("elements is not a list"));
    EXPECT_THAT(Refusal(R"({"elements":[{},3]})"), HasSubstr("elements[1] is not an object"));
    EXPECT_THAT(Refusal(R"({"elements":[{"componentId":1.5}]})"),
                HasSubstr("elements[0].componentId is not a whole number"));
    EXPECT_THAT(Refusal(R"({"elements":[{"colour":99999999999}]})"),
                HasSubstr("elements[0].colour does not fit"));
    EXPECT_THAT(Refusal(R"({"elements":[{"colour":18446744073709551615}]})"),
                HasSubstr("does not fit"));
    EXPECT_THAT(Refusal(R"({"elements":[{"outline":[[1,2],[3]]}]})"),
                HasSubstr("elements[0].outline[1] is not a point"));
    EXPECT_THAT(Refusal(R"({"elements":[{"outline":[[1,"2"]]}]})"), HasSubstr("is not a number"));
    EXPECT_THAT(Refusal(R"({"elements":[{"outline":[[1,1e999]]}]})"), HasSubstr("not JSON"));
    EXPECT_THAT(Refusal(R"({"elements":[{"attributes":[{"value":[]}]}]})"),
                HasSubstr("elements[0].attributes[0].value is not a number"));
    EXPECT_THAT(Refusal(R"({"attributeNames":{"29x":"a"}})"), HasSubstr("29x"));
    EXPECT_THAT(Refusal(R"({"attributeNames":{"293":5}})"), HasSubstr("is not a text"));
    EXPECT_THAT(Refusal(R"({"newElementAttributes":[1]})"), HasSubstr("newElementAttributes"));
    EXPECT_THAT(Refusal(R"({"placements":[{"componentIds":["1"]}]})"),
                HasSubstr("placements[0].componentIds[0]"));
    EXPECT_THAT(Refusal(R"({"elements":[{"componentId":2147483647},{}]})"),
                HasSubstr("none is left"));
}

TEST(DrawingFile, EndlessNestingIsRefused) {
    EXPECT_THAT(Refusal("{\"x\":" + std::string(200000, '[')), HasSubstr("nested"));
}

TEST(DrawingFile, EveryCutOfAFileIsRefused) {
    const std::string whole = School;
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_THROW(ReadDrawing(whole.substr(0, length)), HostError) << length;
}

TEST(DrawingFile, SavesAndLoadsAndLeavesNothingBeside) {
    const TemporaryFolder folder;
    const auto file = folder / "a.json";
    SaveDrawing(ReadDrawing("{}"), file);
    SaveDrawing(ReadDrawing(School), file);
    EXPECT_EQ(LoadDrawing(file).elements.size(), 1u);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "."), {}), 1);
}

TEST(DrawingFile, MissingFilesAndFoldersAreRefused) {
    const TemporaryFolder folder;
    EXPECT_THROW(LoadDrawing(folder / "none.json"), HostError);
    EXPECT_THROW(LoadDrawing(folder / "."), HostError);
    EXPECT_THROW(SaveDrawing(Drawing(), folder / "none/a.json"), HostError);
}

} // namespace
} // namespace kalvrooms::practice
