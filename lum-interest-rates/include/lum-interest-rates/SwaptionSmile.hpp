// The SABR smile of one swaption slice (one expiry into one tenor): Hagan's lognormal expansion
// around the slice's forward swap rate, fitted to the slice's Black volatility quotes with beta
// held fixed, or given by its parameters. Its volatility at a strike is the Black volatility a
// swaption of that strike is priced with.
#pragma once

#include <vector>

#include "lum-fxo-market/SabrSmile.hpp"

namespace zep {

class SwaptionSmile {
public:
    // Fits alpha, rho and nu to at least three quotes (positive strikes and volatilities).
    SwaptionSmile(double forward, double expiry, const std::vector<double>& strikes,
                  const std::vector<double>& volatilities, double beta = 0.5);
    SwaptionSmile(double forward, double expiry, double alpha, double beta, double rho, double nu);

    double Volatility(double strike) const;
    // alpha, beta, rho, nu.
    std::vector<double> Parameters() const { return m_sabr.Parameters(); }
    // Root mean square of the fit's volatility errors (zero for a smile given by its parameters).
    double FitError() const { return m_fitError; }
    double Forward() const { return m_forward; }
    double Expiry() const { return m_expiry; }

private:
    SabrSmile m_sabr;
    double m_forward, m_expiry, m_fitError = 0.0;
};

}  // namespace zep
