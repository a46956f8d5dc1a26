#!/usr/bin/env python3
"""Independent reference for the form decoder, built on urllib.parse.

Each input line holds one request: the body and the query string, both as hex ("-" when
empty). For each request one output line lists the decoded pairs in order, each as
hex(name):hex(value), separated by blanks: the body's pairs first, then the query string's.
Decoding order is fixed: split at '&' and '=', then '+' to blank, then %XX (which is what
unquote_plus does), bytes taken as Latin-1 so that every byte survives.
"""
import sys
from urllib.parse import unquote_plus


def pairs_of(text):
    if not text:
        return []
    out = []
    for segment in text.split("&"):
        name, _, value = segment.partition("=")
        name = unquote_plus(name, encoding="latin-1")[:127]
        value = unquote_plus(value, encoding="latin-1")[:4095]
        out.append((name, value))
    return out


def unhex(field):
    return "" if field == "-" else bytes.fromhex(field).decode("latin-1")


def hexed(text):
    return text.encode("latin-1").hex().upper()


for line in sys.stdin:
    body_hex, query_hex = line.split()
    pairs = pairs_of(unhex(body_hex)) + pairs_of(unhex(query_hex))
    print(" ".join(hexed(n) + ":" + hexed(v) for n, v in pairs))
