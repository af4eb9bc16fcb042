"""python3 -m ztdecode FILE...: the texts of trace files, as `ztdecode --no-input --color never` has them."""

from __future__ import annotations

import sys

from . import Line, open_trace


def _text(line: Line) -> str:
    if not line.records:
        return line.content + "\n"
    text = "\n".join(record.text for record in line.records)
    return text + "\n" if text and not text.endswith("\n") else text


def main(paths: list[str]) -> int:
    if not paths:
        print(__doc__, file=sys.stderr)
        return 2
    refused = False
    for path in paths:
        try:
            trace = open_trace(path)
        except OSError as error:
            print(f"ztdecode: {path}: {error.strerror}", file=sys.stderr)
            return 2
        for line in trace.lines():
            if line.refusal is None:
                sys.stdout.buffer.write(_text(line).encode("utf-8", "surrogateescape"))
            else:
                refused = True
                print(f"ztdecode: {path}:{line.place}: {line.refusal.reason}", file=sys.stderr)
    return 1 if refused else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
