// A vanilla option on an FX rate or an equity, priced by its own engine. Its Greeks are per unit
// of underlying; the adapter scales them by the signed face value into the metric units: DELTA
// the PV change for a 1% higher spot, GAMMA the change of that DELTA for a further 1%, VEGA per
// volatility point, THETA per calendar day, RHO per basis point of the domestic rate.
#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "lum-closed-form/VanillaOption.hpp"
#include "lum-risk-metrics/InstrumentAdapter.hpp"

namespace zep::metrics {

class VanillaOptionAdapter : public InstrumentAdapter {
public:
    // underlying: the name scenarios shock its spot and its volatility by ("EURUSD"); empty:
    // never shocked.
    explicit VanillaOptionAdapter(boost::shared_ptr<VanillaOption> option, std::string underlying = "");

    ProductType Product() const override { return ProductType::FX_VANILLA_OPTION; }
    std::string Describe() const override;
    // Under a shocked spot and volatility, its dates and carry rates unchanged: the forward
    // moves with the spot. The option reads its rates at one maturity, so curve shocks pass it by.
    double PVUnder(scenario::ShockedMarket& market) const override;
    std::vector<std::string> MarketNames() const override;
    MarketExposure Exposure() const override;

protected:
    MetricResult Evaluate(Metric metric) const override;

private:
    // The engine caches its last figures, so the option is not const; the adapter's callers see
    // no change of state.
    boost::shared_ptr<VanillaOption> m_option;
    std::string m_underlying;
};

}  // namespace zep::metrics
