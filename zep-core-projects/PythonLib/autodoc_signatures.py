"""The signatures SWIG writes at the top of each proxy docstring (autodoc level 1), one line per
overload: `Name(Type1 name1, Type2 name2=default) -> ResultType`, C++ types as SWIG spells them."""
import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Parameter:
    name: str
    cpp_type: str
    default: str | None


@dataclass(frozen=True)
class Signature:
    parameters: tuple[Parameter, ...]
    cpp_result: str | None  # None: the call returns nothing


_BRACKETS = {"<": 1, "(": 1, ">": -1, ")": -1}


def _split_top_level(text, separator):
    """text split at each separator outside template brackets, parentheses and quotes."""
    parts, depth, quoted, start = [], 0, False, 0
    for position, character in enumerate(text):
        if character == '"':
            quoted = not quoted
        elif not quoted:
            depth += _BRACKETS.get(character, 0)
            if character == separator and depth == 0:
                parts.append(text[start:position])
                start = position + 1
    parts.append(text[start:])
    return parts


def _parameter(text):
    declaration, *default = _split_top_level(text, "=")
    cpp_type, name = re.fullmatch(r"(.*?)\s*(\w+)", declaration.strip()).groups()
    return Parameter(name, cpp_type, "=".join(default) if default else None)


def signatures(name, docstring):
    """The autodoc signatures of the proxy function `name`; empty for a pure-Python function,
    whose docstring opens with prose."""
    line_pattern = re.compile(rf"{re.escape(name)}\((.*)\)(?: -> (.+))?")
    found = []
    for line in (docstring or "").strip().splitlines():
        match = line_pattern.fullmatch(line.strip())
        if not match:
            break
        arguments, cpp_result = match.groups()
        parameters = tuple(_parameter(part) for part in _split_top_level(arguments, ",") if part.strip())
        found.append(Signature(parameters, cpp_result))
    return found
