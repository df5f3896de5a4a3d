// An option on an FX rate or an equity priced by revaluation on a moved spot and a parallel move
// of its volatilities: barriers, digitals, any payoff whose engine gives no Greeks of its own.
// DELTA and GAMMA are central differences in spot scaled to a 1% move, VEGA in volatility per
// point, so they agree with the closed-form Greeks of the vanilla adapter where both exist.
#pragma once

#include <functional>
#include <string>

#include "lum-risk-metrics/InstrumentAdapter.hpp"

namespace zep::metrics {

// The market an option is revalued on: its spot, a parallel move of its volatilities and moves
// of its 25-delta smile quotes (which only a smile-quoted method reads).
struct OptionMarketMove {
    double spot = 0.0;
    double volatilityShift = 0.0;
    double riskReversal25Shift = 0.0;
    double butterfly25Shift = 0.0;
};

struct SpotVolPricing {
    ProductType product = ProductType::NON_STANDARD;
    std::string description;
    std::string underlying;  // the name scenarios shock its spot and volatility by; empty: never shocked
    double spot = 0.0;
    // The volatility a relative scenario shock scales: the option's volatility at its strike.
    double volatility = 0.0;
    std::function<double(const OptionMarketMove&)> pv;
};

class SpotVolOptionAdapter : public InstrumentAdapter {
public:
    // Fails on a missing pricing function, a spot not above zero or a volatility below zero.
    explicit SpotVolOptionAdapter(SpotVolPricing pricing);

    ProductType Product() const override { return m_pricing.product; }
    std::string Describe() const override { return m_pricing.description; }
    double PVUnder(scenario::ShockedMarket& market) const override;
    std::vector<std::string> MarketNames() const override;
    MarketExposure Exposure() const override;

    // Relative spot step of DELTA and GAMMA, and the volatility step of VEGA.
    static constexpr double kSpotStep = 1e-4;
    static constexpr double kVolatilityStep = 1e-4;

protected:
    MetricResult Evaluate(Metric metric) const override;

private:
    double PV(const OptionMarketMove& move) const;
    double PV(double spot, double volatilityShift) const { return PV(OptionMarketMove{spot, volatilityShift}); }

    SpotVolPricing m_pricing;
};

}  // namespace zep::metrics
