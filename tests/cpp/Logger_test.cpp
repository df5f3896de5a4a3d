#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "lum-auxiliary/Logger.hpp"

namespace zep {

using spdlog::level::level_enum;

TEST(LogLevel, FollowsTheEnvironmentText) {
    EXPECT_EQ(LogLevelFromText(std::nullopt), level_enum::debug);
    EXPECT_EQ(LogLevelFromText("trace"), level_enum::trace);
    EXPECT_EQ(LogLevelFromText("warning"), level_enum::warn);
    EXPECT_EQ(LogLevelFromText("warn"), level_enum::warn);
    EXPECT_EQ(LogLevelFromText("err"), level_enum::err);
    EXPECT_EQ(LogLevelFromText("critical"), level_enum::critical);
    EXPECT_EQ(LogLevelFromText("verbose"), level_enum::off);
    EXPECT_EQ(LogLevelFromText("WARN"), level_enum::off);  // level names are matched exactly
}

TEST(Logger, WritesFilteredLinesWithPatternAndCrLf) {
    // The logger reads its settings once, when first used: ctest runs this test in a process of
    // its own, where that first use is here.
    if (spdlog::get("combined_logger")) GTEST_SKIP() << "the logger was created earlier in this process";
    const auto path = std::filesystem::temp_directory_path() / "zep_logger_test.log";
    std::filesystem::remove(path);
    ::setenv("ZEP_LOGFILE", path.c_str(), 1);
    ::setenv("ZEP_LOGLEVEL", "warn", 1);

    auto& logger = Logger();
    EXPECT_EQ(logger.name(), "combined_logger");
    EXPECT_EQ(spdlog::default_logger_raw(), &logger);
    logger.info("hidden");
    logger.warn("shown {}", 42);
    FlushLogger();

    // The worker writes asynchronously: wait, within bounds, for the line to land.
    std::string text;
    for (int attempt = 0; attempt < 200 && text.find("shown 42") == std::string::npos; ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        std::ifstream in(path, std::ios::binary);
        text.assign(std::istreambuf_iterator<char>(in), {});
    }
    EXPECT_EQ(text.find("hidden"), std::string::npos);
    const auto line = text.find("] [warning] shown 42\r\n");
    ASSERT_NE(line, std::string::npos) << text;
    EXPECT_EQ(text[0], '[');
    EXPECT_EQ(text.find('.'), 20u);  // "[YYYY-MM-DD HH:MM:SS.mmm]"
}

}  // namespace zep
