#include "lum-fxo-market/SviSmile.hpp"

#include <algorithm>
#include <cmath>

#include "lum-auxiliary/Error.hpp"
#include "lum-solvers/LevenbergMarquardt.hpp"

namespace zep {

namespace {

// The fit runs on unconstrained coordinates: b = e^u, rho = tanh(v), sigma = e^z, so every trial
// point is a valid SVI.
std::array<double, 5> ToFree(const std::vector<double>& p) {
    const double rho = std::clamp(p[2], -0.999, 0.999);
    return {p[0], std::log(std::max(p[1], 1e-8)), std::atanh(rho), p[3],
            std::log(std::max(p[4], 1e-8))};
}

std::vector<double> FromFree(const std::array<double, 5>& q) {
    return {q[0], std::exp(q[1]), std::tanh(q[2]), q[3], std::exp(q[4])};
}

// A start read off the pillars: ATM-ish variance at the centre, wings from the outer pillars.
std::vector<double> StartFromPillars(const std::vector<double>& k, const std::vector<double>& w) {
    const std::size_t centre = static_cast<std::size_t>(
        std::min_element(k.begin(), k.end(), [](double x, double y) { return std::fabs(x) < std::fabs(y); }) -
        k.begin());
    const double left = k.front(), right = k.back();
    const double sigma = std::max(0.5 * (right - left), 1e-3);
    const double wingHeight = std::sqrt(left * left + sigma * sigma) - sigma;
    const double rise = 0.5 * (w.front() + w.back()) - w[centre];
    const double b = std::max(rise / std::max(wingHeight, 1e-8), 1e-4);
    const double rho =
        std::clamp((w.back() - w.front()) / (b * std::max(right - left, 1e-8)), -0.9, 0.9);
    return {w[centre] - b * sigma, b, rho, 0.0, sigma};
}

}  // namespace

SviSmile::SviSmile(const std::vector<double>& parameters) {
    ZEP_REQUIRE(parameters.size() == 5, "Invalid params size in SVI interpolation.");
    m_a = parameters[0];
    m_b = parameters[1];
    m_rho = parameters[2];
    m_m = parameters[3];
    m_sigma = parameters[4];
}

SviSmile SviSmile::Fit(const std::vector<double>& logMoneyness,
                       const std::vector<double>& totalVariance, double timeToExpiry,
                       const std::vector<double>& initialGuess) {
    ZEP_REQUIRE(initialGuess.empty() || initialGuess.size() == 5,
                "Wrong InitialGuess, SVI need 5 params!");
    ZEP_REQUIRE(!logMoneyness.empty() && logMoneyness.size() == totalVariance.size(),
                "Invalid params size in SVI interpolation.");
    // A smile without skew or curvature is SVI with b = 0, which the fit's coordinates (b = e^u)
    // only approach: it would walk towards it for ever.
    const auto [lowest, highest] = std::minmax_element(totalVariance.begin(), totalVariance.end());
    if (*highest - *lowest <= kFlatSmileTolerance * *highest) return SviSmile({*highest, 0.0, 0.0, 0.0, 1.0});
    const std::vector<double> start =
        initialGuess.empty() ? StartFromPillars(logMoneyness, totalVariance) : initialGuess;
    // A volatility error dsigma moves the total variance by about 2 sigma T dsigma.
    std::vector<double> scale(totalVariance.size());
    for (std::size_t i = 0; i < scale.size(); ++i)
        scale[i] = 1.0 / (2.0 * std::sqrt(std::max(totalVariance[i], 1e-12) * timeToExpiry));
    const auto residuals = [&](const std::array<double, 5>& free, std::vector<double>& out) {
        const SviSmile smile(FromFree(free));
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] = (smile.TotalVariance(logMoneyness[i]) - totalVariance[i]) * scale[i];
    };
    return SviSmile(FromFree(FitLeastSquares<5>(residuals, ToFree(start), logMoneyness.size())));
}

double SviSmile::TotalVariance(double logMoneyness) const {
    const double shifted = logMoneyness - m_m;
    return m_a + m_b * (m_rho * shifted + std::sqrt(shifted * shifted + m_sigma * m_sigma));
}

}  // namespace zep
