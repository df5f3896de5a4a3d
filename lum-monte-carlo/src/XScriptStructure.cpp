#include "lum-monte-carlo/XScriptStructure.hpp"

#include <charconv>
#include <cmath>
#include <map>
#include <set>
#include <sstream>
#include <thread>

#include <boost/make_shared.hpp>

#include "lum-auxiliary/Error.hpp"
#include "lum-fxo-market/FXLocalVolSurface.hpp"
#include "lum-monte-carlo/BasicRanGen.hpp"
#include "lum-monte-carlo/QmcRanGen.hpp"
#include "lum-monte-carlo/RunSettings.hpp"
#include "lum-monte-carlo/ScriptModelFactory.hpp"
#include "lum-monte-carlo/ScriptPayoff.hpp"
#include "lum-monte-carlo/ScriptSimulator.hpp"
#include "lum-monte-carlo/SimpleDupire.hpp"
#include "lum-monte-carlo/SimulationGrid.hpp"

namespace zep {

namespace {

constexpr std::int64_t kDefaultPaths = 10000;
constexpr std::size_t kHestonParameters = 5;
constexpr std::size_t kDupireParameters = 6;
constexpr double kOneDayForDistance = 1.0 / 365.0;

bool IsBlackScholesOrBachelier(std::int32_t model) { return model == 1 || model == 2; }

void CheckInputs(const XScriptInputs& in) {
    if (IsBlackScholesOrBachelier(in.model)) {
        ZEP_REQUIRE(std::isfinite(in.volatility) && in.volatility > 0.0 && std::isfinite(in.rate1),
                    "Valid Volatility and RiskfreeRate required for BlackSchole/Bachelier!");
    }
    // Deliberately reversed counts: the product's messages name the other model's size; the
    // model classes carry the right ones, and both texts are relied upon as they stand.
    if (in.model == 4 && !in.localVolatility) {
        ZEP_REQUIRE(in.modelParameters.size() >= kDupireParameters,
                    "Size of Dupire parameters should be 5!");
    }
    if (in.model == 3) {
        ZEP_REQUIRE(in.modelParameters.size() >= kHestonParameters,
                    "Size of Heston parameters should be 6!");
    }
    ZEP_REQUIRE(std::isfinite(in.spot) && in.spot > 0.0, "OptionData.spot not valid!");
    ZEP_REQUIRE(std::isfinite(in.rate1), "no riskfree rate!");
    ZEP_REQUIRE(std::isfinite(in.rate2), "no underlying rate!");
    ZEP_REQUIRE(!in.today.IsNull(), "XScriptStructure needs a valuation date");
    ZEP_REQUIRE(!in.eventDates.empty(), "XScriptStructure needs at least one event date");
    // Refused here, not at the first simulation: a product that builds can always be priced
    // and described.
    ZEP_REQUIRE(in.eventDates.size() <= kMaxObservationDays, "The supported maxium oberservation days is 1098!");
    ZEP_REQUIRE(in.eventDates.size() == in.eventScripts.size(),
                "XScriptStructure needs one script per event date");
    for (std::size_t i = 0; i < in.eventDates.size(); ++i) {
        ZEP_REQUIRE(in.eventDates[i] >= in.today, "Event date " + in.eventDates[i].ToString() +
                                                      " is before the valuation date " +
                                                      in.today.ToString());
        ZEP_REQUIRE(i == 0 || in.eventDates[i] > in.eventDates[i - 1],
                    "Event dates must be strictly increasing: " + in.eventDates[i].ToString() +
                        " follows " + in.eventDates[i - 1].ToString());
    }
    ZEP_REQUIRE(in.dayBasis > 0.0, "XScriptStructure day basis must be positive");
    ZEP_REQUIRE(in.numSimulations >= 0, "XScriptStructure number of simulations must not be negative");
}

std::shared_ptr<const LocalVol> SurfaceOf(const XScriptInputs& in) {
    if (in.model == 4 && in.localVolatility) {
        // Distances to a barrier are measured in the market's volatility at the spot today.
        const double today = in.localVolatility->Volatility(kOneDayForDistance, in.spot);
        return std::make_shared<LocalVol>(in.spot, std::vector<double>{today, 0.0, 0.0, 0.0, today, today});
    }
    if (in.model == 4) return std::make_shared<LocalVol>(in.spot, in.modelParameters);
    if (in.model == 3) {
        const double instantaneous = std::sqrt(in.modelParameters[4]);
        const double floor = std::max(instantaneous, 1e-8);
        return std::make_shared<LocalVol>(
            in.spot, std::vector<double>{instantaneous, 0.0, 0.0, 0.0, floor, floor});
    }
    return nullptr;
}

// The volatility bump in each model's own terms: Black-Scholes and Bachelier move their
// volatility; Heston moves sqrt(v0) and sqrt(theta); Dupire moves its whole surface.
ModelInputs ShiftedModelInputs(const XScriptInputs& in, const MarketShift& shift) {
    ModelInputs model{in.spot + shift.spot, in.volatility + shift.volatility,
                      in.rate1 + shift.rate1, in.rate2 + shift.rate2, in.modelParameters,
                      in.localVolatility, shift.volatility};
    if (shift.volatility != 0.0 && in.model == 3) {
        for (std::size_t i : {std::size_t(1), std::size_t(4)}) {
            const double moved = std::sqrt(model.parameters[i]) + shift.volatility;
            model.parameters[i] = moved * moved;
        }
    }
    if (shift.volatility != 0.0 && in.model == 4 && !in.localVolatility) {
        for (std::size_t i : {std::size_t(0), std::size_t(4), std::size_t(5)})
            model.parameters[i] += shift.volatility;
    }
    return model;
}

// Exact models step event to event (Black-Scholes daily when ZEP_BS_DAILY_STEPS asks);
// discretised models (Heston, Dupire) take steps of at most three days: a weekday-monitored
// product then steps exactly on its observation days, and the Euler bias of a three-day step
// stays far below the Monte Carlo error of a typical run.
constexpr std::int32_t kMaxDiscretisedStepDays = 3;

std::int32_t MaxStepDays(const ScriptModelApi<double>& model) {
    if (!model.StepsExactly()) return kMaxDiscretisedStepDays;
    const bool daily = model.Type() == ModelType::BlackScholes &&
                       DailyStepsForced(EnvironmentValue("ZEP_BS_DAILY_STEPS"));
    return daily ? 1 : 0;
}

Date ShiftedDate(const Date& today, std::int32_t days, const char* message) {
    if (days == 0) return today;
    ZEP_REQUIRE(static_cast<std::int64_t>(today.SerialNumber()) + days >= 1, message);
    return Date(today.SerialNumber() + days);
}

// Markets on one grid and one volatility whose model's paths move with the forward differ in
// their paths by the forward's move alone: one of them (the unmoved one when there is one) runs
// the model, the others read its paths times exp(ln(S1 / S0) + (drift1 - drift0) t).
void ShareForwardMoves(const XScriptInputs& in, const std::vector<MarketShift>& shifts,
                       std::vector<ScriptMarket<double>>& markets) {
    if (!markets.front().model->PathsMoveWithForward()) return;
    const auto samePaths = [](const MarketShift& a, const MarketShift& b) {
        return a.volatility == b.volatility && a.timeDays == b.timeDays && a.spotDays == b.spotDays;
    };
    const auto unmoved = [](const MarketShift& s) { return s.spot == 0.0 && s.rate1 == 0.0 && s.rate2 == 0.0; };
    for (std::size_t k = 0; k < shifts.size(); ++k) {
        std::ptrdiff_t source = -1;
        for (std::size_t j = 0; j < shifts.size() && source < 0; ++j)
            if (samePaths(shifts[j], shifts[k]) && unmoved(shifts[j])) source = static_cast<std::ptrdiff_t>(j);
        for (std::size_t j = 0; j < shifts.size() && source < 0; ++j)
            if (samePaths(shifts[j], shifts[k])) source = static_cast<std::ptrdiff_t>(j);
        if (source == static_cast<std::ptrdiff_t>(k)) continue;
        const MarketShift& from = shifts[source];
        const double spotMove = (in.spot + shifts[k].spot) / (in.spot + from.spot);
        const double driftMove = (shifts[k].rate1 - from.rate1) - (shifts[k].rate2 - from.rate2);
        markets[k].source = source;
        for (const double t : markets[k].grid.times) markets[k].pathFactors.push_back(spotMove * std::exp(driftMove * t));
    }
}

std::optional<std::int64_t> PositiveInteger(const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    std::int64_t value = 0;
    const char* end = text->data() + text->size();
    const auto [last, error] = std::from_chars(text->data(), end, value);
    if (error != std::errc() || last != end || value <= 0) return std::nullopt;
    return value;
}

}  // namespace

XScriptInputs OnLocalVolatility(XScriptInputs inputs, boost::shared_ptr<const FXVolSurface> surface) {
    ZEP_REQUIRE(surface != nullptr, "Dupire on the market needs a volatility surface");
    inputs.model = static_cast<std::int32_t>(ModelType::Dupire);
    inputs.localVolatility = boost::make_shared<FXLocalVolSurface>(std::move(surface));
    return inputs;
}

XScriptStructure::XScriptStructure(XScriptInputs inputs)
    : XScriptStructure(std::move(inputs), nullptr) {}

XScriptStructure::XScriptStructure(XScriptInputs inputs, std::shared_ptr<const PathPayoff> payoff) {
    CheckInputs(inputs);
    MakeScriptModel(inputs.model, ShiftedModelInputs(inputs, {}), inputs.spot);  // model checks
    if (!payoff) payoff = CompileScriptPayoff(inputs.eventDates, inputs.eventScripts);
    auto surface = SurfaceOf(inputs);
    m_inputs = std::move(inputs);
    m_payoff = std::move(payoff);
    m_localVol = std::move(surface);
}

OutcomeKey XScriptStructure::KeyOf(const MarketShift& shift, std::int64_t paths, bool smoothed) const {
    const RunMode mode = EffectiveRunMode(EnvironmentValue("ZEP_RUNMODE"));
    const std::size_t threads =
        mode == RunMode::SingleThread
            ? 1
            : ThreadCount(static_cast<std::size_t>(paths), std::thread::hardware_concurrency(),
                          EnvironmentValue("ZEP_NUM_THREADS"));
    return OutcomeKey{shift.spot, shift.volatility, shift.rate1, shift.rate2, shift.discount,
                      shift.spotDays, shift.timeDays, paths, smoothed,
                      DailyStepsForced(EnvironmentValue("ZEP_BS_DAILY_STEPS")), threads};
}

PricingOutcome XScriptStructure::Simulate(const MarketShift& shift, std::int64_t paths,
                                          bool smoothed) const {
    const OutcomeKey key = KeyOf(shift, paths, smoothed);
    return m_outcomes.Get(key, [&] { return Run({shift}, MarketsOf({shift}), paths, smoothed, key.threads).front(); });
}

void XScriptStructure::SimulateTogether(const std::vector<MarketShift>& shifts, std::int64_t paths,
                                        bool smoothed) const {
    // Markets whose grids take as many steps share one simulation, whatever their number: a run
    // keeps sums per market, not paths.
    std::set<OutcomeKey> pending;
    std::vector<MarketShift> missing;
    for (const MarketShift& shift : shifts) {
        const OutcomeKey key = KeyOf(shift, paths, smoothed);
        if (!m_outcomes.Contains(key) && pending.insert(key).second) missing.push_back(shift);
    }
    if (missing.empty()) return;
    std::vector<ScriptMarket<double>> markets = MarketsOf(missing);
    std::map<std::size_t, std::vector<std::size_t>> bySteps;  // grid steps -> indexes of `missing`
    for (std::size_t k = 0; k < markets.size(); ++k) bySteps[markets[k].grid.Steps()].push_back(k);
    const std::size_t threads = KeyOf(missing.front(), paths, smoothed).threads;
    for (const auto& [steps, members] : bySteps) {
        std::vector<MarketShift> groupShifts;
        std::vector<ScriptMarket<double>> group;
        for (const std::size_t k : members) {
            groupShifts.push_back(missing[k]);
            group.push_back(std::move(markets[k]));
        }
        std::vector<PricingOutcome> outcomes = Run(groupShifts, std::move(group), paths, smoothed, threads);
        for (std::size_t i = 0; i < members.size(); ++i)
            m_outcomes.Put(KeyOf(missing[members[i]], paths, smoothed), std::move(outcomes[i]));
    }
}

std::vector<ScriptMarket<double>> XScriptStructure::MarketsOf(const std::vector<MarketShift>& shifts) const {
    std::vector<ScriptMarket<double>> markets;
    for (const MarketShift& shift : shifts) {
        const Date discountDate = ShiftedDate(m_inputs.today, shift.timeDays,
                                              "Invalid date: today + delta_days < 1 in time calculation");
        const Date modelDate = ShiftedDate(discountDate, shift.spotDays,
                                           "Invalid date: today + delta_days < 1 in spot_time calculation");
        ScriptMarket<double> market;
        market.model = MakeScriptModel(m_inputs.model, ShiftedModelInputs(m_inputs, shift), m_inputs.spot);
        market.spot = m_inputs.spot + shift.spot;
        const double discountRate = m_inputs.rate1 + shift.rate1 + shift.discount;
        std::vector<std::int32_t> modelDays;
        for (const Date& event : m_inputs.eventDates) {
            const double t = std::max(event.SerialNumber() - discountDate.SerialNumber(), 0) /
                             m_inputs.dayBasis;
            market.numeraires.push_back(std::exp(-discountRate * t));
            modelDays.push_back(event.SerialNumber() - modelDate.SerialNumber());
        }
        market.grid = BuildSimulationGrid(modelDays, m_inputs.dayBasis, MaxStepDays(*market.model));
        markets.push_back(std::move(market));
    }
    return markets;
}

std::vector<PricingOutcome> XScriptStructure::Run(const std::vector<MarketShift>& shifts,
                                                  std::vector<ScriptMarket<double>> markets,
                                                  std::int64_t paths, bool smoothed,
                                                  std::size_t threads) const {
    ShareForwardMoves(m_inputs, shifts, markets);
    std::unique_ptr<RandomGen> generator;
    if (m_inputs.quasiRandom)
        generator = std::make_unique<QmcRanGen>(markets.front().grid.Steps() * markets.front().model->FactorsPerStep());
    else
        generator = std::make_unique<BasicRanGen>(m_inputs.seed);
    ScriptSimulator<double> simulator(std::move(markets), std::move(generator), m_payoff, smoothed);
    const std::size_t steps = simulator.Steps();
    std::vector<PricingOutcome> outcomes;
    for (SimulationResult& result : simulator.RunMarkets(static_cast<std::size_t>(paths), threads))
        outcomes.push_back(PricingOutcome{m_payoff->VariableNames(), std::move(result), steps});
    return outcomes;
}

std::size_t XScriptStructure::PriceIndex(const PricingOutcome& outcome,
                                         const char* missingMessage) const {
    int index = m_payoff->PaymentVariable();
    if (!m_inputs.priceVariable.empty()) {
        index = -1;
        for (std::size_t i = 0; i < outcome.variables.size(); ++i)
            if (outcome.variables[i] == m_inputs.priceVariable) index = static_cast<int>(i);
    }
    ZEP_REQUIRE(index >= 0 && static_cast<std::size_t>(index) < outcome.result.mean.size(),
                missingMessage);
    return static_cast<std::size_t>(index);
}

PricingOutcome XScriptStructure::BaseOutcome() const {
    const std::int64_t paths = m_inputs.numSimulations > 0 ? m_inputs.numSimulations : kDefaultPaths;
    return Simulate(MarketShift{}, paths, false);
}

double XScriptStructure::Price() const {
    const PricingOutcome outcome = BaseOutcome();
    return outcome.result.mean[PriceIndex(outcome, "not find result!")];
}

double XScriptStructure::PriceStandardError() const {
    const PricingOutcome outcome = BaseOutcome();
    return outcome.result.standardError[PriceIndex(outcome, "not find result!")];
}

std::map<std::string, double> XScriptStructure::ResultByVariable() const {
    const PricingOutcome outcome = BaseOutcome();
    std::map<std::string, double> byName;
    for (std::size_t i = 0; i < outcome.variables.size(); ++i)
        byName[outcome.variables[i]] = outcome.result.mean[i];
    return byName;
}

std::int64_t XScriptStructure::RepricingPaths() const {
    if (const auto configured = PositiveInteger(EnvironmentValue("ZEP_SDP_NUMSIMULATION")))
        return *configured;
    return m_inputs.numSimulations > 0 ? m_inputs.numSimulations : kDefaultPaths;
}

double XScriptStructure::RepriceShifted(const MarketShift& shift, const char* missingMessage) const {
    const PricingOutcome outcome = Simulate(shift, RepricingPaths(), true);
    return outcome.result.mean[PriceIndex(outcome, missingMessage)];
}

double XScriptStructure::Reprice(const std::string& fieldName, double shift) const {
    MarketShift moved;
    if (fieldName == "spot")
        moved.spot = shift;
    else if (fieldName == "spot_Volatility" || fieldName == "spot_volatility")
        moved.volatility = shift;
    else if (fieldName == "spot_time")
        moved.spotDays = static_cast<std::int32_t>(std::lround(shift));
    else if (fieldName == "rate1")
        moved.rate1 = shift;
    else if (fieldName == "rate2")
        moved.rate2 = shift;
    else if (fieldName == "discount")
        moved.discount = shift;
    else if (fieldName == "time")
        moved.timeDays = static_cast<std::int32_t>(std::lround(shift));
    else
        throw std::invalid_argument("not supported fieldName: " + fieldName);
    return RepriceShifted(moved);
}

double XScriptStructure::RemainingTime() const {
    return std::max(m_inputs.eventDates.back().SerialNumber() - m_inputs.today.SerialNumber(), 0) /
           m_inputs.dayBasis;
}

double XScriptStructure::Forward() const {
    return m_inputs.spot * std::exp((m_inputs.rate1 - m_inputs.rate2) * RemainingTime());
}

std::string XScriptStructure::Description() const {
    const auto model = MakeScriptModel(m_inputs.model, ShiftedModelInputs(m_inputs, {}), m_inputs.spot);
    std::vector<std::int32_t> days;
    for (const Date& event : m_inputs.eventDates)
        days.push_back(event.SerialNumber() - m_inputs.today.SerialNumber());
    std::ostringstream out;
    out << "Model: " << ModelName(model->Type()) << "\n"
        << "Parameters: today=" << m_inputs.today.ToString() << " spot=" << m_inputs.spot
        << " rate1=" << m_inputs.rate1 << " rate2=" << m_inputs.rate2 << "\n"
        << "numSimulations: " << m_inputs.numSimulations << "\n"
        << "numPath: " << BuildSimulationGrid(days, m_inputs.dayBasis, MaxStepDays(*model)).Steps() << "\n";
    return out.str();
}

}  // namespace zep
