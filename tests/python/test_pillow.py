"""Compressed files in Pillow: by name and from memory, saved, opened, verified."""

import io

import numpy
import pytest
from PIL import Image

import marovia

Image.init()  # among all formats of Pillow, some of which take a file of this codec for one of theirs
import marovia.pillow  # noqa: E402

KINDS = [kind.upper() for kind in marovia.KINDS]


@pytest.mark.parametrize("kind", KINDS)
def test_every_kind_is_saved_and_opened(kind, camera, tmp_path):
    image = Image.fromarray(camera)
    path, stream = tmp_path / f"camera.{kind.lower()}", io.BytesIO()
    image.save(path, rate=0.4)
    image.save(stream, format=kind, rate=0.4)
    assert stream.getvalue() == path.read_bytes()
    expected = marovia.decode(stream.getvalue(), kind=kind.lower())
    for source in (path, str(path), stream):
        options = {"formats": [kind]} if source is stream else {}
        Image.open(source, **options).verify()
        with Image.open(source, **options) as opened:
            assert (opened.format, opened.size, opened.mode) == (kind, (512, 512), "L")
            numpy.testing.assert_array_equal(numpy.asarray(opened), expected)
            opened.putpixel((0, 0), 7)  # its memory is a copy by now
            assert opened.rotate(90).getpixel((0, 511)) == 7
    damaged = path.read_bytes()
    path.write_bytes(damaged[:9])
    with pytest.raises(Image.UnidentifiedImageError):
        Image.open(path)
    if kind not in ("AWG", "AWH"):
        path.write_bytes(damaged[: len(damaged) // 2])
        with pytest.raises(OSError, match="cut short"):
            Image.open(path).verify()


def test_streams_are_recognised_by_content_or_name_and_others_are_left_alone(camera):
    assert Image.open(io.BytesIO(marovia.encode(camera))).format == "AWH"
    stream = io.BytesIO(marovia.encode(camera, "awd"))
    stream.name = "camera.AWD"
    assert Image.open(stream).format == "AWD"
    for name in ("PNG", "TIFF", "BMP", "PPM"):
        other = io.BytesIO()
        Image.fromarray(camera).save(other, format=name)
        other.name = "named.awf"
        assert Image.open(other).format == name


def test_what_cannot_be_saved_says_so_and_leaves_no_file(camera, tmp_path):
    image = Image.fromarray(camera)
    for refused, options in ((image.convert("RGB"), {}), (image, {"rate": -1})):
        with pytest.raises(OSError, match="mode RGB|above 0"):
            refused.save(tmp_path / "refused.awf", **options)
        assert not (tmp_path / "refused.awf").exists()
