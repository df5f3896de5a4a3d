// A structured product written in the payoff script language and priced by Monte Carlo on one
// underlying: the market (spot, volatility, rate1 the risk-free rate, rate2 the underlying's
// rate), the model, the dated event scripts and the simulation settings.
//
// Discounting: a payment on event date e is multiplied by the numeraire factor
// exp(-rate1 * t_e), t_e = (e - valuation date) / day basis floored at 0, so every variable that
// receives PAYS holds a present value. "Price" reports the mean of `priceVariable` when it is
// set, otherwise of the first variable that receives a payment.
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "lum-fxo-market/LocalVol.hpp"
#include "lum-monte-carlo/OutcomeCache.hpp"
#include "lum-monte-carlo/PathPayoff.hpp"
#include "lum-monte-carlo/ScriptModelApi.hpp"
#include "lum-monte-carlo/ScriptSimulator.hpp"
#include "lum-monte-carlo/Simulator.hpp"
#include "lum-time/Date.hpp"

namespace zep {

struct XScriptInputs {
    Date today;
    double spot = std::numeric_limits<double>::quiet_NaN();
    double volatility = std::numeric_limits<double>::quiet_NaN();
    double rate1 = std::numeric_limits<double>::quiet_NaN();
    double rate2 = std::numeric_limits<double>::quiet_NaN();
    std::int32_t model = 1;                 // 1 BlackSchole, 2 Bachelier, 3 Heston, 4 Dupire
    std::vector<double> modelParameters;    // Heston: 5 values, Dupire: 6 (see the models)
    // Dupire (model 4) on the market smile: the local volatility of an FX surface, which then
    // takes the place of the six parameters.
    boost::shared_ptr<const FXLocalVolSurface> localVolatility;
    std::vector<Date> eventDates;           // increasing, none before today
    std::vector<std::string> eventScripts;  // one script per event date
    std::int64_t numSimulations = 10000;
    std::uint64_t seed = 12345;
    double dayBasis = 365.0;
    bool quasiRandom = false;               // Halton instead of pseudo-random draws
    bool adaptiveShift = false;             // Delta's shift follows the distance to the barrier
    double adaptiveShiftBarrier = 0.0;      // the barrier level that distance is measured to
    std::string priceVariable;              // empty: the first variable that is paid
    double notional = 1.0;                  // PV and MarketValue are notional * Price
};

class FXVolSurface;

// The same inputs under Dupire on the market smile: the local volatility of `surface`.
XScriptInputs OnLocalVolatility(XScriptInputs inputs, boost::shared_ptr<const FXVolSurface> surface);

// One re-pricing's moved inputs; all zero is the base case.
struct MarketShift {
    double spot = 0.0;
    double volatility = 0.0;   // absolute, in the model's volatility units
    double rate1 = 0.0;        // risk-free rate: drift and discounting
    double rate2 = 0.0;        // the underlying's rate: drift only
    double discount = 0.0;     // discounting rate only
    std::int32_t spotDays = 0;  // the model's clock moves, discounting stays
    std::int32_t timeDays = 0;  // the valuation date moves: model and discounting
};

class XScriptStructure {
public:
    // Checks the inputs, then compiles the event scripts into the payoff.
    explicit XScriptStructure(XScriptInputs inputs);
    // With a payoff given directly (a null payoff means: compile the event scripts).
    XScriptStructure(XScriptInputs inputs, std::shared_ptr<const PathPayoff> payoff);

    const XScriptInputs& Inputs() const { return m_inputs; }
    const PathPayoff& Payoff() const { return *m_payoff; }
    // "Model:", "Parameters:" with today, spot, rate1, rate2, then "numSimulations:" and
    // "numPath:" (the number of time steps of each simulated path).
    std::string Description() const;

    // A full simulation with `paths` paths under the shifted market; run once per product and
    // settings, then read from the product's outcome cache.
    PricingOutcome Simulate(const MarketShift& shift, std::int64_t paths, bool smoothed) const;
    // Simulates every shift not simulated yet into the outcome cache; shifts whose time grids
    // take as many steps (all of the Greeks' under an event-to-event model) share one
    // simulation of the paths' draws.
    void SimulateTogether(const std::vector<MarketShift>& shifts, std::int64_t paths, bool smoothed) const;
    double Price() const;
    double PriceStandardError() const;
    std::map<std::string, double> ResultByVariable() const;
    // The re-pricing value of the price variable with one named input moved by `shift`.
    double Reprice(const std::string& fieldName, double shift) const;
    double RepriceShifted(const MarketShift& shift,
                          const char* missingMessage = "greeks not find result when pricing!") const;
    // ZEP_SDP_NUMSIMULATION when a positive integer, else numSimulations when positive, else
    // the default.
    std::int64_t RepricingPaths() const;

    double RemainingTime() const;
    double Forward() const;  // spot * exp((rate1 - rate2) * remaining time)
    const LocalVol* SurfaceForDistance() const { return m_localVol.get(); }

private:
    OutcomeKey KeyOf(const MarketShift& shift, std::int64_t paths, bool smoothed) const;
    // Each shift's model, numeraires and grid.
    std::vector<ScriptMarket<double>> MarketsOf(const std::vector<MarketShift>& shifts) const;
    // One simulation of the markets of `shifts`, whose grids take as many steps: one outcome
    // per market.
    std::vector<PricingOutcome> Run(const std::vector<MarketShift>& shifts,
                                    std::vector<ScriptMarket<double>> markets, std::int64_t paths,
                                    bool smoothed, std::size_t threads) const;
    PricingOutcome BaseOutcome() const;
    std::size_t PriceIndex(const PricingOutcome& outcome, const char* missingMessage) const;

    XScriptInputs m_inputs;
    std::shared_ptr<const PathPayoff> m_payoff;
    std::shared_ptr<const LocalVol> m_localVol;  // Heston (flat at sqrt(v0)) and Dupire
    OutcomeCache m_outcomes;
};

}  // namespace zep
