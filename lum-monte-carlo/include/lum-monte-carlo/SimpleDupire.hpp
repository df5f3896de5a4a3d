// Dupire local volatility: dS / S = (rate1 - rate2) dt + sigma(t, S) dW, with sigma either from
// a LocalVol surface built from the model's six parameters (see LocalVol), anchored at the
// reference level of the inputs, or from the market: the local volatility of an FX surface.
// Log-Euler with the volatility frozen over each step: exact for a flat surface, first order
// otherwise, so steps are at most three days.
//
// The market's local volatility costs a few smile look-ups per point, far too much for every
// path-step, so SetGrid tabulates it once per run: for each step, at the middle of the step, on
// kTableNodes log-spot nodes spanning the forward plus or minus kTableWidth standard deviations
// of the longest step (at least +-kTableMinimumHalfWidth in log-spot); a path reads it by
// linear interpolation in log-spot, flat beyond the ends. The vega bump moves the whole table.
#pragma once

#include <memory>

#include "lum-fxo-market/LocalVol.hpp"
#include "lum-monte-carlo/ScriptModelApi.hpp"

namespace zep {

template <class T>
class SimpleDupire final : public ScriptModelApi<T> {
public:
    // The parametric surface is anchored at `reference` (the valuation spot of the product).
    SimpleDupire(const ModelInputs& inputs, double reference);

    ModelType Type() const override { return ModelType::Dupire; }
    std::size_t FactorsPerStep() const override { return 1; }
    bool StepsExactly() const override { return false; }
    void SetGrid(const std::vector<T>& times) override;
    void SimulatePath(const T* normals, T* spots) const override;
    void SimulatePaths(const T* normals, std::size_t paths, std::size_t steps, T* spots) const override;

    static constexpr std::size_t kTableNodes = 129;
    static constexpr double kTableWidth = 6.0;
    static constexpr double kTableMinimumHalfWidth = 0.25;

private:
    void TabulateMarket(const std::vector<T>& times);
    T MarketVolatility(std::size_t step, T logSpot) const;

    T m_spot, m_drift;
    std::shared_ptr<const LocalVol> m_localVol;  // parametric; null on the market
    boost::shared_ptr<const FXLocalVolSurface> m_market;
    double m_marketShift;
    std::vector<T> m_start;  // time at the start of each step
    std::vector<T> m_dt;
    std::vector<T> m_sqrtDt;
    // The market table: row per step, kTableNodes columns from m_firstLogSpot by m_logSpotStep.
    std::vector<T> m_table;
    T m_firstLogSpot = 0, m_logSpotStep = 1, m_nodesPerLogSpot = 1;
};

// The checks of a Dupire parameter list, shared with the product.
const std::vector<double>& CheckedDupireParameters(const std::vector<double>& parameters);

}  // namespace zep
