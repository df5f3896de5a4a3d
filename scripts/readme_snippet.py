"""Prints the first Python block of README.md, the example a new user runs first."""
import pathlib
import re

readme = pathlib.Path(__file__).resolve().parent.parent / "README.md"
print(re.search(r"```python\n(.*?)```", readme.read_text(), re.S).group(1), end="")
