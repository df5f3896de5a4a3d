// A calendar date as a spreadsheet-compatible serial day number (1 = 1 January 1900, with the
// fictitious 29 February 1900); 0 is the null date, valid dates run 1901-01-01 to 2199-12-31.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace zep {

enum TimeUnit : std::int32_t { Days = 0, Weeks = 1, Months = 2, Years = 3 };

class Period;

class Date {
public:
    static constexpr std::int32_t kMinSerial = 367;     // 1 January 1901
    static constexpr std::int32_t kMaxSerial = 109574;  // 31 December 2199

    Date() = default;
    explicit Date(std::int32_t serial);
    Date(std::int32_t day, std::int32_t month, std::int32_t year);
    // Any of YYYY/MM/DD, YYYY-MM-DD, DD/MM/YYYY, DD-MM-YYYY, YYYYMMDD, DD-MM-YY, DD/MM/YY,
    // DDMMYYYY, DDMthYY, DDMMYY; "" is the null date.
    explicit Date(std::string_view text);

    static Date today();

    std::int32_t SerialNumber() const { return m_serial; }
    bool IsNull() const { return m_serial == 0; }
    // Never raises: a date outside the tables reports 2026, which callers rely on.
    std::int32_t Year() const;
    std::int32_t Month() const;
    std::int32_t DayOfMonth() const;
    // 1 Sunday to 7 Saturday: the serial number modulo 7, a remainder of 0 read as 7.
    std::int32_t Weekday() const {
        const std::int32_t remainder = m_serial % 7;
        return remainder == 0 ? 7 : remainder;
    }

    static bool IsLeapYear(std::int32_t year);
    static std::int32_t DaysInMonth(std::int32_t month, std::int32_t year);
    // Serial number of 31 December of the year before.
    static std::int32_t YearOffset(std::int32_t year);

    Date operator+(std::int32_t days) const;
    Date operator-(std::int32_t days) const;
    Date operator+(const Period& period) const;
    Date& operator++();
    Date operator++(int);
    Date& operator--();
    Date operator--(int);
    Date& operator=(std::int32_t serial);
    // Month and year steps clamp the day to the new month; no end-of-month rule.
    Date Advance(std::int32_t n, TimeUnit unit) const;

    friend bool operator==(Date a, Date b) { return a.m_serial == b.m_serial; }
    friend auto operator<=>(Date a, Date b) { return a.m_serial <=> b.m_serial; }

    // The tenor from base to this date: "0D", "<n>M", "<n>Y" or "<n>D".
    std::string TenorString(const Date& base) const;
    // "DD/MM/YYYY", or "null date".
    std::string ToString() const;

private:
    struct CivilDate {
        std::int32_t year, month, day;
    };
    CivilDate Civil(std::int32_t year) const;
    static Date FromValidParts(std::int32_t day, std::int32_t month, std::int32_t year);

    std::int32_t m_serial = 0;
};

std::ostream& operator<<(std::ostream& out, const Date& date);

}  // namespace zep
