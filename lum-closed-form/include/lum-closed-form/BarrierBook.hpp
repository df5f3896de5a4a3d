// A book of Black-Scholes barrier options priced in one pass from arrays of terms. Rows the
// pricer would refuse come out as NaN so that one bad line does not stop the book. Large books
// are split over two threads.
#pragma once

#include <span>

namespace zep {

// One array per input, all of the same length. Option types 0 call, 1 put; barrier types as
// EuropeanBarrierBS (2 to 7). `barriers` holds the single barrier, or the lower level of a
// corridor whose upper level is in `upperBarriers` (read for types 6 and 7 only).
struct BarrierBookInputs {
    std::span<const double> optionTypes;
    std::span<const double> barrierTypes;
    std::span<const double> strikes;
    std::span<const double> barriers;
    std::span<const double> upperBarriers;
    std::span<const double> volatilities;
    std::span<const double> timesToExpiry;
    std::span<const double> timesToDelivery;
    std::span<const double> domesticRates;
    std::span<const double> foreignRates;
    std::span<const double> spots;
};

void PriceBarrierBook(const BarrierBookInputs& book, std::span<double> prices);

}  // namespace zep
