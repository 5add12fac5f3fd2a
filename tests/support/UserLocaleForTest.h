#pragma once
// Sets the user's locale for the length of a test and gives back the default afterwards; and the
// shortest way to say which runtime error an operation ends with.

#include <functional>
#include <utility>

#include <gtest/gtest.h>

#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

class UserLocaleForTest {
  public:
    explicit UserLocaleForTest(NumberLocale locale) {
        HandInUserLocale([locale = std::move(locale)] { return locale; });
    }
    ~UserLocaleForTest() { HandInUserLocale({}); }
    UserLocaleForTest(const UserLocaleForTest&) = delete;
    UserLocaleForTest& operator=(const UserLocaleForTest&) = delete;
};

// Locales to which one of the two decimal marks means nothing at all.
inline NumberLocale frenchLocale() {
    return {L",", L"\u202f", L"€", L",", L"\u202f"};
}
inline NumberLocale swissLocale() {
    return {L".", L"\u2019", L"CHF", L".", L"\u2019"};
}

// The number of the runtime error that the operation raises; 0 when it raises none.
inline long errorOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const RuntimeError& error) {
        return error.number();
    }
    return 0;
}

// Base of tests that run once with a decimal comma and once with a decimal point.
class UnderBothLocales : public ::testing::TestWithParam<NumberLocale> {
  protected:
    UserLocaleForTest locale_{GetParam()};
};

} // namespace kalvrooms
