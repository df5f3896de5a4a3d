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

namespace {

// A run of dates with the same script (the daily checks of a barrier) is listed once.
std::string Listing(const std::string& type, const std::vector<ProductEvent>& events) {
    std::string text = "# " + type + "\n";
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

}  // namespace

std::string StructuredProduct::Script() const { return Listing(TypeName(), Events()); }

std::string StructuredProduct::Script(const Date& today) const { return Listing(TypeName(), EventsFrom(today)); }

std::vector<ProductEvent> StartedOn(std::vector<ProductEvent> events, const Date& today, const std::string& type) {
    if (events.front().date >= today) return events;
    const auto next = std::find_if(events.begin(), events.end(), [&](const ProductEvent& e) { return e.date >= today; });
    if (next == events.end())
        throw std::invalid_argument(type + ": every date is before the valuation date " + today.ToString() + ": the product has matured");
    next->comment = "the note's state at the valuation date, then " + next->comment;
    next->code = events.front().code + next->code;
    events.erase(events.begin(), next);
    return events;
}

std::vector<ProductEvent> StructuredProduct::EventsFrom(const Date& today) const {
    std::vector<ProductEvent> events = Events();
    for (const ProductEvent& event : events)
        if (event.date < today)
            throw std::invalid_argument(TypeName() + ": the event of " + event.date.ToString() +
                                        " is before the valuation date " + today.ToString());
    return events;
}

XScriptInputs StructuredProduct::Inputs(XScriptInputs market) const {
    const std::vector<ProductEvent> events = EventsFrom(market.today);
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
