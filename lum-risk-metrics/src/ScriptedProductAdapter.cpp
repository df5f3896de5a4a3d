#include "lum-risk-metrics/ScriptedProductAdapter.hpp"

#include <cmath>
#include <stdexcept>

#include "lum-monte-carlo/ScriptGreeks.hpp"
#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::metrics {

ScriptedProductAdapter::ScriptedProductAdapter(boost::shared_ptr<const XScriptStructure> product, std::string underlying)
    : m_product(std::move(product)), m_underlying(std::move(underlying)) {
    if (!m_product) throw std::invalid_argument("ScriptedProductAdapter: the product is None.");
}

double ScriptedProductAdapter::PVUnder(scenario::ShockedMarket& market) const {
    const XScriptInputs& inputs = m_product->Inputs();
    const double spot = market.Spot(m_underlying, inputs.spot);
    double volatilityMove = 0.0;
    if (std::isfinite(inputs.volatility)) {
        volatilityMove = market.Volatility(m_underlying, inputs.volatility) - inputs.volatility;
    } else {
        // Without one figure to scale, only an absolute move has a meaning: a relative one would
        // move two reference levels differently.
        const double one = market.Volatility(m_underlying, 1.0);
        if (std::abs(market.Volatility(m_underlying, 2.0) - one - 1.0) > 1e-12)
            throw std::invalid_argument(Describe() + ": its model has no single volatility for a relative shock.");
        volatilityMove = one - 1.0;
    }
    MarketShift shift;
    shift.spot = spot - inputs.spot;
    shift.volatility = volatilityMove;
    const double pv = inputs.notional * m_product->RepriceShifted(shift);
    if (!std::isfinite(pv)) throw std::runtime_error(Describe() + ": the scenario PV is not a finite number.");
    return pv;
}

MarketExposure ScriptedProductAdapter::Exposure() const { return {m_underlying, m_product->Inputs().spot, m_product->Inputs().volatility, {}}; }

std::vector<std::string> ScriptedProductAdapter::MarketNames() const {
    if (m_underlying.empty()) return {};
    return {m_underlying};
}

MetricResult ScriptedProductAdapter::Evaluate(Metric metric) const {
    const XScriptStructure& product = *m_product;
    const double notional = product.Inputs().notional;
    const double onePercentOfSpot = 0.01 * product.Inputs().spot;
    switch (metric) {
        case Metric::PV:
        case Metric::MARKET_VALUE:
        case Metric::NPV: return MetricResult::Computed(metric, notional * product.Price());
        // The engine's Delta carries the desk's leading minus: the metric is the PV change.
        case Metric::DELTA: return MetricResult::Computed(metric, -notional * zep::Delta(product) * onePercentOfSpot);
        case Metric::GAMMA:
            return MetricResult::Computed(metric, notional * zep::Gamma(product) * onePercentOfSpot * onePercentOfSpot);
        case Metric::VEGA: return MetricResult::Computed(metric, notional * zep::Vega(product));
        case Metric::THETA: return MetricResult::Computed(metric, notional * zep::Theta(product));
        case Metric::RHO: return MetricResult::Computed(metric, notional * zep::Rho(product));
        case Metric::DV01:
        case Metric::KEY_RATE_DV01:
            return MetricResult::Unavailable(metric, "The product reads flat rates, not curves: its rate exposure is RHO.");
        case Metric::FX_DELTA:
            return MetricResult::Unavailable(
                metric, "The product does not know whether its underlying is an FX rate: its spot exposure is DELTA.");
        default: return MetricResult::Unavailable(metric, MetricName(metric) + " is not computed for a scripted product.");
    }
}

}  // namespace zep::metrics
