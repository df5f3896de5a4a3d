"""The type stubs zep/__init__.pyi: every public name declared, the examples and the README's
first example clean under mypy --strict, and misuses the library refuses refused by mypy too."""
import ast
import os
import pathlib
import site
import subprocess
import sys

import pytest

import zep

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
PACKAGE = pathlib.Path(zep.__file__).parent
STUB = PACKAGE / "__init__.pyi"
EXAMPLES = sorted((REPOSITORY / "examples").glob("*.py"))


@pytest.fixture(scope="module")
def mypy_cache(tmp_path_factory):
    return tmp_path_factory.mktemp("mypy-cache")


def run_mypy(source, cache):
    """mypy --strict on one file, zep found where this test imported it from: installed packages
    mypy finds by itself (and refuses on its search path), a build tree it is told of."""
    environment = dict(os.environ)
    if str(PACKAGE.parent) not in site.getsitepackages():
        environment["MYPYPATH"] = str(PACKAGE.parent)
    return subprocess.run([sys.executable, "-m", "mypy", "--strict", "--cache-dir", str(cache), str(source)],
                          capture_output=True, text=True, env=environment, cwd=source.parent)


def declared_names(stub_text):
    names = set()
    for node in ast.parse(stub_text).body:
        if isinstance(node, (ast.ClassDef, ast.FunctionDef)):
            names.add(node.name)
        elif isinstance(node, ast.AnnAssign):
            names.add(node.target.id)
        elif isinstance(node, ast.Assign):
            names.update(target.id for target in node.targets)
    return names


def test_stub_declares_every_public_name():
    missing = sorted(set(zep.__all__) - declared_names(STUB.read_text()))
    assert not missing, f"not in {STUB}: {missing}"


@pytest.mark.parametrize("example", EXAMPLES, ids=[path.name for path in EXAMPLES])
def test_examples_pass_mypy_strict(example, mypy_cache):
    outcome = run_mypy(example, mypy_cache)
    assert outcome.returncode == 0, outcome.stdout + outcome.stderr


def test_readme_example_passes_mypy_strict(tmp_path, mypy_cache):
    snippet = tmp_path / "readme_snippet.py"
    snippet.write_text(subprocess.run([sys.executable, str(REPOSITORY / "scripts" / "readme_snippet.py")],
                                      check=True, capture_output=True, text=True).stdout)
    outcome = run_mypy(snippet, mypy_cache)
    assert outcome.returncode == 0, outcome.stdout + outcome.stderr


# Each call fails at run time with a TypeError; the stub must let mypy see it first.
MISUSES = {
    "a year is a number, not a text": 'zep.Date("2024-01-31").Year() + "1"',
    "a date list is a list, not one date text":
        'zep.YieldCurve.FromZeroRates("2024-01-15", "2025-01-15", [0.03], zep.Continuous)',
    "an overloaded call takes no keywords":
        'zep.Calendar().Adjust(date="2025-12-25", rule="following", centres="LON")',
    "a scalar curve rate is no date": 'zep.MVanillaOption(1, 0, 1.0, 1.1, 1.08, 0.035, "2024-07-15", '
                                      '"2024-07-17", "2024-07-17", 0.035, 0.02, 0.09)',
}


@pytest.mark.parametrize("call", MISUSES.values(), ids=MISUSES.keys())
def test_mypy_refuses_what_the_library_refuses(call, tmp_path, mypy_cache):
    with pytest.raises(TypeError):
        eval(call, {"zep": zep})
    source = tmp_path / "misuse.py"
    source.write_text(f"import zep\n\n{call}\n")
    outcome = run_mypy(source, mypy_cache)
    assert outcome.returncode == 1 and "error:" in outcome.stdout, f"{call}\n{outcome.stdout}"
