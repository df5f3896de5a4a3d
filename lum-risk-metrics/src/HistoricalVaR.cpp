#include "lum-risk-metrics/HistoricalVaR.hpp"

#include <stdexcept>

#include "lum-risk-metrics/ScenarioRevaluation.hpp"

namespace zep::scenario {
namespace {

std::string GroupOf(const metrics::Position& position, const std::string& tag) {
    if (tag.empty()) return position.id;
    const auto found = position.tags.find(tag);
    return found == position.tags.end() ? std::string() : found->second;
}

}  // namespace

HistoricalVaRReport HistoricalVaR(const metrics::Portfolio& portfolio, const FactorHistory& history,
                                  const std::vector<double>& confidences, const std::string& tag) {
    if (confidences.empty()) throw std::invalid_argument("Historical VaR needs at least one confidence level.");
    if (portfolio.Size() == 0) throw std::invalid_argument("Historical VaR needs a portfolio with at least one trade.");
    const std::size_t scenarioCount = history.levels.size() > 1 ? history.levels.size() - 1 : 1;
    for (double confidence : confidences) VaRRank(confidence, scenarioCount);  // refuse before revaluing

    const std::vector<Scenario> scenarios = HistoricalScenarios(history);
    const ScenarioPnL pnl = Revalue(portfolio, scenarios);

    HistoricalVaRReport report;
    for (const Scenario& scenario : scenarios) report.scenarioNames.push_back(scenario.Name());
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

}  // namespace zep::scenario
