// The SABR smile of one expiry in Hagan's expansions (Hagan, Kumar, Lesniewski and Woodward
// 2002): alpha, a fixed beta, rho and the vol of vol nu give the Black (lognormal expansion) or
// the Bachelier (normal expansion) volatility of every strike against the forward.
#pragma once

#include <cstdint>
#include <vector>

namespace zep {

enum class SabrExpansion : std::int32_t { Lognormal = 0, Normal = 1 };

class SabrSmile {
public:
    // Parameters in the order alpha, beta, rho, nu; fails "Invalid params size in SABR
    // interpolation." on another count.
    explicit SabrSmile(const std::vector<double>& parameters);

    // Fits alpha, rho and nu to the pillar volatilities at the strikes (Black ones for the
    // lognormal expansion, Bachelier ones for the normal), beta held at its given value (1 unless
    // an initial guess alpha, beta, rho, nu says otherwise).
    static SabrSmile Fit(const std::vector<double>& strikes, const std::vector<double>& volatilities,
                         double forward, double timeToExpiry,
                         const std::vector<double>& initialGuess = {},
                         SabrExpansion expansion = SabrExpansion::Lognormal);

    double Volatility(double strike, double forward, double timeToExpiry) const;
    // The Bachelier volatility in rate units. With beta 0 forward and strike may take any sign;
    // otherwise both must be positive.
    double NormalVolatility(double strike, double forward, double timeToExpiry) const;
    double Volatility(double strike, double forward, double timeToExpiry, SabrExpansion expansion) const {
        return expansion == SabrExpansion::Normal ? NormalVolatility(strike, forward, timeToExpiry)
                                                  : Volatility(strike, forward, timeToExpiry);
    }
    std::vector<double> Parameters() const { return {m_alpha, m_beta, m_rho, m_nu}; }

private:
    double m_alpha, m_beta, m_rho, m_nu;
};

}  // namespace zep
