#include "lum-fxo-market/VolSurface2.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"

namespace zep {

VolSurface2::VolSurface2(const std::vector<Date>& expiryDates,
                         const std::vector<std::vector<int>>& optionTypes,
                         const std::vector<std::vector<double>>& strikes,
                         const std::vector<std::vector<double>>& quotes, int quoteKind,
                         boost::shared_ptr<const ForwardCurve2> forwards, double discountRate,
                         int interpolation)
    : m_forwards(std::move(forwards)) {
    ZEP_REQUIRE(interpolation == StrikeInterpolation, "support strike interp only!");
    ZEP_REQUIRE(m_forwards, "ForwardCurve2 is Null!");
    ZEP_REQUIRE(expiryDates.size() == optionTypes.size(), "Expiry Dates size not same with OptionTypes!");
    ZEP_REQUIRE(expiryDates.size() == strikes.size(), "Expiry Dates size not same with Strikes!");
    ZEP_REQUIRE(expiryDates.size() == quotes.size(), "Strikes/Volatilities not same size!");
    ZEP_REQUIRE(!expiryDates.empty(), "Check input data size!");
    ZEP_REQUIRE(quoteKind == ImpliedVolatilities || quoteKind == Premiums,
                "Quote kind must be 0 (implied volatilities) or 1 (premiums).");
    for (std::size_t i = 0; i < expiryDates.size(); ++i) {
        std::string expiryText = expiryDates[i].ToString();
        expiryText.insert(expiryText.begin(), '\'');
        expiryText.push_back('\'');
        ZEP_REQUIRE(strikes[i].size() == quotes[i].size() && strikes[i].size() == optionTypes[i].size() &&
                        !strikes[i].empty(),
                    "Strikes/Volatilities not same size!");
        Expiry expiry;
        expiry.time = m_forwards->TimeToExpiry(expiryDates[i]);
        ZEP_REQUIRE(expiry.time > 0.0, "reference date must before expiry dates!");
        ZEP_REQUIRE(i == 0 || expiry.time > m_times.back(),
                    "Expiries must be strictly increasing at " + expiryText + ".");
        expiry.forward = m_forwards->Forward(expiry.time);
        std::vector<std::size_t> order(strikes[i].size());
        std::iota(order.begin(), order.end(), 0);
        std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return strikes[i][a] < strikes[i][b]; });
        for (std::size_t k : order) {
            const double strike = strikes[i][k], quote = quotes[i][k];
            ZEP_REQUIRE(strike > 0.0 && std::isfinite(strike),
                        "Strike of expiry " + expiryText + " must be positive, got " + std::to_string(strike) + ".");
            ZEP_REQUIRE(optionTypes[i][k] == BSVanilla::Call || optionTypes[i][k] == BSVanilla::Put,
                        "Option type of expiry " + expiryText + " must be 0 (call) or 1 (put).");
            ZEP_REQUIRE(quote > 0.0 && std::isfinite(quote),
                        "Quote of expiry " + expiryText + " must be positive, got " + std::to_string(quote) + ".");
            ZEP_REQUIRE(expiry.strikes.empty() || strike > expiry.strikes.back(),
                        "Strikes of expiry " + expiryText + " must differ.");
            // A premium paid at expiry is the forward premium discounted once: undo that and
            // invert the undiscounted Black formula.
            const double vol = quoteKind == ImpliedVolatilities
                                   ? quote
                                   : BSVanilla::VolImpliedFromForwardPrice(
                                         optionTypes[i][k], strike, expiry.forward, expiry.time,
                                         quote * std::exp(discountRate * expiry.time));
            expiry.strikes.push_back(strike);
            expiry.vols.push_back(vol);
        }
        expiry.smile = Interpolation<double, double, double>(expiry.strikes, expiry.vols,
                                                             LinearInterpolation, FlatExtrapolation);
        m_times.push_back(expiry.time);
        m_expiries.push_back(std::move(expiry));
    }
}

double VolSurface2::Variance(const Expiry& expiry, double logMoneyness) const {
    const double vol = expiry.smile.Evaluate(expiry.forward * std::exp(logMoneyness));
    return vol * vol * expiry.time;
}

double VolSurface2::GetVolatility(const Date& expiry, double strike) const {
    return GetVolatility(m_forwards->TimeToExpiry(expiry), strike);
}

double VolSurface2::GetVolatility(double timeToExpiry, double strike) const {
    ZEP_REQUIRE(strike > 0.0 && std::isfinite(strike), "Strike must be positive, got " + std::to_string(strike) + ".");
    const auto after = std::upper_bound(m_times.begin(), m_times.end(), timeToExpiry);
    if (after == m_times.begin() || after == m_times.end()) {
        const Expiry& end = after == m_times.begin() ? m_expiries.front() : m_expiries.back();
        return end.smile.Evaluate(end.forward * std::exp(std::log(strike / m_forwards->Forward(timeToExpiry))));
    }
    const Expiry& left = m_expiries[after - m_times.begin() - 1];
    const Expiry& right = m_expiries[after - m_times.begin()];
    if (timeToExpiry == left.time) return left.smile.Evaluate(strike);
    const double logMoneyness = std::log(strike / m_forwards->Forward(timeToExpiry));
    const double weight = (timeToExpiry - left.time) / (right.time - left.time);
    const double leftVariance = Variance(left, logMoneyness);
    return std::sqrt((leftVariance + weight * (Variance(right, logMoneyness) - leftVariance)) / timeToExpiry);
}

const std::vector<double>& VolSurface2::ExpiryVolatilities(std::size_t expiry) const {
    ZEP_REQUIRE(expiry < m_expiries.size(), "Expiry index out of range.");
    return m_expiries[expiry].vols;
}

const std::vector<double>& VolSurface2::ExpiryStrikes(std::size_t expiry) const {
    ZEP_REQUIRE(expiry < m_expiries.size(), "Expiry index out of range.");
    return m_expiries[expiry].strikes;
}

}  // namespace zep
