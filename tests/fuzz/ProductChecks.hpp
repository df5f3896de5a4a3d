// What a loaded product definition owes its author, for the JSON and YAML fuzz targets: a
// product that builds describes itself (its valuation date and path count), and the scripts
// read every field under its upper-cased name with exactly the value the definition gives.
#pragma once

#include <cmath>
#include <cstring>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "lum-monte-carlo/XScriptStructure.hpp"
#include "lum-monte-carlo/script/ScriptPathEvaluator.hpp"
#include "lum-monte-carlo/script/ScriptProduct.hpp"

namespace zep::fuzz {

// Field values by upper-cased name, as the definition's own parser reads them; empty when
// two names differ only in case (the scripts cannot tell them apart).
using FieldValues = std::map<std::string, double>;

inline std::string UpperCased(std::string name) {
    for (char& c : name)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return name;
}

inline void RequireDescribed(const XScriptInputs& inputs) {
    const auto product = Attempt([&] { return std::make_unique<XScriptStructure>(inputs); });
    if (!product) return;
    const std::string description = (*product)->Description();
    for (const std::string& part : {"today=" + inputs.today.ToString(),
                                    "numSimulations: " + std::to_string(inputs.numSimulations)})
        ZEP_FUZZ_REQUIRE(description.find(part) != std::string::npos,
                         "the description lacks '" + part + "':\n" + description);
}

// Fields are assignments, one line each, at the start of the first event's script; run alone
// they leave each field's value in its variable.
inline void RequireFieldsRead(const XScriptInputs& inputs, const FieldValues& fields) {
    if (fields.empty()) return;
    std::istringstream script(inputs.eventScripts.front());
    std::string assignments, line;
    for (std::size_t i = 0; i < fields.size() && std::getline(script, line); ++i) assignments += line + "\n";
    const ScriptProduct product({inputs.eventDates.front()}, {assignments});
    ScriptPathEvaluator evaluator(product);
    std::vector<double> values(product.VariableCount());
    const ScenarioPoint point{100.0, 1.0};
    evaluator.EvaluateTree({&point, 1}, values);
    for (const auto& [name, expected] : fields) {
        double value = std::nan("");
        for (std::size_t i = 0; i < values.size(); ++i)
            if (product.VariableNames()[i] == name) value = values[i];
        const bool same = std::isnan(expected) ? std::isnan(value) : std::memcmp(&value, &expected, sizeof value) == 0;
        ZEP_FUZZ_REQUIRE(same, "field " + name + " = " + std::to_string(expected) + " reaches the scripts as " +
                                   std::to_string(value) + ":\n" + assignments);
    }
}

}  // namespace zep::fuzz
