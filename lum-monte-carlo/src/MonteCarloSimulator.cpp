#include "lum-monte-carlo/MonteCarloSimulator.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/RunObserver.hpp"

namespace zep {

namespace {

// Per variable, the sum of a chunk's values and of their squares.
struct ChunkSums {
    std::vector<double> sums;
    std::vector<double> squares;
    bool ready = false;

    explicit ChunkSums(std::size_t variables) : sums(variables), squares(variables) {}

    template <class T>
    void Add(const T* values, std::size_t paths, std::size_t variables) {
        std::fill(sums.begin(), sums.end(), 0.0);
        std::fill(squares.begin(), squares.end(), 0.0);
        for (std::size_t p = 0; p < paths; ++p) {
            const T* row = values + p * variables;
            for (std::size_t v = 0; v < variables; ++v) {
                sums[v] += row[v];
                squares[v] += row[v] * row[v];
            }
        }
    }
    void FoldInto(ChunkSums& total) const {
        for (std::size_t v = 0; v < sums.size(); ++v) {
            total.sums[v] += sums[v];
            total.squares[v] += squares[v];
        }
    }
};

SimulationResult Summarise(const ChunkSums& total, std::size_t paths, std::size_t threads) {
    SimulationResult result;
    result.paths = paths;
    result.threads = threads;
    const double n = static_cast<double>(paths);
    for (std::size_t v = 0; v < total.sums.size(); ++v) {
        const double mean = total.sums[v] / n;
        const double variance = std::max(total.squares[v] / n - mean * mean, 0.0);
        result.mean.push_back(mean);
        result.standardError.push_back(paths > 1 ? std::sqrt(variance / (n - 1)) : 0.0);
    }
    return result;
}

// The calling thread's view of the run: asks the observer after every chunk it folds.
class Watch {
public:
    explicit Watch(std::uint64_t paths) : m_observer(CurrentRunObserver()), m_paths(paths) {
        if (m_observer) m_observer->Started(paths);
    }
    ~Watch() {
        if (m_observer) m_observer->Finished();
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    // True when the user asked to stop. An observer that fails stops the run too: the workers
    // must be joined before anything propagates.
    bool Check(std::uint64_t donePaths) noexcept {
        if (!m_observer) return false;
        try {
            if (m_observer->StopRequested()) return true;
            m_observer->Progress(donePaths, m_paths);
            return false;
        } catch (...) {
            return true;
        }
    }

private:
    RunObserver* m_observer;
    std::uint64_t m_paths;
};

}  // namespace

template <class T>
MonteCarloSimulator<T>::MonteCarloSimulator(std::unique_ptr<RandomGen> generator,
                                            std::size_t variables)
    : m_generator(std::move(generator)), m_variables(variables) {}

template <class T>
SimulationResult MonteCarloSimulator<T>::Run(std::size_t paths, std::size_t threads) {
    ZEP_REQUIRE(paths > 0, "number of simulations must be positive");
    const std::uint64_t chunks = (paths + kChunkPaths - 1) / kChunkPaths;
    threads = static_cast<std::size_t>(std::max<std::uint64_t>(1, std::min<std::uint64_t>(threads, chunks)));
    const auto chunkEnd = [paths](std::uint64_t chunk) {
        return std::min<std::uint64_t>((chunk + 1) * kChunkPaths, paths);
    };
    Watch watch(paths);
    ChunkSums total(m_variables);

    if (threads == 1) {
        const std::unique_ptr<PathWorker> worker = NewWorker();
        std::vector<T> values(kChunkPaths * m_variables);
        ChunkSums chunkSums(m_variables);
        for (std::uint64_t chunk = 0; chunk < chunks; ++chunk) {
            const std::uint64_t first = chunk * kChunkPaths, last = chunkEnd(chunk);
            worker->SimulatePaths(*m_generator, first, last, values.data());
            chunkSums.Add(values.data(), last - first, m_variables);
            chunkSums.FoldInto(total);
            if (watch.Check(last)) throw RunInterrupted();
        }
        return Summarise(total, paths, 1);
    }

    // Chunk c is summed into slot c % slots once every chunk before c - slots is folded, so
    // the workers run at most `slots` chunks ahead of the fold.
    const std::size_t slotCount = 4 * threads;
    std::vector<ChunkSums> slots(slotCount, ChunkSums(m_variables));
    std::mutex mutex;
    std::condition_variable changed;
    std::uint64_t folded = 0;
    std::atomic<std::uint64_t> nextChunk{0};
    std::atomic<bool> stop{false};
    std::exception_ptr failure;

    std::vector<std::unique_ptr<RandomGen>> generators;
    std::vector<std::unique_ptr<PathWorker>> workers;
    for (std::size_t t = 0; t < threads; ++t) {
        generators.push_back(m_generator->ForThread());
        workers.push_back(NewWorker());
    }
    const auto work = [&](std::size_t t) {
        try {
            std::vector<T> values(kChunkPaths * m_variables);
            while (!stop.load(std::memory_order_relaxed)) {
                const std::uint64_t chunk = nextChunk.fetch_add(1);
                if (chunk >= chunks) return;
                const std::uint64_t first = chunk * kChunkPaths, last = chunkEnd(chunk);
                workers[t]->SimulatePaths(*generators[t], first, last, values.data());
                ChunkSums& slot = slots[chunk % slotCount];
                {
                    std::unique_lock lock(mutex);
                    changed.wait(lock, [&] { return stop.load() || chunk < folded + slotCount; });
                    if (stop.load()) return;
                }
                slot.Add(values.data(), last - first, m_variables);
                {
                    std::lock_guard lock(mutex);
                    slot.ready = true;
                }
                changed.notify_all();
            }
        } catch (...) {
            std::lock_guard lock(mutex);
            if (!failure) failure = std::current_exception();
            stop = true;
            changed.notify_all();
        }
    };
    std::vector<std::thread> pool;
    for (std::size_t t = 0; t < threads; ++t) pool.emplace_back(work, t);

    bool interrupted = false;
    {
        std::unique_lock lock(mutex);
        while (folded < chunks && !failure) {
            ChunkSums& next = slots[folded % slotCount];
            if (next.ready) {
                next.FoldInto(total);
                next.ready = false;
                ++folded;
                changed.notify_all();
                continue;
            }
            lock.unlock();
            interrupted = watch.Check(std::min<std::uint64_t>(folded * kChunkPaths, paths));
            lock.lock();
            if (interrupted) break;
            changed.wait_for(lock, std::chrono::milliseconds(50),
                             [&] { return slots[folded % slotCount].ready || failure != nullptr; });
        }
        stop = true;
    }
    changed.notify_all();
    for (std::thread& thread : pool) thread.join();
    if (failure) std::rethrow_exception(failure);
    if (interrupted) throw RunInterrupted();
    return Summarise(total, paths, threads);
}

template class MonteCarloSimulator<double>;

}  // namespace zep
