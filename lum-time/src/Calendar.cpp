#include "lum-time/Calendar.hpp"

#include <algorithm>
#include <cctype>

#include "HolidayFile.hpp"
#include "HolidayFileSearch.hpp"
#include "HolidayIndex.hpp"
#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/Logger.hpp"

namespace zep {

namespace {

using detail::HolidaySerials;

bool IsBusinessSerial(std::int32_t serial, const HolidaySerials& holidays) {
    return !detail::IsWeekend(serial) && !std::binary_search(holidays.begin(), holidays.end(), serial);
}

// Weekdays among the serial numbers 1 to n.
std::int32_t WeekdaysUpTo(std::int32_t serial) {
    return serial / 7 * 5 + std::max(0, std::min(serial % 7, 6) - 1);
}

constexpr std::int32_t kWednesday = 4;  // weekdays run 1 (Sunday) to 7 (Saturday)

Date ThirdWednesday(std::int32_t month, std::int32_t year) {
    const Date first(1, month, year);
    return first + ((kWednesday - first.Weekday() + 7) % 7 + 14);
}

// The first third Wednesday strictly after the date in a month that is a multiple of `step`.
Date NextThirdWednesday(const Date& date, std::int32_t step) {
    std::int32_t year = date.Year();
    std::int32_t month = (date.Month() + step - 1) / step * step;
    for (;;) {
        const Date candidate = ThirdWednesday(month, year);
        if (candidate > date) return candidate;
        month += step;
        if (month > 12) {
            month -= 12;
            ++year;
        }
    }
}

std::string Lower(const std::string& text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

[[noreturn]] void FailUnknownCentre(const detail::UnknownCentre& unknown) {
    ZEP_FAIL_IN("zep::Calendar::Dates",
                "Can't find the fincancial center code '" + std::string(unknown.what()) + "' in the calendar");
}

// One day on in a roll's search, which gives up after a year: centres whose holidays cover a
// whole year (a holiday-only calendar) have no business day to roll to.
Date NextDayWithin(const Date& day, const Date& from, int step, int direction) {
    if (step >= 366)
        ZEP_FAIL_IN("zep::Calendar::Adjust", "no business day within a year of " + from.ToString() + " on these centres");
    return day + direction;
}

}  // namespace

Calendar::Calendar() : m_index(std::make_unique<detail::HolidayIndex>()) {
    const detail::HolidayFileSearch search = detail::FindHolidayFile();
    if (!search.found) {
        std::string message = "Holiday.txt not found. Base=" + search.base + "\nTried paths:";
        for (const std::string& path : search.tried) message += "\n  - " + path;
        ZEP_FAIL(message);
    }
    LoadHolidaysFromFile(*search.found);
    Logger().info("Holiday.txt loaded from: " + *search.found);
}

Calendar::Calendar(NoFile) : m_index(std::make_unique<detail::HolidayIndex>()) {}

Calendar::~Calendar() = default;

std::unique_ptr<Calendar> Calendar::FromHolidays(const HolidayDates& holidays) {
    detail::HolidayTable table;
    for (const auto& [centre, dates] : holidays) {
        detail::HolidaySerials& serials = table[centre];
        for (const Date& date : dates) serials.push_back(date.SerialNumber());
        std::sort(serials.begin(), serials.end());
        serials.erase(std::unique(serials.begin(), serials.end()), serials.end());
    }
    auto calendar = std::unique_ptr<Calendar>(new Calendar(NoFile{}));
    calendar->m_index->Add(table);
    return calendar;
}

const Calendar& Calendar::Shared() {
    static const Calendar calendar;  // a failed load is retried by the next caller
    return calendar;
}

void Calendar::SetSearchBase(const std::string& directory) { detail::SetHolidaySearchBase(directory); }
std::string Calendar::SearchBase() { return detail::HolidaySearchBase(); }
void Calendar::SetPackagedHolidayFile(const std::string& path) { detail::SetPackagedHolidayFile(path); }
std::string Calendar::PackagedHolidayFile() { return detail::PackagedHolidayFile(); }

void Calendar::LoadHolidaysFromFile(const std::string& path) {
    const auto text = detail::ReadTextFile(path);
    ZEP_REQUIRE(text.has_value(), "File cannot be found!");
    ZEP_REQUIRE(!detail::IsBlank(*text), "Holiday file provided is empty");
    try {
        m_index->Add(detail::ParseHolidayTable(*text, path));
    } catch (const detail::MalformedHolidayFile& malformed) {
        ZEP_FAIL(malformed.what());
    }
}

void Calendar::LoadMurexHolidays(const std::string& path) {
    ZEP_REQUIRE(!path.empty(), "No holiday file provided");
    const auto text = detail::ReadTextFile(path);
    ZEP_REQUIRE(text.has_value(), "File cannot be found!");
    ZEP_REQUIRE(!detail::IsBlank(*text), "Holiday file provided is empty");
    try {
        m_index->Add(detail::ParseMurexExport(*text, path));
    } catch (const detail::MalformedHolidayFile& malformed) {
        ZEP_FAIL(malformed.what());
    }
}

const std::vector<std::int32_t>& Calendar::Holidays(std::string_view centres) const {
    static const HolidaySerials kWeekendsOnly;
    if (centres.empty()) return kWeekendsOnly;
    try {
        return m_index->Merged(centres);
    } catch (const detail::UnknownCentre& unknown) {
        FailUnknownCentre(unknown);
    }
}

bool Calendar::IsBusinessDay(const Date& date, std::string_view centres) const {
    return IsBusinessSerial(date.SerialNumber(), Holidays(centres));
}

bool BusinessDays::IsBusinessDay(const Date& date) const {
    const auto serial = static_cast<std::size_t>(date.SerialNumber());
    if (detail::IsWeekend(date.SerialNumber())) return false;
    const std::size_t word = serial / 64;
    return word >= m_holidayBits->size() || ((*m_holidayBits)[word] >> (serial % 64) & 1) == 0;
}

BusinessDays Calendar::BusinessDaysOf(std::string_view centres) const {
    static const detail::HolidayBits kWeekendsOnly;
    if (centres.empty()) return BusinessDays(kWeekendsOnly);
    try {
        return BusinessDays(m_index->MergedBits(centres));
    } catch (const detail::UnknownCentre& unknown) {
        FailUnknownCentre(unknown);
    }
}

Date BusinessDays::Adjust(const Date& date, std::int32_t rule) const {
    ZEP_REQUIRE_TEXT(!date.IsNull(), "Can't adjust a null date");
    if (rule < Following || rule > Unadjusted || rule == IMM) throw "Unknown adjusting rule";
    if (rule == Unadjusted || IsBusinessDay(date)) return date;
    switch (rule) {
        case Following:
        case ModifiedFollowing: {
            Date result = date;
            for (int step = 0; !IsBusinessDay(result); ++step) result = NextDayWithin(result, date, step, 1);
            if (rule == ModifiedFollowing && result.Month() != date.Month()) return Adjust(date, Preceding);
            return result;
        }
        case Preceding:
        case ModifiedPreceding: {
            Date result = date;
            for (int step = 0; !IsBusinessDay(result); ++step) result = NextDayWithin(result, date, step, -1);
            if (rule == ModifiedPreceding && result.Month() != date.Month()) return Adjust(date, Following);
            return result;
        }
        default:
            return date;
    }
}

Date Calendar::Adjust(const Date& date, std::int32_t rule, std::string_view centres) const {
    ZEP_REQUIRE_TEXT(!date.IsNull(), "Can't adjust a null date");
    switch (rule) {
        case IMM:
            return NextFutureRollDate(date, "IMM");
        case LME:
            return NextCommodityDeliveryDate(date, "LME");
        case Unadjusted:
            return date;
        case Following:
        case ModifiedFollowing:
        case Preceding:
        case ModifiedPreceding:
            return BusinessDaysOf(centres).Adjust(date, rule);
        default:
            throw "Unknown adjusting rule";
    }
}

std::int32_t Calendar::BusinessDaysBetween(const Date& start, const Date& end,
                                           std::string_view centres) const {
    const HolidaySerials& holidays = Holidays(centres);
    ZEP_REQUIRE(IsBusinessSerial(start.SerialNumber(), holidays),
                "Input 1: Start Date is not a business day");
    ZEP_REQUIRE(IsBusinessSerial(end.SerialNumber(), holidays),
                "Input 2: End Date is not a business day");
    ZEP_REQUIRE(end >= start, "End date must be on or after start date");
    const auto holidaysUpTo = [&](std::int32_t serial) {
        return std::upper_bound(holidays.begin(), holidays.end(), serial) - holidays.begin();
    };
    const std::int32_t weekdays = WeekdaysUpTo(end.SerialNumber()) - WeekdaysUpTo(start.SerialNumber());
    return weekdays - static_cast<std::int32_t>(holidaysUpTo(end.SerialNumber()) -
                                                holidaysUpTo(start.SerialNumber()));
}

std::vector<Date> Calendar::Dates(const std::string& centre) const {
    const auto found = m_index->Centres().find(centre);
    ZEP_REQUIRE(found != m_index->Centres().end(),
                "Can't find the fincancial center code '" + centre + "' in the calendar");
    std::vector<Date> dates;
    dates.reserve(found->second.size());
    for (const std::int32_t serial : found->second) dates.emplace_back(serial);
    return dates;
}

std::vector<std::string> Calendar::Centres() const {
    std::vector<std::string> codes;
    for (const auto& [code, serials] : m_index->Centres()) codes.push_back(code);
    return codes;
}

Date Calendar::NextFutureRollDate(const Date& date, const std::string& market) const {
    // Money-market futures (IMM) expire on the third Wednesday of the quarter months.
    ZEP_REQUIRE(market == "IMM", "Unknown money market");
    return NextThirdWednesday(date, 3);
}

Date Calendar::NextCommodityDeliveryDate(const Date& date, const std::string& market) const {
    // The LME's monthly prompt date is the third Wednesday of every month.
    ZEP_REQUIRE(market == "LME", "Unknown commodity market");
    return NextThirdWednesday(date, 1);
}

// The FX option market rule. The spot lag is the number of business days from the reference
// date to the spot date. Day and week tenors fix the expiry: reference date + tenor, rolled
// Following, with delivery one spot lag later. Month and year tenors fix the delivery: spot date
// + tenor, rolled Modified Following, or the last business day of that month when the spot date
// is the last business day of its month; the expiry is one spot lag before the delivery.
std::pair<Date, Date> Calendar::FXODeliveryExpiryDates(const Date& referenceDate, const Date& spotDate,
                                                       const Period& tenor,
                                                       std::string_view centres) const {
    ZEP_REQUIRE(spotDate > referenceDate, "Spot Date should be later than Reference Date!");
    const HolidaySerials& holidays = Holidays(centres);
    const auto isBusiness = [&](const Date& d) { return IsBusinessSerial(d.SerialNumber(), holidays); };

    std::int32_t spotLag = 0;
    for (Date d = referenceDate; d < spotDate;)
        if (isBusiness(++d)) ++spotLag;
    const auto moveBusinessDays = [&](Date d, std::int32_t count, std::int32_t step) {
        while (count > 0)
            if (isBusiness(d = d + step)) --count;
        return d;
    };

    if (tenor.Units() == zep::Days || tenor.Units() == zep::Weeks) {
        const Date expiry = Adjust(referenceDate + tenor, Following, centres);
        return {moveBusinessDays(expiry, spotLag, 1), expiry};
    }
    const auto lastBusinessDayOfMonth = [&](const Date& d) {
        return Adjust(Date(Date::DaysInMonth(d.Month(), d.Year()), d.Month(), d.Year()), Preceding,
                      centres);
    };
    const Date unadjusted = spotDate + tenor;
    const Date delivery = spotDate == lastBusinessDayOfMonth(spotDate)
                              ? lastBusinessDayOfMonth(unadjusted)
                              : Adjust(unadjusted, ModifiedFollowing, centres);
    return {delivery, moveBusinessDays(delivery, spotLag, -1)};
}

bool operator==(const Calendar& a, const Calendar& b) {
    return a.m_index->Centres() == b.m_index->Centres();
}

DateAdjusterRule stringToDateAdjusterRule(const std::string& text) {
    const std::string lower = Lower(text);
    static constexpr std::pair<DateAdjusterRule, std::string_view> kSpellings[] = {
        {Following, "following"}, {Following, "f"}, {Following, "next"}, {Following, "fol"},
        {Following, "foll"}, {Following, "follow"}, {Following, "0"},
        {Preceding, "preceding"}, {Preceding, "p"}, {Preceding, "previous"}, {Preceding, "prev"},
        {Preceding, "prec"}, {Preceding, "1"},
        {ModifiedFollowing, "modified following"}, {ModifiedFollowing, "modfollowing"},
        {ModifiedFollowing, "mf"}, {ModifiedFollowing, "2"},
        {ModifiedPreceding, "modified preceding"}, {ModifiedPreceding, "modpreceding"},
        {ModifiedPreceding, "modp"}, {ModifiedPreceding, "modpr"}, {ModifiedPreceding, "modpre"},
        {ModifiedPreceding, "prec eom"}, {ModifiedPreceding, "mp"}, {ModifiedPreceding, "3"},
        {IMM, "imm"}, {IMM, "4"},
        {LME, "lme"}, {LME, "6"},
        {Unadjusted, "none"}, {Unadjusted, "unadjusted"}, {Unadjusted, "actual"},
        {Unadjusted, "indifferent"}, {Unadjusted, "anniv"}, {Unadjusted, "unadj"}, {Unadjusted, "5"},
    };
    for (const auto& [rule, spelling] : kSpellings)
        if (lower == spelling) return rule;
    // "modf", "modfl", "modfol" and every longer form of them.
    if (lower.starts_with("modf")) return ModifiedFollowing;
    ZEP_FAIL_IN("zep::Calendar::stringToDateAdjusterRule",
                "'" + text + "' is an invalid date rolling convention");
}

}  // namespace zep
