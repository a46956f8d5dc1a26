#!/usr/bin/env python3
"""Reads one JSON document on standard input and prints every leaf as `path<TAB>value`, in
document order, paths written like the field tables (`fwurl.element[3].name`), and a line
`path#len<TAB>n` for every array.

Exit status 3: not valid JSON (the parser's message is printed); 4: a value that is not a
string; 5: a key repeated inside one object.

Options name the departures a view document is allowed on purpose:
  --trailing-commas  a comma before a closing brace (the client views' objects);
  --keep-last        a key repeated in one object, the last occurrence kept (the station
                     view's "mark" members); `path#repeats<TAB>n` is printed for each."""
import json
import re
import sys

trailing = "--trailing-commas" in sys.argv
keep_last = "--keep-last" in sys.argv


class Object(dict):
    """An object's members in the document's order, and how often each repeated key came."""


def object_from_pairs(pairs):
    seen = {}
    for k, _ in pairs:
        seen[k] = seen.get(k, 0) + 1
    repeated = [k for k, n in seen.items() if n > 1]
    if repeated and not keep_last:
        print(f"repeated key: {repeated[0]}")
        sys.exit(5)
    obj = Object(pairs)
    obj.repeats = {k: seen[k] for k in repeated}
    return obj


def walk(value, path, out):
    if isinstance(value, Object):
        for key, n in value.repeats.items():
            out.append(f"{path}.{key}#repeats\t{n}" if path else f"{key}#repeats\t{n}")
        for key, child in value.items():
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
if trailing:
    # Only a comma that directly follows a string value and precedes "}" is the documented
    # departure; the pattern works on the text outside strings by matching strings whole.
    text = re.sub(r'("(?:[^"\\]|\\.)*")|,(?=\})', lambda m: m.group(1) or "", text)
try:
    document = json.loads(text, object_pairs_hook=object_from_pairs)
except ValueError as e:
    print(f"invalid: {e}")
    sys.exit(3)
lines = []
walk(document, "", lines)
print("\n".join(lines))
