// A Bermudan swaption under Hull-White: on each exercise date the holder may enter the swap's
// remaining periods (those starting on or after that date). Valued by backward induction on the
// trinomial tree, the exercise value at each node read from the model's bond prices in that
// node's state; the same induction gives the exercise boundary.
#pragma once

#include <cstddef>
#include <vector>

#include "lum-interest-rates/HullWhiteSwap.hpp"
#include "lum-interest-rates/HullWhiteTree.hpp"

namespace zep {

class BermudanSwaption {
public:
    // Exercise times in years (after today, each with a period starting then or later).
    BermudanSwaption(const HullWhite& model, HullWhiteSwap swap, std::vector<double> exerciseTimes,
                     std::size_t steps = 200);

    double PV() const;
    // For each exercise time, the par rate of the swap then entered from which exercising pays:
    // the lowest at any exercising node for a payer, the highest for a receiver; +inf (payer) or
    // -inf (receiver) when no node of that date exercises. Waiting is worth something until the
    // last date, so a payer's boundary lies above the strike and a receiver's below it.
    std::vector<double> ExerciseBoundary() const;
    // Each exercise date alone, in closed form: the European swaptions the Bermudan dominates.
    std::vector<double> EuropeanPVs() const;
    const std::vector<double>& ExerciseTimes() const { return m_exerciseTimes; }

private:
    // Backward induction; `boundary`, when given, receives the factor x of each date's
    // exercising node nearest the money.
    double Induce(std::vector<double>* boundary) const;

    HullWhite m_model;
    HullWhiteSwap m_swap;
    std::vector<double> m_exerciseTimes;
    HullWhiteTree m_tree;
    std::vector<SwapExerciseValue> m_exerciseValues;  // one per exercise time
    std::vector<std::size_t> m_exerciseLevels;
};

}  // namespace zep
