// How a pricing run is executed, read from the environment when the product is priced:
// ZEP_RUNMODE (single thread, multi-threaded CPU or GPU), ZEP_NUM_THREADS and
// ZEP_BS_DAILY_STEPS.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace zep {

enum class RunMode { SingleThread, MultithreadCPU, GPU };

// unset, "MULTITHREADCPU", "MCPU" or anything unknown: multi-threaded CPU; "CPU" or
// "SINGLETHREAD": one thread; "GPU": GPU.
RunMode RunModeFromText(const std::optional<std::string>& text);

// The mode to run: "GPU" falls back to multi-threaded CPU in a build without a GPU pricer,
// with a warning written once per process to the log.
RunMode EffectiveRunMode(const std::optional<std::string>& text);

// The thread count ZEP_NUM_THREADS asks for: an integer from 1 to 64, anything else is no setting.
std::optional<int> ConfiguredThreadCount(const std::optional<std::string>& numThreadsSetting);

// ZEP_NUM_THREADS when it is an integer from 1 to 64; otherwise
// min(max(h, 1), paths < 25 ? 1 : ceil(paths / 25), max(half, 1)) with h the hardware threads
// and half = (h + 1) / 2, or 2 when h is unknown (0).
std::size_t ThreadCount(std::size_t paths, unsigned hardwareThreads,
                        const std::optional<std::string>& numThreadsSetting);

// ZEP_BS_DAILY_STEPS set with "1" as its first character.
bool DailyStepsForced(const std::optional<std::string>& setting);

std::optional<std::string> EnvironmentValue(const char* name);

}  // namespace zep
