"""Arrays of every layout there and back, from many threads, and what is refused."""

import concurrent.futures
import ctypes
import pickle
import re
import warnings

import numpy
import pytest

import marovia
from conftest import ROOT
from marovia import _library

LAYOUTS = {
    "as it is": lambda a: a,
    "in Fortran's order": numpy.asfortranarray,
    "read-only": lambda a: numpy.frombuffer(a.tobytes(), numpy.uint8).reshape(a.shape),
    "every other row": lambda a: numpy.repeat(a, 2, axis=0)[::2],
    "every third column": lambda a: numpy.repeat(a, 3, axis=1)[:, ::3],
    "upside down": lambda a: numpy.flipud(a).copy()[::-1],
    "mirrored": lambda a: numpy.fliplr(a).copy()[:, ::-1],
    "transposed": lambda a: a.T.copy().T,
    "a window": lambda a: numpy.pad(a, 3)[3:-3, 3:-3],
    "one row for all": lambda a: numpy.broadcast_to(a[:1], a.shape),
}
REFUSED = {
    "nothing": (lambda a: a[:0], marovia.InvalidArgument),
    "no columns": (lambda a: a[:, :0], marovia.InvalidArgument),
    "signed": (lambda a: a.astype(numpy.int8), marovia.WrongType),
    "floats": (lambda a: a.astype(float), marovia.WrongType),
    "truths": (lambda a: a > 9, marovia.WrongType),
    "16 bits": (lambda a: a.astype(">u2"), marovia.WrongType),
    "one dimension": (numpy.ravel, marovia.WrongType),
    "colours": (lambda a: numpy.dstack([a] * 3), marovia.WrongType),
    "ragged lists": (lambda a: [[1], [1, 2]], marovia.WrongType),
    "None": (lambda a: None, marovia.WrongType),
    "too wide": (
        lambda a: numpy.broadcast_to(numpy.uint8(), (2, 2**31)),
        marovia.Limit,
    ),
}


def test_a_thousand_random_arrays_come_back_or_are_refused():
    random = numpy.random.default_rng(18)
    for number in range(1000):
        sides = random.integers(1, 40, 2)
        array = random.integers(0, random.integers(2, 257), sides, numpy.uint8)
        if number % 4 == 3:
            make, error = REFUSED[random.choice(list(REFUSED))]
            with pytest.raises(error), warnings.catch_warnings():
                warnings.simplefilter("ignore")  # numpy's, of ragged lists
                marovia.encode(make(array))
            continue
        layout = random.choice(list(LAYOUTS))
        array = LAYOUTS[layout](array)
        file = marovia.encode(array, random.choice(["awg", "awh"]), lossless=True)
        numpy.testing.assert_array_equal(marovia.decode(file), array, layout)
        out = numpy.zeros((sides[0], sides[1] + 5), numpy.uint8)[:, 2:-3]
        assert marovia.decode(bytearray(file), kind=file.kind, out=out) is out
        numpy.testing.assert_array_equal(out, array)


def test_eight_threads_code_at_once(camera):
    def work(number):
        part = camera[number * 8 : 256 + number * 8]
        kind = marovia.KINDS[number % len(marovia.KINDS)]
        return marovia.decode(marovia.encode(part, kind))

    with concurrent.futures.ThreadPoolExecutor(8) as pool:
        for one, other in zip(pool.map(work, range(24)), map(work, range(24))):
            numpy.testing.assert_array_equal(one, other)


def test_files_of_every_kind_are_coded_cut_measured_and_told_apart(camera):
    for kind in marovia.KINDS:
        file = marovia.encode(camera, kind, wavelet="5/3", levels=3)
        assert file.kind == kind and pickle.loads(pickle.dumps(file)).kind == kind
        assert marovia.info(file)[:4] == (kind, "5/3", 3, 512) and file != bytes(file) + b"0"
        cut = marovia.truncate(file, bytes=3000)
        assert len(cut) <= 3000
        half = marovia.measure(camera, marovia.decode(cut))
        assert 20 < half.psnr < marovia.measure(camera, marovia.decode(file)).psnr
        seen = []
        marovia.encode(camera, kind, rate=0.1, progress=seen.append)
        assert [report.number for report in seen[:3]] == [1, 2, 3]
        if kind not in ("awg", "awh"):
            with pytest.warns(marovia.TruncatedWarning):
                marovia.decode(file[:2000], kind=kind)
            with pytest.raises(marovia.InvalidArgument, match="awf"):
                marovia.decode(bytes(file))
    assert len(marovia.encode(camera, bytes=4000)) <= 4000
    assert marovia.measure(camera, marovia.decode(marovia.encode(camera, psnr=36))).psnr >= 36
    eye = (100, 200, 140, 260)
    favoured = marovia.decode(marovia.encode(camera, rate=0.2, region=eye))
    plain = marovia.decode(marovia.encode(camera, rate=0.2))
    assert marovia.measure(camera, favoured, eye).psnr > marovia.measure(camera, plain, eye).psnr
    points = marovia.curve(camera, [0.5, 0.1])
    assert points[0].psnr > points[1].psnr and points[0].psnr == pytest.approx(
        marovia.measure(camera, marovia.decode(marovia.encode(camera, rate=0.5))).psnr, abs=0.05
    )


def test_an_exception_in_the_progress_ends_the_run(camera):
    def stop(report):
        raise KeyboardInterrupt

    file = marovia.encode(camera)
    for run in (
        lambda: marovia.encode(camera, progress=stop),
        lambda: marovia.encode(camera, lossless=True, wavelet="best", progress=stop),
        lambda: marovia.decode(file, progress=stop),
        lambda: marovia.curve(camera, [1], progress=stop),
    ):
        with pytest.raises(KeyboardInterrupt):
            run()


@pytest.mark.parametrize(
    "choice",
    [{"rate": 0}, {"rate": float("nan")}, {"bytes": 0}, {"bytes": 2**63}, {"psnr": -1}]
    + [{"rate": 1, "bytes": 1}, {"kind": "png"}, {"wavelet": "haar"}, {"levels": 0}]
    + [{"region": (0, 0, 9, 512)}, {"region": (1, 2, 3)}, {"region": (0, 0, 9, 2**32)}]
    + [{"rate": "much"}, {"levels": 1.5}, {"bytes": 8}, {"kind": "awf", "lossless": True}],
)
def test_choices_that_make_no_sense_are_refused(camera, choice):
    with pytest.raises(marovia.Error) as caught:
        marovia.encode(camera, **choice)
    assert isinstance(caught.value, (ValueError, TypeError)) and str(caught.value)


def test_what_is_no_file_is_refused(camera):
    file = marovia.encode(camera)
    for data, error in [("text", marovia.WrongType), (b"", marovia.InvalidArgument)] + [
        (memoryview(file)[::2], marovia.WrongType),
        (file[:10], marovia.Malformed),
    ]:
        with pytest.raises(error):
            marovia.decode(data)
    for call in (marovia.decode, marovia.info):
        with pytest.raises(marovia.Limit):
            call(file, max_pixels=1000)
    with pytest.raises(marovia.Limit):
        marovia.truncate(file, rate=0.1, max_pixels=1000)
    for out in (numpy.empty((512, 511), numpy.uint8), numpy.empty((512, 512)), [[0]]):
        with pytest.raises(marovia.Error):
            marovia.decode(file, out=out)


def test_the_structs_are_those_of_the_header():
    header = (ROOT / "include" / "marovia" / "marovia.h").read_text()
    header = re.sub(r"/\*.*?\*/", "", header, flags=re.DOTALL)
    types = {"size_t": ctypes.c_size_t, "float": ctypes.c_float, "double": ctypes.c_double}
    types.update(int32_t=ctypes.c_int32, int64_t=ctypes.c_int64, char=ctypes.c_char * 252)
    types["marovia_region"], types["marovia_listener"] = _library.Region, _library.LISTENER
    compared = 0
    for body, name in re.findall(r"typedef struct \w+ \{(.*?)\} marovia_(\w+);", header, re.DOTALL):
        struct = getattr(_library, name.title().replace("_", ""))
        fields = re.findall(r"(\w+)(\s*\*)? (\w+)(?:\[\d+\])?;", body)
        ours = [f for c in reversed(struct.__mro__) for f in c.__dict__.get("_fields_", [])]
        assert [field for field, _ in ours] == [field for _, _, field in fields], name
        for (kind, pointer, field), (_, ctype) in zip(fields, ours):
            assert ctype is (ctypes.c_void_p if pointer else types[kind]), (name, field)
        compared += 1
    assert compared >= 11
