#pragma once
// Days as numbers: 1 is 1 January 1900, and there is a 29 February 1900 that never was.

#include <optional>

namespace kalvrooms::practice::spreadsheet {

struct Date {
    int year = 1900;
    int month = 1;
    int day = 1;
    bool operator==(const Date&) const = default;
};

bool IsDate(const Date& date);
// The date must exist and lie in the years 1900 to 9999.
double SerialOf(const Date& date);
// Nothing for numbers that are no day.
std::optional<Date> DateOf(double serial);

} // namespace kalvrooms::practice::spreadsheet
