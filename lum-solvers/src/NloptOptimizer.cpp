#include "lum-solvers/NloptOptimizer.hpp"

#include <nlopt.h>

#include <cmath>
#include <exception>
#include <limits>
#include <memory>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

struct Call {
    nlopt_opt opt;
    const Objective* objective;
    std::vector<double> point;
    int evaluations = 0;
    std::exception_ptr failure;
};

double Trampoline(unsigned n, const double* x, double*, void* data) {
    auto* call = static_cast<Call*>(data);
    ++call->evaluations;
    try {
        call->point.assign(x, x + n);
        const double value = (*call->objective)(call->point);
        return std::isfinite(value) ? value : std::numeric_limits<double>::max();
    } catch (...) {
        // NLopt is C: nothing may unwind through it. Stop it and rethrow afterwards.
        call->failure = std::current_exception();
        nlopt_force_stop(call->opt);
        return std::numeric_limits<double>::max();
    }
}

nlopt_algorithm AlgorithmOf(NloptAlgorithm algorithm) {
    switch (algorithm) {
        case NloptAlgorithm::COBYLA: return NLOPT_LN_COBYLA;
        case NloptAlgorithm::DIRECT: return NLOPT_GN_DIRECT_L;
        case NloptAlgorithm::Subplex: return NLOPT_LN_SBPLX;
    }
    ZEP_FAIL("NloptOptimizer: unknown algorithm");
}

}  // namespace

std::string NloptOptimizer::Name() const {
    switch (m_algorithm) {
        case NloptAlgorithm::COBYLA: return "NLopt COBYLA";
        case NloptAlgorithm::DIRECT: return "NLopt DIRECT";
        case NloptAlgorithm::Subplex: return "NLopt Subplex";
    }
    return "NLopt";
}

OptimizationResult NloptOptimizer::Minimize(const Objective& objective, std::vector<double> start,
                                            const Box& box) const {
    detail::CheckBox("NloptOptimizer", start, box);
    const unsigned n = static_cast<unsigned>(start.size());
    const std::unique_ptr<nlopt_opt_s, decltype(&nlopt_destroy)> opt(nlopt_create(AlgorithmOf(m_algorithm), n),
                                                                      &nlopt_destroy);
    if (!opt) ZEP_FAIL(Name() + ": could not be created");
    Call call{opt.get(), &objective, {}, 0, nullptr};
    nlopt_set_lower_bounds(opt.get(), box.lower.data());
    nlopt_set_upper_bounds(opt.get(), box.upper.data());
    nlopt_set_min_objective(opt.get(), &Trampoline, &call);
    nlopt_set_xtol_rel(opt.get(), m_relativeTolerance);
    nlopt_set_maxeval(opt.get(), m_maxEvaluations);
    double value = 0.0;
    const nlopt_result status = nlopt_optimize(opt.get(), start.data(), &value);
    if (call.failure) std::rethrow_exception(call.failure);
    if (status < 0) ZEP_FAIL(Name() + ": failed with NLopt status " + std::to_string(static_cast<int>(status)));
    return {start, value, call.evaluations};
}

}  // namespace zep
