// A rate or FX instrument whose PV is a function of its discount and projection curves and, for
// the FX families, of one spot: FRAs, floating-rate notes, bills, FX swaps, non-deliverable
// forwards, cross-currency swaps. The instrument itself stays with its booking; the adapter holds
// how to price it on moved curves and a moved spot, so every such family has DV01, key-rate DV01
// and (when it has a spot) FX_DELTA, the PV change for a 1% higher spot, by one code path.
// PAR_RATE is in percent.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lum-risk-metrics/CurveInstrumentAdapter.hpp"

namespace zep::metrics {

// The spot an FX instrument reads: units of its PV currency per unit of the other currency.
struct SpotExposure {
    double spot = 0.0;
    std::string pair;  // the name scenarios shock it by ("EURUSD"); empty: never shocked
};

struct CurvePricing {
    ProductType product = ProductType::NON_STANDARD;
    std::string description;
    std::vector<boost::shared_ptr<const YieldCurve>> curves;  // every curve the PV reads, each once
    // The PV on the curves handed out and the given spot (ignored without a spot exposure).
    std::function<double(MovedCurves&, double spot)> pv;
    std::optional<SpotExposure> spot;
    // Metrics the instrument computes itself on its base market (a par rate, a credit spread
    // sensitivity); they take precedence over the adapter's own.
    std::map<Metric, std::function<double()>> ownMetrics;
};

class CurvePricedAdapter : public CurveInstrumentAdapter {
public:
    // Fails on a missing curve or pricing function and on a spot that is not above zero.
    explicit CurvePricedAdapter(CurvePricing pricing);

    ProductType Product() const override { return m_pricing.product; }
    std::string Describe() const override { return m_pricing.description; }
    double PVUnder(scenario::ShockedMarket& market) const override;
    std::vector<std::string> MarketNames() const override;
    MarketExposure Exposure() const override;

protected:
    MetricResult Evaluate(Metric metric) const override;
    double PVOn(MovedCurves& curves) const override;
    std::vector<boost::shared_ptr<const YieldCurve>> Curves() const override { return m_pricing.curves; }

private:
    double BaseSpot() const { return m_pricing.spot ? m_pricing.spot->spot : 0.0; }
    double PVAtSpot(double spot) const;

    CurvePricing m_pricing;
};

}  // namespace zep::metrics
