// Private to the closed forms: a figure handed to the caller only when it is a finite number;
// otherwise a zep::Error naming the figure and the market it was asked on (BSVanilla.hpp says why
// no figure is clamped).
#pragma once

#include <cmath>
#include <limits>
#include <string>

#include "lum-auxiliary/Error.hpp"
#include "lum-auxiliary/SourceLine.hpp"

namespace zep::detail {

template <class DescribeMarket>
[[noreturn, gnu::cold, gnu::noinline]] void FailFigure(const char* owner, const char* figure,
                                                      const DescribeMarket& describeMarket,
                                                      const SourceLine& where) {
    throw Error(where.file, where.line, std::string(owner) + "::" + figure,
                std::string(figure) + " cannot be represented in double precision for " + describeMarket());
}

// `owner` is the class ("zep::BSVanilla"), `where` the figure's own line; `describeMarket()` runs
// only on failure, out of line, so that every figure keeps its size and its inlining.
template <class DescribeMarket>
double FiniteFigure(double value, const char* owner, const char* figure, const DescribeMarket& describeMarket,
                    const SourceLine& where) {
    if (std::abs(value) <= std::numeric_limits<double>::max()) [[likely]]
        return value;
    FailFigure(owner, figure, describeMarket, where);
}

}  // namespace zep::detail
