"""The example for Dask: two workers, one of which is killed on the way, count what one process counts. ZTDECODE is the
command, MAKE_TRACE makes traces, SOURCE has the sources."""

import contextlib
import json
import os
import pathlib
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time
import unittest

COMMAND = os.environ["ZTDECODE"]
EXAMPLE = pathlib.Path(os.environ["SOURCE"]) / "examples/dask/decode_folder.py"
TRACES = 48


def wait_for(what, seconds=60):
    """The first true value that `what` gives."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if found := what():
            return found
        time.sleep(0.02)
    raise AssertionError("waited in vain")


def contents(database):
    """Which traces stand in it."""
    with contextlib.closing(sqlite3.connect(f"{database.as_uri()}?mode=ro", uri=True)) as opened:
        return {content for (content,) in opened.execute("select sha256 from files")}


class Cluster:
    """A scheduler and workers of one thread each."""

    def __init__(self, folder):
        self._folder = folder
        self._log = open(folder / "log", "wb")
        self._processes = []
        self._environment = {**os.environ, "DASK_DISTRIBUTED__COMM__TIMEOUTS__CONNECT": "60s"}
        self.scheduler = folder / "scheduler.json"
        self._start("dask_scheduler", "--port", "0", "--no-dashboard", "--scheduler-file", str(self.scheduler))
        self.address = json.loads(wait_for(lambda: self.scheduler.exists() and self.scheduler.read_text()))["address"]

    def _start(self, program, *options):
        started = subprocess.Popen(
            [sys.executable, "-W", "ignore", "-m", f"distributed.cli.{program}", "--host", "127.0.0.1", *options],
            cwd=self._folder, env=self._environment, stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log)
        self._processes.append(started)
        return started

    def add_worker(self, name):
        return self._start("dask_worker", "--nthreads", "1", "--no-nanny", "--no-dashboard", "--name", name,
                           "--local-directory", str(self._folder / name), self.address)

    def wait_for_workers(self, count):
        import distributed
        with distributed.Client(self.address) as client:
            client.wait_for_workers(count, timeout=60)

    def close(self):
        for process in reversed(self._processes):
            process.kill()
            process.wait()
        self._log.close()


class DecodeFolder(unittest.TestCase):
    def setUp(self):
        self._temporary = tempfile.TemporaryDirectory()
        self.addCleanup(self._temporary.cleanup)
        self.folder = pathlib.Path(self._temporary.name)
        self.traces = self.folder / "traces"
        self.traces.mkdir()
        for k in range(TRACES):
            made = subprocess.run([os.environ["MAKE_TRACE"], str(4000 + 50 * k)], stdout=subprocess.PIPE, check=True)
            (self.traces / f"{k:02}.spzt").write_bytes(made.stdout)
        (self.traces / "00.spzt").write_bytes((self.traces / "00.spzt").read_bytes() + b"000001S 03 21 04\n")
        self.databases = self.folder / "databases"
        self.cluster = Cluster(self.folder)
        self.addCleanup(self.cluster.close)

    def run_example(self, *more):
        return subprocess.Popen(
            [sys.executable, "-W", "ignore", str(EXAMPLE), self.cluster.address, str(self.traces), str(self.databases),
             "--command", COMMAND, *more],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def counts_of_one_process(self):
        query = ("select coalesce(link, '') as link, coalesce(message, '') as message, status, count(*) as count "
                 "from messages group by 1, 2, 3 order by 1, 2, 3")
        asked = subprocess.run([COMMAND, "--format", "csv", "--sql", query, *map(str, self.traces.iterdir())],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=False)
        self.assertIn(asked.returncode, (0, 1))
        return asked.stdout.replace("\r\n", "\n").replace('""', "")

    def test_a_worker_that_is_killed_takes_nothing_along(self):
        workers = {name: self.cluster.add_worker(name) for name in ("first", "second")}
        self.cluster.wait_for_workers(2)
        example = self.run_example("--batches", "12")
        # The first one has brought a batch home and is at work on others.
        [lost] = wait_for(lambda: list(self.databases.glob("first-*.db")))
        workers["first"].send_signal(signal.SIGKILL)
        self.assertIsNone(example.poll(), "all was done before the worker was killed")
        counts, progress = example.communicate(timeout=120)
        self.assertEqual(example.returncode, 0, progress)
        self.assertEqual(counts, self.counts_of_one_process())
        self.assertGreater(sum(int(row.rpartition(",")[2]) for row in counts.splitlines()[1:]), 4000 * TRACES)

        # Both had a part in it.
        kept = {database: contents(database) for database in self.databases.glob("*.db")}
        self.assertEqual(len(set().union(*kept.values())), TRACES)
        self.assertEqual(len(kept), 2)
        self.assertTrue(0 < len(kept[lost]) < TRACES)

    def test_what_cannot_be_done_is_said(self):
        self.cluster.add_worker("only")
        self.cluster.wait_for_workers(1)
        example = self.run_example("--command", "/no/such/command")
        _, said = example.communicate(timeout=60)
        self.assertNotEqual(example.returncode, 0)
        self.assertIn("/no/such/command", said)

        self.databases.mkdir(exist_ok=True)
        (self.databases / "old.db").write_bytes(b"")
        example = self.run_example()
        _, said = example.communicate(timeout=60)
        self.assertNotEqual(example.returncode, 0)
        self.assertIn("is not empty", said)


if __name__ == "__main__":
    unittest.main()
