#!/usr/bin/env python3
"""Decodes the traces of a folder on a Dask cluster: a database a worker, and what all of them hold as counts.

    dask-scheduler &
    dask-worker --nthreads 1 tcp://localhost:8786 &
    dask-worker --nthreads 1 tcp://localhost:8786 &
    python3 decode_folder.py tcp://localhost:8786 traces databases >counts.csv

Each worker needs the command `ztdecode`, and both folders under the same names. A trace is decoded as a whole, by one
worker. Where a worker is lost its traces are decoded by others; a trace that stands in two databases then counts once,
by its content. The counts are messages by link, name and status, as CSV.
"""

from __future__ import annotations

import argparse
import collections
import contextlib
import csv
import os
import pathlib
import re
import sqlite3
import subprocess
import sys

import distributed


def decode(traces: list[str], folder: str, command: str) -> str:
    """Adds the traces to the database of this worker process, and gives its name. Runs on a worker."""
    worker = re.sub(r"[^A-Za-z0-9.-]+", "-", str(distributed.get_worker().name))
    database = pathlib.Path(folder, f"{worker}-{os.getpid()}.db")
    asked = [command, "--database", str(database), *(["--append"] if database.exists() else []), "--", *traces]
    ended = subprocess.run(asked, stdin=subprocess.DEVNULL, stderr=subprocess.PIPE, check=False)
    # 1: lines were refused; the database has them too.
    if ended.returncode not in (0, 1):
        raise RuntimeError(ended.stderr.decode(errors="replace").strip())
    return str(database)


def batches(traces: list[pathlib.Path], count: int) -> list[list[str]]:
    """So many lists, as equal in bytes as they come, the largest traces first. Each costs its worker a copy of its
    database: few are quick, many lose little with a worker."""
    lists: list[list[str]] = [[] for _ in range(min(count, len(traces)))]
    sizes = [0] * len(lists)
    for trace in sorted(traces, key=lambda one: (-one.stat().st_size, one)):
        least = sizes.index(min(sizes))
        lists[least].append(str(trace))
        sizes[least] += trace.stat().st_size
    return lists


def counts_of(folder: pathlib.Path) -> dict[tuple[str, str, str], int]:
    """The messages of all databases by link, name and status, each trace once."""
    counts: dict[tuple[str, str, str], int] = collections.Counter()
    seen: set[str] = set()
    for path in sorted(folder.glob("*.db")):
        with contextlib.closing(sqlite3.connect(f"{path.resolve().as_uri()}?mode=ro", uri=True)) as database:
            new = [(file, content) for file, content in database.execute("select id, sha256 from files")
                   if content not in seen]
            seen.update(content for _, content in new)
            for file, _ in new:
                for *key, count in database.execute(
                    "select link, message, status, count(*) from messages where file_id = ? group by 1, 2, 3", [file]
                ):
                    counts[tuple("" if word is None else word for word in key)] += count
    return counts


def main() -> int:
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("scheduler", help="its address")
    arguments.add_argument("traces", type=pathlib.Path, help="the folder of traces; all files in it are decoded")
    arguments.add_argument("databases", type=pathlib.Path, help="the folder for databases; new or empty")
    arguments.add_argument("--command", default="ztdecode", help="the command on the workers (default: ztdecode)")
    arguments.add_argument("--batches", type=int, default=4, help="how many of them for each worker (default: 4)")
    asked = arguments.parse_args()

    traces = [path.resolve() for path in asked.traces.rglob("*") if path.is_file()]
    if not traces:
        sys.exit(f"{asked.traces}: no traces")
    asked.databases.mkdir(parents=True, exist_ok=True)
    if any(asked.databases.iterdir()):
        sys.exit(f"{asked.databases}: is not empty")

    with distributed.Client(asked.scheduler) as client:
        threads = client.nthreads()
        if not threads or any(count != 1 for count in threads.values()):
            sys.exit("workers have to be there, of one thread each (dask-worker --nthreads 1): a database has one writer")
        lists = batches(traces, asked.batches * len(threads))
        tasks = client.map(decode, lists, folder=str(asked.databases.resolve()), command=asked.command, pure=False)
        for done, task in enumerate(distributed.as_completed(tasks), 1):
            print(f"{done} of {len(lists)}: {task.result()}", file=sys.stderr)

    rows = csv.writer(sys.stdout, lineterminator="\n")
    rows.writerow(["link", "message", "status", "count"])
    rows.writerows([*key, count] for key, count in sorted(counts_of(asked.databases).items()))
    return 0


if __name__ == "__main__":
    sys.exit(main())
