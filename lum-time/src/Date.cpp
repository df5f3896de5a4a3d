#include "lum-time/Date.hpp"

#include <algorithm>
#include <array>
#include <ctime>
#include <ostream>

#include "LeadingInteger.hpp"
#include "lum-auxiliary/Error.hpp"
#include "lum-time/Period.hpp"

namespace zep {

namespace {

constexpr std::int32_t kFirstTableYear = 1900;
constexpr std::int32_t kLastTableYear = 2200;
constexpr std::size_t kTableYears = kLastTableYear - kFirstTableYear + 1;
// Returned for dates outside the tables instead of failing, so that callers never see Year throw.
constexpr std::int32_t kFallbackYear = 2026;

constexpr bool GregorianLeap(std::int32_t year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

struct YearTables {
    std::array<bool, kTableYears> leap{};
    std::array<std::int32_t, kTableYears> offset{};
};

// 1900 is flagged leap on purpose: spreadsheet day numbers count a 29 February 1900.
constexpr YearTables BuildYearTables() {
    YearTables tables;
    std::int32_t offset = 0;
    for (std::size_t i = 0; i < kTableYears; ++i) {
        const auto year = kFirstTableYear + static_cast<std::int32_t>(i);
        tables.leap[i] = year == 1900 || GregorianLeap(year);
        tables.offset[i] = offset;
        offset += tables.leap[i] ? 366 : 365;
    }
    return tables;
}

constexpr YearTables kYears = BuildYearTables();

// Table reads for years known to lie in 1900..2200: the hot paths of date arithmetic.
inline std::int32_t TableOffset(std::int32_t year) { return kYears.offset[year - kFirstTableYear]; }
inline bool TableLeap(std::int32_t year) { return kYears.leap[year - kFirstTableYear]; }

constexpr bool TablesConsistent() {
    for (std::size_t i = 0; i + 1 < kTableYears; ++i)
        if (kYears.offset[i + 1] != kYears.offset[i] + (kYears.leap[i] ? 366 : 365)) return false;
    return true;
}
static_assert(TablesConsistent());
static_assert(kYears.offset[0] == 0 && kYears.offset[1] == 366);
static_assert(kYears.offset[2199 - kFirstTableYear] == 109209);
static_assert(kYears.offset[2000 - kFirstTableYear] + 1 == 36526);

constexpr std::array<std::int32_t, 13> kDaysInMonth = {0, 31, 28, 31, 30, 31, 30,
                                                       31, 31, 30, 31, 30, 31};
constexpr std::array<std::int32_t, 13> kDaysBefore = {0, 0, 31, 59, 90, 120, 151,
                                                      181, 212, 243, 273, 304, 334};
constexpr std::array<std::int32_t, 13> kLeapDaysBefore = {0, 0, 31, 60, 91, 121, 152,
                                                          182, 213, 244, 274, 305, 335};

// The month of each day of the year (1-based), for common and leap years.
constexpr std::array<std::array<std::uint8_t, 367>, 2> BuildMonthOfDayOfYear() {
    std::array<std::array<std::uint8_t, 367>, 2> table{};
    for (int leap = 0; leap < 2; ++leap) {
        const auto& before = leap ? kLeapDaysBefore : kDaysBefore;
        for (int day = 1; day <= 366; ++day) {
            int month = 1;
            while (month < 12 && day > before[month + 1]) ++month;
            table[leap][day] = static_cast<std::uint8_t>(month);
        }
    }
    return table;
}
constexpr auto kMonthOfDayOfYear = BuildMonthOfDayOfYear();

constexpr const char* kFormatMessage =
    "Invalid date format: must be YYYY/MM/DD, YYYY-MM-DD, DD/MM/YYYY, DD-MM-YYYY, YYYYMMDD, "
    "DD-MM-YY, DD/MM/YY, DDMMYYYY, DDMthYY, DDMMYY";
constexpr const char* kBadDateMessage =
    "Bad date: must be YYYY/MM/DD, YYYY-MM-DD, DD/MM/YYYY, DD-MM-YYYY or YYYYMMDD";

bool InRange(std::int64_t serial) {
    return serial >= Date::kMinSerial && serial <= Date::kMaxSerial;
}

std::string OutOfRange(std::int64_t serial) {
    return " Date (" + std::to_string(serial) + ") outside of range.";
}

std::int32_t DaysBefore(std::int32_t month, bool leap) {
    return leap ? kLeapDaysBefore[month] : kDaysBefore[month];
}

// Validates day, month and year and returns the serial; day <= 0 counts back from the first
// of the month on purpose (day 0 of March is the last day of February).
std::int64_t SerialFromParts(std::int32_t day, std::int32_t month, std::int32_t year) {
    ZEP_REQUIRE_TEXT(year >= 1901 && year <= 2199, "Year out of bound. It must be in [1901,2199]");
    ZEP_REQUIRE_TEXT(month >= 1 && month <= 12,
                     "Month out of bound. It must be in January-December range [1,12]");
    ZEP_REQUIRE_TEXT(!(day > Date::DaysInMonth(month, year) && day > 0), "Day outside of month range");
    return std::int64_t{Date::YearOffset(year)} + DaysBefore(month, Date::IsLeapYear(year)) + day;
}

std::int32_t MonthFromName(std::string_view text) {
    static constexpr std::string_view names[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                                 "jul", "aug", "sep", "oct", "nov", "dec"};
    if (text.size() != 3) return 0;
    char lower[3];
    for (int i = 0; i < 3; ++i) {
        const char c = text[i];
        lower[i] = (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
    }
    for (std::int32_t m = 0; m < 12; ++m)
        if (std::string_view(lower, 3) == names[m]) return m + 1;
    return 0;
}

std::int32_t Field(std::string_view text) {
    const auto value = detail::LeadingInteger(text);
    if (!value) throw kBadDateMessage;  // the conversion itself failed: the digits overflow
    return *value;
}

std::int64_t SerialFromText(std::string_view text) {
    if (text.empty()) return 0;

    std::string_view fields[3];
    std::size_t count = 0, begin = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i] == '/' || text[i] == '-') {
            if (count < 3) fields[count] = text.substr(begin, i - begin);
            ++count;
            begin = i + 1;
        }
    }

    std::int32_t day = 0, month = 0, year = 0;
    if (count == 3) {
        month = MonthFromName(fields[1]);
        if (month == 0) month = Field(fields[1]);
        day = Field(fields[0]);
        year = Field(fields[2]);
        if (year < 1900) {
            if (day >= 1900) std::swap(day, year);  // the year-first forms
            else year += 2000;                      // two-digit years mean 2000-2099
        }
    } else if (count == 1) {
        if (text.find_first_of(".+-") != std::string_view::npos) throw "Invalid date format";
        switch (text.size()) {
            case 8:
                if (Field(text.substr(4, 2)) < 13) {
                    year = Field(text.substr(0, 4));
                    month = Field(text.substr(4, 2));
                    day = Field(text.substr(6, 2));
                } else {
                    day = Field(text.substr(0, 2));
                    month = Field(text.substr(2, 2));
                    year = Field(text.substr(4, 4));
                }
                break;
            case 7:
                day = Field(text.substr(0, 2));
                month = MonthFromName(text.substr(2, 3));
                year = Field(text.substr(5, 2)) + 2000;
                break;
            case 6:
                day = Field(text.substr(0, 2));
                month = Field(text.substr(2, 2));
                year = Field(text.substr(4, 2)) + 2000;
                break;
            default:
                throw "Error: Valid Non delimited date formats are YYYYMMDD, DDMMYYYY, DDMthYY, DDMMYY";
        }
    } else {
        throw kFormatMessage;
    }
    return SerialFromParts(day, month, year);
}

}  // namespace

bool Date::IsLeapYear(std::int32_t year) {
    if (year >= kFirstTableYear && year <= kLastTableYear) return kYears.leap[year - kFirstTableYear];
    return GregorianLeap(year);
}

std::int32_t Date::DaysInMonth(std::int32_t month, std::int32_t year) {
    if (month < 1 || month > 12) return 0;
    return (month == 2 && IsLeapYear(year)) ? 29 : kDaysInMonth[month];
}

std::int32_t Date::YearOffset(std::int32_t year) {
    if (year >= kFirstTableYear && year <= kLastTableYear) return kYears.offset[year - kFirstTableYear];
    if (year < 1901) return 0;
    std::int32_t offset = kYears.offset.back();
    for (std::int32_t y = kLastTableYear; y < year; ++y) offset += IsLeapYear(y) ? 366 : 365;
    return offset;
}

Date::Date(std::int32_t serial) {
    ZEP_REQUIRE(serial == 0 || InRange(serial), OutOfRange(serial));
    m_serial = serial;
}

Date::Date(std::int32_t day, std::int32_t month, std::int32_t year) {
    const auto serial = SerialFromParts(day, month, year);
    ZEP_REQUIRE(InRange(serial), OutOfRange(serial));
    m_serial = static_cast<std::int32_t>(serial);
}

Date::Date(std::string_view text) {
    const auto serial = SerialFromText(text);
    ZEP_REQUIRE(serial == 0 || InRange(serial), OutOfRange(serial));
    m_serial = static_cast<std::int32_t>(serial);
}

Date Date::today() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (now == static_cast<std::time_t>(-1) || localtime_r(&now, &local) == nullptr)
        throw "Getting today's date failed";
    return Date(local.tm_mday, local.tm_mon + 1, local.tm_year + 1900);
}

std::int32_t Date::Year() const {
    if (m_serial == 0 || m_serial > kMaxSerial) return kFallbackYear;
    std::int32_t year = m_serial / 365 + kFirstTableYear;
    if (year < kFirstTableYear || year > kLastTableYear) return kFallbackYear;
    if (m_serial <= TableOffset(year)) --year;
    return year;
}

std::int32_t Date::Month() const { return Civil(Year()).month; }

std::int32_t Date::DayOfMonth() const { return Civil(Year()).day; }

Date::CivilDate Date::Civil(std::int32_t year) const {
    // Year() only returns years of the tables.
    const std::int32_t dayOfYear = m_serial - TableOffset(year);
    const bool leap = TableLeap(year);
    std::int32_t month = 1;
    if (dayOfYear >= 1 && dayOfYear <= 366) {
        month = kMonthOfDayOfYear[leap][dayOfYear];
    } else {
        while (month < 12 && dayOfYear > DaysBefore(month + 1, leap)) ++month;  // the null date
    }
    return {year, month, dayOfYear - DaysBefore(month, leap)};
}

Date Date::operator+(std::int32_t days) const {
    const std::int64_t serial = std::int64_t{m_serial} + days;
    ZEP_REQUIRE(InRange(serial), OutOfRange(serial));
    Date result;
    result.m_serial = static_cast<std::int32_t>(serial);
    return result;
}

Date Date::operator-(std::int32_t days) const {
    const std::int64_t serial = std::int64_t{m_serial} - days;
    ZEP_REQUIRE(InRange(serial), OutOfRange(serial));
    Date result;
    result.m_serial = static_cast<std::int32_t>(serial);
    return result;
}

Date& Date::operator++() {
    const std::int64_t serial = std::int64_t{m_serial} + 1;
    ZEP_REQUIRE(InRange(serial), OutOfRange(serial));
    m_serial = static_cast<std::int32_t>(serial);
    return *this;
}

Date Date::operator++(int) {
    const Date before = *this;
    ++*this;
    return before;
}

Date& Date::operator--() {
    const std::int64_t serial = std::int64_t{m_serial} - 1;
    ZEP_REQUIRE(InRange(serial), OutOfRange(serial));
    m_serial = static_cast<std::int32_t>(serial);
    return *this;
}

Date Date::operator--(int) {
    const Date before = *this;
    --*this;
    return before;
}

Date& Date::operator=(std::int32_t serial) {
    ZEP_REQUIRE(InRange(serial), OutOfRange(serial));
    m_serial = serial;
    return *this;
}

Date Date::Advance(std::int32_t n, TimeUnit unit) const {
    switch (unit) {
        case Days:
            return *this + n;
        case Weeks: {
            const std::int64_t days = std::int64_t{n} * 7;
            ZEP_REQUIRE(InRange(m_serial + days), OutOfRange(m_serial + days));
            return Date(static_cast<std::int32_t>(m_serial + days));
        }
        case Months: {
            const CivilDate from = Civil(Year());
            // Carrying whole years in either direction is floor division of the month count.
            const std::int64_t months = std::int64_t{from.year} * 12 + (from.month - 1) + n;
            ZEP_REQUIRE_TEXT(months >= 1901 * 12 && months < 2200 * 12, "Year out of bounds after increasing date");
            const auto y = static_cast<std::int32_t>(months / 12), m = static_cast<std::int32_t>(months % 12 + 1);
            const std::int32_t daysInMonth = (m == 2 && TableLeap(y)) ? 29 : kDaysInMonth[m];
            return FromValidParts(std::min(from.day, daysInMonth), m, y);
        }
        case Years: {
            const CivilDate from = Civil(Year());
            const std::int64_t year = std::int64_t{from.year} + n;
            ZEP_REQUIRE_TEXT(year >= 1901 && year <= 2199, "Year out of bounds after increasing date");
            const auto y = static_cast<std::int32_t>(year);
            const bool lostLeapDay = from.month == 2 && from.day == 29 && !IsLeapYear(y);
            return FromValidParts(lostLeapDay ? 28 : from.day, from.month, y);
        }
    }
    throw "undefined time units";
}

Date Date::FromValidParts(std::int32_t day, std::int32_t month, std::int32_t year) {
    Date date;
    date.m_serial = TableOffset(year) + DaysBefore(month, TableLeap(year)) + day;
    return date;
}

Date Date::operator+(const Period& period) const { return Advance(period.Length(), period.Units()); }

std::string Date::TenorString(const Date& base) const {
    if (*this == base) return "0D";
    ZEP_REQUIRE(!(*this < base), "Base date must be smaller than this date");
    const std::int32_t years = Year() - base.Year();
    const std::int32_t months = Month() - base.Month();
    const std::int32_t days = m_serial - base.m_serial;
    // Close to a whole number of months (30-day months, 365-day years) prints as a tenor; a
    // negative month difference always prints in days.
    const std::int32_t approximation = months * 30 + years * 365;
    if (days > approximation - 5 && days < approximation + 5) {
        if (months > 0) return std::to_string(months + 12 * years) + "M";
        if (months == 0 && years >= 1) return std::to_string(years) + "Y";
    }
    return std::to_string(days) + "D";
}

std::string Date::ToString() const {
    if (IsNull()) return "null date";
    char text[11];
    const CivilDate civil = Civil(Year());
    const int day = civil.day, month = civil.month, year = civil.year;
    text[0] = static_cast<char>('0' + day / 10);
    text[1] = static_cast<char>('0' + day % 10);
    text[2] = '/';
    text[3] = static_cast<char>('0' + month / 10);
    text[4] = static_cast<char>('0' + month % 10);
    text[5] = '/';
    text[6] = static_cast<char>('0' + year / 1000);
    text[7] = static_cast<char>('0' + year / 100 % 10);
    text[8] = static_cast<char>('0' + year / 10 % 10);
    text[9] = static_cast<char>('0' + year % 10);
    text[10] = '\0';
    return text;
}

std::ostream& operator<<(std::ostream& out, const Date& date) { return out << date.ToString(); }

}  // namespace zep
