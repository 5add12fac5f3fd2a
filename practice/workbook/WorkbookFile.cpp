#include "practice/workbook/WorkbookFile.h"

#include "drawing/Text.h"
#include "practice/workbook/Calendar.h"
#include "practice/workbook/SheetError.h"
#include "practice/workbook/Xml.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <map>
#include <optional>
#include <utility>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr const char* sheetSpace = "urn:schemas-microsoft-com:office:spreadsheet";
constexpr const char* optionSpace = "urn:schemas-microsoft-com:office:excel";

XmlName ss(const char* local) {
    return {sheetSpace, local};
}
XmlName x(const char* local) {
    return {optionSpace, local};
}

// Formats that go by a name in this form.
constexpr std::array<std::pair<std::string_view, const wchar_t*>, 17> namedFormats{{
    {"General", L"General"},
    {"General Number", L"General"},
    {"General Date", L"m/d/yyyy h:mm"},
    {"Long Date", L"dddd, mmmm d, yyyy"},
    {"Medium Date", L"d-mmm-yy"},
    {"Short Date", L"m/d/yyyy"},
    {"Long Time", L"h:mm:ss AM/PM"},
    {"Medium Time", L"h:mm AM/PM"},
    {"Short Time", L"h:mm"},
    {"Currency", L"$#,##0.00"},
    {"Euro Currency", L"[$\u20AC-2] #,##0.00"},
    {"Fixed", L"0.00"},
    {"Standard", L"#,##0.00"},
    {"Percent", L"0.00%"},
    {"Scientific", L"0.00E+00"},
    {"Yes/No", L"\"Yes\";\"Yes\";\"No\""},
    {"On/Off", L"\"On\";\"On\";\"Off\""},
}};

[[noreturn]] void noWorkbook() {
    throw SheetError(L"The file is not in a workbook form that can be read.");
}

// ------------------------------------------------------------------------- writing

std::string utf8(const std::wstring& text) {
    return XmlText(ToUtf8(text));
}

void add(std::string& file, std::initializer_list<std::string_view> parts) {
    for (const std::string_view part : parts)
        file.append(part);
}

std::string shortest(double number) {
    std::array<char, 40> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return std::string(digits.data(), end.ptr);
}

// "2024-01-31T12:30:00.000"; times of no day carry the day before the first one.
std::optional<std::string> moment(double serial) {
    if (!(serial >= 0.0))
        return std::nullopt;
    double day = std::floor(serial);
    long long milliseconds = std::llround((serial - day) * 86400000.0);
    if (milliseconds == 86400000) {
        milliseconds = 0;
        day += 1.0;
    }
    Date date{1899, 12, 31};
    if (day >= 1.0) {
        const auto known = DateOf(day);
        if (!known)
            return std::nullopt;
        date = *known;
    }
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02lld:%02lld:%02lld.%03lld", date.year,
                  date.month, date.day, milliseconds / 3600000, milliseconds / 60000 % 60,
                  milliseconds / 1000 % 60, milliseconds % 1000);
    return text.data();
}

std::string data(const Cell& cell) {
    const auto element = [](const char* type, const std::string& content) {
        return std::string("<Data ss:Type=\"") + type + "\">" + content + "</Data>";
    };
    if (const auto* text = std::get_if<std::wstring>(&cell.value))
        return element("String", utf8(*text));
    if (const auto* truth = std::get_if<bool>(&cell.value))
        return element("Boolean", *truth ? "1" : "0");
    if (const auto* error = std::get_if<ErrorValue>(&cell.value))
        return element("Error", utf8(ErrorText(*error)));
    if (const auto* number = std::get_if<double>(&cell.value)) {
        if (KindOf(cell.format) == FormatKind::Date) {
            if (const auto text = moment(*number))
                return element("DateTime", *text);
        }
        return element("Number", shortest(*number));
    }
    return {};
}

using StyleNames = std::map<std::wstring, std::string>; // by format

StyleNames stylesOf(const Workbook& workbook) {
    StyleNames names;
    for (const auto& sheet : workbook.sheets) {
        for (const auto& [place, cell] : sheet->cells()) {
            if (cell.format != GeneralFormat)
                names.try_emplace(cell.format,
                                  std::string("s").append(std::to_string(names.size())));
        }
    }
    return names;
}

void writeSheet(std::string& file, const Sheet& sheet, const StyleNames& styles, bool isActive) {
    add(file, {" <Worksheet ss:Name=\"", utf8(sheet.name()), "\">\n  <Table>\n"});
    int row = 0;
    int column = 0;
    for (const auto& [place, cell] : sheet.cells()) {
        if (place.first != row) {
            if (row != 0)
                add(file, {"   </Row>\n"});
            add(file, {"   <Row"});
            if (place.first != row + 1)
                add(file, {" ss:Index=\"", std::to_string(place.first), "\""});
            add(file, {">\n"});
            row = place.first;
            column = 0;
        }
        add(file, {"    <Cell"});
        if (place.second != column + 1)
            add(file, {" ss:Index=\"", std::to_string(place.second), "\""});
        column = place.second;
        if (cell.format != GeneralFormat)
            add(file, {" ss:StyleID=\"", styles.at(cell.format), "\""});
        if (!cell.formula.empty())
            add(file, {" ss:Formula=\"", utf8(cell.formula), "\""});
        add(file, {">", data(cell), "</Cell>\n"});
    }
    if (row != 0)
        add(file, {"   </Row>\n"});
    add(file, {"  </Table>\n"});
    if (isActive)
        add(file,
            {"  <WorksheetOptions xmlns=\"", optionSpace, "\"><Selected/></WorksheetOptions>\n"});
    add(file, {" </Worksheet>\n"});
}

// ------------------------------------------------------------------------- reading

std::wstring wide(const std::string& bytes) {
    return FromUtf8(bytes);
}

std::optional<int> wholeNumber(const std::string& text) {
    int number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end.ec != std::errc() || end.ptr != text.data() + text.size())
        return std::nullopt;
    return number;
}

// A count or place in an attribute; `otherwise` without it.
int countOf(const XmlElement& element, const char* name, int otherwise, int most) {
    const std::string* text = element.Attribute(ss(name));
    if (!text)
        return otherwise;
    const auto number = wholeNumber(*text);
    if (!number || *number < 0 || *number > most)
        noWorkbook();
    return *number;
}

double numberOf(const std::string& text) {
    double number = 0.0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end.ec != std::errc() || end.ptr != text.data() + text.size() || !std::isfinite(number))
        noWorkbook();
    return number;
}

double serialOf(const std::string& text) {
    Date date;
    int hour = 0;
    int minute = 0;
    double second = 0.0;
    std::array<char, 2> rest{};
    const int fields = std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%lf%1s", &date.year,
                                   &date.month, &date.day, &hour, &minute, &second, rest.data());
    if (fields != 3 && fields != 6)
        noWorkbook();
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || !(second >= 0.0 && second < 60.0))
        noWorkbook();
    const double part = (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
    if (date == Date{1899, 12, 31} || date == Date{1899, 12, 30})
        return part;
    if (!IsDate(date))
        noWorkbook();
    return SerialOf(date) + part;
}

class Reader {
  public:
    explicit Reader(const XmlElement& root) : root_(root) {}

    Workbook Read() {
        if (root_.name != ss("Workbook"))
            noWorkbook();
        if (const XmlElement* styles = root_.Child(ss("Styles")))
            readStyles(*styles);
        Workbook workbook;
        for (const XmlElement& child : root_.children) {
            if (child.name != ss("Worksheet"))
                continue;
            const std::string* name = child.Attribute(ss("Name"));
            workbook.sheets.push_back(std::make_shared<Sheet>(name ? wide(*name) : L"Sheet"));
            if (const XmlElement* table = child.Child(ss("Table")))
                readTable(*table, *workbook.sheets.back());
            const XmlElement* options = child.Child(x("WorksheetOptions"));
            if (options && options->Child(x("Selected")))
                workbook.active = workbook.sheets.size() - 1;
        }
        if (workbook.sheets.empty())
            noWorkbook();
        const XmlElement* whole = root_.Child(x("ExcelWorkbook"));
        const XmlElement* active = whole ? whole->Child(x("ActiveSheet")) : nullptr;
        if (active) {
            const auto index = wholeNumber(active->text);
            if (index && *index >= 0 && *index < static_cast<int>(workbook.sheets.size()))
                workbook.active = static_cast<std::size_t>(*index);
        }
        return workbook;
    }

  private:
    void readStyles(const XmlElement& styles) {
        // A style stands behind the one that it builds on.
        for (const XmlElement& style : styles.children) {
            const std::string* id = style.Attribute(ss("ID"));
            if (style.name != ss("Style") || !id)
                continue;
            std::wstring format = GeneralFormat;
            if (const std::string* parent = style.Attribute(ss("Parent")))
                format = formatOf(*parent);
            const XmlElement* number = style.Child(ss("NumberFormat"));
            if (const std::string* text = number ? number->Attribute(ss("Format")) : nullptr)
                format = formatFrom(*text);
            formats_[*id] = format;
        }
    }
    static std::wstring formatFrom(const std::string& text) {
        for (const auto& [name, format] : namedFormats) {
            if (text == name)
                return format;
        }
        return text.empty() ? GeneralFormat : wide(text);
    }
    std::wstring formatOf(const std::string& style) const {
        const auto found = formats_.find(style);
        return found == formats_.end() ? GeneralFormat : found->second;
    }

    void readTable(const XmlElement& table, Sheet& sheet) {
        int row = 0;
        for (const XmlElement& child : table.children) {
            if (child.name != ss("Row"))
                continue;
            row = countOf(child, "Index", row + 1, LastRow);
            readRow(child, row, sheet);
            row += countOf(child, "Span", 0, LastRow);
        }
    }
    void readRow(const XmlElement& element, int row, Sheet& sheet) {
        int column = 0;
        for (const XmlElement& child : element.children) {
            if (child.name != ss("Cell"))
                continue;
            column = countOf(child, "Index", column + 1, LastColumn);
            const std::string* style = child.Attribute(ss("StyleID"));
            Cell cell = cellFrom(child, style ? formatOf(*style) : GeneralFormat);
            if (row < 1 || row > LastRow || column < 1 || column > LastColumn)
                noWorkbook();
            sheet.Set(row, column, std::move(cell));
            column += countOf(child, "MergeAcross", 0, LastColumn);
        }
    }
    static Cell cellFrom(const XmlElement& element, std::wstring format) {
        Cell cell;
        cell.format = std::move(format);
        if (const std::string* formula = element.Attribute(ss("Formula")))
            cell.formula = wide(*formula);
        const XmlElement* data = element.Child(ss("Data"));
        if (!data)
            return cell;
        const std::string* type = data->Attribute(ss("Type"));
        const std::string text = data->WholeText();
        if (!type)
            noWorkbook();
        if (*type == "String")
            cell.value = wide(text);
        else if (*type == "Number")
            cell.value = numberOf(text);
        else if (*type == "Boolean")
            cell.value = text == "1" || text == "true";
        else if (*type == "Error")
            cell.value = ErrorFrom(wide(text)).value_or(ErrorValue());
        else if (*type == "DateTime")
            dateCell(cell, serialOf(text));
        else
            noWorkbook();
        // An empty text is no text.
        if (const auto* words = std::get_if<std::wstring>(&cell.value); words && words->empty())
            cell.value = {};
        return cell;
    }
    static void dateCell(Cell& cell, double serial) {
        cell.value = serial;
        if (KindOf(cell.format) != FormatKind::Date)
            cell.format = L"m/d/yyyy";
    }

    const XmlElement& root_;
    std::map<std::string, std::wstring> formats_; // by style
};

} // namespace

std::string WriteWorkbook(const Workbook& workbook) {
    const StyleNames styles = stylesOf(workbook);
    std::string file;
    add(file, {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n",
               "<?mso-application progid=\"Excel.Sheet\"?>\n", "<Workbook xmlns=\"", sheetSpace,
               "\" xmlns:ss=\"", sheetSpace, "\">\n"});
    add(file, {" <Styles>\n  <Style ss:ID=\"Default\" ss:Name=\"Normal\"/>\n"});
    for (const auto& [format, name] : styles)
        add(file, {"  <Style ss:ID=\"", name, "\"><NumberFormat ss:Format=\"", utf8(format),
                   "\"/></Style>\n"});
    add(file, {" </Styles>\n"});
    for (std::size_t i = 0; i < workbook.sheets.size(); ++i)
        writeSheet(file, *workbook.sheets[i], styles, i == workbook.active);
    add(file, {"</Workbook>\n"});
    return file;
}

Workbook ReadWorkbook(std::string_view bytes) {
    try {
        return Reader(ReadXml(bytes)).Read();
    } catch (const SheetError&) {
        throw;
    } catch (const HostError&) {
        noWorkbook();
    }
}

} // namespace kalvrooms::practice::spreadsheet
