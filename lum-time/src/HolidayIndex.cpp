#include "HolidayIndex.hpp"

#include <algorithm>
#include <iterator>

namespace zep::detail {

std::vector<std::string_view> SplitCentres(std::string_view centres) {
    static constexpr std::string_view kSeparators = "+,; \t";
    std::vector<std::string_view> codes;
    std::size_t begin = 0;
    while (begin < centres.size()) {
        const std::size_t end = std::min(centres.find_first_of(kSeparators, begin), centres.size());
        if (end > begin) codes.push_back(centres.substr(begin, end - begin));
        begin = end + 1;
    }
    return codes;
}

void HolidayIndex::Add(const HolidayTable& holidays) {
    const std::lock_guard lock(m_builder);
    for (const auto& [code, serials] : holidays) {
        HolidaySerials& known = m_centres[code];
        HolidaySerials merged;
        std::set_union(known.begin(), known.end(), serials.begin(), serials.end(),
                       std::back_inserter(merged));
        known = std::move(merged);
    }
    for (auto& bucket : m_buckets) bucket.store(nullptr, std::memory_order_release);
    m_entries.clear();
}

const HolidayIndex::Entry& HolidayIndex::Build(std::string_view centres, std::size_t hash) const {
    const std::lock_guard lock(m_builder);
    auto& bucket = m_buckets[hash % kBuckets];
    for (const Entry* entry = bucket.load(std::memory_order_relaxed); entry != nullptr;
         entry = entry->next)
        if (entry->hash == hash && entry->centres == centres) return *entry;

    HolidaySerials merged;
    for (const std::string_view code : SplitCentres(centres)) {
        const auto found = m_centres.find(code);
        if (found == m_centres.end()) throw UnknownCentre(code);
        // Weekends are never business days, so only weekday holidays need searching.
        std::copy_if(found->second.begin(), found->second.end(), std::back_inserter(merged),
                     [](std::int32_t serial) { return !IsWeekend(serial); });
    }
    std::sort(merged.begin(), merged.end());
    merged.erase(std::unique(merged.begin(), merged.end()), merged.end());

    HolidayBits bits(merged.empty() ? 0 : static_cast<std::size_t>(merged.back()) / 64 + 1);
    for (const std::int32_t serial : merged) bits[static_cast<std::size_t>(serial) / 64] |= std::uint64_t{1} << (serial % 64);

    auto entry = std::make_unique<Entry>(Entry{std::string(centres), hash, std::move(merged), std::move(bits),
                                               bucket.load(std::memory_order_relaxed)});
    const Entry* published = entry.get();
    m_entries.push_back(std::move(entry));
    bucket.store(published, std::memory_order_release);
    return *published;
}

}  // namespace zep::detail
