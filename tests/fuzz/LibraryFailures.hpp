// The ways the library refuses bad input: zep::Error, the bare constant texts of its simple
// validations (ZEP_REQUIRE_TEXT), and the standard invalid_argument, out_of_range and
// runtime_error that the Python binding turns into ValueError, IndexError and RuntimeError.
// A target runs the calls it feeds with fuzz input through Attempt; anything else thrown escapes,
// terminates the process and is a finding, like a crash.
#pragma once

#include <optional>
#include <stdexcept>
#include <type_traits>

#include "lum-auxiliary/Error.hpp"

namespace zep::fuzz {

// The action's result, or nothing when the library refused the input in one of its ways; a
// void action gives whether it completed.
template <class Action>
auto Attempt(Action&& action) {
    using Result = std::invoke_result_t<Action&>;
    using Outcome = std::conditional_t<std::is_void_v<Result>, bool, std::optional<Result>>;
    try {
        if constexpr (std::is_void_v<Result>) {
            action();
            return Outcome{true};
        } else {
            return Outcome{action()};
        }
    } catch (const Error&) {
    } catch (const char*) {
    } catch (const std::invalid_argument&) {
    } catch (const std::out_of_range&) {
    } catch (const std::runtime_error&) {
    }
    return Outcome{};
}

}  // namespace zep::fuzz
