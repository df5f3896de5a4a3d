#include "lum-closed-form/BarrierBook.hpp"

#include <limits>

#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/ParallelRange.hpp"
#include "lum-closed-form/EuropeanBarrierBS.hpp"

namespace zep {

namespace {

double PriceRow(const BarrierBookInputs& b, std::size_t i) noexcept {
    try {
        const int optionType = static_cast<int>(b.optionTypes[i]);
        const int barrierType = static_cast<int>(b.barrierTypes[i]);
        if (optionType != b.optionTypes[i] || barrierType != b.barrierTypes[i])
            return std::numeric_limits<double>::quiet_NaN();
        const bool corridor = barrierType == static_cast<int>(BarrierType::DOUBLE_KNOCK_IN) ||
                              barrierType == static_cast<int>(BarrierType::DOUBLE_KNOCK_OUT);
        if (corridor)
            return EuropeanBarrierBS(optionType, barrierType, b.strikes[i], b.barriers[i], b.upperBarriers[i],
                                     b.volatilities[i], b.timesToExpiry[i], b.timesToDelivery[i], b.domesticRates[i],
                                     b.foreignRates[i], b.spots[i])
                .Price();
        return EuropeanBarrierBS(optionType, barrierType, b.strikes[i], b.barriers[i], b.volatilities[i],
                                 b.timesToExpiry[i], b.timesToDelivery[i], b.domesticRates[i], b.foreignRates[i],
                                 b.spots[i])
            .Price();
    } catch (...) {
        return std::numeric_limits<double>::quiet_NaN();
    }
}

}  // namespace

void PriceBarrierBook(const BarrierBookInputs& book, std::span<double> prices) {
    const std::size_t n = prices.size();
    for (const auto& column : {book.optionTypes, book.barrierTypes, book.strikes, book.barriers, book.upperBarriers,
                               book.volatilities, book.timesToExpiry, book.timesToDelivery, book.domesticRates,
                               book.foreignRates, book.spots})
        ZEP_REQUIRE(column.size() == n, "PriceBarrierBook: every column must have the length of the book");
    ForEachHalf(n, 4096, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) prices[i] = PriceRow(book, i);
    });
}

}  // namespace zep
