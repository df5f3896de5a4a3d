#include "lum-risk-metrics/FXForwardAdapter.hpp"

#include <stdexcept>

#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::metrics {

FXForwardAdapter::FXForwardAdapter(boost::shared_ptr<const FXForward> forward, FXForwardMarket market)
    : m_forward(std::move(forward)), m_market(std::move(market)) {
    if (!m_forward) throw std::invalid_argument("FXForwardAdapter: the forward is None.");
    RequireFXMarket({m_market.spot, m_market.spotDate, m_market.quoteCurve.get(), m_market.baseCurve.get()});
}

double FXForwardAdapter::PV(double spot, const YieldCurve& quoteCurve, const YieldCurve& baseCurve) const {
    const double outright =
        m_market.forwardPoints
            ? FXForward::OutrightFromPoints(spot, *m_market.forwardPoints, m_market.pointScale)
            : FXForward::Outright({spot, m_market.spotDate, &quoteCurve, &baseCurve}, m_forward->Delivery());
    return m_forward->PV(outright, quoteCurve);
}

double FXForwardAdapter::PVOn(MovedCurves& curves) const {
    return PV(m_market.spot, *curves.Of(m_market.quoteCurve), *curves.Of(m_market.baseCurve));
}

double FXForwardAdapter::PVUnder(scenario::ShockedMarket& market) const {
    MovedCurves& curves = market.Curves();
    return PV(market.Spot(m_market.pair, m_market.spot), *curves.Of(m_market.quoteCurve), *curves.Of(m_market.baseCurve));
}

std::vector<std::string> FXForwardAdapter::MarketNames() const {
    std::vector<std::string> names = CurveInstrumentAdapter::MarketNames();
    if (!m_market.pair.empty()) names.push_back(m_market.pair);
    return names;
}

MarketExposure FXForwardAdapter::Exposure() const {
    MarketExposure exposure = CurveInstrumentAdapter::Exposure();
    exposure.underlying = m_market.pair;
    exposure.spot = m_market.spot;
    return exposure;
}

std::vector<boost::shared_ptr<const YieldCurve>> FXForwardAdapter::Curves() const {
    if (m_market.quoteCurve == m_market.baseCurve) return {m_market.quoteCurve};
    return {m_market.quoteCurve, m_market.baseCurve};
}

MetricResult FXForwardAdapter::Evaluate(Metric metric) const {
    const double spot = m_market.spot;
    const YieldCurve& quote = *m_market.quoteCurve;
    const YieldCurve& base = *m_market.baseCurve;
    switch (metric) {
        case Metric::PV:
        case Metric::MARKET_VALUE:
        case Metric::NPV: return MetricResult::Computed(metric, PV(spot, quote, base));
        case Metric::FX_DELTA:
            return MetricResult::Computed(metric, (PV(spot * 1.01, quote, base) - PV(spot * 0.99, quote, base)) / 2.0);
        case Metric::DV01: return MetricResult::Computed(metric, DV01());
        case Metric::KEY_RATE_DV01: return KeyRatesArePerPillar();
        case Metric::DELTA:
        case Metric::GAMMA:
            return MetricResult::Unavailable(metric, "An FX forward's spot exposure is its FX_DELTA.");
        case Metric::VEGA: return MetricResult::Unavailable(metric, "An FX forward has no volatility exposure.");
        default: return MetricResult::Unavailable(metric, MetricName(metric) + " is not computed for an FX forward.");
    }
}

}  // namespace zep::metrics
