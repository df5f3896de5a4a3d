// The market one scenario leaves, as the trades read it: the shocks resolved per named object
// once, and each shocked curve copied once and shared by every trade that reads it. Trades keep
// their own market objects; they ask this view for their spot, their volatility and their curves
// by name, and get back the base figure untouched when no shock names it. A curve is named by its
// label, so an unlabelled curve is never shocked.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "lum-interest-rates/CreditCurve.hpp"
#include "lum-risk-metrics/CurveShift.hpp"
#include "lum-risk-metrics/Scenario.hpp"

namespace zep::scenario {

class ShockedMarket {
public:
    explicit ShockedMarket(const Scenario& scenario);
    // Curve copies point back at this view.
    ShockedMarket(const ShockedMarket&) = delete;
    ShockedMarket& operator=(const ShockedMarket&) = delete;

    // Fail when the shocks leave a spot or a volatility below zero (a spot at zero too).
    double Spot(const std::string& underlying, double spot) const;
    double Volatility(const std::string& underlying, double volatility) const;
    // How far the shocks move the 25-delta smile quotes of the underlying, in volatility units.
    struct SmileMove {
        double riskReversal25 = 0.0;
        double butterfly25 = 0.0;
    };
    SmileMove Smile(const std::string& underlying) const;
    // The issuer's credit curve with every par spread moved by the shocks, bootstrapped again once
    // per scenario and shared by every trade on it; the curve itself when no shock names the issuer.
    const CreditCurve& Credit(const std::string& issuer, const boost::shared_ptr<const CreditCurve>& curve);
    // How far the shocks move every par spread of the issuer's credit curve, in rate units.
    double CreditSpreadMove(const std::string& issuer) const;
    metrics::MovedCurves& Curves() { return m_curves; }
    // How far the shocks move the zero rate of each of the curve's pillars (level, key-rate and
    // shape moves together), in rate units; zeros for a curve no shock names.
    std::vector<double> RateMoves(const YieldCurve& curve) const;

private:
    // A level x becomes x * factor + shift.
    struct LevelMove {
        double factor = 1.0;
        double shift = 0.0;
        void Add(const Shock& shock, ScenarioGroupApplyMode mode);
        double Of(double level) const { return level * factor + shift; }
    };
    struct CurveMove {
        double level = 0.0;                     // in rate units
        std::map<std::size_t, double> pillars;  // pillar -> rate move
        std::vector<Shock> shapes;              // SLOPE, TWIST_SHORT_LONG and CURVATURE shocks
    };

    // Every pillar's rate move beyond the level; fails on a pillar the curve does not have.
    std::vector<double> PillarMoves(const YieldCurve& curve, const CurveMove& move) const;
    std::optional<YieldCurve> Moved(const YieldCurve& curve) const;

    std::map<std::string, LevelMove> m_spots;
    std::map<std::string, LevelMove> m_volatilities;
    std::map<std::string, SmileMove> m_smiles;
    std::map<std::string, double> m_creditSpreads;  // issuer -> par spread move
    std::map<const CreditCurve*, CreditCurve> m_movedCredit;
    std::map<std::string, CurveMove> m_curveMoves;
    metrics::MovedCurves m_curves;
};

}  // namespace zep::scenario
