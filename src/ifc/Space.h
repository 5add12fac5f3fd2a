#pragma once
// Points and places in space.

#include <cmath>
#include <vector>

namespace kalvrooms::ifc {

struct Vector {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};
using Polygon = std::vector<Vector>;

inline Vector operator+(const Vector& a, const Vector& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vector operator-(const Vector& a, const Vector& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vector operator*(const Vector& a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}
inline double Dot(const Vector& a, const Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vector Cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(const Vector& a) {
    return std::sqrt(Dot(a, a));
}
// A vector without a length stays as it is.
inline Vector Normalized(const Vector& a) {
    const double length = Length(a);
    return length > 0.0 ? a * (1.0 / length) : a;
}

// Where something stands: its axes and its origin as seen from outside.
struct Transform {
    Vector x{1.0, 0.0, 0.0};
    Vector y{0.0, 1.0, 0.0};
    Vector z{0.0, 0.0, 1.0};
    Vector origin;

    Vector Turn(const Vector& v) const { return x * v.x + y * v.y + z * v.z; }
    Vector operator()(const Vector& point) const { return origin + Turn(point); }
    // What `inner` places, placed by this.
    Transform operator*(const Transform& inner) const {
        return {Turn(inner.x), Turn(inner.y), Turn(inner.z), (*this)(inner.origin)};
    }
    // For axes of length 1 at right angles.
    Transform Inverse() const {
        Transform back{{x.x, y.x, z.x}, {x.y, y.y, z.y}, {x.z, y.z, z.z}, {}};
        back.origin = back.Turn(origin) * -1.0;
        return back;
    }
};

} // namespace kalvrooms::ifc
