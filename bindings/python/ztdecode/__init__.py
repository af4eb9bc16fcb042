"""Readable texts and data for the signalling between a telephone system and its terminals.

    import ztdecode

    record = ztdecode.decode(bytes.fromhex("210403"))
    print(record.text)        # "\\t- green led 3 ON"
    print(record.fields)      # {'led': 3}

    for record in ztdecode.open_trace("office.spzt"):
        print(record.place, record.message, record.fields)

A session remembers what one message teaches the next: give all messages of one trace to one session, which is used by
one thread at a time. What it gives is copied out of the library: it stays, can be compared and pickled.

Texts hold bytes of messages as they came. What of them is not UTF-8 is in the strings as `surrogateescape` has it:
text.encode("utf-8", "surrogateescape") gives the bytes back. Offsets count in these bytes.

The words for kinds, outcomes, directions and so on are those of `ztdecode --format ndjson`, see docs/records.md. The
shared object is what the environment variable ZTDECODE_LIBRARY names, that under the prefix where the package is
installed, or libztdecode.so.5 as the loader finds it.
"""

from __future__ import annotations

import ctypes
import functools
import os
import struct
import warnings
import weakref
from collections.abc import Iterator, Mapping
from dataclasses import dataclass
from typing import Any, TypeVar, Union

from . import _library
from ._library import library as _lib

__all__ = [
    "Error",
    "Field",
    "Line",
    "Record",
    "Refusal",
    "RefusedLineWarning",
    "Session",
    "Trace",
    "Value",
    "Word",
    "decode",
    "open_trace",
    "version",
]

Value = Union[bool, int, float, str]

_at = ctypes.string_at
_text = _library.text


class Error(Exception):
    """The library said no; `status` is its number for why."""

    def __init__(self, status: int) -> None:
        super().__init__(_lib.zt_status_text(status).decode())
        self.status = status

    def __reduce__(self) -> tuple[type[Error], tuple[int]]:
        return type(self), (self.status,)


class RefusedLineWarning(UserWarning):
    """A trace line could not be read."""


@dataclass(frozen=True)
class Field:
    """A value that a text shows."""

    name: str
    value: Value  # numbers and flags as such, bytes as hexadecimal digits, all others as strings
    kind: str
    unit: str | None
    shown: str  # as it stands in the text
    code: int | None  # of a word
    known: bool
    missing: bool  # a byte of it lies behind the message's end
    sensitivity: str
    begin: int  # in the text, in bytes
    end: int
    bytes: tuple[tuple[int, int], ...]  # first and last offset in the message


@dataclass(frozen=True)
class Word:
    """A piece of a text, with the bytes of the message that it comes from."""

    text: str
    field: str | None  # the name of the value that it is
    begin: int
    end: int
    missing: bool
    bytes: tuple[tuple[int, int], ...]


@dataclass(frozen=True)
class Record:
    """What a message said. `parts` are the messages that it carries."""

    text: str
    link: str | None
    message: str | None
    direction: str
    outcome: str
    code: int | None
    length: int
    bytes: bytes
    unknown: int
    missing: int
    padded: int
    left_over: int  # words behind the message in its line that its length does not count
    place: int  # the line of a trace, or how many calls of Session came before
    segments: tuple[int, ...]  # the places of the segments that it was put together from
    details: tuple[Field, ...]
    words: tuple[Word, ...]
    parts: tuple[Record, ...]
    trace: str
    complaints: str

    @functools.cached_property
    def fields(self) -> Mapping[str, Value | tuple[Value, ...]]:
        """The values by their names, in the order of the text; a tuple where a name stands several times."""
        values: dict[str, list[Value]] = {}
        for field in self.details:
            values.setdefault(field.name, []).append(field.value)
        return {name: found[0] if len(found) == 1 else tuple(found) for name, found in values.items()}


@dataclass(frozen=True)
class Refusal:
    """Why a line is refused."""

    name: str
    reason: str
    column: int  # from 1 on
    expected: int
    found: int


@dataclass(frozen=True)
class Line:
    """What a line of a trace holds."""

    kind: str  # "blank", "comment", "other", "messages" or "refused"
    layout: str | None
    content: str
    columns: str | None
    place: int
    records: tuple[Record, ...]
    refusal: Refusal | None  # behind the records, where there are any
    prefix: str | None = None  # what a log wrote in front of the message, and what of it is the time ...
    time: str | None = None
    terminal: str | None = None


def version() -> str:
    """The version of the shared object."""
    return str(_lib.zt_version().decode())


def _check(status: int) -> None:
    if status == _library.NO_MEMORY:
        raise MemoryError("no memory for this message")
    if status != _library.OK:
        raise Error(status)


@functools.lru_cache(maxsize=256)
def _name(function: str, value: int) -> str:
    """The library's word for a number; the number itself where a newer library has one that has none here."""
    name = getattr(_lib, function)(value)
    return str(value) if name is None else str(name.decode())


_Made = TypeVar("_Made")


def _made(kind: type[_Made], /, **members: object) -> _Made:
    """An object of a frozen class, whose own way sets a member after the other."""
    one = object.__new__(kind)
    object.__setattr__(one, "__dict__", members)
    return one


def _ranges(data: int, size: int) -> tuple[tuple[int, int], ...]:
    if not size:
        return ()
    ends = struct.unpack(f"@{2 * size}I", _at(data, 8 * size))
    return tuple(zip(ends[::2], ends[1::2]))


def _field(address: int) -> Field:
    (name, name_size, unit, unit_size, value, value_size, shown, shown_size, kind, sensitivity, number, divisor, known,
     missing, begin, end, ranges, ranges_size) = _library.FIELD_LAYOUT.unpack(_at(address, _library.FIELD_LAYOUT.size))
    found: Value
    if kind == _library.NUMBER:
        found = number if divisor == 1 else number / divisor
    elif kind == _library.FLAG:
        found = bool(number)
    else:
        found = _text(value, value_size)
    return _made(
        Field,
        name=_text(name, name_size),
        value=found,
        kind=_name("zt_kind_name", kind),
        unit=_text(unit, unit_size) or None,
        shown=_text(shown, shown_size),
        code=number if kind == _library.WORD else None,
        known=bool(known),
        missing=bool(missing),
        sensitivity=_name("zt_sensitivity_name", sensitivity),
        begin=begin,
        end=end,
        bytes=_ranges(ranges, ranges_size),
    )


def _word(address: int) -> Word:
    text, text_size, field, field_size, ranges, ranges_size, begin, end, missing = _library.WORD_LAYOUT.unpack(
        _at(address, _library.WORD_LAYOUT.size)
    )
    return _made(
        Word,
        text=_text(text, text_size),
        field=_text(field, field_size) or None,
        begin=begin,
        end=end,
        missing=bool(missing),
        bytes=_ranges(ranges, ranges_size),
    )


def _record(address: Any) -> Record:
    (text, text_size, link, link_size, message, message_size, direction, outcome, code, length, unknown, missing, segments,
     data, size, padded, place, fields, words, parts, trace, trace_size, complaints, complaints_size,
     left_over) = (
        _library.RECORD_LAYOUT.unpack(_at(address, _library.RECORD_LAYOUT.size))
    )
    return _made(
        Record,
        text=_text(text, text_size),
        link=_text(link, link_size) or None,
        message=_text(message, message_size) or None,
        direction="from" if direction == _library.FROM_SYSTEM else "to",
        outcome=_name("zt_outcome_name", outcome),
        code=None if code < 0 else code,
        length=length,
        bytes=_at(data, size) if size else b"",
        unknown=unknown,
        missing=missing,
        padded=padded,
        left_over=left_over,
        place=place,
        segments=tuple([_lib.zt_segment_at(address, k) for k in range(segments)]) if segments else (),
        details=tuple([_field(_lib.zt_field_at(address, k)) for k in range(fields)]),
        words=tuple([_word(_lib.zt_word_at(address, k)) for k in range(words)]) if words else (),
        parts=tuple([_record(_lib.zt_part_at(address, k)) for k in range(parts)]) if parts else (),
        trace=_text(trace, trace_size),
        complaints=_text(complaints, complaints_size),
    )


def _direction(direction: str) -> int:
    try:
        return {"from": _library.FROM_SYSTEM, "to": _library.TO_SYSTEM}[direction]
    except KeyError:
        raise ValueError(f'direction is "from" (the system) or "to" it, not {direction!r}') from None


class Session:
    """What the library remembers from one message to the next. Used by one thread at a time."""

    def __init__(
        self,
        *,
        layout: str = "auto",
        direction: str = "from",
        words: bool = False,
        audio_only: bool = False,
        debug: bool = False,
        color: bool = False,
        pad: bool = False,
    ) -> None:
        """`layout` and `direction` are those of lines, and of those lines whose layout does not say it; `words`:
        records have words; `pad`: bytes that a line lacks are taken as 0xff."""
        if layout not in _library.LAYOUTS:
            raise ValueError(f"layout is one of {', '.join(_library.LAYOUTS)}, not {layout!r}")
        options = _library.Options(
            size=ctypes.sizeof(_library.Options),
            flags=(color and _library.COLOR)
            | (audio_only and _library.AUDIO_ONLY)
            | (debug and _library.DEBUG)
            | (pad and _library.PAD),
            detail=_library.WORDS if words else _library.FIELDS,
            layout=_library.LAYOUTS.index(layout),
            direction=_direction(direction),
        )
        handle = ctypes.c_void_p()
        _check(_lib.zt_session_create(ctypes.byref(options), ctypes.byref(handle)))
        self._handle = handle
        self._destroy = weakref.finalize(self, _lib.zt_session_destroy, handle)

    def close(self) -> None:
        """Gives the memory back now; nothing can be decoded any more."""
        self._destroy()
        self._handle = ctypes.c_void_p()

    def __enter__(self) -> Session:
        return self

    def __exit__(self, *raised: object) -> None:
        self.close()

    def decode(self, message: bytes, direction: str = "from") -> Record:
        """What a message said, as it was captured, without length bytes."""
        record = ctypes.c_void_p()
        data = memoryview(message).tobytes()
        _check(_lib.zt_decode(self._handle, data, len(data), _direction(direction), ctypes.byref(record)))
        return _record(record.value)

    def feed(self, line: str | bytes) -> Line:
        """A line of a trace, with all that its messages said."""
        data = line.encode("utf-8", "surrogateescape") if isinstance(line, str) else memoryview(line).tobytes()
        fed = ctypes.POINTER(_library.Line)()
        _check(_lib.zt_feed_line(self._handle, data, len(data), ctypes.byref(fed)))
        records = tuple(self._messages())
        return _line(fed.contents, records)

    def _messages(self) -> Iterator[Record]:
        record = ctypes.c_void_p()
        while (status := _lib.zt_next_message(self._handle, ctypes.byref(record))) == _library.OK:
            yield _record(record.value)
        if status not in (_library.DONE, _library.REFUSED):
            _check(status)


def _line(line: Any, records: tuple[Record, ...]) -> Line:
    refusal = None
    if line.refusal != 0:
        refusal = Refusal(
            name=_name("zt_refusal_name", line.refusal),
            reason=str(line.reason),
            column=line.column,
            expected=line.expected,
            found=line.found,
        )
    return Line(
        kind=_library.LINE_KINDS[line.kind],
        layout=_library.LAYOUTS[line.layout] if line.layout != 0 else None,
        content=str(line.content),
        columns=str(line.columns) or None,
        place=line.place,
        records=records,
        refusal=refusal,
        prefix=str(line.prefix) or None,
        time=str(line.time) or None,
        terminal=str(line.terminal) or None,
    )


def decode(message: bytes, direction: str = "from") -> Record:
    """What one message said that stands for itself, as a session that saw no other has it."""
    with Session() as session:
        return session.decode(message, direction)


class Trace:
    """A trace file: gives its records one after the other, by `lines` its lines. Refused lines are warned of (see
    RefusedLineWarning) where the records alone are asked for. The file is closed at its end, by `close` or by `with`."""

    def __init__(self, path: str | os.PathLike[str], **options: Any) -> None:
        self._name = os.fspath(path)
        self._session = Session(**options)
        self._file = open(path, "rb")

    def lines(self) -> Iterator[Line]:
        with self._file:
            for line in self._file:
                yield self._session.feed(line)

    def __iter__(self) -> Iterator[Record]:
        for line in self.lines():
            yield from line.records
            if line.refusal is not None:
                warnings.warn(
                    f"{self._name}:{line.place}: {line.refusal.reason}", RefusedLineWarning, stacklevel=2
                )

    def close(self) -> None:
        self._file.close()

    def __enter__(self) -> Trace:
        return self

    def __exit__(self, *raised: object) -> None:
        self.close()


def open_trace(path: str | os.PathLike[str], **options: Any) -> Trace:
    """A plain trace file, of any layout; the options are those of Session."""
    return Trace(path, **options)
