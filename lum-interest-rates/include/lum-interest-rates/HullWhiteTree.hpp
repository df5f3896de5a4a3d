// A trinomial tree for the Hull-White factor x on a time grid that lands on given times: over
// each step a node branches to three neighbours around its expected value, with probabilities
// that match the step's mean and variance, and the tree stops widening where mean reversion pulls
// harder than the spacing. The rate level of each step is fitted by forward induction so that the
// tree reprices the curve's discount factor to every grid time.
#pragma once

#include <cstddef>
#include <vector>

#include "lum-interest-rates/HullWhite.hpp"

namespace zep {

class HullWhiteTree {
public:
    // About `steps` equal steps up to the last of `mandatoryTimes` (all > 0), each interval
    // between two mandatory times cut into whole steps.
    HullWhiteTree(const HullWhite& model, std::vector<double> mandatoryTimes, std::size_t steps);

    std::size_t LastLevel() const { return m_times.size() - 1; }
    double Time(std::size_t level) const { return m_times[level]; }
    // The level at `time`, which must be one of the mandatory times.
    std::size_t LevelAt(double time) const;
    std::size_t NodeCount(std::size_t level) const { return m_levels[level].count; }
    std::size_t MaxNodeCount() const { return m_maxNodes; }
    // The factor x at a node, nodes numbered from the lowest x.
    double Factor(std::size_t level, std::size_t node) const;
    // Today's value of 1 paid at the node (an Arrow-Debreu price).
    double StatePrice(std::size_t level, std::size_t node) const { return m_statePrices[m_levels[level].first + node]; }
    // current[node] at `level` = discounted expectation of next[] at level + 1, every short rate
    // raised by `spread` (an option-adjusted spread; 0 is the fitted tree).
    void StepBack(std::size_t level, const double* next, double* current, double spread = 0.0) const;

private:
    struct Level {
        std::size_t first;  // offset of its nodes in the per-node arrays
        std::size_t count;
        long lowest;        // x = (lowest + node) * spacing
        double spacing;
    };
    // Per node of every level but the last.
    struct Branch {
        std::size_t middle;  // the middle successor's node number at the next level
        double up, mid, down;
        double discount;     // exp(-r dt) over the step from this node
    };

    std::vector<double> m_times;
    std::vector<Level> m_levels;
    std::vector<Branch> m_branches;
    std::vector<double> m_statePrices;
    std::size_t m_maxNodes = 1;
};

}  // namespace zep
