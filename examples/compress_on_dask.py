#!/usr/bin/env python3
"""Compresses all images of a tree of folders on the workers of a Dask cluster.

    python3 compress_on_dask.py SCHEDULER TREE PACKED [OPTION...]

SCHEDULER is an address (tcp://127.0.0.1:8786) or a scheduler file. TREE and PACKED are folders that
all workers see, by absolute names; every image below the one becomes a file in the same folder below
the other. Options go to `marovia compress`, which each worker needs. What failed is
named on standard error. `compress` knows nothing of Dask: other engines take it as it is.
"""

import functools
import itertools
import json
import os
import subprocess
import sys

BATCH = 8  # images a task: more cost less, and cost more when a worker is lost
ENDINGS = tuple(b"." + name for name in b"pgm ppm pbm pam bmp png tif tiff jpg jpeg".split())


def compress(tree, packed, options, paths):
    """Codes the images at these paths below the tree (bytes, as file names are).

    Gives a record a path, in their order: its exitStatus, with an error where there was one, and
    what else the tool tells of it. Raises where the tool itself did not end well, so that the engine
    runs the task again; what is done already is skipped then.
    """
    records = []
    for folder, group in itertools.groupby(paths, os.path.dirname):
        run = functools.partial(compress_folder, tree, os.path.join(packed, folder), options)
        done = run(list(group))
        # A worker taken for lost may have gone on, and been the first to put a file in place.
        unwritten = [record["path"] for record in done if record["exitStatus"] == 4]
        if unwritten:
            again = {record["path"]: record for record in run(unwritten)}
            done = [again.get(record["path"], record) for record in done]
        records += done
    return records


def compress_folder(tree, folder, options, paths):
    os.makedirs(folder, exist_ok=True)
    command = ["marovia", "compress", "--files0-from", "-", "--output-dir", folder]
    run = subprocess.run(
        command + ["--skip-existing", "--json", "-q", "-j", "1", *options],
        input=b"".join(os.path.join(tree, path) + b"\0" for path in paths),
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
    )
    records = [json.loads(line) for line in run.stdout.splitlines()]
    if run.returncode < 0 or len(records) != len(paths):
        said = run.stderr.decode(errors="replace").strip()
        raise RuntimeError(f"marovia ended with status {run.returncode}: {said}")
    # The names in the records are text, which not every name is.
    return [{**record, "path": path} for record, path in zip(records, paths)]


def images_below(tree):
    """Their paths below the tree, in an order that keeps folders together."""
    found = []
    for folder, folders, names in os.walk(tree):
        folders.sort()
        below = os.path.relpath(folder, tree)
        prefix = b"" if below == b"." else below + b"/"
        found += [prefix + name for name in sorted(names) if name.lower().endswith(ENDINGS)]
    taken = {}
    for path in found:
        first = taken.setdefault(os.path.splitext(path)[0], path)
        if first != path:
            raise ValueError(f"{first!r} and {path!r} would become one file")
    return found


def compress_tree(client, tree, packed, options=()):
    """A record an image, as compress gives it, as soon as there is one.

    A task whose worker is lost runs on another; where none can do it, each of its images has a
    record that says so.
    """
    from distributed import as_completed

    paths = images_below(tree)
    batches = [paths[start : start + BATCH] for start in range(0, len(paths), BATCH)]
    work = functools.partial(compress, tree, packed, list(options))
    futures = client.map(work, batches, retries=2, pure=False)
    batch_of = {future.key: batch for future, batch in zip(futures, batches)}
    for future in as_completed(futures):
        if future.status == "finished":
            yield from future.result()
        else:
            failure = repr(future.exception())
            for path in batch_of[future.key]:
                yield {"path": path, "exitStatus": 1, "error": failure}


def main(scheduler, tree, packed, *options):
    from distributed import Client

    where = {"scheduler_file": scheduler} if os.path.isfile(scheduler) else {"address": scheduler}
    done = failed = 0
    with Client(**where) as client:
        for record in compress_tree(client, os.fsencode(tree), os.fsencode(packed), options):
            if record["exitStatus"] in (0, 3):
                done += 1
                continue
            failed += 1
            print(f"{record['path']!r}: {record.get('error')}", file=sys.stderr)
    print(f"{done} compressed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
