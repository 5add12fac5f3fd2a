#include "practice/workbook/Formula.h"

#include "practice/workbook/SheetError.h"

#include <charconv>
#include <cmath>
#include <cwctype>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr int unknownName = 2029;
constexpr int divisionByZero = 2007;
constexpr int notANumber = 2036;
constexpr int deepestNesting = 64;

// Reads and calculates in one pass; the first error value is the result.
class Reader {
  public:
    explicit Reader(std::wstring text) : text_(std::move(text)) {}

    Value Whole() {
        const double number = sum();
        if (!atEnd())
            fail();
        if (error_ != 0)
            return ErrorValue{error_};
        if (!std::isfinite(number))
            return ErrorValue{notANumber};
        return number;
    }

  private:
    [[noreturn]] static void fail() {
        throw SheetError(L"The formula that was typed contains an error.");
    }
    bool atEnd() {
        while (at_ < text_.size() && text_[at_] == L' ')
            ++at_;
        return at_ == text_.size();
    }
    bool take(wchar_t sign) {
        if (atEnd() || text_[at_] != sign)
            return false;
        ++at_;
        return true;
    }
    double becomes(int error) {
        if (error_ == 0)
            error_ = error;
        return 0.0;
    }

    double sum() {
        double result = product();
        for (;;) {
            if (take(L'+'))
                result += product();
            else if (take(L'-'))
                result -= product();
            else
                return result;
        }
    }
    double product() {
        double result = power();
        for (;;) {
            if (take(L'*')) {
                result *= power();
            } else if (take(L'/')) {
                const double divisor = power();
                result = divisor == 0.0 ? becomes(divisionByZero) : result / divisor;
            } else {
                return result;
            }
        }
    }
    double power() {
        double result = signedValue();
        while (take(L'^'))
            result = std::pow(result, signedValue());
        return result;
    }
    double signedValue() {
        // Signs bind closer than everything else here.
        bool negative = false;
        for (;;) {
            if (take(L'-'))
                negative = !negative;
            else if (!take(L'+'))
                break;
        }
        double result = value();
        while (take(L'%'))
            result /= 100.0;
        return negative ? -result : result;
    }
    double value() {
        if (atEnd())
            fail();
        if (take(L'(')) {
            if (++depth_ > deepestNesting)
                fail();
            const double inside = sum();
            --depth_;
            if (!take(L')'))
                fail();
            return inside;
        }
        const wchar_t first = text_[at_];
        if ((first >= L'0' && first <= L'9') || first == L'.')
            return number();
        if (std::iswalpha(static_cast<wint_t>(first)) || first == L'_')
            return name();
        fail();
    }
    double number() {
        std::string digits;
        for (std::size_t i = at_; i < text_.size() && text_[i] > 0 && text_[i] < 128; ++i)
            digits += static_cast<char>(text_[i]);
        double result = 0.0;
        const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), result);
        if (end.ec != std::errc())
            fail();
        at_ += static_cast<std::size_t>(end.ptr - digits.data());
        return result;
    }
    double name() {
        while (at_ < text_.size() && (std::iswalnum(static_cast<wint_t>(text_[at_])) ||
                                      text_[at_] == L'_' || text_[at_] == L'.'))
            ++at_;
        // A function's arguments are read, so that what follows is judged as well.
        if (take(L'(') && !take(L')')) {
            if (++depth_ > deepestNesting)
                fail();
            do {
                sum();
            } while (take(L','));
            --depth_;
            if (!take(L')'))
                fail();
        }
        return becomes(unknownName);
    }

    std::wstring text_;
    std::size_t at_ = 0;
    int depth_ = 0;
    int error_ = 0;
};

} // namespace

Value Evaluated(const std::wstring& formula) {
    return Reader(formula.substr(1)).Whole();
}

} // namespace kalvrooms::practice::spreadsheet
