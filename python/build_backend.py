"""Builds the wheel and the source archive of the module for pip, with CMake and the standard library of Python alone."""

import base64
import hashlib
import os
import pathlib
import re
import subprocess
import sys
import sysconfig
import tarfile
import tempfile
import zipfile

SOURCE = pathlib.Path(__file__).resolve().parent.parent
NAME = "vorquill21"
IN_SOURCE_ARCHIVE = ("CMakeLists.txt", "LICENSE", "README.md", "CHANGELOG.md", "pyproject.toml", "cmake", "python", "vorquill21")


def version():
    project = (SOURCE / "CMakeLists.txt").read_text(encoding="utf-8")
    return re.search(r"project\(Vorquill21 VERSION ([0-9.]+)", project)[1]


def metadata():
    return f"""Metadata-Version: 2.1
Name: {NAME}
Version: {version()}
Summary: Utilities for calibration data, tables, logs and files
License: {(SOURCE / "LICENSE").read_text(encoding="utf-8").split(maxsplit=1)[0]}
Requires-Python: >=3.9
Requires-Dist: numpy
"""


def tag():
    python = f"cp{sys.version_info.major}{sys.version_info.minor}"
    return f"{python}-{python}-{re.sub('[-.]', '_', sysconfig.get_platform())}"


def install_module(staging):
    """Compiles the module in a folder that stays, so that the next time is short, and installs it into `staging`."""
    build = SOURCE / "build" / "pip"
    options = {"CMAKE_BUILD_TYPE": "Release", "Python3_EXECUTABLE": sys.executable, "VORQUILL21_PYTHON_FOLDER": ".",
               "VORQUILL21_BUILD_PYTHON": "ON", "VORQUILL21_BUILD_PYTHON_TESTS": "OFF", "VORQUILL21_BUILD_TESTS": "OFF",
               "VORQUILL21_BUILD_EXAMPLES": "OFF", "VORQUILL21_BUILD_TOOLS": "OFF"}
    defined = [f"-D{name}={value}" for name, value in options.items()]
    for command in (["-G", "Ninja", "-S", SOURCE, "-B", build, *defined],
                    ["--build", build, "--target", "vorquill21_python", "--parallel", str(os.cpu_count())],
                    ["--install", build, "--component", "python", "--prefix", staging, "--strip"]):
        subprocess.run(["cmake", *command], check=True)


def record_of(name, content):
    digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
    return f"{name},sha256={digest},{len(content)}\n"


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    information = f"{NAME}-{version()}.dist-info"
    contents = {f"{information}/METADATA": metadata().encode(),
                f"{information}/LICENSE": (SOURCE / "LICENSE").read_bytes(),
                f"{information}/WHEEL": f"Wheel-Version: 1.0\nGenerator: {NAME}\nRoot-Is-Purelib: false\nTag: {tag()}\n".encode()}
    with tempfile.TemporaryDirectory() as scratch:
        staging = pathlib.Path(scratch)
        install_module(staging)
        for path in sorted(staging.rglob("*")):
            if path.is_file():
                contents[path.relative_to(staging).as_posix()] = path.read_bytes()
    record = "".join(record_of(name, content) for name, content in contents.items())
    contents[f"{information}/RECORD"] = (record + f"{information}/RECORD,,\n").encode()
    wheel = f"{NAME}-{version()}-{tag()}.whl"
    with zipfile.ZipFile(pathlib.Path(wheel_directory) / wheel, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in contents.items():
            archive.writestr(name, content)
    return wheel


def build_sdist(sdist_directory, config_settings=None):
    root = f"{NAME}-{version()}"
    with tempfile.TemporaryDirectory() as scratch:
        information = pathlib.Path(scratch) / "PKG-INFO"
        information.write_text(metadata(), encoding="utf-8")
        with tarfile.open(pathlib.Path(sdist_directory) / f"{root}.tar.gz", "w:gz", format=tarfile.PAX_FORMAT) as archive:
            archive.add(information, f"{root}/PKG-INFO")
            for name in IN_SOURCE_ARCHIVE:
                archive.add(SOURCE / name, f"{root}/{name}",
                            filter=lambda entry: None if "__pycache__" in entry.name else entry)
    return f"{root}.tar.gz"
