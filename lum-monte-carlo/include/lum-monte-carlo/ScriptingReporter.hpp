// The Markdown pricing report of a scripted product: a fixed template whose placeholder lines
// are replaced by generated sections (trade, market, model, simulation, schedule, results).
#pragma once

#include <ctime>
#include <map>
#include <string>

#include "lum-monte-carlo/ScriptReportData.hpp"

namespace zep {

class ScriptingReporter {
public:
    explicit ScriptingReporter(ScriptReportData data);

    // The 27 template lines, each ended by a line feed.
    static const std::string& Template();
    // Copies the template, replacing every line that begins with "%placeholder%" by the section
    // named after it; a name missing from the sections fails with "invalid map<K, T> key".
    static std::string Assemble(const std::string& templateText,
                                const std::map<std::string, std::string>& sections);

    // Section key to Markdown text, stamped with the given report time.
    std::map<std::string, std::string> Sections(std::time_t reportTime) const;
    std::string Render(std::time_t reportTime) const;

    // Writes <directory>/<reportName>_xscript.md (directories created with their parents) and
    // returns that path. The file appears whole or not at all.
    std::string Write(const std::string& directory, const std::string& reportName) const;

private:
    ScriptReportData m_data;
};

}  // namespace zep
