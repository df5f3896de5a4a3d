#include "lum-monte-carlo/RunObserver.hpp"

#include <atomic>

namespace zep {

namespace {
std::atomic<RunObserver*> g_observer{nullptr};
}  // namespace

void SetRunObserver(RunObserver* observer) { g_observer.store(observer, std::memory_order_release); }

RunObserver* CurrentRunObserver() { return g_observer.load(std::memory_order_acquire); }

}  // namespace zep
