#include "lum-risk-metrics/PnLExplain.hpp"

#include <cmath>

#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-risk-metrics/CurveShift.hpp"
#include "lum-risk-metrics/ScenarioRevaluation.hpp"
#include "lum-risk-metrics/ShockedMarket.hpp"

namespace zep::scenario {
namespace {

// A metric the trade does not have explains nothing.
double OrZero(const metrics::MetricResult& result) { return result.available ? result.value : 0.0; }

// The sensitivities of one position, scaled by its quantity, and where they were taken.
struct Sensitivities {
    metrics::MarketExposure exposure;
    double delta = 0.0, gamma = 0.0, vega = 0.0, cs01 = 0.0;
    std::vector<double> keyRates;  // curve by curve, pillar by pillar, as the exposure lists them

    explicit Sensitivities(const metrics::Position& position) : exposure(position.instrument->Exposure()) {
        const metrics::InstrumentAdapter& trade = *position.instrument;
        const double quantity = position.quantity;
        if (std::isfinite(exposure.spot)) {
            const metrics::MetricResult spotDelta = trade.Compute(metrics::Metric::DELTA);
            delta = quantity * OrZero(spotDelta.available ? spotDelta : trade.Compute(metrics::Metric::FX_DELTA));
            gamma = quantity * OrZero(trade.Compute(metrics::Metric::GAMMA));
        }
        if (std::isfinite(exposure.volatility)) vega = quantity * OrZero(trade.Compute(metrics::Metric::VEGA));
        if (!exposure.issuer.empty()) cs01 = quantity * OrZero(trade.Compute(metrics::Metric::CS01));
        if (!exposure.curves.empty())
            for (const metrics::MetricResult& bucket : trade.Profile(metrics::Metric::KEY_RATE_DV01))
                keyRates.push_back(quantity * OrZero(bucket));
    }

    void Explain(const ShockedMarket& market, PnLExplain& row) const {
        if (std::isfinite(exposure.spot)) {
            const double percent = 100.0 * (market.Spot(exposure.underlying, exposure.spot) / exposure.spot - 1.0);
            row.delta += delta * percent;
            row.gamma += 0.5 * gamma * percent * percent;
        }
        if (std::isfinite(exposure.volatility))
            row.vega += vega * 100.0 * (market.Volatility(exposure.underlying, exposure.volatility) - exposure.volatility);
        if (!exposure.issuer.empty())
            row.credit += cs01 * market.CreditSpreadMove(exposure.issuer) / metrics::kBasisPoint;
        std::size_t bucket = 0;
        for (const auto& curve : exposure.curves)
            for (double move : market.RateMoves(*curve))
                if (bucket < keyRates.size()) row.rates += keyRates[bucket++] * move / metrics::kBasisPoint;
    }
};

}  // namespace

std::vector<PnLExplain> ExplainPnL(const metrics::Portfolio& portfolio, const std::vector<Scenario>& scenarios) {
    const std::vector<double> full = Revalue(portfolio, scenarios).Total();
    std::vector<Sensitivities> sensitivities;
    sensitivities.reserve(portfolio.Size());
    for (const metrics::Position& position : portfolio.Positions()) sensitivities.emplace_back(position);

    std::vector<PnLExplain> rows(scenarios.size());
    for (std::size_t s = 0; s < scenarios.size(); ++s) {
        PnLExplain& row = rows[s];
        row.scenario = scenarios[s].Name();
        row.full = full[s];
        const ShockedMarket market(scenarios[s]);
        for (const Sensitivities& position : sensitivities) position.Explain(market, row);
        row.unexplained = row.full - row.delta - row.gamma - row.vega - row.rates - row.credit;
    }
    return rows;
}

}  // namespace zep::scenario
