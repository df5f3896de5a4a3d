// Checks shared by the term sheets of the product classes. Each raises "<Type>: field '<path>'
// <problem>" for the first term at fault.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lum-time/Date.hpp"

namespace zep {

void CheckPositive(const std::string& type, const std::string& field, double value);
void CheckNonNegative(const std::string& type, const std::string& field, double value);
// Strictly increasing, at least one, every date after `after` when given.
void CheckSchedule(const std::string& type, const std::string& field, const std::vector<Date>& dates,
                   std::optional<Date> after = std::nullopt);
// A level per observation: one value applies to every observation, otherwise one per date.
std::vector<double> PerObservation(const std::string& type, const std::string& field, const std::vector<double>& values,
                                   std::size_t observations);
// `text` must be one of `choices`.
void CheckChoice(const std::string& type, const std::string& field, const std::string& text,
                 const std::vector<std::string>& choices);

}  // namespace zep
