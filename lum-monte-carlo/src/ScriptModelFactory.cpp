#include "lum-monte-carlo/ScriptModelFactory.hpp"

#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/SimpleBachelier.hpp"
#include "lum-monte-carlo/SimpleBlackScholes.hpp"
#include "lum-monte-carlo/SimpleDupire.hpp"
#include "lum-monte-carlo/SimpleHeston.hpp"

namespace zep {

std::unique_ptr<ScriptModelApi<double>> MakeScriptModel(std::int32_t modelCode,
                                                        const ModelInputs& inputs, double reference) {
    switch (modelCode) {
        case 1: return std::make_unique<SimpleBlackScholes<double>>(inputs);
        case 2: return std::make_unique<SimpleBachelier<double>>(inputs);
        case 3: return std::make_unique<SimpleHeston<double>>(inputs);
        case 4: return std::make_unique<SimpleDupire<double>>(inputs, reference);
        default: ZEP_FAIL("Unknown model type!");
    }
}

}  // namespace zep
