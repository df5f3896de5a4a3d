#include "lum-monte-carlo/products/TermChecks.hpp"

#include <algorithm>
#include <cmath>

#include "lum-monte-carlo/products/StructuredProduct.hpp"

namespace zep {

void CheckPositive(const std::string& type, const std::string& field, double value) {
    if (!(std::isfinite(value) && value > 0.0)) BadTerm(type, field, "must be a positive number");
}

void CheckNonNegative(const std::string& type, const std::string& field, double value) {
    if (!(std::isfinite(value) && value >= 0.0)) BadTerm(type, field, "must be a number at least 0");
}

void CheckSchedule(const std::string& type, const std::string& field, const std::vector<Date>& dates,
                   std::optional<Date> after) {
    if (dates.empty()) BadTerm(type, field, "must hold at least one date");
    for (std::size_t i = 0; i < dates.size(); ++i) {
        if (after && !(dates[i] > *after))
            BadTerm(type, IndexedPath(field, i), InParentheses(dates[i].ToString()) + " must be after " + after->ToString());
        after = dates[i];
    }
}

std::vector<double> PerObservation(const std::string& type, const std::string& field, const std::vector<double>& values,
                                   std::size_t observations) {
    if (values.size() != 1 && values.size() != observations)
        BadTerm(type, field, "has " + std::to_string(values.size()) + " values for " + std::to_string(observations) +
                                 " observation dates: give one value, or one per date");
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!std::isfinite(values[i])) BadTerm(type, IndexedPath(field, i), "must be a finite number");
    return values.size() == 1 ? std::vector<double>(observations, values[0]) : values;
}

void CheckChoice(const std::string& type, const std::string& field, const std::string& text,
                 const std::vector<std::string>& choices) {
    if (std::find(choices.begin(), choices.end(), text) != choices.end()) return;
    std::string list;
    for (const std::string& choice : choices) list += (list.empty() ? "'" : ", '") + choice + "'";
    BadTerm(type, field, "is '" + text + "': must be one of " + list);
}

}  // namespace zep
