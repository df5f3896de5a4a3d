// Gatheral's raw SVI smile of one expiry: total implied variance as a function of log-forward-
// moneyness k = ln(K / F), w(k) = a + b (rho (k - m) + sqrt((k - m)^2 + sigma^2)). Five numbers
// that fit an FX smile's pillars and extrapolate with linear wings in variance (Lee's bound).
#pragma once

#include <array>
#include <vector>

namespace zep {

class SviSmile {
public:
    // Parameters in the order a, b, rho, m, sigma; b >= 0, |rho| < 1, sigma > 0 keep the smile
    // a variance. Fails "Invalid params size in SVI interpolation." on another count.
    explicit SviSmile(const std::vector<double>& parameters);

    // Least squares on the pillars (k_i, total variance w_i), residuals in volatility units. An
    // initial guess, when given, must hold five numbers ("Wrong InitialGuess, SVI need 5
    // params!"); otherwise the start is read off the pillars. Pillars whose total variances agree
    // to kFlatSmileTolerance (relative) give the flat smile a = w, b = 0.
    static SviSmile Fit(const std::vector<double>& logMoneyness,
                        const std::vector<double>& totalVariance, double timeToExpiry,
                        const std::vector<double>& initialGuess = {});

    static constexpr double kFlatSmileTolerance = 1e-14;

    double TotalVariance(double logMoneyness) const;
    std::vector<double> Parameters() const { return {m_a, m_b, m_rho, m_m, m_sigma}; }

private:
    double m_a, m_b, m_rho, m_m, m_sigma;
};

}  // namespace zep
