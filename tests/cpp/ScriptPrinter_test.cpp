#include <gtest/gtest.h>

#include "lum-monte-carlo/script/Parser.hpp"
#include "lum-monte-carlo/script/ScriptPrinter.hpp"

namespace zep {
namespace {

std::string Printed(const std::string& script) { return PrintScript(ParseScript(script)); }

// Texts already in the canonical layout print back unchanged.
class CanonicalText : public ::testing::TestWithParam<std::string> {};

TEST_P(CanonicalText, PrintsBackUnchanged) { EXPECT_EQ(Printed(GetParam()), GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    ScriptPrinter, CanonicalText,
    ::testing::Values("X = 1 - 2 - 3\n", "X = 1 - (2 - 3)\n", "X = 8 / (4 / 2)\n", "X = (1 + 2) * 3\n", "X = 2^3^2\n",
                      "X = 2^(3^2)\n", "X = -2^2\n", "X = -(2^2)\n", "X = A * -B\n", "X = SPOT()^-0.5\n",
                      "X = MAX(A, B - 1, MIN(C, 2)) / SQRT(LOG(SPOT()))\n", "X = SMOOTH(SPOT() - 100, 1, 0, 2)\n",
                      "V PAYS 0.000001 * X\n", "X = 123456789.125\n",
                      "IF A > B AND C >= 1 OR D = 2 THEN\n  X = 1\nENDIF\n",
                      "IF (A > B OR C >= 1) AND D != 2; 0.5 THEN\n  X = 1\nELSE\n  IF E > 0 THEN\n    Y = 2\n  ENDIF\nENDIF\n"));

// Other layouts come out canonical: upper case, the comparison turned to ">" or ">=", the
// redundant parentheses dropped.
TEST(ScriptPrinter, PrintsOtherLayoutsCanonically) {
    EXPECT_EQ(Printed("if spot() < 60 then ki=1 endif"), "IF 60 > SPOT() THEN\n  KI = 1\nENDIF\n");
    EXPECT_EQ(Printed("x = ((a)) + (b * c) y = .5"), "X = A + B * C\nY = 0.5\n");
    EXPECT_EQ(Printed("IF X <= 1 : 0.25 THEN Y = 1 ENDIF"), "IF 1 >= X; 0.25 THEN\n  Y = 1\nENDIF\n");
}

TEST(ScriptPrinter, NumbersReadBackExactly) {
    for (const double value : {0.1, 1.0 / 3.0, 2.2250738585072014e-308, 1.7976931348623157e308, 0.0})
        EXPECT_EQ(std::stod(ScriptNumberText(value)), value);
    EXPECT_EQ(ScriptNumberText(0.5), "0.5");
    EXPECT_THROW(ScriptNumberText(std::numeric_limits<double>::infinity()), std::invalid_argument);
    EXPECT_THROW(ScriptNumberText(4.9e-324), std::invalid_argument);
}

}  // namespace
}  // namespace zep
