#include "ifc/Placements.h"

namespace kalvrooms::ifc {
namespace {

// No building stands on as many placements within each other.
constexpr int longestChain = 200;

Vector direction(const Geometry& geometry, const Value& value, const Vector& otherwise) {
    if (value.IsNull())
        return otherwise;
    const Vector read = Geometry::Direction(geometry.file.Get(value));
    return Length(read) > 0.0 ? read : otherwise;
}

// `wanted` without what it has along `axis`; an axis at right angles where nothing is left.
Vector across(const Vector& wanted, const Vector& axis) {
    Vector rest = wanted - axis * Dot(wanted, axis);
    if (Length(rest) < 1e-9) {
        const Vector other = std::abs(axis.x) < 0.9 ? Vector{1, 0, 0} : Vector{0, 1, 0};
        rest = other - axis * Dot(other, axis);
    }
    return Normalized(rest);
}

double scaleOr(const Value& value, double otherwise) {
    return value.IsNull() ? otherwise : value.Untyped().Number();
}

} // namespace

Transform ReadAxes(const Geometry& geometry, const Value& placement) {
    Transform axes;
    if (placement.IsNull())
        return axes;
    const Instance instance = geometry.file.Get(placement);
    const bool flat = instance.Is("IFCAXIS2PLACEMENT2D");
    if (!flat && !instance.Is("IFCAXIS2PLACEMENT3D"))
        instance.Refuse("axes are expected");
    axes.origin = geometry.Point(instance.Follow(0));
    if (!flat)
        axes.z = direction(geometry, instance[1], axes.z);
    axes.x = across(direction(geometry, instance[flat ? 1 : 2], axes.x), axes.z);
    axes.y = Cross(axes.z, axes.x);
    return axes;
}

Transform ReadPlacement(const Geometry& geometry, const Value& placement) {
    Transform whole;
    Value next = placement;
    for (int links = 0; !next.IsNull(); ++links) {
        const Instance link = geometry.file.Get(next);
        if (links == longestChain)
            link.Refuse("the placement stands on itself");
        if (!link.Is("IFCLOCALPLACEMENT"))
            link.Refuse("a local placement is expected");
        whole = ReadAxes(geometry, link[1]) * whole;
        next = link[0];
    }
    return whole;
}

Transform ReadOperator(const Geometry& geometry, const Instance& transformation) {
    const bool flat = transformation.Is("IFCCARTESIANTRANSFORMATIONOPERATOR2D") ||
                      transformation.Is("IFCCARTESIANTRANSFORMATIONOPERATOR2DNONUNIFORM");
    if (!flat && !transformation.Is("IFCCARTESIANTRANSFORMATIONOPERATOR3D") &&
        !transformation.Is("IFCCARTESIANTRANSFORMATIONOPERATOR3DNONUNIFORM"))
        transformation.Refuse("an operator of a mapped item is expected");
    Transform axes;
    if (!flat)
        axes.z = direction(geometry, transformation[4], axes.z);
    axes.x = across(direction(geometry, transformation[0], axes.x), axes.z);
    axes.y = Cross(axes.z, axes.x);
    // The second axis says on which side of the first it stands: mirrored, perhaps.
    if (Dot(direction(geometry, transformation[1], axes.y), axes.y) < 0.0)
        axes.y = axes.y * -1.0;
    axes.origin = geometry.Point(transformation.Follow(2));

    const double scale = scaleOr(transformation[3], 1.0);
    axes.x = axes.x * scale;
    axes.y = axes.y * scaleOr(transformation[flat ? 4 : 5], scale);
    axes.z = axes.z * (flat ? scale : scaleOr(transformation[6], scale));
    return axes;
}

} // namespace kalvrooms::ifc
