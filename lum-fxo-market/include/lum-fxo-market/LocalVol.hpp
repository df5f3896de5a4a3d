// A parametric local volatility surface sigma(t, S), quadratic in log-moneyness against a fixed
// reference level (sticky strike: moving the spot does not move the surface) with a linear term.
//
//   x = ln(S / reference)
//   sigma(t, S) = clamp(atmVol + termSlope * t + skew * x + curvature * x^2, minVol, maxVol)
//
// Its six parameters, in order: atmVol, skew, curvature, termSlope, minVol, maxVol. With skew,
// curvature and termSlope zero the surface is flat at atmVol and the model is Black-Scholes.
#pragma once

#include <vector>

namespace zep {

class LocalVol {
public:
    LocalVol(double reference, const std::vector<double>& parameters);

    double Volatility(double time, double spot) const;

    double Reference() const { return m_reference; }
    const std::vector<double>& Parameters() const { return m_parameters; }

private:
    double m_reference;
    std::vector<double> m_parameters;
    double m_atmVol, m_skew, m_curvature, m_termSlope, m_minVol, m_maxVol;
};

}  // namespace zep
