#include "lum-auxiliary/Logger.hpp"

#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

#include <spdlog/async.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

namespace zep {

namespace {

constexpr const char* kLoggerName = "combined_logger";
constexpr const char* kPattern = "[%Y-%m-%d %H:%M:%S.%e] [%^%l%$] %v";
constexpr std::size_t kQueueSize = 8192;

std::optional<std::string_view> Environment(const char* name) {
    const char* value = std::getenv(name);
    if (value == nullptr) return std::nullopt;
    return std::string_view(value);
}

std::shared_ptr<spdlog::logger> MakeLogger() {
    // The pool is private to this logger so that its single worker is ours alone.
    static auto pool = std::make_shared<spdlog::details::thread_pool>(kQueueSize, 1);
    std::vector<spdlog::sink_ptr> sinks{std::make_shared<spdlog::sinks::stderr_sink_mt>()};
    if (const auto file = Environment("ZEP_LOGFILE"); file && !file->empty())
        sinks.push_back(std::make_shared<spdlog::sinks::basic_file_sink_mt>(std::string(*file)));

    auto logger = std::make_shared<spdlog::async_logger>(
        kLoggerName, sinks.begin(), sinks.end(), pool, spdlog::async_overflow_policy::block);
    logger->set_formatter(std::make_unique<spdlog::pattern_formatter>(
        kPattern, spdlog::pattern_time_type::local, std::string("\r\n")));
    logger->set_level(LogLevelFromText(Environment("ZEP_LOGLEVEL")));
    spdlog::set_default_logger(logger);
    return logger;
}

std::shared_ptr<spdlog::logger>& Instance() {
    static std::shared_ptr<spdlog::logger> logger = MakeLogger();
    return logger;
}

}  // namespace

spdlog::level::level_enum LogLevelFromText(std::optional<std::string_view> text) {
    using spdlog::level::level_enum;
    if (!text) return level_enum::debug;
    static constexpr std::pair<std::string_view, level_enum> names[] = {
        {"trace", level_enum::trace}, {"debug", level_enum::debug},
        {"info", level_enum::info},   {"warning", level_enum::warn},
        {"error", level_enum::err},   {"critical", level_enum::critical},
        {"off", level_enum::off},     {"warn", level_enum::warn},
        {"err", level_enum::err}};
    for (const auto& [name, level] : names)
        if (*text == name) return level;
    return level_enum::off;
}

spdlog::logger& Logger() { return *Instance(); }

void FlushLogger() { Instance()->flush(); }

}  // namespace zep
