// The library's exception: a message tagged with the qualified function, source file and line
// that raised it. Callers see the formatted text through what(); Message() keeps the bare text.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>

namespace zep {

class Error : public std::exception {
public:
    Error(const std::string& file, std::uint32_t line, const std::string& function,
          const std::string& message);

    const char* what() const noexcept override { return m_formatted->c_str(); }
    const std::string& Message() const noexcept { return *m_message; }

private:
    // Shared so that copying an exception while it propagates never allocates.
    std::shared_ptr<const std::string> m_formatted;
    std::shared_ptr<const std::string> m_message;
};

namespace detail {
// Turns __PRETTY_FUNCTION__ ("double zep::Date::Foo(int) const") into "zep::Date::Foo".
std::string QualifiedFunctionName(const char* prettyFunction);
}  // namespace detail

}  // namespace zep

// Raises zep::Error carrying the caller's file, line and qualified function name.
#define ZEP_FAIL(message)                                                                        \
    throw ::zep::Error(__FILE__, __LINE__, ::zep::detail::QualifiedFunctionName(__PRETTY_FUNCTION__), \
                       (message))

#define ZEP_REQUIRE(condition, message) \
    do {                                \
        if (!(condition)) ZEP_FAIL(message); \
    } while (false)

// Simple validation failures travel as the bare constant text, with no location attached.
#define ZEP_REQUIRE_TEXT(condition, text) \
    do {                                  \
        if (!(condition)) throw static_cast<const char*>(text); \
    } while (false)

// For names that __PRETTY_FUNCTION__ cannot spell the library's way (template instances).
#define ZEP_FAIL_IN(function, message) throw ::zep::Error(__FILE__, __LINE__, (function), (message))
