// The process-wide asynchronous logger "combined_logger": one background worker, created on
// first use (never at import) and registered as spdlog's default logger.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include <spdlog/spdlog.h>

namespace zep {

// The logger, created on first call. Level from ZEP_LOGLEVEL; sink standard error, plus the
// file named by ZEP_LOGFILE when set.
spdlog::logger& Logger();

// ZEP_LOGLEVEL's reading: unset means debug; a level name or "warn"/"err"; anything else off.
spdlog::level::level_enum LogLevelFromText(std::optional<std::string_view> text);

// Waits until every queued message has been written (tests and orderly shutdown).
void FlushLogger();

}  // namespace zep
