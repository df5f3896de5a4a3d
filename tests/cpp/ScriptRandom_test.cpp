// Seeded random scripts: well-formed ones must give the same values through the compiled stream
// as through the tree-walking evaluator, and through the stream run over a block of paths side
// by side as path by path; arbitrary token soup and bytes must end in a result or a script
// error, never a crash or a hang.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "ScriptTestSupport.hpp"

namespace {

using zep::ScenarioPoint;

class ScriptGenerator {
public:
    explicit ScriptGenerator(std::uint32_t seed) : m_random(seed) {}

    std::string Event() {
        std::string text;
        const int statements = 1 + Pick(5);
        for (int i = 0; i < statements; ++i) text += Statement(3) + "\n";
        return text;
    }

private:
    int Pick(int n) { return static_cast<int>(m_random() % static_cast<std::uint32_t>(n)); }

    std::string Variable() { return std::string(1, "ABCD"[Pick(4)]); }
    std::string Number() {
        static const char* numbers[] = {"0", "1", "2", "0.5", "3.25", "100", "1E-3", ".75"};
        return numbers[Pick(8)];
    }

    std::string Expression(int depth) {
        if (depth == 0) {
            switch (Pick(3)) {
                case 0: return Number();
                case 1: return Variable();
                default: return "SPOT()";
            }
        }
        const auto sub = [&] { return Expression(depth - 1); };
        switch (Pick(14)) {
            case 0: return sub() + " + " + sub();
            case 1: return sub() + " - " + sub();
            case 2: return sub() + " * " + sub();
            case 3: return sub() + " / (SPOT() - " + sub() + ")";
            case 4: return "(" + sub() + ") ^ " + std::string(Pick(2) ? "2" : "0.5");
            case 5: return "-" + sub();
            case 6: return "+(" + sub() + ")";
            case 7: return "LOG(SPOT() - " + sub() + ")";
            case 8: return "SQRT(SPOT() * " + sub() + ")";
            case 9: return "MIN(" + sub() + ", " + sub() + ", " + sub() + ")";
            case 10: return "MAX(" + sub() + ", " + sub() + ")";
            case 11: return "SMOOTH(SPOT() - " + Number() + ", " + sub() + ", " + sub() + ", " + Number() + ")";
            case 12: return "(" + sub() + ")";
            default: return sub();
        }
    }

    std::string Condition(int depth) {
        static const char* comparators[] = {"=", "!=", ">", ">=", "<", "<="};
        if (depth == 0 || Pick(3) == 0) {
            // A condition that opens with "(" is a parenthesised condition, so the left side
            // must not start with one.
            const std::string comparator = std::string(" ") + comparators[Pick(6)] + " ";
            std::string text;
            switch (Pick(3)) {
                case 0: text = "0 + " + Expression(2) + comparator + Expression(1); break;
                case 1: text = Variable() + comparator + Number(); break;
                default: text = Number() + comparator + Variable(); break;
            }
            if (Pick(4) == 0) text += "; 0.5";
            return text;
        }
        switch (Pick(3)) {
            case 0: return Condition(depth - 1) + " AND " + Condition(depth - 1);
            case 1: return Condition(depth - 1) + " OR " + Condition(depth - 1);
            default: return "(" + Condition(depth - 1) + ")";
        }
    }

    std::string Statement(int depth) {
        const int kind = Pick(depth > 0 ? 4 : 2);
        if (kind == 0) return Variable() + " = " + Expression(3);
        if (kind == 1) return Variable() + " PAYS " + Expression(2);
        std::string text = "IF " + Condition(2) + " THEN ";
        for (int i = 0, n = 1 + Pick(3); i < n; ++i) text += Statement(depth - 1) + " ";
        if (Pick(2)) {
            text += "ELSE ";
            for (int i = 0, n = Pick(3); i < n; ++i) text += Statement(depth - 1) + " ";
        }
        return text + "ENDIF";
    }

    std::mt19937 m_random;
};

bool SameDouble(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

// Runs the paths side by side through RunLanes and each alone through RunPath: every variable of
// every lane must carry its path's bits. Lanes share one numeraire per date, the first path's.
void ExpectLanesGivePathValues(const zep::CompiledScript& script, std::size_t variables, double eps,
                               std::vector<std::vector<ScenarioPoint>> paths, const std::string& context) {
    const std::size_t lanes = paths.size(), events = script.EventCount();
    std::vector<double> spots(events * lanes), numeraires(events), laneValues(variables * lanes, 0.0);
    for (std::size_t e = 0; e < events; ++e) {
        numeraires[e] = paths[0][e].numeraire;
        for (std::size_t l = 0; l < lanes; ++l) {
            paths[l][e].numeraire = numeraires[e];
            spots[e * lanes + l] = paths[l][e].spot;
        }
    }
    // A scratch made for more lanes than the block serves it too.
    auto laneScratch = script.MakeLaneScratch(lanes + 3, eps);
    script.RunLanes(spots.data(), numeraires.data(), lanes, laneValues.data(), laneScratch);
    auto scratch = script.MakeScratch(eps);
    for (std::size_t l = 0; l < lanes; ++l) {
        std::vector<double> path(variables, 0.0);
        script.RunPath(paths[l].data(), path.data(), scratch);
        for (std::size_t v = 0; v < variables; ++v)
            ASSERT_TRUE(SameDouble(laneValues[v * lanes + l], path[v]))
                << context << "\nlane " << l << " of " << lanes << ", variable " << v << ": "
                << laneValues[v * lanes + l] << " vs " << path[v];
    }
}

TEST(ScriptCompiler, GivesExactlyTheTreeEvaluatorsValuesSharpAndSmoothedOnRandomScripts) {
    ScriptGenerator generator(7031);
    std::mt19937 random(99);
    std::uniform_real_distribution<double> spot(50.0, 150.0), numeraire(0.5, 1.0);
    int built = 0;
    for (int trial = 0; trial < 1500; ++trial) {
        const std::vector<std::string> scripts = {generator.Event(), generator.Event(), generator.Event()};
        std::unique_ptr<zep::ScriptProduct> product;
        try {
            product = std::make_unique<zep::ScriptProduct>(zep::testing::MonthlyDates(3), scripts);
        } catch (const zep::Error& error) {
            // Interval analysis may reject a random divisor or logarithm; nothing else may fail.
            const std::string message = error.Message();
            ASSERT_TRUE(message == "Division by {0}" || message == "Inconsistent bounds") << message << "\n" << scripts[0] << scripts[1] << scripts[2];
            continue;
        }
        ++built;
        zep::ScriptPathEvaluator evaluator(*product);
        // A band as wide as the spots' spread, so that most smoothed conditions blend.
        zep::ScriptPathEvaluator wide(*product, 60.0);
        std::vector<double> compiled(product->VariableCount()), tree(product->VariableCount());
        std::vector<std::vector<ScenarioPoint>> paths;
        for (int path = 0; path < 8; ++path) {
            std::vector<ScenarioPoint> points;
            for (int i = 0; i < 3; ++i) points.push_back({spot(random), numeraire(random)});
            // Exact ties on comparisons and SMOOTH bands matter too.
            if (path == 0) points = {{100.0, 1.0}, {1.0, 0.5}, {0.5, 1.0}};
            paths.push_back(points);
            const auto same = [&](const char* logic) {
                for (std::size_t v = 0; v < tree.size(); ++v)
                    ASSERT_TRUE(SameDouble(compiled[v], tree[v]))
                        << logic << "\n" << scripts[0] << "\n" << scripts[1] << "\n" << scripts[2]
                        << "\nvariable " << v << ": " << compiled[v] << " vs " << tree[v];
            };
            evaluator.Evaluate(points, compiled);
            evaluator.EvaluateTree(points, tree);
            ASSERT_NO_FATAL_FAILURE(same("sharp"));
            evaluator.EvaluateFuzzy(points, compiled);
            evaluator.EvaluateFuzzyTree(points, tree);
            ASSERT_NO_FATAL_FAILURE(same("smoothed"));
            wide.EvaluateFuzzy(points, compiled);
            wide.EvaluateFuzzyTree(points, tree);
            ASSERT_NO_FATAL_FAILURE(same("smoothed, wide band"));
        }
        const std::string context = scripts[0] + "\n" + scripts[1] + "\n" + scripts[2];
        // Blocks of one path, of every path, and of paths whose lanes take branches apart.
        for (const std::size_t lanes : {std::size_t{1}, paths.size()}) {
            const std::vector<std::vector<ScenarioPoint>> block(paths.begin(), paths.begin() + lanes);
            const std::size_t variables = product->VariableCount();
            ASSERT_NO_FATAL_FAILURE(ExpectLanesGivePathValues(product->Compiled(), variables, 0.0, block, "sharp\n" + context));
            ASSERT_NO_FATAL_FAILURE(ExpectLanesGivePathValues(product->CompiledSmoothed(), variables, zep::kDefaultFuzzyEps,
                                                              block, "smoothed\n" + context));
            ASSERT_NO_FATAL_FAILURE(ExpectLanesGivePathValues(product->CompiledSmoothed(), variables, 60.0, block,
                                                              "smoothed, wide band\n" + context));
        }
    }
    EXPECT_GT(built, 1400);
}

// Runs of identical guard events, checked as one run, against the tree evaluators date by date:
// every comparison form, sharp and smoothed (a narrow band, a wide one), a guard that reads the
// variable it sets (checked date by date), guards that fall as the spot rises or whose factor is
// zero or whose other side is infinite, and spots that sit on the barrier, cross it at every
// position of a run or are NaN.
TEST(ScriptCompiler, RunsOfIdenticalGuardsGiveTheTreeEvaluatorsValues) {
    const std::vector<std::string> guards = {
        "IF SPOT() / S0 < KI THEN HIT = 1 ENDIF",   "IF SPOT() / S0 <= KI THEN HIT = 1 ENDIF",
        "IF SPOT() / S0 = KI THEN HIT = 1 ENDIF",   "IF SPOT() * 0.01 > 1.3; 0.05 THEN HIT = 2 ENDIF",
        "IF SPOT() >= 130; 0 THEN HIT = 3 ENDIF",   "IF HIT < SPOT() / S0 THEN HIT = 0.9 ENDIF",
        "IF SPOT() / DOWN > -80 THEN HIT = 4 ENDIF", "IF 125 < SPOT() * UP THEN HIT = 5 ENDIF",
        "IF SPOT() * ZERO >= 0 THEN HIT = 6 ENDIF",  "IF SPOT() / S0 > FAR THEN HIT = 7 ENDIF"};
    std::mt19937 random(20241124);
    std::normal_distribution<double> step(0.0, 0.03);
    for (const std::string& guard : guards) {
        constexpr int kDates = 23;  // five runs of four and a tail
        std::vector<std::string> scripts = {"S0 = 100 KI = 0.7 HIT = 0.25 DOWN = -1 UP = 1 ZERO = 0 FAR = -1E308 * 10"};
        for (int d = 0; d < kDates; ++d) scripts.push_back(guard);
        scripts.push_back("P PAYS HIT");
        const zep::ScriptProduct product(zep::testing::MonthlyDates(scripts.size()), scripts);
        zep::ScriptPathEvaluator narrow(product), wide(product, 0.5);
        std::vector<double> compiled(product.VariableCount()), tree(product.VariableCount());
        std::vector<std::vector<ScenarioPoint>> paths;
        for (int path = 0; path < 400; ++path) {
            std::vector<ScenarioPoint> points(scripts.size(), ScenarioPoint{100.0, 1.0});
            double spot = 100.0;
            for (int d = 1; d <= kDates; ++d) points[d].spot = spot *= std::exp(step(random) * (1 + path % 7));
            if (path % 5 == 0) points[1 + path % kDates].spot = 70.0;   // on the barrier
            if (path % 11 == 0) points[1 + path % kDates].spot = 130.0;
            if (path % 13 == 0) points[1 + path % kDates].spot = NAN;
            paths.push_back(points);
            for (auto* evaluator : {&narrow, &wide}) {
                evaluator->Evaluate(points, compiled);
                evaluator->EvaluateTree(points, tree);
                for (std::size_t v = 0; v < tree.size(); ++v)
                    ASSERT_TRUE(SameDouble(compiled[v], tree[v])) << guard << " sharp, path " << path;
                evaluator->EvaluateFuzzy(points, compiled);
                evaluator->EvaluateFuzzyTree(points, tree);
                for (std::size_t v = 0; v < tree.size(); ++v)
                    ASSERT_TRUE(SameDouble(compiled[v], tree[v])) << guard << " smoothed, path " << path;
            }
        }
        const std::size_t variables = product.VariableCount();
        ASSERT_NO_FATAL_FAILURE(ExpectLanesGivePathValues(product.Compiled(), variables, 0.0, paths, guard + " sharp"));
        for (const double eps : {zep::kDefaultFuzzyEps, 0.5})
            ASSERT_NO_FATAL_FAILURE(
                ExpectLanesGivePathValues(product.CompiledSmoothed(), variables, eps, paths, guard + " smoothed"));
    }
}

// Feeds a string to the whole pipeline, evaluating it when it builds.
void Digest(const std::string& script) {
    try {
        const zep::ScriptProduct product(zep::testing::MonthlyDates(1), {script});
        zep::ScriptPathEvaluator evaluator(product);
        std::vector<double> values(product.VariableCount());
        const std::vector<ScenarioPoint> path = {{100.0, 1.0}};
        evaluator.Evaluate(path, values);
        evaluator.EvaluateTree(path, values);
        evaluator.EvaluateFuzzy(path, values);
        evaluator.EvaluateFuzzyTree(path, values);
    } catch (const zep::Error&) {
    }
}

TEST(ScriptFuzz, RandomTokenSequencesEndInAResultOrAScriptError) {
    static const char* vocabulary[] = {"IF", "THEN", "ELSE", "ENDIF", "AND", "OR", "PAYS", "SPOT", "LOG", "SQRT",
                                       "MIN", "MAX", "SMOOTH", "X", "Y", "1", "0", "2.5", "1E400", ".", "(", ")",
                                       ",", ";", ":", "+", "-", "*", "/", "^", "=", "!=", "<", ">", "<=", ">=", "_Z"};
    constexpr int kWords = sizeof vocabulary / sizeof *vocabulary;
    std::mt19937 random(4242);
    for (int trial = 0; trial < 6000; ++trial) {
        std::string script;
        for (int i = 0, n = static_cast<int>(random() % 30); i < n; ++i)
            script += std::string(vocabulary[random() % kWords]) + " ";
        ASSERT_NO_FATAL_FAILURE(Digest(script)) << script;
    }
}

TEST(ScriptFuzz, RandomBytesEndInAResultOrAScriptError) {
    std::mt19937 random(1717);
    for (int trial = 0; trial < 4000; ++trial) {
        std::string script(random() % 60, '\0');
        for (char& c : script) c = static_cast<char>(random() % 256);
        ASSERT_NO_FATAL_FAILURE(Digest(script));
    }
}

}  // namespace
