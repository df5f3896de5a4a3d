// The holidays a calendar knows, per centre, and the merged list per centre text that the
// business-day test searches. Merged lists are built once per centre text and published
// without a lock, so readers of a built calendar never wait on each other.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zep::detail {

using HolidaySerials = std::vector<std::int32_t>;  // ascending serial numbers
// The same holidays as bits, bit (serial % 64) of word (serial / 64): a test in one load.
using HolidayBits = std::vector<std::uint64_t>;
using HolidayTable = std::map<std::string, HolidaySerials, std::less<>>;

// Serial modulo 7 with 0 read as 7 gives 1 for Sunday and 7 for Saturday.
inline bool IsWeekend(std::int32_t serial) {
    const std::int32_t remainder = serial % 7;
    return remainder == 0 || remainder == 1;
}

// Raised by the index for a centre code that no loaded file mentions.
struct UnknownCentre : std::runtime_error {
    explicit UnknownCentre(std::string_view code) : std::runtime_error(std::string(code)) {}
};

class HolidayIndex {
public:
    HolidayIndex() = default;
    HolidayIndex(const HolidayIndex&) = delete;
    HolidayIndex& operator=(const HolidayIndex&) = delete;

    // Adds the holidays of one file and drops the merged lists; not safe alongside readers.
    void Add(const HolidayTable& holidays);

    const HolidayTable& Centres() const { return m_centres; }

    // The weekday holidays of every centre the text names, merged and ascending.
    const HolidaySerials& Merged(std::string_view centres) const { return Find(centres).holidays; }
    const HolidayBits& MergedBits(std::string_view centres) const { return Find(centres).bits; }

private:
    // FNV-1a: centre texts are a few characters, where it beats the general-purpose hash.
    static std::size_t Hash(std::string_view text) {
        std::uint64_t hash = 14695981039346656037ull;
        for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ull;
        return static_cast<std::size_t>(hash ^ (hash >> 32));
    }

    struct Entry {
        std::string centres;
        std::size_t hash;
        HolidaySerials holidays;
        HolidayBits bits;
        const Entry* next;
    };
    static constexpr std::size_t kBuckets = 64;

    const Entry& Find(std::string_view centres) const {
        const std::size_t hash = Hash(centres);
        for (const Entry* entry = m_buckets[hash % kBuckets].load(std::memory_order_acquire);
             entry != nullptr; entry = entry->next)
            if (entry->hash == hash && entry->centres == centres) return *entry;
        return Build(centres, hash);
    }
    const Entry& Build(std::string_view centres, std::size_t hash) const;

    HolidayTable m_centres;
    mutable std::array<std::atomic<const Entry*>, kBuckets> m_buckets{};
    mutable std::mutex m_builder;
    mutable std::vector<std::unique_ptr<Entry>> m_entries;
};

// The centre codes of a centre text: separated by '+', ',', ';' or blanks.
std::vector<std::string_view> SplitCentres(std::string_view centres);

}  // namespace zep::detail
