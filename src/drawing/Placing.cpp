#include "drawing/Placing.h"

#include <cmath>

namespace kalvrooms {

void Placing::At(const Point& point) {
    if (!std::isfinite(point.x) || !std::isfinite(point.y))
        throw HostError(L"The point to place at is no number.");
    unattended_ = true;
    point_ = point;
    row_ = 0.0;
}

void Placing::ByClick() {
    unattended_ = false;
}

Point Placing::ShiftFor(const std::vector<Outline>& outlines, double& pending) const {
    if (!unattended_) {
        if (!click_)
            throw HostError(L"There is no window in which rooms could be placed.");
        return click_(outlines);
    }
    if (outlines.size() != 1)
        return point_;
    const Point shift{point_.x + row_ + pending, point_.y};
    pending += Width(outlines.front()) + SingleGap;
    return shift;
}

} // namespace kalvrooms
