// Holiday calendars of financial centres: which days are business days, how dates roll onto
// them, and the market roll dates (IMM futures, LME prompts, FX option expiry and delivery).
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lum-time/Date.hpp"
#include "lum-time/Period.hpp"

namespace zep {

enum DateAdjusterRule : std::int32_t {
    Following = 0,
    Preceding = 1,
    ModifiedFollowing = 2,
    ModifiedPreceding = 3,
    IMM = 4,
    Unadjusted = 5,
    LME = 6,
};

namespace detail {
class HolidayIndex;
}

// The business days of one centre text, looked up once, for loops over many dates (the periods
// of a schedule) that would otherwise find the centres again at every date. It reads the
// calendar's holiday list: valid while the calendar lives and loads no further holidays.
class BusinessDays {
public:
    bool IsBusinessDay(const Date& date) const;
    // Following, Preceding and their modified forms, or Unadjusted; other rules are the
    // calendar's (Calendar::Adjust).
    Date Adjust(const Date& date, std::int32_t rule) const;

private:
    friend class Calendar;
    // Weekday holidays as bits, bit (serial % 64) of word (serial / 64).
    explicit BusinessDays(const std::vector<std::uint64_t>& holidayBits) : m_holidayBits(&holidayBits) {}
    const std::vector<std::uint64_t>* m_holidayBits;
};

// Holiday dates by centre code.
using HolidayDates = std::map<std::string, std::vector<Date>>;

// A centre text names one centre ("TARGET") or several joined by '+', ',', ';' or blanks
// ("LON+NYC"); a day is a business day only when it is one in every centre named. The empty
// text means weekends only.
//
// Construction finds the holiday file: the environment variable ZEP_HOLIDAYS_PATH (the file
// itself, or a directory holding "Holidays.txt") when set; otherwise "Holidays.txt" in
// ../control, ../data, ../../control, ../../data, ../../../config of the search base (by default
// the directory of the binary holding the library), then the packaged holiday file if one is
// registered. Loading is not safe alongside readers; a built calendar may be read from any
// number of threads.
class Calendar {
public:
    Calendar();
    ~Calendar();
    Calendar(const Calendar&) = delete;
    Calendar& operator=(const Calendar&) = delete;

    // The calendar that day counting uses (Act252), built on first use.
    static const Calendar& Shared();

    // A calendar of exactly these holidays per centre, reading no file: how a saved calendar is
    // rebuilt where its holiday file may not exist. Dates need not be sorted.
    static std::unique_ptr<Calendar> FromHolidays(const HolidayDates& holidays);

    // Base directory of the relative search; empty restores the binary's directory.
    static void SetSearchBase(const std::string& directory);
    static std::string SearchBase();
    // The holiday file installed with a package, tried after the relative search; empty for none.
    static void SetPackagedHolidayFile(const std::string& path);
    static std::string PackagedHolidayFile();

    // Adds the holidays of a "CALENDAR_C;HOLIDAY_D;GLOBAL_F" file: one record per holiday, the
    // date as YYYYMMDD, the flag Y (the holiday recurs on that day and month every year from
    // that year on) or N (that date only). A malformed line loads nothing from the file.
    void LoadHolidaysFromFile(const std::string& path);
    // Adds the holidays of a trading-system export: a header line, then comma-separated
    // records "centre,DD/MM/YYYY[,description]".
    void LoadMurexHolidays(const std::string& path);

    bool IsBusinessDay(const Date& date, std::string_view centres) const;
    BusinessDays BusinessDaysOf(std::string_view centres) const;
    Date Adjust(const Date& date, std::int32_t rule, std::string_view centres) const;
    // Business days after start up to and including end; both must be business days.
    std::int32_t BusinessDaysBetween(const Date& start, const Date& end,
                                     std::string_view centres) const;
    // Every holiday of one centre, ascending.
    std::vector<Date> Dates(const std::string& centre) const;
    // The centre codes loaded, ascending.
    std::vector<std::string> Centres() const;

    // The first roll date strictly after the date: "IMM" rolls on the third Wednesday of
    // March, June, September and December.
    Date NextFutureRollDate(const Date& date, const std::string& market) const;
    // The first prompt date strictly after the date: "LME" prompts on the third Wednesday of
    // every month.
    Date NextCommodityDeliveryDate(const Date& date, const std::string& market) const;
    // (delivery, expiry) of an FX option traded on the reference date with the given spot date.
    // Day and week tenors fix the expiry (reference + tenor, Following) and deliver one spot lag
    // of business days later; month and year tenors fix the delivery (spot + tenor, Modified
    // Following, end of month to end of month) and expire one spot lag earlier.
    std::pair<Date, Date> FXODeliveryExpiryDates(const Date& referenceDate, const Date& spotDate,
                                                 const Period& tenor, std::string_view centres) const;

    friend bool operator==(const Calendar& a, const Calendar& b);

private:
    struct NoFile {};
    explicit Calendar(NoFile);

    // The weekday holidays of the centre text, merged, ascending and cached.
    const std::vector<std::int32_t>& Holidays(std::string_view centres) const;

    std::unique_ptr<detail::HolidayIndex> m_index;
};

// Text to rule code, case-insensitive; also accepts the code written in decimal.
DateAdjusterRule stringToDateAdjusterRule(const std::string& text);

}  // namespace zep
