#include "lum-monte-carlo/RunSettings.hpp"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <mutex>

#include "lum-auxiliary/Logger.hpp"
#include "lum-monte-carlo/CudaMonteCarloPricer.hpp"

namespace zep {

namespace {

constexpr std::size_t kPathsPerThread = 25;
constexpr int kMaxThreads = 64;

}  // namespace

std::optional<int> ConfiguredThreadCount(const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    int value = 0;
    const char* end = text->data() + text->size();
    const auto [last, error] = std::from_chars(text->data(), end, value);
    if (error != std::errc() || last != end || value < 1 || value > kMaxThreads) return std::nullopt;
    return value;
}

std::optional<std::string> EnvironmentValue(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr) return std::nullopt;
    return std::string(value);
}

RunMode RunModeFromText(const std::optional<std::string>& text) {
    if (!text) return RunMode::MultithreadCPU;
    if (*text == "CPU" || *text == "SINGLETHREAD") return RunMode::SingleThread;
    if (*text == "GPU") return RunMode::GPU;
    return RunMode::MultithreadCPU;
}

RunMode EffectiveRunMode(const std::optional<std::string>& text) {
    const RunMode mode = RunModeFromText(text);
    if (mode != RunMode::GPU || CudaMonteCarloPricer::IsAvailable()) return mode;
    static std::once_flag warned;
    std::call_once(warned, [] {
        Logger().warn(
            "[XScriptStructure] ZEP_RUNMODE=GPU 被忽略：链接到的 ZEPXScript 是 CUDA=OFF 的桩实现，"
            "已回落到 MultithreadCPU。");
    });
    return RunMode::MultithreadCPU;
}

std::size_t ThreadCount(std::size_t paths, unsigned hardwareThreads,
                        const std::optional<std::string>& numThreadsSetting) {
    if (const auto configured = ConfiguredThreadCount(numThreadsSetting)) return *configured;
    const std::size_t byPaths =
        paths < kPathsPerThread ? 1 : (paths + kPathsPerThread - 1) / kPathsPerThread;
    const std::size_t half = hardwareThreads == 0 ? 2 : (hardwareThreads + 1) / 2;
    return std::min({std::max<std::size_t>(hardwareThreads, 1), byPaths,
                     std::max<std::size_t>(half, 1)});
}

bool DailyStepsForced(const std::optional<std::string>& setting) {
    return setting && !setting->empty() && (*setting)[0] == '1';
}

}  // namespace zep
