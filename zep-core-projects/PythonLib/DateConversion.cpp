#include "DateConversion.hpp"

#include <datetime.h>

#include <string_view>

#include "ExceptionTranslation.hpp"

namespace zep::python {

namespace {
bool IsDateTimeDate(PyObject* object) {
    // The datetime C API is bound on first use, not at import, to keep start-up short.
    if (PyDateTimeAPI == nullptr) {
        PyDateTime_IMPORT;
        if (PyDateTimeAPI == nullptr) {
            PyErr_Clear();
            return false;
        }
    }
    return PyDate_Check(object);
}

// A NumPy datetime64 scalar, recognised by its type name so that NumPy need not be loaded.
bool IsDatetime64(PyObject* object) { return std::string_view(Py_TYPE(object)->tp_name) == "numpy.datetime64"; }
}  // namespace

bool LooksLikeDate(PyObject* object) {
    return PyUnicode_Check(object) || IsDateTimeDate(object) || IsDatetime64(object);
}

Conversion DateFromPython(PyObject* object, zep::Date& date) {
    if (PyUnicode_Check(object)) {
        Py_ssize_t size = 0;
        const char* text = PyUnicode_AsUTF8AndSize(object, &size);
        if (text == nullptr) return Conversion::Failed;
        try {
            date = zep::Date(std::string_view(text, static_cast<std::size_t>(size)));
        } catch (...) {
            SetPythonErrorFromActiveException();
            return Conversion::Failed;
        }
        return Conversion::Converted;
    }
    if (IsDateTimeDate(object)) {
        try {
            date = zep::Date(PyDateTime_GET_DAY(object), PyDateTime_GET_MONTH(object),
                             PyDateTime_GET_YEAR(object));
        } catch (...) {
            SetPythonErrorFromActiveException();
            return Conversion::Failed;
        }
        return Conversion::Converted;
    }
    return Conversion::NotADate;
}

std::optional<DateInput> DateInputFromPython(PyObject* object) {
    if (PyUnicode_Check(object)) {
        Py_ssize_t size = 0;
        const char* text = PyUnicode_AsUTF8AndSize(object, &size);
        if (text == nullptr) {
            PyErr_Clear();
            return std::nullopt;
        }
        return DateInput(std::string(text, static_cast<std::size_t>(size)));
    }
    if (IsDateTimeDate(object))
        return DateInput(DayMonthYear{PyDateTime_GET_DAY(object), PyDateTime_GET_MONTH(object),
                                      PyDateTime_GET_YEAR(object)});
    if (IsDatetime64(object)) {
        // Its text is ISO 8601, "2024-01-17" or "2024-01-17T10:30": the day is what counts.
        PyObject* text = PyObject_Str(object);
        if (text == nullptr) {
            PyErr_Clear();
            return std::nullopt;
        }
        const char* characters = PyUnicode_AsUTF8(text);
        std::optional<DateInput> input;
        if (characters != nullptr) input = DateInput(std::string(characters).substr(0, std::string(characters).find('T')));
        Py_DECREF(text);
        PyErr_Clear();
        return input;
    }
    return std::nullopt;
}

}  // namespace zep::python
