// Payoff scripts: a product of event dates and script texts, checked and evaluated by hand.
%{
#include "MScriptProduct.hpp"
%}

%typemap(in) const std::vector<std::string>& scriptTexts (std::vector<std::string> converted) {
    if ($input == Py_None || PyUnicode_Check($input) || !PySequence_Check($input)) {
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""'");
    }
    for (Py_ssize_t i = 0, n = PySequence_Size($input); i < n; ++i) {
        PyObject* item = PySequence_GetItem($input, i);
        Py_ssize_t size = 0;
        const char* text = PyUnicode_Check(item) ? PyUnicode_AsUTF8AndSize(item, &size) : nullptr;
        if (text != nullptr) converted.emplace_back(text, static_cast<std::size_t>(size));
        Py_DECREF(item);
        if (text == nullptr) {
            if (PyErr_Occurred()) SWIG_fail;
            SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""': every script must be a str");
        }
    }
    $1 = &converted;
}

%typemap(in) const std::vector<zep::ScenarioPoint>& scenario (std::vector<zep::ScenarioPoint> converted) {
    if ($input == Py_None || PyUnicode_Check($input) || !PySequence_Check($input)) {
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""'");
    }
    for (Py_ssize_t i = 0, n = PySequence_Size($input); i < n; ++i) {
        PyObject* item = PySequence_GetItem($input, i);
        double spot = 0.0, numeraire = 0.0;
        const bool isPair = item != nullptr && PyArg_ParseTuple(item, "dd", &spot, &numeraire);
        Py_XDECREF(item);
        if (!isPair) {
            PyErr_Clear();
            SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""': every point must be a (spot, numeraire) tuple of numbers");
        }
        converted.push_back(zep::ScenarioPoint{spot, numeraire});
    }
    $1 = &converted;
}

// Overload dispatch only asks for a sequence; the conversions above report bad items.
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) const std::vector<std::string>& scriptTexts, const std::vector<zep::ScenarioPoint>& scenario {
    $1 = PySequence_Check($input) && !PyUnicode_Check($input);
}

%typemap(out) std::vector<std::string> zep::python::MScriptProduct::VariableNames {
    const std::vector<std::string>& names = $1;
    $result = PyList_New(static_cast<Py_ssize_t>(names.size()));
    for (std::size_t i = 0; i < names.size(); ++i)
        PyList_SET_ITEM($result, static_cast<Py_ssize_t>(i), PyUnicode_FromStringAndSize(names[i].data(), names[i].size()));
}

%typemap(out) std::vector<zep::Date> zep::python::MScriptProduct::EventDates {
    const std::vector<zep::Date>& dates = $1;
    $result = PyList_New(static_cast<Py_ssize_t>(dates.size()));
    for (std::size_t i = 0; i < dates.size(); ++i)
        PyList_SET_ITEM($result, static_cast<Py_ssize_t>(i), SWIG_NewPointerObj(new zep::Date(dates[i]), $descriptor(zep::Date*), SWIG_POINTER_OWN));
}

%typemap(out) std::vector<std::pair<std::string, double>> zep::python::MScriptProduct::Evaluate {
    const std::vector<std::pair<std::string, double>>& values = $1;
    $result = PyDict_New();
    for (const auto& [name, value] : values) {
        PyObject* number = PyFloat_FromDouble(value);
        PyDict_SetItemString($result, name.c_str(), number);
        Py_DECREF(number);
    }
}

%feature("docstring") zep::python::MScriptProduct
"A product written in the payoff script language, to check scripts before pricing.

MScriptProduct(eventDates, scriptTexts): one script text per event date (zep.Date, date text or
datetime.date), dates strictly increasing. A script that fails to parse raises RuntimeError with
the language's message. VariableNames() lists the variables in index order, DebugText() prints
the prepared trees, Evaluate(scenario, smooth=False, eps=0.01) runs one scenario given as a list
of (spot, numeraire) pairs, one per event date, and returns {name: value}. With smooth=True,
comparisons without their own eps are smoothed over a band of width eps (default 0.01).
Also available as zep.ScriptProduct.";

%include "MScriptProduct.hpp"

%pythoncode %{
ScriptProduct = MScriptProduct
%}
