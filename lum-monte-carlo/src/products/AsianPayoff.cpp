#include "lum-monte-carlo/products/AsianPayoff.hpp"

#include <algorithm>
#include <cmath>

#include "lum-monte-carlo/products/ScriptLines.hpp"
#include "lum-monte-carlo/products/TermChecks.hpp"

namespace zep {

namespace {

const std::string kType = "AsianPayoff";

}  // namespace

AsianPayoff::AsianPayoff(AsianPayoffTerms terms) : m_terms(std::move(terms)) {
    const AsianPayoffTerms& t = m_terms;
    CheckSchedule(kType, "fixing_dates", t.fixingDates);
    CheckChoice(kType, "average", t.average, {"arithmetic", "geometric"});
    CheckChoice(kType, "averaged", t.averaged, {"price", "strike"});
    CheckChoice(kType, "option_type", t.optionType, {"call", "put"});
    if (t.averaged == "price") CheckPositive(kType, "strike", t.strike);
    for (const auto& [date, level] : t.pastFixings) {
        if (std::find(t.fixingDates.begin(), t.fixingDates.end(), date) == t.fixingDates.end())
            BadTerm(kType, "past_fixings." + date.ToString(), "is not one of the fixing dates");
        CheckPositive(kType, "past_fixings." + date.ToString(), level);
    }
    if (t.pastFixings.size() == t.fixingDates.size())
        BadTerm(kType, "past_fixings", "fixes every date: the payoff is known, there is nothing to simulate");
}

std::vector<ProductEvent> AsianPayoff::EventsFrom(const Date& today) const {
    for (const auto& [date, level] : m_terms.pastFixings)
        if (date > today)
            BadTerm(kType, "past_fixings." + date.ToString(), "is after the valuation date " + today.ToString());
    for (const Date& date : m_terms.fixingDates)
        if (date < today && !m_terms.pastFixings.contains(date))
            BadTerm(kType, "past_fixings", "has no level for the fixing of " + date.ToString() + ", before the valuation date " +
                                               today.ToString());
    return Events();
}

std::string AsianPayoff::Payoff() const {
    const AsianPayoffTerms& t = m_terms;
    const std::string average =
        t.average == "geometric" ? "AVERAGE = PRODUCT" : "AVERAGE = SUM / " + std::to_string(t.fixingDates.size());
    const bool call = t.optionType == "call";
    const std::string base = t.averaged == "price" ? "AVERAGE" : "SPOT()";
    const std::string other = t.averaged == "price" ? Num(t.strike) : "AVERAGE";
    return ScriptLines()
        .Line(average)
        .Line("PAYOFF PAYS MAX(" + (call ? base + " - " + other : other + " - " + base) + ", 0)")
        .Text();
}

std::map<std::string, double> AsianPayoff::Levels() const {
    if (m_terms.averaged == "strike") return {};
    return {{"Strike", m_terms.strike}};
}

std::vector<ProductEvent> AsianPayoff::Events() const {
    const AsianPayoffTerms& t = m_terms;
    const bool geometric = t.average == "geometric";
    const double weight = 1.0 / static_cast<double>(t.fixingDates.size());
    // The known fixings enter as one starting value: their sum, or their weighted product.
    double known = geometric ? 1.0 : 0.0;
    for (const auto& [date, level] : t.pastFixings) known = geometric ? known * std::pow(level, weight) : known + level;
    const std::string fixing = geometric ? "PRODUCT = PRODUCT * SPOT()^" + Num(weight) : "SUM = SUM + SPOT()";
    std::vector<ProductEvent> events;
    for (std::size_t i = 0; i < t.fixingDates.size(); ++i) {
        const Date& date = t.fixingDates[i];
        if (t.pastFixings.contains(date)) continue;
        std::string code;
        if (events.empty()) code = (geometric ? "PRODUCT = " : "SUM = ") + Num(known) + "\n";
        code += fixing + "\n";
        std::string comment = "fixing " + std::to_string(i + 1) + " of " + std::to_string(t.fixingDates.size());
        if (i + 1 == t.fixingDates.size()) {
            code += Payoff();
            comment += ", then the " + t.average + " average-" + t.averaged + " " + t.optionType + " pays";
        }
        events.push_back({date, comment, code});
    }
    return events;
}

}  // namespace zep
