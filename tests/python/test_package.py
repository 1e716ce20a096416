"""The package as pip gets it."""

import subprocess
import sys

import marovia
from conftest import ROOT


def test_the_wheel_is_whole_and_of_the_librarys_version(tmp_path):
    make = [sys.executable, str(ROOT / "python" / "make_wheel.py"), str(tmp_path)]
    run = subprocess.run(make, check=True, stdout=subprocess.PIPE)
    wheel = tmp_path / run.stdout.decode().strip()
    assert wheel.name == f"marovia-{marovia.__version__}-py3-none-any.whl"
    use = (
        f"import sys; sys.path.insert(0, {str(wheel)!r});"
        "import marovia.pillow, importlib.metadata as m;"
        "assert marovia.__file__.startswith(sys.path[0]), marovia.__file__;"
        "assert m.version('marovia') == marovia.__version__;"
        "assert {f.name for f in m.files('marovia')} > {'py.typed', 'RECORD', 'METADATA'}"
    )
    subprocess.run([sys.executable, "-I", "-c", use], check=True)
