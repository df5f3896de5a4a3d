#include "lum-monte-carlo/ScriptingReporter.hpp"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

#include "ScriptReportSections.hpp"
#include "lum-auxiliary/Error.hpp"

namespace zep {

namespace {

constexpr std::string_view kPlaceholder = "%placeholder%";
constexpr const char* kReportSuffix = "_xscript.md";

}  // namespace

ScriptingReporter::ScriptingReporter(ScriptReportData data) : m_data(std::move(data)) {}

const std::string& ScriptingReporter::Template() {
    static const std::string text =
        "# 结构化衍生品蒙特卡洛估值报告 (Monte-Carlo Pricing Report)\n"
        "%placeholder% executive_summary\n"
        "%placeholder% trade_details\n"
        "%placeholder% market_data\n"
        "%placeholder% model_configuration\n"
        "%placeholder% computation_configuration\n"
        "## 6. 蒙特卡洛模拟 (Monte-Carlo Simulation)\n"
        "## Monte-Carlo Simulation\n"
        "<!--PLOT1-->\n"
        "%placeholder% price_path\n"
        "## Simuation Statistics\n"  // the heading's spelling is part of the report's format
        "%placeholder% price_path_statistics\n"
        "## 7. 定价过程 (Pricing Process)\n"
        "## Premium Calculation\n"
        "<!--PLOT2-->\n"
        "%placeholder% calculation_process\n"
        "## Schedule and Events\n"
        "%placeholder% event_script\n"
        "## Schedule and selected 3 simulation\n"
        "%placeholder% simulation_vars\n"
        "## 8. 估值结果 (Valuation Results)\n"
        "## Result\n"
        "%placeholder% pricing_results\n"
        "%placeholder% risk_analysis\n"
        "%placeholder% quality_checks\n"
        "%placeholder% audit_information\n"
        "%placeholder% risk_warnings\n";
    return text;
}

std::string ScriptingReporter::Assemble(const std::string& templateText,
                                        const std::map<std::string, std::string>& sections) {
    // The template goes through a text stream and is read back line by line, as a template
    // file would be.
    std::istringstream lines(templateText);
    std::string output, line;
    while (std::getline(lines, line)) {
        if (line.size() >= kPlaceholder.size() && line.starts_with(kPlaceholder)) {
            const std::string key = line.size() > kPlaceholder.size() ? line.substr(kPlaceholder.size() + 1) : "";
            const auto section = sections.find(key);
            if (section == sections.end()) throw std::out_of_range("invalid map<K, T> key");
            output += section->second;
        } else {
            output += line;
        }
        output += '\n';
    }
    return output;
}

std::map<std::string, std::string> ScriptingReporter::Sections(std::time_t reportTime) const {
    return detail::ReportSections(m_data, reportTime);
}

std::string ScriptingReporter::Render(std::time_t reportTime) const {
    return Assemble(Template(), Sections(reportTime));
}

std::string ScriptingReporter::Write(const std::string& directory, const std::string& reportName) const {
    ZEP_REQUIRE(!reportName.empty() && reportName.find_first_of("/\\") == std::string::npos &&
                    reportName != "." && reportName != "..",
                "Invalid report name '" + reportName + "': it must be a file name without path separators");
    const std::string path = directory + "/" + reportName + kReportSuffix;
    const std::string text = Render(std::time(nullptr));  // render first: a failure writes nothing

    std::error_code status;
    std::filesystem::create_directories(directory, status);
    // Written beside the target and renamed over it, so a reader never sees half a report.
    const std::string temporary = path + ".tmp" + std::to_string(::getpid());
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out) ZEP_FAIL("Error opening output file: " + path);
        out << text;
        out.close();
        if (!out) {
            std::filesystem::remove(temporary, status);
            ZEP_FAIL("Error opening output file: " + path);
        }
    }
    std::filesystem::rename(temporary, path, status);
    if (status) {
        std::filesystem::remove(temporary, status);
        ZEP_FAIL("Error opening output file: " + path);
    }
    return path;
}

}  // namespace zep
