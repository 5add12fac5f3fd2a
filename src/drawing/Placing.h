#pragma once
// Where elements go that a client hands over to be placed: at the user's click, or unattended from
// a given point on.

#include "drawing/Drawing.h"

#include <functional>
#include <vector>

namespace kalvrooms {

// The distance between rooms that are placed singly and unattended.
inline constexpr double SingleGap = 1.0;

class Placing {
  public:
    // Asks for the point at which the outlines go; raises PlacingCancelled when the user gives up.
    using Click = std::function<Point(const std::vector<Outline>&)>;

    // Unattended from here on; rooms that were placed singly before are forgotten.
    void At(const Point& point);
    // By the user's click; while nobody can click, placing is refused.
    void ByClick();
    void OnClick(Click click) { click_ = std::move(click); }

    // The shift for one hand-over. `pending` is the length of the row that this client has placed
    // singly and not applied yet; a single room advances it.
    Point ShiftFor(const std::vector<Outline>& outlines, double& pending) const;
    // What was placed has been applied: the next single room goes on behind it.
    void Applied(double pending) { row_ += pending; }

  private:
    bool unattended_ = false;
    Point point_;
    double row_ = 0.0;
    Click click_;
};

} // namespace kalvrooms
