#include "lum-interest-rates/Leg.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "FailureText.hpp"
#include "lum-interest-rates/CurveBootstrap.hpp"
#include "lum-interest-rates/Swap.hpp"

namespace zep {
namespace {

Date D(const char* text) { return Date(std::string(text)); }

YieldCurve SlopedCurve() {
    std::vector<Date> dates{D("2024-01-15"), D("2025-01-15"), D("2027-01-15"), D("2034-01-15"), D("2044-01-15")};
    return YieldCurve(D("2024-01-15"), dates, std::vector<double>{0.030, 0.031, 0.029, 0.033, 0.035}, Continuous,
                      DayCounter(Act365Fixed));
}

Schedule LegSchedule(const char* start, const char* end, const char* tenor, DayCounter dayCounter = DayCounter(Act360)) {
    ScheduleRules rules;
    rules.tenor = Period(std::string(tenor));
    rules.centres = "TARGET";
    rules.dayCounter = dayCounter;
    return Schedule(D(start), D(end), rules, Calendar::Shared());
}

LegTerms Floating(CouponKind kind = CouponKind::Floating) {
    LegTerms terms;
    terms.kind = kind;
    terms.index = "EURIBOR6M";
    return terms;
}

// One curve that projects and discounts: each coupon pays DF(s)/DF(e) - 1 at e, so the leg
// telescopes to DF(start) - DF(end) per unit notional.
TEST(FloatingLeg, WithoutSpreadIsWorthParOnItsOwnCurve) {
    const YieldCurve curve = SlopedCurve();
    for (CouponKind kind : {CouponKind::Floating, CouponKind::Overnight}) {
        const Leg leg(LegSchedule("2024-03-15", "2029-03-15", kind == CouponKind::Floating ? "6M" : "1Y"), Floating(kind),
                      Calendar::Shared());
        const double par = curve.DiscountFactor(leg.StartDate()) - curve.DiscountFactor(leg.EndDate());
        EXPECT_NEAR(leg.PV({&curve, &curve}), par, 1e-13) << static_cast<int>(kind);
    }
}

TEST(FloatingLeg, NotionalExchangeMakesItWorthNothingAtPar) {
    const YieldCurve curve = SlopedCurve();
    LegTerms terms = Floating();
    terms.exchangeNotional = true;
    const Leg leg(LegSchedule("2024-03-15", "2029-03-15", "3M"), terms, Calendar::Shared());
    EXPECT_NEAR(leg.PV({&curve, &curve}), 0.0, 1e-13);
}

TEST(FloatingLeg, ASpreadAddsItsAnnuity) {
    const YieldCurve curve = SlopedCurve();
    LegTerms terms = Floating();
    const Leg plain(LegSchedule("2024-03-15", "2034-03-15", "3M"), terms, Calendar::Shared());
    terms.spread = 0.0025;
    const Leg spread(LegSchedule("2024-03-15", "2034-03-15", "3M"), terms, Calendar::Shared());
    EXPECT_NEAR(spread.PV({&curve, &curve}) - plain.PV({&curve, &curve}), 0.0025 * plain.Annuity({&curve, &curve}), 1e-14);
}

TEST(FloatingLeg, AMissingPastFixingNamesTheIndexAndTheDate) {
    const YieldCurve curve = SlopedCurve();
    const Leg leg(LegSchedule("2023-10-17", "2025-10-17", "6M"), Floating(), Calendar::Shared());
    EXPECT_EQ(testing::ErrorMessage([&] { leg.PV({&curve, &curve}); }), "Missing fixing of index 'EURIBOR6M' on 13/10/2023.");
    FixingStore fixings;
    fixings.Add("EURIBOR6M", D("2023-10-13"), 0.04);
    const auto rows = leg.CashFlows({&curve, &curve, &fixings});
    EXPECT_DOUBLE_EQ(rows.front().rate, 0.04);
    EXPECT_DOUBLE_EQ(rows.front().amount, 0.04 * rows.front().accrualFraction);
}

TEST(OvernightLeg, ALockoutRepeatsTheLastObservedRate) {
    const YieldCurve curve = SlopedCurve();
    LegTerms terms = Floating(CouponKind::Overnight);
    terms.index = "ESTR";
    const Leg plain(LegSchedule("2024-03-15", "2024-06-15", "3M"), terms, Calendar::Shared());
    terms.lockoutDays = 5;
    terms.lookbackDays = 2;
    const Leg locked(LegSchedule("2024-03-15", "2024-06-15", "3M"), terms, Calendar::Shared());
    // Daily forwards of a smooth curve differ by well under a basis point over a few days: the
    // rate moves by less than that, times the quarter's accrual.
    EXPECT_NEAR(locked.PV({&curve, &curve}), plain.PV({&curve, &curve}), 1e-4 * 0.26);
    EXPECT_NE(locked.PV({&curve, &curve}), plain.PV({&curve, &curve}));
    terms.lockoutDays = 200;
    EXPECT_NE(testing::ErrorMessage([&] { Leg(LegSchedule("2024-03-15", "2024-06-15", "3M"), terms, Calendar::Shared()); })
                  .find("lockout of 200 days"),
              std::string::npos);
}

TEST(Leg, AmortisingNotionalReturnsPrincipalAsItStepsDown) {
    const YieldCurve curve = SlopedCurve();
    LegTerms terms;
    terms.fixedRate = 0.05;
    terms.notionals = {100.0, 75.0, 50.0, 25.0};
    terms.exchangeNotional = true;
    const Leg leg(LegSchedule("2024-03-15", "2026-03-15", "6M"), terms, Calendar::Shared());
    double principal = 0.0;
    for (const CashFlow& row : leg.CashFlows({&curve, &curve}))
        if (row.kind == CashFlowKind::Notional) principal += row.amount;
    EXPECT_DOUBLE_EQ(principal, 0.0);  // -100 at the start, +25 four times
}

// A mark-to-market leg: each period lends the foreign notional at the FX forward of its start and
// is repaid with the period's forward rate, so on its own curve every period is worth nothing.
TEST(Leg, AResettingNotionalFollowsTheFXForwardAndEachPeriodFinancesItself) {
    const YieldCurve domestic = SlopedCurve();
    const YieldCurve foreign(D("2024-01-15"), {D("2024-01-15"), D("2034-01-15")}, std::vector<double>{0.02, 0.024},
                             Continuous, DayCounter(Act365Fixed));
    const FXMarket fx{1.25, D("2024-01-15"), &domestic, &foreign};
    LegTerms terms = Floating();
    terms.notionals = {1.25e6};
    terms.exchangeNotional = true;
    terms.resetIndex = "FX";
    terms.resetNotional = 1e6;
    const Leg leg(LegSchedule("2024-03-15", "2027-03-15", "3M"), terms, Calendar::Shared());
    LegMarket market{&domestic, &domestic};
    market.resetFX = &fx;
    EXPECT_NEAR(leg.PV(market), 0.0, 1e-8);
    int coupon = 0;
    for (const CashFlow& row : leg.CashFlows(market)) {
        if (row.kind != CashFlowKind::Coupon) continue;
        const double forward = 1.25 * foreign.DiscountFactor(row.accrualStart) / domestic.DiscountFactor(row.accrualStart);
        EXPECT_NEAR(row.notional, coupon++ == 0 ? 1.25e6 : 1e6 * forward, 1e-8) << row.accrualStart.ToString();
    }
    EXPECT_EQ(testing::ErrorMessage([&] { leg.PV({&domestic, &domestic}); }),
              "Leg: a leg whose notional resets needs an FX market.");
    terms.notionals = std::vector<double>(12, 1e6);
    EXPECT_EQ(testing::ErrorMessage([&] { Leg(LegSchedule("2024-03-15", "2027-03-15", "3M"), terms, Calendar::Shared()); }),
              "Leg: a leg whose notional resets exchanges one notional, not an amortising one.");
}

// The rate quotes the other currency per unit of the leg's own: the notional divides by it.
TEST(Leg, AnInvertedResetDividesByTheRateAndAPublishedRateMustBePositive) {
    const YieldCurve domestic = SlopedCurve();
    const YieldCurve foreign(D("2024-01-15"), {D("2024-01-15"), D("2034-01-15")}, std::vector<double>{0.02, 0.024},
                             Continuous, DayCounter(Act365Fixed));
    const FXMarket fx{1.25, D("2024-01-15"), &domestic, &foreign};
    LegTerms terms = Floating();
    terms.notionals = {1e6};
    terms.exchangeNotional = true;
    terms.resetIndex = "FX";
    terms.resetNotional = 1.25e6;
    terms.resetRateInverted = true;
    const Leg leg(LegSchedule("2023-09-15", "2025-09-15", "3M"), terms, Calendar::Shared());
    FixingStore fixings;
    fixings.Add("EURIBOR6M", D("2023-09-13"), 0.03);
    fixings.Add("EURIBOR6M", D("2023-12-13"), 0.031);
    fixings.Add("FX", D("2023-12-13"), 1.28);
    LegMarket market{&foreign, &foreign, &fixings};
    market.resetFX = &fx;
    const std::vector<CashFlow> rows = leg.CashFlows(market);
    EXPECT_NEAR(rows.front().notional, 1.25e6 / 1.28, 1e-8);  // the period from 15 Dec 2023, fixed on the 13th
    const CashFlow& next = rows[2];                            // after the coupon and the reset exchange
    EXPECT_NEAR(next.notional, 1.25e6 / (1.25 * foreign.DiscountFactor(next.accrualStart) /
                                         domestic.DiscountFactor(next.accrualStart)), 1e-8);
    fixings.Add("FX", D("2023-12-13"), 0.0);
    EXPECT_EQ(testing::ErrorMessage([&] { leg.PV(market); }), "Leg: the FX fixing of index 'FX' on 13/12/2023 must be positive.");
}

TEST(Leg, RefusesInputsThatMakeNoSense) {
    LegTerms terms;
    terms.notionals = {-1.0};
    EXPECT_EQ(testing::ErrorMessage([&] { Leg(LegSchedule("2024-03-15", "2026-03-15", "6M"), terms, Calendar::Shared()); }),
              "Leg: notional '-1.000000' must be a finite number >= 0.");
    terms.notionals = {1.0, 2.0};
    EXPECT_EQ(testing::ErrorMessage([&] { Leg(LegSchedule("2024-03-15", "2026-03-15", "6M"), terms, Calendar::Shared()); }),
              "Leg: give one notional, or one per period (4).");
    LegTerms floating = Floating();
    floating.index.clear();
    EXPECT_EQ(testing::ErrorMessage([&] { Leg(LegSchedule("2024-03-15", "2026-03-15", "6M"), floating, Calendar::Shared()); }),
              "Leg: a floating leg needs an index name.");
}

// The bootstrap makes each quoted swap worth nothing at its quote: a swap on the same
// conventions must find that quote again as its par rate.
TEST(Swap, ParRateOnItsBootstrapCurveIsTheQuote) {
    std::vector<RateQuote> quotes{{RateInstrument::Deposit, Period(), Period(6, Months), 0.035},
                                  {RateInstrument::Swap, Period(), Period(2, Years), 0.032},
                                  {RateInstrument::Swap, Period(), Period(5, Years), 0.0295},
                                  {RateInstrument::Swap, Period(), Period(10, Years), 0.0301}};
    const CurveBootstrap bootstrap(D("2024-01-15"), quotes, BootstrapConventions(), Calendar::Shared());
    const YieldCurve& curve = *bootstrap.Curve();
    for (const auto& [years, quote] : {std::pair{2, 0.032}, {5, 0.0295}, {10, 0.0301}}) {
        const Date spot = D("2024-01-17");
        const Date end = spot + Period(years, Years);
        LegTerms fixed;
        fixed.fixedRate = quote;
        ScheduleRules rules;
        rules.tenor = Period(1, Years);
        rules.centres = "TARGET";
        rules.dayCounter = DayCounter(Thirty360);
        const Leg fixedLeg(Schedule(spot, end, rules, Calendar::Shared()), fixed, Calendar::Shared());
        rules.tenor = Period(6, Months);
        rules.dayCounter = DayCounter(Act360);
        const Leg floatLeg(Schedule(spot, end, rules, Calendar::Shared()), Floating(), Calendar::Shared());
        const Swap swap(floatLeg, fixedLeg);
        EXPECT_NEAR(swap.ParRate({&curve, &curve}, {&curve, &curve}), quote, 1e-12) << years;
        EXPECT_NEAR(swap.PV({&curve, &curve}, {&curve, &curve}), 0.0, 1e-12) << years;
    }
}

TEST(Swap, ParSpreadOfABasisSwapZeroesIt) {
    const YieldCurve curve = SlopedCurve();
    const YieldCurve other(D("2024-01-15"), std::vector<Date>{D("2024-01-15"), D("2044-01-15")},
                           std::vector<double>{0.032, 0.036}, Continuous, DayCounter(Act365Fixed));
    const Leg threeMonth(LegSchedule("2024-03-15", "2029-03-15", "3M"), Floating(), Calendar::Shared());
    const Leg sixMonth(LegSchedule("2024-03-15", "2029-03-15", "6M"), Floating(), Calendar::Shared());
    const Swap basis(threeMonth, sixMonth);
    const LegMarket received{&curve, &curve}, paid{&curve, &other};
    const double spread = basis.ParCoupon(SwapSide::Receive, received, paid);
    LegTerms withSpread = Floating();
    withSpread.spread = spread;
    const Swap atPar(Leg(LegSchedule("2024-03-15", "2029-03-15", "3M"), withSpread, Calendar::Shared()), sixMonth);
    EXPECT_NEAR(atPar.PV(received, paid), 0.0, 1e-13);
    EXPECT_EQ(testing::ErrorMessage([&] { basis.ParRate(received, paid); }),
              "Swap: neither leg is fixed, so it has a par spread, not a par rate.");
}

}  // namespace
}  // namespace zep
