#pragma once
// How the ground plan of a room comes about: from a side length, from the ratio of the sides, or
// from a polygon in a point file. Lengths in metres, areas in square metres.

#include <string>
#include <string_view>

#include "model/NumberText.h"

namespace kalvrooms {

// The calculation-type words; stored and compared as they stand, letter case included.
inline const std::wstring CalculationByDx = L"CalculationByDx";
inline const std::wstring CalculationByDy = L"CalculationByDy";
inline const std::wstring CalculationByRatio = L"CalculationByRatio";
inline const std::wstring CalculationByFile = L"CalculationByFile";

class clsGeometry {
  public:
    clsGeometry();

    // Stored unchanged and unchecked.
    void SetTypeAndValue(std::wstring_view type, std::wstring_view value);
    void GetTypeAndValue(std::wstring& type, std::wstring& value) const;
    const std::wstring& CalculationType() const;
    const std::wstring& CalculationValue() const;
    double Area() const;
    void Area(double squareMetres);
    // When set, getDefaultValues yields a square of the area instead of the computed rectangle.
    void Default(bool value);

    // "quadratisch", "rechteckig" or "polygonal"; for an unknown type word "" or " ".
    std::wstring Info(const NumberLocale& locale = UserLocale()) const;
    // The point file's path, or a single blank for every other type.
    const std::wstring& FileName() const;

    // The sides. Reading them with a value that is no number turns the type (unless it is
    // CalculationByFile) into CalculationByRatio for good. Errors: DivisionByZero,
    // InvalidProcedureCall (root of a negative product), Overflow.
    double dx(const NumberLocale& locale = UserLocale());
    double dy(const NumberLocale& locale = UserLocale());

    // Type and value from two side lengths as texts; a positive dx wins.
    void SetAspectRatio(std::wstring_view dx, std::wstring_view dy,
                        const NumberLocale& locale = UserLocale());

    // The sides to be drawn. With Default set and no area only dx is written (as 1).
    void getDefaultValues(double& dx, double& dy);

  private:
    // The value as a number, with the lasting fall-back to the ratio type.
    double valueForSides(const NumberLocale& locale);

    // One copy of every word serves all rooms.
    const std::wstring* calculationType_;
    std::wstring calculationValue_;
    double area_ = 0.0;
    bool default_ = false;
};

} // namespace kalvrooms
