#include "lum-risk-metrics/SpotVolOptionAdapter.hpp"

#include <cmath>
#include <stdexcept>

#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::metrics {

SpotVolOptionAdapter::SpotVolOptionAdapter(SpotVolPricing pricing) : m_pricing(std::move(pricing)) {
    if (!m_pricing.pv) throw std::invalid_argument(m_pricing.description + ": the option has no pricing.");
    if (!(m_pricing.spot > 0.0))
        throw std::invalid_argument(m_pricing.description + ": the spot " + std::to_string(m_pricing.spot) +
                                    " is not above zero.");
    if (!(m_pricing.volatility >= 0.0))
        throw std::invalid_argument(m_pricing.description + ": the volatility " +
                                    std::to_string(m_pricing.volatility) + " is below zero.");
}

double SpotVolOptionAdapter::PV(const OptionMarketMove& move) const {
    const double pv = m_pricing.pv(move);
    if (!std::isfinite(pv)) throw std::runtime_error(Describe() + ": the PV is not a finite number.");
    return pv;
}

double SpotVolOptionAdapter::PVUnder(scenario::ShockedMarket& market) const {
    const double spot = market.Spot(m_pricing.underlying, m_pricing.spot);
    const double volatility = market.Volatility(m_pricing.underlying, m_pricing.volatility);
    const scenario::ShockedMarket::SmileMove smile = market.Smile(m_pricing.underlying);
    return PV(OptionMarketMove{spot, volatility - m_pricing.volatility, smile.riskReversal25, smile.butterfly25});
}

MarketExposure SpotVolOptionAdapter::Exposure() const { return {m_pricing.underlying, m_pricing.spot, m_pricing.volatility, {}}; }

std::vector<std::string> SpotVolOptionAdapter::MarketNames() const {
    if (m_pricing.underlying.empty()) return {};
    return {m_pricing.underlying};
}

MetricResult SpotVolOptionAdapter::Evaluate(Metric metric) const {
    const double spot = m_pricing.spot;
    const double h = kSpotStep;
    switch (metric) {
        case Metric::PV:
        case Metric::MARKET_VALUE:
        case Metric::NPV: return MetricResult::Computed(metric, PV(spot, 0.0));
        case Metric::DELTA:
            // d PV / d ln S, taken over 1% of spot.
            return MetricResult::Computed(metric, (PV(spot * (1 + h), 0.0) - PV(spot * (1 - h), 0.0)) / (2 * h) * 0.01);
        case Metric::GAMMA: {
            // The change of the 1% DELTA for a further 1%: S^2 d2PV/dS2 * 1e-4.
            const double second = PV(spot * (1 + h), 0.0) - 2 * PV(spot, 0.0) + PV(spot * (1 - h), 0.0);
            return MetricResult::Computed(metric, second / (h * h) * 1e-4);
        }
        case Metric::VEGA: {
            const double dv = kVolatilityStep;
            return MetricResult::Computed(metric, (PV(spot, dv) - PV(spot, -dv)) / (2 * dv) * 0.01);
        }
        case Metric::DV01:
        case Metric::KEY_RATE_DV01:
        case Metric::RHO:
            return MetricResult::Unavailable(metric, "The option is booked with flat rates, not on curves.");
        case Metric::FX_DELTA:
            return MetricResult::Unavailable(
                metric, "The option does not know whether its underlying is an FX rate: its spot exposure is DELTA.");
        default: return MetricResult::Unavailable(metric, MetricName(metric) + " is not computed for " + Describe() + ".");
    }
}

}  // namespace zep::metrics
