// Sensitivities of a scripted product by re-pricing with common random numbers and smoothed
// conditions. Shift sizes and formulas (V the re-priced value, V0 the unshifted one):
//   Delta        -(V(S+h) - V(S-h)) / (2h), h = the model's shift h0 (spot * 1e-4 for
//                Black-Scholes and Dupire, spot / 100 for Bachelier, 1.0 for Heston), or
//                min(h0, spot * f) with the adaptive shift; 0 when no time remains. The
//                leading minus is the desk's sign convention and is kept deliberately.
//   Gamma        (V(S+g) - 2 V0 + V(S-g)) / g^2, g = spot / 100
//   Vega         (V(vol+0.01) - V(vol-0.01)) / 2: value change per volatility point; the point
//                is 0.01 in the model's volatility (Bachelier: 0.01 * spot, Heston: 0.01 on
//                sqrt(v0) and sqrt(theta), Dupire: 0.01 on the whole surface)
//   Volga        V(vol+0.01) - 2 V0 + V(vol-0.01), per volatility point squared
//   Vanna        (V(S+g, vol+0.01) - V(S+g, vol-0.01) - V(S-g, vol+0.01) + V(S-g, vol-0.01))
//                / (4g): change of dV/dS per volatility point
//   Theta        V(valuation date + 1 day) - V0, per calendar day
//   Rho          (V(rate1 + 1bp) - V(rate1 - 1bp)) / 2, per basis point
//   ForwardDelta Delta * exp(-(rate1 - rate2) T): the same sensitivity against the forward
//                F = S exp((rate1 - rate2) T) to the last event date
#pragma once

#include <map>
#include <optional>
#include <string>

#include "lum-monte-carlo/XScriptStructure.hpp"

namespace zep {

double Delta(const XScriptStructure& product);
double Gamma(const XScriptStructure& product);
double Vega(const XScriptStructure& product);
double Volga(const XScriptStructure& product);
double Vanna(const XScriptStructure& product);
double Theta(const XScriptStructure& product);
double Rho(const XScriptStructure& product);
double ForwardDelta(const XScriptStructure& product);

// The smoothed base value the Greeks difference against.
double BasePrice(const XScriptStructure& product);
// Price, Delta, Gamma, Vega, Theta, Rho.
std::map<std::string, double> BasicGreeks(const XScriptStructure& product);
// BasicGreeks with Vanna, Volga and ForwardDelta.
std::map<std::string, double> AllGreeks(const XScriptStructure& product);

// The distance from spot to `barrier` (default: the product's adaptive-shift barrier) in
// standard deviations of the spot to the last event date:
//   lognormal models |ln(S / B)| / (sigma sqrt(T)), with sigma the flat volatility
//   (Black-Scholes) or the local volatility today at the spot (Heston: flat at sqrt(v0),
//   Dupire: its surface); Bachelier |S - B| / (sigma sqrt(T)). 0 when no time remains.
double DistanceToBarrierSigma(const XScriptStructure& product,
                              std::optional<double> barrier = std::nullopt);

// The spot fraction f of Delta's adaptive shift for a distance d in standard deviations.
double AdaptiveShiftFraction(double remainingTime, double distance);

}  // namespace zep
