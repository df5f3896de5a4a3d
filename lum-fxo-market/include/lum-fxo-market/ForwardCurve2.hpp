// The forward of an underlying quoted by expiry through its carry: one continuously compounded
// underlying rate per expiry date, F(t) = S exp(r(t) t), the rate linear in time between
// expiries and flat beyond them.
#pragma once

#include <vector>

#include "lum-time/Date.hpp"
#include "lum-time/DayCounter.hpp"

namespace zep {

class ForwardCurve2 {
public:
    ForwardCurve2(const Date& referenceDate, double spot, const std::vector<Date>& expiryDates,
                  const std::vector<double>& underlyingRates);

    double Rate(double time) const;
    double Forward(double time) const;
    double TimeToExpiry(const Date& date) const;
    const Date& ReferenceDate() const { return m_referenceDate; }
    double Spot() const { return m_spot; }
    const std::vector<Date>& ExpiryDates() const { return m_expiryDates; }
    const std::vector<double>& UnderlyingRates() const { return m_rates; }

private:
    Date m_referenceDate;
    double m_spot;
    DayCounter m_dayCounter{Act365Fixed};
    std::vector<Date> m_expiryDates;
    std::vector<double> m_times;
    std::vector<double> m_rates;
};

}  // namespace zep
