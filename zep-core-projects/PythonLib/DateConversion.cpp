#include "DateConversion.hpp"

#include <datetime.h>

#include <optional>
#include <stdexcept>
#include <string>
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

// Its day as ISO text: str() gives "2024-01-17" or "2024-01-17T10:30", and the day is what counts.
std::optional<std::string> Datetime64Day(PyObject* object) {
    PyObject* text = PyObject_Str(object);
    const char* characters = text ? PyUnicode_AsUTF8(text) : nullptr;
    std::optional<std::string> day;
    if (characters != nullptr) {
        const std::string_view full(characters);
        day = std::string(full.substr(0, full.find('T')));
    }
    Py_XDECREF(text);
    PyErr_Clear();
    return day;
}
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
    if (IsDatetime64(object)) {
        const auto day = Datetime64Day(object);
        try {
            if (!day) throw std::invalid_argument("a datetime64 without a text form");
            date = zep::Date(std::string_view(*day));
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
        auto day = Datetime64Day(object);
        if (day) return DateInput(std::move(*day));
    }
    return std::nullopt;
}

}  // namespace zep::python
