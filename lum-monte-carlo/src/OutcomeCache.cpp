#include "lum-monte-carlo/OutcomeCache.hpp"

namespace zep {

PricingOutcome OutcomeCache::Get(const OutcomeKey& key,
                                 const std::function<PricingOutcome()>& simulate) const {
    {
        const std::lock_guard lock(m_lock);
        if (const auto found = m_outcomes.find(key); found != m_outcomes.end()) return found->second;
    }
    PricingOutcome outcome = simulate();  // outside the lock: a pricing takes seconds
    Put(key, outcome);
    return outcome;
}

bool OutcomeCache::Contains(const OutcomeKey& key) const {
    const std::lock_guard lock(m_lock);
    return m_outcomes.contains(key);
}

void OutcomeCache::Put(const OutcomeKey& key, PricingOutcome outcome) const {
    const std::lock_guard lock(m_lock);
    if (m_outcomes.size() >= kCapacity) m_outcomes.clear();
    m_outcomes.emplace(key, std::move(outcome));
}

}  // namespace zep
