#include "model/clsGeometry.h"

#include <array>
#include <cmath>

#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

namespace {

double finite(double value) {
    if (!std::isfinite(value)) {
        throw RuntimeError(RuntimeError::Overflow);
    }
    return value;
}

double divide(double dividend, double divisor) {
    if (divisor == 0.0) {
        throw RuntimeError(RuntimeError::DivisionByZero);
    }
    return finite(dividend / divisor);
}

double squareRoot(double value) {
    if (value < 0.0) {
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    }
    return std::sqrt(value);
}

double numberOrZero(const std::wstring& text, const NumberLocale& locale) {
    return IsNumeric(text, locale) ? ToDouble(text, locale) : 0.0;
}

using SharedWord = std::shared_ptr<const std::wstring>;

SharedWord sharedWord(const std::wstring& word) {
    static const std::array<SharedWord, 5> known = [] {
        std::array<SharedWord, 5> words;
        std::size_t count = 0;
        for (const wchar_t* text : {L"", L"CalculationByDx", L"CalculationByDy",
                                    L"CalculationByRatio", L"CalculationByFile"}) {
            words[count++] = std::make_shared<const std::wstring>(text);
        }
        return words;
    }();
    for (const SharedWord& candidate : known) {
        if (*candidate == word) {
            return candidate;
        }
    }
    return std::make_shared<const std::wstring>(word);
}

} // namespace

clsGeometry::clsGeometry() : calculationType_(sharedWord({})) {}

void clsGeometry::type(const std::wstring& word) {
    if (*calculationType_ != word) {
        calculationType_ = sharedWord(word);
    }
}

void clsGeometry::SetTypeAndValue(const std::wstring& type, const std::wstring& value) {
    this->type(type);
    calculationValue_ = value;
}

void clsGeometry::GetTypeAndValue(std::wstring& type, std::wstring& value) const {
    type = *calculationType_;
    value = calculationValue_;
}

std::wstring clsGeometry::CalculationType() const {
    return *calculationType_;
}

std::wstring clsGeometry::CalculationValue() const {
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

std::wstring clsGeometry::Info() const {
    const NumberLocale locale = UserLocale();
    const bool numeric = IsNumeric(calculationValue_, locale);
    const double value = numberOrZero(calculationValue_, locale);
    if (*calculationType_ == CalculationByDx || *calculationType_ == CalculationByDy) {
        return std::abs(value * value - area_) < 0.001 ? L"quadratisch" : L"rechteckig";
    }
    if (*calculationType_ == CalculationByRatio) {
        return value == 1.0 ? L"quadratisch" : L"rechteckig";
    }
    if (*calculationType_ == CalculationByFile) {
        return L"polygonal";
    }
    return numeric ? L"" : L" ";
}

std::wstring clsGeometry::FileName() const {
    return *calculationType_ == CalculationByFile ? calculationValue_ : L" ";
}

double clsGeometry::valueForSides() {
    const NumberLocale locale = UserLocale();
    if (IsNumeric(calculationValue_, locale)) {
        return ToDouble(calculationValue_, locale);
    }
    if (*calculationType_ == CalculationByFile) {
        return 0.0;
    }
    type(CalculationByRatio);
    return 1.0;
}

double clsGeometry::dx() {
    const double value = valueForSides();
    if (*calculationType_ == CalculationByDx) {
        return value;
    }
    if (*calculationType_ == CalculationByDy) {
        return area_ != 0.0 ? divide(area_, value) : 0.0;
    }
    if (*calculationType_ == CalculationByRatio) {
        return area_ != 0.0 ? squareRoot(finite(value * area_)) : 0.0;
    }
    return 0.0;
}

double clsGeometry::dy() {
    const double value = valueForSides();
    if (*calculationType_ == CalculationByDy) {
        return value;
    }
    if (*calculationType_ == CalculationByDx) {
        return area_ != 0.0 ? divide(area_, value) : 0.0;
    }
    if (*calculationType_ == CalculationByRatio) {
        return area_ != 0.0 ? squareRoot(finite(divide(1.0, value) * area_)) : 0.0;
    }
    return 0.0;
}

void clsGeometry::SetAspectRatio(const std::wstring& dx, const std::wstring& dy) {
    const NumberLocale locale = UserLocale();
    const double a = numberOrZero(dx, locale);
    const double b = numberOrZero(dy, locale);
    if (a == b) {
        SetTypeAndValue(CalculationByRatio, L"1");
    } else if (a > 0.0) {
        SetTypeAndValue(CalculationByDx, dx);
    } else if (b > 0.0) {
        SetTypeAndValue(CalculationByDy, dy);
    } else {
        SetTypeAndValue(CalculationByRatio, L"1");
    }
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
