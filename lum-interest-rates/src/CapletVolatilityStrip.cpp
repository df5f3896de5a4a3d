#include "lum-interest-rates/CapletVolatilityStrip.hpp"

#include <algorithm>
#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

double ValueOfCaplet(const CapletValue& caplet, bool isCall, double strike, const RateVolatility& volatility) {
    return caplet.annuity * ForwardOptionValue(isCall, caplet.forward, strike, caplet.expiry, volatility);
}

// Cap `index`'s caplets must be the first ones of the longest cap's, and more than the previous cap's.
void RequireNested(const std::vector<CapletValue>& caplets, const std::vector<CapletValue>& longest,
                   std::size_t previousCount, std::size_t index) {
    const std::string cap = "cap " + std::to_string(index);
    ZEP_REQUIRE(caplets.size() > previousCount,
                cap + " must end after the previous cap: the caps must be given by rising maturity");
    ZEP_REQUIRE(caplets.size() <= longest.size(),
                cap + " has more caplets than the last cap: the caps must be given by rising maturity");
    for (std::size_t j = 0; j < caplets.size(); ++j)
        ZEP_REQUIRE(caplets[j].fixing == longest[j].fixing && caplets[j].payment == longest[j].payment,
                    cap + "'s caplet " + std::to_string(j) +
                        " is not the longest cap's: the caps must share one schedule");
}

}  // namespace

CapletVolatilityStrip::CapletVolatilityStrip(const std::vector<CapFloor>& caps,
                                             const std::vector<double>& flatVolatilities, const YieldCurve& discount,
                                             const YieldCurve& projection, RateVolatilityModel model, double shift)
    : m_model(model), m_shift(shift) {
    ZEP_REQUIRE(!caps.empty(), "the strip needs at least one cap quote");
    ZEP_REQUIRE(caps.size() == flatVolatilities.size(), "one flat volatility per cap");
    const CapFloor& longestCap = caps.back();
    const bool isCall = longestCap.Kind() == CapFloorKind::Cap;
    const double strike = longestCap.Strike();
    const std::vector<CapletValue> longest = longestCap.Caplets(discount, projection, {model, 0.0, shift});
    std::vector<double> volatilities(longest.size(), 0.0);
    std::size_t stripped = 0;  // caplets whose volatility is known
    double strippedValue = 0.0;
    for (std::size_t i = 0; i < caps.size(); ++i) {
        ZEP_REQUIRE(caps[i].Kind() == longestCap.Kind() && caps[i].Strike() == strike,
                    "cap " + std::to_string(i) + " must be of the same kind and strike as the others");
        const RateVolatility flat{model, flatVolatilities[i], shift};
        const std::vector<CapletValue> caplets = caps[i].Caplets(discount, projection, flat);
        RequireNested(caplets, longest, stripped, i);
        double target = 0.0;
        for (const CapletValue& caplet : caplets) target += caplet.value;
        const std::string what = "cap " + std::to_string(i) + " (caplets to " + caplets.back().payment.ToString() + ")";
        const auto valueAt = [&](double sigma) {
            double value = strippedValue;
            for (std::size_t j = stripped; j < caplets.size(); ++j)
                value += ValueOfCaplet(longest[j], isCall, strike, {model, sigma, shift});
            return value;
        };
        const double sigma = SolveImpliedVolatility(valueAt, target, model, what.c_str());
        for (std::size_t j = stripped; j < caplets.size(); ++j) {
            volatilities[j] = sigma;
            strippedValue += ValueOfCaplet(longest[j], isCall, strike, {model, sigma, shift});
        }
        stripped = caplets.size();
    }
    std::vector<double> expiries;
    for (const CapletValue& caplet : longest) expiries.push_back(caplet.expiry);
    m_expiries = std::move(expiries);
    m_volatilities = std::move(volatilities);
}

double CapletVolatilityStrip::Volatility(double expiry) const {
    ZEP_REQUIRE(std::isfinite(expiry), "the expiry must be finite");
    const auto first = std::lower_bound(m_expiries.begin(), m_expiries.end(), expiry);
    if (first == m_expiries.end()) return m_volatilities.back();
    return m_volatilities[static_cast<std::size_t>(first - m_expiries.begin())];
}

double CapletVolatilityStrip::CapPV(const CapFloor& cap, const YieldCurve& discount,
                                    const YieldCurve& projection) const {
    const bool isCall = cap.Kind() == CapFloorKind::Cap;
    double pv = 0.0;
    for (const CapletValue& caplet : cap.Caplets(discount, projection, {m_model, 0.0, m_shift}))
        pv += ValueOfCaplet(caplet, isCall, cap.Strike(), {m_model, Volatility(caplet.expiry), m_shift});
    return pv;
}

}  // namespace zep
