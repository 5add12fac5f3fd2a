// Any bytes as a list of the console program, in each form: refused with a line, or written as CSV
// and as JSON so that it reads back letter by letter.

#include "Input.h"
#include "console/RoomRows.h"

namespace {

using namespace kalvrooms;

constexpr Speech say;

bool sameRows(const RoomRows& one, const RoomRows& other) {
    return std::equal(
        one.rows.begin(), one.rows.end(), other.rows.begin(), other.rows.end(),
        [](const auto& row, const auto& like) { return row.fields == like.fields; });
}

void readBack(const RoomRows& rows, ListForm form) {
    std::string written;
    try {
        written = WriteRows(rows, form, ListEncoding::Utf8, say);
    } catch (const ListError&) {
        return; // a text that would break its line
    }
    fuzz::Hold(sameRows(ReadRows(written, form, ListEncoding::Utf8, say), rows));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(bytes), size);
    for (const ListEncoding encoding : {ListEncoding::Utf8, ListEncoding::Windows1252})
        try {
            const RoomRows rows = ReadRows(input, FormOf(input), encoding, say);
            readBack(rows, ListForm::Csv);
            readBack(rows, ListForm::Json);
        } catch (const ListError& error) {
            fuzz::Hold(error.line >= 0 && *error.what() != '\0');
        }
    return 0;
}
