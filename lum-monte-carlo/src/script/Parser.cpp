#include "lum-monte-carlo/script/Parser.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/script/Tokeniser.hpp"

namespace zep {

namespace {

struct FunctionSignature {
    std::string_view name;
    std::size_t minArguments;
    std::size_t maxArguments;
};

constexpr FunctionSignature kFunctions[] = {
    {"SPOT", 0, 0}, {"LOG", 1, 1}, {"SQRT", 1, 1}, {"MIN", 2, 100}, {"MAX", 2, 100}, {"SMOOTH", 4, 4}};

std::string NestingMessage() {
    return "Script nesting deeper than " + std::to_string(kMaxScriptNesting) + " levels";
}

bool IsComparator(const std::string& token) {
    return token == "=" || token == "!=" || token == ">" || token == ">=" || token == "<" ||
           token == "<=";
}

}  // namespace

// Recursive descent over the token list of one event. Parenthesised parts are parsed inside
// the range that ends at their matching ")", like the function argument lists.
class ScriptParser {
public:
    explicit ScriptParser(std::vector<std::string> tokens)
        : m_tokens(std::move(tokens)), m_end(m_tokens.size()), m_matchingClose(MatchParentheses()) {}

    Statements ParseEvent() {
        Statements statements;
        while (!AtEnd()) statements.push_back(ParseStatement());
        return statements;
    }

private:
    // Counts nesting on every recursion cycle of the grammar.
    class NestingGuard {
    public:
        explicit NestingGuard(std::int32_t& depth) : m_depth(depth) {
            if (++m_depth > kMaxScriptNesting) ScriptParser::FailTooDeep();
        }
        ~NestingGuard() { --m_depth; }
        NestingGuard(const NestingGuard&) = delete;
        NestingGuard& operator=(const NestingGuard&) = delete;

    private:
        std::int32_t& m_depth;
    };

    [[noreturn]] static void FailTooDeep() { ZEP_FAIL(NestingMessage()); }

    bool AtEnd() const { return m_position >= m_end; }
    const std::string& Token() const { return m_tokens[m_position]; }
    bool TokenIs(std::string_view text) const { return !AtEnd() && Token() == text; }

    void RequireMore(const char* message) const {
        if (AtEnd()) ZEP_FAIL(message);
    }

    // Index of the ")" closing each "(", found by counting nesting; -1 when it never closes.
    std::vector<std::int64_t> MatchParentheses() const {
        std::vector<std::int64_t> matching(m_tokens.size(), -1);
        std::vector<std::size_t> open;
        for (std::size_t i = 0; i < m_tokens.size(); ++i) {
            if (m_tokens[i] == "(") {
                open.push_back(i);
            } else if (m_tokens[i] == ")" && !open.empty()) {
                matching[open.back()] = static_cast<std::int64_t>(i);
                open.pop_back();
            }
        }
        return matching;
    }

    std::size_t MatchingClose() const {
        const std::int64_t close = m_matchingClose[m_position];
        if (close < 0 || static_cast<std::size_t>(close) >= m_end)
            ZEP_FAIL("Opening " + Token() + " has not matching closing )");
        return static_cast<std::size_t>(close);
    }

    // Parses what lies between the current "(" and its ")", then continues after the ")".
    template <class Parse>
    auto WithinParentheses(Parse parse) {
        const std::size_t close = MatchingClose();
        const std::size_t outerEnd = m_end;
        ++m_position;
        m_end = close;
        auto result = parse();
        m_end = outerEnd;
        m_position = close + 1;
        return result;
    }

    static void Adopt(Node& parent, std::unique_ptr<Node> child) {
        parent.height = std::max(parent.height, child->height + 1);
        if (parent.height > kMaxScriptNesting) FailTooDeep();
        parent.arguments.push_back(std::move(child));
    }

    template <class N, class... Children>
    static std::unique_ptr<N> Make(Children&&... children) {
        auto node = std::make_unique<N>();
        (Adopt(*node, std::move(children)), ...);
        return node;
    }

    std::unique_ptr<actNode> ParseStatement() {
        if (Token() == "IF") return ParseIf();
        auto variable = ParseVariable();
        RequireMore("Unexpected end of statement");
        if (Token() == "=") {
            ++m_position;
            return Make<NodeAssign>(std::move(variable), ParseExpression());
        }
        if (Token() == "PAYS") {
            ++m_position;
            RequireMore("Unexpected end of statement");
            return Make<NodePays>(std::move(variable), ParseExpression());
        }
        ZEP_FAIL("Statement without an instruction");
    }

    std::unique_ptr<actNode> ParseIf() {
        NestingGuard guard(m_depth);
        ++m_position;
        auto node = Make<NodeIf>(ParseCondition());
        if (!TokenIs("THEN")) ZEP_FAIL("'If' is not followed by 'then'");
        ++m_position;
        while (!AtEnd() && Token() != "ELSE" && Token() != "ENDIF") Adopt(*node, ParseStatement());
        RequireMore("'If/then' is not followed by 'else' or 'endIf'");
        if (Token() == "ELSE") {
            node->firstElse = static_cast<std::int32_t>(node->arguments.size());
            ++m_position;
            while (!AtEnd() && Token() != "ENDIF") Adopt(*node, ParseStatement());
            RequireMore("'If/then/else' is not followed by 'endIf'");
        }
        ++m_position;
        return node;
    }

    std::unique_ptr<boolNode> ParseCondition() {
        NestingGuard guard(m_depth);
        std::unique_ptr<boolNode> condition = ParseAndCondition();
        while (TokenIs("OR")) {
            ++m_position;
            condition = Make<NodeOr>(std::move(condition), ParseAndCondition());
        }
        return condition;
    }

    std::unique_ptr<boolNode> ParseAndCondition() {
        std::unique_ptr<boolNode> condition = ParseAtomCondition();
        while (TokenIs("AND")) {
            ++m_position;
            condition = Make<NodeAnd>(std::move(condition), ParseAtomCondition());
        }
        return condition;
    }

    std::unique_ptr<boolNode> ParseAtomCondition() {
        RequireMore("Unexpected end of expression");
        if (Token() == "(") return WithinParentheses([this] { return ParseCondition(); });
        return ParseElementaryCondition();
    }

    template <class Comparison>
    static std::unique_ptr<Comparison> Compare(std::unique_ptr<exprNode> difference, double eps) {
        auto node = Make<Comparison>(std::move(difference));
        node->eps = eps;
        return node;
    }

    std::unique_ptr<boolNode> ParseElementaryCondition() {
        auto left = ParseExpression();
        RequireMore("Unexpected end of expression");
        const std::string comparator = Token();
        if (!IsComparator(comparator)) ZEP_FAIL("Elementary condition has no valid comparator");
        ++m_position;
        auto right = ParseExpression();
        double eps = -1.0;
        if (TokenIs(";") || TokenIs(":")) {
            ++m_position;
            RequireMore("Unexpected end of expression");
            eps = ParseNumber(Token());
            ++m_position;
        }
        // Every comparison becomes a test of one difference against zero.
        auto leftMinusRight = [&] { return Make<NodeSub>(std::move(left), std::move(right)); };
        auto rightMinusLeft = [&] { return Make<NodeSub>(std::move(right), std::move(left)); };
        if (comparator == "=") return Compare<NodeEqual>(leftMinusRight(), eps);
        if (comparator == "!=") return Make<NodeNot>(Compare<NodeEqual>(leftMinusRight(), eps));
        if (comparator == ">") return Compare<NodeSup>(leftMinusRight(), eps);
        if (comparator == ">=") return Compare<NodeSupEqual>(leftMinusRight(), eps);
        if (comparator == "<") return Compare<NodeSup>(rightMinusLeft(), eps);
        return Compare<NodeSupEqual>(rightMinusLeft(), eps);
    }

    std::unique_ptr<exprNode> ParseExpression() {
        std::unique_ptr<exprNode> expression = ParseTerm();
        while (TokenIs("+") || TokenIs("-")) {
            const bool add = Token() == "+";
            ++m_position;
            if (add) expression = Make<NodeAdd>(std::move(expression), ParseTerm());
            else expression = Make<NodeSub>(std::move(expression), ParseTerm());
        }
        return expression;
    }

    std::unique_ptr<exprNode> ParseTerm() {
        std::unique_ptr<exprNode> term = ParsePower();
        while (TokenIs("*") || TokenIs("/")) {
            const bool multiply = Token() == "*";
            ++m_position;
            if (multiply) term = Make<NodeMult>(std::move(term), ParsePower());
            else term = Make<NodeDiv>(std::move(term), ParsePower());
        }
        return term;
    }

    // "^" chains to the left: 2^3^2 is (2^3)^2.
    std::unique_ptr<exprNode> ParsePower() {
        std::unique_ptr<exprNode> power = ParseUnary();
        while (TokenIs("^")) {
            ++m_position;
            power = Make<NodePow>(std::move(power), ParseUnary());
        }
        return power;
    }

    // Signs bind tighter than "^": -2^2 is (-2)^2.
    std::unique_ptr<exprNode> ParseUnary() {
        NestingGuard guard(m_depth);
        RequireMore("Unexpected end of expression");
        if (Token() == "+") {
            ++m_position;
            return Make<NodeUplus>(ParseUnary());
        }
        if (Token() == "-") {
            ++m_position;
            return Make<NodeUminus>(ParseUnary());
        }
        if (Token() == "(") return WithinParentheses([this] { return ParseExpression(); });
        return ParsePrimary();
    }

    std::unique_ptr<exprNode> ParsePrimary() {
        RequireMore("Unexpected end of expression");
        const std::string& token = Token();
        if ((token[0] >= '0' && token[0] <= '9') || token[0] == '.') {
            auto constant = std::make_unique<NodeConst>();
            constant->value = ParseNumber(token);
            ++m_position;
            return constant;
        }
        if (token == "SPOT") return ParseFunction<NodeSpot>(kFunctions[0]);
        if (token == "LOG") return ParseFunction<NodeLog>(kFunctions[1]);
        if (token == "SQRT") return ParseFunction<NodeSqrt>(kFunctions[2]);
        if (token == "MIN") return ParseFunction<NodeMin>(kFunctions[3]);
        if (token == "MAX") return ParseFunction<NodeMax>(kFunctions[4]);
        if (token == "SMOOTH") return ParseFunction<NodeSmooth>(kFunctions[5]);
        return ParseVariable();
    }

    template <class Function>
    std::unique_ptr<exprNode> ParseFunction(const FunctionSignature& signature) {
        ++m_position;
        if (!TokenIs("(")) ZEP_FAIL("No opening ( following function name");
        auto node = std::make_unique<Function>();
        WithinParentheses([&] {
            while (!AtEnd()) {
                Adopt(*node, ParseExpression());
                if (TokenIs(",")) ++m_position;
                else if (!AtEnd()) ZEP_FAIL("Arguments must be separated by commas");
            }
            return 0;
        });
        const std::size_t count = node->arguments.size();
        if (count < signature.minArguments || count > signature.maxArguments)
            ZEP_FAIL("Function " + std::string(signature.name) + ": wrong number of arguments");
        return node;
    }

    std::unique_ptr<NodeVar> ParseVariable() {
        const std::string& token = Token();
        if (token[0] < 'A' || token[0] > 'Z') ZEP_FAIL("Variable name " + token + " is invalid");
        auto variable = std::make_unique<NodeVar>();
        variable->name = token;
        ++m_position;
        return variable;
    }

    // The standard string-to-double conversion of the number's text, with its messages.
    static double ParseNumber(const std::string& token) {
        errno = 0;
        char* stop = nullptr;
        const double value = std::strtod(token.c_str(), &stop);
        if (stop == token.c_str()) ZEP_FAIL("invalid stod argument");
        if (errno == ERANGE) ZEP_FAIL("stod argument out of range");
        return value;
    }

    std::vector<std::string> m_tokens;
    std::size_t m_position = 0;
    std::size_t m_end;
    std::vector<std::int64_t> m_matchingClose;
    std::int32_t m_depth = 0;
};

Statements ParseScript(std::string_view script) {
    return ScriptParser(Tokenise(script)).ParseEvent();
}

}  // namespace zep
