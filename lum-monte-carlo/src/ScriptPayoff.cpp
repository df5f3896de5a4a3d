#include "lum-monte-carlo/ScriptPayoff.hpp"

#include <span>

#include "lum-monte-carlo/script/ScriptPathEvaluator.hpp"

#include "lum-monte-carlo/script/ScriptProduct.hpp"

namespace zep {

namespace {

// The first variable, in date and statement order, that a PAYS statement writes.
int FirstPaidVariable(const Node& node) {
    if (const auto* pays = dynamic_cast<const NodePays*>(&node))
        return static_cast<const NodeVar&>(*pays->arguments[0]).index;
    if (dynamic_cast<const NodeIf*>(&node) == nullptr) return -1;
    for (const auto& child : node.arguments)
        if (const int found = FirstPaidVariable(*child); found >= 0) return found;
    return -1;
}

class ScriptEvaluator final : public PathEvaluator {
public:
    ScriptEvaluator(const ScriptProduct& product, bool smoothed)
        : m_evaluator(product), m_events(product.EventCount()), m_variables(product.VariableCount()),
          m_smoothed(smoothed), m_script(smoothed ? product.CompiledSmoothed() : product.Compiled()) {}

    void Evaluate(const ScenarioPoint* scenario, double* variables) override {
        const std::span<const ScenarioPoint> path(scenario, m_events);
        const std::span<double> values(variables, m_variables);
        if (m_smoothed)
            m_evaluator.EvaluateFuzzy(path, values);
        else
            m_evaluator.Evaluate(path, values);
    }

    void EvaluateBlock(const PathBlock& block, std::size_t, double* variables) override {
        // The scratch grows to the widest block asked for, once.
        if (m_laneScratch.lanes < block.lanes)
            m_laneScratch = m_script.MakeLaneScratch(block.lanes, m_smoothed ? kDefaultFuzzyEps : 0.0);
        m_script.RunLanes(block.spots, block.numeraires, block.lanes, variables, m_laneScratch);
    }

private:
    ScriptPathEvaluator m_evaluator;
    std::size_t m_events;
    std::size_t m_variables;
    bool m_smoothed;
    const CompiledScript& m_script;
    CompiledScript::LaneScratch m_laneScratch;
};

class ScriptPayoff final : public PathPayoff {
public:
    ScriptPayoff(const std::vector<Date>& dates, const std::vector<std::string>& scripts)
        : m_product(dates, scripts) {
        for (const Statements& event : m_product.Events()) {
            for (const auto& statement : event) {
                m_paymentVariable = FirstPaidVariable(*statement);
                if (m_paymentVariable >= 0) return;
            }
        }
    }

    const std::vector<std::string>& VariableNames() const override { return m_product.VariableNames(); }
    int PaymentVariable() const override { return m_paymentVariable; }
    std::unique_ptr<PathEvaluator> NewEvaluator(bool smoothed) const override {
        return std::make_unique<ScriptEvaluator>(m_product, smoothed);
    }

private:
    ScriptProduct m_product;
    int m_paymentVariable = -1;
};

}  // namespace

std::shared_ptr<const PathPayoff> CompileScriptPayoff(const std::vector<Date>& eventDates,
                                                      const std::vector<std::string>& eventScripts) {
    return std::make_shared<ScriptPayoff>(eventDates, eventScripts);
}

}  // namespace zep
