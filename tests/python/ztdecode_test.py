"""The Python package, held against the golden records. ZTDECODE_LIBRARY names the shared object, SOURCE the sources."""

import json
import os
import pathlib
import pickle
import subprocess
import sys
import tempfile
import unittest
import warnings

import ztdecode

SOURCE = pathlib.Path(os.environ["SOURCE"])
GOLDEN = SOURCE / "tests/golden"


def traces():
    """Each golden trace with its options."""
    for trace in sorted([*GOLDEN.iterdir(), *(SOURCE / "examples").iterdir()]):
        if trace.suffix not in (".spzt", ".zt", ".lng2"):
            continue
        options = (GOLDEN / trace.name).with_suffix(".options")
        to_system = options.exists() and "--direction to" in options.read_text()
        yield trace, {"direction": "to" if to_system else "from"}


def as_json(text):
    """A string of JSON has U+FFFD for each byte that is no UTF-8."""
    return "".join("\ufffd" if "\udc80" <= c <= "\udcff" else c for c in text)


def value_as_json(value):
    if isinstance(value, tuple):
        return [value_as_json(one) for one in value]
    return as_json(value) if isinstance(value, str) else value


def record_as_json(record):
    """The keys of docs/records.md that a record has by itself."""
    keys = {
        "direction": record.direction,
        "link": record.link,
        "message": record.message,
        "code": record.code,
        "status": record.outcome,
        "length": record.length,
        "bytes": record.bytes.hex(),
        "text": as_json(record.text),
        "fields": {name: value_as_json(value) for name, value in record.fields.items()},
        "unknown": record.unknown,
        "missing": record.missing,
        "parts": [record_as_json(part) for part in record.parts],
    }
    if record.segments:
        keys["segments"] = list(record.segments)
    if record.padded:
        keys["padded"] = record.padded
    return keys


def details_as_json(record):
    return {
        "words": [
            {
                "text": as_json(word.text),
                "begin": word.begin,
                "end": word.end,
                "bytes": [list(pair) for pair in word.bytes],
                **({"field": word.field} if word.field else {}),
                **({"missing": True} if word.missing else {}),
            }
            for word in record.words
        ],
        "fields_detail": [
            {
                "name": field.name,
                "kind": field.kind,
                "value": value_as_json(field.value),
                "unit": field.unit,
                "code": field.code,
                "known": field.known,
                "missing": field.missing,
                "sensitivity": field.sensitivity,
                "begin": field.begin,
                "end": field.end,
                "bytes": [list(pair) for pair in field.bytes],
            }
            for field in record.details
        ],
    }


def without(keys, *names):
    """The object and its parts without these keys."""
    kept = {name: value for name, value in keys.items() if name not in names}
    if "parts" in kept:
        kept["parts"] = [without(part, *names) for part in kept["parts"]]
    return kept


class GoldenTraces(unittest.TestCase):
    def test_records(self):
        compared = 0
        for trace, options in traces():
            expected = (GOLDEN / trace.name).with_suffix(".ndjson").read_text().splitlines()
            expected = [json.loads(line) for line in expected]
            expected = [one for one in expected if one["kind"] == "message"]
            with self.subTest(trace.name):
                places = [one["line"] for one in expected]
                records = list(ztdecode.open_trace(trace, **options))
                self.assertEqual([record.place for record in records], places)
                for record, one in zip(records, expected):
                    known = without(one, "kind", "file", "line", "columns", "time")
                    self.assertEqual(record_as_json(record), known)
                compared += len(records)
        self.assertGreater(compared, 1000)

    def test_words_and_details(self):
        expected = [json.loads(line) for line in (GOLDEN / "explained.explained.ndjson").read_text().splitlines()]
        expected = [one for one in expected if one["kind"] == "message"]
        records = list(ztdecode.open_trace(GOLDEN / "explained.spzt", words=True))
        self.assertEqual(len(records), len(expected))
        for record, one in zip(records, expected):
            self.assertEqual(details_as_json(record), {name: one[name] for name in ("words", "fields_detail")})

    def test_texts_of_the_module_as_a_program(self):
        program = [sys.executable, "-m", "ztdecode", str(SOURCE / "examples/office.spzt")]
        ended = subprocess.run(program, capture_output=True, check=False)
        self.assertEqual((ended.returncode, ended.stderr), (0, b""))
        self.assertEqual(ended.stdout, (GOLDEN / "office.expected").read_bytes())


class Sessions(unittest.TestCase):
    def test_one_message(self):
        record = ztdecode.decode(b"\x21\x04\x03")
        self.assertEqual(record.text, "\t- green led 3 ON")
        self.assertEqual(record.fields, {"led": 3})
        self.assertEqual(record.details[0].bytes, ((2, 2),))
        self.assertEqual(ztdecode.decode(bytearray(b"\x2a")).text, "\t- version inquiry")

    def test_tenths_are_floats(self):
        record = ztdecode.decode(bytes.fromhex("2911fa08"))
        levels = [field.value for field in record.details if field.unit == "dB"]
        self.assertEqual(levels, [-3.0, 4.0])

    def test_a_name_that_stands_twice_has_a_tuple(self):
        record = ztdecode.decode(bytes.fromhex("0b032104030321 0405"))
        self.assertEqual(record.fields["part_length"], (3, 3))
        self.assertEqual([part.fields["led"] for part in record.parts], [3, 5])

    def test_records_are_pickled_and_stay(self):
        with ztdecode.Session(words=True) as session:
            record = session.decode(bytes.fromhex("1410210403"))
            again = pickle.loads(pickle.dumps(record))
            session.decode(b"\x2a")
        self.assertEqual(again, record)
        self.assertEqual(again.parts[0].fields, {"led": 3})
        self.assertEqual("".join(word.text for word in again.words), record.text)

    def test_lines(self):
        session = ztdecode.Session()
        line = session.feed("081211S 03 21 04 03\n")
        self.assertEqual((line.kind, line.layout, line.columns), ("messages", "spzt", "081211"))
        self.assertEqual([record.text for record in line.records], ["\t- green led 3 ON"])
        self.assertEqual(len(session.feed(b"01 00 2a 03 00 21 04 03").records), 2)
        self.assertEqual(session.feed("# comment").kind, "comment")
        self.assertEqual(session.feed("").kind, "blank")
        self.assertEqual(session.feed("words").kind, "other")
        refused = session.feed("081231S 03 21 04")
        self.assertEqual(refused.kind, "refused")
        self.assertEqual(
            refused.refusal, ztdecode.Refusal("too_short", "-> line too short", column=9, expected=3, found=2)
        )

    def test_bytes_that_are_no_utf8_come_back(self):
        line = b"no trace \xff\xfe line"
        self.assertEqual(ztdecode.Session().feed(line).content.encode("utf-8", "surrogateescape"), line)

    def test_refused_lines_are_warned_of(self):
        with tempfile.NamedTemporaryFile() as trace:
            trace.write(b"01 2a\n081231S 03 21 04\n01 2a\n")
            trace.flush()
            with self.assertWarnsRegex(ztdecode.RefusedLineWarning, ":2: -> line too short"):
                self.assertEqual(len(list(ztdecode.open_trace(trace.name))), 2)
            with warnings.catch_warnings():
                warnings.simplefilter("error")
                kinds = [line.kind for line in ztdecode.open_trace(trace.name).lines()]
            self.assertEqual(kinds, ["messages", "refused", "messages"])

    def test_errors(self):
        with self.assertRaises(ValueError):
            ztdecode.Session(layout="any")
        with self.assertRaises(ValueError):
            ztdecode.decode(b"\x2a", "sideways")
        with self.assertRaises(TypeError):
            ztdecode.decode("2a")
        with self.assertRaises(FileNotFoundError):
            ztdecode.open_trace("no such trace")
        session = ztdecode.Session()
        session.close()
        with self.assertRaises(ztdecode.Error) as caught:
            session.decode(b"\x2a")
        self.assertEqual(caught.exception.status, 4)
        self.assertEqual(pickle.loads(pickle.dumps(caught.exception)).status, 4)


if __name__ == "__main__":
    unittest.main()
