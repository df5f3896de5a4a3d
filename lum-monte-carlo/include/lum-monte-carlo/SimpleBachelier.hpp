// Bachelier: normal spot dS = (rate1 - rate2) S dt + sigma dW with an absolute volatility sigma.
// The step is the exact Gaussian (Ornstein-Uhlenbeck-type) transition:
//   S(t + dt) = S(t) e^(mu dt) + sigma sqrt((e^(2 mu dt) - 1) / (2 mu)) Z,  mu = rate1 - rate2,
// so the grid may jump from event to event.
#pragma once

#include "lum-monte-carlo/ScriptModelApi.hpp"

namespace zep {

template <class T>
class SimpleBachelier final : public ScriptModelApi<T> {
public:
    explicit SimpleBachelier(const ModelInputs& inputs);

    ModelType Type() const override { return ModelType::Bachelier; }
    std::size_t FactorsPerStep() const override { return 1; }
    bool StepsExactly() const override { return true; }
    void SetGrid(const std::vector<T>& times) override;
    void SimulatePath(const T* normals, T* spots) const override;

    // sqrt of the variance that one unit of normal volatility accumulates over dt.
    static T StepDeviation(T drift, T dt);

private:
    T m_spot;
    T m_drift;
    T m_volatility;
    std::vector<T> m_growth;
    std::vector<T> m_stepDeviation;
};

}  // namespace zep
