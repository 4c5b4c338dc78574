"""The other application that uses the data files, in the plainest way: it knows the format of the
files and the agreement on the counter of users, and nothing of Quillary. Does what the lines of its
standard input say, and answers each with one line."""

import os
import sys

HEADER, SECTION, COUNTER = "quill.dat", "General Info", "NoOfUses"


def value(name, section, key):
    current = ""
    with open(name, encoding="utf-8", newline="") as file:
        for line in file.read().splitlines():
            if line.startswith("["):
                current = line.strip("[]")
            elif current == section and line.startswith(key + "="):
                return line[len(key) + 1 :]
    return ""


def put(name, section, key, text):
    with open(name, encoding="utf-8", newline="") as file:
        lines = file.read().split("\r\n")
    begin = lines.index(f"[{section}]") + 1
    end = begin
    while end < len(lines) and lines[end] and not lines[end].startswith("["):
        if lines[end].startswith(key + "="):
            break
        end += 1
    is_there = end < len(lines) and lines[end].startswith(key + "=")
    lines[end : end + is_there] = [f"{key}={text}"]
    store(name, "\r\n".join(lines).encode())


def store(name, data):
    """Writes the file as programs do: over its own bytes, emptied first, or another in its place."""
    if style == "rename":
        with open("companion.tmp", "wb") as file:
            file.write(data)
        os.rename("companion.tmp", name)
        return
    handle = os.open(name, os.O_WRONLY | (os.O_TRUNC if style == "empty" else 0))
    os.write(handle, data)
    os.ftruncate(handle, len(data))
    os.close(handle)


def users():
    return int(value(HEADER, SECTION, COUNTER) or 0)


def count(by):
    before = users()
    put(HEADER, SECTION, COUNTER, str((max(before, 0) if by > 0 else before) + by))
    return before


style = "over"
os.chdir(sys.argv[1])
for command in sys.stdin:
    what, *rest = command.rstrip("\n").split("\t")
    answer = "done"
    if what == "style":
        style = rest[0]
    elif what == "start":
        answer = count(1)
    elif what == "end":
        answer = count(-1)
    elif what == "read":
        answer = value(*rest)
    elif what == "write":
        # What the agreement asks of both: nothing is changed while there are two.
        if users() >= 2:
            answer = "in use"
        else:
            put(*rest)
    elif what == "come and go":
        for _ in range(int(rest[0])):
            count(1)
            count(-1)
    print(answer, flush=True)
