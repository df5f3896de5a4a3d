#include "lum-risk-metrics/HistoricalVaR.hpp"

#include <algorithm>
#include <stdexcept>

#include <fmt/format.h>

namespace zep::scenario {
namespace {

std::string GroupOf(const metrics::Position& position, const std::string& tag) {
    if (tag.empty()) return position.id;
    const auto found = position.tags.find(tag);
    return found == position.tags.end() ? std::string() : found->second;
}

}  // namespace

void CheckVaRInputs(const metrics::Portfolio& portfolio, const std::vector<double>& confidences,
                    std::size_t scenarioCount) {
    if (confidences.empty()) throw std::invalid_argument("Historical VaR needs at least one confidence level.");
    if (portfolio.Size() == 0) throw std::invalid_argument("Historical VaR needs a portfolio with at least one trade.");
    for (double confidence : confidences) VaRRank(confidence, std::max<std::size_t>(scenarioCount, 1));
}

HistoricalVaRReport VaRReport(const metrics::Portfolio& portfolio, std::vector<std::string> scenarioNames,
                              const ScenarioPnL& pnl, const std::vector<double>& confidences, const std::string& tag) {
    CheckVaRInputs(portfolio, confidences, scenarioNames.size());
    if (pnl.positions != portfolio.Size() || pnl.scenarios != scenarioNames.size() ||
        pnl.values.size() != pnl.positions * pnl.scenarios)
        throw std::invalid_argument(fmt::format(
            "The P&L matrix holds {} values for {} scenarios of a portfolio of {} trades; it needs {}.",
            pnl.values.size(), scenarioNames.size(), portfolio.Size(), scenarioNames.size() * portfolio.Size()));
    HistoricalVaRReport report;
    report.scenarioNames = std::move(scenarioNames);
    report.pnl = pnl.Total();
    const auto& positions = portfolio.Positions();
    for (double confidence : confidences) {
        VaRFigures figures{Tail(report.pnl, confidence), {}};
        for (std::size_t p = 0; p < positions.size(); ++p)
            figures.components[GroupOf(positions[p], tag)] -= pnl.At(p, figures.scenario);
        report.figures.push_back(std::move(figures));
    }
    return report;
}

HistoricalVaRReport HistoricalVaR(const metrics::Portfolio& portfolio, const FactorHistory& history,
                                  const std::vector<double>& confidences, const std::string& tag) {
    CheckVaRInputs(portfolio, confidences, history.levels.size() > 1 ? history.levels.size() - 1 : 1);
    const std::vector<Scenario> scenarios = HistoricalScenarios(history);
    std::vector<std::string> names;
    names.reserve(scenarios.size());
    for (const Scenario& scenario : scenarios) names.push_back(scenario.Name());
    return VaRReport(portfolio, std::move(names), Revalue(portfolio, scenarios), confidences, tag);
}

}  // namespace zep::scenario
