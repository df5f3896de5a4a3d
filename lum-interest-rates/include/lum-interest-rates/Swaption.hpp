// A European swaption: the right, on the expiry date, to enter a swap paying (payer) or receiving
// (receiver) the strike on a fixed leg against a term-rate leg. Under a model of the forward swap
// rate F with volatility sigma its value is A * option(F, K, expiry, sigma), A the annuity that
// turns the rate into money at exercise: with physical settlement, the fixed leg's discounted
// accruals; with cash settlement (par yield), the accruals discounted at the swap rate itself,
// sum_i tau_i / (1 + F/m)^i over the m-per-year fixed periods, times the discount factor to the
// swap's start date, where the cash is paid.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lum-closed-form/ForwardOption.hpp"
#include "lum-interest-rates/CashFlow.hpp"
#include "lum-interest-rates/Leg.hpp"

namespace zep {

enum class SwaptionKind : std::int32_t { Payer = 0, Receiver = 1 };
enum class SwaptionSettlement : std::int32_t { Physical = 0, Cash = 1 };

class Swaption {
public:
    // Both legs on `notional`; the floating one reads `index` at par over its accrual periods.
    Swaption(const Schedule& fixedSchedule, const Schedule& floatingSchedule, SwaptionKind kind, double strike,
             double notional, const Date& expiry, SwaptionSettlement settlement, const Calendar& calendar,
             const std::string& index = "IBOR");

    double PV(const LegMarket& market, const RateVolatility& volatility) const;
    // The option as one row: fixed on the expiry, worth PV / D(start) at the swap's start date
    // (the cash paid there, or the value of the swap entered), the forward swap rate as its
    // rate, the swap's dates as its accrual dates, no accrual fraction of its own.
    std::vector<CashFlow> CashFlows(const LegMarket& market, const RateVolatility& volatility) const;
    // The par rate of the underlying swap.
    double ForwardRate(const LegMarket& market) const;
    // The annuity of the settlement: discounted fixed accruals (physical) or the par-yield one (cash).
    double Annuity(const LegMarket& market) const;
    // The underlying payer (receiver) swap's value today: physical annuity * (F - K), signed.
    double ForwardSwapValue(const LegMarket& market) const;
    double ImpliedVolatility(double price, const LegMarket& market, RateVolatilityModel model, double shift = 0.0) const;
    // Years from the discount curve's reference date to expiry, Act/365F.
    double ExpiryTime(const LegMarket& market) const;
    std::string Describe() const;

private:
    double CashAnnuity(const LegMarket& market, double forward) const;
    double AnnuityAt(const LegMarket& market, double forward) const;

    Leg m_fixed;
    Leg m_floating;
    SwaptionKind m_kind;
    SwaptionSettlement m_settlement;
    double m_strike;
    double m_notional;
    Date m_expiry;
    std::vector<double> m_fixedAccruals;
    double m_fixedPerYear;
};

}  // namespace zep
