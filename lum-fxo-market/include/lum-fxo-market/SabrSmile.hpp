// The SABR smile of one expiry in Hagan's lognormal expansion (Hagan, Kumar, Lesniewski and
// Woodward 2002): alpha, a fixed beta, rho and the vol of vol nu give the Black volatility of
// every strike against the forward.
#pragma once

#include <vector>

namespace zep {

class SabrSmile {
public:
    // Parameters in the order alpha, beta, rho, nu; fails "Invalid params size in SABR
    // interpolation." on another count.
    explicit SabrSmile(const std::vector<double>& parameters);

    // Fits alpha, rho and nu to the pillar volatilities at the strikes, beta held at its given
    // value (1 unless an initial guess alpha, beta, rho, nu says otherwise).
    static SabrSmile Fit(const std::vector<double>& strikes, const std::vector<double>& volatilities,
                         double forward, double timeToExpiry,
                         const std::vector<double>& initialGuess = {});

    double Volatility(double strike, double forward, double timeToExpiry) const;
    std::vector<double> Parameters() const { return {m_alpha, m_beta, m_rho, m_nu}; }

private:
    double m_alpha, m_beta, m_rho, m_nu;
};

}  // namespace zep
