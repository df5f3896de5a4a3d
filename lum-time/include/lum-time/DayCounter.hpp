// A day count convention: how many days lie between two dates and what fraction of a year they
// make. A small value type holding one convention code, and for Act252 the holiday calendar whose
// business days it counts; copied freely, copies sharing that read-only calendar.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-time/Date.hpp"
#include "lum-time/Frequency.hpp"

namespace zep {

class Calendar;

enum DayCountConvention : std::int32_t {
    NoConvention = -1,
    Act360 = 0,
    Act365Fixed = 1,
    Thirty360 = 2,
    ThirtyE360ISDA = 3,
    ThirtyEPlus360 = 4,
    ThirtyU360 = 5,
    ActActISDA = 6,
    ActActICMA = 7,
    Act365L = 8,
    ActActAFB = 9,
    Act365Leap = 10,
    ActActXTR = 11,
    ActActICMAComplement = 12,
    Act252 = 13,
    Act360Inclusive = 14,
    Act365Inclusive = 15,
};

class DayCounter {
public:
    DayCounter() = default;
    // Any code is accepted here; an unknown one fails when it is used.
    explicit DayCounter(std::int32_t convention) : m_convention(convention) {}
    // Any spelling that stringToConvention accepts.
    explicit DayCounter(const std::string& text);
    // Act252 counts the business days of centre "SYB" on `calendar`; the other conventions ignore
    // it. Without a calendar (or with a null one) Act252 uses Calendar::Shared().
    DayCounter(std::int32_t convention, boost::shared_ptr<const Calendar> calendar);
    DayCounter(const std::string& text, boost::shared_ptr<const Calendar> calendar);

    std::int32_t Convention() const { return m_convention; }
    // The calendar given at construction; null when Act252 counts on Calendar::Shared().
    const boost::shared_ptr<const Calendar>& GetCalendar() const { return m_calendar; }
    // The canonical name: "Act360", "ActActISDA", ...
    std::string ToString() const;

    // Signed day count; start after end gives minus the count from end to start.
    std::int32_t DayCount(const Date& start, const Date& end) const;
    // The ICMA-family and Act365L conventions need the next coupon date and the coupon
    // frequency; the others ignore them.
    double YearFraction(const Date& start, const Date& end, const Date& nextCouponDate = Date(),
                        Frequency frequency = NoFrequency) const;
    // Element by element over two equally long sequences.
    std::vector<double> YearFraction(const std::vector<Date>& starts, const std::vector<Date>& ends,
                                     const Date& nextCouponDate = Date(),
                                     Frequency frequency = NoFrequency) const;

    friend bool operator==(const DayCounter& a, const DayCounter& b) {
        return a.m_convention == b.m_convention;
    }

private:
    double OrderedYearFraction(const Date& start, const Date& end, const Date& nextCouponDate,
                               Frequency frequency) const;
    static double ActActICMAYearFraction(const Date& start, const Date& end,
                                         const Date& nextCouponDate, Frequency frequency);
    static double Act365LYearFraction(const Date& start, const Date& end,
                                      const Date& nextCouponDate, Frequency frequency);

    std::int32_t m_convention = ActActISDA;
    // Null stands for Calendar::Shared(), looked up only when Act252 counts, so that day counters
    // of other conventions never need a holiday file.
    boost::shared_ptr<const Calendar> m_calendar;
};

// Text to convention code, case-insensitive; also accepts the code written in decimal.
std::int32_t stringToConvention(const std::string& text);

}  // namespace zep
