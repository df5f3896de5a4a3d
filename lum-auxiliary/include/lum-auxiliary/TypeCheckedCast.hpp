// Reads a type-erased value back as the type an operation expects, failing with a message that
// names the operation and the expected type instead of a bare bad_any_cast.
#pragma once

#include <stdexcept>
#include <string>
#include <typeinfo>

#include <boost/any.hpp>
#include <boost/core/demangle.hpp>

namespace zep {

template <class T>
const T& TypeCheckedCast(const boost::any& value, const std::string& operation) {
    std::string expected = boost::core::demangle(typeid(T).name());
    if (expected.empty()) expected = "unknown type";
    try {
        return boost::any_cast<const T&>(value);
    } catch (const boost::bad_any_cast& e) {
        throw std::runtime_error("Type check failed in " + operation +
                                 ": Cannot determine object type (expected: " + expected + "). " +
                                 e.what());
    } catch (const std::exception& e) {
        throw std::runtime_error("Type check failed in " + operation +
                                 " during type casting (expected: " + expected + "). " + e.what());
    }
}

}  // namespace zep
