// The outcomes of a scripted product's simulations, kept so that every figure read from one run
// (price, standard error, result by variable, the report) and every re-pricing a Greek shares
// with another costs its simulation once. A product's inputs never change after construction,
// so an outcome stays valid for as long as the settings it was simulated under: the shift, the
// paths, the smoothing, the time grid and the thread count make the key.
#pragma once

#include <cstddef>
#include <cstdint>
#include <compare>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "lum-monte-carlo/Simulator.hpp"

namespace zep {

struct PricingOutcome {
    std::vector<std::string> variables;
    SimulationResult result;
    std::size_t steps = 0;
};

struct OutcomeKey {
    double spot, volatility, rate1, rate2, discount;
    std::int32_t spotDays, timeDays;
    std::int64_t paths;
    bool smoothed, dailySteps;
    std::size_t threads;

    auto operator<=>(const OutcomeKey&) const = default;
};

class OutcomeCache {
public:
    OutcomeCache() = default;
    // A copied product simulates afresh: outcomes belong to the object that ran them.
    OutcomeCache(const OutcomeCache&) {}
    OutcomeCache& operator=(const OutcomeCache&) { return *this; }

    // The outcome under `key`, simulating it with `simulate` the first time. Two threads asking
    // for the same missing outcome may both simulate it; both get the same numbers.
    PricingOutcome Get(const OutcomeKey& key, const std::function<PricingOutcome()>& simulate) const;
    bool Contains(const OutcomeKey& key) const;
    void Put(const OutcomeKey& key, PricingOutcome outcome) const;

private:
    // Re-pricings under arbitrary user shifts could grow the map without end; past this size it
    // starts again.
    static constexpr std::size_t kCapacity = 64;

    mutable std::mutex m_lock;
    mutable std::map<OutcomeKey, PricingOutcome> m_outcomes;
};

}  // namespace zep
