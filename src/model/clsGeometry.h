#pragma once
// How the ground plan of a room comes about: from a side length, from the ratio of the sides, or
// from a polygon in a point file. Lengths in metres, areas in square metres.

#include <memory>
#include <string>

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
    void SetTypeAndValue(const std::wstring& type, const std::wstring& value);
    void GetTypeAndValue(std::wstring& type, std::wstring& value) const;
    std::wstring CalculationType() const;
    std::wstring CalculationValue() const;
    double Area() const;
    void Area(double squareMetres);
    // When set, getDefaultValues yields a square of the area instead of the computed rectangle.
    void Default(bool value);

    // "quadratisch", "rechteckig" or "polygonal"; for an unknown type word "" or " ".
    std::wstring Info() const;
    // The point file's path, or a single blank for every other type.
    std::wstring FileName() const;

    // The sides. Reading them with a value that is no number turns the type (unless it is
    // CalculationByFile) into CalculationByRatio for good. Errors: DivisionByZero,
    // InvalidProcedureCall (root of a negative product), Overflow.
    double dx();
    double dy();

    // Type and value from two side lengths as texts; a positive dx wins.
    void SetAspectRatio(const std::wstring& dx, const std::wstring& dy);

    // The sides to be drawn. With Default set and no area only dx is written (as 1).
    void getDefaultValues(double& dx, double& dy);

  private:
    // The value as a number, with the lasting fall-back to the ratio type.
    double valueForSides();

    void type(const std::wstring& word);

    // The known words are shared by all rooms. Never null.
    std::shared_ptr<const std::wstring> calculationType_;
    std::wstring calculationValue_;
    double area_ = 0.0;
    bool default_ = false;
};

} // namespace kalvrooms
