#include "practice/workbook/WorkbookFile.h"

#include "drawing/Text.h"
#include "practice/workbook/SheetError.h"
#include "practice/workbook/Xml.h"

#include <array>
#include <charconv>
#include <cmath>
#include <map>
#include <utility>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr const char* sheetSpace = "urn:schemas-microsoft-com:office:spreadsheet";
constexpr const char* optionSpace = "urn:schemas-microsoft-com:office:excel";
constexpr int mostRows = 1 << 20;

[[noreturn]] void noWorkbook() {
    throw SheetError(L"The file is not in a workbook form that can be read.");
}

// ------------------------------------------------------------------------- writing

// As text between tags or in double quotes. A blank at an end would be taken for layout; what XML
// cannot say becomes U+FFFD.
std::string escaped(const std::wstring& text) {
    const std::string bytes = ToUtf8(text);
    std::string xml;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        const bool atEnd = i == 0 || i + 1 == bytes.size();
        if (byte == '<' || byte == '>' || byte == '&' || byte == '"' || byte == '\t' ||
            byte == '\n' || byte == '\r' || (byte == ' ' && atEnd))
            xml.append("&#").append(std::to_string(byte)).append(";");
        else if (byte < ' ')
            xml += "\xEF\xBF\xBD";
        else
            xml += bytes[i];
    }
    return xml;
}

std::string shortest(double number) {
    std::array<char, 40> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return std::string(digits.data(), end.ptr);
}

std::string data(const CellValue& value) {
    struct Write {
        std::string operator()(std::monostate) const { return {}; }
        std::string operator()(const std::wstring& text) const { return typed("String", text); }
        std::string operator()(double number) const {
            return typed("Number", FromUtf8(shortest(number)));
        }
        std::string operator()(bool truth) const { return typed("Boolean", truth ? L"1" : L"0"); }
        std::string operator()(const CellError& error) const { return typed("Error", error.Shown); }
        std::string operator()(const CellDate& date) const { return typed("DateTime", date.Shown); }

        static std::string typed(const char* type, const std::wstring& content) {
            return std::string("<Data ss:Type=\"") + type + "\">" + escaped(content) + "</Data>";
        }
    };
    return std::visit(Write(), value);
}

using StyleNames = std::map<std::wstring, std::string>; // by format

StyleNames stylesOf(const Workbook& workbook) {
    StyleNames names;
    for (const auto& sheet : workbook.sheets) {
        for (const auto& [place, cell] : sheet->cells()) {
            if (cell.format != GeneralNumberFormat)
                names.try_emplace(cell.format,
                                  std::string("s").append(std::to_string(names.size())));
        }
    }
    return names;
}

void writeSheet(std::string& file, const Sheet& sheet, const StyleNames& styles, bool isActive) {
    file += " <Worksheet ss:Name=\"" + escaped(sheet.name()) + "\">\n  <Table>\n";
    int row = 0;
    for (const auto& [place, cell] : sheet.cells()) {
        if (place.first != row)
            file += std::string(row == 0 ? "" : "   </Row>\n") + "   <Row ss:Index=\"" +
                    std::to_string(place.first) + "\">\n";
        row = place.first;
        file += "    <Cell ss:Index=\"" + std::to_string(place.second) + "\"";
        if (cell.format != GeneralNumberFormat)
            file += " ss:StyleID=\"" + styles.at(cell.format) + "\"";
        file.append(">").append(data(cell.value)).append("</Cell>\n");
    }
    file += std::string(row == 0 ? "" : "   </Row>\n") + "  </Table>\n";
    if (isActive)
        file += std::string("  <WorksheetOptions xmlns=\"") + optionSpace +
                "\"><Selected/></WorksheetOptions>\n";
    file += " </Worksheet>\n";
}

// ------------------------------------------------------------------------- reading

double numberOf(const std::string& text) {
    double number = 0.0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end.ec != std::errc() || end.ptr != text.data() + text.size() || !std::isfinite(number))
        noWorkbook();
    return number;
}

// A count or place in an attribute; `otherwise` without it.
int countOf(const XmlElement* element, const char* name, int otherwise) {
    const auto text = AttributeOf(element, name);
    if (!text)
        return otherwise;
    const double number = numberOf(*text);
    if (number < 0.0 || number > mostRows)
        noWorkbook();
    return static_cast<int>(number);
}

CellValue valueOf(const XmlElement& data) {
    const std::string type = AttributeOf(&data, "Type").value_or("");
    const std::string text = TextOf(&data);
    if (type == "Number")
        return numberOf(text);
    if (type == "Boolean")
        return text == "1" || text == "true";
    if (type == "Error")
        return CellError{FromUtf8(text)};
    if (type == "DateTime")
        return CellDate{FromUtf8(text)};
    if (type != "String")
        noWorkbook();
    // An empty text is no text.
    return text.empty() ? CellValue() : FromUtf8(text);
}

using Formats = std::map<std::string, std::wstring>; // by style

Formats formatsOf(const XmlElement* styles) {
    Formats formats;
    // A style stands behind the one that it builds on.
    for (const XmlElement* style = ChildOf(styles, "Style"); style; style = NextOf(style)) {
        const auto parent = formats.find(AttributeOf(style, "Parent").value_or(""));
        const auto format = AttributeOf(ChildOf(style, "NumberFormat"), "Format");
        formats[AttributeOf(style, "ID").value_or("")] = format ? FromUtf8(*format)
                                                         : parent != formats.end()
                                                             ? parent->second
                                                             : GeneralNumberFormat;
    }
    return formats;
}

void readRow(const XmlElement* element, int row, const Formats& formats, Sheet& sheet) {
    int column = 0;
    for (const XmlElement* child = ChildOf(element, "Cell"); child; child = NextOf(child)) {
        column = countOf(child, "Index", column + 1);
        Cell cell;
        const auto format = formats.find(AttributeOf(child, "StyleID").value_or(""));
        if (format != formats.end())
            cell.format = format->second;
        if (const XmlElement* content = ChildOf(child, "Data"))
            cell.value = valueOf(*content);
        sheet.Set(row, column, std::move(cell));
        column += countOf(child, "MergeAcross", 0);
    }
}

std::shared_ptr<Sheet> sheetOf(const XmlElement* element, const Formats& formats) {
    auto sheet = std::make_shared<Sheet>(FromUtf8(AttributeOf(element, "Name").value_or("Sheet")));
    int row = 0;
    for (const XmlElement* child = ChildOf(ChildOf(element, "Table"), "Row"); child;
         child = NextOf(child)) {
        row = countOf(child, "Index", row + 1);
        readRow(child, row, formats, *sheet);
        row += countOf(child, "Span", 0);
    }
    return sheet;
}

// The parser calls itself for every element inside another; a workbook has eight at most. Whatever
// looks like a tag is counted as one.
bool isTooDeep(std::string_view xml) {
    constexpr int deepest = 100;
    int depth = 0;
    for (std::size_t at = xml.find('<'); at != std::string_view::npos && depth <= deepest;
         at = xml.find('<', at + 1)) {
        const char next = at + 1 < xml.size() ? xml[at + 1] : '<';
        const std::size_t end = xml.find('>', at);
        if (next == '/')
            --depth;
        else if (next != '!' && next != '?' &&
                 (end == std::string_view::npos || xml[end - 1] != '/'))
            ++depth;
    }
    return depth > deepest;
}

} // namespace

std::string WriteWorkbook(const Workbook& workbook) {
    const StyleNames styles = stylesOf(workbook);
    std::string file = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<?mso-application progid=\"Excel.Sheet\"?>\n";
    file += std::string("<Workbook xmlns=\"") + sheetSpace + "\" xmlns:ss=\"" + sheetSpace +
            "\">\n <Styles>\n  <Style ss:ID=\"Default\" ss:Name=\"Normal\"/>\n";
    for (const auto& [format, name] : styles)
        file += "  <Style ss:ID=\"" + name + "\"><NumberFormat ss:Format=\"" + escaped(format) +
                "\"/></Style>\n";
    file += " </Styles>\n";
    for (std::size_t i = 0; i < workbook.sheets.size(); ++i)
        writeSheet(file, *workbook.sheets[i], styles, i == workbook.active);
    return file + "</Workbook>\n";
}

Workbook ReadWorkbook(std::string bytes) {
    if (isTooDeep(bytes))
        noWorkbook();
    rapidxml::xml_document<> document;
    try {
        document.parse<rapidxml::parse_validate_closing_tags>(bytes.data());
    } catch (const rapidxml::parse_error&) {
        noWorkbook();
    }
    const XmlElement* root = ChildOf(&document, "Workbook");
    const Formats formats = formatsOf(ChildOf(root, "Styles"));
    Workbook workbook;
    for (const XmlElement* sheet = ChildOf(root, "Worksheet"); sheet; sheet = NextOf(sheet)) {
        workbook.sheets.push_back(sheetOf(sheet, formats));
        if (ChildOf(ChildOf(sheet, "WorksheetOptions"), "Selected"))
            workbook.active = workbook.sheets.size() - 1;
    }
    if (workbook.sheets.empty())
        noWorkbook();
    if (const XmlElement* active = ChildOf(ChildOf(root, "ExcelWorkbook"), "ActiveSheet")) {
        const double index = numberOf(TextOf(active));
        if (index >= 0.0 && index < static_cast<double>(workbook.sheets.size()))
            workbook.active = static_cast<std::size_t>(index);
    }
    return workbook;
}

} // namespace kalvrooms::practice::spreadsheet
