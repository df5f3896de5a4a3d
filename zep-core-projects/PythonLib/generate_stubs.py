"""Writes zep/__init__.pyi, the type stubs of the package, from the freshly built module.

    python generate_stubs.py <directory holding the package zep>

Every name of zep.__all__ gets its declaration, in the order the module defines them. SWIG-made
functions are typed from the signatures atop their docstrings through the table of
stub_types.py; the pure-Python additions of the interface files from inspect.signature. C++
types the table does not know become Any and are listed on standard output, so the table can
grow with the interface.
"""
import ast
import inspect
import pathlib
import sys
import types

import autodoc_signatures
import stub_types

HEADER = f'''\
# Type stubs of zep, written at build time by generate_stubs.py from the built module.
import datetime
from collections.abc import Sequence
from typing import Any, ClassVar, Never, TypeAlias, overload

import numpy
import numpy.typing

# Dates are accepted as zep.Date, as text or as datetime.date; day counters as zep.DayCounter,
# as a convention code or as a convention name; vectors of numbers as sequences or NumPy arrays.
{stub_types.DATE_LIKE}: TypeAlias = Date | str | datetime.date
# Lists of dates are lists or tuples (a text, a sequence itself, is one date); a list of one
# kind of date is spelled out because list[str] is no list[Date | str | datetime.date].
{stub_types.DATE_LIST}: TypeAlias = (list[str] | list[Date] | list[datetime.date]
              | list[{stub_types.DATE_LIKE}] | tuple[{stub_types.DATE_LIKE}, ...])
{stub_types.DAY_COUNTER_LIKE}: TypeAlias = DayCounter | int | str
{stub_types.FLOATS}: TypeAlias = Sequence[float] | numpy.typing.NDArray[numpy.float64]
'''

# What Python's protocols fix for the pure-Python dunder methods, which carry no annotations.
DUNDER_RESULTS = {"__repr__": "str", "__hash__": "int", "__eq__": "bool", "__ne__": "bool",
                  "__lt__": "bool", "__le__": "bool", "__gt__": "bool", "__ge__": "bool"}
# object.__eq__ takes any object; a narrower parameter would break substitutability.
EQUALITY_METHODS = ("__eq__", "__ne__")
VALUE_TYPES = (bool, int, float, str)
VARIADIC_PREFIXES = {inspect.Parameter.VAR_POSITIONAL: "*", inspect.Parameter.VAR_KEYWORD: "**"}
# SWIG's iterator over its wrapped containers: Python code only iterates it. Its C++ iterator
# arithmetic (it + n, it - other) has no consistent Python typing and stays out of the stub.
SWIG_ITERATOR = "SwigPyIterator"
SWIG_ITERATOR_MEMBERS = ("__iter__", "__next__")


class StubWriter:
    def __init__(self, module):
        self.module = module
        self.exported = [name for name in vars(module) if name in module.__all__]
        self.classes = {getattr(module, name).__name__ for name in self.exported
                        if isinstance(getattr(module, name), type)}
        self.unmapped = set()

    def python_type(self, cpp_type, as_result):
        return stub_types.python_type(cpp_type, self.classes, as_result, self.unmapped)

    def stub(self):
        # The package's own version comes first; everything else is the native module's.
        constants, functions, classes, aliases = ["__version__: str"], [], [], []
        for name in self.exported:
            value = getattr(self.module, name)
            if getattr(value, "__name__", name) != name:
                aliases.append(f"{name} = {value.__name__}")
            elif isinstance(value, type):
                classes += ["", ""] + self.class_lines(value)
            elif isinstance(value, types.FunctionType):
                functions += self.function_lines(name, value, "", kind="function")
            elif name == "cvar":
                constants.append("cvar: _GlobalVariables")
                classes += ["", ""] + self.global_variables_lines(value)
            else:
                constants.append(f"{name}: {type(value).__name__}")
        return "\n".join([HEADER, *constants, "", *functions, *classes, "", *aliases, ""])

    def global_variables_lines(self, cvar):
        # SWIG's cvar lists the native module's global variables in its text: (name1, name2).
        lines = ["class _GlobalVariables:"]
        for name in str(cvar).strip("()").split(", "):
            lines.append(f"    {name}: {type(getattr(cvar, name)).__name__}")
        return lines

    def class_lines(self, cls):
        bases = [base.__name__ for base in cls.__bases__ if base.__name__ in self.classes]
        lines = [f"class {cls.__name__}{'(' + ', '.join(bases) + ')' if bases else ''}:"]
        for name, member in vars(cls).items():
            lines += self.member_lines(cls, name, member)
        return lines

    def member_lines(self, cls, name, member):
        is_dunder = name.startswith("__") and name.endswith("__")
        if name.startswith("_") and not is_dunder:
            return []
        if cls.__name__ == SWIG_ITERATOR and name not in SWIG_ITERATOR_MEMBERS:
            return []
        if isinstance(member, staticmethod):
            return self.function_lines(name, member.__func__, "    ", kind="static")
        if isinstance(member, types.FunctionType):
            return self.function_lines(name, member, "    ", kind="method")
        if isinstance(member, property):
            return [f"    {name}: {self.property_type(name, member)}"]
        if member is None and is_dunder:  # __hash__ = None: instances are unhashable
            return [f"    {name}: ClassVar[None]  # type: ignore[assignment]"]
        if isinstance(member, VALUE_TYPES) and not is_dunder:
            return [f"    {name}: ClassVar[{type(member).__name__}]"]
        return []

    def property_type(self, name, prop):
        found = autodoc_signatures.signatures(getattr(prop.fget, "__name__", name), prop.fget.__doc__)
        if not found or found[0].cpp_result is None:
            return "Any"
        return self.python_type(found[0].cpp_result, as_result=True)

    def function_lines(self, name, function, indent, kind):
        found = autodoc_signatures.signatures(name, function.__doc__)
        if not found and name == "__init__":
            return []  # SWIG's refusal to construct a class that has no constructor
        # @overload goes outermost, as mypy asks.
        decorators = ["@overload"] if len(found) > 1 else []
        if kind == "static":
            decorators.append("@staticmethod")
        if not found:
            return [indent + line for line in decorators + [self.python_def(name, function, kind)]]
        keywords = self.accepts_keywords(function)
        lines = []
        for signature in found:
            lines += decorators + [self.autodoc_def(name, signature, kind, keywords)]
        return [indent + line for line in lines]

    @staticmethod
    def accepts_keywords(function):
        # An overloaded call dispatches on *args alone; a single signature takes keywords.
        kinds = {parameter.kind for parameter in inspect.signature(function).parameters.values()}
        return inspect.Parameter.VAR_KEYWORD in kinds or inspect.Parameter.VAR_POSITIONAL not in kinds

    def autodoc_def(self, name, signature, kind, keywords):
        parameters = list(signature.parameters)
        if kind == "method" and parameters and parameters[0].name == "self":
            parameters.pop(0)
        rendered = ["self"] if kind == "method" else []
        for parameter in parameters:
            annotation = ("object" if name in EQUALITY_METHODS
                          else self.python_type(parameter.cpp_type, as_result=False))
            rendered.append(f"{parameter.name}: {annotation}{self.default_text(parameter.default)}")
        if not keywords and parameters:
            rendered.append("/")
        if name == "__init__" or signature.cpp_result is None:
            result = "None"
        else:
            result = self.python_type(signature.cpp_result, as_result=True)
        return f"def {name}({', '.join(rendered)}) -> {result}: ..."

    def python_def(self, name, function, kind):
        rendered = []
        for index, parameter in enumerate(inspect.signature(function).parameters.values()):
            if index == 0 and kind == "method":
                rendered.append(parameter.name)
                continue
            annotation = self.annotation_text(name, parameter.annotation, default="Any")
            if name in EQUALITY_METHODS:
                annotation = "object"
            prefix = VARIADIC_PREFIXES.get(parameter.kind, "")
            has_default = parameter.default is not inspect.Parameter.empty
            default = self.default_text(repr(parameter.default)) if has_default else ""
            rendered.append(f"{prefix}{parameter.name}: {annotation}{default}")
        returned = inspect.signature(function).return_annotation
        result = self.annotation_text(name, returned, default=DUNDER_RESULTS.get(name, "Any"))
        return f"def {name}({', '.join(rendered)}) -> {result}: ..."

    @staticmethod
    def annotation_text(name, annotation, default):
        if annotation is inspect.Parameter.empty:
            return default
        return annotation if isinstance(annotation, str) else inspect.formatannotation(annotation)

    @staticmethod
    def default_text(default):
        """A default the stub can show as it is (a number, a text, True, None), else `...`."""
        if default is None:
            return ""
        try:
            value = ast.literal_eval(default)
        except (ValueError, SyntaxError):
            return " = ..."
        return f" = {default}" if value is None or isinstance(value, VALUE_TYPES) else " = ..."


def main(package_parent):
    sys.path.insert(0, package_parent)
    import zep

    writer = StubWriter(zep)
    stub_path = pathlib.Path(zep.__file__).with_name("__init__.pyi")
    stub_path.write_text(writer.stub())
    for cpp_type in sorted(writer.unmapped):
        print(f"generate_stubs.py: no Python type for the C++ type '{cpp_type}', typed Any")


if __name__ == "__main__":
    main(sys.argv[1])
