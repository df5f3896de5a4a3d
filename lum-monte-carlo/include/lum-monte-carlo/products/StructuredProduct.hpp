// A structured product booked by its term sheet: it checks its terms when built and writes the
// payoff script that prices it with XScriptStructure. The script works in units of the
// notional: every variable that receives PAYS holds a present value per unit, and the price is
// the mean of PAYOFF.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "lum-monte-carlo/XScriptStructure.hpp"
#include "lum-time/Date.hpp"

namespace zep {

// The script one event date runs, with a one-line comment saying what happens on that date.
struct ProductEvent {
    Date date;
    std::string comment;
    std::string code;  // in the script printer's canonical layout
};

class StructuredProduct {
public:
    virtual ~StructuredProduct() = default;

    virtual std::string TypeName() const = 0;
    // In date order; several events on one date run in the order listed.
    virtual std::vector<ProductEvent> Events() const = 0;
    // The levels a reader wants beside the simulated paths (barriers, strikes), in spot units.
    virtual std::map<std::string, double> Levels() const = 0;

    // The whole script as a reader sees it: each date's comment as a "#" line, then its code.
    std::string Script() const;
    // The script as priced at a valuation date (EventsFrom).
    std::string Script(const Date& today) const;
    // The market and simulation settings of `market` with this product's event dates and scripts.
    // Raises when the valuation date falls after a date the product still has to observe.
    XScriptInputs Inputs(XScriptInputs market) const;
    // The events still to run at the valuation date; by default every event, all on or after it.
    virtual std::vector<ProductEvent> EventsFrom(const Date& today) const;
};

// The message of a term that fails its check: "<Type>: field '<path>' <problem>".
[[noreturn]] void BadTerm(const std::string& type, const std::string& path, const std::string& problem);
std::string IndexedPath(const std::string& field, std::size_t index);
// "(value)", the offending value quoted in a message.
std::string InParentheses(const std::string& value);
// The events of a note already started: its first event (the strike, which sets the note's
// state) moves to the first event on or after `today`, the events before are dropped (the note
// was not redeemed then, or it would not be priced).
std::vector<ProductEvent> StartedOn(std::vector<ProductEvent> events, const Date& today, const std::string& type);
// Sorted by date; events of one date keep their order.
std::vector<ProductEvent> InDateOrder(std::vector<ProductEvent> events);

}  // namespace zep
