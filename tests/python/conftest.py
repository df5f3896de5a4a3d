import os
import sys

# Developers may point the tests at a build tree instead of the installed module:
# ZEP_PYTHONPATH=build/dev/python pytest tests/python
_build = os.environ.get("ZEP_PYTHONPATH")
if _build:
    sys.path.insert(0, os.path.abspath(_build))
