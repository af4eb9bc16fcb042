"""The shared object as ctypes sees it: the declarations of ztdecode_session.h."""

from __future__ import annotations

import ctypes
import os
import pathlib
import sysconfig
from ctypes import POINTER, Structure, c_char_p, c_int, c_int64, c_size_t, c_uint8, c_uint32, c_uint64, c_void_p

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

    def raw(self) -> bytes:
        return ctypes.string_at(self.data, self.size) if self.size else b""

    def __str__(self) -> str:
        return self.raw().decode("utf-8", "surrogateescape")


class Bytes(Structure):
    _fields_ = [("data", c_void_p), ("size", c_size_t)]


class Range(Structure):
    _fields_ = [("first", c_uint32), ("last", c_uint32)]


class Ranges(Structure):
    _fields_ = [("data", POINTER(Range)), ("size", c_size_t)]


class Record(Structure):
    _fields_ = [
        ("text", String),
        ("link", String),
        ("message", String),
        ("direction", c_int),
        ("outcome", c_int),
        ("code", c_int64),
        ("length", c_uint32),
        ("unknown", c_uint32),
        ("missing", c_uint32),
        ("segments", c_uint32),
        ("bytes", Bytes),
        ("padded", c_uint64),
        ("place", c_uint64),
        ("fields", c_size_t),
        ("words", c_size_t),
        ("parts", c_size_t),
        ("trace", String),
        ("complaints", String),
        ("left_over", c_uint64),
    ]


class Field(Structure):
    _fields_ = [
        ("name", String),
        ("unit", String),
        ("value", String),
        ("shown", String),
        ("kind", c_int),
        ("sensitivity", c_int),
        ("number", c_int64),
        ("divisor", c_uint32),
        ("known", c_uint8),
        ("missing", c_uint8),
        ("begin", c_size_t),
        ("end", c_size_t),
        ("bytes", Ranges),
    ]


class Word(Structure):
    _fields_ = [
        ("text", String),
        ("field", String),
        ("bytes", Ranges),
        ("begin", c_size_t),
        ("end", c_size_t),
        ("missing", c_uint8),
    ]


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
    record = POINTER(Record)
    declarations: dict[str, tuple[object, list[object]]] = {
        "zt_version": (c_char_p, []),
        "zt_status_text": (c_char_p, [c_int]),
        "zt_session_create": (c_int, [POINTER(Options), POINTER(c_void_p)]),
        "zt_session_destroy": (None, [c_void_p]),
        "zt_decode": (c_int, [c_void_p, c_char_p, c_size_t, c_int, POINTER(record)]),
        "zt_feed_line": (c_int, [c_void_p, c_char_p, c_size_t, POINTER(POINTER(Line))]),
        "zt_next_message": (c_int, [c_void_p, POINTER(record)]),
        "zt_field_at": (POINTER(Field), [record, c_size_t]),
        "zt_word_at": (POINTER(Word), [record, c_size_t]),
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
