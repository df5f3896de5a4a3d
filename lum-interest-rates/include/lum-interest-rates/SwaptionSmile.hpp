// The SABR smile of one swaption slice (one expiry into one tenor) around the slice's forward
// swap rate, in the expansion of its quotes: Hagan's lognormal one for Black volatilities (on
// the rates plus a shift for shifted Black ones) or his normal one for Bachelier volatilities.
// Fitted to the slice's quotes with beta held fixed, or given by its parameters. Its volatility
// at a strike is the one a swaption of that strike is priced with under Model().
#pragma once

#include <vector>

#include "lum-closed-form/ForwardOption.hpp"
#include "lum-fxo-market/SabrSmile.hpp"

namespace zep {

class SwaptionSmile {
public:
    // Fits alpha, rho and nu to at least three quotes. Black quotes need positive strikes and
    // forward (above -shift when shifted); Bachelier ones too unless beta is 0, the normal SABR
    // model, which admits negative rates.
    SwaptionSmile(double forward, double expiry, const std::vector<double>& strikes,
                  const std::vector<double>& volatilities, double beta = 0.5,
                  RateVolatilityModel model = RateVolatilityModel::Black, double shift = 0.0);
    SwaptionSmile(double forward, double expiry, double alpha, double beta, double rho, double nu,
                  RateVolatilityModel model = RateVolatilityModel::Black, double shift = 0.0);

    double Volatility(double strike) const;
    // The volatility at `strike` with its model and shift, ready for ForwardOptionValue.
    RateVolatility QuoteAt(double strike) const { return {m_model, Volatility(strike), m_shift}; }
    // alpha, beta, rho, nu.
    std::vector<double> Parameters() const { return m_sabr.Parameters(); }
    // Root mean square of the fit's volatility errors (zero for a smile given by its parameters).
    double FitError() const { return m_fitError; }
    double Forward() const { return m_forward; }
    double Expiry() const { return m_expiry; }
    RateVolatilityModel Model() const { return m_model; }
    double Shift() const { return m_shift; }

private:
    SabrSmile m_sabr;
    double m_forward, m_expiry;
    RateVolatilityModel m_model;
    double m_shift;
    double m_rateShift;         // the shift the expansion's rates carry (shifted Black's only)
    bool m_needsPositiveRates;  // all but the normal expansion at beta 0
    double m_fitError = 0.0;
};

}  // namespace zep
