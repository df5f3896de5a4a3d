#include "lum-monte-carlo/PathPayoff.hpp"

#include <algorithm>

namespace zep {

void PathEvaluator::EvaluateBlock(const PathBlock& block, std::size_t variableCount, double* variables) {
    m_path.resize(block.events);
    m_values.resize(variableCount);
    for (std::size_t lane = 0; lane < block.lanes; ++lane) {
        for (std::size_t e = 0; e < block.events; ++e)
            m_path[e] = {block.spots[e * block.lanes + lane], block.numeraires[e]};
        std::fill(m_values.begin(), m_values.end(), 0.0);
        Evaluate(m_path.data(), m_values.data());
        for (std::size_t v = 0; v < variableCount; ++v) variables[v * block.lanes + lane] = m_values[v];
    }
}

}  // namespace zep
