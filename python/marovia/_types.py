"""What goes in and comes out, beside arrays and numbers."""

from __future__ import annotations

from typing import Any, NamedTuple, Optional

from marovia import _library

KINDS = tuple(_library.kinds())
"""The kinds of files, by their extensions."""

WAVELETS = {"9/7": 1, "5/3": 2, "2+2,2": 3, "best": -1}


class Coded(bytes):
    """The bytes of a compressed file, which know their kind.

    Everything else made of them (a slice, a sum) is plain bytes.
    """

    kind: str

    def __new__(cls, data: Any, kind: str) -> "Coded":
        coded = super().__new__(cls, data)
        coded.kind = kind
        return coded

    def __getnewargs__(self) -> Any:
        return bytes(self), self.kind


class Region(NamedTuple):
    """Rows row1 to row2 and columns col1 to col2 of an image, all included, from 0."""

    row1: int
    col1: int
    row2: int
    col2: int


class Pass(NamedTuple):
    """The state of a run after a pass over one bit plane."""

    number: int  # 1 for the first
    found: int  # coefficients so far
    bits: int  # written or read so far
    threshold: float


class Info(NamedTuple):
    """What a compressed file says of itself."""

    kind: str
    wavelet: str
    levels: int
    rows: int
    cols: int
    coded_rows: int  # larger where the sides were padded
    coded_cols: int
    exponent: int  # the first threshold is 2 ** exponent
    mean: float
    budget: Optional[int]  # bits that the compressor might spend; not every kind has one
    bits_present: int  # behind the header
    fills_budget: bool

    @property
    def shape(self) -> tuple[int, int]:
        """Of the array that comes out."""
        return self.rows, self.cols


class Measures(NamedTuple):
    """How far two images are apart."""

    sup_norm: float  # the largest difference of two pixels
    mean_square_error: float
    root_mean_square: float
    psnr: float  # in decibels of a peak of 255; infinite where they are the same


class Point(NamedTuple):
    """What a rate is worth."""

    rate: float  # bits per pixel
    psnr: float  # infinite where the picture is the image
