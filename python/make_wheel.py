"""What pip calls to make a wheel of the package: its files, zipped beside what pyproject.toml says.

Installing needs the shared library on the system and numpy, and neither a compiler nor a network.
"""

from __future__ import annotations

import base64
import hashlib
import pathlib
import re
import sys
import zipfile
from typing import Any, Optional

_HERE = pathlib.Path(__file__).resolve().parent
_WHEEL = "Wheel-Version: 1.0\nGenerator: make_wheel\nRoot-Is-Purelib: true\nTag: py3-none-any\n"


def _said(key: str) -> str:
    """A text of pyproject.toml; Python reads that format itself only from 3.11 on."""
    text = (_HERE / "pyproject.toml").read_text()
    found = re.search(rf'^{key} = \[?"(.*?)"\]?$', text, re.MULTILINE)
    assert found, key
    return found[1]


def metadata() -> str:
    return (
        f"Metadata-Version: 2.1\nName: {_said('name')}\nVersion: {_said('version')}\n"
        f"Summary: {_said('description')}\nLicense: MIT\n"
        f"Requires-Python: {_said('requires-python')}\nRequires-Dist: {_said('dependencies')}\n"
    )


def _record(files: dict[str, bytes]) -> str:
    lines = []
    for name, content in files.items():
        digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
        lines.append(f"{name},sha256={digest},{len(content)}\n")
    return "".join(lines)


def build_wheel(
    wheel_directory: str,
    config_settings: Optional[dict[str, Any]] = None,
    metadata_directory: Optional[str] = None,
) -> str:
    name = f"{_said('name')}-{_said('version')}"
    files = {
        f"marovia/{path.name}": path.read_bytes()
        for path in sorted((_HERE / "marovia").iterdir())
        if path.suffix == ".py" or path.name == "py.typed"
    }
    files[f"{name}.dist-info/METADATA"] = metadata().encode()
    files[f"{name}.dist-info/WHEEL"] = _WHEEL.encode()
    record = f"{name}.dist-info/RECORD"
    files[record] = f"{_record(files)}{record},,\n".encode()
    wheel = f"{name}-py3-none-any.whl"
    with zipfile.ZipFile(pathlib.Path(wheel_directory) / wheel, "w") as archive:
        for file, content in files.items():
            # Neither today's date nor the umask: the same files make the same wheel.
            entry = zipfile.ZipInfo(file, (2020, 1, 1, 0, 0, 0))
            entry.external_attr = 0o644 << 16
            archive.writestr(entry, content, zipfile.ZIP_DEFLATED)
    return wheel


if __name__ == "__main__":
    print(build_wheel(sys.argv[1]))
