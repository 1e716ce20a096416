#!/usr/bin/env python3
"""Compresses a PGM image by the shared library, and brings it back.

    python3 round_trip.py IMAGE.pgm [BITS_PER_PIXEL]

Nothing needs to be built: ctypes calls the C interface (marovia/marovia.h). The library is looked
for by the system, or named by MAROVIA_LIBRARY. Images are NumPy arrays where NumPy is installed,
else bytes.
"""

import ctypes
import ctypes.util
import math
import os
import sys
from ctypes import POINTER, Structure, byref, c_char, c_double, c_float, c_int32, c_int64, c_size_t
from ctypes import c_void_p

try:
    import numpy
except ImportError:
    numpy = None

AWH = 6  # context coding: the best pictures at a given size


class Error(Structure):
    _fields_ = [("status", c_int32), ("message", c_char * 252)]


class Buffer(Structure):
    _fields_ = [("data", c_void_p), ("size", c_size_t)]


class Image(Structure):
    _fields_ = [("size", c_size_t), ("samples", c_void_p), ("rows", c_int32), ("cols", c_int32),
                ("stride", c_size_t)]


class Region(Structure):
    _fields_ = [(name, c_int32) for name in ("row1", "col1", "row2", "col2")]


class CompressOptions(Structure):
    _fields_ = [("size", c_size_t), ("kind", c_int32), ("wavelet", c_int32), ("levels", c_int32),
                ("pad", c_int32), ("rate", c_double), ("bytes", c_int64), ("has_region", c_int32),
                ("share", c_float), ("region", Region), ("psnr", c_double)]


class Picture(Structure):
    _fields_ = [("size", c_size_t), ("samples", c_void_p), ("rows", c_int32), ("cols", c_int32),
                ("rate_held", c_int32), ("truncated", c_int32)]


def load_library():
    name = os.environ.get("MAROVIA_LIBRARY") or ctypes.util.find_library("marovia")
    if not name:
        sys.exit("libmarovia is not installed; MAROVIA_LIBRARY may name it")
    library = ctypes.CDLL(name)
    library.marovia_compress_options_init.argtypes = [POINTER(CompressOptions), c_size_t]
    library.marovia_compress.argtypes = [POINTER(Image), POINTER(CompressOptions), POINTER(Buffer),
                                         POINTER(Error)]
    library.marovia_decompress.argtypes = [c_void_p, c_size_t, c_int32, c_void_p, POINTER(Picture),
                                           POINTER(Error)]
    library.marovia_free.argtypes = [c_void_p]
    library.marovia_free.restype = None
    return library


def check(status, error):
    if status != 0:
        raise ValueError(error.message.decode())


def compress(library, samples, rows, cols, rate):
    """The compressed file, as bytes, of rows x cols grey values."""
    if numpy is not None:
        address, stride = samples.ctypes.data, samples.strides[0]  # a slice needs no copy
    else:
        samples = ctypes.create_string_buffer(samples, len(samples))
        address, stride = ctypes.addressof(samples), cols
    image = Image(ctypes.sizeof(Image), address, rows, cols, stride)
    options = CompressOptions()
    library.marovia_compress_options_init(byref(options), ctypes.sizeof(options))
    options.rate = rate
    file, error = Buffer(), Error()
    check(library.marovia_compress(byref(image), byref(options), byref(file), byref(error)), error)
    try:
        return ctypes.string_at(file.data, file.size)
    finally:
        library.marovia_free(file.data)


def decompress(library, file):
    """The grey values, row by row: an array of the image's shape, or bytes."""
    picture, error = Picture(size=ctypes.sizeof(Picture)), Error()
    check(library.marovia_decompress(file, len(file), AWH, None, byref(picture), byref(error)),
          error)
    try:
        samples = ctypes.string_at(picture.samples, picture.rows * picture.cols)
    finally:
        library.marovia_free(picture.samples)
    if numpy is None:
        return samples
    return numpy.frombuffer(samples, numpy.uint8).reshape(picture.rows, picture.cols)


def read_pgm(name):
    """Of a binary PGM without comments: samples, rows, columns."""
    with open(name, "rb") as file:
        content = file.read()
    magic, cols, rows, most = content.split(None, 4)[:4]
    if magic != b"P5" or most != b"255":
        sys.exit(f"{name}: not a binary PGM of 8 bits")
    rows, cols = int(rows), int(cols)
    samples = content[-rows * cols:]
    if numpy is not None:
        samples = numpy.frombuffer(samples, numpy.uint8).reshape(rows, cols)
    return samples, rows, cols


def psnr(a, b):
    if numpy is not None:
        square = float(numpy.mean((a.astype(float) - b) ** 2))
    else:
        square = sum((x - y) ** 2 for x, y in zip(a, b)) / len(a)
    return math.inf if square == 0 else 10 * math.log10(255 ** 2 / square)


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    library = load_library()
    samples, rows, cols = read_pgm(sys.argv[1])
    file = compress(library, samples, rows, cols, float(sys.argv[2]) if len(sys.argv) == 3 else 0.5)
    back = decompress(library, file)
    print(f"{rows} x {cols}: {len(file)} bytes, PSNR {psnr(samples, back):.2f} dB")


if __name__ == "__main__":
    main()
