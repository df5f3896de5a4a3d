// Holiday calendars, business-day rules and day count conventions. The rule codes (Following,
// ModifiedFollowing, ...) and convention codes (Act360, ActActISDA, ...) are module constants.
%{
#include "lum-time/Calendar.hpp"
#include "lum-time/DayCounter.hpp"
%}

%include <std_string_view.i>

// A list or tuple of dates: each a zep.Date, a date text or a datetime.date.
%typemap(in) const std::vector<zep::Date>& (std::vector<zep::Date> converted) {
    if (!PyList_Check($input) && !PyTuple_Check($input)) {
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""'");
    }
    const auto outcome = zep::python::DatesFromPython($input, converted);
    if (outcome == zep::python::Conversion::Failed) SWIG_fail;
    if (outcome == zep::python::Conversion::NotADate) {
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum"" of type '" "$type""': every element must be a date");
    }
    $1 = &converted;
}
%typemap(typecheck, precedence=SWIG_TYPECHECK_POINTER) const std::vector<zep::Date>& {
    $1 = PyList_Check($input) || PyTuple_Check($input);
}

%typemap(out) std::vector<zep::Date> {
    const std::vector<zep::Date>& dates = $1;
    $result = PyList_New(static_cast<Py_ssize_t>(dates.size()));
    if (!$result) SWIG_fail;
    for (std::size_t i = 0; i < dates.size(); ++i) {
        PyList_SET_ITEM($result, static_cast<Py_ssize_t>(i),
                        SWIG_NewPointerObj(new zep::Date(dates[i]), $descriptor(zep::Date *), SWIG_POINTER_OWN));
    }
}

%typemap(out) std::vector<std::string> {
    const std::vector<std::string>& texts = $1;
    $result = PyList_New(static_cast<Py_ssize_t>(texts.size()));
    if (!$result) SWIG_fail;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        PyList_SET_ITEM($result, static_cast<Py_ssize_t>(i),
                        PyUnicode_FromStringAndSize(texts[i].data(), static_cast<Py_ssize_t>(texts[i].size())));
    }
}

%typemap(out) std::pair<zep::Date, zep::Date> {
    $result = Py_BuildValue("(NN)",
        SWIG_NewPointerObj(new zep::Date($1.first), $descriptor(zep::Date *), SWIG_POINTER_OWN),
        SWIG_NewPointerObj(new zep::Date($1.second), $descriptor(zep::Date *), SWIG_POINTER_OWN));
}

namespace zep {
%ignore DayCounter::YearFraction(const std::vector<Date>&, const std::vector<Date>&, const Date&, Frequency) const;
%ignore DayCounter::YearFraction(const std::vector<Date>&, const std::vector<Date>&, const Date&) const;
%ignore DayCounter::YearFraction(const std::vector<Date>&, const std::vector<Date>&) const;
%ignore detail::HolidayIndex;
}

%feature("docstring") zep::DayCounter
"A day count convention: DayCounter() is ActActISDA, DayCounter(code) takes a convention
code (zep.Act360, ...), DayCounter(text) any spelling stringToConvention accepts; DayCounter(code or text, calendar)
makes Act252 count the business days of that zep.Calendar (otherwise the shared calendar loaded
from the holiday file at first use). YearFraction(start, end[, nextCouponDate, frequency]) also takes two lists or tuples of dates
and returns a list.";

// ---- Day counters on a chosen calendar -------------------------------------------------------
// DayCounter(code, calendar) and DayCounter(text, calendar): Act252 counts business days on the
// calendar given, shared with the day counter (and its copies), so calendars travel by shared
// pointer. The calendar behind DayCounter(code) stays in C++: it is read-only there, and a
// Python handle on it could load holiday files under every day counter using it. (SWIG needs
// both declarations before the headers, hence this block's place.)
%shared_ptr(zep::Calendar)
%ignore zep::Calendar::Shared;
// ---- end of day counters on a chosen calendar ----------------------------------------------

%feature("docstring") zep::Calendar
"Holiday calendars of financial centres. Calendar() loads the holiday file: ZEP_HOLIDAYS_PATH
(the file, or a directory holding Holidays.txt) when set, else Holidays.txt in ../control,
../data, ../../control, ../../data, ../../../config of Calendar.SearchBase(), else the file
shipped with the package. A centre text names one centre ('LON') or several joined by '+',
',', ';' or blanks ('LON+NYC'); '' means weekends only.";

// A saved calendar's holidays: {centre: [serial numbers]}.
%typemap(in) const zep::HolidayDates& (zep::HolidayDates converted) {
    if (!PyDict_Check($input)) {
        SWIG_exception_fail(SWIG_TypeError, "in method '" "$symname" "', argument " "$argnum" " of type 'dict'");
    }
    PyObject* centre = nullptr;
    PyObject* serials = nullptr;
    Py_ssize_t position = 0;
    while (PyDict_Next($input, &position, &centre, &serials)) {
        const char* code = PyUnicode_Check(centre) ? PyUnicode_AsUTF8(centre) : nullptr;
        PyObject* items = code ? PySequence_Fast(serials, "holidays must be a sequence of serial numbers") : nullptr;
        if (items == nullptr) {
            if (!PyErr_Occurred()) PyErr_SetString(PyExc_TypeError, "every centre must be a str");
            SWIG_fail;
        }
        std::vector<zep::Date>& dates = converted[code];
        bool read = true;
        for (Py_ssize_t i = 0; read && i < PySequence_Fast_GET_SIZE(items); ++i) {
            const long serial = PyLong_AsLong(PySequence_Fast_GET_ITEM(items, i));
            read = !(serial == -1 && PyErr_Occurred());
            try {
                if (read) dates.emplace_back(static_cast<std::int32_t>(serial));
            } catch (...) {
                zep::python::SetPythonErrorFromActiveException();
                read = false;
            }
        }
        Py_DECREF(items);
        if (!read) SWIG_fail;
    }
    $1 = &converted;
}
%ignore zep::Calendar::FromHolidays;

%include "lum-time/DayCounter.hpp"
%include "lum-time/Calendar.hpp"

%extend zep::DayCounter {
    PyObject* YearFraction(const std::vector<zep::Date>& starts, const std::vector<zep::Date>& ends,
                           const zep::Date& nextCouponDate = zep::Date(),
                           zep::Frequency frequency = zep::NoFrequency) const {
        const std::vector<double> fractions = $self->YearFraction(starts, ends, nextCouponDate, frequency);
        PyObject* list = PyList_New(static_cast<Py_ssize_t>(fractions.size()));
        for (std::size_t i = 0; list && i < fractions.size(); ++i)
            PyList_SET_ITEM(list, static_cast<Py_ssize_t>(i), PyFloat_FromDouble(fractions[i]));
        return list;
    }
    std::string __str__() const { return $self->ToString(); }
    %pythoncode %{
        def __repr__(self):
            try:
                return "zep.DayCounter('%s')" % self.ToString()
            except RuntimeError:
                return "zep.DayCounter(%d)" % self.Convention()

        def __eq__(self, other):
            # Act252 counters are equal only on equal holidays (both on the shared calendar, or
            # on calendars holding the same holidays).
            if not isinstance(other, DayCounter):
                return NotImplemented
            if self.Convention() != other.Convention():
                return False
            if self.Convention() != Act252:
                return True
            mine, theirs = self.GetCalendar(), other.GetCalendar()
            return mine is theirs is None or (mine is not None and theirs is not None and mine == theirs)

        def __hash__(self):
            return hash(self.Convention())
    %}
}

%extend zep::Calendar {
    static boost::shared_ptr<zep::Calendar> _FromHolidays(const zep::HolidayDates& holidays) {
        return boost::shared_ptr<zep::Calendar>(zep::Calendar::FromHolidays(holidays));
    }
    zep::Date Adjust(const zep::Date& date, const std::string& rule, std::string_view centres) const {
        return $self->Adjust(date, zep::stringToDateAdjusterRule(rule), centres);
    }
    std::pair<zep::Date, zep::Date> FXODeliveryExpiryDates(const zep::Date& referenceDate,
                                                           const zep::Date& spotDate,
                                                           const std::string& tenor,
                                                           std::string_view centres) const {
        return $self->FXODeliveryExpiryDates(referenceDate, spotDate, zep::Period(tenor), centres);
    }
    bool _SameHolidays(const zep::Calendar& other) const { return *$self == other; }
    %pythoncode %{
        def __repr__(self):
            return "zep.Calendar(centres=%r)" % (self.Centres(),)

        def __eq__(self, other):
            if not isinstance(other, Calendar):
                return NotImplemented
            return self._SameHolidays(other)

        __hash__ = None
    %}
}
