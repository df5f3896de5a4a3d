// The model interface of the script Monte Carlo pricer: a one-factor spot process (with hidden
// state such as a stochastic variance) under the risk-neutral measure of rate1, with the
// underlying's own rate2 as its yield: drift of ln S is rate1 - rate2 - variance / 2.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

namespace zep {

class FXLocalVolSurface;

enum class ModelType : std::int32_t { BlackScholes = 1, Bachelier = 2, Heston = 3, Dupire = 4 };

// "BlackSchole", "Bachelier", "Heston", "Dupire": the names the product description prints.
std::string ModelName(ModelType type);
ModelType ModelTypeFromCode(std::int32_t code);

// What every model is built from; the model-specific numbers travel in `parameters`.
struct ModelInputs {
    double spot = 0.0;
    double volatility = 0.0;
    double rate1 = 0.0;  // risk-free rate, continuously compounded
    double rate2 = 0.0;  // the underlying's rate (dividend yield, foreign rate)
    std::vector<double> parameters;
    // Dupire on the market: the local volatility of an FX surface in place of the parametric
    // one, moved in parallel by `localVolatilityShift` (the vega bump).
    boost::shared_ptr<const FXLocalVolSurface> localVolatility;
    double localVolatilityShift = 0.0;
};

template <class T>
class ScriptModelApi {
public:
    virtual ~ScriptModelApi() = default;

    virtual ModelType Type() const = 0;
    // Standard normal draws consumed per time step.
    virtual std::size_t FactorsPerStep() const = 0;
    // True when one step of any length is exact in law, so the grid may jump event to event.
    virtual bool StepsExactly() const = 0;
    // True when moving the spot, or the rates by a constant, multiplies every simulated spot by
    // the forward's move to its time and changes nothing else (the law of S / F does not depend
    // on S0 or on the rates): the paths of such moved markets need no model run of their own.
    virtual bool PathsMoveWithForward() const { return false; }

    // Fixes the grid once per run (times in years, increasing, first after 0); SimulatePath
    // then reads only constant data and may be called from several threads at once.
    virtual void SetGrid(const std::vector<T>& times) = 0;
    // One path: `normals` holds FactorsPerStep() draws per step; writes the spot at each grid
    // time into `spots`.
    virtual void SimulatePath(const T* normals, T* spots) const = 0;
    // Several paths of `steps` grid times, their normals and spots one path after the other:
    // the values SimulatePath gives each. Models whose step is a short recursion interleave
    // the paths, so that the processor works on several recursions at once.
    virtual void SimulatePaths(const T* normals, std::size_t paths, std::size_t steps, T* spots) const {
        const std::size_t draws = steps * FactorsPerStep();
        for (std::size_t p = 0; p < paths; ++p) SimulatePath(normals + p * draws, spots + p * steps);
    }
};

}  // namespace zep
