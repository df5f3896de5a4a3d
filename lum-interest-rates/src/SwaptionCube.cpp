#include "lum-interest-rates/SwaptionCube.hpp"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

void RequireRisingAxis(const std::vector<double>& axis, const char* name, const char* plural) {
    ZEP_REQUIRE(!axis.empty(), std::string("the cube needs at least one ") + name);
    for (std::size_t i = 0; i < axis.size(); ++i) {
        ZEP_REQUIRE(std::isfinite(axis[i]) && axis[i] > 0.0, std::string("every ") + name + " must be positive");
        ZEP_REQUIRE(i == 0 || axis[i] > axis[i - 1], std::string("the ") + plural + " must rise");
    }
}

std::string SliceName(double expiry, double tenor) {
    std::ostringstream text;
    text << "the slice " << expiry << "y into " << tenor << "y";
    return text.str();
}

// The bracketing pillars of `x` on a rising axis and the weight of the upper one; flat outside.
struct Bracket {
    std::size_t low, high;
    double weight;
};

Bracket BracketOf(const std::vector<double>& axis, double x) {
    if (x <= axis.front()) return {0, 0, 0.0};
    if (x >= axis.back()) return {axis.size() - 1, axis.size() - 1, 0.0};
    const auto high = static_cast<std::size_t>(std::upper_bound(axis.begin(), axis.end(), x) - axis.begin());
    return {high - 1, high, (x - axis[high - 1]) / (axis[high] - axis[high - 1])};
}

}  // namespace

SwaptionCube::SwaptionCube(const std::vector<double>& expiries, const std::vector<double>& tenors,
                           const std::vector<double>& strikeSpreads, const std::vector<double>& forwards,
                           const std::vector<double>& volatilities, double beta, RateVolatilityModel model,
                           double shift) {
    RequireRisingAxis(expiries, "expiry", "expiries");
    RequireRisingAxis(tenors, "tenor", "tenors");
    ZEP_REQUIRE(strikeSpreads.size() >= 3, "every slice needs at least three strike spreads");
    for (double spread : strikeSpreads) ZEP_REQUIRE(std::isfinite(spread), "every strike spread must be finite");
    const std::size_t slices = expiries.size() * tenors.size();
    ZEP_REQUIRE(forwards.size() == slices, "one forward per expiry and tenor: " + std::to_string(slices) +
                                               " expected, " + std::to_string(forwards.size()) + " given");
    ZEP_REQUIRE(volatilities.size() == slices * strikeSpreads.size(),
                "one volatility per expiry, tenor and strike spread: " +
                    std::to_string(slices * strikeSpreads.size()) + " expected, " +
                    std::to_string(volatilities.size()) + " given");
    std::vector<SwaptionSmile> smiles;
    smiles.reserve(slices);
    std::vector<double> strikes(strikeSpreads.size());
    for (std::size_t e = 0; e < expiries.size(); ++e)
        for (std::size_t t = 0; t < tenors.size(); ++t) {
            const std::size_t slice = e * tenors.size() + t;
            for (std::size_t s = 0; s < strikes.size(); ++s) strikes[s] = forwards[slice] + strikeSpreads[s];
            const auto first = volatilities.begin() + static_cast<std::ptrdiff_t>(slice * strikes.size());
            try {
                smiles.emplace_back(forwards[slice], expiries[e], strikes,
                                    std::vector<double>(first, first + static_cast<std::ptrdiff_t>(strikes.size())),
                                    beta, model, shift);
            } catch (const Error& failure) {
                ZEP_FAIL(SliceName(expiries[e], tenors[t]) + ": " + failure.Message());
            }
        }
    m_expiries = expiries;
    m_tenors = tenors;
    m_smiles = std::move(smiles);
}

double SwaptionCube::Volatility(double expiry, double tenor, double forward, double strike) const {
    ZEP_REQUIRE(std::isfinite(expiry) && std::isfinite(tenor) && std::isfinite(forward) && std::isfinite(strike),
                "the expiry, tenor, forward and strike must be finite");
    const Bracket byExpiry = BracketOf(m_expiries, expiry);
    const Bracket byTenor = BracketOf(m_tenors, tenor);
    // Each neighbouring smile is read at the same distance from its own forward as the strike
    // from this swaption's: the smile moves with the forward (sticky moneyness).
    const double spread = strike - forward;
    const auto at = [&](std::size_t e, std::size_t t) {
        const SwaptionSmile& smile = m_smiles[e * m_tenors.size() + t];
        return smile.Volatility(smile.Forward() + spread);
    };
    const auto alongTenor = [&](std::size_t e) {
        const double low = at(e, byTenor.low);
        return byTenor.weight == 0.0 ? low : low + byTenor.weight * (at(e, byTenor.high) - low);
    };
    try {
        const double low = alongTenor(byExpiry.low);
        return byExpiry.weight == 0.0 ? low : low + byExpiry.weight * (alongTenor(byExpiry.high) - low);
    } catch (const Error& failure) {
        // The neighbouring slice read at the same spread names its own strike: say which one.
        ZEP_FAIL("the strike " + std::to_string(strike) + " is " + std::to_string(spread) +
                 " from the forward; a neighbouring slice at that spread fails: " + failure.Message());
    }
}

const SwaptionSmile& SwaptionCube::Smile(std::size_t expiryIndex, std::size_t tenorIndex) const {
    ZEP_REQUIRE(expiryIndex < m_expiries.size() && tenorIndex < m_tenors.size(),
                "the slice (" + std::to_string(expiryIndex) + ", " + std::to_string(tenorIndex) +
                    ") is outside the cube");
    return m_smiles[expiryIndex * m_tenors.size() + tenorIndex];
}

double SwaptionCube::FitError() const {
    double worst = 0.0;
    for (const SwaptionSmile& smile : m_smiles) worst = std::max(worst, smile.FitError());
    return worst;
}

}  // namespace zep
