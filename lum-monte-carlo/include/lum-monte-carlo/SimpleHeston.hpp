// Heston stochastic volatility:
//   dS / S = (rate1 - rate2) dt + sqrt(v) dW1,  dv = kappa (theta - v) dt + xi sqrt(v) dW2,
//   d<W1, W2> = rho dt.
// Its five parameters, in order: kappa (mean reversion speed), theta (long-run variance),
// xi (volatility of variance), rho (spot-variance correlation), v0 (initial variance).
// Discretised by full truncation Euler (Lord, Koekkoek, van Dijk): the variance may turn
// negative between steps but only its positive part enters drift and diffusion, which keeps the
// scheme's bias the smallest of the simple Euler fixes. Not exact: steps are at most three days.
#pragma once

#include "lum-monte-carlo/ScriptModelApi.hpp"

namespace zep {

template <class T>
class SimpleHeston final : public ScriptModelApi<T> {
public:
    explicit SimpleHeston(const ModelInputs& inputs);

    ModelType Type() const override { return ModelType::Heston; }
    std::size_t FactorsPerStep() const override { return 2; }
    bool StepsExactly() const override { return false; }
    bool PathsMoveWithForward() const override { return true; }
    void SetGrid(const std::vector<T>& times) override;
    void SimulatePath(const T* normals, T* spots) const override;

private:
    T m_logSpot, m_drift;
    T m_kappa, m_theta, m_xi, m_rho, m_v0;
    std::vector<T> m_dt;
    std::vector<T> m_sqrtDt;
};

}  // namespace zep
