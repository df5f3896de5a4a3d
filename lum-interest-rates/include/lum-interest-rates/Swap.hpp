// A swap: one leg received, one paid. A fixed leg against a term-rate leg is the vanilla swap,
// against an overnight leg the OIS; two floating legs make a basis swap; legs in two currencies
// with their notionals exchanged, valued at their own curves and converted at spot, make a
// cross-currency swap. Par quotes solve the received or the paid leg's coupon for a zero PV.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lum-interest-rates/Leg.hpp"

namespace zep {

enum class SwapSide : std::int32_t { Receive = 0, Pay = 1 };

class Swap {
public:
    Swap(Leg received, Leg paid);

    // The received leg's PV less the paid leg's, each in its own market.
    double PV(const LegMarket& receivedMarket, const LegMarket& paidMarket) const;
    // The coupon of one leg (its fixed rate, or its spread) that makes the PV zero.
    double ParCoupon(SwapSide side, const LegMarket& receivedMarket, const LegMarket& paidMarket) const;
    // ParCoupon of the fixed leg; fails when neither leg is fixed.
    double ParRate(const LegMarket& receivedMarket, const LegMarket& paidMarket) const;
    const Leg& LegOn(SwapSide side) const { return side == SwapSide::Receive ? m_received : m_paid; }
    // Rows of both legs with the paid leg's amounts negative, received first.
    std::vector<CashFlow> CashFlows(const LegMarket& receivedMarket, const LegMarket& paidMarket) const;
    std::string Describe() const;

private:
    Leg m_received;
    Leg m_paid;
};

}  // namespace zep
