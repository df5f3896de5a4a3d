#include "lum-risk-metrics/HistoricalScenarios.hpp"

#include <cmath>
#include <stdexcept>
#include <string>

#include "lum-risk-metrics/CurveShift.hpp"

namespace zep::scenario {
namespace {

void RequireComplete(const FactorHistory& history) {
    if (history.factors.empty()) throw std::invalid_argument("The history names no market factor.");
    if (history.levels.size() < 2)
        throw std::invalid_argument("The history needs at least two days to make one scenario; it has " +
                                    std::to_string(history.levels.size()) + ".");
    for (std::size_t day = 0; day < history.levels.size(); ++day) {
        const auto& row = history.levels[day];
        if (row.size() != history.factors.size())
            throw std::invalid_argument("Day " + std::to_string(day) + " of the history has " +
                                        std::to_string(row.size()) + " levels for " +
                                        std::to_string(history.factors.size()) + " factors.");
        for (std::size_t f = 0; f < row.size(); ++f) {
            if (!std::isfinite(row[f]))
                throw std::invalid_argument("The history of " + history.factors[f].Describe() +
                                            " has a gap or a non-number on day " + std::to_string(day) + ".");
            if (history.factors[f].type == ShockType::RELATIVE && !(row[f] > 0.0))
                throw std::invalid_argument("The history of " + history.factors[f].Describe() + " is at " +
                                            std::to_string(row[f]) + " on day " + std::to_string(day) +
                                            ": a relative return needs a level above zero.");
        }
    }
}

double MoveOf(const Shock& factor, double before, double after) {
    if (factor.type == ShockType::RELATIVE) return after / before - 1.0;
    const double move = after - before;
    const bool inBasisPoints = factor.family == FactorFamily::YIELD_CURVE || factor.family == FactorFamily::CREDIT_CURVE;
    return inBasisPoints ? move / metrics::kBasisPoint : move;
}

}  // namespace

std::vector<Scenario> HistoricalScenarios(const FactorHistory& history) {
    RequireComplete(history);
    std::vector<Scenario> scenarios;
    scenarios.reserve(history.levels.size() - 1);
    for (std::size_t day = 1; day < history.levels.size(); ++day) {
        std::vector<Shock> shocks = history.factors;
        for (std::size_t f = 0; f < shocks.size(); ++f)
            shocks[f].size = MoveOf(shocks[f], history.levels[day - 1][f], history.levels[day][f]);
        scenarios.emplace_back("day " + std::to_string(day), std::move(shocks), ScenarioType::HISTORICAL);
    }
    return scenarios;
}

}  // namespace zep::scenario
