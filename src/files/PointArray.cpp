#include "files/PointArray.h"

#include "model/RuntimeError.h"

namespace kalvrooms {

void PointArray::Dimension(std::int32_t count) {
    if (count < 1)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    if (count > MostPoints)
        throw RuntimeError(RuntimeError::OutOfMemory);
    points_.clear();
    count_ = count;
    set_ = true;
}

void PointArray::Add(double x, double y) {
    if (count_ == MostPoints)
        throw RuntimeError(RuntimeError::OutOfMemory);
    ++count_;
    set_ = true;
    Set(count_ - 1, x, y);
}

void PointArray::Set(std::int32_t index, double x, double y) {
    const std::size_t at = checked(index);
    if (at >= points_.size())
        points_.resize(at + 1);
    points_[at] = {x, y};
}

double PointArray::X(std::int32_t index) const {
    return at(index).x;
}

double PointArray::Y(std::int32_t index) const {
    return at(index).y;
}

std::size_t PointArray::checked(std::int32_t index) const {
    if (index < 0 || index >= count_)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return static_cast<std::size_t>(index);
}

PointArray::Coordinates PointArray::at(std::int32_t index) const {
    const std::size_t at = checked(index);
    return at < points_.size() ? points_[at] : Coordinates{};
}

} // namespace kalvrooms
