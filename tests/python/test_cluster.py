"""The example for a cluster, on a scheduler and two workers of this machine, one of which is lost."""

import os
import pathlib
import signal
import subprocess
import sys
import time

import pytest

distributed = pytest.importorskip("distributed")

ROOT = pathlib.Path(__file__).resolve().parents[2]
STEMS = [b"a photo", b"two\nlines", b"not utf-8 \xff", b"plain"]


def make_tree(tree):
    """32 images, of equal names in different folders, and one that is none."""
    image = (ROOT / "Images" / "camera.pgm").read_bytes()
    paths = [b"%d/%s %d.pgm" % (i % 2, STEMS[i // 2 % 4], i // 8) for i in range(32)]
    for folder in "01":
        (tree / folder).mkdir(parents=True)
    for path in paths:
        with open(os.path.join(os.fsencode(tree), path), "wb") as file:
            file.write(image)
    (tree / "1" / "broken.pgm").write_bytes(image[:1000])
    return paths


class Cluster:
    def __init__(self, folder):
        self.scheduler = str(folder / "scheduler.json")
        self._folder = folder
        self._processes = []
        self._start("dask_scheduler", "--port", "0", "--no-dashboard", "--no-show")
        self.workers = [self._start("dask_worker", "--nthreads", "1", "--no-nanny") for _ in "12"]
        while not os.path.exists(self.scheduler):
            time.sleep(0.01)
        with distributed.Client(scheduler_file=self.scheduler) as client:
            client.wait_for_workers(2, timeout=60)

    def _start(self, program, *options):
        command = [sys.executable, "-m", f"distributed.cli.{program}", *options]
        command += ["--scheduler-file", self.scheduler, "--host", "127.0.0.1"]
        with open(self._folder / "log", "ab") as log:
            # A session of its own: what the worker runs is lost with it, as with its machine.
            process = subprocess.Popen(
                command, stdout=log, stderr=log, cwd=self._folder, start_new_session=True
            )
        self._processes.append(process)
        return process

    def lose(self, process):
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()

    def end(self):
        for process in self._processes:
            if process.poll() is None:
                self.lose(process)


@pytest.fixture
def cluster(tmp_path):
    made = Cluster(tmp_path)
    yield made
    made.end()


def packed_files(folder):
    return [os.fsencode(path) for path in folder.rglob("*.aw*")]


def test_every_image_is_there_when_a_worker_is_lost_and_failures_are_named(cluster, tmp_path):
    tree, packed = tmp_path / "tree", tmp_path / "packed"
    paths = make_tree(tree)
    example = [sys.executable, str(ROOT / "examples" / "compress_on_dask.py"), cluster.scheduler]
    run = subprocess.Popen(
        [*example, str(tree), str(packed), "--psnr", "40"],
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
    )
    while not packed_files(packed):
        assert run.poll() is None, run.communicate()
        time.sleep(0.01)
    cluster.lose(cluster.workers[0])
    assert len(packed_files(packed)) < len(paths) / 2
    said, complaints = run.communicate(timeout=240)
    assert (said, run.returncode) == (b"32 compressed, 1 failed\n", 1), complaints
    assert complaints.count(b".pgm") == 1 and b"'1/broken.pgm': " in complaints
    files = packed_files(packed)
    assert {file[len(os.fsencode(packed)) + 1 : -4] for file in files} == {p[:-4] for p in paths}
    for file in files:
        subprocess.run(["marovia", "info", "-q", file], check=True, stdout=subprocess.DEVNULL)
    # Two images of one name would be one file: said before anything runs.
    (tree / "1" / "broken.BMP").touch()
    twice = subprocess.run([*example, str(tree), str(packed)], stderr=subprocess.PIPE)
    assert twice.returncode == 1 and b"'1/broken.BMP' and b'1/broken.pgm' would" in twice.stderr
