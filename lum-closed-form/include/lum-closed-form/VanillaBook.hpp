// A book of vanilla options priced in one pass: arrays of terms and market inputs in, arrays of
// price and Greeks (or implied volatilities) out. Rows the engine would refuse come out as NaN so
// that one bad line does not stop the book: bad inputs, and rows with a figure beyond double
// precision, where the engine raises. Large books are split over two threads.
#pragma once

#include <span>

namespace zep {

// One array per engine input, all of the same length; option types are 0 (call) or 1 (put).
struct VanillaBookInputs {
    std::span<const double> optionTypes;
    std::span<const double> strikes;
    std::span<const double> timesToExpiry;
    std::span<const double> timesToDelivery;
    std::span<const double> domesticRates;
    std::span<const double> foreignRates;
    std::span<const double> spots;
};

// Fills price, spot delta, gamma, vega (per unit of volatility) and theta (per day) of each row.
void PriceVanillaBook(const VanillaBookInputs& book, std::span<const double> volatilities,
                      std::span<double> prices, std::span<double> deltas, std::span<double> gammas,
                      std::span<double> vegas, std::span<double> thetas);

// Fills the implied volatility of each row's premium (BSVanilla::VolImpliedFromPrice).
void ImpliedVolatilityBook(const VanillaBookInputs& book, std::span<const double> premiums,
                           std::span<double> volatilities, double volatilityLimit = 1e-4);

}  // namespace zep
