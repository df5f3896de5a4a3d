// Structured product classes: generating, parsing and preparing a 12-observation autocall's
// script, and pricing the class against the same note written by hand
// (examples/autocallable.yaml), same market, seed and paths.
#include <benchmark/benchmark.h>

#include "lum-monte-carlo/ProductDefinition.hpp"
#include "lum-monte-carlo/XScriptStructure.hpp"
#include "lum-monte-carlo/products/AutoCall.hpp"
#include "lum-monte-carlo/script/ScriptProduct.hpp"

namespace {

const zep::XScriptInputs& HandWritten() {
    static const zep::XScriptInputs inputs = [] {
        zep::XScriptInputs in = zep::ProductDefinitionFromFile(ZEP_SOURCE_DIR "/examples/autocallable.yaml");
        in.numSimulations = 20000;
        return in;
    }();
    return inputs;
}

// The hand-written note's terms: monthly calls at 100% paying 0.75% a month elapsed (coupons with
// memory whose barrier is the call level), knock-in at 70% on every weekday's close.
zep::AutoCallTerms NoteTerms(const std::string& monitoring) {
    zep::AutoCallTerms t;
    t.initialLevel = 100.0;
    t.strikeDate = zep::Date(2, 1, 2024);
    for (int m = 1; m <= 12; ++m) t.observationDates.push_back(t.strikeDate.Advance(m, zep::Months));
    t.autocallLevels = {1.0};
    t.coupons = {0.0075};
    t.couponBarrier = 1.0;
    t.memory = true;
    t.knockIn = {0.7, monitoring};
    return t;
}

void GenerateParsePrepareAutoCall12(benchmark::State& state) {
    const zep::AutoCallTerms terms = NoteTerms(state.range(0) ? "continuous" : "discrete");
    for (auto _ : state) {
        const zep::XScriptInputs in = zep::AutoCall(terms).Inputs(HandWritten());
        const zep::ScriptProduct product(in.eventDates, in.eventScripts);
        benchmark::DoNotOptimize(product.VariableCount());
    }
    state.SetLabel(state.range(0) ? "knock-in on every weekday (262 event dates)" : "knock-in on the 12 observations");
}
BENCHMARK(GenerateParsePrepareAutoCall12)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// The two steps apart: writing the scripts, then parsing, preparing and compiling them.
void GenerateAutoCall12(benchmark::State& state) {
    const zep::AutoCallTerms terms = NoteTerms("discrete");
    for (auto _ : state) benchmark::DoNotOptimize(zep::AutoCall(terms).Inputs(HandWritten()).eventScripts.size());
}
BENCHMARK(GenerateAutoCall12)->Unit(benchmark::kMicrosecond);

void ParsePrepareAutoCall12(benchmark::State& state) {
    const zep::XScriptInputs in = zep::AutoCall(NoteTerms("discrete")).Inputs(HandWritten());
    for (auto _ : state) benchmark::DoNotOptimize(zep::ScriptProduct(in.eventDates, in.eventScripts).VariableCount());
}
BENCHMARK(ParsePrepareAutoCall12)->Unit(benchmark::kMicrosecond);

void PriceAutoCall(benchmark::State& state) {
    const bool byClass = state.range(0) == 1;
    const zep::XScriptInputs in = byClass ? zep::AutoCall(NoteTerms("continuous")).Inputs(HandWritten()) : HandWritten();
    double price = 0.0;
    for (auto _ : state) price = zep::XScriptStructure(in).Price();
    state.SetLabel(std::string(byClass ? "class" : "hand-written") + ", price " + std::to_string(price));
}
BENCHMARK(PriceAutoCall)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
