#include "lum-time/Schedule.hpp"

#include <algorithm>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

bool IsMonthEnd(const Date& date) { return date.DayOfMonth() == Date::DaysInMonth(date.Month(), date.Year()); }

Date MonthEnd(const Date& date) { return Date(Date::DaysInMonth(date.Month(), date.Year()), date.Month(), date.Year()); }

bool MonthBased(const Period& tenor) { return tenor.Units() == Months || tenor.Units() == Years; }

std::vector<Date> ImmDatesBetween(const Date& effective, const Date& termination) {
    std::vector<Date> dates{effective};
    for (std::int32_t year = effective.Year(); year <= termination.Year(); ++year)
        for (const std::int32_t month : {3, 6, 9, 12}) {
            const Date imm = ImmDate(month, year);
            if (imm > effective && imm < termination) dates.push_back(imm);
        }
    dates.push_back(termination);
    return dates;
}

// The business-day step on centres already looked up; the centres text only names them in the
// failure.
Date AdvanceBusinessDays(const BusinessDays& businessDays, const Date& date, std::int32_t days,
                         const std::string& centres) {
    Date result = date;
    const std::int32_t direction = days >= 0 ? 1 : -1;
    for (std::int32_t moved = 0, looked = 0; moved != days;) {
        result = result + direction;
        if (++looked > 366 + 2 * std::abs(days))
            ZEP_FAIL("Schedule: no business day within a year on the centres \"" + centres + "\"");
        if (businessDays.IsBusinessDay(result)) moved += direction;
    }
    return result;
}

}  // namespace

Date ImmDate(std::int32_t month, std::int32_t year) {
    const Date first(1, month, year);
    // Weekday(): 1 Sunday, 2 Monday, ... 4 Wednesday, ... 7 Saturday.
    const std::int32_t toWednesday = (4 - first.Weekday() + 7) % 7;
    return first + (toWednesday + 14);
}

Date AdvanceBusinessDays(const Calendar& calendar, const Date& date, std::int32_t days, const std::string& centres) {
    return AdvanceBusinessDays(calendar.BusinessDaysOf(centres), date, days, centres);
}

std::vector<Date> Schedule::UnadjustedDates(const Date& effective, const Date& termination, const ScheduleRules& rules) {
    ZEP_REQUIRE(termination > effective, "Schedule: termination date must be after effective date");
    if (rules.generation == DateGeneration::IMM) return ImmDatesBetween(effective, termination);
    ZEP_REQUIRE(rules.tenor.Length() > 0, "Schedule: tenor must be positive");
    const bool backward = rules.generation == DateGeneration::Backward;
    const Date anchor = backward ? termination : effective;
    const bool toMonthEnd = rules.endOfMonth && MonthBased(rules.tenor) && IsMonthEnd(anchor);
    // A bound on the number of periods: a daily tenor over the longest trade is still far below.
    const std::int32_t maxPeriods = termination.SerialNumber() - effective.SerialNumber() + 1;
    const Date last = backward ? effective : termination;
    // Generated away from the anchor into one vector, which ends up in calendar order.
    std::vector<Date> dates;
    dates.reserve(static_cast<std::size_t>(maxPeriods) < 512 ? maxPeriods + 1 : 512);
    dates.push_back(anchor);
    for (std::int32_t k = 1; k <= maxPeriods; ++k) {
        Date date = anchor.Advance((backward ? -k : k) * rules.tenor.Length(), rules.tenor.Units());
        if (toMonthEnd) date = MonthEnd(date);
        if (backward ? date <= effective : date >= termination) break;
        dates.push_back(date);
    }
    // The odd period, if any, sits next to `last`; a long stub takes in the regular period next
    // to it.
    const std::size_t innerCount = dates.size() - 1;
    const Date regularFromStart = (backward ? effective : dates.back()).Advance(rules.tenor.Length(), rules.tenor.Units());
    const bool odd = innerCount > 0 && regularFromStart != (backward ? dates.back() : termination);
    if (rules.stub == StubKind::Long && odd) dates.pop_back();
    dates.push_back(last);
    if (backward) std::reverse(dates.begin(), dates.end());
    return dates;
}

Schedule::Schedule(const Date& effective, const Date& termination, const ScheduleRules& rules, const Calendar& calendar)
    : m_rules(rules) {
    const std::vector<Date> dates = UnadjustedDates(effective, termination, rules);
    const BusinessDays businessDays = calendar.BusinessDaysOf(rules.centres);
    m_periods.resize(dates.size() - 1);
    Date accrualStart = businessDays.Adjust(dates.front(), rules.accrualAdjustment);
    for (std::size_t i = 0; i + 1 < dates.size(); ++i) {
        SchedulePeriod& period = m_periods[i];
        period.unadjustedStart = dates[i];
        period.unadjustedEnd = dates[i + 1];
        period.accrualStart = accrualStart;
        period.accrualEnd = businessDays.Adjust(dates[i + 1], rules.accrualAdjustment);
        const Date paymentRolled = businessDays.Adjust(period.accrualEnd, rules.paymentAdjustment);
        period.payment = rules.paymentLagDays == 0
                             ? paymentRolled
                             : AdvanceBusinessDays(businessDays, paymentRolled, rules.paymentLagDays, rules.centres);
        period.fixing = AdvanceBusinessDays(businessDays, period.accrualStart, -rules.fixingLagDays, rules.centres);
        period.accrualFraction = rules.dayCounter.YearFraction(period.accrualStart, period.accrualEnd);
        accrualStart = period.accrualEnd;
    }
}

}  // namespace zep
