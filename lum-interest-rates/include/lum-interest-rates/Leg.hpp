// A stream of coupons on a schedule: fixed, floating on a term index (fixed in advance or in
// arrears), or compounding an overnight index day by day (with lookback, lockout and observation
// shift), on a notional that may amortise or, on a mark-to-market cross-currency leg, reset to
// the FX rate each period, with or without the exchange of that notional.
// A leg receives what it pays: signs belong to the instrument that holds it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lum-interest-rates/CashFlow.hpp"
#include "lum-interest-rates/FXForward.hpp"
#include "lum-interest-rates/FixingStore.hpp"
#include "lum-interest-rates/YieldCurve.hpp"
#include "lum-time/Calendar.hpp"
#include "lum-time/Schedule.hpp"

namespace zep {

enum class CouponKind : std::int32_t { Fixed = 0, Floating = 1, Overnight = 2 };

struct LegTerms {
    CouponKind kind = CouponKind::Fixed;
    std::vector<double> notionals{1.0};  // one for every period, or one per period (amortising)
    double fixedRate = 0.0;
    std::string index;                   // floating and overnight legs: the index of the fixings
    Period indexTenor = Period(6, Months);  // in arrears: the index period starts at the accrual end
    double spread = 0.0;
    double gearing = 1.0;
    bool inArrears = false;
    bool exchangeNotional = false;
    std::int32_t lookbackDays = 0;       // overnight: rates observed this many business days earlier
    std::int32_t lockoutDays = 0;        // overnight: the last days repeat the rate before them
    bool observationShift = false;       // overnight: weights from the observation period
    // Mark-to-market cross-currency leg: from the second period on, the notional is
    // `resetNotional` units of the other currency at the FX rate fixed for the period's start
    // (published under `resetIndex`, the forward until then), the change exchanged as it resets.
    std::string resetIndex;              // empty: the notional does not reset
    double resetNotional = 0.0;
    bool resetRateInverted = false;      // the rate quotes the other currency per unit of this one
};

// The market one leg is valued in: the curve that discounts it, the curve its index is read
// from, past fixings, and the rate that converts its currency into the reporting one.
struct LegMarket {
    const YieldCurve* discount = nullptr;
    const YieldCurve* projection = nullptr;
    const FixingStore* fixings = nullptr;
    double fxRate = 1.0;
    // The pair a resetting leg's FX rate quotes (its fixings quote the same way).
    const FXMarket* resetFX = nullptr;
};

class Leg {
public:
    Leg(const Schedule& schedule, LegTerms terms, const Calendar& calendar);

    // Sum of the discounted flows paid after the discount curve's reference date.
    double PV(const LegMarket& market) const;
    // d PV / d coupon rate: the discounted accrual of the coupons still to pay, per unit rate.
    double Annuity(const LegMarket& market) const;
    std::vector<CashFlow> CashFlows(const LegMarket& market) const;

    const LegTerms& Terms() const { return m_terms; }
    // The rate a par quote moves: the fixed rate of a fixed leg, the spread of a floating one.
    double QuotedCoupon() const { return m_terms.kind == CouponKind::Fixed ? m_terms.fixedRate : m_terms.spread; }
    Date StartDate() const { return m_coupons.front().accrualStart; }
    Date EndDate() const { return m_coupons.back().accrualEnd; }

private:
    struct Coupon {
        Date accrualStart, accrualEnd, payment, fixing;
        Date indexStart, indexEnd;  // the period a term index rate is read over
        double accrualFraction = 0.0, indexFraction = 0.0, notional = 0.0;
        std::size_t firstObservation = 0, endObservation = 0;  // overnight: range in m_observations
        std::uint32_t indexStartSlot = 0, indexEndSlot = 0, paymentSlot = 0;  // positions in m_dates
    };
    class Factors;
    // One day of an overnight coupon: the rate of [rateStart, rateEnd] accrues for `weight`.
    struct Observation {
        Date rateStart, rateEnd;
        double rateFraction = 0.0, weight = 0.0;
    };

    void AddObservations(Coupon& coupon, const Calendar& calendar, const DayCounter& dayCounter);
    void IndexDates();
    double IndexRate(const Coupon& coupon, const LegMarket& market, const Factors& projection) const;
    double OvernightRate(const Coupon& coupon, const LegMarket& market) const;
    double CouponRate(const Coupon& coupon, const LegMarket& market, const Factors& projection) const;
    bool ResetsNotional() const { return !m_resetFixings.empty(); }
    // The notional coupon `i` accrues on: as given, or reset to the FX rate of its start.
    double NotionalOf(std::size_t i, const LegMarket& market) const {
        return ResetsNotional() && i > 0 ? ResetNotional(i, market) : m_coupons[i].notional;
    }
    double ResetNotional(std::size_t i, const LegMarket& market) const;
    void RequireMarket(const LegMarket& market, bool needsProjection) const;
    // Calls visit(coupon or null for a notional exchange, payment, notional, rate, amount,
    // discount factor) for every flow paid after the valuation date: the one walk PV and
    // CashFlows share.
    template <class Visit>
    void ForEachFlow(const LegMarket& market, Visit&& visit) const;

    LegTerms m_terms;
    std::string m_centres;
    std::vector<Coupon> m_coupons;
    std::vector<Observation> m_observations;
    std::vector<Date> m_dates;  // every accrual, index and payment date of the coupons, sorted, once each
    std::vector<Date> m_resetFixings;  // a resetting leg: when each period's FX rate fixes; else empty
};

}  // namespace zep
