#include "ScriptReportSections.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <optional>
#include <string_view>

#include <nlohmann/json.hpp>
#include <spdlog/fmt/fmt.h>

namespace zep::detail {

namespace {

// The shown paths list at most this many event dates each before eliding the rest.
constexpr std::size_t kRowsShownPerPath = 6;
// The spot statistics table shows about this many event dates.
constexpr std::size_t kStatisticsRows = 24;

std::string Number(double value) { return fmt::format("{:.6g}", value); }
std::string Fixed(double value, int digits) { return fmt::format("{:.{}f}", value, digits); }

std::string IsoDate(const Date& date) {
    return fmt::format("{:04d}-{:02d}-{:02d}", date.Year(), date.Month(), date.DayOfMonth());
}

// Cell text: a table cell holds one line and no bare pipe.
std::string Cell(std::string_view text) {
    std::string cell;
    for (const char c : text) {
        if (c == '\n') cell += "<br>";
        else if (c == '\r') continue;
        else if (c == '|') cell += "\\|";
        else cell += c;
    }
    return cell;
}

class Table {
public:
    explicit Table(std::string text = "|Name | Value |\n|--|--|") : m_text(std::move(text)) {}
    Table& Row(std::string_view label, const std::string& value) {
        m_text += "\n| **" + std::string(label) + "** | " + value + " |";
        return *this;
    }
    Table& Percent(std::string_view label, double fraction) {
        m_text += "\n| **" + std::string(label) + "** | " + Fixed(100.0 * fraction, 4) + " | % |";
        return *this;
    }
    Table& Line(const std::string& line) {
        m_text += "\n" + line;
        return *this;
    }
    const std::string& Text() const { return m_text; }

private:
    std::string m_text;
};

// A table row standing for the rows left out.
std::string Elision(std::size_t columns) {
    std::string row = "| ... |";
    for (std::size_t c = 1; c < columns; ++c) row += " ... |";
    return row;
}

double YearFraction(const ScriptReportData& data, const Date& date) {
    return std::max(0.0, (date.SerialNumber() - data.today.SerialNumber()) / data.dayBasis);
}

std::optional<double> PriceStandardError(const ScriptReportData& data) {
    for (std::size_t i = 0; i < data.variableNames.size() && i < data.variableStandardErrors.size(); ++i)
        if (data.variableNames[i] == data.priceVariable) return data.variableStandardErrors[i];
    return std::nullopt;
}

std::string Optional(std::optional<double> value) { return value ? Number(*value) : "n/a"; }

std::string ExecutiveSummary(const ScriptReportData& d) {
    Table table;
    table.Row("Product", Cell(d.productName))
        .Row("Valuation date", d.today.ToString())
        .Row("Model", d.modelName)
        .Row("Price", Number(d.price) + (d.currency.empty() ? "" : " " + d.currency))
        .Row("Standard error", Optional(PriceStandardError(d)))
        .Row("Paths", std::to_string(d.numSimulations));
    return "## 1. 执行摘要 (Executive Summary)\n" + table.Text();
}

std::string TradeDetails(const ScriptReportData& d) {
    Table table;
    table.Row("Product", Cell(d.productName))
        .Row("First event", d.eventDates.empty() ? "-" : d.eventDates.front().ToString())
        .Row("Maturity", d.eventDates.empty() ? "-" : d.eventDates.back().ToString())
        .Row("Event dates", std::to_string(d.eventDates.size()))
        .Row("Script variables", std::to_string(d.variableNames.size()))
        .Row("Price variable", d.priceVariable);
    for (const auto& level : d.levels) table.Row(Cell(level.name), Number(level.value));
    return "## 2. 交易要素 (Trade Details)\n" + table.Text();
}

std::string MarketData(const ScriptReportData& d) {
    Table table;
    table.Row("Today", d.today.ToString())
        .Row("Spot", Number(d.spot))
        .Row("Volatility", Number(d.volatility))
        .Row("Rate1", Number(d.rate1))
        .Row("Rate2", Number(d.rate2));
    return "## 3. 市场数据 (Market Data)\n" + table.Text();
}

std::string ModelConfiguration(const ScriptReportData& d) {
    Table table;
    table.Row("Model", d.modelName);
    for (std::size_t i = 0; i < d.modelParameters.size(); ++i)
        table.Row("Parameter " + std::to_string(i + 1), Number(d.modelParameters[i]));
    return "## 4. 模型配置 (Model Configuration)\n" + table.Text();
}

std::string ComputationConfiguration(const ScriptReportData& d) {
    Table table;
    table.Row("Paths", std::to_string(d.numSimulations))
        .Row("Seed", std::to_string(d.seed))
        .Row("Random numbers", d.generator)
        .Row("Threads", std::to_string(d.threads))
        .Row("Run mode", d.runMode)
        .Row("Day basis", Number(d.dayBasis));
    return "## 5. 计算配置 (Computation Configuration)\n" + table.Text();
}

std::string PricePath(const ScriptReportData& d) {
    nlohmann::json simulation;
    simulation["spot"] = d.spot;
    simulation["dates"] = nlohmann::json::array();
    simulation["times"] = nlohmann::json::array();
    for (const auto& date : d.eventDates) {
        simulation["dates"].push_back(IsoDate(date));
        simulation["times"].push_back(YearFraction(d, date));
    }
    simulation["paths"] = nlohmann::json::array();
    for (const auto& path : d.samplePaths) simulation["paths"].push_back(path.spots);
    simulation["levels"] = nlohmann::json::array();
    for (const auto& level : d.levels)
        simulation["levels"].push_back({{"name", level.name}, {"value", level.value}});
    for (const char* key : {"mean", "p5", "p95"}) simulation["statistics"][key] = nlohmann::json::array();
    for (const auto& s : d.spotStatistics) {
        simulation["statistics"]["mean"].push_back(s.mean);
        simulation["statistics"]["p5"].push_back(s.percentile5);
        simulation["statistics"]["p95"].push_back(s.percentile95);
    }

    std::string header = "|Date|", separator = "|--|";
    for (std::size_t p = 0; p < d.samplePaths.size(); ++p) {
        header += " Path " + std::to_string(p + 1) + " |";
        separator += "--|";
    }
    Table table(header + "\n" + separator);
    const std::size_t dates = d.eventDates.size();
    for (std::size_t e = 0; e < dates; ++e) {
        // The chart shows every date; the table shows the first ones and the last.
        if (e == kRowsShownPerPath && dates > kRowsShownPerPath + 1) {
            table.Line(Elision(d.samplePaths.size() + 1));
            e = dates - 1;
        }
        std::string row = "| " + d.eventDates[e].ToString() + " |";
        for (const auto& path : d.samplePaths) row += " " + (e < path.spots.size() ? Number(path.spots[e]) : "") + " |";
        table.Line(row);
    }
    return "<!-- SimulationData=" + simulation.dump() + "-->\n" + table.Text();
}

std::string PricePathStatistics(const ScriptReportData& d) {
    Table table("|Date| Mean | Std. dev. | Min | P5 | P95 | Max |\n|--|--|--|--|--|--|--|");
    // A long schedule (daily monitoring) is sampled down to about two dozen rows, last date kept.
    const std::size_t dates = std::min(d.eventDates.size(), d.spotStatistics.size());
    const std::size_t stride = (dates + kStatisticsRows - 1) / kStatisticsRows;
    std::vector<std::size_t> shown;
    for (std::size_t e = 0; e < dates; e += std::max<std::size_t>(stride, 1)) shown.push_back(e);
    if (dates > 0 && shown.back() != dates - 1) shown.push_back(dates - 1);
    for (const std::size_t e : shown) {
        const auto& s = d.spotStatistics[e];
        table.Line("| " + d.eventDates[e].ToString() + " | " + Number(s.mean) + " | " +
                   Number(s.standardDeviation) + " | " + Number(s.minimum) + " | " + Number(s.percentile5) +
                   " | " + Number(s.percentile95) + " | " + Number(s.maximum) + " |");
    }
    return table.Text();
}

// Whether an event's script makes a payment (PAYS, in any letter case).
bool Pays(const std::string& script) {
    std::string upper(script);
    std::transform(upper.begin(), upper.end(), upper.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return upper.find("PAYS") != std::string::npos;
}

std::string CalculationProcess(const ScriptReportData& d) {
    nlohmann::json schedule;
    schedule["priceVariable"] = d.priceVariable;
    schedule["price"] = d.price;
    schedule["events"] = nlohmann::json::array();
    // The table lists the dates that pay; the observation-only dates are counted.
    Table table("|Payment date| Time (years) | Discount factor |\n|--|--|--|");
    std::size_t observations = 0;
    for (std::size_t e = 0; e < d.eventDates.size(); ++e) {
        const double factor = e < d.discountFactors.size() ? d.discountFactors[e] : 1.0;
        const std::string& script = e < d.eventScripts.size() ? d.eventScripts[e] : "";
        const bool pays = Pays(script);
        schedule["events"].push_back({{"date", IsoDate(d.eventDates[e])},
                                      {"time", YearFraction(d, d.eventDates[e])},
                                      {"discountFactor", factor},
                                      {"pays", pays},
                                      {"script", script}});
        if (!pays) {
            ++observations;
            continue;
        }
        table.Line("| " + d.eventDates[e].ToString() + " | " + Fixed(YearFraction(d, d.eventDates[e]), 6) +
                   " | " + Fixed(factor, 8) + " |");
    }
    schedule["variables"] = nlohmann::json::object();
    for (std::size_t i = 0; i < d.variableNames.size() && i < d.variableMeans.size(); ++i)
        schedule["variables"][d.variableNames[i]] = d.variableMeans[i];
    return "<!-- SCHEDULE=" + schedule.dump() + "-->\n" + table.Text() + "\n\n" + std::to_string(observations) +
           " further event dates observe the underlying without paying.";
}

std::string EventScript(const ScriptReportData& d) {
    Table table("|Date|Events|\n|--|--|");
    for (std::size_t e = 0; e < d.eventDates.size(); ++e)
        table.Line("|" + d.eventDates[e].ToString() + "|" + Cell(e < d.eventScripts.size() ? d.eventScripts[e] : "") + "|");
    return table.Text();
}

std::string SimulationVars(const ScriptReportData& d) {
    std::string header = "|Date| ", separator = "|--|";
    for (const auto& name : d.variableNames) {
        header += name + " | ";
        separator += "--|";
    }
    Table table(header + "\n" + separator);
    const std::string elision = Elision(d.variableNames.size() + 1);

    for (std::size_t p = 0; p < d.samplePaths.size(); ++p) {
        const auto& path = d.samplePaths[p];
        const std::size_t rows = std::min(path.variables.size(), d.eventDates.size());
        for (std::size_t e = 0; e < rows && e < kRowsShownPerPath; ++e) {
            std::string row = "| " + d.eventDates[e].ToString() + " (path " + std::to_string(p + 1) + ") |";
            for (const double value : path.variables[e]) row += " " + Number(value) + " |";
            table.Line(row);
        }
        if (rows > kRowsShownPerPath) table.Line(elision);
    }
    return table.Text();
}

std::string PricingResults(const ScriptReportData& d) {
    const auto error = PriceStandardError(d);
    Table table;
    table.Row("Price variable", d.priceVariable).Row("Price", Number(d.price)).Row("Standard error", Optional(error));
    if (error)
        table.Row("95% confidence interval",
                  "[" + Number(d.price - 1.96 * *error) + ", " + Number(d.price + 1.96 * *error) + "]");
    if (d.spot > 0.0) table.Percent("Price / Spot", d.price / d.spot);

    Table variables("|Variable| Mean | Std. error |\n|--|--|--|");
    for (std::size_t i = 0; i < d.variableNames.size(); ++i)
        variables.Line("| " + d.variableNames[i] + " | " +
                       (i < d.variableMeans.size() ? Number(d.variableMeans[i]) : "") + " | " +
                       (i < d.variableStandardErrors.size() ? Number(d.variableStandardErrors[i]) : "") + " |");
    return table.Text() + "\n\n" + variables.Text();
}

std::string RiskAnalysis(const ScriptReportData& d) {
    Table table("|Greek | Value |\n|--|--|");
    for (const auto& [name, value] : d.greeks) table.Row(name, Number(value));
    return "## 9. 风险分析 (Risk Analysis)\n" + table.Text();
}

std::string QualityChecks(const ScriptReportData& d) {
    Table table("|Check | Value | Result |\n|--|--|--|");
    const auto error = PriceStandardError(d);
    if (error && d.price != 0.0) {
        const double relative = *error / std::abs(d.price);
        table.Line("| **Relative standard error** | " + Fixed(100.0 * relative, 4) + " | % |");
    }
    for (const auto& [paths, price] : d.convergence)
        table.Line("| **Price with " + std::to_string(paths) + " paths** | " + Number(price) + " | " +
                   // a sub-sample estimate lies within 4 of its own standard errors of the full one
                   (error && std::abs(price - d.price) <= 4.0 * *error * std::sqrt(double(d.numSimulations) / paths)
                        ? "PASS" : "CHECK") + " |");
    bool inUnitInterval = true, nonIncreasing = true;
    for (std::size_t e = 0; e < d.discountFactors.size(); ++e) {
        inUnitInterval = inUnitInterval && d.discountFactors[e] > 0.0 && d.discountFactors[e] <= 1.0 + 1e-12;
        if (e > 0) nonIncreasing = nonIncreasing && d.discountFactors[e] <= d.discountFactors[e - 1] + 1e-12;
    }
    table.Line(std::string("| **Discount factors in (0, 1]** | ") + (d.rate1 >= 0.0 ? "rate1 >= 0" : "rate1 < 0") +
               " | " + (d.rate1 < 0.0 ? "N/A" : inUnitInterval ? "PASS" : "FAIL") + " |");
    table.Line(std::string("| **Discount factors non-increasing** | ") + std::to_string(d.discountFactors.size()) +
               " dates | " + (d.rate1 < 0.0 ? "N/A" : nonIncreasing ? "PASS" : "FAIL") + " |");
    return "## 10. 质量检查 (Quality Checks)\n" + table.Text();
}

std::string CompilerIdentification() {
#if defined(__clang__)
    return fmt::format("Clang {}.{}.{}", __clang_major__, __clang_minor__, __clang_patchlevel__);
#elif defined(__GNUC__)
    return fmt::format("GCC {}.{}.{}", __GNUC__, __GNUC_MINOR__, __GNUC_PATCHLEVEL__);
#else
    return "unknown compiler";
#endif
}

std::string AuditInformation(const ScriptReportData& d, std::time_t reportTime) {
    std::tm local{};
    localtime_r(&reportTime, &local);
    char stamp[32];
    std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S", &local);
    Table table;
    table.Row("Report time", stamp)
        .Row("Compiler", CompilerIdentification())
        .Row("Library version", ZEP_VERSION)
        .Row("Seed", std::to_string(d.seed))
        .Row("Random numbers", d.generator);
    return "## 11. 审计信息 (Audit Information)\n" + table.Text();
}

std::string RiskWarnings() {
    return "## 12. 风险提示 (Risk Warnings)\n"
           "- Monte-Carlo prices carry a sampling error: read the price with its standard error.\n"
           "- The price is only as good as the model: one underlying, flat rates and the model's own "
           "volatility dynamics.\n"
           "- Greeks are re-pricing differences with common random numbers; barrier products can "
           "make them unstable near the barrier.\n"
           "- This report documents a model valuation; it is not a trade confirmation.";
}

}  // namespace

std::map<std::string, std::string> ReportSections(const ScriptReportData& data, std::time_t reportTime) {
    return {
        {"executive_summary", ExecutiveSummary(data)},
        {"trade_details", TradeDetails(data)},
        {"market_data", MarketData(data)},
        {"model_configuration", ModelConfiguration(data)},
        {"computation_configuration", ComputationConfiguration(data)},
        {"price_path", PricePath(data)},
        {"price_path_statistics", PricePathStatistics(data)},
        {"calculation_process", CalculationProcess(data)},
        {"event_script", EventScript(data)},
        {"simulation_vars", SimulationVars(data)},
        {"pricing_results", PricingResults(data)},
        {"risk_analysis", RiskAnalysis(data)},
        {"quality_checks", QualityChecks(data)},
        {"audit_information", AuditInformation(data, reportTime)},
        {"risk_warnings", RiskWarnings()},
    };
}

}  // namespace zep::detail
