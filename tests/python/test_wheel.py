"""The wheel a user installs: nothing in it may need a library that a bare Linux machine lacks."""
import pathlib
import re
import shutil
import subprocess
import zipfile

import pytest

# glibc (libmvec included) and the GNU C++ runtime: present wherever CPython itself runs.
RUNTIME = {"libc.so.6", "libm.so.6", "libmvec.so.1", "libpthread.so.0", "libdl.so.2",
           "ld-linux-x86-64.so.2", "libstdc++.so.6", "libgcc_s.so.1"}
WHEELHOUSE = pathlib.Path(__file__).resolve().parents[2] / "build" / "wheelhouse"


@pytest.fixture(scope="module")
def unpacked(tmp_path_factory):
    wheels = sorted(WHEELHOUSE.glob("zep-*.whl"))
    if not wheels or shutil.which("readelf") is None:
        pytest.skip("no wheel built (scripts/check_wheel.sh builds one) or no readelf")
    target = tmp_path_factory.mktemp("wheel")
    with zipfile.ZipFile(wheels[-1]) as wheel:
        wheel.extractall(target)
    return target / "zep"


def dynamic_section(library):
    return subprocess.run(["readelf", "-d", str(library)], check=True, capture_output=True, text=True).stdout


def test_wheel_holds_the_whole_package(unpacked):
    for name in ["__init__.py", "__init__.pyi", "zeplib.py", "report_html.py", "py.typed", "data/Holidays.txt"]:
        assert (unpacked / name).is_file(), name
    assert list(unpacked.glob("_zep*.so"))


def test_native_libraries_need_only_the_c_and_cxx_runtimes_or_each_other(unpacked):
    shipped = {path.name for path in unpacked.glob("*.so*")}
    for library in unpacked.glob("*.so*"):
        section = dynamic_section(library)
        needed = set(re.findall(r"\(NEEDED\).*\[(.+)\]", section))
        assert needed - RUNTIME <= shipped, (library.name, needed - RUNTIME - shipped)
        if needed & shipped:
            assert "[$ORIGIN]" in section, f"{library.name} cannot find the libraries beside it"


def test_extension_exports_only_its_module_entry_point(unpacked):
    (extension,) = unpacked.glob("_zep*.so")
    symbols = subprocess.run(["nm", "-D", "--defined-only", str(extension)], check=True,
                             capture_output=True, text=True).stdout
    functions = re.findall(r" T (\S+)", symbols)
    assert functions == ["PyInit__zep"]
