// The frame of the Python-facing M classes: each owns its library object through a shared
// pointer and re-raises any failure of an operation with the prefix "<Class>::<operation>
// failed: ", so a user sees which call failed before the library's own text.
#pragma once

#include <stdexcept>
#include <string>

#include <boost/shared_ptr.hpp>

#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/RunObserver.hpp"

namespace zep::python {

// Runs a library operation of an M class; `where` is "<Class>::<operation>".
template <class Operation>
decltype(auto) Guarded(const char* where, Operation&& operation) {
    try {
        return operation();
    } catch (const RunInterrupted&) {
        throw;  // nothing failed: the user stopped the run
    } catch (const char* text) {
        throw std::runtime_error(std::string(where) + " failed: " + text);
    } catch (const std::exception& e) {
        throw std::runtime_error(std::string(where) + " failed: " + e.what());
    }
}

// One operation of an M class, inside its MWrapper member: the failure prefix "<Class>::<Name>"
// and the qualified name reported when the object was never built.
#define ZEP_M_OPERATION(Class, Name, ...) \
    ::zep::python::Guarded(#Class "::" #Name, [&] { return Object("zep::" #Class "::" #Name).Name(__VA_ARGS__); })

template <class Library>
class MWrapper {
public:
    bool IsInitialized() const { return static_cast<bool>(m_object); }

protected:
    MWrapper() = default;
    explicit MWrapper(boost::shared_ptr<Library> object) : m_object(std::move(object)) {}

    // The library object; `function` is the qualified operation ("zep::MName::Op") reported
    // when construction never produced one.
    Library& Object(const char* function) const {
        if (!m_object) ZEP_FAIL_IN(function, "not initialized!");
        return *m_object;
    }

    boost::shared_ptr<Library> m_object;
};

}  // namespace zep::python
