#include "lum-risk-metrics/SwapAdapter.hpp"

#include <algorithm>
#include <stdexcept>

namespace zep::metrics {
namespace {

LegCurves Checked(LegCurves curves, const char* leg) {
    if (!curves.discount) throw std::invalid_argument(std::string("SwapAdapter: the ") + leg + " leg's discount curve is None.");
    if (!curves.projection) curves.projection = curves.discount;
    return curves;
}

LegMarket MarketOf(const LegCurves& curves) {
    return {curves.discount.get(), curves.projection.get(), curves.fixings.get(), 1.0};
}

LegMarket MovedMarketOf(const LegCurves& curves, MovedCurves& moved) {
    return {moved.Of(curves.discount), moved.Of(curves.projection), curves.fixings.get(), 1.0};
}

}  // namespace

SwapAdapter::SwapAdapter(boost::shared_ptr<const Swap> swap, LegCurves received, LegCurves paid, ProductType product)
    : m_swap(std::move(swap)), m_received(Checked(std::move(received), "received")),
      m_paid(Checked(std::move(paid), "paid")), m_product(product) {
    if (!m_swap) throw std::invalid_argument("SwapAdapter: the swap is None.");
}

double SwapAdapter::PVOn(MovedCurves& curves) const {
    return m_swap->PV(MovedMarketOf(m_received, curves), MovedMarketOf(m_paid, curves));
}

std::vector<boost::shared_ptr<const YieldCurve>> SwapAdapter::Curves() const {
    std::vector<boost::shared_ptr<const YieldCurve>> curves;
    for (const auto& curve : {m_received.discount, m_received.projection, m_paid.discount, m_paid.projection})
        if (std::find(curves.begin(), curves.end(), curve) == curves.end()) curves.push_back(curve);
    return curves;
}

MetricResult SwapAdapter::Evaluate(Metric metric) const {
    switch (metric) {
        case Metric::PV:
        case Metric::MARKET_VALUE:
        case Metric::NPV: return MetricResult::Computed(metric, m_swap->PV(MarketOf(m_received), MarketOf(m_paid)));
        case Metric::DV01: return MetricResult::Computed(metric, DV01());
        case Metric::KEY_RATE_DV01: return KeyRatesArePerPillar();
        case Metric::PAR_RATE:
            if (m_swap->LegOn(SwapSide::Receive).Terms().kind != CouponKind::Fixed &&
                m_swap->LegOn(SwapSide::Pay).Terms().kind != CouponKind::Fixed)
                return MetricResult::Unavailable(metric, "A swap without a fixed leg has no par rate.");
            return MetricResult::Computed(metric, 100.0 * m_swap->ParRate(MarketOf(m_received), MarketOf(m_paid)));
        case Metric::DELTA:
        case Metric::GAMMA:
        case Metric::FX_DELTA: return MetricResult::Unavailable(metric, "A single-currency swap has no spot exposure.");
        case Metric::VEGA: return MetricResult::Unavailable(metric, "A swap without options has no volatility exposure.");
        default: return MetricResult::Unavailable(metric, MetricName(metric) + " is not computed for a swap.");
    }
}

}  // namespace zep::metrics
