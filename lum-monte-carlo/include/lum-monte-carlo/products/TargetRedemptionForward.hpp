// An FX target redemption forward, per unit of foreign notional on each fixing: the holder buys
// one unit at the strike K on every fixing date while the forward lives, so each fixing settles
// AMOUNT = SPOT() - K, times the leverage when the spot fixes below the pivot (the loss side,
// with the pivot at or below the strike). Gains count toward the target: by amount (the sum of
// the positive settlements) or by count (the number of fixings that gain). The fixing that
// reaches the target ends the forward and settles in full, partially (only the part of the gain
// up to the target; amount targets only) or not at all.
#pragma once

#include <string>
#include <vector>

#include "lum-monte-carlo/products/StructuredProduct.hpp"

namespace zep {

struct TargetRedemptionForwardTerms {
    std::vector<Date> fixingDates;
    double strike = 0.0;
    double pivot = 0.0;     // 0: at the strike
    double leverage = 1.0;  // on the loss side
    double targetAmount = 0.0;  // exactly one of the two targets is set (positive)
    int targetCount = 0;
    std::string lastGain = "full";  // "full", "partial" or "none"
};

class TargetRedemptionForward : public StructuredProduct {
public:
    // `start`: the fixings must come after it (the trade date).
    TargetRedemptionForward(TargetRedemptionForwardTerms terms, const Date& start);
    std::string TypeName() const override { return "TargetRedemptionForward"; }
    std::vector<ProductEvent> Events() const override;
    std::map<std::string, double> Levels() const override;
    const TargetRedemptionForwardTerms& Terms() const { return m_terms; }

private:
    std::string Fixing() const;

    TargetRedemptionForwardTerms m_terms;
};

}  // namespace zep
