// Any text as a number: the test and the conversion agree, and what a number is written as is one.

#include "Input.h"
#include "model/RuntimeError.h"
#include "model/basValidation.h"

namespace {

using namespace kalvrooms;

// The runtime error that the operation ends with; 0 without one.
template <class Operation>
long errorOf(Operation operation) {
    try {
        operation();
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (!fuzz::TakeLocale(bytes, size))
        return 0;
    std::wstring text(bytes, bytes + size);
    for (wchar_t& c : text)
        c = c == 0x80 ? L'\u20AC' : c; // the currency sign, as an 8-bit text has it

    double value = 0.0;
    const long error = errorOf([&] { value = ToDouble(text); });
    fuzz::Hold(IsNumeric(text) == (error == 0));
    fuzz::Hold(error == 0 || error == 6 || error == 13);
    if (error == 0) {
        const std::wstring shown = FromDouble(value);
        fuzz::Hold(IsNumeric(shown));
        // 15 digits were kept; with them it stays as it is.
        fuzz::Hold(FromDouble(ToDouble(shown)) == shown);
    }
    errorOf([&] { ToLong(text); });
    errorOf([&] { TextToNumber(text); });
    for (const auto normalize : {&NormalizeThreeDecimals, &NormalizeTwoDecimals})
        errorOf([&] { normalize(text); });
    return 0;
}
