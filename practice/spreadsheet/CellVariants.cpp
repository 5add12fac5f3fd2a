#include "practice/spreadsheet/CellVariants.h"

#include <array>
#include <cstdio>

namespace kalvrooms::practice::spreadsheet {

namespace {

// Under which automation knows errors.
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

// Looks into an array while it lives. The first index runs fastest.
class Elements {
  public:
    explicit Elements(const Variant& array) : array_(array.raw().parray) {
        if (array.type() != (VT_ARRAY | VT_VARIANT) || !array_ || SafeArrayGetDim(array_) != 2)
            throw ComError(DISP_E_TYPEMISMATCH);
        Check(SafeArrayAccessData(array_, reinterpret_cast<void**>(&values_)));
        rows = extent(1);
        columns = extent(2);
    }
    Elements(const Elements&) = delete;
    Elements& operator=(const Elements&) = delete;
    ~Elements() { SafeArrayUnaccessData(array_); }

    VARIANT& at(int row, int column) {
        return values_[static_cast<std::size_t>(column) * static_cast<std::size_t>(rows) +
                       static_cast<std::size_t>(row)];
    }
    int rows = 0;
    int columns = 0;

  private:
    int extent(UINT dimension) const {
        LONG lower = 0;
        LONG upper = -1;
        Check(SafeArrayGetLBound(array_, dimension, &lower));
        Check(SafeArrayGetUBound(array_, dimension, &upper));
        return static_cast<int>(upper - lower + 1);
    }

    SAFEARRAY* array_;
    VARIANT* values_ = nullptr;
};

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
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(range.Rows), 1},
                               {static_cast<ULONG>(range.Columns), 1}};
    SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 2, bounds);
    if (!array)
        throw ComError(E_OUTOFMEMORY);
    Variant values(array, VT_VARIANT);
    Elements elements(values);
    for (int row = 0; row < range.Rows; ++row) {
        for (int column = 0; column < range.Columns; ++column)
            elements.at(row, column) =
                variantOf(sheet.At(range.Row + row, range.Column + column)).detach();
    }
    return values;
}

void Enter(Sheet& sheet, const CellRange& range, const Variant& value) {
    if ((value.type() & VT_ARRAY) == 0) {
        sheet.Fill(range, valueOf(value.raw()));
        return;
    }
    Elements elements(value);
    CellBlock block(elements.rows, elements.columns);
    for (int row = 0; row < block.Rows(); ++row)
        for (int column = 0; column < block.Columns(); ++column)
            block.At(row, column) = valueOf(elements.at(row, column));
    sheet.Put(range, block);
}

} // namespace kalvrooms::practice::spreadsheet
