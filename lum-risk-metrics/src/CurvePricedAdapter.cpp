#include "lum-risk-metrics/CurvePricedAdapter.hpp"

#include <cmath>
#include <stdexcept>

#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::metrics {

CurvePricedAdapter::CurvePricedAdapter(CurvePricing pricing) : m_pricing(std::move(pricing)) {
    if (!m_pricing.pv) throw std::invalid_argument(m_pricing.description + ": the instrument has no pricing.");
    if (m_pricing.curves.empty()) throw std::invalid_argument(m_pricing.description + ": the instrument reads no curve.");
    for (const auto& curve : m_pricing.curves)
        if (!curve) throw std::invalid_argument(m_pricing.description + ": a curve is None.");
    if (m_pricing.spot && !(m_pricing.spot->spot > 0.0))
        throw std::invalid_argument(m_pricing.description + ": the FX spot " + std::to_string(m_pricing.spot->spot) +
                                    " is not above zero.");
}

double CurvePricedAdapter::PVOn(MovedCurves& curves) const { return m_pricing.pv(curves, BaseSpot()); }

double CurvePricedAdapter::PVAtSpot(double spot) const {
    MovedCurves unmoved([](const YieldCurve&) { return std::optional<YieldCurve>(); });
    return m_pricing.pv(unmoved, spot);
}

double CurvePricedAdapter::PVUnder(scenario::ShockedMarket& market) const {
    const double spot = m_pricing.spot ? market.Spot(m_pricing.spot->pair, m_pricing.spot->spot) : 0.0;
    const double pv = m_pricing.pv(market.Curves(), spot);
    if (!std::isfinite(pv)) throw std::runtime_error(Describe() + ": the scenario PV is not a finite number.");
    return pv;
}

std::vector<std::string> CurvePricedAdapter::MarketNames() const {
    std::vector<std::string> names = CurveInstrumentAdapter::MarketNames();
    if (m_pricing.spot && !m_pricing.spot->pair.empty()) names.push_back(m_pricing.spot->pair);
    return names;
}

MarketExposure CurvePricedAdapter::Exposure() const {
    MarketExposure exposure = CurveInstrumentAdapter::Exposure();
    if (m_pricing.spot) {
        exposure.underlying = m_pricing.spot->pair;
        exposure.spot = m_pricing.spot->spot;
    }
    return exposure;
}

MetricResult CurvePricedAdapter::Evaluate(Metric metric) const {
    if (const auto own = m_pricing.ownMetrics.find(metric); own != m_pricing.ownMetrics.end())
        return MetricResult::Computed(metric, own->second());
    switch (metric) {
        case Metric::PV:
        case Metric::MARKET_VALUE:
        case Metric::NPV: return MetricResult::Computed(metric, PVAtSpot(BaseSpot()));
        case Metric::DV01: return MetricResult::Computed(metric, DV01());
        case Metric::KEY_RATE_DV01: return KeyRatesArePerPillar();
        case Metric::FX_DELTA:
            if (!m_pricing.spot) return MetricResult::Unavailable(metric, "A single-currency instrument has no spot exposure.");
            return MetricResult::Computed(metric, (PVAtSpot(BaseSpot() * 1.01) - PVAtSpot(BaseSpot() * 0.99)) / 2.0);
        case Metric::PAR_RATE: return MetricResult::Unavailable(metric, Describe() + " has no par rate.");
        case Metric::CS01: return MetricResult::Unavailable(metric, Describe() + " has no credit exposure.");
        case Metric::DELTA:
        case Metric::GAMMA:
            return MetricResult::Unavailable(metric, m_pricing.spot ? "Its spot exposure is FX_DELTA."
                                                                    : "A rate instrument has no spot exposure.");
        case Metric::VEGA: return MetricResult::Unavailable(metric, "An instrument without options has no volatility exposure.");
        default: return MetricResult::Unavailable(metric, MetricName(metric) + " is not computed for " + Describe() + ".");
    }
}

}  // namespace zep::metrics
