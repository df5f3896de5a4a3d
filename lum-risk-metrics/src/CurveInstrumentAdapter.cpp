#include "lum-risk-metrics/CurveInstrumentAdapter.hpp"

#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::metrics {

double CurveInstrumentAdapter::DV01() const {
    return CentralDV01([this](MovedCurves& curves) { return PVOn(curves); });
}

double CurveInstrumentAdapter::PVUnder(scenario::ShockedMarket& market) const { return PVOn(market.Curves()); }

std::vector<std::string> CurveInstrumentAdapter::MarketNames() const {
    std::vector<std::string> names;
    for (const auto& curve : Curves())
        if (!curve->Label().empty()) names.push_back(curve->Label());
    return names;
}

MarketExposure CurveInstrumentAdapter::Exposure() const {
    MarketExposure exposure;
    exposure.curves = Curves();
    return exposure;
}

MetricResultVector CurveInstrumentAdapter::EvaluateProfile(Metric metric) const {
    if (metric != Metric::KEY_RATE_DV01) return {Evaluate(metric)};
    return KeyRateDV01(Curves(), [this](MovedCurves& curves) { return PVOn(curves); });
}

MetricResult CurveInstrumentAdapter::KeyRatesArePerPillar() {
    return MetricResult::Unavailable(Metric::KEY_RATE_DV01,
                                     "KEY_RATE_DV01 is one figure per curve pillar: ask for its profile.");
}

}  // namespace zep::metrics
