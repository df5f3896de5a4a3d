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

}  // namespace

Date ImmDate(std::int32_t month, std::int32_t year) {
    const Date first(1, month, year);
    // Weekday(): 1 Sunday, 2 Monday, ... 4 Wednesday, ... 7 Saturday.
    const std::int32_t toWednesday = (4 - first.Weekday() + 7) % 7;
    return first + (toWednesday + 14);
}

Date AdvanceBusinessDays(const Calendar& calendar, const Date& date, std::int32_t days, const std::string& centres) {
    Date result = date;
    const std::int32_t direction = days >= 0 ? 1 : -1;
    for (std::int32_t moved = 0, looked = 0; moved != days;) {
        result = result + direction;
        if (++looked > 366 + 2 * std::abs(days))
            ZEP_FAIL("Schedule: no business day within a year on the centres \"" + centres + "\"");
        if (calendar.IsBusinessDay(result, centres)) moved += direction;
    }
    return result;
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
    std::vector<Date> inner;
    for (std::int32_t k = 1; k <= maxPeriods; ++k) {
        Date date = anchor + Period((backward ? -k : k) * rules.tenor.Length(), rules.tenor.Units());
        if (toMonthEnd) date = MonthEnd(date);
        if (backward ? date <= effective : date >= termination) break;
        inner.push_back(date);
    }
    if (backward) std::reverse(inner.begin(), inner.end());
    // The odd period, if any, sits at the front (backward) or at the back (forward); a long stub
    // takes in the regular period next to it.
    const bool odd = backward ? !inner.empty() && effective + Period(rules.tenor.Length(), rules.tenor.Units()) != inner.front()
                              : !inner.empty() && inner.back() + Period(rules.tenor.Length(), rules.tenor.Units()) != termination;
    if (rules.stub == StubKind::Long && odd && !inner.empty()) {
        if (backward)
            inner.erase(inner.begin());
        else
            inner.pop_back();
    }
    std::vector<Date> dates{effective};
    dates.insert(dates.end(), inner.begin(), inner.end());
    dates.push_back(termination);
    return dates;
}

Schedule::Schedule(const Date& effective, const Date& termination, const ScheduleRules& rules, const Calendar& calendar)
    : m_rules(rules) {
    const std::vector<Date> dates = UnadjustedDates(effective, termination, rules);
    std::vector<SchedulePeriod> periods;
    periods.reserve(dates.size() - 1);
    for (std::size_t i = 0; i + 1 < dates.size(); ++i) {
        SchedulePeriod period;
        period.unadjustedStart = dates[i];
        period.unadjustedEnd = dates[i + 1];
        period.accrualStart = calendar.Adjust(dates[i], rules.accrualAdjustment, rules.centres);
        period.accrualEnd = calendar.Adjust(dates[i + 1], rules.accrualAdjustment, rules.centres);
        const Date paymentRolled = calendar.Adjust(period.accrualEnd, rules.paymentAdjustment, rules.centres);
        period.payment = rules.paymentLagDays == 0
                             ? paymentRolled
                             : AdvanceBusinessDays(calendar, paymentRolled, rules.paymentLagDays, rules.centres);
        period.fixing = AdvanceBusinessDays(calendar, period.accrualStart, -rules.fixingLagDays, rules.centres);
        period.accrualFraction = rules.dayCounter.YearFraction(period.accrualStart, period.accrualEnd);
        periods.push_back(period);
    }
    m_periods = std::move(periods);
}

}  // namespace zep
