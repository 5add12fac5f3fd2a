#include "practice/spreadsheet/CellVariants.h"

#include <array>
#include <cstdio>

namespace kalvrooms::practice::spreadsheet {

namespace {

// What is added to an error's number when it travels in a cell.
constexpr unsigned long errorFacility = 0x800A0000UL;
struct NamedError {
    unsigned long code;
    const wchar_t* shown;
};
constexpr std::array<NamedError, 7> errors{{{2000, L"#NULL!"},
                                            {2007, L"#DIV/0!"},
                                            {2015, L"#VALUE!"},
                                            {2023, L"#REF!"},
                                            {2029, L"#NAME?"},
                                            {2036, L"#NUM!"},
                                            {2042, L"#N/A"}}};

std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

Variant dateOf(const std::wstring& text) {
    SYSTEMTIME time{};
    std::swscanf(text.c_str(), L"%4hu-%2hu-%2huT%2hu:%2hu:%2hu", &time.wYear, &time.wMonth,
                 &time.wDay, &time.wHour, &time.wMinute, &time.wSecond);
    Variant date;
    date.get()->vt = VT_DATE;
    if (!SystemTimeToVariantTime(&time, &date.get()->date))
        throw ComError(DISP_E_TYPEMISMATCH);
    return date;
}

Variant errorOf(const std::wstring& shown) {
    Variant error;
    error.get()->vt = VT_ERROR;
    unsigned long code = errors.back().code;
    for (const NamedError& known : errors)
        if (shown == known.shown)
            code = known.code;
    error.get()->scode = static_cast<SCODE>(errorFacility | code);
    return error;
}

Variant variantOf(const Cell& cell) {
    if (const auto* text = std::get_if<std::wstring>(&cell.value))
        return *text;
    if (const auto* date = std::get_if<CellDate>(&cell.value))
        return dateOf(date->Shown);
    if (const auto* error = std::get_if<CellError>(&cell.value))
        return errorOf(error->Shown);
    Variant variant;
    if (const auto* truth = std::get_if<bool>(&cell.value)) {
        variant.get()->vt = VT_BOOL;
        variant.get()->boolVal = *truth ? VARIANT_TRUE : VARIANT_FALSE;
    } else if (const auto* number = std::get_if<double>(&cell.value)) {
        variant = Variant(*number);
        if (cell.format.find(L'$') != std::wstring::npos)
            return variant.As(VT_CY);
    }
    return variant;
}

CellValue valueOf(const VARIANT& variant) {
    switch (variant.vt) {
    case VT_EMPTY:
        return {};
    case VT_BSTR:
        return TextOf(variant.bstrVal);
    case VT_BOOL:
        return variant.boolVal != VARIANT_FALSE;
    default:
        return Variant::CopyOf(variant).ToNumber();
    }
}

} // namespace

Variant VariantOf(const Sheet& sheet, const CellRange& range) {
    if (range.Rows == 1 && range.Columns == 1)
        return variantOf(sheet.At(range.Row, range.Column));
    Variant values = NewArray(
        VT_VARIANT, {{static_cast<ULONG>(range.Rows), 1}, {static_cast<ULONG>(range.Columns), 1}});
    ArrayView elements(values, 2);
    for (int row = 0; row < range.Rows; ++row)
        for (int column = 0; column < range.Columns; ++column)
            elements.Value(at(row), at(column)) =
                variantOf(sheet.At(range.Row + row, range.Column + column)).detach();
    return values;
}

void Enter(Sheet& sheet, const CellRange& range, const Variant& value) {
    if ((value.type() & VT_ARRAY) == 0) {
        sheet.Fill(range, valueOf(value.raw()));
        return;
    }
    ArrayView elements(value, 2);
    CellBlock block(static_cast<int>(elements.rows()), static_cast<int>(elements.columns()));
    for (int row = 0; row < block.Rows(); ++row)
        for (int column = 0; column < block.Columns(); ++column)
            block.At(row, column) = valueOf(elements.Value(at(row), at(column)));
    sheet.Put(range, block);
}

} // namespace kalvrooms::practice::spreadsheet
