#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "lum-monte-carlo/ScriptingReporter.hpp"

namespace zep {

namespace {

ScriptReportData SmallProduct() {
    ScriptReportData d;
    d.productName = "Call | 1Y";
    d.today = Date(15, 1, 2024);
    d.spot = 100.0;
    d.volatility = 0.2;
    d.rate1 = 0.03;
    d.rate2 = 0.01;
    d.modelName = "BlackSchole";
    d.numSimulations = 1000;
    d.eventDates = {Date(15, 7, 2024), Date(15, 1, 2025)};
    d.eventScripts = {"X = SPOT()", "C PAYS MAX(SPOT() - 100, 0)"};
    d.discountFactors = {0.985, 0.97};
    d.variableNames = {"X", "C"};
    d.samplePaths = {{{101.0, 99.0}, {{101.0, 0.0}, {101.0, 0.0}}},
                     {{95.0, 120.0}, {{95.0, 0.0}, {95.0, 19.4}}}};
    d.spotStatistics = {{100.5, 14.0, 60.0, 78.0, 125.0, 170.0}, {101.0, 20.0, 50.0, 70.0, 135.0, 210.0}};
    d.priceVariable = "C";
    d.price = 9.4;
    d.variableMeans = {100.5, 9.4};
    d.variableStandardErrors = {0.4, 0.3};
    d.greeks = {{"Delta", 0.6}};
    return d;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

nlohmann::json Embedded(const std::string& text, const std::string& name) {
    const auto start = text.find("<!-- " + name + "=");
    const auto begin = text.find('{', start);
    const auto end = text.find("-->", begin);
    return nlohmann::json::parse(text.substr(begin, end - begin));
}

}  // namespace

TEST(ScriptingReporter, TemplateHasTwentySevenLinesWithFixedHeadings) {
    const auto lines = Lines(ScriptingReporter::Template());
    ASSERT_EQ(lines.size(), 27u);
    EXPECT_EQ(lines[0], "# 结构化衍生品蒙特卡洛估值报告 (Monte-Carlo Pricing Report)");
    EXPECT_EQ(lines[8], "<!--PLOT1-->");
    EXPECT_EQ(lines[10], "## Simuation Statistics");
    EXPECT_EQ(lines[14], "<!--PLOT2-->");
    EXPECT_EQ(lines[26], "%placeholder% risk_warnings");
}

TEST(ScriptingReporter, AssemblyReplacesOnlyPlaceholderLines) {
    const std::string text = ScriptingReporter::Assemble(
        "a\n%placeholder% one\n%placeholder\nb", {{"one", "ONE\nLINE"}});
    EXPECT_EQ(text, "a\nONE\nLINE\n%placeholder\nb\n");
    try {
        ScriptingReporter::Assemble("%placeholder% missing\n", {});
        FAIL();
    } catch (const std::out_of_range& e) {
        EXPECT_STREQ(e.what(), "invalid map<K, T> key");
    }
}

TEST(ScriptingReporter, RendersEverySectionInTemplateOrder) {
    const auto text = ScriptingReporter(SmallProduct()).Render(0);
    EXPECT_EQ(text.find("%placeholder%"), std::string::npos);
    EXPECT_LT(text.find("## 1. 执行摘要"), text.find("| **Today** | 15/01/2024 |"));
    EXPECT_LT(text.find("| **Rate2** | 0.01 |"), text.find("<!--PLOT1-->"));
    EXPECT_LT(text.find("<!--PLOT1-->"), text.find("<!-- SimulationData={"));
    EXPECT_LT(text.find("<!--PLOT2-->"), text.find("<!-- SCHEDULE={"));
    EXPECT_NE(text.find("|15/01/2025|C PAYS MAX(SPOT() - 100, 0)|"), std::string::npos);
    EXPECT_NE(text.find("|Date| X | C | \n|--|--|--|"), std::string::npos);
    EXPECT_NE(text.find("| **Price / Spot** | 9.4000 | % |"), std::string::npos);
    EXPECT_NE(text.find("| **Compiler** | GCC "), std::string::npos);
}

TEST(ScriptingReporter, EmbeddedDataIsJsonMatchingTheProduct) {
    const auto product = SmallProduct();
    const auto text = ScriptingReporter(product).Render(0);
    const auto simulation = Embedded(text, "SimulationData");
    EXPECT_EQ(simulation["dates"][1], "2025-01-15");
    EXPECT_EQ(simulation["paths"][1][1], 120.0);
    const auto schedule = Embedded(text, "SCHEDULE");
    EXPECT_EQ(schedule["events"][0]["discountFactor"], 0.985);
    EXPECT_EQ(schedule["events"][1]["script"], product.eventScripts[1]);
    EXPECT_EQ(schedule["variables"]["C"], 9.4);
}

TEST(ScriptingReporter, LongPathsAreElided) {
    auto product = SmallProduct();
    product.eventDates.clear();
    product.samplePaths.resize(1);
    product.samplePaths[0].variables.assign(10, {1.0, 2.0});
    for (int m = 1; m <= 10; ++m) product.eventDates.push_back(Date(15, m, 2024));
    const auto text = ScriptingReporter(product).Render(0);
    EXPECT_NE(text.find("\n| ... | ... | ... |\n"), std::string::npos);
}

TEST(ScriptingReporter, WritesDirectoryNameAndSuffix) {
    const auto directory = std::filesystem::temp_directory_path() / "zep_report_test" / "nested";
    std::filesystem::remove_all(directory.parent_path());
    const auto path = ScriptingReporter(SmallProduct()).Write(directory.string(), "call");
    EXPECT_EQ(path, directory.string() + "/call_xscript.md");
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory), {}), 1);  // no temporary left
}

TEST(ScriptingReporter, FailuresWriteNothing) {
    const ScriptingReporter reporter(SmallProduct());
    EXPECT_THROW(reporter.Write("/tmp", "a/b"), std::exception);
    try {
        reporter.Write("/proc/zep-cannot-write", "call");
        FAIL();
    } catch (const std::exception& e) {
        EXPECT_EQ(std::string(e.what()).rfind("Error opening output file: /proc/zep-cannot-write/call_xscript.md", 0), 0u);
    }
}

}  // namespace zep
