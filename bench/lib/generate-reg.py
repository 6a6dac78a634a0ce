#!/usr/bin/env python3
"""Writes the benchmarks' version-5 .reg file: 100 groups of 100 keys (the
group key and 99 below it) under HKEY_CURRENT_USER\\KEY, five values in each,
of the forms a registry file meets most: a string with characters to escape,
a DWORD, binary data over two hex lines, a multi-string and an expandable
string.  usage: generate-reg.py OUTPUT KEY [VALUE-NAME-PREFIX]
(the prefix, put before every value name, gives a text that they all share)"""
import sys


def hexbytes(data):
    return ",".join("%02x" % b for b in data)


def main():
    path, key = sys.argv[1], sys.argv[2]
    prefix = sys.argv[3] if len(sys.argv) > 3 else ""
    lines = ["Windows Registry Editor Version 5.00", ""]
    for group in range(100):
        for item in range(100):
            name = "HKEY_CURRENT_USER\\%s\\Group%02d" % (key, group)
            if item:
                name += "\\Item%02d" % item
            n = group * 100 + item
            lines += ["[%s]" % name,
                      '"%sText"="value \\"%d\\" in C:\\\\bench"' % (prefix, n),
                      '"%sNumber"=dword:%08x' % (prefix, n),
                      '"%sBlob"=hex:%s' % (prefix, hexbytes(bytes((n + i) & 0xFF for i in range(40)))),
                      '"%sList"=hex(7):%s' % (prefix, hexbytes(("first %d\0second\0\0" % n).encode("utf-16-le"))),
                      '"%sPath"=hex(2):%s' % (prefix, hexbytes(("%%SystemRoot%%\\bench\\%d\0" % n).encode("utf-16-le"))),
                      ""]
    with open(path, "wb") as out:
        out.write(b"\xff\xfe" + "\r\n".join(lines).encode("utf-16-le"))


if __name__ == "__main__":
    main()
