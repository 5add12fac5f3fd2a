#include "console/Check.h"

#include <cmath>
#include <map>
#include <optional>
#include <utility>

#include "console/Din277.h"
#include "console/ListRooms.h"
#include "files/FilePath.h"
#include "files/clsFileSytem.h"
#include "host/clsKalvero.h"
#include "model/LetterRules.h"
#include "model/RuntimeError.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

constexpr std::size_t longestCode = 8; // that the room's dialog takes
// A side that comes out otherwise by less than this is the same side.
constexpr double sameSide = 0.01; // m

class Checker {
  public:
    Checker(const NumberLocale& locale, const std::filesystem::path& folder,
            const FileServices& files, const Speech& say)
        : locale_(locale), folder_(folder), files_(files), say_(say) {}

    void check(const RoomRows::Row& row) {
        row_ = &row;
        for (std::size_t i = 0; i < fields_.size(); ++i)
            fields_[i] = Trim(FromUtf8(row.fields[i]));
        checkTexts();
        checkArea();
        checkPointFile();
        checkWords();
        checkRoomId();
        if (++count_ == clsKalvero::MostRooms + 1)
            find("count", say_("mehr als 150 Räume gehen nicht auf einmal in die Zeichnung",
                               "more than 150 rooms do not go into a drawing at once"));
    }

    std::vector<Finding> findings;

  private:
    void find(const char* kind, const std::string& text) {
        findings.push_back({row_->line, ToUtf8(fields_[NameColumn]), kind, text});
    }
    std::optional<double> number(RoomColumn column) const {
        if (!IsNumeric(fields_[column], locale_))
            return std::nullopt;
        return ToDouble(fields_[column], locale_);
    }

    void checkTexts() {
        if (fields_[StoryColumn].size() > longestCode)
            find("storey", say_("der Geschosscode hat mehr als 8 Zeichen",
                                "the storey code has more than 8 characters"));
        const std::pair<RoomColumn, const char*> texts[] = {
            {NameColumn, say_("die Bezeichnung", "the designation")},
            {FunctionColumn, say_("die Funktion", "the function")}};
        for (const auto& [column, what] : texts)
            if (fields_[column].size() > LongestHostText)
                find("length", std::string(what) + say_(" hat mehr als 32 Zeichen",
                                                        " has more than 32 characters"));
        const auto [first, isNew] =
            lines_.try_emplace({FoldedCase(fields_[StoryColumn]), fields_[NameColumn]}, row_->line);
        if (!isNew)
            find("twice", say_("dieselbe Bezeichnung im selben Geschoss wie in Zeile ",
                               "the same designation in the same storey as in line ") +
                              std::to_string(first->second));
    }

    void checkArea() {
        const std::optional<double> area = number(AreaColumn);
        if (!area)
            return find("area", say_("die Fläche ist keine Zahl", "the area is no number"));
        if (*area < 0.0)
            return find("area", say_("die Fläche ist negativ", "the area is negative"));
        if (!fields_[FileColumn].empty())
            return;
        const std::optional<double> dx = number(DxColumn);
        const std::optional<double> dy = number(DyColumn);
        if ((!dx && !fields_[DxColumn].empty()) || (!dy && !fields_[DyColumn].empty()))
            return find("sides", say_("eine Seite ist keine Zahl", "a side is no number"));
        // A side of 0 is one that the list leaves to the area.
        if (!dx || !dy || *dx == 0.0 || *dy == 0.0)
            return;
        // As reading makes the room: equal sides are a square, else the one along X counts.
        const double readDx = *dx == *dy ? std::sqrt(*area) : *dx > 0.0 ? *dx : *area / *dy;
        if (std::abs(readDx - *dx) > sameSide || std::abs(*area / readDx - *dy) > sameSide)
            find("sides",
                 say_("die Seiten ergeben nicht die Fläche", "the sides do not give the area"));
    }

    void checkPointFile() {
        if (fields_[FileColumn].empty())
            return;
        const std::wstring path = PointFileFor(fields_[FileColumn], folder_);
        std::error_code ignored;
        if (!std::filesystem::is_regular_file(FilePath(path), ignored))
            return find("pointFile", say_("die Punktdatei fehlt: ", "the point file is missing: ") +
                                         ToUtf8(path));
        // Workbooks of points take the spreadsheet application.
        PointArray points;
        if (!path.ends_with(L"xls") &&
            !clsFileSytem(files_).ReadPointsFromGeometryFile(path, points))
            find("pointFile",
                 say_("die Punktdatei ist nicht lesbar: ", "the point file cannot be read: ") +
                     ToUtf8(path));
    }

    void checkWords() {
        const auto unknown = [&](RoomColumn column, bool (*isKnown)(std::string_view)) {
            const std::string word = ToUtf8(fields_[column]);
            if (!word.empty() && !isKnown(word))
                find("din277", say_("kein Wort der DIN 277: ", "no word of DIN 277: ") + word);
        };
        unknown(OccupancyColumn, Din277::IsUse);
        unknown(EnclosureColumn, Din277::IsEnclosure);
        unknown(AreaTypeColumn, Din277::IsAreaType);
    }

    void checkRoomId() {
        try {
            clsRoom().SetRoomID(fields_[RoomIDColumn], locale_);
        } catch (const RuntimeError&) {
            find("roomId", say_("die Raum-ID ist nicht lesbar: ", "the room ID cannot be read: ") +
                               ToUtf8(fields_[RoomIDColumn]));
        }
    }

    const NumberLocale& locale_;
    const std::filesystem::path& folder_;
    const FileServices& files_;
    const Speech& say_;
    const RoomRows::Row* row_ = nullptr;
    std::array<std::wstring, RoomColumnCount> fields_;
    std::map<std::pair<std::wstring, std::wstring>, int> lines_;
    std::int32_t count_ = 0;
};

} // namespace

std::vector<Finding> CheckRows(const RoomRows& rows, const NumberLocale& locale,
                               const std::filesystem::path& listFolder, const FileServices& files,
                               const Speech& say) {
    Checker checker(locale, listFolder, files, say);
    for (const RoomRows::Row& row : rows.rows)
        checker.check(row);
    return std::move(checker.findings);
}

Table FindingTable(const std::vector<Finding>& findings, const Speech& say) {
    Table table;
    table.columns = {{"line", say("Zeile", "line"), 0},
                     {"room", say("Raum", "room")},
                     {"kind", say("Art", "kind")},
                     {"text", say("Befund", "finding")}};
    for (const Finding& finding : findings)
        table.rows.push_back({finding.line, finding.room, finding.kind, finding.text});
    return table;
}

} // namespace kalvrooms
