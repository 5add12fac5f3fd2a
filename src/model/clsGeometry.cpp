#include "model/clsGeometry.h"

#include <cmath>

#include "model/RuntimeError.h"
#include "model/SharedWord.h"

namespace kalvrooms {

namespace {

double finite(double value) {
    if (!std::isfinite(value))
        throw RuntimeError(RuntimeError::Overflow);
    return value;
}

double divide(double dividend, double divisor) {
    if (divisor == 0.0)
        throw RuntimeError(RuntimeError::DivisionByZero);
    return finite(dividend / divisor);
}

double squareRoot(double value) {
    if (value < 0.0)
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    return std::sqrt(value);
}

} // namespace

clsGeometry::clsGeometry() : calculationType_(SharedWord({})) {}

void clsGeometry::SetTypeAndValue(std::wstring_view type, std::wstring_view value) {
    if (*calculationType_ != type)
        calculationType_ = SharedWord(type);
    calculationValue_ = value;
}

void clsGeometry::GetTypeAndValue(std::wstring& type, std::wstring& value) const {
    type = *calculationType_;
    value = calculationValue_;
}

const std::wstring& clsGeometry::CalculationType() const {
    return *calculationType_;
}

const std::wstring& clsGeometry::CalculationValue() const {
    return calculationValue_;
}

double clsGeometry::Area() const {
    return area_;
}

void clsGeometry::Area(double squareMetres) {
    area_ = squareMetres;
}

void clsGeometry::Default(bool value) {
    default_ = value;
}

std::wstring clsGeometry::Info(const NumberLocale& locale) const {
    const bool numeric = IsNumeric(calculationValue_, locale);
    const double value = NumberOrZero(calculationValue_, locale);
    if (*calculationType_ == CalculationByDx || *calculationType_ == CalculationByDy)
        return std::abs(value * value - area_) < 0.001 ? L"quadratisch" : L"rechteckig";
    if (*calculationType_ == CalculationByRatio)
        return value == 1.0 ? L"quadratisch" : L"rechteckig";
    if (*calculationType_ == CalculationByFile)
        return L"polygonal";
    return numeric ? L"" : L" ";
}

const std::wstring& clsGeometry::FileName() const {
    static const std::wstring none = L" ";
    return *calculationType_ == CalculationByFile ? calculationValue_ : none;
}

double clsGeometry::valueForSides(const NumberLocale& locale) {
    if (IsNumeric(calculationValue_, locale))
        return ToDouble(calculationValue_, locale);
    if (*calculationType_ == CalculationByFile)
        return 0.0;
    calculationType_ = SharedWord(CalculationByRatio);
    return 1.0;
}

double clsGeometry::dx(const NumberLocale& locale) {
    const double value = valueForSides(locale);
    if (*calculationType_ == CalculationByDx)
        return value;
    if (*calculationType_ == CalculationByDy)
        return area_ != 0.0 ? divide(area_, value) : 0.0;
    if (*calculationType_ == CalculationByRatio)
        return area_ != 0.0 ? squareRoot(finite(value * area_)) : 0.0;
    return 0.0;
}

double clsGeometry::dy(const NumberLocale& locale) {
    const double value = valueForSides(locale);
    if (*calculationType_ == CalculationByDy)
        return value;
    if (*calculationType_ == CalculationByDx)
        return area_ != 0.0 ? divide(area_, value) : 0.0;
    if (*calculationType_ == CalculationByRatio)
        return area_ != 0.0 ? squareRoot(finite(divide(1.0, value) * area_)) : 0.0;
    return 0.0;
}

void clsGeometry::SetAspectRatio(std::wstring_view dx, std::wstring_view dy,
                                 const NumberLocale& locale) {
    const double a = NumberOrZero(dx, locale);
    const double b = NumberOrZero(dy, locale);
    if (a == b)
        SetTypeAndValue(CalculationByRatio, L"1");
    else if (a > 0.0)
        SetTypeAndValue(CalculationByDx, dx);
    else if (b > 0.0)
        SetTypeAndValue(CalculationByDy, dy);
    else
        SetTypeAndValue(CalculationByRatio, L"1");
}

void clsGeometry::getDefaultValues(double& dx, double& dy) {
    if (!default_) {
        dx = this->dx();
        dy = this->dy();
    } else if (area_ > 0.0) {
        dx = dy = std::sqrt(area_);
    } else {
        // The caller keeps its own dy.
        dx = 1.0;
    }
}

} // namespace kalvrooms
