// A structured product written in the payoff script language, priced by Monte Carlo on one
// underlying. Its Greeks are the script engine's own (common random numbers, smoothed
// conditions), turned into the metric units for the product's notional: DELTA the PV change for
// a 1% higher spot, GAMMA the change of that DELTA for a further 1%, VEGA per volatility point,
// THETA per calendar day, RHO per basis point of the risk-free rate. Scenarios revalue it on the
// same paths, spot and volatility moved.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "lum-monte-carlo/XScriptStructure.hpp"
#include "lum-risk-metrics/InstrumentAdapter.hpp"

namespace zep::metrics {

class ScriptedProductAdapter : public InstrumentAdapter {
public:
    // underlying: the name scenarios shock its spot and volatility by; empty: never shocked.
    explicit ScriptedProductAdapter(boost::shared_ptr<const XScriptStructure> product, std::string underlying = "");

    ProductType Product() const override { return ProductType::WM_PRODUCT; }
    std::string Describe() const override { return "Scripted product on " + Underlying(); }
    // Relative volatility shocks scale the model's one volatility figure; a model without one
    // (Heston, Dupire on a surface) takes absolute shocks only.
    double PVUnder(scenario::ShockedMarket& market) const override;
    std::vector<std::string> MarketNames() const override;
    MarketExposure Exposure() const override;

protected:
    MetricResult Evaluate(Metric metric) const override;

private:
    std::string Underlying() const { return m_underlying.empty() ? "an unnamed underlying" : m_underlying; }

    boost::shared_ptr<const XScriptStructure> m_product;
    std::string m_underlying;
};

}  // namespace zep::metrics
