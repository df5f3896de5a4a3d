#include <gtest/gtest.h>

#include "ParamNames.hpp"

#include <random>
#include <regex>
#include <string>
#include <vector>

#include "ScriptTestSupport.hpp"
#include "lum-monte-carlo/script/FieldName.hpp"
#include "lum-monte-carlo/script/Tokeniser.hpp"

namespace {

using zep::testing::BuildFailure;
using zep::testing::Logic;
using zep::testing::MakeProduct;
using zep::testing::RunOne;

struct LiteralCase {
    const char* script;
    double expected;
};

class ScriptLiteralValue : public ::testing::TestWithParam<LiteralCase> {};

TEST_P(ScriptLiteralValue, StoresTheValueOfTheGrammar) {
    const auto& [script, expected] = GetParam();
    for (const auto logic : {Logic::Compiled, Logic::Tree})
        EXPECT_DOUBLE_EQ(RunOne(script, 101.0, logic).at("X"), expected) << script;
}

INSTANTIATE_TEST_SUITE_P(
    PrecedenceAndAssociativity, ScriptLiteralValue,
    ::testing::Values(LiteralCase{"X = -2^2", 4.0}, LiteralCase{"X = 2^3^2", 64.0},
                      LiteralCase{"X = 2+3*4", 14.0}, LiteralCase{"X = (2+3)*4", 20.0},
                      LiteralCase{"X = 10-4-3", 3.0}, LiteralCase{"X = 64/8/2", 4.0},
                      LiteralCase{"X = -3 - -2", -1.0}, LiteralCase{"X = 2*-3", -6.0},
                      LiteralCase{"X = 2^-1", 0.5}, LiteralCase{"X = +4", 4.0},
                      LiteralCase{"X = 2*3^2", 18.0}, LiteralCase{"X = -SPOT()^2", 10201.0},
                      LiteralCase{"X = MIN(3, 1, 2) + MAX(1, 5)", 6.0},
                      LiteralCase{"X = SQRT(16) + LOG(1)", 4.0}, LiteralCase{"X = 1.5E2", 150.0},
                      LiteralCase{"X = .5", 0.5}, LiteralCase{"x = 2 X = x * 3", 6.0},
                      LiteralCase{"X = (((1)))", 1.0}, LiteralCase{"X = SPOT() - 1", 100.0},
                      // Inside its band SMOOTH is the line from b at -h to a at +h: 0 + 10/4*3.
                      LiteralCase{"X = SMOOTH(SPOT() - 100, 10, 0, 4)", 7.5},
                      LiteralCase{"X = SMOOTH(SPOT() - 90, 10, 0, 4)", 10.0},
                      LiteralCase{"X = SMOOTH(SPOT() - 110, 10, 0, 4)", 0.0}),
    [](const ::testing::TestParamInfo<LiteralCase>& info) { return zep::testing::NameOf(info.param.script); });

struct ComparisonCase {
    const char* comparator;
    double spot;
    bool holds;  // SPOT() <comparator> 100
};

class ScriptComparison : public ::testing::TestWithParam<ComparisonCase> {};

TEST_P(ScriptComparison, TakesTheBranchTheComparatorSays) {
    const auto& [comparator, spot, holds] = GetParam();
    const std::string script = std::string("IF SPOT() ") + comparator + " 100 THEN X = 1 ELSE X = 2 ENDIF";
    for (const auto logic : {Logic::Compiled, Logic::Tree})
        EXPECT_EQ(RunOne(script, spot, logic).at("X"), holds ? 1.0 : 2.0) << script << " at " << spot;
}

INSTANTIATE_TEST_SUITE_P(
    AllComparators, ScriptComparison,
    ::testing::Values(ComparisonCase{"=", 100, true}, ComparisonCase{"=", 101, false},
                      ComparisonCase{"!=", 100, false}, ComparisonCase{"!=", 99, true},
                      ComparisonCase{">", 100, false}, ComparisonCase{">", 101, true},
                      ComparisonCase{">=", 100, true}, ComparisonCase{">=", 99, false},
                      ComparisonCase{"<", 100, false}, ComparisonCase{"<", 99, true},
                      ComparisonCase{"<=", 100, true}, ComparisonCase{"<=", 101, false}),
    [](const ::testing::TestParamInfo<ComparisonCase>& info) {
        return zep::testing::NameOf(info.param.comparator) + "_at_" + zep::testing::NameOf(info.param.spot);
    });

TEST(ScriptLogic, AndBindsTighterThanOr) {
    // false AND false OR true is true; false AND (false OR true) would be false.
    const std::string script =
        "IF SPOT() < 0 AND SPOT() < 0 OR SPOT() > 0 THEN X = 1 ELSE X = 2 ENDIF "
        "IF SPOT() < 0 AND (SPOT() < 0 OR SPOT() > 0) THEN Y = 1 ELSE Y = 2 ENDIF";
    const auto values = RunOne(script);
    EXPECT_EQ(values.at("X"), 1.0);
    EXPECT_EQ(values.at("Y"), 2.0);
}

struct FailureCase {
    const char* script;
    const char* message;
};

class ScriptParseFailure : public ::testing::TestWithParam<FailureCase> {};

TEST_P(ScriptParseFailure, RaisesTheLanguageMessage) {
    const auto& [script, message] = GetParam();
    EXPECT_EQ(BuildFailure({script}), message) << script;
}

INSTANTIATE_TEST_SUITE_P(
    EveryMessage, ScriptParseFailure,
    ::testing::Values(
        FailureCase{"X", "Unexpected end of statement"},
        FailureCase{"X = 1 Y PAYS", "Unexpected end of statement"},
        FailureCase{"X + 1", "Statement without an instruction"},
        FailureCase{"X =", "Unexpected end of expression"},
        FailureCase{"X = 1 +", "Unexpected end of expression"},
        FailureCase{"X = -", "Unexpected end of expression"},
        FailureCase{"IF", "Unexpected end of expression"},
        FailureCase{"IF X", "Unexpected end of expression"},
        FailureCase{"IF X >", "Unexpected end of expression"},
        FailureCase{"IF X > 1 AND", "Unexpected end of expression"},
        FailureCase{"IF X > 1 OR", "Unexpected end of expression"},
        FailureCase{"IF X > 1;", "Unexpected end of expression"},
        FailureCase{"IF X 1 THEN Y = 1 ENDIF", "Elementary condition has no valid comparator"},
        FailureCase{"IF X > 1 Y = 2 ENDIF", "'If' is not followed by 'then'"},
        FailureCase{"IF X > 1", "'If' is not followed by 'then'"},
        FailureCase{"IF X > 1 THEN Y = 2", "'If/then' is not followed by 'else' or 'endIf'"},
        FailureCase{"IF X > 1 THEN", "'If/then' is not followed by 'else' or 'endIf'"},
        FailureCase{"IF X > 1 THEN Y = 2 ELSE Y = 3", "'If/then/else' is not followed by 'endIf'"},
        FailureCase{"X = SPOT", "No opening ( following function name"},
        FailureCase{"X = LOG 2", "No opening ( following function name"},
        FailureCase{"X = MAX(1 2)", "Arguments must be separated by commas"},
        FailureCase{"X = MIN(1)", "Function MIN: wrong number of arguments"},
        FailureCase{"X = MAX()", "Function MAX: wrong number of arguments"},
        FailureCase{"X = SPOT(1)", "Function SPOT: wrong number of arguments"},
        FailureCase{"X = LOG()", "Function LOG: wrong number of arguments"},
        FailureCase{"X = SQRT(1, 2)", "Function SQRT: wrong number of arguments"},
        FailureCase{"X = SMOOTH(SPOT(), 1, 2)", "Function SMOOTH: wrong number of arguments"},
        FailureCase{"1X = 2", "Variable name 1X is invalid"},
        FailureCase{"x = _y", "Variable name _Y is invalid"},
        FailureCase{"IF X <> 1 THEN Y = 1 ENDIF", "Variable name > is invalid"},
        FailureCase{"X = (1 + 2", "Opening ( has not matching closing )"},
        FailureCase{"IF (X > 1 THEN Y = 1 ENDIF", "Opening ( has not matching closing )"},
        FailureCase{"X = MAX(1, 2", "Opening ( has not matching closing )"},
        FailureCase{"X = .", "invalid stod argument"},
        FailureCase{"IF SPOT() > 1; E THEN X = 1 ENDIF", "invalid stod argument"},
        FailureCase{"X = 1E999", "stod argument out of range"},
        FailureCase{"IF SPOT() > 1 : 1E999 THEN X = 1 ENDIF", "stod argument out of range"},
        FailureCase{"X = SMOOTH(1, 2, 3, 4)", "Smooth called with discrete x"},
        FailureCase{"N = 1 IF SPOT() > 1 THEN N = 2 ENDIF X = SMOOTH(N, 2, 3, 4)", "Smooth called with discrete x"},
        FailureCase{"X = 1 / 0", "Division by {0}"},
        FailureCase{"Y = 2 - 2 X = SPOT() / Y", "Division by {0}"},
        FailureCase{"Y = -1 X = LOG(Y)", "Inconsistent bounds"},
        FailureCase{"Y = -4 X = SQRT(Y - SPOT() * 0)", "Inconsistent bounds"}),
    [](const ::testing::TestParamInfo<FailureCase>& info) { return zep::testing::NameOf(info.param.script); });

TEST(ScriptParser, IsCaseInsensitive) {
    EXPECT_EQ(MakeProduct({"if x>1 then y=1 endif"}).DebugText(),
              MakeProduct({"IF X > 1 THEN Y = 1 ENDIF"}).DebugText());
}

TEST(ScriptParser, ReadsEpsAfterSemicolonOrColon) {
    const std::string withSemicolon = MakeProduct({"IF SPOT() > 100; 0.5 THEN X = 1 ENDIF"}).DebugText();
    EXPECT_NE(withSemicolon.find("[CONT,EPS=0.5]"), std::string::npos) << withSemicolon;
    EXPECT_EQ(withSemicolon, MakeProduct({"IF SPOT() > 100: 0.5 THEN X = 1 ENDIF"}).DebugText());
    const std::string withoutEps = MakeProduct({"IF SPOT() > 100 THEN X = 1 ENDIF"}).DebugText();
    EXPECT_NE(withoutEps.find("[CONT,EPS=-1]"), std::string::npos) << withoutEps;
}

TEST(ScriptParser, AcceptsOneHundredArgumentsButNotMore) {
    auto arguments = [](int count) {
        std::string text = "X = MAX(1";
        for (int i = 2; i <= count; ++i) text += ", " + std::to_string(i);
        return text + ")";
    };
    EXPECT_EQ(RunOne(arguments(100)).at("X"), 100.0);
    EXPECT_EQ(BuildFailure({arguments(101)}), "Function MAX: wrong number of arguments");
}

TEST(ScriptParser, NotEqualIsNotOverEqualWithItsEps) {
    const std::string text = MakeProduct({"IF SPOT() != 100; 3 THEN X = 1 ENDIF"}).DebugText();
    const auto notAt = text.find("NOT");
    const auto equalAt = text.find("EQUAL[CONT,EPS=3]");
    ASSERT_NE(notAt, std::string::npos) << text;
    ASSERT_NE(equalAt, std::string::npos) << text;
    EXPECT_LT(notAt, equalAt);
}

TEST(ScriptParser, EmptyScriptHasNoStatements) {
    const auto product = MakeProduct({"", "  \n "});
    EXPECT_EQ(product.VariableCount(), 0u);
}

// Scripts far too long to name themselves: each case carries a name for what it nests.
struct NestingCase {
    const char* name;
    std::string script;
};

class ScriptNesting : public ::testing::TestWithParam<NestingCase> {};

TEST_P(ScriptNesting, DeepScriptsFailWithAMessageInsteadOfOverflowing) {
    EXPECT_EQ(BuildFailure({GetParam().script}), "Script nesting deeper than 400 levels");
}

INSTANTIATE_TEST_SUITE_P(
    Deep, ScriptNesting,
    ::testing::Values(
        NestingCase{"Parentheses100000", "X = " + std::string(100000, '(') + "1" + std::string(100000, ')')},
        NestingCase{"UnaryMinus100000", "X = " + std::string(100000, '-') + "1"},
        NestingCase{"Sum100000Terms", [] { std::string s = "X = 1"; for (int i = 0; i < 100000; ++i) s += "+1"; return s; }()},
        NestingCase{"UnclosedIf5000", [] { std::string s; for (int i = 0; i < 5000; ++i) s += "IF X > 1 THEN "; return s; }()},
        NestingCase{"ConditionInParentheses50000",
                    "IF " + std::string(50000, '(') + "X > 1" + std::string(50000, ')') + " THEN X = 1 ENDIF"}),
    [](const ::testing::TestParamInfo<NestingCase>& info) { return std::string(info.param.name); });

TEST(ScriptParser, ModerateNestingIsAccepted) {
    EXPECT_EQ(RunOne("X = " + std::string(150, '(') + "2" + std::string(150, ')')).at("X"), 2.0);
}

// The hand-written tokeniser against the regular expression that defines the tokens.
TEST(ScriptTokeniser, MatchesTheDefiningRegularExpression) {
    const std::regex token(R"([\w.]+|[/-]|,|;|:|[\(\)\+\*\^]|!=|>=|<=|[<>=])", std::regex::ECMAScript);
    const std::string alphabet = "aZ09_.xY/-,;:()+*^<>=! \t\n!#$%&?[]{}\"'\\~`|@";
    std::mt19937 random(20240611);
    for (int trial = 0; trial < 3000; ++trial) {
        std::string text(random() % 40, ' ');
        for (char& c : text) {
            const auto pick = random() % (alphabet.size() + 4);
            c = pick < alphabet.size() ? alphabet[pick] : static_cast<char>(0x80 + random() % 128);
        }
        std::string upper = text;
        for (char& c : upper) if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        std::vector<std::string> expected;
        for (std::sregex_iterator it(upper.begin(), upper.end(), token), end; it != end; ++it)
            expected.push_back(it->str());
        EXPECT_EQ(zep::Tokenise(text), expected) << text;
    }
}

TEST(ScriptFieldName, AcceptsLettersThenLettersAndDigits) {
    for (const char* name : {"Strike", "b2", "KnockIn1", "Z"}) EXPECT_NO_THROW(zep::ValidateFieldName("strike", name)) << name;
}

TEST(ScriptFieldName, RejectsMalformedNamesAndKeywords) {
    const std::string tail =
        " field name '%': must start with a letter (a-z, A-Z) and can contain letters and numbers, and cannot "
        "be a script keyword (if, else, then, endIf, opt, pays, max, min, Spot, etc.)";
    for (const char* name : {"", "1a", "_a", "a_b", "a.b", "if", "EndIf", "Spot", "pays", "NULL", "opt", "not"}) {
        std::string expected = "Invalid barrier" + tail;
        expected.replace(expected.find('%'), 1, name);
        try {
            zep::ValidateFieldName("barrier", name);
            ADD_FAILURE() << "accepted " << name;
        } catch (const zep::Error& error) {
            EXPECT_EQ(error.Message(), expected);
        }
    }
}

}  // namespace
