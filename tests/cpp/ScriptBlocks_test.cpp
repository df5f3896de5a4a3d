// The simulator runs each market's script over blocks of paths side by side. A payoff that can
// only be evaluated path by path (PathEvaluator's default block evaluation) must give the same
// bits: price, error and every Greek, under each model, for a product with daily guard runs,
// smoothed autocalls, SMOOTH, MIN/MAX, LOG and nested IF/ELSE, on a path count that leaves a
// partial block in a partial chunk.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "lum-monte-carlo/ScriptGreeks.hpp"
#include "lum-monte-carlo/XScriptStructure.hpp"

namespace zep {
namespace {

// The script payoff seen through an evaluator that knows only Evaluate, one path at a time.
class PathByPathPayoff final : public PathPayoff {
public:
    explicit PathByPathPayoff(const PathPayoff& inner) : m_inner(inner) {}

    const std::vector<std::string>& VariableNames() const override { return m_inner.VariableNames(); }
    int PaymentVariable() const override { return m_inner.PaymentVariable(); }
    std::unique_ptr<PathEvaluator> NewEvaluator(bool smoothed) const override {
        return std::make_unique<OnePath>(m_inner.NewEvaluator(smoothed));
    }

private:
    struct OnePath final : PathEvaluator {
        explicit OnePath(std::unique_ptr<PathEvaluator> inner) : m_inner(std::move(inner)) {}
        void Evaluate(const ScenarioPoint* scenario, double* variables) override {
            m_inner->Evaluate(scenario, variables);
        }
        std::unique_ptr<PathEvaluator> m_inner;
    };
    const PathPayoff& m_inner;
};

XScriptInputs NoteInputs(std::int32_t model) {
    XScriptInputs in;
    in.today = Date(2, 1, 2024);
    in.spot = 100.0;
    in.volatility = model == 2 ? 20.0 : 0.25;
    in.rate1 = 0.03;
    in.rate2 = 0.01;
    in.model = model;
    if (model == 3) in.modelParameters = {2.0, 0.04, 0.3, -0.7, 0.05};
    if (model == 4) in.modelParameters = {0.25, 0, 0, 0, 0.05, 2.0};  // the vega bump moves the bounds too
    in.numSimulations = 3001;
    in.adaptiveShift = true;
    in.adaptiveShiftBarrier = 85.0;
    in.eventDates = {in.today};
    in.eventScripts = {"ALIVE = 1 S0 = 100 KI = 0 M = 0 LOW = 10"};
    for (int day = 1; day <= 90; ++day) {
        in.eventDates.push_back(in.today + day);
        if (day % 30 != 0) {
            in.eventScripts.push_back("IF SPOT() / S0 < 0.85 THEN KI = 1 ENDIF");
            continue;
        }
        in.eventScripts.push_back(R"(
            M = M + 1
            PERF = SPOT() / S0
            LOW = MIN(LOW, PERF)
            IF PERF >= 1.02 AND ALIVE > 0.5 THEN
                PAYOFF PAYS ALIVE * (1 + 0.02 * M)
                ALIVE = 0
            ELSE
                IF KI > 0.5 THEN
                    MEMO = MEMO + SMOOTH(PERF - 0.9, LOG(PERF) + 1, SQRT(PERF), 0.05)
                ELSE
                    MEMO = MAX(MEMO, PERF - 1)
                ENDIF
            ENDIF)");
    }
    in.eventScripts.back() += "\nIF ALIVE > 0.5 THEN PAYOFF PAYS MIN(1, LOW + 0.2) + 0.01 * MEMO ENDIF";
    return in;
}

bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

class BlocksAgainstPaths : public ::testing::TestWithParam<std::int32_t> {};

TEST_P(BlocksAgainstPaths, GiveThePathByPathPriceErrorAndGreeks) {
    const XScriptStructure blocks(NoteInputs(GetParam()));
    const XScriptStructure paths(NoteInputs(GetParam()), std::make_shared<PathByPathPayoff>(blocks.Payoff()));
    EXPECT_TRUE(SameBits(blocks.Price(), paths.Price())) << blocks.Price() << " vs " << paths.Price();
    EXPECT_TRUE(SameBits(blocks.PriceStandardError(), paths.PriceStandardError()));
    const auto expected = AllGreeks(paths);
    for (const auto& [name, value] : AllGreeks(blocks))
        EXPECT_TRUE(SameBits(value, expected.at(name))) << name << ": " << value << " vs " << expected.at(name);
}

std::string ModelName(const ::testing::TestParamInfo<std::int32_t>& info) {
    static const char* names[] = {"", "BlackScholes", "Bachelier", "Heston", "Dupire"};
    return names[info.param];
}

INSTANTIATE_TEST_SUITE_P(EachModel, BlocksAgainstPaths, ::testing::Values(1, 2, 3, 4), ModelName);

}  // namespace
}  // namespace zep
