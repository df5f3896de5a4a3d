// Overnight rates read off a discount curve (an OIS-bootstrapped curve): the rate fixed for a
// business day is the simple forward to the next business day on the centres, by the overnight
// index's day count; compounding the overnight rates of a period gives back DF(start) / DF(end).
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-time/Calendar.hpp"

namespace zep {

class OvernightRateCurve {
public:
    OvernightRateCurve(boost::shared_ptr<const YieldCurve> curve, std::string centres = "TARGET",
                       const DayCounter& dayCounter = DayCounter(zep::Act360));

    // The overnight rate fixed on a business day, from it to the next business day.
    double OvernightRate(const Date& date, const Calendar& calendar) const;
    // The simple rate that compounding every overnight rate from start to end amounts to.
    double CompoundedRate(const Date& start, const Date& end) const;

private:
    boost::shared_ptr<const YieldCurve> m_curve;
    std::string m_centres;
    DayCounter m_dayCounter;
};

}  // namespace zep
