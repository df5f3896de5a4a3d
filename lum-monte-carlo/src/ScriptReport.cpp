#include "lum-monte-carlo/ScriptReport.hpp"

#include <algorithm>
#include <list>
#include <cmath>
#include <mutex>
#include <numeric>
#include <thread>

#include "lum-monte-carlo/RunSettings.hpp"
#include "lum-monte-carlo/ScriptModelApi.hpp"
#include "lum-monte-carlo/script/ScriptPathEvaluator.hpp"

namespace zep {

namespace {

using Scenario = std::vector<ScenarioPoint>;

// Wraps the product's payoff and keeps a copy of every scenario it is asked to evaluate. Each
// worker's evaluator records into its own list; only creating an evaluator takes the lock.
class RecordingPayoff final : public PathPayoff {
public:
    RecordingPayoff(const PathPayoff& inner, std::size_t events) : m_inner(inner), m_events(events) {}

    const std::vector<std::string>& VariableNames() const override { return m_inner.VariableNames(); }
    int PaymentVariable() const override { return m_inner.PaymentVariable(); }
    std::unique_ptr<PathEvaluator> NewEvaluator(bool smoothed) const override {
        std::lock_guard lock(m_mutex);
        m_recordings.emplace_back();
        return std::make_unique<Recorder>(m_inner.NewEvaluator(smoothed), m_events, m_recordings.back());
    }

    std::vector<Scenario> Scenarios() const {
        std::vector<Scenario> all;
        for (auto& recording : m_recordings) all.insert(all.end(), recording.begin(), recording.end());
        return all;
    }

private:
    class Recorder final : public PathEvaluator {
    public:
        Recorder(std::unique_ptr<PathEvaluator> inner, std::size_t events, std::vector<Scenario>& out)
            : m_inner(std::move(inner)), m_events(events), m_out(out) {}
        void Evaluate(const ScenarioPoint* scenario, double* variables) override {
            m_out.emplace_back(scenario, scenario + m_events);
            m_inner->Evaluate(scenario, variables);
        }

    private:
        std::unique_ptr<PathEvaluator> m_inner;
        std::size_t m_events;
        std::vector<Scenario>& m_out;
    };

    const PathPayoff& m_inner;
    std::size_t m_events;
    mutable std::mutex m_mutex;
    mutable std::list<std::vector<Scenario>> m_recordings;  // stable addresses for the recorders
};

double Percentile(std::vector<double> values, double fraction) {
    const auto k = static_cast<std::size_t>(std::floor(fraction * (values.size() - 1)));
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(k), values.end());
    return values[k];
}

ScriptReportData::SpotStatistics Statistics(const std::vector<double>& spots) {
    ScriptReportData::SpotStatistics s;
    const double n = static_cast<double>(spots.size());
    s.mean = std::accumulate(spots.begin(), spots.end(), 0.0) / n;
    double squares = 0.0;
    for (const double x : spots) squares += (x - s.mean) * (x - s.mean);
    s.standardDeviation = spots.size() > 1 ? std::sqrt(squares / (n - 1.0)) : 0.0;
    const auto [low, high] = std::minmax_element(spots.begin(), spots.end());
    s.minimum = *low;
    s.maximum = *high;
    s.percentile5 = Percentile(spots, 0.05);
    s.percentile95 = Percentile(spots, 0.95);
    return s;
}

std::string PriceVariable(const XScriptStructure& product) {
    if (!product.Inputs().priceVariable.empty()) return product.Inputs().priceVariable;
    const int index = product.Payoff().PaymentVariable();
    return index >= 0 ? product.Payoff().VariableNames()[static_cast<std::size_t>(index)] : "";
}

// The variables after each event date's statements, replayed on one recorded scenario.
std::vector<std::vector<double>> VariablesByEvent(const ScriptProduct& script, const Scenario& scenario) {
    ScriptPathEvaluator evaluator(script);
    std::vector<double> variables(script.VariableCount(), 0.0);
    std::vector<std::vector<double>> byEvent;
    for (std::size_t e = 0; e < scenario.size(); ++e) {
        evaluator.EvaluateEvent(e, scenario[e], variables);
        byEvent.push_back(variables);
    }
    return byEvent;
}

}  // namespace

ScriptReportData CollectReportData(const XScriptStructure& product, const std::string& productName,
                                   std::vector<ScriptReportData::Level> levels,
                                   std::vector<std::pair<std::string, double>> greeks) {
    const XScriptInputs& in = product.Inputs();
    ScriptReportData data;
    data.productName = productName;
    data.today = in.today;
    data.spot = in.spot;
    data.volatility = in.volatility;
    data.rate1 = in.rate1;
    data.rate2 = in.rate2;
    data.modelName = ModelName(ModelTypeFromCode(in.model));
    data.modelParameters = in.modelParameters;
    data.seed = in.seed;
    data.generator = in.quasiRandom ? "Halton sequence (QmcRanGen)" : "PCG32 with the polar method (BasicRanGen)";
    data.dayBasis = in.dayBasis;
    data.eventDates = in.eventDates;
    data.eventScripts = in.eventScripts;
    data.levels = std::move(levels);
    data.greeks = std::move(greeks);
    data.priceVariable = PriceVariable(product);

    const std::int64_t paths = in.numSimulations > 0 ? in.numSimulations : 10000;
    data.numSimulations = paths;
    const RunMode mode = EffectiveRunMode(EnvironmentValue("ZEP_RUNMODE"));
    data.runMode = mode == RunMode::SingleThread ? "single thread" : "multi-threaded CPU";
    data.threads = static_cast<int>(mode == RunMode::SingleThread
                                        ? 1
                                        : ThreadCount(static_cast<std::size_t>(paths), std::thread::hardware_concurrency(),
                                                      EnvironmentValue("ZEP_NUM_THREADS")));

    const PricingOutcome base = product.Simulate(MarketShift{}, paths, false);
    data.variableNames = base.variables;
    data.variableMeans = base.result.mean;
    data.variableStandardErrors = base.result.standardError;
    for (std::size_t i = 0; i < data.variableNames.size(); ++i)
        if (data.variableNames[i] == data.priceVariable) data.price = data.variableMeans[i];
    if (paths >= 2) {
        const PricingOutcome half = product.Simulate(MarketShift{}, paths / 2, false);
        for (std::size_t i = 0; i < half.variables.size(); ++i)
            if (half.variables[i] == data.priceVariable) data.convergence.emplace_back(paths / 2, half.result.mean[i]);
    }
    data.convergence.emplace_back(paths, data.price);

    // The recording run draws the same first paths as the base run: each path's random numbers
    // depend only on the seed and the path's index.
    const auto recorder = std::make_shared<RecordingPayoff>(product.Payoff(), in.eventDates.size());
    const XScriptStructure recorded(in, recorder);
    recorded.Simulate(MarketShift{}, std::min(paths, kReportRecordedPaths), false);
    std::vector<Scenario> scenarios = recorder->Scenarios();
    if (scenarios.empty() || in.eventDates.empty()) return data;

    for (const ScenarioPoint& point : scenarios.front()) data.discountFactors.push_back(point.numeraire);
    for (std::size_t e = 0; e < in.eventDates.size(); ++e) {
        std::vector<double> spots;
        spots.reserve(scenarios.size());
        for (const Scenario& scenario : scenarios) spots.push_back(scenario[e].spot);
        data.spotStatistics.push_back(Statistics(spots));
    }

    std::sort(scenarios.begin(), scenarios.end(),
              [](const Scenario& a, const Scenario& b) { return a.back().spot < b.back().spot; });
    const ScriptProduct script(in.eventDates, in.eventScripts);
    for (const std::size_t index : {std::size_t{0}, scenarios.size() / 2, scenarios.size() - 1}) {
        ScriptReportData::SamplePath path;
        for (const ScenarioPoint& point : scenarios[index]) path.spots.push_back(point.spot);
        path.variables = VariablesByEvent(script, scenarios[index]);
        data.samplePaths.push_back(std::move(path));
    }
    return data;
}

}  // namespace zep
