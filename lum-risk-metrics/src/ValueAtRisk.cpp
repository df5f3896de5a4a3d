#include "lum-risk-metrics/ValueAtRisk.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <stdexcept>
#include <string>

#include <fmt/format.h>

namespace zep::scenario {

std::size_t VaRRank(double confidence, std::size_t scenarios) {
    if (!(confidence > 0.0 && confidence < 1.0))
        throw std::invalid_argument(fmt::format("The confidence level {} is outside (0, 1).", confidence));
    if (scenarios == 0) throw std::invalid_argument("Value at risk needs at least one scenario.");
    const double rank = std::ceil((1.0 - confidence) * static_cast<double>(scenarios) - 1e-9);
    return std::clamp<std::size_t>(static_cast<std::size_t>(std::max(rank, 1.0)), 1, scenarios);
}

TailFigures Tail(const std::vector<double>& pnl, double confidence) {
    const std::size_t rank = VaRRank(confidence, pnl.size());
    std::vector<std::size_t> order(pnl.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return pnl[a] < pnl[b]; });
    double tailLoss = 0.0;
    for (std::size_t r = 0; r < rank; ++r) tailLoss -= pnl[order[r]];
    const std::size_t scenario = order[rank - 1];
    return {confidence, -pnl[scenario], tailLoss / static_cast<double>(rank), scenario};
}

}  // namespace zep::scenario
