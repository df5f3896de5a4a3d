#include "lum-fxo-market/SabrSmile.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/LevenbergMarquardt.hpp"

namespace zep {

SabrSmile::SabrSmile(const std::vector<double>& parameters) {
    ZEP_REQUIRE(parameters.size() == 4, "Invalid params size in SABR interpolation.");
    m_alpha = parameters[0];
    m_beta = parameters[1];
    m_rho = parameters[2];
    m_nu = parameters[3];
}

double SabrSmile::Volatility(double strike, double forward, double timeToExpiry) const {
    const double oneMinusBeta = 1.0 - m_beta;
    const double logMoneyness = std::log(forward / strike);
    const double geometric = std::pow(forward * strike, 0.5 * oneMinusBeta);
    const double logSquared = logMoneyness * logMoneyness;
    const double denominator =
        geometric * (1.0 + oneMinusBeta * oneMinusBeta / 24.0 * logSquared +
                     std::pow(oneMinusBeta, 4) / 1920.0 * logSquared * logSquared);
    const double z = m_nu / m_alpha * geometric * logMoneyness;
    // z / x(z) tends to 1 - rho z / 2 at the money, where the closed form is 0 / 0.
    double zOverX;
    if (std::fabs(z) < 1e-7) {
        zOverX = 1.0 - 0.5 * m_rho * z;
    } else {
        const double x = std::log((std::sqrt(1.0 - 2.0 * m_rho * z + z * z) + z - m_rho) / (1.0 - m_rho));
        zOverX = z / x;
    }
    const double correction =
        1.0 + (oneMinusBeta * oneMinusBeta / 24.0 * m_alpha * m_alpha / (geometric * geometric) +
               0.25 * m_rho * m_beta * m_nu * m_alpha / geometric +
               (2.0 - 3.0 * m_rho * m_rho) / 24.0 * m_nu * m_nu) *
                  timeToExpiry;
    return m_alpha / denominator * zOverX * correction;
}

SabrSmile SabrSmile::Fit(const std::vector<double>& strikes, const std::vector<double>& volatilities,
                         double forward, double timeToExpiry, const std::vector<double>& initialGuess) {
    ZEP_REQUIRE(initialGuess.empty() || initialGuess.size() == 4,
                "Invalid params size in SABR interpolation.");
    ZEP_REQUIRE(!strikes.empty() && strikes.size() == volatilities.size(),
                "Invalid params size in SABR interpolation.");
    const double beta = initialGuess.empty() ? 1.0 : initialGuess[1];
    // Start: the smile's lowest volatility as alpha (scaled to the beta), no skew, a moderate nu.
    const double level = *std::min_element(volatilities.begin(), volatilities.end());
    std::array<double, 3> start{std::log(level * std::pow(forward, 1.0 - beta)), 0.0, std::log(0.5)};
    if (!initialGuess.empty())
        start = {std::log(initialGuess[0]), std::atanh(std::clamp(initialGuess[2], -0.999, 0.999)),
                 std::log(initialGuess[3])};
    // Unconstrained coordinates: alpha = e^u, rho = tanh(v), nu = e^z.
    const auto smileOf = [&](const std::array<double, 3>& free) {
        return SabrSmile({std::exp(free[0]), beta, std::tanh(free[1]), std::exp(free[2])});
    };
    const auto residuals = [&](const std::array<double, 3>& free, std::vector<double>& out) {
        const SabrSmile smile = smileOf(free);
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] = smile.Volatility(strikes[i], forward, timeToExpiry) - volatilities[i];
    };
    return smileOf(FitLeastSquares<3>(residuals, start, strikes.size()));
}

}  // namespace zep
