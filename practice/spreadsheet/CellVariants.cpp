#include "practice/spreadsheet/CellVariants.h"

#include <cmath>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr unsigned long errorFacility = 0x800A0000UL;

// Looks into an array while it lives.
class Elements {
  public:
    explicit Elements(SAFEARRAY* array) : array_(array) {
        void* data = nullptr;
        Check(SafeArrayAccessData(array_, &data));
        values_ = static_cast<VARIANT*>(data);
    }
    Elements(const Elements&) = delete;
    Elements& operator=(const Elements&) = delete;
    ~Elements() { SafeArrayUnaccessData(array_); }
    VARIANT& operator[](std::size_t index) { return values_[index]; }

  private:
    SAFEARRAY* array_;
    VARIANT* values_ = nullptr;
};

int extent(SAFEARRAY* array, UINT dimension) {
    LONG lower = 0;
    LONG upper = -1;
    Check(SafeArrayGetLBound(array, dimension, &lower));
    Check(SafeArrayGetUBound(array, dimension, &upper));
    if (upper < lower)
        throw ComError(DISP_E_BADINDEX);
    return static_cast<int>(upper - lower + 1);
}

std::size_t place(int row, int column, int rows) {
    // The first index runs fastest.
    return static_cast<std::size_t>(column) * static_cast<std::size_t>(rows) +
           static_cast<std::size_t>(row);
}

} // namespace

Variant VariantOf(const Cell& cell, bool plain) {
    if (const auto* text = std::get_if<std::wstring>(&cell.value))
        return *text;
    Variant variant;
    VARIANT& raw = *variant.get();
    if (const auto* truth = std::get_if<bool>(&cell.value)) {
        raw.vt = VT_BOOL;
        raw.boolVal = *truth ? VARIANT_TRUE : VARIANT_FALSE;
    } else if (const auto* error = std::get_if<ErrorValue>(&cell.value)) {
        raw.vt = VT_ERROR;
        raw.scode = static_cast<SCODE>(errorFacility | static_cast<unsigned long>(error->code));
    } else if (const auto* number = std::get_if<double>(&cell.value)) {
        const FormatKind kind = plain ? FormatKind::Number : KindOf(cell.format);
        raw.vt = kind == FormatKind::Date ? VT_DATE : VT_R8;
        raw.dblVal = *number;
        // Amounts that are too large for money stay numbers.
        if (kind == FormatKind::Currency && std::abs(*number) < 9.0e14)
            return variant.As(VT_CY);
    }
    return variant;
}

Variant VariantOf(const Sheet& sheet, const Area& area, bool plain) {
    if (area.cells() == 1)
        return VariantOf(sheet.At(area.row, area.column), plain);
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(area.rows), 1},
                               {static_cast<ULONG>(area.columns), 1}};
    SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 2, bounds);
    if (!array)
        throw ComError(E_OUTOFMEMORY);
    Variant variant(array, VT_VARIANT);
    Elements elements(array);
    for (int row = 0; row < area.rows; ++row) {
        for (int column = 0; column < area.columns; ++column)
            elements[place(row, column, area.rows)] =
                VariantOf(sheet.At(area.row + row, area.column + column), plain).detach();
    }
    return variant;
}

bool IsArray(const Variant& variant) {
    return (variant.type() & VT_ARRAY) != 0;
}

Value ValueOf(const VARIANT& variant) {
    switch (variant.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return {};
    case VT_BSTR:
        return TextOf(variant.bstrVal);
    case VT_BOOL:
        return variant.boolVal != VARIANT_FALSE;
    case VT_ERROR:
        if (variant.scode == DISP_E_PARAMNOTFOUND)
            return {};
        return ErrorValue{static_cast<int>(variant.scode & 0xFFFF)};
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
    case VT_DATE:
        return Variant::CopyOf(variant).ToNumber();
    default:
        throw ComError(DISP_E_TYPEMISMATCH);
    }
}

Block BlockOf(const Variant& variant) {
    SAFEARRAY* array = variant.raw().parray;
    if (variant.type() != (VT_ARRAY | VT_VARIANT) || !array)
        throw ComError(DISP_E_TYPEMISMATCH);
    const UINT dimensions = SafeArrayGetDim(array);
    if (dimensions != 1 && dimensions != 2)
        throw ComError(DISP_E_TYPEMISMATCH);
    Block block(dimensions == 1 ? 1 : extent(array, 1), extent(array, dimensions));
    Elements elements(array);
    for (int row = 0; row < block.rows; ++row) {
        for (int column = 0; column < block.columns; ++column)
            block.at(row, column) = ValueOf(elements[place(row, column, block.rows)]);
    }
    return block;
}

} // namespace kalvrooms::practice::spreadsheet
