"""What can go wrong, as exceptions: `Error` is all of them."""

from __future__ import annotations


class Error(Exception):
    """A failure that the library reports, in one sentence."""


class InvalidArgument(Error, ValueError):
    """A choice that makes no sense: a rate, a region, a kind, an empty image."""


class WrongType(Error, TypeError):
    """An array that is none of 8-bit grey values, or what is no bytes."""


class Malformed(Error, ValueError):
    """The bytes are not a file of the kind they were read as."""


class Unsupported(Error, ValueError):
    """A file of a known kind, in a form that is not read."""


class Limit(Error, ValueError):
    """More pixels, or longer sides, than are allowed."""


class Overflow(Error, ArithmeticError):
    """A number left the range that the format gives it."""


class NoMemory(Error, MemoryError):
    """Memory ran out."""


class TruncatedWarning(UserWarning):
    """Bits that were asked for are missing: the picture is what the rest of them gives."""


# By the numbers of marovia_status; the others are faults of the library.
BY_STATUS: dict[int, type[Error]] = {
    1: Overflow,
    2: InvalidArgument,
    3: InvalidArgument,
    4: Malformed,
    5: Unsupported,
    6: Limit,
    8: NoMemory,
}
