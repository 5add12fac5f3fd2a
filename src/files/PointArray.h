#pragma once
// The outline of a polygonal room: points by index from 0, each with X and Y, in the units of the
// drawing. It starts out unset, which is something else than an outline without points.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kalvrooms {

class PointArray {
  public:
    bool IsSet() const { return set_; }
    // 0 while it is unset.
    std::int32_t Count() const { return count_; }

    // As many points as told, all at (0, 0). Errors: SubscriptOutOfRange below 1, OutOfMemory
    // beyond MostPoints.
    void Dimension(std::int32_t count);
    // One more point at the end.
    void Add(double x, double y);
    // Errors: SubscriptOutOfRange outside 0 to Count() - 1.
    void Set(std::int32_t index, double x, double y);
    double X(std::int32_t index) const;
    double Y(std::int32_t index) const;

    // What fits into 2 GB.
    static constexpr std::int32_t MostPoints = 0x7FFFFFFF / 16;

  private:
    struct Coordinates {
        double x = 0.0;
        double y = 0.0;
    };
    std::size_t checked(std::int32_t index) const;
    Coordinates at(std::int32_t index) const;

    // Memory goes with the points that were really set: a count in a file is only a promise.
    std::vector<Coordinates> points_;
    std::int32_t count_ = 0;
    bool set_ = false;
};

} // namespace kalvrooms
