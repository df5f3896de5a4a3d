// The product's payoff as the simulator sees it: for one path, the scenario (per event date in
// date order, the simulated spot and the numeraire factor) in, every variable's final value out.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lum-monte-carlo/script/CompiledScript.hpp"  // ScenarioPoint: spot, numeraire

namespace zep {

// A block of paths side by side: spots[event * lanes + lane]; every path of a block has the same
// numeraire factor on a date, numeraires[event].
struct PathBlock {
    const double* spots;
    const double* numeraires;
    std::size_t events;
    std::size_t lanes;
};

class PathEvaluator {
public:
    virtual ~PathEvaluator() = default;
    // `variables` arrive zeroed and leave holding every variable's final value on this path.
    virtual void Evaluate(const ScenarioPoint* scenario, double* variables) = 0;
    // Every path of the block, with the values Evaluate gives each: `variables` [variable *
    // lanes + lane] of `variableCount` variables arrive zeroed. By default path by path, in
    // lane order.
    virtual void EvaluateBlock(const PathBlock& block, std::size_t variableCount, double* variables);

private:
    std::vector<ScenarioPoint> m_path;  // the default's one path and its values
    std::vector<double> m_values;
};

class PathPayoff {
public:
    virtual ~PathPayoff() = default;
    // The variables in index order.
    virtual const std::vector<std::string>& VariableNames() const = 0;
    // The variable "Price" reports by default: the first one that receives a payment, -1 when
    // no statement pays.
    virtual int PaymentVariable() const = 0;
    // An evaluator for one worker thread: its own scratch, sharing only read-only data.
    // `smoothed` blends conditions over a small width so that re-priced values move smoothly
    // with the inputs (sensitivities); otherwise conditions are sharp.
    virtual std::unique_ptr<PathEvaluator> NewEvaluator(bool smoothed) const = 0;
};

}  // namespace zep
