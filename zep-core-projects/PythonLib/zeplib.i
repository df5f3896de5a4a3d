// The zep module: one interface file per subsystem, included here in dependency order.
%module(package="zep") zeplib

// A type table of our own. Modules built by the same SWIG version share one table by default, so
// another SWIG-built package in the process (QuantLib's, for one) would merge its types with ours
// wherever both name the same C++ type (std::vector<double>, the iterator, ...): each module then
// overwrites the other's Python class records, which leak at exit, and hands out objects the
// other's code was not compiled against.
%begin %{
#define SWIG_TYPE_TABLE zep
%}

%{
#include "ExceptionTranslation.hpp"
%}

// Keyword arguments under the names the signatures show, wherever a call has one signature;
// docstrings open with every signature, each with its argument names and types.
%feature("kwargs");
%feature("autodoc", "1");
// Signatures name the Python types a caller passes where the C++ spelling would only puzzle.
%typemap(doc, type="str") const std::string&, std::string, std::string_view "$1_name: str";
%typemap(doc, type="int") std::int32_t, std::int64_t, std::uint32_t, std::uint64_t, std::size_t "$1_name: int";
%typemap(doc, type="YieldCurve") boost::shared_ptr<zep::YieldCurve> "$1_name: YieldCurve";
%typemap(doc, type="DateVector") const std::vector<zep::Date>& "$1_name: DateVector";

// A method called on None (zep.Date.DayOfMonth(None)) gets a null object: refuse it before use.
%typemap(check) SWIGTYPE* self {
    if (!$1) {
        SWIG_exception_fail(SWIG_NullReferenceError, "invalid null reference in method '" "$symname" "', argument " "$argnum" " of type '" "$1_type" "'");
    }
}

// <Class>_swiginit(proxy, object) attaches a new wrapped object to its proxy. The runtime's own
// version drops a reference to NULL when the object is no wrapped pointer; this one refuses it.
%header %{
static PyObject* ZepInitShadowInstance(PyObject* args) {
    if (PyTuple_Check(args) && PyTuple_GET_SIZE(args) == 2 && !SwigPyObject_Check(PyTuple_GET_ITEM(args, 1))) {
        PyErr_SetString(PyExc_TypeError, "swiginit: the second argument must be a wrapped object");
        return NULL;
    }
    return SWIG_Python_InitShadowInstance(args);
}
#define SWIG_Python_InitShadowInstance ZepInitShadowInstance
%}

%include <stdint.i>
%include <std_string.i>
// Members that are undefined behaviour on an empty vector, and the allocator, stay in C++:
// Python users have v[0], v[-1] and v.pop(), which check.
%ignore std::vector::pop_back;
%ignore std::vector::front;
%ignore std::vector::back;
%ignore std::vector::get_allocator;
%include <std_vector.i>
%ignore std::map::get_allocator;
%include <std_map.i>
%include <boost_shared_ptr.i>

// Every library call runs inside this guard; the translation keeps the library's catch order.
%exception {
    try {
        $action
    } catch (...) {
        zep::python::SetPythonErrorFromActiveException();
        SWIG_fail;
    }
}

%include "zepFrame.i"
%include "zepTime.i"
%include "zepReport.i"
%include "zepScript.i"
%include "zepCalendar.i"
%include "zepSchedule.i"
%include "zepInterpolation.i"
%include "zebCurve.i"
%include "zepFXVol.i"
%include "zepVanilla.i"
%include "zepBarrier.i"
%include "zepPde.i"
%include "zepHeston.i"
%include "zepAmerican.i"
%include "zepAsian.i"
%include "zepXScript.i"
%include "zepProducts.i"
// Bootstrapping takes lists of texts, whose conversion the scripted products declare.
%include "zepBootstrap.i"
%include "zepCredit.i"
%include "zepYieldCurve2.i"
// Rate and FX instruments sit on the curves above.
%include "zepRates.i"
%include "zepRateDerivatives.i"
%include "zepInflation.i"
%include "zepShortRate.i"
// Risk metrics read the instruments above.
%include "zepRisk.i"
%include "zepScenario.i"
