// Turns the exception in flight into the Python exception a user of the module sees.
#pragma once

#include <Python.h>

namespace zep::python {

// Call only inside a catch block. Sets the Python error indicator from the active exception,
// whichever of the library's three failure forms it is.
void SetPythonErrorFromActiveException() noexcept;

}  // namespace zep::python
