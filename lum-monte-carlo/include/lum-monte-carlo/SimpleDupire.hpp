// Dupire local volatility: dS / S = (rate1 - rate2) dt + sigma(t, S) dW with sigma from a
// LocalVol surface built from the model's six parameters (see LocalVol) and anchored at the
// reference level of the inputs. Log-Euler with the volatility frozen at the start of each
// step: exact for a flat surface, first order otherwise, so steps are at most three days.
#pragma once

#include <memory>

#include "lum-fxo-market/LocalVol.hpp"
#include "lum-monte-carlo/ScriptModelApi.hpp"

namespace zep {

template <class T>
class SimpleDupire final : public ScriptModelApi<T> {
public:
    // The surface is anchored at `reference` (the valuation spot of the product).
    SimpleDupire(const ModelInputs& inputs, double reference);

    ModelType Type() const override { return ModelType::Dupire; }
    std::size_t FactorsPerStep() const override { return 1; }
    bool StepsExactly() const override { return false; }
    void SetGrid(const std::vector<T>& times) override;
    void SimulatePath(const T* normals, T* spots) const override;

    const LocalVol& Surface() const { return *m_localVol; }

private:
    T m_spot, m_drift;
    std::shared_ptr<const LocalVol> m_localVol;
    std::vector<T> m_start;   // time at the start of each step
    std::vector<T> m_dt;
    std::vector<T> m_sqrtDt;
};

// The checks of a Dupire parameter list, shared with the product.
const std::vector<double>& CheckedDupireParameters(const std::vector<double>& parameters);

}  // namespace zep
