#include "ExceptionTranslation.hpp"

#include <stdexcept>

#include "lum-auxiliary/Error.hpp"
#include "lum-monte-carlo/RunObserver.hpp"

namespace zep::python {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wexceptions"
void SetPythonErrorFromActiveException() noexcept {
    try {
        throw;
    } catch (const zep::RunInterrupted&) {
        // Stopped by Ctrl-C or by a failing progress callable: their exception is already set.
        if (!PyErr_Occurred()) PyErr_SetNone(PyExc_KeyboardInterrupt);
    } catch (const char* text) {
        PyErr_SetString(PyExc_RuntimeError, text);
    } catch (const std::invalid_argument& e) {
        PyErr_SetString(PyExc_ValueError, e.what());
    } catch (const std::out_of_range& e) {
        PyErr_SetString(PyExc_IndexError, e.what());
    } catch (const std::runtime_error& e) {
        PyErr_SetString(PyExc_RuntimeError, e.what());
    } catch (const std::exception& e) {
        // zep::Error arrives here: it is a std::exception and this clause comes first.
        PyErr_SetString(PyExc_RuntimeError, e.what());
    } catch (const zep::Error& e) {
        // Never reached, kept in its historical place after std::exception on purpose.
        PyErr_SetString(PyExc_RuntimeError, e.what());
    } catch (...) {
        PyErr_SetString(PyExc_RuntimeError, "Unknown C++ exception");
    }
}
#pragma GCC diagnostic pop

}  // namespace zep::python
