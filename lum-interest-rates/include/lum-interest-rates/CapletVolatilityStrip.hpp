// Caplet volatilities stripped from flat cap quotes. A cap is quoted at one flat volatility for
// all its caplets; caps of rising maturity on one schedule share their first caplets, so each
// longer cap adds the caplets past the previous maturity. Bootstrapped cap by cap, the added
// caplets take the one volatility at which the caplets so far reprice the cap at its quote:
// a volatility piecewise constant in caplet expiry that reprices every quoted cap.
#pragma once

#include <vector>

#include "lum-interest-rates/CapFloor.hpp"

namespace zep {

class CapletVolatilityStrip {
public:
    // Caps (or floors) of one kind and strike, of rising maturity on one schedule (each one's
    // caplets start the next one's), each at its flat volatility under `model`.
    CapletVolatilityStrip(const std::vector<CapFloor>& caps, const std::vector<double>& flatVolatilities,
                          const YieldCurve& discount, const YieldCurve& projection, RateVolatilityModel model,
                          double shift = 0.0);

    // The stripped volatility of the caplet expiring at `expiry` years: that of the first caplet
    // expiring at or after it, the last one's beyond.
    double Volatility(double expiry) const;
    // `cap` valued caplet by caplet at the stripped volatilities.
    double CapPV(const CapFloor& cap, const YieldCurve& discount, const YieldCurve& projection) const;
    // Per caplet of the longest cap still to pay: its expiry (years, Act/365F) and volatility.
    const std::vector<double>& Expiries() const { return m_expiries; }
    const std::vector<double>& Volatilities() const { return m_volatilities; }
    RateVolatilityModel Model() const { return m_model; }
    double Shift() const { return m_shift; }

private:
    std::vector<double> m_expiries, m_volatilities;
    RateVolatilityModel m_model;
    double m_shift;
};

}  // namespace zep
