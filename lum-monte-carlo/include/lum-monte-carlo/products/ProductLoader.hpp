// Books products from their definitions, JSON or YAML, with the market they are priced in.
//
// A definition's `type` names its product class (AutoCall, Snowball, TargetRedemptionForward,
// AsianPayoff) and its other fields are the term sheet, checked against the type's schema
// (ProductSchemas) before the class checks their consistency:
//
//   type: AutoCall
//   initial_level: 100
//   strike_date: 2024-01-02
//   observation_dates: [2024-04-02, 2024-07-02, 2024-10-02, 2025-01-02]
//   autocall_levels: [1.0, 0.95, 0.9, 0.85]     # or one level for every date
//   coupons: 0.02
//   notional: 1000000                           # optional, every type
//
// A definition without `type`, or of type "Scripted", is the scripted product of
// ProductDefinition, which carries its own market. The market file holds what the Market schema
// allows: valuation_date, market (spot, volatility, rate1, rate2), model (type, parameters) and
// simulation settings, laid out as in a scripted definition.
#pragma once

#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "lum-monte-carlo/XScriptStructure.hpp"
#include "lum-monte-carlo/products/StructuredProduct.hpp"

namespace zep {

struct BookedProduct {
    std::shared_ptr<const StructuredProduct> product;  // null for a scripted definition
    XScriptInputs inputs;                              // market, settings, dates and scripts
    // The product's commented script; for a scripted definition its event scripts by date.
    std::string Script() const;
};

std::shared_ptr<const StructuredProduct> StructuredProductFromTree(const nlohmann::json& definition);
XScriptInputs MarketFromTree(const nlohmann::json& market);
// A product class needs the market; a scripted definition takes from it, when given, whatever
// it sets (valuation_date, market, model, simulation).
BookedProduct BookProduct(const nlohmann::json& definition, const nlohmann::json* market);

// Texts and files: JSON when the text starts with '{', YAML otherwise. An empty market text or
// path means no market.
BookedProduct BookProductFromText(const std::string& definition, const std::string& market);
BookedProduct BookProductFromFiles(const std::string& definitionPath, const std::string& marketPath);

}  // namespace zep
