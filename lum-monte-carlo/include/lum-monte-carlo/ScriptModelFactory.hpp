// Builds the model of a scripted product from its model code (1 Black-Scholes, 2 Bachelier,
// 3 Heston, 4 Dupire); the model constructors check their own parameters.
#pragma once

#include <cstdint>
#include <memory>

#include "lum-monte-carlo/ScriptModelApi.hpp"

namespace zep {

// `reference` anchors the Dupire local volatility surface (the product's valuation spot).
std::unique_ptr<ScriptModelApi<double>> MakeScriptModel(std::int32_t modelCode,
                                                        const ModelInputs& inputs, double reference);

}  // namespace zep
