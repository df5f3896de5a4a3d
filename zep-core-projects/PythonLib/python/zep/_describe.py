"""repr() and str() of every zep object answer, whatever state the object is in: one whose
construction failed, or whose library call fails, still says what it is. Debuggers, loggers and
test reports call repr on anything in reach; none of them may be the second failure."""
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


def install(classes):
    for cls in classes:
        for name in ("__repr__", "__str__"):
            if name in vars(cls):
                setattr(cls, name, _never_raising(cls, vars(cls)[name]))
