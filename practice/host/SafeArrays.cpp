#include "practice/host/SafeArrays.h"

#include <array>
#include <cstddef>

namespace kalvrooms::practice {

namespace {

Variant NewArray(VARTYPE type, std::vector<SAFEARRAYBOUND> bounds) {
    SAFEARRAY* array = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
    if (!array)
        throw ComError(E_OUTOFMEMORY);
    return Variant(array, type);
}

void Put(const Variant& array, std::vector<LONG> index, const Variant& value) {
    Check(
        SafeArrayPutElement(array.raw().parray, index.data(), const_cast<VARIANT*>(&value.raw())));
}

// Looks into an array while it lives.
template <class Element>
class ArrayData {
  public:
    explicit ArrayData(SAFEARRAY* array) : array_(array) {
        void* data = nullptr;
        Check(SafeArrayAccessData(array_, &data));
        data_ = static_cast<Element*>(data);
    }
    ArrayData(const ArrayData&) = delete;
    ArrayData& operator=(const ArrayData&) = delete;
    ~ArrayData() { SafeArrayUnaccessData(array_); }
    Element& operator[](std::size_t index) { return data_[index]; }

  private:
    SAFEARRAY* array_;
    Element* data_;
};

std::size_t Extent(SAFEARRAY* array, UINT dimension) {
    LONG lower = 0;
    LONG upper = 0;
    Check(SafeArrayGetLBound(array, dimension, &lower));
    Check(SafeArrayGetUBound(array, dimension, &upper));
    return upper < lower ? 0 : static_cast<std::size_t>(upper - lower) + 1;
}

double Coordinate(double value) {
    return value;
}
double Coordinate(const VARIANT& value) {
    return Variant::CopyOf(value).ToNumber();
}

template <class Element>
Outline Points(SAFEARRAY* array) {
    // The first index runs fastest: x and y of a point lie side by side.
    ArrayData<Element> data(array);
    Outline outline(Extent(array, 2));
    for (std::size_t i = 0; i < outline.size(); ++i)
        outline[i] = {Coordinate(data[2 * i]), Coordinate(data[2 * i + 1])};
    return outline;
}

} // namespace

Variant RecordArray(const std::vector<Variant>& values) {
    Variant array = NewArray(VT_VARIANT, {{static_cast<ULONG>(values.size()), 0}});
    for (std::size_t i = 0; i < values.size(); ++i)
        Put(array, {static_cast<LONG>(i)}, values[i]);
    return array;
}

Variant TableArray(const std::vector<Variant>& values, long columns) {
    if (values.empty())
        return {};
    const auto rows = static_cast<long>(values.size()) / columns;
    Variant array =
        NewArray(VT_VARIANT, {{static_cast<ULONG>(rows), 1}, {static_cast<ULONG>(columns), 1}});
    for (long row = 0; row < rows; ++row) {
        for (long column = 0; column < columns; ++column)
            Put(array, {row + 1, column + 1},
                values[static_cast<std::size_t>(row * columns + column)]);
    }
    return array;
}

Variant OutlineArray(const Outline& outline) {
    if (outline.empty())
        return {};
    Variant array = NewArray(VT_R8, {{2, 0}, {static_cast<ULONG>(outline.size()) + 1, 0}});
    ArrayData<double> data(array.raw().parray);
    for (std::size_t i = 0; i <= outline.size(); ++i) {
        data[2 * i] = outline[i % outline.size()].x;
        data[2 * i + 1] = outline[i % outline.size()].y;
    }
    return array;
}

Outline OutlineFrom(const Variant& value) {
    if (value.empty())
        return {};
    if ((value.type() & VT_ARRAY) == 0 || !value.raw().parray)
        throw ComError(DISP_E_TYPEMISMATCH);
    SAFEARRAY* array = value.raw().parray;
    const VARTYPE type = value.type() & VT_TYPEMASK;
    if (SafeArrayGetDim(array) != 2 || Extent(array, 1) != 2)
        throw ComError(DISP_E_BADINDEX);
    Outline outline;
    if (type == VT_R8)
        outline = Points<double>(array);
    else if (type == VT_VARIANT)
        outline = Points<VARIANT>(array);
    else
        throw ComError(DISP_E_TYPEMISMATCH);
    CloseOutline(outline);
    return outline;
}

} // namespace kalvrooms::practice
