"""Arrays and bytes as the library takes them: by their addresses, copied only where it must be."""

from __future__ import annotations

from typing import Any

import numpy as np
from numpy.typing import NDArray

from marovia import _library
from marovia._errors import InvalidArgument, Limit, WrongType

_MOST_SIDE = 2**31 - 1

Grey = NDArray[np.uint8]


def has_whole_rows(array: Grey) -> bool:
    """Whether the pixels of a row are neighbours in memory, and rows follow in their order."""
    rows, cols = array.shape
    in_row = cols < 2 or array.strides[1] == 1
    return in_row and (rows < 2 or array.strides[0] >= cols)


def grey(image: Any) -> Grey:
    """The image as rows of pixels: itself, or a copy of what lies otherwise in memory."""
    try:
        array = np.asarray(image)
    except Exception as reason:
        raise WrongType(f"A {type(image).__name__} is no array: {reason}") from reason
    if array.dtype != np.uint8:
        raise WrongType(f"The array is of {array.dtype}; 8-bit grey values (uint8) are coded.")
    if array.ndim != 2:
        raise WrongType(f"The array has {array.ndim} dimensions; a grey image has 2.")
    if max(array.shape) > _MOST_SIDE:
        raise Limit(f"A side of {max(array.shape)} is more than a file can hold.")
    return array if has_whole_rows(array) else np.ascontiguousarray(array)


def described(array: Grey, struct: type[_library.Image]) -> Any:
    """The library's description of an array, which must outlive it."""
    rows, cols = array.shape
    stride = array.strides[0] if rows > 1 else cols
    return struct(samples=array.ctypes.data, rows=rows, cols=cols, stride=stride)


def canvas(out: Any, shape: tuple[int, int]) -> Grey:
    """Room for a picture: `out` if it is given and fits."""
    if out is None:
        return np.empty(shape, np.uint8)
    if not isinstance(out, np.ndarray) or out.dtype != np.uint8 or not out.flags.writeable:
        raise WrongType("The picture goes into an array of uint8 that can be written.")
    if out.shape != shape:
        raise InvalidArgument(f"The picture has the shape {shape}, and its array {out.shape}.")
    if not has_whole_rows(out):
        raise InvalidArgument("The picture's array must have its pixels row by row.")
    return out


def content(data: Any) -> Grey:
    """The bytes of a file, wherever they are."""
    try:
        return np.frombuffer(data, np.uint8)
    except (TypeError, ValueError, BufferError) as reason:
        raise WrongType(f"A {type(data).__name__} is no file in memory: {reason}") from reason
