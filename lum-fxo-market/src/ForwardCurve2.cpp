#include "lum-fxo-market/ForwardCurve2.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"

namespace zep {

ForwardCurve2::ForwardCurve2(const Date& referenceDate, double spot,
                             const std::vector<Date>& expiryDates,
                             const std::vector<double>& underlyingRates)
    : m_referenceDate(referenceDate), m_spot(spot), m_expiryDates(expiryDates), m_rates(underlyingRates) {
    ZEP_REQUIRE(!expiryDates.empty() || !underlyingRates.empty(), "no input expiry and underlying rates");
    ZEP_REQUIRE(expiryDates.size() == underlyingRates.size(), "expiry dates size not same with unerlying rates!");
    ZEP_REQUIRE(spot > 0.0 && std::isfinite(spot), "Spot must be positive, got " + std::to_string(spot) + ".");
    for (std::size_t i = 0; i < expiryDates.size(); ++i) {
        ZEP_REQUIRE(referenceDate < expiryDates[i], "reference date must before expiry dates!");
        ZEP_REQUIRE(i == 0 || expiryDates[i - 1] < expiryDates[i],
                    "Expiries must be strictly increasing: '" + expiryDates[i].ToString() +
                        "' does not come after '" + expiryDates[i - 1].ToString() + "'.");
        ZEP_REQUIRE(std::isfinite(underlyingRates[i]),
                    "Underlying rate of expiry '" + expiryDates[i].ToString() + "' is not a number.");
        m_times.push_back(m_dayCounter.YearFraction(referenceDate, expiryDates[i]));
    }
}

double ForwardCurve2::TimeToExpiry(const Date& date) const {
    return m_dayCounter.YearFraction(m_referenceDate, date);
}

double ForwardCurve2::Rate(double time) const {
    const auto after = std::upper_bound(m_times.begin(), m_times.end(), time);
    if (after == m_times.begin()) return m_rates.front();
    if (after == m_times.end()) return m_rates.back();
    const std::size_t i = static_cast<std::size_t>(after - m_times.begin()) - 1;
    const double weight = (time - m_times[i]) / (m_times[i + 1] - m_times[i]);
    return m_rates[i] + weight * (m_rates[i + 1] - m_rates[i]);
}

double ForwardCurve2::Forward(double time) const { return m_spot * std::exp(Rate(time) * time); }

}  // namespace zep
