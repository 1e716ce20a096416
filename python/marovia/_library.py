"""The C interface (marovia/marovia.h), found and declared."""

from __future__ import annotations

import ctypes
import os
from collections.abc import Callable, Sequence
from ctypes import POINTER, Structure, c_char, c_char_p, c_double, c_float, c_int32, c_int64
from ctypes import c_size_t, c_void_p
from typing import Any

from marovia import _errors

Fields = Sequence[tuple[str, Any]]

OK = 0
CANCELLED = 10


class Error(Structure):
    _fields_ = [("status", c_int32), ("message", c_char * 252)]


class Buffer(Structure):
    _fields_ = [("data", c_void_p), ("size", c_size_t)]


class Pass(Structure):
    _fields_ = [("number", c_int32), ("found", c_int32), ("bits", c_int64), ("threshold", c_double)]


LISTENER = ctypes.CFUNCTYPE(c_int32, c_void_p, POINTER(Pass))


class Sized(Structure):
    """A struct that may grow, and begins with its size."""

    _fields_: Fields = [("size", c_size_t)]

    def __init__(self, **fields: Any) -> None:
        super().__init__(size=ctypes.sizeof(self), **fields)


class Image(Sized):
    _fields_ = [("samples", c_void_p), ("rows", c_int32), ("cols", c_int32), ("stride", c_size_t)]


class Canvas(Image):
    """An image to be written, with the fields of one to be read."""


class Region(Structure):
    _fields_ = [(name, c_int32) for name in ("row1", "col1", "row2", "col2")]


class CompressOptions(Sized):
    _fields_ = [
        ("kind", c_int32),
        ("wavelet", c_int32),
        ("levels", c_int32),
        ("pad", c_int32),
        ("rate", c_double),
        ("bytes", c_int64),
        ("has_region", c_int32),
        ("share", c_float),
        ("region", Region),
        ("psnr", c_double),
        ("lossless", c_int32),
        ("reserved", c_int32),
        ("listener", LISTENER),
        ("context", c_void_p),
    ]


class DecompressOptions(Sized):
    _fields_ = [
        ("rate", c_double),
        ("max_pixels", c_int64),
        ("listener", LISTENER),
        ("context", c_void_p),
    ]


class TruncateOptions(Sized):
    _fields_ = [("rate", c_double), ("bytes", c_int64), ("max_pixels", c_int64)]


class Picture(Sized):
    _fields_ = [
        ("samples", c_void_p),
        ("rows", c_int32),
        ("cols", c_int32),
        ("rate_held", c_int32),
        ("truncated", c_int32),
    ]


class Info(Sized):
    _fields_ = [
        ("kind", c_int32),
        ("wavelet", c_int32),
        ("levels", c_int32),
        ("rows", c_int32),
        ("cols", c_int32),
        ("coded_rows", c_int32),
        ("coded_cols", c_int32),
        ("exponent", c_int32),
        ("mean", c_float),
        ("budget", c_int32),
        ("bits_present", c_int64),
        ("fills_budget", c_int32),
    ]


class Measures(Sized):
    _fields_ = [
        ("sup_norm", c_double),
        ("mean_square_error", c_double),
        ("root_mean_square", c_double),
        ("psnr", c_double),
    ]


# The interface of the library is that of its major and minor version, which its file is named for.
_FILE = "libmarovia.so.0.1"

_FUNCTIONS: dict[str, list[Any]] = {
    "marovia_compress": [POINTER(Image), POINTER(CompressOptions), POINTER(Buffer)],
    "marovia_decompress_into": [
        c_void_p,
        c_size_t,
        c_int32,
        POINTER(DecompressOptions),
        POINTER(Canvas),
        POINTER(Picture),
    ],
    "marovia_inspect": [c_void_p, c_size_t, c_int32, c_int64, POINTER(Info)],
    "marovia_truncate": [
        c_void_p,
        c_size_t,
        c_int32,
        POINTER(TruncateOptions),
        POINTER(Buffer),
        POINTER(c_int32),
    ],
    "marovia_measure": [POINTER(Image), POINTER(Image), POINTER(Region), POINTER(Measures)],
    "marovia_curve": [
        POINTER(Image),
        POINTER(CompressOptions),
        POINTER(c_double),
        c_size_t,
        POINTER(c_double),
    ],
}


def _load() -> ctypes.CDLL:
    name = os.environ.get("MAROVIA_LIBRARY") or _FILE
    try:
        library = ctypes.CDLL(name)
        for function, arguments in _FUNCTIONS.items():
            getattr(library, function).argtypes = [*arguments, POINTER(Error)]
    except (OSError, AttributeError) as reason:
        raise ImportError(
            f"The library {name} cannot be used ({reason}); MAROVIA_LIBRARY may name another."
        ) from reason
    library.marovia_free.argtypes = [c_void_p]
    library.marovia_free.restype = None
    library.marovia_version.restype = c_char_p
    library.marovia_extension.restype = c_char_p
    library.marovia_kind_of_content.argtypes = [c_void_p, c_size_t]
    return library


_library = _load()


def call(function: str, *arguments: Any) -> int:
    """Calls without holding Python's lock. A failure other than CANCELLED is raised."""
    failure = Error()
    status = int(getattr(_library, function)(*arguments, ctypes.byref(failure)))
    if status in (OK, CANCELLED):
        return status
    raise _errors.BY_STATUS.get(status, _errors.Error)(failure.message.decode(errors="replace"))


def version() -> str:
    return str(_library.marovia_version().decode())


def kinds() -> list[str]:
    """The extensions of all kinds, in the order of their numbers."""
    names: list[str] = []
    while (name := _library.marovia_extension(len(names))) is not None:
        names.append(name.decode())
    return names


def kind_of_content(address: int, size: int) -> int:
    return int(_library.marovia_kind_of_content(address, size))


def take(buffer: Buffer, make: Callable[[Any], Any]) -> Any:
    """What `make` makes of the bytes, which are then given back."""
    try:
        return make((ctypes.c_ubyte * buffer.size).from_address(buffer.data))
    finally:
        _library.marovia_free(buffer.data)
