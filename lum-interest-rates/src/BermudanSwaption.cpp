#include "lum-interest-rates/BermudanSwaption.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

std::vector<double> SortedExercises(std::vector<double> times) {
    ZEP_REQUIRE(!times.empty(), "a Bermudan swaption needs at least one exercise date");
    std::sort(times.begin(), times.end());
    ZEP_REQUIRE(times.front() > 0.0, "the exercise time " + std::to_string(times.front()) +
                                         " must lie after the curve's reference date");
    ZEP_REQUIRE(std::adjacent_find(times.begin(), times.end()) == times.end(), "the exercise dates must differ");
    return times;
}

}  // namespace

BermudanSwaption::BermudanSwaption(const HullWhite& model, HullWhiteSwap swap, std::vector<double> exerciseTimes,
                                   std::size_t steps)
    : m_model(model),
      m_swap(std::move(swap)),
      m_exerciseTimes(SortedExercises(std::move(exerciseTimes))),
      m_tree(model, m_exerciseTimes, steps) {
    m_swap.Validate();
    for (double t : m_exerciseTimes) {
        m_exerciseValues.emplace_back(m_model, m_swap, t);
        m_exerciseLevels.push_back(m_tree.LevelAt(t));
    }
}

double BermudanSwaption::Induce(std::vector<double>* boundary) const {
    std::vector<double> values(m_tree.MaxNodeCount()), earlier(m_tree.MaxNodeCount());
    const double never = m_swap.isPayer ? std::numeric_limits<double>::infinity()
                                         : -std::numeric_limits<double>::infinity();
    if (boundary) boundary->assign(m_exerciseTimes.size(), never);
    std::size_t exercise = m_exerciseTimes.size();
    for (std::size_t level = m_exerciseLevels.back() + 1; level-- > 0;) {
        if (level < m_exerciseLevels.back()) {
            m_tree.StepBack(level, values.data(), earlier.data());
            std::swap(values, earlier);
        } else {
            std::fill(values.begin(), values.end(), 0.0);
        }
        if (exercise == 0 || m_exerciseLevels[exercise - 1] != level) continue;
        --exercise;
        const SwapExerciseValue& enter = m_exerciseValues[exercise];
        for (std::size_t node = 0; node < m_tree.NodeCount(level); ++node) {
            const double x = m_tree.Factor(level, node), now = enter(x);
            if (now <= values[node]) continue;
            values[node] = now;
            if (boundary) {
                double& edge = (*boundary)[exercise];
                edge = m_swap.isPayer ? std::min(edge, x) : std::max(edge, x);
            }
        }
    }
    return values[0];
}

double BermudanSwaption::PV() const { return Induce(nullptr); }

std::vector<double> BermudanSwaption::ExerciseBoundary() const {
    std::vector<double> boundary;
    Induce(&boundary);
    for (std::size_t i = 0; i < boundary.size(); ++i)
        if (std::isfinite(boundary[i])) boundary[i] = m_exerciseValues[i].ParRate(boundary[i]);
    return boundary;
}

std::vector<double> BermudanSwaption::EuropeanPVs() const {
    std::vector<double> values;
    for (double t : m_exerciseTimes) values.push_back(JamshidianSwaption(m_model, m_swap, t));
    return values;
}

}  // namespace zep
