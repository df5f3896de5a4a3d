#include "lum-risk-metrics/ShockedMarket.hpp"

#include <stdexcept>

namespace zep::scenario {

void ShockedMarket::LevelMove::Add(const Shock& shock, ScenarioGroupApplyMode mode) {
    if (shock.type == ShockType::ABSOLUTE) {
        shift += shock.size;
    } else if (mode == ScenarioGroupApplyMode::SEQUENTIAL) {
        factor *= 1.0 + shock.size;
        shift *= 1.0 + shock.size;
    } else {
        factor += shock.size;
    }
}

ShockedMarket::ShockedMarket(const Scenario& scenario)
    : m_curves([this](const YieldCurve& curve) { return Moved(curve); }) {
    for (const Shock& shock : scenario.Shocks()) {
        switch (shock.family) {
            case FactorFamily::YIELD_CURVE: {
                CurveMove& move = m_curveMoves[shock.target];
                const double rateMove = shock.size * metrics::kBasisPoint;
                if (shock.factor == static_cast<int>(YieldCurveFactor::KEY_RATE))
                    move.pillars[shock.pillar] += rateMove;
                else
                    move.level += rateMove;
                break;
            }
            case FactorFamily::FX: m_spots[shock.target].Add(shock, scenario.Mode()); break;
            case FactorFamily::VOL_SURFACE: m_volatilities[shock.target].Add(shock, scenario.Mode()); break;
        }
    }
}

double ShockedMarket::Spot(const std::string& underlying, double spot) const {
    const auto found = m_spots.find(underlying);
    if (found == m_spots.end()) return spot;
    const double shocked = found->second.Of(spot);
    if (!(shocked > 0.0))
        throw std::invalid_argument("The shocks leave the spot of '" + underlying + "' at " + std::to_string(shocked) +
                                    ", not above zero.");
    return shocked;
}

double ShockedMarket::Volatility(const std::string& underlying, double volatility) const {
    const auto found = m_volatilities.find(underlying);
    if (found == m_volatilities.end()) return volatility;
    const double shocked = found->second.Of(volatility);
    if (!(shocked >= 0.0))
        throw std::invalid_argument("The shocks leave the volatility of '" + underlying + "' at " +
                                    std::to_string(shocked) + ", below zero.");
    return shocked;
}

double ShockedMarket::RateMove(const YieldCurve& curve, std::size_t pillar) const {
    const auto found = m_curveMoves.find(curve.Label());
    if (curve.Label().empty() || found == m_curveMoves.end()) return 0.0;
    const auto pillarMove = found->second.pillars.find(pillar);
    return found->second.level + (pillarMove == found->second.pillars.end() ? 0.0 : pillarMove->second);
}

std::optional<YieldCurve> ShockedMarket::Moved(const YieldCurve& curve) const {
    const auto found = m_curveMoves.find(curve.Label());
    if (curve.Label().empty() || found == m_curveMoves.end()) return std::nullopt;
    const CurveMove& move = found->second;
    if (move.pillars.empty()) return metrics::ParallelShifted(curve, move.level);
    std::vector<double> pillarMoves(curve.Dates().size(), 0.0);
    for (const auto& [pillar, rateMove] : move.pillars) {
        if (pillar >= pillarMoves.size())
            throw std::out_of_range("The curve '" + curve.Label() + "' has no pillar " + std::to_string(pillar) + ".");
        pillarMoves[pillar] = rateMove;
    }
    return metrics::ParallelShifted(metrics::PillarsShifted(curve, pillarMoves), move.level);
}

}  // namespace zep::scenario
