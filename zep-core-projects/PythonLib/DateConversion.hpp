// Accepts the date forms a Python user naturally has at hand: a text or a datetime.date.
#pragma once

#include <Python.h>

#include <optional>

#include "DateInput.hpp"
#include "lum-time/Date.hpp"

namespace zep::python {

enum class Conversion { Converted, NotADate, Failed };

bool LooksLikeDate(PyObject* object);

// Failed means the library rejected the value and the Python error is already set.
Conversion DateFromPython(PyObject* object, zep::Date& date);

// A date text or a datetime.date, left unparsed for an M class to read inside its guard; empty
// for any other object (no Python error set).
std::optional<DateInput> DateInputFromPython(PyObject* object);

}  // namespace zep::python
