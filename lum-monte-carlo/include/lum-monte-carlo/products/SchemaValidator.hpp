// Checks a JSON value against a JSON Schema, for the subset of the schema language that the
// shipped product schemas use:
//   type (one name or a list: object, array, string, number, integer, boolean),
//   properties, required, additionalProperties (false, or a schema for every other member),
//   items, minItems, enum, minimum, exclusiveMinimum.
// Annotations ($schema, title, description) are ignored; any other keyword is refused, so a
// schema never silently means more than is checked. The first violation raises
// "<what>: field '<path>' <problem>", the path in the form "observation_dates[2]" or
// "market.spot".
#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace zep {

void ValidateAgainstSchema(const nlohmann::json& value, const nlohmann::json& schema, const std::string& what);

// A definition's value as JSON text for a message. Definitions come from users' files, so bytes
// that are not UTF-8 show as U+FFFD instead of turning the message itself into a failure.
std::string JsonText(const nlohmann::json& value);

}  // namespace zep
