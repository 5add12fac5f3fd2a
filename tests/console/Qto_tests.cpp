#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "console/Compare.h"
#include "console/Din277.h"
#include "console/Qto.h"
#include "drawing/DrawingFile.h"
#include "files/FilePath.h"
#include "model/Utf8.h"
#include "support/TemporaryFolder.h"

namespace kalvrooms {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr const char* header = " Bezeichnung  \t  Funktion \t  Fl\xE4"
                               "che in qm \t  Geschoss \t  Umschlie\xDF"
                               "ungsart \t  Nutzungsart \t "
                               " Fl\xE4"
                               "chenart \t  Geometrie \t  L\xE4"
                               "nge (Dx) \t  Breite(Dy) \t  Raum-ID\r\n";

// Files of a run in a folder of its own, and what the run said.
class Qto : public ::testing::Test {
  protected:
    int run(std::vector<std::string> arguments, const std::string& input = {}) {
        std::istringstream in(input);
        std::ostringstream outStream;
        std::ostringstream errStream;
        const int code =
            RunQto(arguments, {in, outStream, errStream, true, NumberLocale::German()});
        out = outStream.str();
        err = errStream.str();
        return code;
    }
    std::string file(const std::string& name) const { return (folder_ / name).string(); }
    std::string write(const std::string& name, const std::string& bytes) const {
        writeBytes(folder_ / name, bytes);
        return file(name);
    }
    std::string bytes(const std::string& name) const { return readBytes(folder_ / name); }
    // Lines of eleven columns, as the program writes them.
    std::string list(const std::vector<std::string>& lines,
                     const std::string& name = "list.txt") const {
        std::string text = header;
        for (const std::string& line : lines)
            text += line + "\r\n";
        return write(name, text);
    }
    static std::string drawingText(const std::vector<Element>& elements) {
        Drawing drawing;
        drawing.elements = elements;
        return WriteDrawing(drawing);
    }
    std::string drawing(const std::vector<Element>& elements) const {
        return write("drawing.json", drawingText(elements));
    }
    static Element element(std::int32_t id, const std::wstring& name, const std::wstring& storey,
                           double area, const std::wstring& use = L"HNF 2") {
        Element element;
        element.identity = {id, 1, L"K1"};
        element.name = name;
        element.storey = storey;
        element.outline = {{0, 0}, {area, 0}, {area, 1}, {0, 1}};
        element.attributes = {{L"Bodenfläche", area}, {L"Nutzen", use}};
        return element;
    }
    nlohmann::json json() const { return nlohmann::json::parse(out); }

    std::string out;
    std::string err;

  private:
    const TemporaryFolder folder_;
};

const std::string office =
    "B\xFCro \t Verwaltung \t 12,5 \t EG \t a \t HNF 2 \t N \t   \t 5 \t 2,5 \t ";
const std::string hall = "Flur \t  \t 30 \t EG \t b \t VF \t N \t   \t 0 \t 0 \t 7-K1";

TEST_F(Qto, ConvertsEachFormIntoEachAndBackLetterByLetter) {
    const std::string original =
        list({office, hall, " x  \t  \t abc \t  \t  \t  \t  \t C:\\Punkte\\1.txt \t  \t  \t "});
    ASSERT_EQ(run({"convert", original, file("a.csv")}), 0) << err;
    ASSERT_EQ(run({"convert", file("a.csv"), file("b.json")}), 0) << err;
    ASSERT_EQ(run({"convert", file("b.json"), file("c.csv")}), 0) << err;
    ASSERT_EQ(run({"convert", file("c.csv"), file("d.txt")}), 0) << err;
    EXPECT_EQ(bytes("d.txt"), bytes("list.txt"));
    EXPECT_EQ(bytes("c.csv"), bytes("a.csv"));
    EXPECT_THAT(bytes("b.json"), HasSubstr("\"area\": \"12,5\""));
}

TEST_F(Qto, KeepsTitlesOfAnotherLanguageThroughJson) {
    write("en.txt", "Name \t Function \t Area \t Storey \t Enclosure \t Use \t Type \t File \t dx "
                    "\t dy \t ID\r\n" +
                        hall + "\r\n");
    ASSERT_EQ(run({"convert", file("en.txt"), file("en.json")}), 0) << err;
    ASSERT_EQ(run({"convert", file("en.json"), file("back.txt")}), 0) << err;
    EXPECT_EQ(bytes("back.txt"), bytes("en.txt"));
}

TEST_F(Qto, RefusesToLoseACharacter) {
    write("a.json", R"([{"name":"Büro ☂"}])");
    EXPECT_EQ(run({"convert", file("a.json"), file("a.txt")}), 2);
    EXPECT_THAT(err, HasSubstr("a.txt:1:"));
    EXPECT_FALSE(std::filesystem::exists(FilePath(FromUtf8(file("a.txt")))));
    EXPECT_EQ(run({"convert", file("a.json"), file("a.txt"), "--encoding", "utf-8"}), 0);
    EXPECT_EQ(run({"convert", list({hall, office}), file("b.csv"), "--encoding", "utf-8"}), 2);
    EXPECT_THAT(err, HasSubstr("list.txt:1: "));
    write("c.csv", "a,b,c,d,e,f,g,h,i,j,k\nB\xFCro,,,,,,,,,,\n");
    EXPECT_EQ(run({"convert", file("c.csv"), file("c.json")}), 2);
    EXPECT_THAT(err, HasSubstr("c.csv:2: "));
}

TEST_F(Qto, ReadsStandardInputAndTellsItsKindByItsContents) {
    list({office});
    ASSERT_EQ(run({"list", "-", "--json"}, bytes("list.txt")), 0) << err;
    EXPECT_EQ(json().at(0).at("name"), "Büro");
    ASSERT_EQ(run({"list", "-", "--json"}, drawingText({element(3, L"A", L"EG", 4)})), 0) << err;
    EXPECT_EQ(json().at(0).at("componentId"), 3);
}

TEST_F(Qto, ListsARoomOfAListWithItsSides) {
    ASSERT_EQ(run({"list", list({office}), "--json"}), 0) << err;
    const nlohmann::json room = json().at(0);
    EXPECT_EQ(room.at("area"), 12.5);
    EXPECT_EQ(room.at("dx"), 5.0);
    EXPECT_EQ(room.at("dy"), 2.5);
    EXPECT_EQ(room.at("areaFrom"), "list");
    EXPECT_EQ(room.at("pointFile"), "");
    EXPECT_EQ(room.at("outline"), nlohmann::json::array());
}

TEST_F(Qto, ListsARoomOfADrawingWithItsOutline) {
    ASSERT_EQ(run({"list", drawing({element(3, L"A", L"EG", 4)}), "--json"}), 0) << err;
    const nlohmann::json room = json().at(0);
    EXPECT_EQ(room.at("occupancy"), "HNF 2");
    EXPECT_EQ(room.at("fileId"), "K1");
    EXPECT_EQ(room.at("outline"), nlohmann::json::parse("[[0,0],[4,0],[4,1],[0,1]]"));
    EXPECT_FALSE(room.contains("dx"));
}

TEST_F(Qto, TakesTheDecimalMarkFromTheListItself) {
    const std::string line = "A \t  \t 12.5 \t EG \t  \t  \t  \t   \t 5 \t 2.5 \t ";
    ASSERT_EQ(run({"list", list({line}), "--json"}), 0) << err;
    EXPECT_EQ(json().at(0).at("area"), 12.5);
    ASSERT_EQ(run({"list", list({line}), "--json", "--locale", "de"}), 0) << err;
    EXPECT_EQ(json().at(0).at("area"), 125.0);
}

TEST_F(Qto, WritesTheSidesByTheMarksOfTheList) {
    const std::string points = "A \t  \t 11 \t EG \t  \t  \t  \t   \t 5.5 \t 2 \t ";
    const std::string commas = "A \t  \t 11 \t EG \t  \t  \t  \t   \t 5,5 \t 2 \t ";
    const auto corner = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "write");
        arguments.insert(arguments.end(), {drawing({}), file("out.json"), "--single"});
        EXPECT_EQ(run(arguments), 0) << err;
        return ReadDrawing(bytes("out.json")).elements.at(0).outline.at(2);
    };
    EXPECT_EQ(corner({list({points})}), (Point{5.5, 2}));
    EXPECT_EQ(corner({list({commas}), "--locale", "DE"}), (Point{5.5, 2}));
    EXPECT_EQ(corner({list({points}), "--locale", "EN"}), (Point{5.5, 2}));
}

TEST_F(Qto, SumsUpByStoreyUseAndFunction) {
    const std::string upstairs =
        "A \t Verwaltung \t 7,5 \t OG \t a \t nuf 2 \t N \t   \t 0 \t 0 \t ";
    const std::string odd = "B \t  \t 50 \t og \t a \t Garten \t N \t   \t 0 \t 0 \t ";
    ASSERT_EQ(run({"sums", list({office, hall, upstairs, odd}), "--csv"}), 0) << err;
    EXPECT_EQ(out, "by,group,count,area,share\r\n"
                   "storey,EG,2,42.5,42.5\r\nstorey,OG,2,57.5,57.5\r\n"
                   "use,HNF 2,1,12.5,12.5\r\nuse,NUF 2,1,7.5,7.5\r\nuse,VF,1,30.0,30.0\r\n"
                   "use,\"NF total (NF, HNF, NNF)\",1,12.5,12.5\r\n"
                   "use,NUF total (NUF 1 to 7),1,7.5,7.5\r\n"
                   "use,Garten,1,50.0,50.0\r\nuse,net floor area,4,100.0,100.0\r\n"
                   "function,Verwaltung,2,20.0,20.0\r\nfunction,(no entry),2,80.0,80.0\r\n");
}

TEST_F(Qto, ComparesByIdentityThenByDesignationAndStorey) {
    const std::string built =
        drawing({element(9, L"Büro", L"eg", 13), element(7, L"anders", L"OG", 30),
                 element(8, L"Lager", L"EG", 5)});
    const std::string wanted =
        list({office, hall, "WC \t  \t 3 \t EG \t  \t  \t  \t   \t 0 \t 0 \t "});
    EXPECT_EQ(run({"compare", wanted, built, "--tolerance", "4%", "--json"}), 1) << err;
    std::vector<std::string> states;
    for (const auto& row : json())
        states.push_back(row.at("state"));
    EXPECT_THAT(states, ElementsAre("kept", "kept", "missing", "surplus"));
    EXPECT_EQ(json().at(0).at("difference"), 0.5);
    EXPECT_EQ(json().at(0).at("percent"), 4.0);
}

TEST_F(Qto, CompareEndsWithFindingsOnlyBeyondTheTolerance) {
    const std::string built = drawing({element(9, L"Büro", L"EG", 13)});
    EXPECT_EQ(run({"compare", list({office}), built, "--tolerance", "4%"}), 0);
    EXPECT_EQ(run({"compare", list({office}), built, "--tolerance", "3,9 %"}), 1);
    EXPECT_EQ(run({"compare", list({office}), built, "--tolerance", "0.5"}), 0);
    EXPECT_EQ(run({"compare", list({office}), built, "--tolerance", "viel"}), 2);
}

TEST_F(Qto, ChecksEveryLineThatWouldSurprise) {
    const std::string wanted =
        list({office, "B\xFCro \t  \t x \t EG \t q \t HNF 9 \t N \t   \t 0 \t 0 \t ",
              "C \t  \t 20 \t Erdgeschoss \t  \t  \t  \t   \t 4 \t 6 \t ",
              std::string(33, 'n') + " \t  \t 4 \t EG \t  \t  \t  \t fehlt.txt \t 0 \t 0 \t x-17"});
    EXPECT_EQ(run({"check", wanted, "--json"}), 1);
    std::vector<std::string> found;
    for (const auto& row : json())
        found.push_back(std::to_string(row.at("line").get<int>()) + " " +
                        row.at("kind").get<std::string>());
    EXPECT_THAT(found, ElementsAre("3 twice", "3 area", "3 din277", "3 din277", "4 storey",
                                   "4 sides", "5 length", "5 pointFile", "5 roomId"));
    EXPECT_EQ(run({"check", list({office, hall})}), 0);
    EXPECT_THAT(out, IsEmpty());
}

TEST_F(Qto, ChecksPointFilesBesideTheList) {
    const std::string line = "A \t  \t 6 \t EG \t  \t  \t  \t C:\\Projekt\\2-1.txt \t 0 \t 0 \t ";
    write("2-1.txt", "4\r\n0\t0\r\n3\t0\r\n3\t2\r\n0\t2\r\nend\r\n");
    EXPECT_EQ(run({"check", list({line})}), 0) << out;
    write("2-1.txt", "4\r\n0\t0\r\n");
    EXPECT_EQ(run({"check", list({line})}), 1);
    EXPECT_THAT(out, HasSubstr("list.txt:2: "));
}

TEST_F(Qto, ReadsADrawingIntoAListWithPointFilesBesideIt) {
    ASSERT_EQ(run({"read", drawing({element(17, L"A", L"EG", 4)}), file("new.txt")}), 0) << err;
    ASSERT_TRUE(
        std::filesystem::is_regular_file(FilePath(FromUtf8(file("new-Punkte"))) / "1-17.txt"));
    ASSERT_EQ(run({"list", file("new.txt"), "--json"}), 0) << err;
    EXPECT_EQ(json().at(0).at("componentId"), 17);
    EXPECT_EQ(json().at(0).at("area"), 4.0);
    EXPECT_THAT(json().at(0).at("pointFile").get<std::string>(), HasSubstr("1-17.txt"));
    EXPECT_EQ(json().at(0).at("outline"), nlohmann::json::parse("[[0,0],[4,0],[4,1],[0,1]]"));
}

TEST_F(Qto, WritesAListIntoADrawing) {
    const std::string start = drawing({});
    ASSERT_EQ(run({"write", list({office, office}), start, file("out.json"), "--single", "--at",
                   "10,20"}),
              0)
        << err;
    ASSERT_EQ(run({"list", file("out.json"), "--json"}), 0) << err;
    EXPECT_EQ(json().at(0).at("outline").at(0), nlohmann::json::parse("[10,20]"));
    EXPECT_EQ(json().at(1).at("outline").at(0), nlohmann::json::parse("[16,20]"));
    EXPECT_EQ(json().at(1).at("occupancy"), "HNF 2");
}

TEST_F(Qto, WritesOneStoreyOnly) {
    const std::string upstairs = "A \t  \t 9 \t OG \t a \t  \t N \t   \t 0 \t 0 \t ";
    ASSERT_EQ(
        run({"write", list({office, upstairs}), drawing({}), file("out.json"), "--storey", "OG"}),
        0)
        << err;
    ASSERT_EQ(run({"list", file("out.json"), "--json"}), 0);
    ASSERT_EQ(json().size(), 1U);
    EXPECT_EQ(json().at(0).at("name"), "A");
}

TEST_F(Qto, RefusesMoreRoomsThanGoIntoADrawingAtOnce) {
    const std::string many = list(std::vector<std::string>(151, office));
    EXPECT_EQ(run({"write", many, drawing({}), file("out.json")}), 2);
    EXPECT_THAT(err, HasSubstr("150"));
    EXPECT_THAT(bytes("out.json"), IsEmpty());
}

TEST_F(Qto, ReportIsOnePageWithoutScriptsAndForeignAddresses) {
    ASSERT_EQ(run({"report", list({office, hall}), drawing({element(7, L"<Flur>", L"EG", 31)}),
                   file("r.html")}),
              0)
        << err;
    const std::string page = bytes("r.html");
    EXPECT_THAT(page, HasSubstr("<html lang=\"de\">"));
    EXPECT_THAT(page, HasSubstr("<tr class=\"miss\"><td>Büro</td>"));
    EXPECT_THAT(page, HasSubstr("&lt;Flur&gt;"));
    EXPECT_THAT(page, HasSubstr("<svg"));
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_THAT(page, Not(HasSubstr("src=")));
}

TEST_F(Qto, ReportSpeaksTheLanguageInItsPlansToo) {
    const std::string built = drawing(
        {element(7, L"A", L"EG", 1.5), element(8, L"B", L"eg", 1), element(9, L"C", L"", 1)});
    ASSERT_EQ(run({"report", list({office}), built, "-", "--lang", "en"}), 0) << err;
    EXPECT_THAT(out, HasSubstr(">1.50 m²</text>"));
    EXPECT_THAT(out, HasSubstr("data-storey=\"no storey\""));
    EXPECT_THAT(out, HasSubstr("EG <small>2 rooms, "));
    EXPECT_THAT(out, Not(HasSubstr("<figcaption>eg ")));
}

TEST_F(Qto, FormatIsAboutTheStandardStreamOrTheWrittenFileOrANamedOne) {
    list({office});
    const std::string text = bytes("list.txt");
    ASSERT_EQ(run({"convert", "-", "-", "--format", "json"}, text), 0) << err;
    EXPECT_EQ(json().at(0).at("area"), "12,5");
    ASSERT_EQ(run({"convert", "-", file("odd.dat"), "--format", "OUT=csv"}, text), 0) << err;
    EXPECT_THAT(bytes("odd.dat"), HasSubstr(",Verwaltung,"));
    ASSERT_EQ(run({"convert", file("odd.dat"), "-", "--format", "list=csv"}), 0) << err;
    EXPECT_EQ(out, text);
    ASSERT_EQ(run({"list", "-", "--format", "drawing", "--csv"},
                  drawingText({element(9, L"Halle", L"EG", 1)})),
              0)
        << err;
    EXPECT_THAT(out, HasSubstr("Halle"));
    ASSERT_EQ(run({"list", "-", "--format", "json", "--csv"}, R"([{"name":"Halle"}])"), 0) << err;
    EXPECT_THAT(out, HasSubstr("Halle"));
    ASSERT_EQ(
        run({"write", "-", drawing({}), "-", "--format", "OUT=json", "--format", "text"}, text), 0)
        << err;
    EXPECT_EQ(json().at("elements").at(0).at("name"), "Büro");
    EXPECT_EQ(run({"check", file("list.txt"), "--format", "ifc"}), 2);
    EXPECT_EQ(run({"check", file("list.txt"), "--format", "moon"}), 2);
    EXPECT_EQ(run({"compare", "-", "-"}, text), 2);
    EXPECT_THAT(err, HasSubstr("Standardeingabe"));
}

TEST_F(Qto, ADrawingIsReadFromStandardInputWhereverOneIsTaken) {
    const std::string built = drawingText({element(9, L"Büro", L"EG", 12.5)});
    const std::string wanted = list({office});
    EXPECT_EQ(run({"compare", wanted, "-"}, built), 0) << err;
    EXPECT_EQ(run({"sums", "-"}, built), 0) << err;
    EXPECT_EQ(run({"report", wanted, "-", "-"}, built), 0) << err;
    EXPECT_THAT(out, HasSubstr("</html>"));
    EXPECT_EQ(run({"write", wanted, "-", "-"}, built), 0) << err;
    EXPECT_EQ(json().at("elements").size(), 2u);
    EXPECT_EQ(run({"read", "-", "-", "--points", file("points")}, built), 0) << err;
    EXPECT_THAT(out, HasSubstr("9-K1"));
}

TEST_F(Qto, ADrawingGoesBackIntoItsOwnKindOrBecomesAPracticeDrawing) {
    const std::string house = QUARTINO_SOURCE_DIR "/examples/haus/haus.ifc";
    const std::string extra = list({"E.09 \t Bad \t 6 \t eg \t a \t NNF \t N \t   \t 3 \t 2 \t "});
    ASSERT_EQ(run({"write", extra, house, file("new.IFC"), "--at", "-20,-3.5"}), 0) << err;
    ASSERT_EQ(run({"list", file("new.IFC"), "--json"}), 0) << err;
    EXPECT_EQ(json().size(), 10u);
    EXPECT_EQ(json().at(4).at("storey"), "EG") << "one storey, whatever the letter case";
    EXPECT_EQ(json().at(4).at("outline").at(0), nlohmann::json::parse("[-20,-3]"));
    ASSERT_EQ(run({"write", extra, house, file("new.json")}), 0) << err;
    EXPECT_EQ(ReadDrawing(bytes("new.json")).elements.size(), 10u);
    EXPECT_EQ(run({"write", extra, file("new.json"), file("no.ifc")}), 2);
    EXPECT_EQ(run({"write", extra, house, file("no.ifc"), "--at", "hier"}), 2);
    EXPECT_FALSE(std::filesystem::exists(FilePath(FromUtf8(file("no.ifc")))));
}

TEST_F(Qto, OfAModelOnlyWhatTheListChangesIsWrittenAnew) {
    std::ifstream house(QUARTINO_SOURCE_DIR "/examples/haus/haus.ifc");
    std::string model;
    for (std::string line; std::getline(house, line);)
        model += line + "\r\n";
    const auto replace = [](std::string& text, const std::string& was, const std::string& is) {
        ASSERT_NE(text.find(was), std::string::npos) << was;
        text.replace(text.find(was), was.size(), is);
    };
    // One of the rooms stands in no storey.
    replace(model, "#81,#103)", "#81)");
    replace(model, "(#25,#173)", "(#25,#173,#103)");
    const std::string before = write("model.ifc", model);
    ASSERT_EQ(run({"read", before, file("list.txt")}), 0) << err;
    ASSERT_EQ(run({"write", file("list.txt"), before, file("same.ifc")}), 0) << err;
    EXPECT_TRUE(bytes("same.ifc") == model);
    std::string rooms = bytes("list.txt");
    replace(rooms, "E.04", "E.04a");
    ASSERT_EQ(run({"write", write("list.txt", rooms), before, file("new.ifc")}), 0) << err;
    replace(model, "'E.04'", "'E.04a'");
    EXPECT_TRUE(bytes("new.ifc") == model);
}

TEST_F(Qto, ReadingTellsWhatATextListCannotHold) {
    const std::string built = drawing({element(9, L"Büro ☂", L"EG", 12.5)});
    EXPECT_EQ(run({"read", built, file("new.txt")}), 1);
    EXPECT_THAT(err, HasSubstr("new.txt:2: "));
    EXPECT_THAT(bytes("new.txt"), HasSubstr("B\xFCro ?"));
    EXPECT_EQ(run({"read", built, file("new.txt"), "--encoding", "UTF-8"}), 0) << err;
    EXPECT_THAT(bytes("new.txt"), HasSubstr("Büro ☂"));
    EXPECT_EQ(run({"read", drawing({element(9, L"Halle\tA\r\nSüd", L"EG", 1)}), file("new.txt")}),
              1);
    EXPECT_THAT(err, HasSubstr("new.txt:2: "));
    EXPECT_THAT(bytes("new.txt"), HasSubstr("Halle A  S\xFC"
                                            "d"));
}

TEST_F(Qto, ReadingADrawingWithoutRoomsLeavesTheListAsItWas) {
    const std::string before = list({office});
    EXPECT_EQ(run({"read", drawing({}), before}), 1);
    EXPECT_THAT(bytes("list.txt"), HasSubstr("Verwaltung"));
}

// Says that it has begun, and waits until somebody has been told so.
class SlowInput : public std::stringbuf {
  public:
    SlowInput(const std::string& text, std::function<bool()> told)
        : text_(text), told_(std::move(told)) {}

  private:
    int_type underflow() override {
        while (!told_())
            std::this_thread::yield();
        setg(text_.data(), text_.data() + at_, text_.data() + text_.size());
        at_ = text_.size();
        return gptr() == egptr() ? traits_type::eof() : traits_type::to_int_type(*gptr());
    }
    std::string text_;
    std::size_t at_ = 0;
    std::function<bool()> told_;
};

// Looked at by one thread while another one writes.
class SharedText : public std::stringbuf {
  public:
    std::string text() const {
        const std::lock_guard lock(mutex_);
        return str();
    }

  private:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        const std::lock_guard lock(mutex_);
        return std::stringbuf::xsputn(bytes, count);
    }
    mutable std::mutex mutex_;
};

TEST_F(Qto, TellsAPersonWhoWaitsWhatItDoesAndTakesItBack) {
    list({office});
    SharedText told;
    SlowInput slow(bytes("list.txt"), [&told] { return told.text().ends_with("..."); });
    std::istream in(&slow);
    std::ostringstream outStream;
    std::ostream errStream(&told);
    ASSERT_EQ(RunQto({"list", "-"}, {in, outStream, errStream, true, NumberLocale::German(), true,
                                     std::chrono::milliseconds(0)}),
              0);
    EXPECT_THAT(told.text(), HasSubstr("qto: liest (Standardeingabe) ..."));
    EXPECT_THAT(told.text(), ::testing::EndsWith(" \r"));
    EXPECT_THAT(outStream.str(), HasSubstr("Büro"));
}

TEST_F(Qto, SaysWhichFileAndLineItCannotRead) {
    EXPECT_EQ(run({"list", file("nothing.txt")}), 2);
    EXPECT_THAT(err, HasSubstr("nothing.txt: "));
    write("bad.csv", "a,b\r\n");
    EXPECT_EQ(run({"list", file("bad.csv")}), 2);
    EXPECT_THAT(err, HasSubstr("bad.csv:1: "));
    write("bad.json", R"({"elements":[{"outline":[1]}]})");
    EXPECT_EQ(run({"list", file("bad.json")}), 2);
    EXPECT_THAT(err, HasSubstr("elements/0/outline"));
    write("z.ifc", "Raum 1\r\n");
    EXPECT_EQ(run({"list", file("z.ifc")}), 2);
    EXPECT_THAT(err, HasSubstr("z.ifc:1: "));
    write("bad.ifc", "ISO-10303-21;\nHEADER;\nENDSEC;\nDATA;\n#7=IFCSPACE('\n");
    EXPECT_EQ(run({"list", file("bad.ifc")}), 2);
    EXPECT_THAT(err, HasSubstr("bad.ifc:5: #7: ein Text ohne Ende"));
    EXPECT_EQ(run({"list", file("bad.ifc"), "--lang", "en"}), 2);
    EXPECT_THAT(err, HasSubstr("bad.ifc:5: #7: a text without an end"));
}

TEST_F(Qto, WhatIsNoListIsRefusedInWords) {
    const auto said = [this](const std::string& name, const std::string& bytes) {
        write(name, bytes);
        EXPECT_EQ(run({"convert", file(name), file("out.txt")}), 2) << name;
        return err;
    };
    EXPECT_THAT(said("a.json", "[{},\n{,"), HasSubstr("a.json:2: kein gültiges JSON: "));
    EXPECT_THAT(said("b.json", R"({"rooms":1})"), HasSubstr("eine Liste von Räumen wird erwartet"));
    EXPECT_THAT(said("c.json", "[{},1]"), HasSubstr("c.json:2: der Raum ist kein Objekt"));
    EXPECT_THAT(said("d.csv", "a,\"b\n"), HasSubstr("d.csv:1: das Anführungszeichen"));
    EXPECT_THAT(said("e.json", R"([{"name":"a\tb"}])"), HasSubstr("Tabulator"));
    EXPECT_EQ(run({"check", drawing({})}), 2);
    EXPECT_THAT(err, HasSubstr("eine Raumliste wird erwartet"));
    EXPECT_EQ(run({"read", list({office}), file("out.txt")}), 2);
    EXPECT_THAT(err, HasSubstr("eine Zeichnung wird erwartet"));
}

TEST_F(Qto, WhatCannotBeWrittenIsNoSuccess) {
    EXPECT_EQ(run({"convert", list({office}), file("no/folder.csv")}), 2);
    EXPECT_THAT(err, HasSubstr("die Datei ist nicht schreibbar"));
    std::istringstream in;
    std::ostringstream full;
    std::ostringstream errStream;
    full.setstate(std::ios::badbit);
    EXPECT_EQ(
        RunQto({"list", file("list.txt")}, {in, full, errStream, true, NumberLocale::German()}), 2);
    EXPECT_THAT(errStream.str(), HasSubstr("die Standardausgabe ist nicht schreibbar"));
}

TEST_F(Qto, AMarkOfUnicodeInFrontOfAListBelongsToNoTitle) {
    ASSERT_EQ(run({"convert", list({office}), file("a.csv")}), 0) << err;
    const std::string plain = bytes("a.csv");
    write("b.csv", "\xEF\xBB\xBF" + plain);
    ASSERT_EQ(run({"convert", file("b.csv"), file("c.csv")}), 0) << err;
    EXPECT_EQ(bytes("c.csv"), plain);
}

TEST_F(Qto, ChecksNumbersAndHowManyRoomsThereAre) {
    std::vector<std::string> lines(149, office);
    lines.emplace_back("A \t  \t -1 \t EG \t  \t  \t  \t   \t 0 \t 0 \t ");
    lines.emplace_back("B \t  \t 6 \t EG \t  \t  \t  \t   \t 3 \t zwei \t ");
    EXPECT_EQ(run({"check", list(lines), "--json"}), 1);
    std::vector<std::string> found;
    for (const auto& row : json())
        if (row.at("line") > 150)
            found.push_back(row.at("text"));
    EXPECT_THAT(found, ElementsAre("die Fläche ist negativ", "eine Seite ist keine Zahl",
                                   "mehr als 150 Räume gehen nicht auf einmal in die Zeichnung"));
}

TEST_F(Qto, SpeaksBothLanguages) {
    ASSERT_EQ(run({"--help"}), 0);
    EXPECT_THAT(out, HasSubstr("prüft eine Liste"));
    ASSERT_EQ(run({"--lang", "EN", "--help"}), 0);
    EXPECT_THAT(out, HasSubstr("checks a list"));
    ASSERT_EQ(run({"--lang=en"}), 0);
    EXPECT_THAT(out, HasSubstr("checks a list")) << "without a command";
    EXPECT_EQ(run({"--nonsense"}), 2);
    // What the bridge says in between comes from the program's own texts.
    list({std::string(33, 'B') + "\tBüro\t12\tEG"});
    EXPECT_EQ(run({"write", file("list.txt"), drawing({}), file("out.json"), "--lang", "en"}), 0);
    EXPECT_THAT(err, HasSubstr("Only 32 characters of the room designation"));
    list({"101\tBüro\t-12\tEG"});
    EXPECT_EQ(run({"write", file("list.txt"), drawing({}), file("out.json"), "--lang", "en"}), 2);
    EXPECT_THAT(err, HasSubstr("qto: Invalid call or argument"));
}

TEST_F(Qto, ManualAndCompletionNameEveryCommand) {
    ASSERT_EQ(run({"--man"}), 0);
    const std::string manual = out;
    EXPECT_EQ(manual.find("\\-\\-lang"), manual.rfind("\\-\\-lang"));
    ASSERT_EQ(run({"--completion", "bash"}), 0);
    for (const char* command :
         {"check", "list", "sums", "compare", "read", "write", "convert", "report"}) {
        EXPECT_THAT(manual, HasSubstr(std::string(".SS qto ") + command));
        EXPECT_THAT(out, HasSubstr(std::string("    ") + command + ")"));
    }
}

TEST(Din277Words, ComeInTheOrderOfTheNorm) {
    EXPECT_THAT(Din277::Uses(), ::testing::IsSupersetOf({"HNF 6", "NUF 7", "NNF", "TF"}));
    EXPECT_EQ(Din277::UseOf(" hnf3"), "HNF 3");
    EXPECT_FALSE(Din277::IsUse("NUF 8"));
    EXPECT_TRUE(Din277::IsOldUsefulArea(" NF"));
    EXPECT_FALSE(Din277::IsOldUsefulArea("FF"));
    EXPECT_TRUE(Din277::IsEnclosure("bc"));
    EXPECT_FALSE(Din277::IsEnclosure("d"));
}

} // namespace
} // namespace kalvrooms
