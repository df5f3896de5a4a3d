// A market scenario: a named list of shocks, each moving one factor of one named market object by
// the factor codes of the risk layer. A shock names what it moves the way trades name what they
// read: a curve by its label, a spot and its volatility by the underlying's name (a currency pair
// such as "EURUSD"). Scenarios are shock lists, not rebuilt markets: each trade's adapter revalues
// on its own market moved by the shocks that name it (see ShockedMarket), so a scenario costs
// nothing for the trades it does not touch.
//
// Units: curve shocks are absolute, in basis points of zero rate; spot and volatility shocks are
// absolute (in the quantity's own units, 0.01 = one volatility point) or relative (0.01 = 1%).
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "lum-risk-metrics/MetricCodes.hpp"

namespace zep::scenario {

using metrics::CreditCurveFactor;
using metrics::FXForwardFactor;
using metrics::ScenarioGroupApplyMode;
using metrics::ScenarioType;
using metrics::VolSurfaceFactor;
using metrics::YieldCurveFactor;

enum class ShockType { ABSOLUTE = 0, RELATIVE = 1 };
// Which code group a shock's factor belongs to.
enum class FactorFamily { YIELD_CURVE = 0, FX = 1, VOL_SURFACE = 2, CREDIT_CURVE = 3 };

struct Shock {
    std::string target;
    FactorFamily family = FactorFamily::YIELD_CURVE;
    int factor = 0;  // the code within the family's group
    double size = 0.0;
    ShockType type = ShockType::ABSOLUTE;
    std::size_t pillar = 0;  // the curve pillar a KEY_RATE shock moves

    // Moves of the pillars' zero rates, t a pillar's time from the first pillar, T the last's:
    // LEVEL moves every rate by the size; KEY_RATE the rate of `pillar` (fading to the
    // neighbours); SLOPE steepens, from 0 at the first pillar to the size at the last, linear in
    // t; TWIST_SHORT_LONG turns the curve about `pillar`, size (t - t_p) / (T - t_p), so the short
    // end falls as the long end rises; CURVATURE lifts the belly at `pillar` by the size, linear
    // in t down to 0 at the first and last pillars.
    static Shock Curve(std::string curve, YieldCurveFactor factor, double basisPoints, std::size_t pillar = 0);
    // SPOT_SHOCK.
    static Shock Spot(std::string underlying, FXForwardFactor factor, double size, ShockType type);
    // ATM_VOL_LEVEL: every volatility of the underlying moves alike; RISK_REVERSAL_25D and
    // BUTTERFLY_25D (absolute only) move the 25-delta smile quotes of options priced on them.
    static Shock Vol(std::string underlying, VolSurfaceFactor factor, double size, ShockType type);

    // CDS_SPREAD_LEVEL: every par spread of the issuer's credit curve moves by the basis points,
    // the curve bootstrapped again.
    static Shock Credit(std::string issuer, CreditCurveFactor factor, double basisPoints);

    // "<target> <FACTOR>[ pillar n]", the factor in the words of its code.
    std::string Describe() const;
};

class Scenario {
public:
    // PARALLEL: every shock moves the base market and the moves add up; SEQUENTIAL: each shock
    // moves the market the previous ones left (two relative spot shocks compound).
    Scenario(std::string name, std::vector<Shock> shocks, ScenarioType type = ScenarioType::DETERMINISTIC,
             ScenarioGroupApplyMode mode = ScenarioGroupApplyMode::PARALLEL);

    const std::string& Name() const { return m_name; }
    ScenarioType Type() const { return m_type; }
    ScenarioGroupApplyMode Mode() const { return m_mode; }
    const std::vector<Shock>& Shocks() const { return m_shocks; }
    // Whether any shock names one of the market objects a trade reads.
    bool Touches(const std::vector<std::string>& marketNames) const;

private:
    std::string m_name;
    std::vector<Shock> m_shocks;
    ScenarioType m_type;
    ScenarioGroupApplyMode m_mode;
};

}  // namespace zep::scenario
