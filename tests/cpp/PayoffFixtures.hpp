// Payoffs written directly in C++ for the simulator's tests, so that prices can be checked
// against closed forms without going through the script language.
#pragma once

#include <algorithm>
#include <functional>

#include "lum-monte-carlo/PathPayoff.hpp"

namespace zep::testing {

// One variable "V" paid fn(spots at the events) at the last event, discounted by its numeraire.
class FunctionPayoff final : public PathPayoff {
public:
    using Function = std::function<double(const ScenarioPoint*, std::size_t)>;
    FunctionPayoff(Function fn, std::size_t events) : m_fn(std::move(fn)), m_events(events) {}

    const std::vector<std::string>& VariableNames() const override { return m_names; }
    int PaymentVariable() const override { return 0; }
    std::unique_ptr<PathEvaluator> NewEvaluator(bool) const override {
        return std::make_unique<Evaluator>(*this);
    }

private:
    struct Evaluator final : PathEvaluator {
        explicit Evaluator(const FunctionPayoff& payoff) : m_payoff(payoff) {}
        void Evaluate(const ScenarioPoint* scenario, double* variables) override {
            const ScenarioPoint& last = scenario[m_payoff.m_events - 1];
            variables[0] += m_payoff.m_fn(scenario, m_payoff.m_events) * last.numeraire;
        }
        const FunctionPayoff& m_payoff;
    };
    Function m_fn;
    std::size_t m_events;
    std::vector<std::string> m_names{"V"};
};

inline std::shared_ptr<const PathPayoff> CallPayoff(double strike, std::size_t events = 1) {
    return std::make_shared<FunctionPayoff>(
        [strike](const ScenarioPoint* s, std::size_t n) { return std::max(s[n - 1].spot - strike, 0.0); },
        events);
}

}  // namespace zep::testing
