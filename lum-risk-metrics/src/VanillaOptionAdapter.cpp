#include "lum-risk-metrics/VanillaOptionAdapter.hpp"

#include <cmath>
#include <stdexcept>

#include "lum-risk-metrics/CurveShift.hpp"
#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::metrics {

VanillaOptionAdapter::VanillaOptionAdapter(boost::shared_ptr<VanillaOption> option, std::string underlying)
    : m_option(std::move(option)), m_underlying(std::move(underlying)) {
    if (!m_option) throw std::invalid_argument("VanillaOptionAdapter: the option is None.");
}

double VanillaOptionAdapter::PVUnder(scenario::ShockedMarket& market) const {
    const VanillaOption& option = *m_option;
    const double spot = market.Spot(m_underlying, option.GetSpot());
    const double volatility = market.Volatility(m_underlying, option.GetVol());
    BSVanilla engine = BSVanilla::FromForward(option.GetCallPutType(), option.GetStrike(), volatility,
                                              option.GetTimeToExpiry(), option.GetTimeToDelivery(),
                                              option.GetAccRate(), option.GetUndRate(),
                                              option.GetForward() * spot / option.GetSpot(), spot);
    const double pv = option.GetBuySell() * option.GetFaceValue() * engine.Price();
    if (!std::isfinite(pv)) throw std::runtime_error(Describe() + ": the scenario PV is not a finite number.");
    return pv;
}

MarketExposure VanillaOptionAdapter::Exposure() const { return {m_underlying, m_option->GetSpot(), m_option->GetVol(), {}}; }

std::vector<std::string> VanillaOptionAdapter::MarketNames() const {
    if (m_underlying.empty()) return {};
    return {m_underlying};
}

std::string VanillaOptionAdapter::Describe() const {
    return std::string(m_option->GetCallPutType() == BSVanilla::Call ? "Call" : "Put") + " struck at " +
           std::to_string(m_option->GetStrike()) + ", face " + std::to_string(m_option->GetFaceValue());
}

MetricResult VanillaOptionAdapter::Evaluate(Metric metric) const {
    VanillaOption& option = *m_option;
    const double notional = option.GetBuySell() * option.GetFaceValue();
    const double onePercentOfSpot = 0.01 * option.GetSpot();
    switch (metric) {
        case Metric::PV:
        case Metric::NPV: return MetricResult::Computed(metric, option.PV());
        case Metric::MARKET_VALUE: return MetricResult::Computed(metric, option.MarketValue());
        case Metric::DELTA: return MetricResult::Computed(metric, notional * option.Delta() * onePercentOfSpot);
        case Metric::GAMMA:
            return MetricResult::Computed(metric, notional * option.Gamma() * onePercentOfSpot * onePercentOfSpot);
        case Metric::VEGA: return MetricResult::Computed(metric, notional * option.Vega() * 0.01);
        case Metric::THETA: return MetricResult::Computed(metric, notional * option.Theta());
        case Metric::RHO: return MetricResult::Computed(metric, notional * option.Rho() * kBasisPoint);
        case Metric::DV01:
        case Metric::KEY_RATE_DV01:
            return MetricResult::Unavailable(
                metric, "The option reads its rates at one maturity: its rate exposure is RHO.");
        case Metric::FX_DELTA:
            return MetricResult::Unavailable(
                metric, "The option does not know whether its underlying is an FX rate: its spot exposure is DELTA.");
        default: return MetricResult::Unavailable(metric, MetricName(metric) + " is not computed for a vanilla option.");
    }
}

}  // namespace zep::metrics
