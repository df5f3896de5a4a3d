// Product definitions written as JSON (ProductDefinitionFromText with a text starting with '{';
// other texts are the YAML target's). What loads builds a product that describes itself, and
// its scripts see the fields with the values the JSON gives (ProductChecks.hpp).
#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <string>

#include <nlohmann/json.hpp>

#include "ProductChecks.hpp"
#include "lum-monte-carlo/ProductDefinition.hpp"

namespace {

zep::fuzz::FieldValues Fields(const nlohmann::json& definition) {
    zep::fuzz::FieldValues fields;
    for (const auto& [name, value] : definition.at("fields").items())
        if (!fields.emplace(zep::fuzz::UpperCased(name), value.get<double>()).second) return {};
    return fields;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto first = std::find_if(text.begin(), text.end(), [](unsigned char c) { return !std::isspace(c); });
    if (first == text.end() || *first != '{') return 0;
    const auto inputs = zep::fuzz::Attempt([&] { return zep::ProductDefinitionFromText(text); });
    if (!inputs) return 0;
    zep::fuzz::RequireDescribed(*inputs);
    const nlohmann::json definition = nlohmann::json::parse(text);
    if (definition.contains("fields")) zep::fuzz::RequireFieldsRead(*inputs, Fields(definition));
    return 0;
}
