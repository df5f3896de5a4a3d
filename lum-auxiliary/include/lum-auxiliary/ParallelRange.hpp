// Splits an index range over at most two threads: the calling thread and one worker, joined
// before returning. Small ranges run on the calling thread alone, where a thread would cost more
// than it saves.
#pragma once

#include <cstddef>
#include <thread>

namespace zep {

// Calls work(begin, end) over [0, count); `work` must not throw.
template <class Work>
void ForEachHalf(std::size_t count, std::size_t minimumForTwoThreads, const Work& work) {
    if (count < minimumForTwoThreads || std::thread::hardware_concurrency() < 2) {
        work(std::size_t{0}, count);
        return;
    }
    const std::size_t middle = count / 2;
    std::thread worker([&] { work(middle, count); });
    work(std::size_t{0}, middle);
    worker.join();
}

}  // namespace zep
