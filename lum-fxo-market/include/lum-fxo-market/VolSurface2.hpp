// A strike-quoted volatility surface: per expiry a few options (call or put, strike) with their
// premiums or implied volatilities, and a forward curve. Premiums become implied volatilities
// through the vanilla solvers; the smile is linear in strike, total variance linear in time.
#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-auxiliary/Interpolation.hpp"
#include "lum-closed-form/VolatilitySource.hpp"
#include "lum-fxo-market/ForwardCurve2.hpp"

namespace zep {

class VolSurface2 : public VolatilitySource {
public:
    enum QuoteKind : int { ImpliedVolatilities = 0, Premiums = 1 };
    // Only interpolation in strike (code 0) is offered ("support strike interp only!").
    static constexpr int StrikeInterpolation = 0;

    // Premiums are paid on the expiry date and discounted to the reference date at the
    // continuously compounded discountRate.
    VolSurface2(const std::vector<Date>& expiryDates, const std::vector<std::vector<int>>& optionTypes,
                const std::vector<std::vector<double>>& strikes,
                const std::vector<std::vector<double>>& quotes, int quoteKind,
                boost::shared_ptr<const ForwardCurve2> forwards, double discountRate = 0.0,
                int interpolation = StrikeInterpolation);

    double GetVolatility(double timeToExpiry, double strike) const;
    double GetVolatility(const Date& expiry, double strike) const;
    double Volatility(double strike, double timeToExpiry) const override {
        return GetVolatility(timeToExpiry, strike);
    }
    // The implied volatilities of one expiry, in ascending strike order, with their strikes.
    const std::vector<double>& ExpiryVolatilities(std::size_t expiry) const;
    const std::vector<double>& ExpiryStrikes(std::size_t expiry) const;

private:
    struct Expiry {
        double time;
        double forward;
        std::vector<double> strikes, vols;
        Interpolation<double, double, double> smile;
    };
    double Variance(const Expiry& expiry, double logMoneyness) const;

    boost::shared_ptr<const ForwardCurve2> m_forwards;
    std::vector<Expiry> m_expiries;
    std::vector<double> m_times;
};

}  // namespace zep
