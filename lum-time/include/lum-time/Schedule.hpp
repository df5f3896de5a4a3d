// The coupon schedule of a leg: accrual periods from an effective to a termination date, with
// their payment and fixing dates and day count fractions. The rules, in the order they apply:
//
// 1. Unadjusted dates. Backward generation (the market default for swaps) steps from the
//    termination date back by whole tenors, termination - k * tenor, so that an odd period falls
//    at the front; forward generation steps from the effective date, effective + k * tenor, and
//    leaves it at the back. Each date is computed from the anchor, not from the previous date,
//    so month-end clamping never drifts (31 Jan - 1M = 29 Feb, 31 Jan - 2M = 30 Nov... from the
//    anchor each time). IMM generation takes the IMM dates (third Wednesday of March, June,
//    September and December) strictly between the two dates.
// 2. Stubs. An odd period shorter than the tenor is a short stub; with StubKind::Long it is
//    merged into its neighbour, making one period longer than the tenor. A period that the
//    generation would make empty (a date equal to the effective or termination date) is dropped.
// 3. End of month. For tenors in months or years with endOfMonth set, when the anchor (the
//    termination date backward, the effective date forward) is the last day of its month,
//    every generated date moves to the last day of its month.
// 4. Adjustment. Accrual dates roll by the accrual rule on the calendar's centres; payment dates
//    are the adjusted accrual ends rolled by the payment rule, then moved paymentLagDays business
//    days later; fixing dates are fixingLagDays business days before the adjusted accrual start.
// 5. Fractions. Each period's year fraction by the day counter over its adjusted accrual dates.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lum-time/Calendar.hpp"
#include "lum-time/Date.hpp"
#include "lum-time/DayCounter.hpp"
#include "lum-time/Period.hpp"

namespace zep {

enum class DateGeneration : std::int32_t { Backward = 0, Forward = 1, IMM = 2 };
enum class StubKind : std::int32_t { Short = 0, Long = 1 };

struct ScheduleRules {
    Period tenor = Period(6, Months);
    std::string centres;  // empty: weekends only
    std::int32_t accrualAdjustment = ModifiedFollowing;
    std::int32_t paymentAdjustment = ModifiedFollowing;
    bool endOfMonth = false;
    DateGeneration generation = DateGeneration::Backward;
    StubKind stub = StubKind::Short;
    std::int32_t fixingLagDays = 2;
    std::int32_t paymentLagDays = 0;
    DayCounter dayCounter = DayCounter(Act360);
};

struct SchedulePeriod {
    Date unadjustedStart, unadjustedEnd;
    Date accrualStart, accrualEnd;
    Date payment;
    Date fixing;
    double accrualFraction = 0.0;
};

class Schedule {
public:
    Schedule(const Date& effective, const Date& termination, const ScheduleRules& rules, const Calendar& calendar);

    const std::vector<SchedulePeriod>& Periods() const { return m_periods; }
    std::size_t Size() const { return m_periods.size(); }
    const ScheduleRules& Rules() const { return m_rules; }

    // The unadjusted dates from effective to termination, both included.
    static std::vector<Date> UnadjustedDates(const Date& effective, const Date& termination, const ScheduleRules& rules);

private:
    ScheduleRules m_rules;
    std::vector<SchedulePeriod> m_periods;
};

// `days` business days after (positive) or before (negative) a date on the centres; fails after a
// year of holidays rather than search forever.
Date AdvanceBusinessDays(const Calendar& calendar, const Date& date, std::int32_t days, const std::string& centres);

// The third Wednesday of the month.
Date ImmDate(std::int32_t month, std::int32_t year);

}  // namespace zep
