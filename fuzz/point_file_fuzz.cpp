// Any bytes as a point file: reading ends, and what it says about the points is true.

#include "Input.h"
#include "files/clsFileSytem.h"
#include "support/FileLayer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace kalvrooms;
    static FileLayer layer;
    static const fuzz::File input("points");
    static const fuzz::File written("points-written");
    if (!fuzz::TakeLocale(bytes, size))
        return 0;
    input.Write(bytes, size);

    PointArray points;
    if (!clsFileSytem(layer.services).ReadPointsFromGeometryFile(input.Name(), points))
        return 0;
    fuzz::Hold(points.IsSet());
    double sum = 0.0;
    for (std::int32_t i = 0; i < points.Count(); ++i)
        sum += points.X(i) + points.Y(i);
    clsFileSytem(layer.services).WritePointsToGeometryFile(written.Name(), points);
    PointArray again;
    clsFileSytem(layer.services).ReadPointsFromGeometryFile(written.Name(), again);
    return sum == 0.125 ? 1 : 0; // the sum has to be made
}
