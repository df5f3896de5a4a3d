// The JSON Schemas of the product definitions, one per product type, and of the market files.
// They are the files of lum-monte-carlo/data/schemas/, compiled into the library (and shipped
// beside the Python package as zep/data/schemas/).
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace zep {

// "AutoCall", "Snowball", ..., "Market": the schema of that name; raises for any other name.
const nlohmann::json& ProductSchema(const std::string& name);
std::vector<std::string> ProductSchemaNames();

}  // namespace zep
