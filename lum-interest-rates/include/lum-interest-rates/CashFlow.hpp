// One row of a leg's cash-flow table: the dates that define a payment, what it accrues on, the
// rate it pays, the amount, and the amount discounted to the valuation date. A notional
// exchange is a row with no accrual and no rate. A payment contingent on default (a credit
// default swap's protection) is a Protection row whose discount factor carries the probability
// of the default it pays on.
#pragma once

#include <cstdint>

#include "lum-time/Date.hpp"

namespace zep {

enum class CashFlowKind : std::int32_t { Coupon = 0, Notional = 1, Protection = 2 };

struct CashFlow {
    CashFlowKind kind = CashFlowKind::Coupon;
    Date accrualStart, accrualEnd, fixingDate, paymentDate;
    double accrualFraction = 0.0;
    double notional = 0.0;
    double rate = 0.0;  // the coupon rate: fixed, or gearing * index + spread
    double amount = 0.0;
    double discountFactor = 0.0;
    double presentValue = 0.0;
};

}  // namespace zep
