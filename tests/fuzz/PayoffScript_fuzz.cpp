// Payoff scripts as users write them, one script per event date, the events separated by '|'
// (a character the script language drops). A script's tokens written out with blanks between
// them tokenise as the same tokens. A product the scripts build evaluates on a path; the
// compiled stream gives the tree walker's values, sharp and smoothed alike, and run over a block
// of paths side by side each lane gets its own path's values.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Invariant.hpp"
#include "LibraryFailures.hpp"
#include "lum-monte-carlo/script/ScriptPathEvaluator.hpp"
#include "lum-monte-carlo/script/ScriptProduct.hpp"
#include "lum-monte-carlo/script/Tokeniser.hpp"

namespace {

constexpr std::size_t kMaxEvents = 8;
// A path through the usual levels of an autocallable's checks, a spot of zero and extremes.
constexpr double kSpots[kMaxEvents] = {100.0, 69.5, 100.0, 130.25, 0.0, 1.0, 1e6, 100.0};

std::vector<std::string> EventScripts(std::string_view text) {
    std::vector<std::string> scripts;
    while (scripts.size() + 1 < kMaxEvents) {
        const std::size_t bar = text.find('|');
        if (bar == std::string_view::npos) break;
        scripts.emplace_back(text.substr(0, bar));
        text.remove_prefix(bar + 1);
    }
    scripts.emplace_back(text);
    return scripts;
}

std::vector<zep::Date> MonthlyDates(std::size_t count) {
    std::vector<zep::Date> dates;
    for (std::size_t i = 0; i < count; ++i) dates.push_back(zep::Date(15, 1, 2030).Advance(static_cast<std::int32_t>(i), zep::Months));
    return dates;
}

void RequireTokensReadBack(const std::string& script) {
    const std::vector<std::string> tokens = zep::Tokenise(script);
    std::string written;
    for (const std::string& token : tokens) written += token + " ";
    ZEP_FUZZ_REQUIRE(zep::Tokenise(written) == tokens, "the tokens of '" + script + "' written out as '" + written +
                                                           "' tokenise otherwise");
}

bool Same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

void RequireSameValues(const zep::ScriptProduct& product, const std::vector<double>& compiled,
                       const std::vector<double>& tree, const char* logic) {
    for (std::size_t i = 0; i < compiled.size(); ++i)
        ZEP_FUZZ_REQUIRE(Same(compiled[i], tree[i]),
                         std::string(logic) + " logic: " + product.VariableNames()[i] + " is " +
                             std::to_string(compiled[i]) + " compiled but " + std::to_string(tree[i]) +
                             " by the tree\n" + product.DebugText());
}

// Three paths side by side (the path, and its spots a tenth lower and higher) against each alone.
void RequireLanesGivePathValues(const zep::ScriptProduct& product, const zep::CompiledScript& script, double eps,
                                const std::vector<zep::ScenarioPoint>& path, const char* logic) {
    constexpr double kScales[] = {1.0, 0.9, 1.1};
    constexpr std::size_t kLanes = 3;
    const std::size_t events = path.size(), count = product.VariableCount();
    std::vector<double> spots(events * kLanes), numeraires(events), lanes(count * kLanes, 0.0);
    std::vector<std::vector<zep::ScenarioPoint>> paths(kLanes, path);
    for (std::size_t e = 0; e < events; ++e) {
        numeraires[e] = path[e].numeraire;
        for (std::size_t l = 0; l < kLanes; ++l) spots[e * kLanes + l] = paths[l][e].spot = path[e].spot * kScales[l];
    }
    auto laneScratch = script.MakeLaneScratch(kLanes, eps);
    script.RunLanes(spots.data(), numeraires.data(), kLanes, lanes.data(), laneScratch);
    auto scratch = script.MakeScratch(eps);
    for (std::size_t l = 0; l < kLanes; ++l) {
        std::vector<double> alone(count, 0.0);
        script.RunPath(paths[l].data(), alone.data(), scratch);
        for (std::size_t i = 0; i < count; ++i)
            ZEP_FUZZ_REQUIRE(Same(lanes[i * kLanes + l], alone[i]),
                             std::string(logic) + " logic, lane " + std::to_string(l) + ": " +
                                 product.VariableNames()[i] + " is " + std::to_string(lanes[i * kLanes + l]) +
                                 " side by side but " + std::to_string(alone[i]) + " alone\n" + product.DebugText());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> scripts =
        EventScripts(std::string_view(reinterpret_cast<const char*>(data), size));
    for (const std::string& script : scripts) RequireTokensReadBack(script);
    const auto product = zep::fuzz::Attempt([&] { return zep::ScriptProduct(MonthlyDates(scripts.size()), scripts); });
    if (!product) return 0;
    (void)product->DebugText();

    std::vector<zep::ScenarioPoint> path;
    for (std::size_t i = 0; i < scripts.size(); ++i) path.push_back({kSpots[i], std::pow(0.99, static_cast<double>(i))});
    const std::size_t count = product->VariableCount();
    std::vector<double> compiled(count), tree(count), fuzzy(count), fuzzyTree(count);
    zep::fuzz::Attempt([&] {
        zep::ScriptPathEvaluator evaluator(*product);
        evaluator.Evaluate(path, compiled);
        evaluator.EvaluateTree(path, tree);
        evaluator.EvaluateFuzzy(path, fuzzy);
        evaluator.EvaluateFuzzyTree(path, fuzzyTree);
        RequireSameValues(*product, compiled, tree, "sharp");
        RequireSameValues(*product, fuzzy, fuzzyTree, "smoothed");
        RequireLanesGivePathValues(*product, product->Compiled(), 0.0, path, "sharp");
        RequireLanesGivePathValues(*product, product->CompiledSmoothed(), zep::kDefaultFuzzyEps, path, "smoothed");
    });
    return 0;
}
