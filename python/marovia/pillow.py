"""Lets Pillow open and save compressed files, from the moment that this is imported.

A file with a name is of the kind that its extension tells. A stream without one is recognised by
its content where the kind has a mark of its own; the others are asked for by their name:
`Image.open(stream, formats=["AWF"])`. Saving takes the options of `marovia.encode`.
"""

from __future__ import annotations

import os
import warnings
from typing import Any, Optional

import numpy as np
from PIL import Image, ImageFile

import marovia
from marovia._library import kind_of_content

_ANY_SIZE = 2**63 - 1  # Pillow has a limit of its own
_HEADER_BYTES = 16  # no kind has more
_MODE = "_mode" if isinstance(getattr(Image.Image, "mode", None), property) else "mode"
_OPTIONS = ("rate", "bytes", "psnr", "lossless", "wavelet", "levels", "region", "share")


class MaroviaImageFile(ImageFile.ImageFile):
    """A compressed file, of which only the header is read before its pixels are wanted."""

    format_description = "Marovia compressed image"
    fp: Any
    tile: Any
    _kind: Optional[str] = None

    def _open(self) -> None:
        start = self.fp.read(_HEADER_BYTES)
        kind = self._kind or _kind_of(self.filename or getattr(self.fp, "name", ""), start)
        if kind is None:
            raise SyntaxError("not a compressed image")
        try:
            header = marovia.info(start, kind=kind, max_pixels=_ANY_SIZE)
        except marovia.Error as reason:
            raise SyntaxError(str(reason)) from reason
        self.format = kind.upper()
        self._size = header.cols, header.rows
        setattr(self, _MODE, "L")
        self.info.update(wavelet=header.wavelet, levels=header.levels)
        self._coded = True

    def _decoded(self) -> Any:
        self.fp.seek(0)
        kind = str(self.format).lower()
        return marovia.decode(self.fp.read(), kind=kind, max_pixels=_ANY_SIZE)

    def load(self) -> Any:
        if self._coded:
            self.im = Image.frombuffer("L", self.size, self._decoded(), "raw", "L", 0, 1).im
            self.readonly = 1  # the memory is the array's
            self.tile, self._coded = [], False
            if self._exclusive_fp:
                self.fp.close()
            self.fp = None
        return super().load()

    def verify(self) -> None:
        """All of the file is decoded: one that is cut short or damaged raises."""
        with warnings.catch_warnings():
            warnings.simplefilter("error", marovia.TruncatedWarning)
            try:
                self._decoded()
            except (marovia.Error, marovia.TruncatedWarning) as reason:
                raise OSError(str(reason)) from reason
            finally:
                super().verify()


def _kind_of(name: Any, content: bytes) -> Optional[str]:
    extension = os.path.splitext(os.fsdecode(name))[1] if isinstance(name, (str, bytes)) else ""
    kind = extension.lower()[1:]
    if kind in marovia.KINDS:
        return kind
    view = np.frombuffer(content, np.uint8)
    number = kind_of_content(view.ctypes.data, view.size)
    return None if number < 0 else marovia.KINDS[number]


def _save(image: Image.Image, stream: Any, _name: Any, kind: str) -> None:
    if image.mode not in ("1", "L"):
        raise OSError(f"cannot write mode {image.mode} as {kind.upper()}; convert it to L")
    options = {name: image.encoderinfo[name] for name in _OPTIONS if name in image.encoderinfo}
    try:
        stream.write(marovia.encode(image.convert("L"), kind, **options))
    except marovia.Error as reason:
        raise OSError(str(reason)) from reason


# Their marks are strong enough for them to be asked before a file is believed by its extension.
_STRONG = ("PNG", "JPEG", "GIF", "TIFF", "BMP", "DIB", "PPM")


def _register() -> None:
    Image.preinit()
    before = [name for name in Image.ID if name in _STRONG]
    Image.ID[:] = [*before, "MAROVIA", *(name for name in Image.ID if name not in _STRONG)]
    Image.OPEN["MAROVIA"] = MaroviaImageFile, None
    for kind in marovia.KINDS:
        name = kind.upper()
        explicit = type(f"{name}ImageFile", (MaroviaImageFile,), {"_kind": kind})
        # Not registered as one to be tried: it takes every stream with a likely header.
        Image.OPEN[name] = explicit, None
        Image.register_save(name, lambda im, fp, filename, kind=kind: _save(im, fp, filename, kind))
        Image.register_extension(name, f".{kind}")
        Image.register_mime(name, "image/x-marovia")


_register()
