// What a failing call raised, in the form a test compares. Each helper catches only the form it
// names, so a failure raised in the wrong form still escapes and fails the test.
#pragma once

#include <exception>
#include <string>

#include "lum-auxiliary/Error.hpp"

namespace zep::testing {

inline constexpr const char* kNoFailure = "(no failure)";

// A failure raised as a bare constant text.
std::string BareText(auto&& action) {
    try {
        action();
    } catch (const char* text) {
        return text;
    }
    return kNoFailure;
}

// The message of a zep::Error, without its function, file and line.
std::string ErrorMessage(auto&& action) {
    try {
        action();
    } catch (const Error& e) {
        return e.Message();
    }
    return kNoFailure;
}

// The formatted text of a zep::Error.
std::string ErrorWhat(auto&& action) {
    try {
        action();
    } catch (const Error& e) {
        return e.what();
    }
    return kNoFailure;
}

// The message of whatever library failure was raised: an Error's bare message, a bare text, or
// a standard exception's what().
std::string FailureText(auto&& action) {
    try {
        action();
    } catch (const char* text) {
        return text;
    } catch (const Error& e) {
        return e.Message();
    } catch (const std::exception& e) {
        return e.what();
    }
    return kNoFailure;
}

// what() of any standard exception, zep::Error included.
std::string ExceptionWhat(auto&& action) {
    try {
        action();
    } catch (const std::exception& e) {
        return e.what();
    }
    return kNoFailure;
}

}  // namespace zep::testing
