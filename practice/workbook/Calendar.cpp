#include "practice/workbook/Calendar.h"

#include <cmath>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr long phantomDay = 60; // 29 February 1900
constexpr double beyondLastDay = 2958466.0;

bool isLeap(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysOf(int year, int month) {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeap(year) ? 29 : days[month - 1];
}

// Days from 1 March of the year 0: the leap day stands at the end of such a year.
long dayNumber(const Date& date) {
    const long month = (date.month + 9) % 12;
    const long year = date.year - month / 10;
    return 365 * year + year / 4 - year / 100 + year / 400 + (month * 306 + 5) / 10 + date.day - 1;
}

} // namespace

bool IsDate(const Date& date) {
    return date.year >= 1900 && date.year <= 9999 && date.month >= 1 && date.month <= 12 &&
           date.day >= 1 && date.day <= daysOf(date.year, date.month);
}

double SerialOf(const Date& date) {
    const long serial = dayNumber(date) - dayNumber({1899, 12, 30});
    return static_cast<double>(serial <= phantomDay ? serial - 1 : serial);
}

std::optional<Date> DateOf(double serial) {
    if (!(serial >= 1.0 && serial < beyondLastDay))
        return std::nullopt;
    long day = static_cast<long>(std::floor(serial));
    if (day == phantomDay)
        return Date{1900, 2, 28};
    if (day < phantomDay)
        ++day;
    Date date{1900, 1, 1};
    // From a year that cannot be too late onward.
    date.year = 1900 + static_cast<int>((day - 1) / 366);
    while (date.year < 9999 && SerialOf({date.year + 1, 1, 1}) <= serial)
        ++date.year;
    while (date.month < 12 && SerialOf({date.year, date.month + 1, 1}) <= serial)
        ++date.month;
    date.day = static_cast<int>(std::floor(serial) - SerialOf({date.year, date.month, 1})) + 1;
    return date;
}

} // namespace kalvrooms::practice::spreadsheet
