// Product definitions written as YAML (ProductDefinitionFromText with a text not starting with
// '{'). What loads builds a product that describes itself, and its scripts see the fields with
// the values the YAML gives (ProductChecks.hpp).
#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include <yaml-cpp/yaml.h>

#include "ProductChecks.hpp"
#include "lum-monte-carlo/ProductDefinition.hpp"

namespace {

// The "fields" mapping, when the definition has exactly one (YAML lets a key repeat).
std::optional<YAML::Node> FieldsMapping(const YAML::Node& definition) {
    std::optional<YAML::Node> fields;
    for (const auto& entry : definition) {
        if (entry.first.Scalar() != "fields") continue;
        if (fields) return std::nullopt;
        fields = entry.second;
    }
    return fields;
}

// A YAML scalar is a number when strtod reads all of its text.
zep::fuzz::FieldValues Fields(const YAML::Node& fields) {
    zep::fuzz::FieldValues values;
    for (const auto& field : fields) {
        const std::string text = field.second.Scalar();
        const double value = std::strtod(text.c_str(), nullptr);
        if (!values.emplace(zep::fuzz::UpperCased(field.first.Scalar()), value).second) return {};
    }
    return values;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto first = std::find_if(text.begin(), text.end(), [](unsigned char c) { return !std::isspace(c); });
    if (first != text.end() && *first == '{') return 0;
    const auto inputs = zep::fuzz::Attempt([&] { return zep::ProductDefinitionFromText(text); });
    if (!inputs) return 0;
    zep::fuzz::RequireDescribed(*inputs);
    if (const auto fields = FieldsMapping(YAML::Load(text))) zep::fuzz::RequireFieldsRead(*inputs, Fields(*fields));
    return 0;
}
