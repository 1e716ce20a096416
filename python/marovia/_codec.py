"""Coding and decoding, on arrays and bytes."""

from __future__ import annotations

import ctypes
import functools
import operator
import warnings
from collections.abc import Callable, Sequence
from typing import Any, Optional

import numpy as np

from marovia import _arrays, _library
from marovia._arrays import Grey
from marovia._errors import InvalidArgument, TruncatedWarning, WrongType
from marovia._types import KINDS, WAVELETS, Coded, Info, Measures, Pass, Point, Region

Progress = Callable[[Pass], object]

_WAVELET_NAMES = {number: name for name, number in WAVELETS.items()}


def _positive(name: str, value: Any) -> float:
    """A number that is one: the library takes 0 for a choice that was not made."""
    try:
        number = float(value)
    except (TypeError, ValueError) as reason:
        raise WrongType(f"{name} is {value!r}; it must be a number.") from reason
    if not number > 0:
        raise InvalidArgument(f"{name} is {value!r}; it must be above 0.")
    return number


def _whole(name: str, value: Any, least: int, bits: int) -> int:
    try:
        number = operator.index(value)
    except TypeError as reason:
        raise WrongType(f"{name} is {value!r}; it must be a whole number.") from reason
    if not least <= number < 2 ** (bits - 1):
        raise InvalidArgument(f"{name} is {value!r}; it must be {least} or more, in {bits} bits.")
    return number


def _one_of(name: str, value: Any, choices: Sequence[str]) -> int:
    if value not in choices:
        raise InvalidArgument(f"{name} is {value!r}; there are {', '.join(choices)}.")
    return choices.index(value)


def _region(region: Sequence[int]) -> _library.Region:
    if len(region) != 4:
        raise InvalidArgument("A region is four numbers: first row and column, last row and column.")
    return _library.Region(*(_whole("A bound of the region", bound, 0, 32) for bound in region))


def _kind_of(data: Any, content: Grey, kind: Optional[str]) -> int:
    """As told, else as the bytes know; only some kinds tell it inside."""
    name = kind if kind is not None else getattr(data, "kind", None)
    if name is not None:
        return _one_of("kind", name, KINDS)
    number = _library.kind_of_content(content.ctypes.data, content.size)
    if number < 0:
        raise InvalidArgument(f"These bytes do not tell their kind; name it: {', '.join(KINDS)}.")
    return number


class _Watch:
    """A listener whose exception ends the run, and comes out of it."""

    def __init__(self, progress: Optional[Progress]) -> None:
        self._progress = progress
        self._failure: Optional[BaseException] = None
        heard: Any = self._hear if progress else 0
        self.listener = _library.LISTENER(heard)

    def _hear(self, _context: Any, report: Any) -> int:
        try:
            if report and self._progress:
                seen = report.contents
                self._progress(Pass(seen.number, seen.found, seen.bits, seen.threshold))
            return 0
        except BaseException as failure:  # KeyboardInterrupt too: nothing else would end the run
            self._failure = failure
            return 1

    def call(self, *arguments: Any) -> None:
        _library.call(*arguments)
        if self._failure is not None:
            raise self._failure


def _compress_options(
    kind: str,
    rate: Optional[float],
    bytes: Optional[int],
    psnr: Optional[float],
    lossless: bool,
    wavelet: Optional[str],
    levels: Optional[int],
    region: Optional[Sequence[int]],
    share: float,
    pad: bool,
    threads: int,
) -> _library.CompressOptions:
    if (rate is not None) + (bytes is not None) + (psnr is not None) + bool(lossless) > 1:
        raise InvalidArgument("Only one of rate, bytes, psnr and lossless can be met.")
    options = _library.CompressOptions(
        kind=_one_of("kind", kind, KINDS),
        pad=bool(pad),
        share=_positive("share", share),
        rate=0.5 if rate is None else _positive("rate", rate),
        lossless=bool(lossless),
        threads=_whole("threads", threads, 0, 32),
    )
    if bytes is not None:
        options.bytes = _whole("bytes", bytes, 1, 64)
    if psnr is not None:
        options.psnr = _positive("psnr", psnr)
    if wavelet is not None:
        options.wavelet = WAVELETS[list(WAVELETS)[_one_of("wavelet", wavelet, list(WAVELETS))]]
    if levels is not None:
        options.levels = _whole("levels", levels, 1, 32)
    if region is not None:
        options.has_region, options.region = 1, _region(region)
    return options


def encode(
    image: Any,
    kind: str = "awh",
    *,
    rate: Optional[float] = None,
    bytes: Optional[int] = None,
    psnr: Optional[float] = None,
    lossless: bool = False,
    wavelet: Optional[str] = None,
    levels: Optional[int] = None,
    region: Optional[Sequence[int]] = None,
    share: float = 0.9,
    pad: bool = True,
    threads: int = 1,
    progress: Optional[Progress] = None,
) -> Coded:
    """Codes a grey image: a two-dimensional array of uint8, or what makes one.

    At most one of `rate` (bits per pixel, 0.5 unless told), `bytes` (the most that the file may
    have), `psnr` (the least that it may decode to, in decibels) and `lossless` says how long the
    file is to be. `region` is (row1, col1, row2, col2), all included, and gets `share` of the bits.
    On more `threads` (0: as many as there are processors) it is the same file, earlier. `progress` is called with a Pass after each; an exception in it ends the run.
    """
    array = _arrays.grey(image)
    options = _compress_options(
        kind, rate, bytes, psnr, lossless, wavelet, levels, region, share, pad, threads
    )
    watch = _Watch(progress)
    options.listener = watch.listener
    file = _library.Buffer()
    watch.call("marovia_compress", _arrays.described(array, _library.Image), options, file)
    return _coded(file, options.kind)


def _coded(file: _library.Buffer, kind: int) -> Coded:
    coded: Coded = _library.take(file, functools.partial(Coded, kind=KINDS[kind]))
    return coded


def decode(
    data: Any,
    rate: Optional[float] = None,
    reduce: int = 0,
    *,
    kind: Optional[str] = None,
    out: Optional[Grey] = None,
    max_pixels: Optional[int] = None,
    threads: int = 1,
    progress: Optional[Progress] = None,
) -> Grey:
    """The picture of a file in memory (bytes, an array, a map of a file), or of its first bits.

    With `reduce` its sides are 2**reduce smaller, rounded up, in less time; at most by
    the levels of the file.
    `kind` is needed where neither the bytes nor what holds them tell it. The picture goes into
    `out` where that is given. A file that was cut short gives what is left of it, and a
    TruncatedWarning. Images of more than `max_pixels` (2**26 unless told) are refused.
    """
    view = _arrays.content(data)
    number = _kind_of(data, view, kind)
    limit = 0 if max_pixels is None else _whole("max_pixels", max_pixels, 1, 64)
    watch = _Watch(progress)
    options = _library.DecompressOptions(
        max_pixels=limit,
        threads=_whole("threads", threads, 0, 32),
        reduce=_whole("reduce", reduce, 0, 32),
        listener=watch.listener,
    )
    if rate is not None:
        options.rate = _positive("rate", rate)
    found = _inspected(view, number, limit)
    step = 1 << min(options.reduce, found.levels)
    array = _arrays.canvas(out, (-(-found.rows // step), -(-found.cols // step)))
    picture = _library.Picture()
    watch.call(
        "marovia_decompress_into",
        view.ctypes.data,
        view.size,
        number,
        options,
        _arrays.described(array, _library.Canvas),
        picture,
    )
    if picture.truncated:
        warnings.warn("The file is cut short or damaged.", TruncatedWarning, stacklevel=2)
    return array


def _inspected(view: Grey, kind: int, limit: int) -> Info:
    found = _library.Info()
    _library.call("marovia_inspect", view.ctypes.data, view.size, kind, limit, found)
    return Info(
        kind=KINDS[found.kind],
        wavelet=_WAVELET_NAMES[found.wavelet],
        levels=found.levels,
        rows=found.rows,
        cols=found.cols,
        coded_rows=found.coded_rows,
        coded_cols=found.coded_cols,
        exponent=found.exponent,
        mean=found.mean,
        budget=None if found.budget < 0 else found.budget,
        bits_present=found.bits_present,
        fills_budget=bool(found.fills_budget),
    )


def info(data: Any, *, kind: Optional[str] = None, max_pixels: Optional[int] = None) -> Info:
    """What the header of a file says; nothing is decoded."""
    view = _arrays.content(data)
    limit = 0 if max_pixels is None else _whole("max_pixels", max_pixels, 1, 64)
    return _inspected(view, _kind_of(data, view, kind), limit)


def truncate(
    data: Any,
    *,
    rate: Optional[float] = None,
    bytes: Optional[int] = None,
    kind: Optional[str] = None,
    max_pixels: Optional[int] = None,
) -> Coded:
    """A shorter file, by a rate or a number of bytes, without coding again."""
    if (rate is None) == (bytes is None):
        raise InvalidArgument("A file is cut to a rate or to a number of bytes.")
    view = _arrays.content(data)
    options = _library.TruncateOptions()
    if rate is not None:
        options.rate = _positive("rate", rate)
    if bytes is not None:
        options.bytes = _whole("bytes", bytes, 1, 64)
    if max_pixels is not None:
        options.max_pixels = _whole("max_pixels", max_pixels, 1, 64)
    file, result = _library.Buffer(), ctypes.c_int32()
    number = _kind_of(data, view, kind)
    _library.call("marovia_truncate", view.ctypes.data, view.size, number, options, file, result)
    return _coded(file, result.value)


def measure(source: Any, reconstruction: Any, region: Optional[Sequence[int]] = None) -> Measures:
    """How far two images are apart, all over or in a region of them."""
    one, other = _arrays.grey(source), _arrays.grey(reconstruction)
    found = _library.Measures()
    _library.call(
        "marovia_measure",
        _arrays.described(one, _library.Image),
        _arrays.described(other, _library.Image),
        None if region is None else _region(region),
        found,
    )
    return Measures(found.sup_norm, found.mean_square_error, found.root_mean_square, found.psnr)


def curve(
    image: Any,
    rates: Optional[Sequence[float]] = None,
    kind: str = "awh",
    *,
    wavelet: Optional[str] = None,
    levels: Optional[int] = None,
    threads: int = 1,
    progress: Optional[Progress] = None,
) -> list[Point]:
    """How the quality of an image grows with its bits per pixel.

    It is coded once, at the highest of the rates; every lower one is a start of that file.
    """
    array = _arrays.grey(image)
    asked = np.geomspace(0.05, 2, 33) if rates is None else [_positive("A rate", r) for r in rates]
    points = np.array(asked, np.float64)
    found = np.empty(points.size, np.float64)
    options = _compress_options(
        kind, None, None, None, False, wavelet, levels, None, 0.9, True, threads
    )
    watch = _Watch(progress)
    options.listener = watch.listener
    doubles = ctypes.POINTER(ctypes.c_double)
    watch.call(
        "marovia_curve",
        _arrays.described(array, _library.Image),
        options,
        points.ctypes.data_as(doubles),
        points.size,
        found.ctypes.data_as(doubles),
    )
    return [Point(float(rate), float(psnr)) for rate, psnr in zip(points, found)]
