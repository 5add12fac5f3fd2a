#pragma once
// How rooms are placed in the drawing, and whether the report about it is shown.

#include <cstdint>

namespace kalvrooms {

// Distances in metres; block: true for a block of two rows, false for single rooms. Colours are RGB
// with red in the low byte: of rooms whose coordinates are known, and of those that are placed at
// the cross-hair.
struct Placement {
    double distanceX = 1.0;
    double distanceY = 1.0;
    bool block = true;
    std::int32_t colorOld = 0;
    std::int32_t colorNew = 255;
};

class Options {
  public:
    virtual ~Options() = default;
    virtual Placement GetPlace() const = 0;
    virtual void SetPlace(const Placement& placement) = 0;
    virtual bool NoReport() const = 0;
    virtual void SetWithReport() = 0;
    virtual void SetWithoutReport() = 0;
};

} // namespace kalvrooms
