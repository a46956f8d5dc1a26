#!/usr/bin/env python3
"""The reference for the IPv6 and bridge probes: `ip -j` output on standard input, printed
as the test's normalised lines (one per item, sorted), using Python's own json and
ipaddress modules rather than anything of the library's."""
import ipaddress
import json
import sys

SCOPES = {"global": 0, "host": 0x10, "link": 0x20}


def addr(text):
    return ipaddress.IPv6Address(text).compressed


def main(mode):
    data = json.load(sys.stdin)
    lines = []
    if mode == "members":
        lines = [link["ifname"] for link in data]
    elif mode == "addrs":
        for link in data:
            for a in link.get("addr_info", []):
                if a.get("family") == "inet6":
                    lines.append(f'{addr(a["local"])} {a["prefixlen"]} {SCOPES[a["scope"]]}')
    elif mode == "routes":
        for r in data:
            dst = "::/0" if r["dst"] == "default" else r["dst"]
            net = ipaddress.IPv6Network(dst if "/" in dst else dst + "/128", strict=False)
            gateway = addr(r.get("gateway", "::"))
            lines.append(f"{net.network_address.compressed} {net.prefixlen} {gateway} {r['metric']}")
    for line in sorted(lines):
        print(line)


main(sys.argv[1])
