# SPDX-License-Identifier: Apache-2.0
"""Builds the package in the project's tree: `pip install ./python`."""
import pathlib
import re
import subprocess
import sys

from setuptools import setup
from setuptools.command.build_py import build_py

HERE = pathlib.Path(__file__).resolve().parent
VERSION = re.search(r"project\(zrschema VERSION ([\d.]+)",
                    (HERE.parent / "CMakeLists.txt").read_text(encoding="utf-8")).group(1)


class BuildWithBindings(build_py):
    """Adds the modules that are made of the public headers."""

    def run(self):
        super().run()
        package = pathlib.Path(self.build_lib) / "zrschema"
        subprocess.run([sys.executable, HERE / "make_bindings.py", package,
                        HERE.parent / "include", VERSION], check=True)


setup(version=VERSION, cmdclass={"build_py": BuildWithBindings})
