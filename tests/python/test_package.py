"""The installed package as a user meets it: its version, its entry point, its resources."""
import importlib.metadata
import os
import shutil
import subprocess
import sys

import pytest

import zep

PACKAGE = os.path.dirname(os.path.abspath(zep.__file__))


def run_python(*args, path):
    environment = dict(os.environ, PYTHONPATH=path, ZEP_LOGLEVEL="off")
    return subprocess.run([sys.executable, *args], env=environment, capture_output=True, text=True, timeout=120)


def test_version_is_the_distribution_version():
    assert zep.__version__.count(".") == 2
    try:
        installed = importlib.metadata.distribution("zep")
    except importlib.metadata.PackageNotFoundError:
        pytest.skip("zep imported from a build tree")
    if os.path.abspath(installed.locate_file("zep/__init__.py")) != os.path.abspath(zep.__file__):
        pytest.skip("zep imported from a build tree")
    assert zep.__version__ == installed.version


def test_public_names_are_the_package_own():
    assert {"Date", "Period", "Calendar", "YieldCurve", "MVanillaOption", "report_to_html", "Act360"} <= set(zep.__all__)
    assert zep.Date.__module__ == "zep" and zep.MXScriptStructure.__qualname__ == "MXScriptStructure"
    assert not {"typing", "zeplib"} & set(zep.__all__)


def test_module_entry_point_names_version_and_pieces():
    run = run_python("-m", "zep", path=os.path.dirname(PACKAGE))
    assert run.returncode == 0, run.stderr
    assert run.stdout.splitlines()[0] == f"zep {zep.__version__}"
    assert os.path.join("zep", "data", "Holidays.txt") in run.stdout


def test_package_without_its_holiday_file_fails_to_import_naming_it(tmp_path):
    shutil.copytree(PACKAGE, tmp_path / "zep", ignore=shutil.ignore_patterns("data", "__pycache__"))
    run = run_python("-c", "import zep", path=str(tmp_path))
    assert run.returncode != 0
    assert "ImportError" in run.stderr and os.path.join("zep", "data", "Holidays.txt") in run.stderr
