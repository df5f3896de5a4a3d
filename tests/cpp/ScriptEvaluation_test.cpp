#include <gtest/gtest.h>

#include "ParamNames.hpp"

#include <string>
#include <vector>

#include "ScriptTestSupport.hpp"
#include "lum-monte-carlo/script/Evaluator.hpp"

namespace {

using zep::ScenarioPoint;
using zep::testing::Logic;
using zep::testing::MakeProduct;
using zep::testing::RunScript;
using zep::testing::RunOne;

TEST(ScriptPays, AccumulatesPaymentsTimesTheNumeraireOfTheirDate) {
    const auto product = MakeProduct({"P PAYS 10", "P PAYS SPOT() Q = P", "P PAYS -1"});
    const std::vector<ScenarioPoint> path = {{100.0, 0.9}, {50.0, 0.8}, {70.0, 0.5}};
    for (const auto logic : {Logic::Compiled, Logic::Tree, Logic::Fuzzy, Logic::FuzzyTree}) {
        const auto values = RunScript(product, path, logic);
        EXPECT_DOUBLE_EQ(values.at("Q"), 10 * 0.9 + 50 * 0.8);
        EXPECT_DOUBLE_EQ(values.at("P"), 10 * 0.9 + 50 * 0.8 - 0.5);
    }
}

TEST(ScriptEvaluation, StartsEveryPathFromZero) {
    const auto product = MakeProduct({"N = N + 1 P PAYS SPOT()"});
    zep::ScriptPathEvaluator evaluator(product);
    std::vector<double> values(product.VariableCount());
    const std::vector<ScenarioPoint> path = {{3.0, 2.0}};
    evaluator.Evaluate(path, values);
    evaluator.Evaluate(path, values);
    EXPECT_EQ(values, (std::vector<double>{1.0, 6.0}));
}

TEST(ScriptEvaluation, NumbersVariablesInOrderOfFirstAppearance) {
    const auto product = MakeProduct({"B = 1 IF SPOT() > A THEN C PAYS B ENDIF", "A = C D = B"});
    EXPECT_EQ(product.VariableNames(), (std::vector<std::string>{"B", "A", "C", "D"}));
}

TEST(ScriptEvaluation, RejectsAScenarioOfTheWrongLength) {
    const auto product = MakeProduct({"X = 1", "Y = 2"});
    zep::ScriptPathEvaluator evaluator(product);
    std::vector<double> values(2);
    const std::vector<ScenarioPoint> path = {{1.0, 1.0}};
    EXPECT_THROW(evaluator.Evaluate(path, values), zep::Error);
}

TEST(ScriptEvaluation, ConstantConditionsBecomeTrueOrFalse) {
    const auto product = MakeProduct({"IF 1 > 2 OR 3 = 4 THEN X = 1 ELSE X = 2 ENDIF IF NOT_USED = 0 THEN Y = 1 ENDIF"});
    const std::string text = product.DebugText();
    EXPECT_NE(text.find("  FALSE"), std::string::npos) << text;
    EXPECT_EQ(RunScript(product, {{1.0, 1.0}}).at("X"), 2.0);
}

// Counts the LOG and SQRT nodes that the sharp evaluator actually visits.
class CountingEvaluator : public zep::Evaluator<double> {
public:
    using zep::Evaluator<double>::Visit;
    void Visit(const zep::NodeLog& node) override {
        ++logs;
        zep::Evaluator<double>::Visit(node);
    }
    void Visit(const zep::NodeSqrt& node) override {
        ++roots;
        zep::Evaluator<double>::Visit(node);
    }
    int logs = 0;
    int roots = 0;
};

struct SmoothCase {
    double spot;
    int logs;   // a = LOG(SPOT()) is needed above the band and inside it
    int roots;  // b = SQRT(SPOT()) is needed below the band and inside it
};

class ScriptSmooth : public ::testing::TestWithParam<SmoothCase> {};

TEST_P(ScriptSmooth, EvaluatesOnlyTheNeededArgument) {
    const auto& [spot, logs, roots] = GetParam();
    const auto product = MakeProduct({"X = SMOOTH(SPOT() - 100, LOG(SPOT()), SQRT(SPOT()), 2)"});
    CountingEvaluator evaluator;
    std::vector<double> values(1);
    evaluator.RunEvent(product.Events()[0], spot, 1.0, values);
    EXPECT_EQ(evaluator.logs, logs);
    EXPECT_EQ(evaluator.roots, roots);
    const double h = 1.0;
    const double x = spot - 100;
    const double expected = x > h    ? std::log(spot)
                            : x < -h ? std::sqrt(spot)
                                     : std::sqrt(spot) + (std::log(spot) - std::sqrt(spot)) / 2 / h * (x + h);
    EXPECT_DOUBLE_EQ(values[0], expected);
    EXPECT_DOUBLE_EQ(RunOne("X = SMOOTH(SPOT() - 100, LOG(SPOT()), SQRT(SPOT()), 2)", spot).at("X"), expected);
}

INSTANTIATE_TEST_SUITE_P(Bands, ScriptSmooth,
                         ::testing::Values(SmoothCase{98.0, 0, 1}, SmoothCase{102.0, 1, 0},
                                           SmoothCase{100.5, 1, 1}, SmoothCase{99.0, 1, 1}),
                         [](const ::testing::TestParamInfo<SmoothCase>& info) {
                             return "Spot" + zep::testing::NameOf(info.param.spot);
                         });

// The fuzzy evaluator against degrees worked out by hand from the smoothing rules.
struct FuzzyCase {
    const char* script;
    double spot;
    const char* variable;
    double expected;
};

class ScriptFuzzy : public ::testing::TestWithParam<FuzzyCase> {};

TEST_P(ScriptFuzzy, BlendsBranchesByTheDegreeOfTruth) {
    const auto& [script, spot, variable, expected] = GetParam();
    for (const auto logic : {Logic::Fuzzy, Logic::FuzzyTree})
        EXPECT_NEAR(RunOne(script, spot, logic).at(variable), expected, 1e-12) << script << " at " << spot;
}

INSTANTIATE_TEST_SUITE_P(
    HandComputed, ScriptFuzzy,
    ::testing::Values(
        // w = 2, h = 1, x = 0.5: degree (1 + 0.5) / 2 = 0.75.
        FuzzyCase{"IF SPOT() > 100; 2 THEN X = 10 ELSE X = 4 ENDIF", 100.5, "X", 0.75 * 10 + 0.25 * 4},
        FuzzyCase{"IF SPOT() >= 100; 2 THEN X = 10 ELSE X = 4 ENDIF", 100.5, "X", 0.75 * 10 + 0.25 * 4},
        FuzzyCase{"IF SPOT() < 100; 2 THEN X = 10 ELSE X = 4 ENDIF", 100.5, "X", 0.25 * 10 + 0.75 * 4},
        // Outside the band the branch is taken outright.
        FuzzyCase{"IF SPOT() > 100; 2 THEN X = 10 ELSE X = 4 ENDIF", 101.5, "X", 10.0},
        FuzzyCase{"IF SPOT() > 100; 2 THEN X = 10 ELSE X = 4 ENDIF", 98.5, "X", 4.0},
        // Equality: (h - |x|) / h = 0.5; a variable not written by the else branch keeps its value.
        FuzzyCase{"X = 3 IF SPOT() = 100; 2 THEN X = 1 ENDIF", 100.5, "X", 0.5 * 1 + 0.5 * 3},
        FuzzyCase{"IF SPOT() != 100; 2 THEN X = 1 ENDIF", 100.5, "X", 0.5},
        // AND multiplies, OR is a + b - ab: both degrees 0.75.
        FuzzyCase{"IF SPOT() > 100; 2 AND SPOT() < 101; 2 THEN X = 1 ENDIF", 100.5, "X", 0.5625},
        FuzzyCase{"IF SPOT() > 100; 2 OR SPOT() < 101; 2 THEN X = 1 ENDIF", 100.5, "X", 0.9375},
        // Nested: outer degree 0.75; inner x = -0.5, w = 4: (2 - 0.5) / 4 = 0.375.
        // Inner Y = 0.375*3 + 0.625*5 = 4.25; outer Y = 0.75*4.25 + 0.25*1, X = 0.75*10 + 0.25*4.
        FuzzyCase{"Y = 1 IF SPOT() > 100; 2 THEN X = 10 IF SPOT() > 101; 4 THEN Y = 3 ELSE Y = 5 ENDIF "
                  "ELSE X = 4 ENDIF",
                  100.5, "Y", 0.75 * 4.25 + 0.25 * 1},
        FuzzyCase{"Y = 1 IF SPOT() > 100; 2 THEN X = 10 IF SPOT() > 101; 4 THEN Y = 3 ELSE Y = 5 ENDIF "
                  "ELSE X = 4 ENDIF",
                  100.5, "X", 0.75 * 10 + 0.25 * 4},
        // Nested in the else branch, with payments: inner degree 1 - 0.375 = 0.625 for SPOT() < 101.
        FuzzyCase{"IF SPOT() > 100; 2 THEN P PAYS 8 ELSE IF SPOT() < 101; 4 THEN P PAYS 2 ENDIF ENDIF",
                  100.5, "P", 0.75 * 8 + 0.25 * (0.375 * 0 + 0.625 * 2)},
        // Default eps 0.01: x = 0.001, degree (0.005 + 0.001) / 0.01 = 0.6.
        FuzzyCase{"IF SPOT() > 100 THEN X = 1 ENDIF", 100.001, "X", 0.6},
        // w = 0.5, x = 0.125: N = 0.75. N takes the discrete values {0, 1}, so N - 1 >= 0 ramps
        // from l = -1 to r = 0: degree (-0.25 + 1) / 1 = 0.75.
        FuzzyCase{"N = 0 IF SPOT() > 100; 0.5 THEN N = 1 ENDIF IF N >= 1 THEN X = 7 ENDIF", 100.125, "X", 0.75 * 7},
        // N - 1 = 0 over {-1, 0}: 1 - x / l with x = -0.25, l = -1.
        FuzzyCase{"N = 0 IF SPOT() > 100; 0.5 THEN N = 1 ENDIF IF N = 1 THEN X = 7 ENDIF", 100.125, "X", 0.75 * 7},
        // The daily knock-in check, one step for a run of dates: x = 0.7 - 0.7025, degree 0.25,
        // blended with the value KI had.
        FuzzyCase{"S0 = 100 KI = 0.5 IF SPOT() / S0 < 0.7 THEN KI = 1 ENDIF", 70.25, "KI", 0.25 * 1 + 0.75 * 0.5},
        // A script eps of zero is a sharp test.
        FuzzyCase{"IF SPOT() >= 100; 0 THEN X = 1 ELSE X = 2 ENDIF", 100.0, "X", 1.0},
        FuzzyCase{"IF SPOT() > 100; 0 THEN X = 1 ELSE X = 2 ENDIF", 100.0, "X", 2.0}),
    [](const ::testing::TestParamInfo<FuzzyCase>& info) {
        const FuzzyCase& c = info.param;
        return zep::testing::NameOf(c.script) + "_" + c.variable + "_at_" + zep::testing::NameOf(c.spot);
    });

TEST(ScriptFuzzy, DiscreteComparisonsAgreeWithSharpLogicOnTheirDomain) {
    // N runs over {0, 1, 2} by sharp steps; every discrete test then has degree 0 or 1.
    const std::string script =
        "N = 0 IF SPOT() > 1; 0 THEN N = N + 1 ENDIF IF SPOT() > 2; 0 THEN N = N + 1 ENDIF "
        "IF N > 1 THEN A = 1 ENDIF IF N >= 1 THEN B = 1 ENDIF IF N = 1 THEN C = 1 ENDIF IF N != 2 THEN D = 1 ENDIF";
    for (const double spot : {0.5, 1.5, 2.5}) {
        const auto sharp = RunOne(script, spot, Logic::Tree);
        const auto fuzzy = RunOne(script, spot, Logic::Fuzzy);
        for (const char* name : {"A", "B", "C", "D"}) EXPECT_EQ(fuzzy.at(name), sharp.at(name)) << name << spot;
    }
}

TEST(ScriptDebugger, PrintsTheAnalysisOfConditionsAndIfs) {
    const auto product = MakeProduct({"N = 0 IF SPOT() > 100 THEN N = 1 ELSE N = 2 ENDIF IF N >= 1 THEN X = 7 ENDIF"});
    const std::string text = product.DebugText();
    EXPECT_NE(text.find("IF[FIRSTELSE=2]"), std::string::npos) << text;
    EXPECT_NE(text.find("IF[FIRSTELSE=-1]"), std::string::npos) << text;
    EXPECT_NE(text.find("SUP[CONT,EPS=-1]"), std::string::npos) << text;
    // N - 1 over {0, 1}: no point on the false side, so l = r - 1; the true side starts at 0.
    EXPECT_NE(text.find("SUPEQUAL[DISCRETE,BOUNDS=-1,0]"), std::string::npos) << text;
}

}  // namespace

// Guards whose sides are constants, variables, the spot, or the spot times or over a constant
// or a variable compile to one compare-and-branch, and "IF guard THEN K = constant ENDIF" to
// one instruction that runs a row of such events as a loop: each must give the tree
// evaluator's values, ties included (S0 = 100 and spot 100 make SPOT() / S0 = 1 exactly).
class GuardForms : public ::testing::TestWithParam<std::string> {};
TEST_P(GuardForms, TakeTheTreeEvaluatorsBranchAtEverySpot) {
    const std::string side = GetParam();
    for (const std::string comparator : {"<", "<=", ">", ">=", "=", "!="}) {
        for (const std::string other : {"1", "L", "SPOT() / 100", "SPOT()"}) {
            for (const std::string body : {"K = K + 1", "K = 7", "L = 2"}) {
                const std::string guard = "IF " + side + " " + comparator + " " + other + " THEN " + body + " ENDIF";
                const auto product = MakeProduct({"S0 = 100 L = 1 U = 0.5", guard, guard, guard, "N = 1", guard});
                for (const double spot : {50.0, 99.99, 100.0, 100.01, 200.0}) {
                    const std::vector<ScenarioPoint> path = {{100.0, 1.0}, {spot, 1.0}, {100.0, 1.0},
                                                             {1.0, 1.0},   {1.0, 1.0},  {spot, 1.0}};
                    const auto compiled = RunScript(product, path, Logic::Compiled);
                    const auto tree = RunScript(product, path, Logic::Tree);
                    EXPECT_EQ(compiled, tree) << guard << " at spot " << spot;
                }
            }
        }
    }
}
INSTANTIATE_TEST_SUITE_P(EverySideForm, GuardForms,
                         ::testing::Values("1", "L", "SPOT()", "SPOT() / S0", "SPOT() * U", "SPOT() / 100",
                                           "SPOT() * 0.01", "SPOT() / S0 + 0", "2 * SPOT() / 200"),
                         [](const ::testing::TestParamInfo<std::string>& info) {
                             return "Side_" + zep::testing::NameOf(info.param);
                         });

// Dates without statements only lengthen the path: the compiled script passes over a row of
// them in one step, and must still read each later date's own spot and numeraire.
TEST(ScriptEvaluation, EmptyDatesKeepEveryLaterDateOnItsOwnPoint) {
    const auto product = MakeProduct({"A = SPOT()", "", "", "B = SPOT() - A", "", "C PAYS B + SPOT()", "", ""});
    std::vector<ScenarioPoint> path;
    for (int e = 0; e < 8; ++e) path.push_back({100.0 + 10.0 * e, 1.0 - 0.01 * e});
    for (const auto logic : {Logic::Compiled, Logic::Fuzzy}) {
        const auto values = RunScript(product, path, logic);
        EXPECT_EQ(values.at("A"), 100.0);
        EXPECT_EQ(values.at("B"), 30.0);
        EXPECT_DOUBLE_EQ(values.at("C"), (30.0 + 150.0) * 0.95);
    }
}
