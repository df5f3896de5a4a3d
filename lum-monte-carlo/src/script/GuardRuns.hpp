// The dates of a run of identical guards ("IF SPOT() / S0 < KNOCKIN THEN KI = 1 ENDIF" checked
// every day) that can change the guarded variable, found four dates at a time where the
// processor has AVX2. The run's variables do not change while it is scanned (the guard does not
// read the variable it sets), so each date's compared difference depends on its spot alone and
// is computed exactly as the one-date instruction computes it.
#pragma once

#include <cstddef>

#include "lum-monte-carlo/script/CompiledScript.hpp"

namespace zep::detail {

// The same operations, in the same order, as the tree evaluator applies to these nodes.
inline double Value(const Term& term, double spot, const double* x) {
    const double base = term.fromSpot ? spot : 1.0;
    const double factor = term.variableFactor ? x[term.index] : term.value;
    return term.divides ? base / factor : base * factor;
}

inline double Difference(const TermComparison& comparison, double spot, const double* x) {
    return Value(comparison.left, spot, x) - Value(comparison.right, spot, x);
}

// Which differences pass: > bound, >= bound, == bound, or not below bound (a NaN passes only
// the last: a smoothed comparison of NaN blends, a sharp one fails).
enum class Passing { Above, AtLeast, Equal, NotBelow };

inline bool Passes(Passing rule, double difference, double bound) {
    switch (rule) {
        case Passing::Above: return difference > bound;
        case Passing::AtLeast: return difference >= bound;
        case Passing::Equal: return difference == bound;
        case Passing::NotBelow: return !(difference < bound);
    }
    return false;
}

// The index of the first of the `count` points whose difference passes, or `count`.
std::size_t FirstPassing(Passing rule, double bound, const TermComparison& comparison,
                         const ScenarioPoint* points, std::size_t count, const double* x);

}  // namespace zep::detail
