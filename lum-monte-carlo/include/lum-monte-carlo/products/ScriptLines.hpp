// Writes payoff script text in the script printer's canonical layout (two blanks per IF level),
// so that what a product generates prints back unchanged once parsed.
#pragma once

#include <string>

#include "lum-monte-carlo/script/ScriptPrinter.hpp"

namespace zep {

class ScriptLines {
public:
    ScriptLines& Line(const std::string& statement) {
        m_text += std::string(2 * m_depth, ' ') + statement + "\n";
        return *this;
    }
    ScriptLines& If(const std::string& condition) {
        Line("IF " + condition + " THEN");
        ++m_depth;
        return *this;
    }
    ScriptLines& Else() {
        --m_depth;
        Line("ELSE");
        ++m_depth;
        return *this;
    }
    ScriptLines& EndIf() {
        --m_depth;
        return Line("ENDIF");
    }
    const std::string& Text() const { return m_text; }

private:
    std::string m_text;
    int m_depth = 0;
};

inline std::string Num(double value) { return ScriptNumberText(value); }

}  // namespace zep
