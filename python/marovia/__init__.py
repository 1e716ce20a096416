"""Grey images as embedded wavelet files, and back, on numpy arrays.

>>> import marovia, numpy
>>> image = numpy.add.outer(numpy.arange(64), numpy.arange(48)).astype(numpy.uint8)
>>> file = marovia.encode(image, lossless=True)
>>> bool((marovia.decode(file) == image).all())
True

A file may be cut anywhere behind its header. All functions may be called from several threads at
once, which then work at the same time. `import marovia.pillow` lets Pillow open and save the files.
"""

from marovia import _library
from marovia._codec import curve, decode, encode, info, measure, truncate
from marovia._errors import (
    Error,
    InvalidArgument,
    Limit,
    Malformed,
    NoMemory,
    Overflow,
    TruncatedWarning,
    Unsupported,
    WrongType,
)
from marovia._types import KINDS, WAVELETS, Coded, Info, Measures, Pass, Point, Region

# Users see the names that they use.
for _public in (Coded, Info, Measures, Pass, Point, Region, *Error.__subclasses__(), Error):
    _public.__module__ = __name__
TruncatedWarning.__module__ = __name__

__version__ = _library.version()

__all__ = [
    "KINDS",
    "WAVELETS",
    "Coded",
    "Error",
    "Info",
    "InvalidArgument",
    "Limit",
    "Malformed",
    "Measures",
    "NoMemory",
    "Overflow",
    "Pass",
    "Point",
    "Region",
    "TruncatedWarning",
    "Unsupported",
    "WrongType",
    "curve",
    "decode",
    "encode",
    "info",
    "measure",
    "truncate",
]
