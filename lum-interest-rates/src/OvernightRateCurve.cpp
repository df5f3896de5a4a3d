#include "lum-interest-rates/OvernightRateCurve.hpp"

#include "lum-auxiliary/Error.hpp"

namespace zep {

OvernightRateCurve::OvernightRateCurve(boost::shared_ptr<const YieldCurve> curve, std::string centres,
                                       const DayCounter& dayCounter)
    : m_curve(std::move(curve)), m_centres(std::move(centres)), m_dayCounter(dayCounter) {
    ZEP_REQUIRE(m_curve, "OvernightRateCurve: no curve");
}

double OvernightRateCurve::OvernightRate(const Date& date, const Calendar& calendar) const {
    const BusinessDays businessDays = calendar.BusinessDaysOf(m_centres);
    ZEP_REQUIRE(businessDays.IsBusinessDay(date),
                "OvernightRateCurve: " + date.ToString() + " is not a business day on \"" + m_centres + "\"");
    return CompoundedRate(date, businessDays.Adjust(date + 1, Following));
}

double OvernightRateCurve::CompoundedRate(const Date& start, const Date& end) const {
    ZEP_REQUIRE(end > start, "OvernightRateCurve: the period must end after it starts");
    return (m_curve->DiscountFactor(start) / m_curve->DiscountFactor(end) - 1.0) / m_dayCounter.YearFraction(start, end);
}

}  // namespace zep
