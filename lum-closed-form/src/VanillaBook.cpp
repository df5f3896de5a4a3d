#include "lum-closed-form/VanillaBook.hpp"

#include <limits>
#include <stdexcept>

#include "lum-auxiliary/ParallelRange.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "VanillaBookLanes.hpp"

namespace zep {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Below these sizes a second thread costs more than it saves.
constexpr std::size_t kPricingRowsForTwoThreads = 20000;
constexpr std::size_t kSolvingRowsForTwoThreads = 500;

void RequireLength(std::span<const double> values, std::size_t rows) {
    if (values.size() != rows) throw std::invalid_argument("book arrays must have the same length");
}
void RequireLength(std::span<double> values, std::size_t rows) {
    RequireLength(std::span<const double>(values), rows);
}

void RequireSameLengths(const VanillaBookInputs& book) {
    const std::size_t rows = book.optionTypes.size();
    for (auto column : {book.strikes, book.timesToExpiry, book.timesToDelivery, book.domesticRates,
                        book.foreignRates, book.spots})
        RequireLength(column, rows);
}

bool IsOptionType(double code) { return code == BSVanilla::Call || code == BSVanilla::Put; }

}  // namespace

void PriceVanillaBook(const VanillaBookInputs& book, std::span<const double> volatilities,
                      std::span<double> prices, std::span<double> deltas, std::span<double> gammas,
                      std::span<double> vegas, std::span<double> thetas) {
    RequireSameLengths(book);
    const std::size_t rows = book.optionTypes.size();
    RequireLength(volatilities, rows);
    for (auto output : {prices, deltas, gammas, vegas, thetas}) RequireLength(output, rows);

    const auto priceRow = [&](std::size_t i) {
        if (!IsOptionType(book.optionTypes[i])) {
            prices[i] = deltas[i] = gammas[i] = vegas[i] = thetas[i] = kNaN;
            return;
        }
        try {
            BSVanilla engine(static_cast<int>(book.optionTypes[i]), book.strikes[i], volatilities[i],
                             book.timesToExpiry[i], book.timesToDelivery[i], book.domesticRates[i],
                             book.foreignRates[i], book.spots[i]);
            prices[i] = engine.Price();
            deltas[i] = engine.Delta();
            gammas[i] = engine.Gamma();
            vegas[i] = engine.Vega();
            thetas[i] = engine.Theta();
        } catch (...) {
            prices[i] = deltas[i] = gammas[i] = vegas[i] = thetas[i] = kNaN;
        }
    };
    const bool lanes = detail::VanillaBookLanesAvailable();
    ForEachHalf(rows, kPricingRowsForTwoThreads, [&](std::size_t begin, std::size_t end) {
        std::size_t i = begin;
        for (; lanes && i + 4 <= end; i += 4) {
            if (!detail::PriceFourRows(book, volatilities, prices, deltas, gammas, vegas, thetas, i))
                for (std::size_t row = i; row < i + 4; ++row) priceRow(row);
        }
        for (; i < end; ++i) priceRow(i);
    });
}

void ImpliedVolatilityBook(const VanillaBookInputs& book, std::span<const double> premiums,
                           std::span<double> volatilities, double volatilityLimit) {
    RequireSameLengths(book);
    const std::size_t rows = book.optionTypes.size();
    RequireLength(premiums, rows);
    RequireLength(volatilities, rows);

    const auto solveRow = [&](std::size_t i) {
        if (!IsOptionType(book.optionTypes[i])) {
            volatilities[i] = kNaN;
            return;
        }
        try {
            volatilities[i] = BSVanilla::VolImpliedFromPrice(
                static_cast<int>(book.optionTypes[i]), book.strikes[i], book.timesToExpiry[i],
                book.timesToDelivery[i], book.domesticRates[i], book.foreignRates[i], book.spots[i],
                premiums[i], volatilityLimit);
        } catch (...) {
            volatilities[i] = kNaN;
        }
    };
    const bool lanes = detail::VanillaBookLanesAvailable();
    ForEachHalf(rows, kSolvingRowsForTwoThreads, [&](std::size_t begin, std::size_t end) {
        std::size_t i = begin;
        for (; lanes && i + 8 <= end; i += 8) {
            const unsigned leftToEngine = detail::SolveEightRows(book, premiums, volatilities, volatilityLimit, i);
            for (std::size_t row = 0; row < 8; ++row)
                if (leftToEngine >> row & 1u) solveRow(i + row);
        }
        for (; i < end; ++i) solveRow(i);
    });
}

}  // namespace zep
