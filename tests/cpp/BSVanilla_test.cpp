#include <gtest/gtest.h>

#include "ParamNames.hpp"

#include "FailureText.hpp"

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "lum-auxiliary/Error.hpp"
#include "lum-closed-form/BSVanilla.hpp"
#include "lum-closed-form/NormalDistribution.hpp"

namespace zep {
namespace {

struct Market {
    int type;
    double strike, vol, expiry, delivery, rd, rf, spot;

    BSVanilla Engine() const { return BSVanilla(type, strike, vol, expiry, delivery, rd, rf, spot); }
    double Forward() const { return spot * std::exp((rd - rf) * delivery); }
    std::string Describe() const {
        return "type " + std::to_string(type) + " K " + std::to_string(strike) + " vol " +
               std::to_string(vol) + " T " + std::to_string(expiry) + " Td " +
               std::to_string(delivery) + " rd " + std::to_string(rd) + " rf " +
               std::to_string(rf) + " S " + std::to_string(spot);
    }
};

// Seeded random markets; sameTimes makes delivery equal expiry, where the textbook
// derivatives with respect to time and rates hold exactly.
std::vector<Market> RandomMarkets(unsigned seed, bool sameTimes, int count = 40) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::vector<Market> markets;
    for (int i = 0; i < count; ++i) {
        Market m{};
        m.type = i % 2;
        m.spot = 50.0 + 100.0 * unit(generator);
        m.strike = m.spot * (0.7 + 0.6 * unit(generator));
        m.vol = 0.05 + 0.5 * unit(generator);
        m.expiry = 0.1 + 2.9 * unit(generator);
        m.delivery = sameTimes ? m.expiry : m.expiry + 0.05 * unit(generator);
        m.rd = -0.01 + 0.09 * unit(generator);
        m.rf = -0.01 + 0.09 * unit(generator);
        markets.push_back(m);
    }
    return markets;
}

// Central difference of `value` as one field of the market moves by a relative step.
template <class Value>
double Slope(Market m, double Market::*field, Value value, double relativeStep = 1e-5) {
    const double h = relativeStep * std::max(std::fabs(m.*field), 1e-2);
    Market up = m, down = m;
    up.*field += h;
    down.*field -= h;
    return (value(up) - value(down)) / (2.0 * h);
}

double PriceOf(const Market& m) { return m.Engine().Price(); }
double DeltaOf(const Market& m) { return m.Engine().Delta(); }
double VegaOf(const Market& m) { return m.Engine().Vega(); }

void ExpectClose(double actual, double expected, double tolerance, const Market& m) {
    EXPECT_NEAR(actual, expected, tolerance * (1.0 + std::fabs(expected))) << m.Describe();
}

TEST(NormalDistribution, MatchesReferenceValuesWithinTheDocumentedError) {
    // Reference values of the standard normal distribution to 16 digits.
    const struct { double x, cdf; } cases[] = {
        {0.0, 0.5},
        {1.0, 0.8413447460685429},
        {-1.0, 0.15865525393145707},
        {1.96, 0.9750021048517795},
        {3.0, 0.9986501019683699},
        {-5.0, 2.866515718791939e-07},
        {-10.0, 7.619853024160527e-24},
        {-20.0, 2.7536241186062e-89},
        {-37.0, 5.72557122252458e-300},
    };
    for (const auto& c : cases) {
        const double bound = 4e-16 * (1.0 + c.x * c.x);
        EXPECT_NEAR(NormalCdf(c.x) / c.cdf, 1.0, bound) << "x = " << c.x;
    }
    EXPECT_DOUBLE_EQ(NormalPdf(0.0), 0.3989422804014327);
    EXPECT_DOUBLE_EQ(NormalPdf(1.0), 0.24197072451914337);
    EXPECT_DOUBLE_EQ(NormalPdf(-2.0), 0.05399096651318806);
}

TEST(NormalDistribution, IsSymmetricAndTheDensityIsItsSlope) {
    for (double x = -8.0; x <= 8.0; x += 0.37) {
        EXPECT_NEAR(NormalCdf(x) + NormalCdf(-x), 1.0, 2e-16) << x;
        const double h = 1e-5;
        EXPECT_NEAR((NormalCdf(x + h) - NormalCdf(x - h)) / (2 * h), NormalPdf(x), 1e-10) << x;
    }
}

TEST(BSVanilla, MatchesTextbookPricesAtTheMoney) {
    // S = K = 100, 20% vol, one year, 5% rate, no dividend: the classic worked example.
    EXPECT_NEAR(BSVanilla(BSVanilla::Call, 100, 0.2, 1, 1, 0.05, 0, 100).Price(), 10.450583572185565, 1e-12);
    EXPECT_NEAR(BSVanilla(BSVanilla::Put, 100, 0.2, 1, 1, 0.05, 0, 100).Price(), 5.573526022256971, 1e-12);
    // S = 42, K = 40, r = 10%, vol 20%, six months: call 4.76, put 0.81.
    EXPECT_NEAR(BSVanilla(BSVanilla::Call, 40, 0.2, 0.5, 0.5, 0.1, 0, 42).Price(), 4.7594, 5e-5);
    EXPECT_NEAR(BSVanilla(BSVanilla::Put, 40, 0.2, 0.5, 0.5, 0.1, 0, 42).Price(), 0.8086, 5e-5);
}

TEST(BSVanilla, SatisfiesPutCallParityWithSeparateDeliveryTime) {
    for (const Market& m : RandomMarkets(7, false)) {
        Market call = m, put = m;
        call.type = BSVanilla::Call;
        put.type = BSVanilla::Put;
        const double parity = std::exp(-m.rd * m.delivery) * (m.Forward() - m.strike);
        ExpectClose(PriceOf(call) - PriceOf(put), parity, 1e-13, m);
    }
}

TEST(BSVanilla, FirstOrderGreeksMatchFiniteDifferences) {
    for (const Market& m : RandomMarkets(11, false)) {
        BSVanilla engine = m.Engine();
        ExpectClose(engine.Delta(), Slope(m, &Market::spot, PriceOf), 1e-7, m);
        ExpectClose(engine.Gamma(), Slope(m, &Market::spot, DeltaOf), 1e-7, m);
        ExpectClose(engine.Vega(), Slope(m, &Market::vol, PriceOf), 1e-7, m);
        ExpectClose(engine.Vanna(), Slope(m, &Market::vol, DeltaOf), 1e-7, m);
        ExpectClose(engine.DvegaDspot(), Slope(m, &Market::spot, VegaOf), 1e-7, m);
        ExpectClose(engine.Volga(), Slope(m, &Market::vol, VegaOf), 1e-6, m);
        ExpectClose(engine.Dd1Dvol(),
                    Slope(m, &Market::vol, [](const Market& x) { return x.Engine().GetD1(); }), 1e-7, m);
        ExpectClose(engine.VegaDigital(),
                    Slope(m, &Market::vol, [](const Market& x) { return NormalCdf(x.Engine().GetD2()); }),
                    1e-7, m);
        ExpectClose(engine.VegaIDDigital(),
                    -Slope(m, &Market::vol, [](const Market& x) { return NormalCdf(x.Engine().GetD1()); }),
                    1e-7, m);
    }
}

TEST(BSVanilla, RateAndTimeGreeksMatchFiniteDifferencesWhenDeliveryIsExpiry) {
    for (const Market& m : RandomMarkets(13, true)) {
        BSVanilla engine = m.Engine();
        ExpectClose(engine.Rho(), Slope(m, &Market::rd, PriceOf), 1e-7, m);
        // The foreign-rate figure carries the opposite of the textbook sign.
        ExpectClose(engine.Phi(), -Slope(m, &Market::rf, PriceOf), 1e-7, m);
        const auto priceAfter = [&m](double elapsed) {
            Market later = m;
            later.expiry -= elapsed;
            later.delivery -= elapsed;
            return PriceOf(later);
        };
        const double h = 1e-6;
        const double thetaPerYear = (priceAfter(h) - priceAfter(-h)) / (2 * h);
        ExpectClose(engine.ThetaPerYear(), thetaPerYear, 1e-6, m);
        ExpectClose(engine.Theta(), thetaPerYear / 365.0, 1e-6, m);
    }
}

TEST(BSVanilla, ThetaAccessorIsPerDayWhileTheCacheKeepsPerYear) {
    BSVanilla engine(BSVanilla::Call, 100, 0.2, 1, 1, 0.05, 0, 100);
    const double perDay = engine.Theta();
    EXPECT_DOUBLE_EQ(engine.ThetaPerYear(), perDay * 365.0);
    // Textbook per-year theta of the worked example: -6.414.
    EXPECT_NEAR(engine.ThetaPerYear(), -6.4140, 5e-4);
}

TEST(BSVanilla, RhoAndPhiSplitExpiryAndDeliveryTimes) {
    // Rho takes T to expiry with the discount factor to delivery; Phi takes Td.
    const Market m{BSVanilla::Call, 95, 0.25, 0.5, 0.52, 0.03, 0.01, 100};
    BSVanilla engine = m.Engine();
    const double d2 = engine.GetD2(), d1 = engine.GetD1();
    EXPECT_NEAR(engine.Rho(), 0.5 * 95 * std::exp(-0.03 * 0.52) * NormalCdf(d2), 1e-12);
    EXPECT_NEAR(engine.Phi(), 0.52 * 100 * std::exp(-0.01 * 0.52) * NormalCdf(d1), 1e-12);
}

TEST(BSVanilla, BothVolgaFormsAgree) {
    for (const Market& m : RandomMarkets(17, false)) {
        BSVanilla engine = m.Engine();
        ExpectClose(engine.Volga(), engine.DvegaDvol2(), 1e-12, m);
        ExpectClose(engine.DvegaDvol(), engine.DvegaDvol2(), 1e-12, m);
    }
}

TEST(BSVanilla, PremiumAdjustedDeltasFollowTheirClosedForms) {
    for (const Market& m : RandomMarkets(19, false)) {
        BSVanilla engine = m.Engine();
        const double phi = m.type == BSVanilla::Call ? 1.0 : -1.0;
        const double domesticDiscount = std::exp(-m.rd * m.delivery);
        const double cdfPhiD2 = NormalCdf(phi * engine.GetD2());
        // Spot delta minus premium in the underlying is phi K DFd N(phi d2) / S.
        ExpectClose(engine.Delta(false), phi * m.strike * domesticDiscount * cdfPhiD2 / m.spot, 1e-12, m);
        ExpectClose(engine.ForwardDelta(false), (m.strike / m.Forward()) * phi * cdfPhiD2, 1e-12, m);
        // Forward delta is the slope of the forward premium in the forward.
        const auto forwardPremium = [&](double forward) {
            return BSVanilla::FromForward(m.type, m.strike, m.vol, m.expiry, m.delivery, m.rd, m.rf, forward)
                       .Price() / domesticDiscount;
        };
        const double h = 1e-5 * m.Forward();
        ExpectClose(engine.ForwardDelta(),
                    (forwardPremium(m.Forward() + h) - forwardPremium(m.Forward() - h)) / (2 * h), 1e-7, m);
    }
}

TEST(BSVanilla, ForwardConstructionMatchesSpotConstruction) {
    const Market m{BSVanilla::Put, 1.10, 0.12, 0.75, 0.76, 0.04, 0.02, 1.08};
    BSVanilla fromSpot = m.Engine();
    BSVanilla fromForward =
        BSVanilla::FromForward(m.type, m.strike, m.vol, m.expiry, m.delivery, m.rd, m.rf, m.Forward(), m.spot);
    EXPECT_NEAR(fromForward.Price(), fromSpot.Price(), 1e-14);
    EXPECT_NEAR(fromForward.Theta(), fromSpot.Theta(), 1e-14);
    EXPECT_DOUBLE_EQ(fromForward.GetSpot(), 1.08);
}

TEST(BSVanilla, SpotSentinelDerivesSpotByAnnualCompoundingOverExpiry) {
    // F = 121, rd = 10%, rf = 0, T = 2: S = 121 / 1.1^2 = 100 (delivery time plays no part).
    BSVanilla engine = BSVanilla::FromForward(BSVanilla::Call, 100, 0.2, 2.0, 2.5, 0.10, 0.0, 121.0, -1.0);
    EXPECT_NEAR(engine.GetSpot(), 100.0, 1e-12);
    EXPECT_DOUBLE_EQ(engine.GetForward(), 121.0);
}

struct ExpiredCase {
    int type;
    double spot, strike, price, delta;
};

class ExpiredOption : public ::testing::TestWithParam<ExpiredCase> {};

TEST_P(ExpiredOption, PaysIntrinsicOnSpotAndStepsDelta) {
    const ExpiredCase c = GetParam();
    BSVanilla engine(c.type, c.strike, 0.2, 0.0, 0.01, 0.05, 0.02, c.spot);
    EXPECT_TRUE(engine.IsExpired());
    EXPECT_DOUBLE_EQ(engine.Price(), c.price);
    EXPECT_DOUBLE_EQ(engine.Delta(), c.delta);
    EXPECT_DOUBLE_EQ(engine.ForwardDelta(), c.delta);
    EXPECT_DOUBLE_EQ(engine.Delta(false), c.delta - c.price / c.spot);
    for (double greek : {engine.Gamma(), engine.Vega(), engine.Theta(), engine.Rho(), engine.Phi(),
                         engine.Vanna(), engine.Volga(), engine.DvegaDvol2(), engine.DvegaDspot(),
                         engine.Dd1Dvol(), engine.VegaDigital(), engine.VegaIDDigital()})
        EXPECT_EQ(greek, 0.0);
}

INSTANTIATE_TEST_SUITE_P(
    BSVanilla, ExpiredOption,
    ::testing::Values(ExpiredCase{BSVanilla::Call, 100, 100, 0, 1},   // at the strike: +1
                      ExpiredCase{BSVanilla::Put, 100, 100, 0, -1},   // at the strike: -1
                      ExpiredCase{BSVanilla::Call, 110, 100, 10, 1},
                      ExpiredCase{BSVanilla::Call, 90, 100, 0, 0},
                      ExpiredCase{BSVanilla::Put, 90, 100, 10, -1},
                      ExpiredCase{BSVanilla::Put, 110, 100, 0, 0}),
    [](const ::testing::TestParamInfo<ExpiredCase>& info) {
        const ExpiredCase& c = info.param;
        return std::string(c.type == BSVanilla::Call ? "Call" : "Put") + "_Spot" + zep::testing::NameOf(c.spot) +
               "_Strike" + zep::testing::NameOf(c.strike);
    });

TEST(BSVanilla, PriceValidFlagTracksTheCache) {
    BSVanilla engine(BSVanilla::Call, 100, 0.2, 1, 1, 0.05, 0, 100);
    EXPECT_FALSE(engine.IsPriceValid());
    engine.Delta(false);  // the premium-adjusted delta needs the price
    EXPECT_TRUE(engine.IsPriceValid());
    engine.SetSpot(105);
    EXPECT_FALSE(engine.IsPriceValid());
    EXPECT_NEAR(engine.Price(), BSVanilla(BSVanilla::Call, 100, 0.2, 1, 1, 0.05, 0, 105).Price(), 1e-14);
}

TEST(BSVanilla, ZeroSpotAndForwardAreAccepted) {
    BSVanilla call(BSVanilla::Call, 100, 0.2, 1, 1, 0.05, 0, 0.0);
    EXPECT_EQ(call.Price(), 0.0);
    BSVanilla put = BSVanilla::FromForward(BSVanilla::Put, 100, 0.2, 1, 1, 0.05, 0, 0.0);
    EXPECT_NEAR(put.Price(), 100 * std::exp(-0.05), 1e-12);
}



TEST(BSVanilla, RejectsBadInputWithItsMessages) {
    EXPECT_EQ(zep::testing::BareText([] { BSVanilla(BSVanilla::Call, 100, 0.2, 1, 1, 0, 0, -1e-9); }),
              " Spot must be positive.");
    EXPECT_EQ(zep::testing::BareText([] { BSVanilla::FromForward(BSVanilla::Call, 100, 0.2, 1, 1, 0, 0, -5.0); }),
              " Forward must be positive.");
    const std::string volatility = zep::testing::ErrorWhat([] { BSVanilla(BSVanilla::Put, 100, 0.0, 1, 1, 0, 0, 100); });
    EXPECT_EQ(volatility.rfind("volatility must be a positive percentage! (zep::BSVanilla::SetBasicParameters: ", 0), 0u)
        << volatility;
    EXPECT_NE(zep::testing::ErrorWhat([] { BSVanilla(BSVanilla::Call, 100, std::nan(""), 1, 1, 0, 0, 100); }), zep::testing::kNoFailure);
}

// Round trips of the solvers over seeded markets.
TEST(BSVanilla, ImpliedVolatilityRecoversThePricingVolatility) {
    for (const Market& m : RandomMarkets(23, false)) {
        const double price = PriceOf(m);
        const double vol = BSVanilla::VolImpliedFromPrice(m.type, m.strike, m.expiry, m.delivery, m.rd,
                                                          m.rf, m.spot, price);
        ExpectClose(vol, m.vol, 1e-8, m);
        const double forwardPrice = price / std::exp(-m.rd * m.delivery);
        ExpectClose(BSVanilla::VolImpliedFromForwardPrice(m.type, m.strike, m.Forward(), m.expiry, forwardPrice),
                    m.vol, 1e-8, m);
    }
}

TEST(BSVanilla, ImpliedVolatilityOfTinyPremiumsWorksInMillionths) {
    // A far out-of-the-money call worth about 1e-8.
    const Market m{BSVanilla::Call, 200, 0.15, 0.25, 0.25, 0.0, 0.0, 100};
    const double price = PriceOf(m);
    ASSERT_LT(price, 1e-6);
    EXPECT_NEAR(BSVanilla::VolImpliedFromForwardPrice(m.type, m.strike, 100, 0.25, price), 0.15, 1e-7);
}

TEST(BSVanilla, FuturesOptionBisectionFollowsTheUndiscountedPremium) {
    // The halvings run on the undiscounted premium, so the answer prices the target undiscounted.
    const double forward = 100, strike = 105, time = 1.5, rate = 0.06, target = 7.0;
    const double vol = BSVanilla::VolImpliedFromFutureOptPrice(BSVanilla::Call, strike, forward, time, rate, target);
    const double undiscounted =
        BSVanilla::FromForward(BSVanilla::Call, strike, vol, time, time, 0.0, 0.0, forward).Price();
    EXPECT_NEAR(undiscounted, target, 1e-8);
}

TEST(BSVanilla, ImpliedVolatilityFailuresAndNaN) {
    const std::string negative = zep::testing::ErrorWhat([] { BSVanilla::VolImpliedFromForwardPrice(0, 100, 100, 1, 5, -0.1); });
    EXPECT_EQ(negative.rfind("VolatilityImpliedFromForwardPrice: volatility limit cannot be less than zero (zep::BSVanilla::VolImpliedFromForwardPrice: ", 0), 0u) << negative;
    const std::string futures = zep::testing::ErrorWhat([] { BSVanilla::VolImpliedFromFutureOptPrice(0, 100, 100, 1, 0.01, 5, -0.1); });
    EXPECT_EQ(futures.rfind("VolatilityImpliedFromForwardPrice: volatility limit cannot be less than zero", 0), 0u);
    // A zero limit starts the search at zero volatility, which the premium refuses.
    EXPECT_EQ(zep::testing::ErrorWhat([] { BSVanilla::VolImpliedFromForwardPrice(0, 100, 100, 1, 5, 0.0); })
                  .rfind("volatility must be a positive percentage!", 0), 0u);
    EXPECT_TRUE(std::isnan(BSVanilla::VolImpliedFromForwardPrice(0, 100, 100, 1, std::nan(""))));
    EXPECT_TRUE(std::isnan(BSVanilla::VolImpliedFromPrice(0, std::nan(""), 1, 1, 0, 0, 100, 5)));
}

TEST(BSVanilla, StrikeFromDeltaRoundTripsEveryDeltaKind) {
    for (const Market& m : RandomMarkets(29, false, 20)) {
        for (DeltaKind kind : {DeltaKind::Spot, DeltaKind::Forward}) {
            BSVanilla engine = m.Engine();
            const double delta = kind == DeltaKind::Spot ? engine.Delta() : engine.ForwardDelta();
            const double strike = BSVanilla::StrikeImpliedFromDelta(m.type, delta, m.vol, m.expiry, m.delivery,
                                                                    m.rd, m.rf, m.spot, m.spot, kind);
            ExpectClose(strike, m.strike, 1e-6, m);
        }
    }
    // Premium-adjusted put deltas are monotone in the strike as well.
    for (const Market& m : RandomMarkets(31, false, 20)) {
        if (m.type != BSVanilla::Put) continue;
        for (DeltaKind kind : {DeltaKind::SpotPremiumAdjusted, DeltaKind::ForwardPremiumAdjusted}) {
            BSVanilla engine = m.Engine();
            const double delta = kind == DeltaKind::SpotPremiumAdjusted ? engine.Delta(false) : engine.ForwardDelta(false);
            const double strike = BSVanilla::StrikeImpliedFromDelta(m.type, delta, m.vol, m.expiry, m.delivery,
                                                                    m.rd, m.rf, m.spot, m.spot, kind);
            ExpectClose(strike, m.strike, 1e-6, m);
        }
    }
}

TEST(BSVanilla, StrikeFromDeltaSignCheckAndFailures) {
    const std::string refused = zep::testing::ErrorWhat([] {
        BSVanilla::StrikeImpliedFromDelta(BSVanilla::Put, 0.25, 0.1, 1, 1, 0, 0, 1.2, 1.2);
    });
    EXPECT_EQ(refused.rfind("OptionType = Call, delta must > 0. eg. 0.6; OptionType = Put, delta must < 0. eg. -0.6 (zep::BSVanilla::StrikeImpliedFromDelta: ", 0), 0u) << refused;
    // A call with a negative target passes the sign test and fails in Newton instead.
    EXPECT_EQ(zep::testing::BareText([] { BSVanilla::StrikeImpliedFromDelta(BSVanilla::Call, -0.25, 0.1, 1, 1, 0, 0, 1.2, 1.2); }),
              " Newton-Raphson failed.");
    EXPECT_EQ(BSVanilla::StrikeImpliedFromDelta(BSVanilla::Call, -0.25, 0.1, 1, 1, 0, 0, 1.2, 1.2,
                                                DeltaKind::Spot, true), -1.0);
    EXPECT_EQ(zep::testing::BareText([] { BSVanilla::StrikeImpliedFromDelta(BSVanilla::Call, std::nan(""), 0.1, 1, 1, 0, 0, 1.2, 1.2); }),
              " Newton-Raphson failed.");
}

TEST(BSVanilla, StrikeFromPriceRoundTripsAndFails) {
    for (const Market& m : RandomMarkets(37, false, 20)) {
        const double strike = BSVanilla::StrikeImpliedFromPrice(m.type, PriceOf(m), m.vol, m.expiry, m.delivery,
                                                                m.rd, m.rf, m.spot);
        ExpectClose(strike, m.strike, 1e-7, m);
    }
    // One iteration allowed means no Newton step at all.
    EXPECT_EQ(zep::testing::BareText([] { BSVanilla::StrikeImpliedFromPrice(0, 3.0, 0.2, 1, 1, 0, 0, 100, 100, 1e-10, 1); }),
              " Newton-Raphson didn't converge: can't find implied strike.");
    // Far beyond the money the price no longer moves with the strike.
    EXPECT_EQ(zep::testing::BareText([] { BSVanilla::StrikeImpliedFromPrice(0, 3.0, 0.2, 1, 1, 0, 0, 100, 1000, 1e-10, 10); }),
              " Can't find implied strike: function has local min or max.");
}

TEST(BSVanilla, DeltaFromStrikeNeverRaises) {
    EXPECT_NEAR(BSVanilla::DeltaImpliedFromStrike(0, 100, 0.2, 1, 1, 0.05, 0, 100),
                NormalCdf(0.35), 1e-14);
    EXPECT_EQ(BSVanilla::DeltaImpliedFromStrike(0, 100, 0.0, 1, 1, 0.05, 0, 100), -987654321.0);
    EXPECT_EQ(BSVanilla::DeltaImpliedFromStrike(0, 100, 0.2, 1, 1, 0.05, 0, -100), -987654321.0);
    EXPECT_EQ(BSVanilla::DeltaImpliedFromStrike(7, 100, 0.2, 1, 1, 0.05, 0, 100), -987654321.0);
}

}  // namespace
}  // namespace zep
