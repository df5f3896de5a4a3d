"""How zep objects describe themselves. repr() and str() answer whatever state the object is in:
one whose construction failed, or whose library call fails, still says what it is (debuggers,
loggers and test reports call repr on anything in reach; none of them may be the second
failure). help() of a class opens with every way to construct it."""
import functools


def _never_raising(cls, describe):
    @functools.wraps(describe)
    def safe(self):
        if self.__dict__.get("this") is None:
            return f"<zep.{cls.__name__}: not initialized>"
        try:
            return describe(self)
        except Exception:
            return f"<zep.{cls.__name__} object at {id(self):#x}>"
    return safe


def _constructor_forms(cls):
    # The constructor's docstring opens with one "__init__(Class self, ...) -> Class" line per form.
    forms = []
    for line in (cls.__init__.__doc__ or "").splitlines():
        line = line.strip()
        if line.startswith("__init__(") and ") ->" in line:
            arguments = line[len("__init__("):line.rindex(") ->")].split(", ", 1)
            forms.append(f"{cls.__name__}({arguments[1] if len(arguments) > 1 else ''})")
    return forms


def install(classes):
    for cls in classes:
        forms = _constructor_forms(cls)
        if forms:
            cls.__doc__ = "\n".join([(cls.__doc__ or "").rstrip(), "", "Constructors:",
                                     *("    " + form for form in forms)]).lstrip("\n")
        for name in ("__repr__", "__str__"):
            if name in vars(cls):
                setattr(cls, name, _never_raising(cls, vars(cls)[name]))
