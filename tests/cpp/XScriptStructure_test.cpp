#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <complex>
#include <cstdlib>

#include "PayoffFixtures.hpp"
#include "ScopedEnv.hpp"
#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/ScriptGreeks.hpp"
#include "lum-monte-carlo/SimpleDupire.hpp"
#include "lum-monte-carlo/SimpleHeston.hpp"
#include "lum-monte-carlo/XScriptStructure.hpp"

namespace zep {
namespace {

using testing::CallPayoff;
using testing::ScopedEnv;

double N(double x) { return 0.5 * std::erfc(-x / std::sqrt(2.0)); }
double Density(double x) { return std::exp(-x * x / 2) / std::sqrt(2 * M_PI); }

double BlackScholesCall(double S, double K, double T, double r, double q, double vol) {
    const double d1 = (std::log(S / K) + (r - q + vol * vol / 2) * T) / (vol * std::sqrt(T));
    return S * std::exp(-q * T) * N(d1) - K * std::exp(-r * T) * N(d1 - vol * std::sqrt(T));
}

// Normal model with proportional drift mu = r - q: F = S e^(mu T), variance of S_T below.
double BachelierCall(double S, double K, double T, double r, double q, double vol) {
    const double mu = r - q;
    const double F = S * std::exp(mu * T);
    const double sd = vol * std::sqrt(std::expm1(2 * mu * T) / (2 * mu));
    const double d = (F - K) / sd;
    return std::exp(-r * T) * ((F - K) * N(d) + sd * Density(d));
}

// Heston call by integrating the characteristic function ("little trap" form) with Simpson.
double HestonCall(double S, double K, double T, double r, double q, double kappa, double theta,
                  double xi, double rho, double v0) {
    using C = std::complex<double>;
    const C i(0, 1);
    auto phi = [&](C u) {
        const C a = kappa - rho * xi * i * u;
        const C d = std::sqrt(a * a + xi * xi * (i * u + u * u));
        const C g = (a - d) / (a + d);
        const C e = std::exp(-d * T);
        return std::exp(i * u * (std::log(S) + (r - q) * T) +
                        kappa * theta / (xi * xi) * ((a - d) * T - 2.0 * std::log((1.0 - g * e) / (1.0 - g))) +
                        v0 / (xi * xi) * (a - d) * (1.0 - e) / (1.0 - g * e));
    };
    const double forward = S * std::exp((r - q) * T);
    auto integrand = [&](double u, bool first) {
        const C shift = first ? phi(C(u, -1)) / forward : phi(C(u, 0));
        return std::real(std::exp(-i * u * std::log(K)) * shift / (i * u));
    };
    const int n = 20000;
    const double upper = 200.0, h = upper / n;
    double p1 = 0, p2 = 0;
    for (int k = 1; k <= n; ++k) {  // Simpson from h/2..: midpoint-weighted, avoids u = 0
        const double u = (k - 0.5) * h;
        p1 += integrand(u, true) * h;
        p2 += integrand(u, false) * h;
    }
    p1 = 0.5 + p1 / M_PI;
    p2 = 0.5 + p2 / M_PI;
    return S * std::exp(-q * T) * p1 - K * std::exp(-r * T) * p2;
}

XScriptInputs OneYearInputs(std::int32_t model, std::int64_t paths) {
    XScriptInputs in;
    in.today = Date(2, 1, 2024);
    in.spot = 100.0;
    in.volatility = model == 2 ? 20.0 : 0.2;
    in.rate1 = 0.03;
    in.rate2 = 0.01;
    in.model = model;
    in.eventDates = {Date(2, 1, 2024) + 365};
    in.eventScripts = {"V PAYS MAX(SPOT() - 100, 0)"};
    in.numSimulations = paths;
    return in;
}

struct Estimate {
    double mean, error;
};
Estimate Priced(const XScriptStructure& product) {
    const auto outcome = product.Simulate(MarketShift{}, product.Inputs().numSimulations, false);
    return {outcome.result.mean[0], outcome.result.standardError[0]};
}

TEST(XScriptStructure, BlackScholesCallMatchesClosedForm) {
    const XScriptStructure product(OneYearInputs(1, 200000), CallPayoff(100.0));
    const auto [mean, error] = Priced(product);
    EXPECT_NEAR(mean, BlackScholesCall(100, 100, 1, 0.03, 0.01, 0.2), 4 * error);
    EXPECT_LT(error, 0.05);
}

TEST(XScriptStructure, BlackScholesDailyStepsMatchClosedForm) {
    ScopedEnv daily("ZEP_BS_DAILY_STEPS", "1");
    const XScriptStructure product(OneYearInputs(1, 50000), CallPayoff(110.0));
    const auto [mean, error] = Priced(product);
    EXPECT_EQ(product.Simulate(MarketShift{}, 10, false).steps, 365u);
    EXPECT_NEAR(mean, BlackScholesCall(100, 110, 1, 0.03, 0.01, 0.2), 4 * error);
}

TEST(XScriptStructure, BachelierCallMatchesNormalModelClosedForm) {
    const XScriptStructure product(OneYearInputs(2, 200000), CallPayoff(95.0));
    const auto [mean, error] = Priced(product);
    EXPECT_NEAR(mean, BachelierCall(100, 95, 1, 0.03, 0.01, 20.0), 4 * error);
}

TEST(XScriptStructure, FlatDupireMatchesBlackScholes) {
    auto in = OneYearInputs(4, 50000);
    in.modelParameters = {0.25, 0, 0, 0, 0.01, 2.0};
    const XScriptStructure product(in, CallPayoff(105.0));
    const auto [mean, error] = Priced(product);
    EXPECT_NEAR(mean, BlackScholesCall(100, 105, 1, 0.03, 0.01, 0.25), 4 * error);
}

TEST(XScriptStructure, HestonCallMatchesCharacteristicFunctionReference) {
    auto in = OneYearInputs(3, 100000);
    in.modelParameters = {2.0, 0.04, 0.3, -0.7, 0.05};
    const XScriptStructure product(in, CallPayoff(100.0));
    const auto [mean, error] = Priced(product);
    const double reference = HestonCall(100, 100, 1, 0.03, 0.01, 2.0, 0.04, 0.3, -0.7, 0.05);
    EXPECT_NEAR(reference, BlackScholesCall(100, 100, 1, 0.03, 0.01, 0.215), 0.6);  // sanity
    EXPECT_NEAR(mean, reference, 4 * error) << "reference " << reference;
}

TEST(XScriptStructure, UnitPaymentGivesTheDiscountFactor) {
    auto in = OneYearInputs(1, 1000);
    in.eventDates = {in.today + 200};
    const XScriptStructure product(
        in, std::make_shared<testing::FunctionPayoff>(
                [](const ScenarioPoint*, std::size_t) { return 1.0; }, 1));
    EXPECT_NEAR(product.Price(), std::exp(-0.03 * 200 / 365.0), 1e-12);
}

TEST(XScriptStructure, PriceDoesNotDependOnThreadCount) {
    auto in = OneYearInputs(3, 3001);
    in.modelParameters = {2.0, 0.04, 0.3, -0.7, 0.05};
    const XScriptStructure product(in, CallPayoff(100.0));
    double prices[3];
    for (int threads = 1; threads <= 3; ++threads) {
        ScopedEnv env("ZEP_NUM_THREADS", std::to_string(threads).c_str());
        prices[threads - 1] = product.Price();
    }
    EXPECT_EQ(prices[0], prices[1]);
    EXPECT_EQ(prices[0], prices[2]);
}

TEST(XScriptStructure, EveryFigureOfOneRunAndEverySharedRepricingCostsOneSimulation) {
    auto evaluated = std::make_shared<std::atomic<long>>(0);
    const auto counted = std::make_shared<testing::FunctionPayoff>(
        [evaluated](const ScenarioPoint* s, std::size_t n) {
            ++*evaluated;
            return std::max(s[n - 1].spot - 100.0, 0.0);
        },
        1);
    const XScriptStructure product(OneYearInputs(1, 1000), counted);
    const double price = product.Price();
    EXPECT_GT(product.PriceStandardError(), 0.0);
    EXPECT_EQ(product.ResultByVariable().at("V"), price);
    EXPECT_EQ(product.Price(), price);
    EXPECT_EQ(*evaluated, 1000);

    // Smoothed re-pricings: the base, spot +-h and +-g, volatility +-1 point, one day, rate +-1bp.
    const auto basic = BasicGreeks(product);
    EXPECT_EQ(*evaluated, 1000 + 10 * 1000);
    EXPECT_EQ(BasicGreeks(product), basic);
    AllGreeks(product);  // Vanna's four corners are new; Volga and ForwardDelta reuse
    EXPECT_EQ(*evaluated, 1000 + 14 * 1000);
    {
        ScopedEnv daily("ZEP_BS_DAILY_STEPS", "1");  // another time grid: another simulation
        product.Price();
        EXPECT_EQ(*evaluated, 16000);
    }
    const XScriptStructure copy = product;  // outcomes stay with the object that ran them
    EXPECT_EQ(copy.Price(), price);
    EXPECT_EQ(*evaluated, 17000);
}

// Shared simulations must change nothing: every Greek of AllGreeks equals its formula over
// re-pricings that each ran alone, on a product of their own, for Black-Scholes and Heston. Those
// whose markets each run their own model (volatility and date moves) agree bit for bit; spot and
// rate moves read the unmoved paths times the forward's move, which agree with their own model's
// paths to the last places of each spot.
TEST(XScriptStructure, GreeksOfOneSharedSimulationEqualThoseOfSeparateRuns) {
    for (const std::int32_t model : {1, 3}) {
        auto in = OneYearInputs(model, 3000);
        if (model == 3) in.modelParameters = {2.0, 0.04, 0.3, -0.7, 0.05};
        in.eventDates = {Date(2, 1, 2024) + 91, Date(2, 1, 2024) + 365};
        in.eventScripts = {"IF SPOT() < 95; 2 THEN KI = 1 ENDIF",
                           "IF SPOT() > 100; 4 THEN V PAYS SPOT() - 100 ELSE V PAYS KI ENDIF"};
        const auto alone = [&](double spot, double volatility, double rate1 = 0.0, std::int32_t days = 0) {
            MarketShift shift;
            shift.spot = spot;
            shift.volatility = volatility;
            shift.rate1 = rate1;
            shift.timeDays = days;
            return XScriptStructure(in).RepriceShifted(shift);
        };
        const auto near = [](double shared, double separate) {
            return std::abs(shared - separate) <= 1e-10 * std::abs(separate);
        };
        const double h = model == 1 ? 0.01 : 1.0, g = 1.0, point = 0.01;
        const auto greeks = AllGreeks(XScriptStructure(in));
        EXPECT_PRED2(near, greeks.at("Delta"), -(alone(h, 0) - alone(-h, 0)) / (2 * h)) << model;
        EXPECT_PRED2(near, greeks.at("Gamma"), (alone(g, 0) - 2 * alone(0, 0) + alone(-g, 0)) / (g * g)) << model;
        EXPECT_EQ(greeks.at("Vega"), (alone(0, point) - alone(0, -point)) / 2) << model;
        EXPECT_EQ(greeks.at("Volga"), alone(0, point) - 2 * alone(0, 0) + alone(0, -point)) << model;
        EXPECT_PRED2(near, greeks.at("Vanna"),
                     (alone(g, point) - alone(g, -point) - alone(-g, point) + alone(-g, -point)) / (4 * g))
            << model;
        EXPECT_PRED2(near, greeks.at("Rho"), (alone(0, 0, 1e-4) - alone(0, 0, -1e-4)) / 2) << model;
        EXPECT_EQ(greeks.at("Theta"), alone(0, 0, 0, 1) - alone(0, 0)) << model;
    }
}

TEST(XScriptStructure, HaltonPricesConverge) {
    auto in = OneYearInputs(1, 0);
    in.quasiRandom = true;
    const double exact = BlackScholesCall(100, 100, 1, 0.03, 0.01, 0.2);
    double errors[3];
    int k = 0;
    for (std::int64_t paths : {1000, 10000, 100000}) {
        in.numSimulations = paths;
        errors[k++] = std::abs(XScriptStructure(in, CallPayoff(100.0)).Price() - exact);
    }
    EXPECT_LT(errors[2], 0.01);
    EXPECT_LT(errors[2], errors[0]);
}

TEST(XScriptStructure, GreeksMatchBlackScholesFiniteDifferences) {
    ScopedEnv paths("ZEP_SDP_NUMSIMULATION", "100000");
    const XScriptStructure product(OneYearInputs(1, 100000), CallPayoff(100.0));
    const double d1 = (std::log(1.0) + (0.02 + 0.02) * 1) / 0.2;
    // Delta carries the deliberate leading minus.
    EXPECT_NEAR(Delta(product), -std::exp(-0.01) * N(d1), 0.01);
    EXPECT_NEAR(Gamma(product), std::exp(-0.01) * Density(d1) / (100 * 0.2), 0.003);
    const double vega = (BlackScholesCall(100, 100, 1, 0.03, 0.01, 0.21) -
                         BlackScholesCall(100, 100, 1, 0.03, 0.01, 0.19)) / 2;
    EXPECT_NEAR(Vega(product), vega, 0.02);
    EXPECT_EQ(Delta(product), Delta(product));
}

TEST(XScriptStructure, AdaptiveShiftFollowsDistanceToBarrier) {
    EXPECT_EQ(AdaptiveShiftFraction(0.0, 3.0), 0.01);
    EXPECT_EQ(AdaptiveShiftFraction(1.0, 0.0), 0.01);
    EXPECT_EQ(AdaptiveShiftFraction(1.0, 0.5), 0.001);
    EXPECT_EQ(AdaptiveShiftFraction(1.0, 1.0), 0.003);
    EXPECT_EQ(AdaptiveShiftFraction(1.0, 2.0), 0.01);
    auto in = OneYearInputs(1, 100);
    in.adaptiveShiftBarrier = 70.0;
    const XScriptStructure product(in, CallPayoff(100.0));
    EXPECT_NEAR(DistanceToBarrierSigma(product), std::log(100.0 / 70.0) / 0.2, 1e-12);
    EXPECT_NEAR(DistanceToBarrierSigma(product, 120.0), std::log(1.2) / 0.2, 1e-12);
}

std::string FailureOf(const XScriptInputs& in) {
    try {
        XScriptStructure product(in, CallPayoff(100.0));
    } catch (const Error& e) {
        return e.Message();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "";
}

TEST(XScriptStructure, ConstructionChecksInputs) {
    auto in = OneYearInputs(1, 10);
    in.volatility = 0.0;
    EXPECT_EQ(FailureOf(in), "Valid Volatility and RiskfreeRate required for BlackSchole/Bachelier!");
    in = OneYearInputs(3, 10);
    in.modelParameters = {1, 0.04, 0.3, 0.5};
    EXPECT_EQ(FailureOf(in), "Size of Heston parameters should be 6!");
    in = OneYearInputs(4, 10);
    in.modelParameters = {0.2, 0, 0, 0, 0.1};
    EXPECT_EQ(FailureOf(in), "Size of Dupire parameters should be 5!");
    in = OneYearInputs(3, 10);
    in.modelParameters = {1, 0.04, 0.3, 1.0000001, 0.04};
    EXPECT_EQ(FailureOf(in), "One or more of the Heston Parameters are incorrectly defined.");
    in.modelParameters[3] = 1.0;
    EXPECT_EQ(FailureOf(in), "");
    in.spot = -1;
    EXPECT_EQ(FailureOf(in), "OptionData.spot not valid!");
    in = OneYearInputs(3, 10);
    in.modelParameters = {1, 0.04, 0.3, 0.5, 0.04};
    in.rate1 = NAN;
    EXPECT_EQ(FailureOf(in), "no riskfree rate!");
    in.rate1 = 0.01;
    in.rate2 = NAN;
    EXPECT_EQ(FailureOf(in), "no underlying rate!");
    in = OneYearInputs(5, 10);
    EXPECT_EQ(FailureOf(in), "Unknown model type!");
    in = OneYearInputs(1, 10);
    in.eventDates = {in.today - 1};
    EXPECT_EQ(FailureOf(in), "Event date 01/01/2024 is before the valuation date 02/01/2024");
}

// Every event date is an observation of the simulation, which takes at most 1098 of them.
TEST(XScriptStructure, RefusesMoreEventDatesThanASimulationObserves) {
    auto in = OneYearInputs(1, 10);
    in.eventDates.clear();
    for (std::int32_t day = 1; day <= 1099; ++day) in.eventDates.push_back(in.today + day);
    in.eventScripts.assign(in.eventDates.size(), "X = 1");
    EXPECT_EQ(FailureOf(in), "The supported maxium oberservation days is 1098!");
    in.eventDates.pop_back();
    in.eventScripts.pop_back();
    EXPECT_EQ(FailureOf(in), "");
    EXPECT_NE(XScriptStructure(in).Description().find("numPath: 1098"), std::string::npos);
}

TEST(ScriptModels, CheckTheirParameters) {
    ModelInputs inputs{100, 0.2, 0.01, 0.0, {1, 0.04, 0.3, 0.5}};
    try {
        SimpleHeston<double> heston(inputs);
        FAIL();
    } catch (const Error& e) {
        EXPECT_EQ(e.Message(), "Heston Parameter size should be 5!");
    }
    inputs.parameters = {};
    try {
        SimpleDupire<double> dupire(inputs, 100);
        FAIL();
    } catch (const Error& e) {
        EXPECT_EQ(e.Message(), "Dupire parameters empty!");
    }
    inputs.parameters = {0.2, 0, 0, 0, 0.1};
    try {
        SimpleDupire<double> dupire(inputs, 100);
        FAIL();
    } catch (const Error& e) {
        EXPECT_EQ(e.Message(), "Dupire Parameter size should be 6!");
    }
}

TEST(XScriptStructure, RepricingNamesAndTimeLimits) {
    const XScriptStructure product(OneYearInputs(1, 100), CallPayoff(100.0));
    try {
        product.Reprice("strike", 1.0);
        FAIL();
    } catch (const std::invalid_argument& e) {
        EXPECT_STREQ(e.what(), "not supported fieldName: strike");
    }
    for (const char* name : {"spot_time", "time"}) {
        try {
            product.Reprice(name, -100000.0);
            FAIL();
        } catch (const Error& e) {
            EXPECT_EQ(e.Message(), std::string("Invalid date: today + delta_days < 1 in ") + name +
                                       " calculation");
        }
    }
    EXPECT_EQ(product.Reprice("spot_Volatility", 0.01), product.Reprice("spot_volatility", 0.01));
}

TEST(XScriptStructure, DescriptionPrintsModelAndParameters) {
    const XScriptStructure product(OneYearInputs(1, 100), CallPayoff(100.0));
    const std::string text = product.Description();
    EXPECT_NE(text.find("Model: BlackSchole"), std::string::npos) << text;
    EXPECT_NE(text.find(" today=02/01/2024"), std::string::npos) << text;
    EXPECT_NE(text.find(" spot=100"), std::string::npos) << text;
    EXPECT_NE(text.find("numSimulations: 100"), std::string::npos) << text;
    EXPECT_NE(text.find("numPath: 1"), std::string::npos) << text;
}

}  // namespace
}  // namespace zep

namespace zep {
namespace {

TEST(XScriptStructure, RepricingPathsFollowSettingThenProduct) {
    const XScriptStructure product(OneYearInputs(1, 777), CallPayoff(100.0));
    EXPECT_EQ(product.RepricingPaths(), 777);
    {
        ScopedEnv env("ZEP_SDP_NUMSIMULATION", "2500");
        EXPECT_EQ(product.RepricingPaths(), 2500);
    }
    for (const char* ignored : {"0", "-5", "many"}) {
        ScopedEnv env("ZEP_SDP_NUMSIMULATION", ignored);
        EXPECT_EQ(product.RepricingPaths(), 777) << ignored;
    }
    const XScriptStructure defaulted(OneYearInputs(1, 0), CallPayoff(100.0));
    EXPECT_EQ(defaulted.RepricingPaths(), 10000);
}

}  // namespace
}  // namespace zep
