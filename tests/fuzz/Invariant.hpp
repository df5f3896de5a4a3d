// A rule of the library that a fuzz input has broken: the target prints the rule with the
// values at hand and aborts, so that libFuzzer keeps the input as a crash.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace zep::fuzz {

[[noreturn]] inline void Broken(const std::string& rule) {
    std::fprintf(stderr, "zep invariant broken: %s\n", rule.c_str());
    std::abort();
}

}  // namespace zep::fuzz

// The rule text is only built when the rule is broken: targets run millions of times.
#define ZEP_FUZZ_REQUIRE(condition, rule)          \
    do {                                           \
        if (!(condition)) ::zep::fuzz::Broken(rule); \
    } while (false)
