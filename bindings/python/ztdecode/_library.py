"""The shared object as ctypes sees it: the declarations of ztdecode_session.h."""

from __future__ import annotations

import ctypes
import os
import pathlib
import struct
import sysconfig
from ctypes import POINTER, Structure, c_char_p, c_int, c_size_t, c_uint32, c_uint64, c_void_p

# The enumerators that this package speaks of.
OK, DONE, REFUSED, NO_MEMORY = range(4)
FROM_SYSTEM, TO_SYSTEM = range(2)
LAYOUTS = ("auto", "line", "lng2", "zt", "spzt", "spzt-lng2")
COLOR, AUDIO_ONLY, DEBUG, PAD = 1, 2, 4, 8
FIELDS, WORDS = range(2)
NUMBER, WORD, FLAG = 0, 1, 5
LINE_KINDS = ("blank", "comment", "other", "messages", "refused")


class Options(Structure):
    _fields_ = [("size", c_size_t), ("flags", c_uint32), ("detail", c_int), ("layout", c_int), ("direction", c_int)]


class String(Structure):
    _fields_ = [("data", c_void_p), ("size", c_size_t)]

    def __str__(self) -> str:
        return text(self.data, self.size)


def text(data: int, size: int) -> str:
    """A zt_string."""
    return ctypes.string_at(data, size).decode("utf-8", "surrogateescape") if size else ""


# Records are read a structure at a time, which is several times quicker than a member at a time. P: a pointer, N: a size.
# zt_record: text, link, message, direction, outcome, code, length, unknown, missing, segments, bytes, padded, place, fields,
# words, parts, trace, complaints, left_over
RECORD_LAYOUT = struct.Struct("@PNPNPNiiqIIIIPNQQNNNPNPNQ0P")
# zt_field: name, unit, value, shown, kind, sensitivity, number, divisor, known, missing, begin, end, bytes
FIELD_LAYOUT = struct.Struct("@PNPNPNPNiiqIBBNNPN0P")
# zt_word: text, field, bytes, begin, end, missing
WORD_LAYOUT = struct.Struct("@PNPNPNNNB0P")


class Line(Structure):
    _fields_ = [
        ("kind", c_int),
        ("layout", c_int),
        ("content", String),
        ("columns", String),
        ("place", c_uint64),
        ("refusal", c_int),
        ("column", c_uint64),
        ("expected", c_uint64),
        ("found", c_uint64),
        ("reason", String),
        ("prefix", String),
        ("time", String),
        ("terminal", String),
    ]


SONAME = "libztdecode.so.5"


def _name() -> str:
    """The library that ZTDECODE_LIBRARY names, that under the prefix of this package, or as the loader finds it."""
    if named := os.environ.get("ZTDECODE_LIBRARY"):
        return named
    # PREFIX/lib/python3.11/dist-packages/ztdecode/_library.py
    folder = pathlib.Path(__file__).resolve().parents[3]
    for place in (folder / str(sysconfig.get_config_var("MULTIARCH")), folder):
        if (place / SONAME).exists():
            return str(place / SONAME)
    return SONAME


def _load() -> ctypes.CDLL:
    library = ctypes.CDLL(_name())
    record = c_void_p
    declarations: dict[str, tuple[object, list[object]]] = {
        "zt_version": (c_char_p, []),
        "zt_status_text": (c_char_p, [c_int]),
        "zt_session_create": (c_int, [POINTER(Options), POINTER(c_void_p)]),
        "zt_session_destroy": (None, [c_void_p]),
        "zt_decode": (c_int, [c_void_p, c_char_p, c_size_t, c_int, POINTER(record)]),
        "zt_feed_line": (c_int, [c_void_p, c_char_p, c_size_t, POINTER(POINTER(Line))]),
        "zt_next_message": (c_int, [c_void_p, POINTER(record)]),
        "zt_field_at": (c_void_p, [record, c_size_t]),
        "zt_word_at": (c_void_p, [record, c_size_t]),
        "zt_part_at": (record, [record, c_size_t]),
        "zt_segment_at": (c_uint64, [record, c_size_t]),
        "zt_outcome_name": (c_char_p, [c_int]),
        "zt_kind_name": (c_char_p, [c_int]),
        "zt_sensitivity_name": (c_char_p, [c_int]),
        "zt_refusal_name": (c_char_p, [c_int]),
    }
    for name, (result, arguments) in declarations.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library


library = _load()
