// NLopt's derivative-free optimisers behind the library's interface: COBYLA (linear
// approximations in a trust region), DIRECT (global, dividing the box; the locally biased
// DIRECT-L variant) and Subplex (Nelder-Mead on subspaces).
#pragma once

#include "lum-solvers/Optimizer.hpp"

namespace zep {

enum class NloptAlgorithm : int { COBYLA = 0, DIRECT = 1, Subplex = 2 };

class NloptOptimizer final : public Optimizer {
public:
    explicit NloptOptimizer(NloptAlgorithm algorithm, int maxEvaluations = 2000, double relativeTolerance = 1e-10)
        : m_algorithm(algorithm), m_maxEvaluations(maxEvaluations), m_relativeTolerance(relativeTolerance) {}

    OptimizationResult Minimize(const Objective& objective, std::vector<double> start, const Box& box) const override;
    std::string Name() const override;

private:
    NloptAlgorithm m_algorithm;
    int m_maxEvaluations;
    double m_relativeTolerance;
};

}  // namespace zep
