// A swaption volatility cube: quotes by expiry, underlying swap tenor and strike spread over the
// slice's forward swap rate. Each quoted (expiry, tenor) slice is a SABR smile fitted to its
// quotes; between slices the volatility at the same spread over the forward is bilinear in
// expiry and tenor, and flat beyond the first and last quoted ones.
#pragma once

#include <cstddef>
#include <vector>

#include "lum-interest-rates/SwaptionSmile.hpp"

namespace zep {

class SwaptionCube {
public:
    // Expiries and tenors in years, rising. `forwards` holds one forward swap rate per slice,
    // expiry by expiry (expiries x tenors); `volatilities` one quote per slice and spread in the
    // same order, the spreads running fastest. Every slice needs at least three spreads.
    SwaptionCube(const std::vector<double>& expiries, const std::vector<double>& tenors,
                 const std::vector<double>& strikeSpreads, const std::vector<double>& forwards,
                 const std::vector<double>& volatilities, double beta = 0.5,
                 RateVolatilityModel model = RateVolatilityModel::Black, double shift = 0.0);

    // The volatility of a swaption expiring in `expiry` years into a swap of `tenor` years whose
    // forward swap rate is `forward`, at `strike`, under Model().
    double Volatility(double expiry, double tenor, double forward, double strike) const;
    const SwaptionSmile& Smile(std::size_t expiryIndex, std::size_t tenorIndex) const;
    // The largest root mean square fit error of the slices.
    double FitError() const;
    const std::vector<double>& Expiries() const { return m_expiries; }
    const std::vector<double>& Tenors() const { return m_tenors; }
    RateVolatilityModel Model() const { return m_smiles.front().Model(); }
    double Shift() const { return m_smiles.front().Shift(); }

private:
    std::vector<double> m_expiries, m_tenors;
    std::vector<SwaptionSmile> m_smiles;  // expiry by expiry, tenors running fastest
};

}  // namespace zep
