// Private to the vanilla book: Garman-Kohlhagen prices and Greeks, and implied volatilities, of
// four options at once in AVX2 lanes with glibc's vector exp, log and erfc (libmvec, within a few
// ulp of the scalar functions). Built only where that library exists; used only on processors
// with AVX2 and FMA.
#pragma once

#include <cstddef>
#include <span>

#include "lum-closed-form/VanillaBook.hpp"

namespace zep::detail {

bool VanillaBookLanesAvailable();

// Prices rows first .. first + 3 and returns true, or returns false without writing anything when
// one of them is expired or would be refused by the engine: those take the engine's own branches.
bool PriceFourRows(const VanillaBookInputs& book, std::span<const double> volatilities,
                   std::span<double> prices, std::span<double> deltas, std::span<double> gammas,
                   std::span<double> vegas, std::span<double> thetas, std::size_t first);

// The implied volatilities of rows first .. first + 7, landing where the engine's bisection
// (BSVanilla::VolImpliedFromPrice) lands. Returns the rows left unwritten (bit k for row
// first + k): those need the engine's own checks or have no root inside the bracket.
unsigned SolveEightRows(const VanillaBookInputs& book, std::span<const double> premiums,
                        std::span<double> volatilities, double volatilityLimit, std::size_t first);

}  // namespace zep::detail
