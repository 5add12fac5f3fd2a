#include "practice/host/SafeArrays.h"

namespace kalvrooms::practice {

namespace {

ULONG Extent(std::size_t count) {
    return static_cast<ULONG>(count);
}

} // namespace

Variant RecordArray(std::vector<Variant> values) {
    Variant array = NewArray(VT_VARIANT, {{Extent(values.size()), 0}});
    ArrayView view(array, 1);
    for (std::size_t i = 0; i < values.size(); ++i)
        view.Value(i) = values[i].detach();
    return array;
}

Variant TableArray(std::vector<Variant> values, std::size_t columns) {
    if (values.empty())
        return {};
    const std::size_t rows = values.size() / columns;
    Variant array = NewArray(VT_VARIANT, {{Extent(rows), 1}, {Extent(columns), 1}});
    ArrayView view(array, 2);
    for (std::size_t i = 0; i < rows * columns; ++i)
        view.Value(i / columns, i % columns) = values[i].detach();
    return array;
}

Variant OutlineArray(const Outline& outline) {
    if (outline.empty())
        return {};
    Variant array = NewArray(VT_R8, {{2, 0}, {Extent(outline.size() + 1), 0}});
    ArrayView view(array, 2);
    for (std::size_t i = 0; i <= outline.size(); ++i) {
        view.Number(0, i) = outline[i % outline.size()].x;
        view.Number(1, i) = outline[i % outline.size()].y;
    }
    return array;
}

Outline OutlineFrom(const Variant& value) {
    if (value.empty())
        return {};
    if ((value.type() & VT_ARRAY) != 0 && SafeArrayGetDim(value.raw().parray) != 2)
        throw ComError(DISP_E_BADINDEX);
    ArrayView view(value, 2);
    if (view.rows() != 2)
        throw ComError(DISP_E_BADINDEX);
    Outline outline(view.columns());
    for (std::size_t i = 0; i < outline.size(); ++i)
        outline[i] = {view.Copy(0, i).ToNumber(), view.Copy(1, i).ToNumber()};
    return outline;
}

} // namespace kalvrooms::practice
