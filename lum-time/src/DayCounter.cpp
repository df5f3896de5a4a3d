#include "lum-time/DayCounter.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <utility>

#include "lum-auxiliary/Error.hpp"
#include "lum-time/Calendar.hpp"

namespace zep {

namespace {

constexpr const char* kNotImplemented = "Convention not implemented";

struct CivilDate {
    std::int32_t year;
    std::int32_t month;
    std::int32_t day;
};

constexpr bool IsGregorianLeap(std::int32_t year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

// The serial number of the first of every month from January 1901 to January 2200: the 30/360
// family needs day, month and year of both ends on every call, and one estimate plus one table
// look-up keeps a year fraction within a few nanoseconds.
constexpr std::int32_t kFirstYear = 1901;
constexpr std::int32_t kTableMonths = (2200 - kFirstYear) * 12;

struct MonthStartTable {
    std::array<std::int32_t, kTableMonths + 1> serial{};
};

constexpr MonthStartTable BuildMonthStarts() {
    constexpr std::int32_t kMonthLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    MonthStartTable table;
    std::int32_t serial = 367;  // 1 January 1901
    for (std::int32_t i = 0; i <= kTableMonths; ++i) {
        table.serial[i] = serial;
        const std::int32_t month = i % 12;
        serial += kMonthLengths[month] + (month == 1 && IsGregorianLeap(kFirstYear + i / 12) ? 1 : 0);
    }
    return table;
}

constexpr MonthStartTable kMonthStarts = BuildMonthStarts();

constexpr CivilDate Split(std::int32_t serial) {
    // 4800 months in 146097 days; the estimate is off by at most one month either way. The
    // clamp keeps a null or out-of-range date inside the table.
    std::int32_t index = std::clamp((serial - 367) * 4800 / 146097, 0, kTableMonths - 1);
    if (index > 0 && serial < kMonthStarts.serial[index]) --index;
    else if (index < kTableMonths && serial >= kMonthStarts.serial[index + 1]) ++index;
    return {kFirstYear + index / 12, index % 12 + 1, serial - kMonthStarts.serial[index] + 1};
}

// Every serial of the date range splits onto the day after the previous one.
constexpr bool SplitIsConsecutive() {
    CivilDate previous = Split(367);
    for (std::int32_t serial = 368; serial <= 109574; ++serial) {
        const CivilDate d = Split(serial);
        const bool nextDay = d.year == previous.year && d.month == previous.month && d.day == previous.day + 1;
        const bool nextMonth = d.day == 1 && (d.month == previous.month + 1 ||
                                              (d.month == 1 && previous.month == 12 && d.year == previous.year + 1));
        if (!nextDay && !nextMonth) return false;
        previous = d;
    }
    return true;
}
static_assert(SplitIsConsecutive());
static_assert(Split(36526).year == 2000 && Split(36526).month == 1 && Split(36526).day == 1);
static_assert(Split(45351).year == 2024 && Split(45351).month == 2 && Split(45351).day == 29);
static_assert(Split(109574).year == 2199 && Split(109574).month == 12 && Split(109574).day == 31);

CivilDate Split(const Date& date) { return Split(date.SerialNumber()); }

std::int32_t ActualDays(const Date& start, const Date& end) {
    return end.SerialNumber() - start.SerialNumber();
}

std::int32_t DaysInYear(std::int32_t year) { return IsGregorianLeap(year) ? 366 : 365; }

std::int32_t FirstOfJanuary(std::int32_t year) { return Date::YearOffset(year) + 1; }

bool IsLastDayOfMonth(const CivilDate& d) {
    constexpr std::int32_t kMonthLengths[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return d.day == (d.month == 2 && IsGregorianLeap(d.year) ? 29 : kMonthLengths[d.month]);
}

std::int32_t ThirtyDays(const CivilDate& s, std::int32_t startDay, const CivilDate& e,
                        std::int32_t endMonth, std::int32_t endDay) {
    return 360 * (e.year - s.year) + 30 * (endMonth - s.month) + (endDay - startDay);
}

std::int32_t Thirty360Days(std::int32_t convention, const Date& start, const Date& end) {
    const CivilDate s = Split(start);
    const CivilDate e = Split(end);
    switch (convention) {
        case Thirty360:  // rule A: each end capped at 30 on its own; not the US rule of code 5
            return ThirtyDays(s, std::min(s.day, 30), e, e.month, std::min(e.day, 30));
        case ThirtyE360ISDA:  // rule B: month ends count as the 30th, February included
            return ThirtyDays(s, IsLastDayOfMonth(s) ? 30 : s.day, e, e.month,
                              IsLastDayOfMonth(e) ? 30 : e.day);
        case ThirtyEPlus360:  // rule C: an end on the 31st moves to the 1st of the next month
            return e.day == 31 ? ThirtyDays(s, std::min(s.day, 30), e, e.month + 1, 1)
                               : ThirtyDays(s, std::min(s.day, 30), e, e.month, e.day);
        default: {  // rule D (US): the end is capped only when the start was
            const std::int32_t startDay = std::min(s.day, 30);
            return ThirtyDays(s, startDay, e, e.month, (e.day == 31 && startDay == 30) ? 30 : e.day);
        }
    }
}

// The deliberately short leap-day table of Act365Leap: twelve 29 Februaries, 2012 to 2056.
constexpr std::int32_t kLeapDayCount = 12;
constexpr std::int32_t kFirstLeapDaySerial = 40968;  // 29 February 2012

constexpr std::int32_t LeapDaySerial(std::int32_t k) {  // k from 1 to 12
    std::int32_t serial = kFirstLeapDaySerial;
    for (std::int32_t i = 1; i < k; ++i) serial += 4 * 365 + 1;
    return serial;
}
static_assert(LeapDaySerial(4) == 45351);   // 29 February 2024
static_assert(LeapDaySerial(12) == 57039);  // 29 February 2056

std::int32_t LeapDaysBeforeStart(std::int32_t serial) {
    for (std::int32_t k = 1; k <= 3; ++k)
        if (serial >= LeapDaySerial(k) && serial < LeapDaySerial(k + 1)) return k;
    return 0;
}

std::int32_t LeapDaysToEnd(std::int32_t serial) {
    for (std::int32_t k = 1; k < kLeapDayCount; ++k)
        if (serial >= LeapDaySerial(k) && serial < LeapDaySerial(k + 1)) return k;
    return 0;
}

// Only equal dates are spared the table: from March 2024 on, its short start table deducts
// leap days a period never crossed, and callers rely on that being kept as it is.
std::int32_t Act365LeapDays(const Date& start, const Date& end) {
    if (start == end) return 0;
    return ActualDays(start, end) -
           (LeapDaysToEnd(end.SerialNumber()) - LeapDaysBeforeStart(start.SerialNumber()));
}

double ActActISDAFraction(const Date& start, const Date& end) {
    const std::int32_t y1 = Split(start).year;
    const std::int32_t y2 = Split(end).year;
    return static_cast<double>(FirstOfJanuary(y1 + 1) - start.SerialNumber()) / DaysInYear(y1) +
           static_cast<double>(end.SerialNumber() - FirstOfJanuary(y2)) / DaysInYear(y2) +
           (y2 - y1 - 1);
}

// Whole years by anniversary, then the stub over the length of the calendar year it ends in.
double ActActXTRFraction(const Date& start, const Date& end) {
    const CivilDate s = Split(start);
    const CivilDate e = Split(end);
    std::int32_t years = e.year - s.year;
    if (std::pair(s.month, s.day) > std::pair(e.month, e.day)) --years;
    const Date anniversary = start.Advance(years, Years);
    return years + static_cast<double>(ActualDays(anniversary, end)) / DaysInYear(e.year);
}

double Act252Fraction(const Calendar& calendar, const Date& start, const Date& end) {
    static constexpr std::string_view kBrazilianExchange = "SYB";
    Date first = start;
    while (!calendar.IsBusinessDay(first, kBrazilianExchange)) ++first;
    Date last = end;
    while (!calendar.IsBusinessDay(last, kBrazilianExchange)) --last;
    return calendar.BusinessDaysBetween(first, last, kBrazilianExchange) / 252.0;
}

void RequireCouponData(const Date& nextCouponDate, Frequency frequency, const char* message) {
    ZEP_REQUIRE_TEXT(!nextCouponDate.IsNull() && frequency != NoFrequency, message);
}

}  // namespace

DayCounter::DayCounter(const std::string& text) : m_convention(stringToConvention(text)) {}

DayCounter::DayCounter(std::int32_t convention, boost::shared_ptr<const Calendar> calendar)
    : m_convention(convention), m_calendar(std::move(calendar)) {}

DayCounter::DayCounter(const std::string& text, boost::shared_ptr<const Calendar> calendar)
    : m_convention(stringToConvention(text)), m_calendar(std::move(calendar)) {}

std::string DayCounter::ToString() const {
    static constexpr std::array<std::string_view, 17> kNames = {
        "NONE",          "Act360",         "Act365Fixed", "Thirty360",  "ThirtyE360ISDA",
        "ThirtyEPlus360", "ThirtyU360",    "ActActISDA",  "ActActICMA", "Act365L",
        "ActActAFB",     "Act365Leap",     "ActActXTR",   "ActActICMAComplement",
        "Act252",        "Act360Inclusive", "Act365Inclusive"};
    ZEP_REQUIRE(m_convention >= NoConvention && m_convention <= Act365Inclusive,
                "'" + std::to_string(m_convention) + "' is an invalid day count convention.");
    return std::string(kNames[m_convention + 1]);
}

std::int32_t DayCounter::DayCount(const Date& start, const Date& end) const {
    if (start > end) return -DayCount(end, start);
    switch (m_convention) {
        case Act360: case Act365Fixed: case ActActISDA: case ActActICMA: case Act365L:
        case ActActAFB: case ActActXTR: case ActActICMAComplement: case Act252:
            return ActualDays(start, end);
        case Thirty360: case ThirtyE360ISDA: case ThirtyEPlus360: case ThirtyU360:
            return Thirty360Days(m_convention, start, end);
        case Act365Leap:
            return Act365LeapDays(start, end);
        case Act360Inclusive: case Act365Inclusive:
            return ActualDays(start, end) + 1;
        default:
            throw kNotImplemented;
    }
}

double DayCounter::YearFraction(const Date& start, const Date& end, const Date& nextCouponDate,
                                Frequency frequency) const {
    if (start > end) return -OrderedYearFraction(end, start, nextCouponDate, frequency);
    return OrderedYearFraction(start, end, nextCouponDate, frequency);
}

std::vector<double> DayCounter::YearFraction(const std::vector<Date>& starts,
                                             const std::vector<Date>& ends,
                                             const Date& nextCouponDate, Frequency frequency) const {
    if (starts.size() != ends.size())
        ZEP_FAIL_IN("zep::DayCounter::YearFraction",
                    "Number of start dates (" + std::to_string(starts.size()) +
                        ") must equal number of end dates(" + std::to_string(ends.size()) + ")");
    std::vector<double> fractions(starts.size());
    for (std::size_t i = 0; i < starts.size(); ++i)
        fractions[i] = YearFraction(starts[i], ends[i], nextCouponDate, frequency);
    return fractions;
}

double DayCounter::OrderedYearFraction(const Date& start, const Date& end,
                                       const Date& nextCouponDate, Frequency frequency) const {
    switch (m_convention) {
        case Act360: return ActualDays(start, end) / 360.0;
        case Act365Fixed: return ActualDays(start, end) / 365.0;
        case Thirty360: case ThirtyE360ISDA: case ThirtyEPlus360: case ThirtyU360:
            return Thirty360Days(m_convention, start, end) / 360.0;
        case ActActISDA: return ActActISDAFraction(start, end);
        case ActActICMA:
            RequireCouponData(nextCouponDate, frequency,
                              "Cannot use convention Act/Act (ICMA) without a next coupon date and a frequency");
            return ActActICMAYearFraction(start, end, nextCouponDate, frequency);
        case ActActICMAComplement:
            RequireCouponData(nextCouponDate, frequency,
                              "Cannot use convention Act/Act (ICMA) without a next coupon date and a frequency");
            return 1.0 / static_cast<double>(frequency) - ActActICMAYearFraction(start, end, nextCouponDate, frequency);
        case Act365L:
            RequireCouponData(nextCouponDate, frequency,
                              "Cannot use convention Act/365L without a next coupon date and a frequency");
            return Act365LYearFraction(start, end, nextCouponDate, frequency);
        case ActActAFB: ZEP_FAIL("ActActAFB convention not implemented");
        case Act365Leap: return Act365LeapDays(start, end) / 365.0;
        case ActActXTR: return ActActXTRFraction(start, end);
        case Act252:
            return start == end ? 0.0 : Act252Fraction(m_calendar ? *m_calendar : Calendar::Shared(), start, end);
        case Act360Inclusive: return (ActualDays(start, end) + 1) / 360.0;
        case Act365Inclusive: return (ActualDays(start, end) + 1) / 365.0;
        default: throw kNotImplemented;
    }
}

namespace {
void RequireRegularFrequency(Frequency frequency, const char* function) {
    if (frequency == Once) ZEP_FAIL_IN(function, "Cannot day count with once frequency");
    if (frequency == Continuous) ZEP_FAIL_IN(function, "Cannot day count with continuous frequency");
    if (frequency == NoFrequency) ZEP_FAIL_IN(function, "Cannot day count with no frequency");
}
}  // namespace

// The start is taken as the start of the reference period that ends on the next coupon date.
double DayCounter::ActActICMAYearFraction(const Date& start, const Date& end,
                                          const Date& nextCouponDate, Frequency frequency) {
    RequireRegularFrequency(frequency, "zep::DayCounter::ActActICMAYearFraction");
    return static_cast<double>(ActualDays(start, end)) /
           (static_cast<double>(ActualDays(start, nextCouponDate)) * static_cast<double>(frequency));
}

double DayCounter::Act365LYearFraction(const Date& start, const Date& end,
                                       const Date& nextCouponDate, Frequency frequency) {
    RequireRegularFrequency(frequency, "zep::DayCounter::Act365LYearFraction");
    bool leapDenominator = false;
    if (frequency == Annual) {
        // Annual coupons: 366 when a 29 February falls after the start and not after the end.
        for (std::int32_t year = start.Year(); year <= nextCouponDate.Year() && !leapDenominator; ++year) {
            if (!Date::IsLeapYear(year)) continue;
            const Date leapDay(29, 2, year);
            leapDenominator = leapDay > start && leapDay <= end;
        }
    } else {
        leapDenominator = Date::IsLeapYear(nextCouponDate.Year());
    }
    return ActualDays(start, end) / (leapDenominator ? 366.0 : 365.0);
}

std::int32_t stringToConvention(const std::string& text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });

    // Groups are tried in order and the first match decides. The "lin"/"yld" spellings are the
    // day count codes of an external trading system's rate conventions; "lin act/act xtr" maps
    // to ActActISDA and "yld act/act xtr" to ActActXTR on purpose.
    static constexpr std::pair<std::int32_t, std::string_view> kSpellings[] = {
        {Act360, "actual360"}, {Act360, "act/360"}, {Act360, "lin act/360"},
        {Act360, "act/360.swap"}, {Act360, "lin act/360 l+1"}, {Act360, "lin act/360 cpn"},
        {Act360, "actual/360"}, {Act360, "act 360"},
        {Act365Fixed, "act365"}, {Act365Fixed, "act/365"}, {Act365Fixed, "lin act/365"},
        {Act365Fixed, "lin act/365 xcp"}, {Act365Fixed, "lin act/365 cpn"},
        {Act365Fixed, "lin act/365 isd"}, {Act365Fixed, "lin act/365 dis"},
        {Act365Fixed, "actual365"}, {Act365Fixed, "act/365 fixed"}, {Act365Fixed, "actual/365"},
        {Act365Fixed, "act/365f"}, {Act365Fixed, "act365f"},
        {Thirty360, "lin 30e/360 cpn"}, {Thirty360, "30/360"}, {Thirty360, "thirty360"},
        {Thirty360, "thirty/360"}, {Thirty360, "30e/360"}, {Thirty360, "30360"},
        {Thirty360, "eurobond basis"},
        {ThirtyE360ISDA, "lin 30/360 isda"}, {ThirtyE360ISDA, "30e/360 isda"},
        {ThirtyE360ISDA, "30e360isda"}, {ThirtyE360ISDA, "thirtye/360 isda"},
        {ThirtyE360ISDA, "german"},
        {ThirtyEPlus360, "30e+/360"}, {ThirtyEPlus360, "30e+360"}, {ThirtyEPlus360, "thirtye+360"},
        {ThirtyU360, "30u/360"}, {ThirtyU360, "30/360 us"}, {ThirtyU360, "30u360"},
        {ThirtyU360, "thirtyus360"}, {ThirtyU360, "bond basis"},
        {ActActISDA, "lin act/act xtr"}, {ActActISDA, "lin act/act isd"},
        {ActActISDA, "lin act/act fcp"}, {ActActISDA, "act/act"}, {ActActISDA, "act/act isda"},
        {ActActISDA, "actual/actual"}, {ActActISDA, "actact"},
        {ActActICMA, "act/act icma"}, {ActActICMA, "act/act isma"}, {ActActICMA, "actact icma"},
        {Act365L, "act/365l"}, {Act365L, "act/365 l"},
        {ActActAFB, "act/act afb"}, {ActActAFB, "actact afb"},
        {Act365Leap, "act/365 leap"}, {Act365Leap, "act/365 noleap"}, {Act365Leap, "nl/365"},
        {ActActXTR, "yld act/act xtr"},
        {ActActICMAComplement, "lin act/act cpn"}, {ActActICMAComplement, "lin act/act ism"},
        {Act252, "yld bus/252 spb"}, {Act252, "bus/252"},
        {Act360Inclusive, "act360inclusive"},
        {Act365Inclusive, "act365inclusive"}, {Act365Inclusive, "act/365 fixed inclusive"},
        {Act365Inclusive, "act365 fixed inclusive"},
        {NoConvention, "none"},
    };
    for (std::int32_t code = NoConvention; code <= Act365Inclusive; ++code) {
        if (lower == std::to_string(code)) return code;
        std::string name = DayCounter(code).ToString();
        std::transform(name.begin(), name.end(), name.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        if (lower == name) return code;
    }
    for (const auto& [code, spelling] : kSpellings)
        if (lower == spelling) return code;
    ZEP_FAIL_IN("zep::DayCounter::stringToConvention",
                "'" + text + "' is an invalid day count convention.");
}

}  // namespace zep
