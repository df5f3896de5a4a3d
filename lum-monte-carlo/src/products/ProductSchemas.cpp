#include "lum-monte-carlo/products/ProductSchemas.hpp"

#include <map>
#include <stdexcept>
#include <string_view>

namespace zep {

// The schema files' texts, compiled in by the build (ProductSchemaTexts.cpp.in).
const std::map<std::string, std::string_view>& ProductSchemaTexts();

namespace {

const std::map<std::string, nlohmann::json>& Parsed() {
    static const std::map<std::string, nlohmann::json> schemas = [] {
        std::map<std::string, nlohmann::json> parsed;
        for (const auto& [name, text] : ProductSchemaTexts()) parsed[name] = nlohmann::json::parse(text);
        return parsed;
    }();
    return schemas;
}

}  // namespace

const nlohmann::json& ProductSchema(const std::string& name) {
    const auto found = Parsed().find(name);
    if (found == Parsed().end()) throw std::invalid_argument("no schema named '" + name + "'");
    return found->second;
}

std::vector<std::string> ProductSchemaNames() {
    std::vector<std::string> names;
    for (const auto& [name, schema] : Parsed()) names.push_back(name);
    return names;
}

}  // namespace zep
