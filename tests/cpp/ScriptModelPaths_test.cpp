#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "lum-monte-carlo/BasicRanGen.hpp"
#include "lum-monte-carlo/ScriptModelFactory.hpp"

namespace zep {
namespace {

struct ModelCase {
    std::string name;
    std::int32_t model;
    ModelInputs inputs;
};

// Paths handed to a model several at a time get the values the model gives each path alone,
// bit for bit, whatever their number (the tail of a block is shorter).
class ModelPathBlocks : public ::testing::TestWithParam<ModelCase> {};

TEST_P(ModelPathBlocks, GiveEachPathItsOwnValues) {
    const ModelCase& c = GetParam();
    const auto model = MakeScriptModel(c.model, c.inputs, c.inputs.spot);
    std::vector<double> times;
    for (int i = 1; i <= 37; ++i) times.push_back(i / 52.0);
    model->SetGrid(times);
    const std::size_t steps = times.size(), draws = steps * model->FactorsPerStep();
    for (std::size_t paths = 1; paths <= 9; ++paths) {
        std::vector<double> normals(paths * draws);
        BasicRanGen generator(7);
        generator.NextPath(normals.data(), normals.size());
        std::vector<double> together(paths * steps);
        model->SimulatePaths(normals.data(), paths, steps, together.data());
        for (std::size_t p = 0; p < paths; ++p) {
            std::vector<double> alone(steps);
            model->SimulatePath(normals.data() + p * draws, alone.data());
            for (std::size_t i = 0; i < steps; ++i)
                ASSERT_EQ(together[p * steps + i], alone[i]) << paths << " paths, path " << p << ", step " << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    EveryModel, ModelPathBlocks,
    ::testing::Values(ModelCase{"BlackScholes", 1, {100.0, 0.2, 0.03, 0.01, {}}},
                      ModelCase{"Bachelier", 2, {100.0, 20.0, 0.03, 0.01, {}}},
                      ModelCase{"Heston", 3, {100.0, 0.2, 0.03, 0.01, {1.5, 0.04, 0.4, -0.6, 0.04}}},
                      ModelCase{"Dupire", 4, {100.0, 0.2, 0.03, 0.01, {0.2, -0.1, 0.05, 0.0, 0.05, 1.0}}}),
    [](const ::testing::TestParamInfo<ModelCase>& info) { return info.param.name; });

}  // namespace
}  // namespace zep
