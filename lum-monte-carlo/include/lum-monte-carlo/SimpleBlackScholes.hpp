// Black-Scholes: lognormal spot with flat volatility. Each step is the exact lognormal
// transition, so any step length is exact and the grid may jump from event to event.
#pragma once

#include "lum-monte-carlo/ScriptModelApi.hpp"

namespace zep {

template <class T>
class SimpleBlackScholes final : public ScriptModelApi<T> {
public:
    explicit SimpleBlackScholes(const ModelInputs& inputs);

    ModelType Type() const override { return ModelType::BlackScholes; }
    std::size_t FactorsPerStep() const override { return 1; }
    bool StepsExactly() const override { return true; }
    bool PathsMoveWithForward() const override { return true; }
    void SetGrid(const std::vector<T>& times) override;
    void SimulatePath(const T* normals, T* spots) const override;
    void SimulatePaths(const T* normals, std::size_t paths, std::size_t steps, T* spots) const override;

private:
    T m_logSpot;
    T m_drift;
    T m_volatility;
    std::vector<T> m_stepDrift;       // (rate1 - rate2 - vol^2 / 2) dt
    std::vector<T> m_stepDeviation;   // vol sqrt(dt)
};

}  // namespace zep
