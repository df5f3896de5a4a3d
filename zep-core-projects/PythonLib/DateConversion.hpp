// Accepts the date forms a Python user naturally has at hand: a text or a datetime.date.
#pragma once

#include <Python.h>

#include "lum-time/Date.hpp"

namespace zep::python {

enum class Conversion { Converted, NotADate, Failed };

bool LooksLikeDate(PyObject* object);

// Failed means the library rejected the value and the Python error is already set.
Conversion DateFromPython(PyObject* object, zep::Date& date);

}  // namespace zep::python
