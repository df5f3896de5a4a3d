#include "lum-monte-carlo/ScriptModelApi.hpp"

#include "lum-auxiliary/Error.hpp"

namespace zep {

std::string ModelName(ModelType type) {
    switch (type) {
        case ModelType::BlackScholes: return "BlackSchole";
        case ModelType::Bachelier: return "Bachelier";
        case ModelType::Heston: return "Heston";
        case ModelType::Dupire: return "Dupire";
    }
    ZEP_FAIL("Unknown model type!");
}

ModelType ModelTypeFromCode(std::int32_t code) {
    ZEP_REQUIRE(code >= 1 && code <= 4, "Unknown model type!");
    return static_cast<ModelType>(code);
}

}  // namespace zep
