import os
import sys

import pytest

# Developers may point the tests at a build tree instead of the installed module:
# ZEP_PYTHONPATH=build/dev/python pytest tests/python
_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))

# scripts/test_sanitized.sh runs the tests again on the sanitized tree, which builds no wheel.
SANITIZED = bool(os.environ.get("ZEP_SANITIZED"))
NOT_FOR_THE_SANITIZED_TREE = {
    "test_wheel.py": "inspects the wheel of the normal tree; the sanitized tree builds none",
}


def pytest_sessionstart(session):
    # A sanitized run that imported the installed package would test nothing under the sanitizers.
    if SANITIZED:
        import zep
        if not (_build and zep.__file__.startswith(os.path.abspath(_build))):
            raise pytest.UsageError(f"ZEP_SANITIZED is set but zep comes from {zep.__file__}")


def pytest_collection_modifyitems(items):
    if not SANITIZED:
        return
    for item in items:
        reason = NOT_FOR_THE_SANITIZED_TREE.get(item.path.name)
        if reason:
            item.add_marker(pytest.mark.skip(reason=reason))
