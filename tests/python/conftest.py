import pathlib

import numpy
import pytest
from PIL import Image

ROOT = pathlib.Path(__file__).resolve().parents[2]


@pytest.fixture(scope="session")
def camera():
    return numpy.asarray(Image.open(ROOT / "Images" / "camera.pgm"))
