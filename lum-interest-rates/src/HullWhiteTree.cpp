#include "lum-interest-rates/HullWhiteTree.hpp"

#include <algorithm>
#include <climits>
#include <cmath>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

constexpr double kSameTime = 1e-10;

std::vector<double> TimeGrid(std::vector<double> mandatory, std::size_t steps) {
    ZEP_REQUIRE(!mandatory.empty(), "the tree needs at least one time to reach");
    ZEP_REQUIRE(steps >= 1 && steps <= 100000, "the tree needs between 1 and 100000 steps, not " +
                                                   std::to_string(steps));
    for (double t : mandatory)
        ZEP_REQUIRE(std::isfinite(t) && t > kSameTime,
                    "the tree's times must lie after today, not " + std::to_string(t));
    std::sort(mandatory.begin(), mandatory.end());
    const double largestStep = mandatory.back() / static_cast<double>(steps);
    std::vector<double> grid{0.0};
    for (double end : mandatory) {
        const double start = grid.back();
        if (end - start < kSameTime) continue;
        const auto pieces = static_cast<std::size_t>(std::max(1.0, std::ceil((end - start) / largestStep - 1e-9)));
        for (std::size_t i = 1; i < pieces; ++i) grid.push_back(start + (end - start) * i / pieces);
        grid.push_back(end);
    }
    return grid;
}

// The middle successor of a node whose expected next factor is `mean` node spacings from zero.
// The nearest node, unless that lies beyond `widest`: mean reversion then lets the tree stop
// widening by pulling the node in to `widest`, as long as the middle probability 2/3 - offset^2
// stays positive (an offset within sqrt(2/3) of the mean; Hull and White's 0.184 / (a dt) rule).
long MiddleNode(double mean, long widest) {
    const long nearest = std::lround(mean);
    constexpr double kLargestOffset = 0.816;
    if (nearest > widest && mean - widest <= kLargestOffset) return widest;
    if (nearest < -widest && -widest - mean <= kLargestOffset) return -widest;
    return nearest;
}

}  // namespace

HullWhiteTree::HullWhiteTree(const HullWhite& model, std::vector<double> mandatoryTimes, std::size_t steps)
    : m_times(TimeGrid(std::move(mandatoryTimes), steps)) {
    const double a = model.MeanReversion();
    m_levels.push_back({0, 1, 0, 0.0});
    m_statePrices.push_back(1.0);
    for (std::size_t i = 0; i + 1 < m_times.size(); ++i) {
        const Level& here = m_levels[i];
        const double dt = m_times[i + 1] - m_times[i];
        const double decay = std::exp(-a * dt);
        // One step's variance is the variance of x at dt; a spacing of sqrt(3 variance) keeps all
        // three probabilities positive whatever the offset of the mean from the middle node.
        const double spacing = std::sqrt(3.0 * model.FactorVariance(dt));
        ZEP_REQUIRE(std::isnormal(spacing), "the tree's node spacing " + std::to_string(spacing) +
                                                " over a step of " + std::to_string(dt) + " years is unusable: sigma " +
                                                std::to_string(model.Sigma()) + " is out of scale");
        const double widening = 0.184 / -std::expm1(-a * dt);
        const long widest = a > 0.0 && widening < 1e9 ? static_cast<long>(std::ceil(widening)) : LONG_MAX;
        const auto middleOf = [&](std::size_t node) { return MiddleNode(Factor(i, node) * decay / spacing, widest); };
        const long lowestMiddle = middleOf(0), highestMiddle = middleOf(here.count - 1);
        const Level next{here.first + here.count, std::size_t(highestMiddle - lowestMiddle + 3), lowestMiddle - 1,
                         spacing};
        // Branches first, discounting at x alone; then the step's rate level, fitted so that the
        // nodes' state prices discounted over dt give P(0, t_i+1), scales every discount.
        const std::size_t firstBranch = m_branches.size();
        double discounted = 0.0;
        for (std::size_t node = 0; node < here.count; ++node) {
            const double x = Factor(i, node);
            const long middle = middleOf(node);
            const double offset = x * decay / spacing - middle;
            const Branch branch{std::size_t(middle - next.lowest), 1.0 / 6.0 + 0.5 * (offset * offset + offset),
                                2.0 / 3.0 - offset * offset, 1.0 / 6.0 + 0.5 * (offset * offset - offset),
                                std::exp(-x * dt)};
            discounted += m_statePrices[here.first + node] * branch.discount;
            m_branches.push_back(branch);
        }
        const double level = std::log(discounted / model.Curve().DiscountFactor(m_times[i + 1])) / dt;
        ZEP_REQUIRE(std::isfinite(level), "the tree cannot fit the curve's discount factor at " +
                                              std::to_string(m_times[i + 1]));
        const double levelDiscount = std::exp(-level * dt);
        m_statePrices.resize(next.first + next.count, 0.0);
        for (std::size_t node = 0; node < here.count; ++node) {
            Branch& branch = m_branches[firstBranch + node];
            branch.discount *= levelDiscount;
            const double reached = m_statePrices[here.first + node] * branch.discount;
            m_statePrices[next.first + branch.middle + 1] += reached * branch.up;
            m_statePrices[next.first + branch.middle] += reached * branch.mid;
            m_statePrices[next.first + branch.middle - 1] += reached * branch.down;
        }
        m_levels.push_back(next);
        m_maxNodes = std::max(m_maxNodes, next.count);
    }
}

std::size_t HullWhiteTree::LevelAt(double time) const {
    const auto found = std::lower_bound(m_times.begin(), m_times.end(), time - kSameTime);
    ZEP_REQUIRE(found != m_times.end() && std::abs(*found - time) < kSameTime,
                "the time " + std::to_string(time) + " is not on the tree's grid");
    return static_cast<std::size_t>(found - m_times.begin());
}

double HullWhiteTree::Factor(std::size_t level, std::size_t node) const {
    const Level& at = m_levels[level];
    return static_cast<double>(at.lowest + static_cast<long>(node)) * at.spacing;
}

void HullWhiteTree::StepBack(std::size_t level, const double* next, double* current, double spread) const {
    const Level& at = m_levels[level];
    const Branch* branch = &m_branches[at.first];
    const double spreadDiscount = spread == 0.0 ? 1.0 : std::exp(-spread * (m_times[level + 1] - m_times[level]));
    for (std::size_t node = 0; node < at.count; ++node, ++branch) {
        const double* around = next + branch->middle;
        current[node] = spreadDiscount * branch->discount *
                        (branch->down * around[-1] + branch->mid * around[0] + branch->up * around[1]);
    }
}

}  // namespace zep
