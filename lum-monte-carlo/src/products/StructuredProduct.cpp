#include "lum-monte-carlo/products/StructuredProduct.hpp"

#include <algorithm>
#include <stdexcept>

namespace zep {

void BadTerm(const std::string& type, const std::string& path, const std::string& problem) {
    throw std::invalid_argument(type + ": field '" + path + "' " + problem);
}

std::string IndexedPath(const std::string& field, std::size_t index) {
    return field + "[" + std::to_string(index) + "]";
}

std::string InParentheses(const std::string& value) { return std::string(1, '(').append(value).append(1, ')'); }

std::vector<ProductEvent> InDateOrder(std::vector<ProductEvent> events) {
    std::stable_sort(events.begin(), events.end(), [](const ProductEvent& a, const ProductEvent& b) { return a.date < b.date; });
    return events;
}

std::string StructuredProduct::Script() const {
    // A run of dates with the same script (the daily checks of a barrier) is listed once.
    const std::vector<ProductEvent> events = Events();
    std::string text = "# " + TypeName() + "\n";
    for (std::size_t first = 0, last = 0; first < events.size(); first = last + 1) {
        last = first;
        while (last + 1 < events.size() && events[last + 1].code == events[first].code &&
               events[last + 1].comment == events[first].comment)
            ++last;
        const std::string dates = last == first ? events[first].date.ToString()
                                                : events[first].date.ToString() + " to " + events[last].date.ToString() + " (" +
                                                      std::to_string(last - first + 1) + " dates)";
        text += "\n# " + dates + ": " + events[first].comment + "\n" + events[first].code;
    }
    return text;
}

void StructuredProduct::CheckValuationDate(const Date& today, const std::vector<ProductEvent>& events) const {
    for (const ProductEvent& event : events)
        if (event.date < today)
            throw std::invalid_argument(TypeName() + ": the event of " + event.date.ToString() +
                                        " is before the valuation date " + today.ToString());
}

XScriptInputs StructuredProduct::Inputs(XScriptInputs market) const {
    const std::vector<ProductEvent> events = Events();
    CheckValuationDate(market.today, events);
    market.eventDates.clear();
    market.eventScripts.clear();
    for (const ProductEvent& event : events) {
        if (!market.eventDates.empty() && market.eventDates.back() == event.date) {
            market.eventScripts.back() += event.code;
        } else {
            market.eventDates.push_back(event.date);
            market.eventScripts.push_back(event.code);
        }
    }
    market.priceVariable = "PAYOFF";
    return market;
}

}  // namespace zep
