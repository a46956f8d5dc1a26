#!/usr/bin/env python3
"""Reads one JSON document on standard input and prints every leaf as `path<TAB>value`, in
document order, paths written like the field tables (`fwurl.element[3].name`), and a line
`path#len<TAB>n` for every array.

Exit status 3: not valid JSON (the parser's message is printed); 4: a value that is not a
string; 5: a key repeated inside one object."""
import json
import sys


class Object(list):
    """An object as the list of its (key, value) pairs, in the document's order."""


def object_from_pairs(pairs):
    keys = [k for k, _ in pairs]
    for k in keys:
        if keys.count(k) > 1:
            print(f"repeated key: {k}")
            sys.exit(5)
    return Object(pairs)


def walk(value, path, out):
    if isinstance(value, Object):
        for key, child in value:
            walk(child, f"{path}.{key}" if path else key, out)
    elif isinstance(value, list):
        out.append(f"{path}#len\t{len(value)}")
        for i, child in enumerate(value):
            walk(child, f"{path}[{i}]", out)
    elif isinstance(value, str):
        out.append(f"{path}\t{value}")
    else:
        print(f"not a string: {path}")
        sys.exit(4)


text = sys.stdin.buffer.read().decode("latin-1")
try:
    document = json.loads(text, object_pairs_hook=object_from_pairs)
except ValueError as e:
    print(f"invalid: {e}")
    sys.exit(3)
lines = []
walk(document, "", lines)
print("\n".join(lines))
