#include "lum-fxo-market/SabrSmile.hpp"

#include <algorithm>
#include <array>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/LevenbergMarquardt.hpp"

namespace zep {

namespace {

// z / x(z), which tends to 1 - rho z / 2 at the money where the closed form is 0 / 0.
double ZOverX(double z, double rho) {
    if (std::fabs(z) < 1e-7) return 1.0 - 0.5 * rho * z;
    return z / std::log((std::sqrt(1.0 - 2.0 * rho * z + z * z) + z - rho) / (1.0 - rho));
}

}  // namespace

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
    const double zOverX = ZOverX(z, m_rho);
    const double correction =
        1.0 + (oneMinusBeta * oneMinusBeta / 24.0 * m_alpha * m_alpha / (geometric * geometric) +
               0.25 * m_rho * m_beta * m_nu * m_alpha / geometric +
               (2.0 - 3.0 * m_rho * m_rho) / 24.0 * m_nu * m_nu) *
                  timeToExpiry;
    return m_alpha / denominator * zOverX * correction;
}

double SabrSmile::NormalVolatility(double strike, double forward, double timeToExpiry) const {
    const double volOfVolTerm = (2.0 - 3.0 * m_rho * m_rho) / 24.0 * m_nu * m_nu;
    // Beta 0 is the normal SABR model itself: the expansion needs no power of the rates, which
    // may then be negative.
    if (m_beta == 0.0)
        return m_alpha * ZOverX(m_nu / m_alpha * (forward - strike), m_rho) * (1.0 + volOfVolTerm * timeToExpiry);
    const double oneMinusBeta = 1.0 - m_beta;
    const double halfLog = 0.5 * std::log(forward / strike);
    const double geometric = std::sqrt(forward * strike);
    const double betaPower = std::pow(geometric, m_beta);
    // (1 - beta)(F - K) / (F^(1-beta) - K^(1-beta)), written with sinh so that it stays exact at
    // the money (where it tends to (FK)^(beta/2)) and at beta 1 (where it is (F - K) / log(F/K)).
    double localLevel = betaPower;
    if (std::fabs(halfLog) > 1e-9)
        localLevel *= oneMinusBeta < 1e-12 ? std::sinh(halfLog) / halfLog
                                           : oneMinusBeta * std::sinh(halfLog) / std::sinh(oneMinusBeta * halfLog);
    const double z = m_nu / m_alpha * (forward - strike) / betaPower;
    const double correction =
        1.0 + (-m_beta * (2.0 - m_beta) / 24.0 * m_alpha * m_alpha / std::pow(geometric, 2.0 * oneMinusBeta) +
               0.25 * m_rho * m_beta * m_nu * m_alpha / std::pow(geometric, oneMinusBeta) + volOfVolTerm) *
                  timeToExpiry;
    return m_alpha * localLevel * ZOverX(z, m_rho) * correction;
}

SabrSmile SabrSmile::Fit(const std::vector<double>& strikes, const std::vector<double>& volatilities,
                         double forward, double timeToExpiry, const std::vector<double>& initialGuess,
                         SabrExpansion expansion) {
    ZEP_REQUIRE(initialGuess.empty() || initialGuess.size() == 4,
                "Invalid params size in SABR interpolation.");
    ZEP_REQUIRE(!strikes.empty() && strikes.size() == volatilities.size(),
                "Invalid params size in SABR interpolation.");
    const double beta = initialGuess.empty() ? 1.0 : initialGuess[1];
    // Start: the smile's lowest volatility as alpha (scaled to the beta: alpha F^(beta-1) is the
    // lognormal volatility, alpha F^beta the normal one), no skew, a moderate nu.
    const double level = *std::min_element(volatilities.begin(), volatilities.end());
    const double betaScale =
        expansion == SabrExpansion::Normal ? std::pow(forward, -beta) : std::pow(forward, 1.0 - beta);
    std::array<double, 3> start{std::log(level * betaScale), 0.0, std::log(0.5)};
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
            out[i] = smile.Volatility(strikes[i], forward, timeToExpiry, expansion) - volatilities[i];
    };
    return smileOf(FitLeastSquares<3>(residuals, start, strikes.size()));
}

}  // namespace zep
