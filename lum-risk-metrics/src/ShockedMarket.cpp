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
                else if (shock.factor == static_cast<int>(YieldCurveFactor::LEVEL))
                    move.level += rateMove;
                else
                    move.shapes.push_back(shock);
                break;
            }
            case FactorFamily::FX: m_spots[shock.target].Add(shock, scenario.Mode()); break;
            case FactorFamily::CREDIT_CURVE: m_creditSpreads[shock.target] += shock.size * metrics::kBasisPoint; break;
            case FactorFamily::VOL_SURFACE:
                if (shock.factor == static_cast<int>(VolSurfaceFactor::RISK_REVERSAL_25D))
                    m_smiles[shock.target].riskReversal25 += shock.size;
                else if (shock.factor == static_cast<int>(VolSurfaceFactor::BUTTERFLY_25D))
                    m_smiles[shock.target].butterfly25 += shock.size;
                else
                    m_volatilities[shock.target].Add(shock, scenario.Mode());
                break;
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

ShockedMarket::SmileMove ShockedMarket::Smile(const std::string& underlying) const {
    const auto found = m_smiles.find(underlying);
    return found == m_smiles.end() ? SmileMove{} : found->second;
}

double ShockedMarket::CreditSpreadMove(const std::string& issuer) const {
    const auto found = m_creditSpreads.find(issuer);
    return found == m_creditSpreads.end() ? 0.0 : found->second;
}

const CreditCurve& ShockedMarket::Credit(const std::string& issuer, const boost::shared_ptr<const CreditCurve>& curve) {
    const auto move = m_creditSpreads.find(issuer);
    if (issuer.empty() || move == m_creditSpreads.end()) return *curve;
    auto moved = m_movedCredit.find(curve.get());
    if (moved == m_movedCredit.end())
        moved = m_movedCredit.emplace(curve.get(), curve->WithSpreadsShifted(move->second)).first;
    return moved->second;
}

std::vector<double> ShockedMarket::RateMoves(const YieldCurve& curve) const {
    const auto found = m_curveMoves.find(curve.Label());
    if (curve.Label().empty() || found == m_curveMoves.end()) return std::vector<double>(curve.Dates().size(), 0.0);
    std::vector<double> moves = PillarMoves(curve, found->second);
    for (double& move : moves) move += found->second.level;
    return moves;
}

std::vector<double> ShockedMarket::PillarMoves(const YieldCurve& curve, const CurveMove& move) const {
    const std::vector<Date>& dates = curve.Dates();
    const std::size_t count = dates.size();
    const auto requirePillar = [&](std::size_t pillar, const char* role) {
        if (pillar >= count)
            throw std::out_of_range("The curve '" + curve.Label() + "' has no pillar " + std::to_string(pillar) + ".");
        if (*role && (pillar == 0 || pillar + 1 >= count))
            throw std::invalid_argument("The curve '" + curve.Label() + "' has no pillar " + std::to_string(pillar) +
                                        " inside its first and last to " + role + ".");
    };
    std::vector<double> moves(count, 0.0);
    for (const auto& [pillar, rateMove] : move.pillars) {
        requirePillar(pillar, "");
        moves[pillar] = rateMove;
    }
    if (move.shapes.empty()) return moves;
    // Shapes are linear in time between the pillars they pin; days from the first pillar serve as time.
    const auto time = [&](std::size_t pillar) { return static_cast<double>(dates[pillar].SerialNumber() - dates.front().SerialNumber()); };
    const double last = time(count - 1);
    for (const Shock& shape : move.shapes) {
        const double size = shape.size * metrics::kBasisPoint;
        if (count < 2) throw std::invalid_argument("The curve '" + curve.Label() + "' has one pillar: it has no shape.");
        for (std::size_t i = 0; i < count; ++i) {
            const double t = time(i);
            switch (static_cast<YieldCurveFactor>(shape.factor)) {
                case YieldCurveFactor::SLOPE: moves[i] += size * t / last; break;
                case YieldCurveFactor::TWIST_SHORT_LONG:
                    requirePillar(shape.pillar, "pivot on");
                    moves[i] += size * (t - time(shape.pillar)) / (last - time(shape.pillar));
                    break;
                default: {  // CURVATURE
                    requirePillar(shape.pillar, "lift as its belly");
                    const double belly = time(shape.pillar);
                    moves[i] += size * (t <= belly ? t / belly : (last - t) / (last - belly));
                }
            }
        }
    }
    return moves;
}

std::optional<YieldCurve> ShockedMarket::Moved(const YieldCurve& curve) const {
    const auto found = m_curveMoves.find(curve.Label());
    if (curve.Label().empty() || found == m_curveMoves.end()) return std::nullopt;
    const CurveMove& move = found->second;
    if (move.pillars.empty() && move.shapes.empty()) return metrics::ParallelShifted(curve, move.level);
    return metrics::ParallelShifted(metrics::PillarsShifted(curve, PillarMoves(curve, move)), move.level);
}

}  // namespace zep::scenario
