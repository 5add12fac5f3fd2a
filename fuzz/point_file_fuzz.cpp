// Any bytes as a point file: reading ends, and what it says about the points is true.

#include "Input.h"
#include "files/clsFileSytem.h"
#include "support/PlainContext.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace kalvrooms;
    static PlainContext context;
    static const fuzz::File input("points");
    static const fuzz::File written("points-written");
    if (!fuzz::TakeLocale(bytes, size))
        return 0;
    input.Write(bytes, size);

    PointArray points;
    if (!clsFileSytem(context).ReadPointsFromGeometryFile(input.Name(), points))
        return 0;
    fuzz::Hold(points.IsSet());
    double sum = 0.0;
    for (std::int32_t i = 0; i < points.Count(); ++i)
        sum += points.X(i) + points.Y(i);
    clsFileSytem(context).WritePointsToGeometryFile(written.Name(), points);
    PointArray again;
    clsFileSytem(context).ReadPointsFromGeometryFile(written.Name(), again);
    return sum == 0.125 ? 1 : 0; // the sum has to be made
}
