#!/usr/bin/env python3
"""Lease files of the DHCP server built with struct, and what a reader must make of them.

  lease_files.py legacy PATH SEED COUNT   24-byte records (MAC in 16 bytes, address, expiry)
  lease_files.py server PATH SEED COUNT   8-byte header, 36-byte records (expiry, address,
                                          MAC, 20-byte name, 2 bytes padding)

Prints the hosts a reader lists, in file order, one "MAC IP EXPIRES NAME" line each, then
"--" and the same hosts in the list's documented order: by the address word as stored (in
network order) read as a little-endian number, as on the device.
"""
import ipaddress
import random
import struct
import sys


def main():
    kind, path, seed, count = sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])
    rnd = random.Random(seed)
    addresses = rnd.sample(range(0x0A000001, 0x0AFFFFFF), count)
    listed = []
    with open(path, "wb") as f:
        if kind == "server":
            f.write(struct.pack(">Q", 1700000000))
        for i, addr in enumerate(addresses):
            mac = bytes(rnd.randrange(256) for _ in range(6))
            expiry = rnd.choice([0, 1, 3600, 86400, 0xFFFFFFFF, rnd.randrange(1, 1 << 32)])
            name = "".join(rnd.choice("abcdefghijklmnopqrstuvwxyz-0123456789")
                           for _ in range(rnd.randrange(0, 21))).encode()
            if i % 17 == 3:
                mac = bytes(6)  # no client: skipped
                name = b""
            ip = struct.pack(">I", addr)
            if kind == "legacy":
                f.write(mac + bytes(10) + ip + struct.pack(">I", expiry))
                name = b""
            else:
                f.write(struct.pack(">I", expiry) + ip + mac + name.ljust(20, b"\0") + b"\0\0")
            if mac != bytes(6) and expiry != 0:
                listed.append((struct.unpack("<I", ip)[0], ":".join("%02X" % b for b in mac),
                               str(ipaddress.IPv4Address(addr)), expiry, name.decode()))
    for _, mac, ip, expiry, name in listed:
        print(mac, ip, expiry, name)
    print("--")
    for _, mac, ip, expiry, name in sorted(listed, key=lambda h: h[0]):
        print(mac, ip, expiry, name)


main()
