#include "console/Qto.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ostream>

#include <CLI/CLI.hpp>

#include "console/Bridge.h"
#include "console/Busy.h"
#include "console/Check.h"
#include "console/Compare.h"
#include "console/DrawingRooms.h"
#include "console/Files.h"
#include "console/ListRooms.h"
#include "console/Manual.h"
#include "console/Report.h"
#include "console/Sums.h"
#include "drawing/Text.h"
#include "files/FilePath.h"
#include "files/clsFileSytem.h"
#include "host/clsKalvero.h"
#include "model/LetterRules.h"
#include "model/RuntimeError.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

// The language is needed before the options are described in it.
bool isGerman(const std::vector<std::string>& arguments, const Console& console) {
    const auto asked = [](const std::string& language) {
        return !EqualsIgnoringCase(FromUtf8(language), L"en");
    };
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--lang" && i + 1 < arguments.size())
            return asked(arguments[i + 1]);
        if (arguments[i].starts_with("--lang="))
            return asked(arguments[i].substr(7));
    }
    return console.german;
}

Table RoomTableOf(const ConsoleRooms& rooms, const Speech& say) {
    Table table;
    table.columns = {{"name", say("Bezeichnung", "designation")},
                     {"function", say("Funktion", "function")},
                     {"area", say("Fläche m²", "area m²")},
                     {"storey", say("Geschoss", "storey")},
                     {"enclosure", say("Umschließung", "enclosure")},
                     {"occupancy", say("Nutzung", "use")},
                     {"areaType", say("Flächenart", "area type")},
                     {"componentId", say("Bauteil", "component"), 0},
                     {"fileNumber", say("Datei", "file"), 0},
                     {"fileId", say("Dateikennung", "file id")},
                     {"outline", say("Ecken", "corners")},
                     {"areaFrom", say("Fläche aus", "area from")}};
    if (rooms.isList)
        table.columns.insert(
            table.columns.end(),
            {{"dx", "dx m", 3}, {"dy", "dy m", 3}, {"pointFile", say("Punktdatei", "point file")}});
    for (const ConsoleRoom& room : rooms.rooms) {
        nlohmann::ordered_json outline = nlohmann::ordered_json::array();
        for (const Point& point : room.outline)
            outline.push_back({point.x, point.y});
        Table::Row row = {room.name,       room.function,  room.area,          room.storey,
                          room.enclosure,  room.occupancy, room.areaType,      room.componentId,
                          room.fileNumber, room.fileId,    std::move(outline), room.areaFrom};
        if (rooms.isList)
            row.insert(row.end(), {room.dx, room.dy, room.pointFile});
        table.rows.push_back(std::move(row));
    }
    return table;
}

// For a reader the corners are counted; CSV and JSON give them.
void countCorners(Table& table) {
    for (Table::Row& row : table.rows)
        for (nlohmann::ordered_json& cell : row)
            if (cell.is_array())
                cell = cell.size();
}

// While it lives, the user writes numbers as the list does.
class UserMarks {
  public:
    UserMarks(const NumberLocale& now, const NumberLocale& later) : later_(later) { handIn(now); }
    ~UserMarks() { handIn(later_); }
    UserMarks(const UserMarks&) = delete;
    UserMarks& operator=(const UserMarks&) = delete;

    static void handIn(const NumberLocale& marks) {
        HandInUserLocale([marks] { return marks; });
    }

  private:
    const NumberLocale later_;
};

class Qto {
  public:
    Qto(const Console& console, bool german)
        : console_(console), say_{german}, files_(console, say_),
          app_(say_("Raumlisten und Zeichnungen vergleichen, summieren, prüfen und übertragen",
                    "Compare, sum up, check and transfer room lists and drawings"),
               "qto") {
        describe();
    }

    int run(std::vector<std::string> arguments) {
        std::reverse(arguments.begin(), arguments.end());
        try {
            app_.parse(std::move(arguments));
            if (!completion_.empty())
                console_.out << Completion(app_);
            else if (manual_)
                console_.out << ManualPage(app_, say_);
            else if (command_)
                return finished(command_());
            else
                console_.out << app_.help();
            return finished(ExitCode::Done);
        } catch (const CLI::CallForHelp&) {
            console_.out << helpOf(app_);
            return ExitCode::Done;
        } catch (const CLI::CallForVersion& version) {
            console_.out << version.what() << '\n';
            return ExitCode::Done;
        } catch (const CLI::ParseError& error) {
            console_.err << "qto: " << inLanguage(error.what()) << '\n'
                         << say_("qto --help zeigt, was geht", "qto --help says what there is")
                         << '\n';
        } catch (const RuntimeError& error) {
            console_.err << "qto: " << ConsoleServices(say_).Description(error) << '\n';
        } catch (const std::exception& error) {
            console_.err << "qto: " << error.what() << '\n';
        }
        return ExitCode::Cannot;
    }

  private:
    // What was not written was not done.
    int finished(int code) const {
        if (console_.out.flush())
            return code;
        console_.err << "qto: "
                     << say_("die Standardausgabe ist nicht schreibbar",
                             "standard output cannot be written")
                     << '\n';
        return ExitCode::Cannot;
    }

    // ------------------------------------------------------------------------- options

    // The option library speaks English.
    std::string inLanguage(std::string message) const {
        const std::pair<const char*, const char*> words[] = {
            {"The following argument was not expected:", "unbekannt:"},
            {"The following arguments were not expected:", "unbekannt:"},
            {"Could not convert:", "keine Zahl:"},
            {" is required", " fehlt"},
            {" excludes ", " geht nicht zusammen mit "},
            {" not in ", " ist keines von "},
            {" required but received ", " nötig, gegeben: "}};
        for (const auto& [english, german] : words)
            if (const std::size_t at = message.find(english);
                say_.german && at != std::string::npos)
                message.replace(at, std::char_traits<char>::length(english), german);
        return message;
    }
    // The descriptions say the words themselves. As a transformation, so that they arrive in small
    // letters.
    static CLI::Validator oneOf(const std::vector<std::string>& words) {
        return CLI::IsMember(words, CLI::ignore_case).description("");
    }
    static CLI::Validator distance() {
        return CLI::Validator(CLI::NonNegativeNumber).description("");
    }
    void labels() {
        const std::pair<const char*, const char*> words[] = {
            {"Usage", "Aufruf"},        {"Positionals", "Dateien"}, {"Options", "Optionen"},
            {"OPTIONS", "OPTIONEN"},    {"REQUIRED", ""},           {"SUBCOMMAND", "BEFEHL"},
            {"Subcommands", "Befehle"}, {"FLOAT", "ZAHL"}};
        for (const auto& [english, german] : words)
            if (say_.german)
                app_.get_formatter()->label(english, german);
        app_.get_formatter()->label("REQUIRED", "");
        app_.get_formatter()->label("TEXT", "");
        app_.option_defaults()->group(say_("Optionen", "Options"));
    }

    void describe() {
        labels();
        // A slash begins a path on every system.
        app_.allow_windows_style_options(false);
        app_.require_subcommand(0, 1);
        app_.set_version_flag("--version", "qto " QUARTINO_VERSION,
                              say_("zeigt die Version", "shows the version"));
        app_.set_help_flag("-h,--help", say_("zeigt diese Hilfe", "shows this help"));
        app_.add_flag("--man", manual_,
                      say_("schreibt die Handbuchseite (troff)", "writes the manual page (troff)"));
        app_.add_option("--completion", completion_,
                        say_("schreibt die Vervollständigung für die Shell",
                             "writes the completion for the shell"))
            ->transform(oneOf({"bash"}))
            ->type_name("bash");
        language(app_);

        CLI::App* check =
            add("check", say_("prüft eine Liste Zeile für Zeile", "checks a list line by line"),
                [this] { return this->check(); });
        listArgument(check);
        table(check);
        CLI::App* list = add("list", say_("zeigt die Räume", "shows the rooms"),
                             [this] { return this->list(); });
        anyArgument(list);
        table(list);
        CLI::App* sums = add("sums",
                             say_("summiert nach Geschoss, DIN 277 und Funktion",
                                  "sums up by storey, DIN 277 and function"),
                             [this] { return this->sums(); });
        anyArgument(sums);
        table(sums);
        CLI::App* compare =
            add("compare", say_("stellt Soll und Ist nebeneinander", "puts target beside actual"),
                [this] { return this->compare(); });
        listArgument(compare);
        drawingArgument(compare);
        toleranceOption(compare);
        table(compare);
        describeTransfers();
    }

    void describeTransfers() {
        CLI::App* read = add("read",
                             say_("liest die Räume der Zeichnung in eine Liste",
                                  "reads the rooms of the drawing into a list"),
                             [this] { return this->read(); });
        drawingArgument(read);
        listArgument(read, true);
        read->add_option("--points", points_,
                         say_("Ordner der Punktdateien", "folder of the point files"))
            ->type_name("DIR");
        CLI::App* write = add("write",
                              say_("erzeugt die Räume der Liste in der Zeichnung",
                                   "creates the list's rooms in the drawing"),
                              [this] { return this->write(); });
        listArgument(write);
        drawingArgument(write);
        outArgument(write, FilePlace::Takes::Drawing);
        placingOptions(write);
        CLI::App* convert = add("convert",
                                say_("wandelt zwischen Textliste, CSV und JSON",
                                     "converts between text list, CSV and JSON"),
                                [this] { return this->convert(); });
        listArgument(convert);
        outArgument(convert, FilePlace::Takes::List);
        CLI::App* report =
            add("report", say_("schreibt eine druckbare Seite", "writes a printable page"),
                [this] { return this->report(); });
        listArgument(report);
        drawingArgument(report);
        report
            ->add_option("OUT", out_.name,
                         say_("die Seite (HTML), - für Standardausgabe",
                              "the page (HTML), - for standard output"))
            ->required()
            ->type_name("");
        toleranceOption(report);
    }

    CLI::App* add(const char* name, const char* description, std::function<int()> command) {
        CLI::App* sub = app_.add_subcommand(name, description);
        sub->callback([this, sub, command = std::move(command)] {
            command_ = [this, sub, command] {
                ApplyFormats(formats_, places_[sub], say_);
                return command();
            };
        });
        sub->set_help_flag("-h,--help", say_("zeigt diese Hilfe", "shows this help"));
        language(*sub);
        const std::string group = EveryCommand(say_);
        sub->add_option("--encoding", encoding_,
                        say_("Zeichen der Textliste", "characters of the text list"))
            ->transform(oneOf({"1252", "utf-8"}))
            ->type_name("1252|utf-8")
            ->group(group);
        sub->add_option("--locale", locale_,
                        say_("Zahlen der Liste: de mit Komma, en mit Punkt",
                             "numbers of the list: de with a comma, en with a point"))
            ->transform(oneOf({"de", "en"}))
            ->type_name("de|en")
            ->group(group);
        sub->add_option("--format", formats_,
                        say_("Art einer Datei: text, csv, json, drawing, ifc; DATEI=ART für eine "
                             "bestimmte, sonst für -, die geschriebene oder die gelesene",
                             "kind of a file: text, csv, json, drawing, ifc; FILE=KIND for a "
                             "certain one, else for -, the written or the read one"))
            ->type_name(say_("[DATEI=]ART", "[FILE=]KIND"))
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->group(group);
        return sub;
    }
    void language(CLI::App& app) {
        app.add_option("--lang", language_, say_("Sprache: de oder en", "language: de or en"))
            ->transform(oneOf({"de", "en"}))
            ->type_name("de|en");
    }
    void argument(CLI::App* sub, const FilePlace& place, const std::string& description) {
        places_[sub].push_back(place);
        sub->add_option(place.key, place.file->name, description)->required()->type_name("");
    }
    void listArgument(CLI::App* sub, bool isWritten = false) {
        argument(sub, {"LIST", &list_, FilePlace::Takes::List, isWritten},
                 isWritten ? say_("die Raumliste, die geschrieben wird, - für Standardausgabe",
                                  "the room list that is written, - for standard output")
                           : say_("Raumliste (Text, CSV, JSON), - für Standardeingabe",
                                  "room list (text, CSV, JSON), - for standard input"));
    }
    void drawingArgument(CLI::App* sub) {
        argument(sub, {"DRAWING", &drawing_, FilePlace::Takes::Drawing, false},
                 say_("Modell (.ifc) oder Übungszeichnung (.json), - für Standardeingabe",
                      "model (.ifc) or practice drawing (.json), - for standard input"));
    }
    void anyArgument(CLI::App* sub) {
        argument(sub, {"FILE", &list_, FilePlace::Takes::Either, false},
                 say_("Raumliste oder Zeichnung, - für Standardeingabe",
                      "room list or drawing, - for standard input"));
    }
    void outArgument(CLI::App* sub, FilePlace::Takes takes) {
        argument(sub, {"OUT", &out_, takes, true},
                 say_("was geschrieben wird, - für Standardausgabe",
                      "what is written, - for standard output"));
    }
    void toleranceOption(CLI::App* sub) {
        sub->add_option("--tolerance", tolerance_,
                        say_("erlaubte Abweichung in Prozent (5%) oder m² (0,5)",
                             "how far an area may be off, in per cent (5%) or m² (0.5)"))
            ->type_name(say_("ZAHL[%]", "NUMBER[%]"));
    }
    void table(CLI::App* sub) {
        CLI::Option* json =
            sub->add_flag("--json", json_, say_("Tabelle als JSON", "table as JSON"));
        sub->add_flag("--csv", csv_, say_("Tabelle als CSV", "table as CSV"))->excludes(json);
    }
    void placingOptions(CLI::App* sub) {
        sub->add_flag("--single", single_,
                      say_("jeden Raum rechts vom vorigen statt als Block",
                           "each room right of the one before, not as a block"));
        sub->add_option("--dx", placement_.distanceX,
                        say_("Abstand im Block, Meter", "distance in the block, metres"))
            ->check(distance())
            ->type_name(say_("ZAHL", "NUMBER"));
        sub->add_option("--dy", placement_.distanceY,
                        say_("Abstand der Reihen, Meter", "distance of the rows, metres"))
            ->check(distance())
            ->type_name(say_("ZAHL", "NUMBER"));
        sub->add_option("--at", at_, say_("Einfügepunkt, Meter", "point of insertion, metres"))
            ->type_name("X,Y");
        sub->add_option("--storey", storey_,
                        say_("nur die Räume dieses Geschosses", "only this storey's rooms"))
            ->type_name("CODE");
    }
    std::string helpOf(const CLI::App& app) const {
        const auto chosen = app.get_subcommands();
        return chosen.empty() ? app.help() : chosen.front()->help(app.get_name());
    }

    // ------------------------------------------------------------------------- inputs

    Files::Input open(const FileArgument& file) {
        files_.encoding = encoding_ == "1252" ? ListEncoding::Windows1252 : ListEncoding::Utf8;
        return files_.Open(file);
    }
    NumberLocale localeOf(const RoomRows& rows) const {
        if (locale_ == "de")
            return NumberLocale::German();
        if (locale_ == "en")
            return NumberLocale::Point();
        return LocaleOf(rows, console_.locale);
    }
    ConsoleRooms roomsOf(const Files::Input& input, const RoomRows& rows) const {
        try {
            ConsoleRooms rooms = RoomsOfList(rows, localeOf(rows));
            rooms.file = input.name;
            readOutlines(rooms);
            return rooms;
        } catch (const ListError& error) {
            throw FileError(input.name + ":" + std::to_string(error.line) + ": " + error.what());
        }
    }
    // As far as the point files can be read.
    void readOutlines(ConsoleRooms& rooms) const {
        const ConsoleServices services(say_);
        for (ConsoleRoom& room : rooms.rooms) {
            PointArray points;
            if (room.pointFile.empty() ||
                !clsFileSytem(services.Files())
                     .ReadPointsFromGeometryFile(
                         PointFileFor(FromUtf8(room.pointFile), folderOf(rooms.file)), points))
                continue;
            for (std::int32_t i = 0; points.IsSet() && i < points.Count(); ++i)
                room.outline.push_back({points.X(i), points.Y(i)});
        }
    }
    ConsoleRooms roomsOf(const FileArgument& file) {
        Files::Input input = open(file);
        if (input.IsList())
            return roomsOf(input, files_.Rows(input));
        ConsoleRooms rooms = RoomsOfDrawing(files_.DrawingOf(std::move(input)));
        rooms.file = file.name;
        return rooms;
    }
    static std::filesystem::path folderOf(const std::string& name) {
        return FilePath(FromUtf8(name)).parent_path();
    }
    // Programs read the same words whatever the user's language.
    Speech tableSpeech() const { return form() == TableForm::Text ? say_ : Speech{false}; }
    TableForm form() const {
        return json_ ? TableForm::Json : csv_ ? TableForm::Csv : TableForm::Text;
    }
    Tolerance tolerance() const {
        const std::optional<Tolerance> tolerance = Tolerance::From(tolerance_);
        if (!tolerance)
            throw FileError("--tolerance " + tolerance_ + ": " +
                            say_("5% oder 0,5 (m²) wird erwartet", "5% or 0.5 (m²) is expected"));
        return *tolerance;
    }
    // Messages of the program are what it would have shown in a box.
    bool complained(const ConsoleServices& services) const {
        const std::vector<std::string> messages = services.Messages();
        for (const std::string& message : messages)
            console_.err << "qto: " << message << '\n';
        return !messages.empty();
    }

    // ------------------------------------------------------------------------- commands

    int check() {
        const Files::Input input = open(list_);
        const RoomRows rows = files_.Rows(input);
        const ConsoleServices services(say_);
        const std::vector<Finding> findings =
            CheckRows(rows, localeOf(rows), folderOf(list_.name), services.Files(), say_);
        if (form() == TableForm::Text)
            for (const Finding& finding : findings)
                console_.out << input.name << ':' << finding.line << ": " << finding.text << " ("
                             << finding.room << ")\n";
        else
            Print(console_.out, FindingTable(findings, say_), form(), say_);
        return findings.empty() ? ExitCode::Done : ExitCode::Findings;
    }

    int list() {
        Table table = RoomTableOf(roomsOf(list_), say_);
        if (form() == TableForm::Text)
            countCorners(table);
        Print(console_.out, table, form(), say_);
        return ExitCode::Done;
    }

    int sums() {
        Files::Input input = open(list_);
        const Speech say = tableSpeech();
        if (input.IsList()) {
            const RoomRows rows = files_.Rows(input);
            Print(console_.out, SumsOf(rows, localeOf(rows), say), form(), say_);
        } else {
            const OpenDrawing drawing = files_.DrawingOf(std::move(input));
            Print(console_.out, SumsOf(RoomsOfDrawing(drawing), say), form(), say_);
        }
        return ExitCode::Done;
    }

    int compare() {
        const Tolerance allowed = tolerance();
        const Files::Input list = open(list_);
        const ConsoleRooms wanted = roomsOf(list, files_.Rows(list));
        const ConsoleRooms built = RoomsOfDrawing(files_.DrawingOf(open(drawing_)));
        const std::vector<Pair> pairs = ComparePairs(wanted, built, allowed);
        Print(console_.out, ComparisonOf(pairs, tableSpeech()), form(), say_);
        const bool kept = std::all_of(pairs.begin(), pairs.end(), [](const Pair& pair) {
            return pair.state == Pair::State::Kept;
        });
        return kept ? ExitCode::Done : ExitCode::Findings;
    }

    int read() {
        const OpenDrawing drawing = files_.DrawingOf(open(drawing_));
        DrawingHost host;
        host.session.drawing = drawing.drawing;
        host.session.drawing.project.folder = pointFolder();
        ConsoleServices services(say_);
        clsFloors floors;
        {
            const Busy busy(console_, say_("liest Räume", "reading rooms"));
            ReadFromDrawing(host, services.Files(), floors);
        }
        // As the program: a list without rooms is not written over another one.
        if (floors.GetCountOfRooms() == 0) {
            console_.err << "qto: "
                         << say_("die Zeichnung hat keine Räume, es wird nichts geschrieben",
                                 "the drawing has no rooms, nothing is written")
                         << '\n';
            return ExitCode::Findings;
        }
        RoomRows rows = RowsOf(floors, numberLocale());
        const bool lost = files_.TellLosses(list_, rows);
        files_.SaveRows(list_, rows);
        return complained(services) || lost ? ExitCode::Findings : ExitCode::Done;
    }
    // Beside the list and named after it, where nothing else was said.
    std::wstring pointFolder() const {
        std::filesystem::path folder = FilePath(FromUtf8(points_));
        if (points_.empty()) {
            const std::filesystem::path list =
                FilePath(list_.IsStandardStream() ? L"qto" : FromUtf8(list_.name));
            folder = list.parent_path() / (list.stem() += say_("-Punkte", "-points"));
        }
        folder = std::filesystem::absolute(folder);
        std::filesystem::create_directories(folder);
        return FileName(folder);
    }
    NumberLocale numberLocale() const {
        return locale_.empty()   ? console_.locale
               : locale_ == "de" ? NumberLocale::German()
                                 : NumberLocale::Point();
    }

    Point insertionPoint() const {
        const std::size_t comma = at_.find(',');
        const auto x = NumberFrom<double>(FromUtf8(at_.substr(0, comma)));
        const auto y =
            NumberFrom<double>(comma < at_.size() ? FromUtf8(at_.substr(comma + 1)) : L"");
        if (!x || !y)
            throw FileError("--at " + at_ + ": " +
                            say_("X,Y mit Dezimalpunkten wird erwartet",
                                 "X,Y with decimal points is expected"));
        return {*x, *y};
    }

    int write() {
        const Files::Input list = open(list_);
        RoomRows rows = files_.Rows(list);
        if (!storey_.empty())
            std::erase_if(rows.rows, [this](const RoomRows::Row& row) {
                return FoldedCase(Trim(FromUtf8(row.fields[StoryColumn]))) !=
                       FoldedCase(Trim(FromUtf8(storey_)));
            });
        OpenDrawing drawing = files_.DrawingOf(open(drawing_));
        DrawingHost host;
        host.session.drawing = drawing.drawing;
        host.session.placing.At(insertionPoint());
        placement_.block = !single_;
        ConsoleServices services(say_);
        clsFloors floors;
        const NumberLocale locale = localeOf(rows);
        // The sides stay texts until the bridge asks for them.
        const UserMarks marks(locale, console_.locale);
        FillFloors(floors, rows, locale, folderOf(list_.name));
        WrittenRooms written;
        {
            const Busy busy(console_, say_("erzeugt Räume", "creating rooms"));
            written = WriteIntoDrawing(host, services.Files(), floors, placement_);
        }
        const bool refused =
            floors.GetCountOfRooms() == 0 || floors.GetCountOfRooms() > clsKalvero::MostRooms;
        if (complained(services) && refused)
            return ExitCode::Cannot;
        drawing.drawing = host.session.drawing;
        files_.SaveDrawing(out_, drawing);
        console_.err << say_("aktualisiert: ", "updated: ") << written.updated
                     << say_(", an bekannter Stelle: ", ", at their position: ")
                     << written.atPosition << say_(", neu abgesetzt: ", ", newly placed: ")
                     << written.placed << '\n';
        return ExitCode::Done;
    }

    int convert() {
        files_.SaveRows(out_, files_.Rows(open(list_)));
        return ExitCode::Done;
    }

    int report() {
        const Tolerance allowed = tolerance();
        const Files::Input list = open(list_);
        const ConsoleRooms wanted = roomsOf(list, files_.Rows(list));
        const OpenDrawing drawing = files_.DrawingOf(open(drawing_));
        ConsoleRooms built = RoomsOfDrawing(drawing);
        built.file = drawing_.name;
        files_.Save(out_, ReportPage({wanted, built, drawing.drawing, allowed}, say_));
        return ExitCode::Done;
    }

    const Console& console_;
    const Speech say_;
    Files files_;
    CLI::App app_;
    std::function<int()> command_;

    FileArgument list_, drawing_, out_;
    std::map<const CLI::App*, std::vector<FilePlace>> places_;
    std::vector<std::string> formats_;
    std::string points_, storey_, language_, locale_, completion_;
    std::string encoding_ = "1252";
    std::string tolerance_ = "0%";
    std::string at_ = "0,0";
    Placement placement_;
    bool json_ = false, csv_ = false, single_ = false, manual_ = false;
};

} // namespace

int RunQto(const std::vector<std::string>& arguments, const Console& console) {
    UserMarks::handIn(console.locale);
    return Qto(console, isGerman(arguments, console)).run(arguments);
}

} // namespace kalvrooms
