"""Reads the records of each kind into a data frame of their fields."""
import collections
import io
import sys

import pandas

CUTS = {
@LAYOUT@
}

lines = collections.defaultdict(list)
for name in sys.argv[1:]:
    with open(name, encoding="cp1252", newline="\r\n") as file:
        for line in file:
            lines[line[:2].encode()].append(line)
for kind, records in lines.items():
    frame = pandas.read_fwf(io.StringIO("".join(records)), colspecs=CUTS[kind], header=None, dtype=str)
    print(kind.decode(), len(frame))
    if kind == b"10":
        print("sum", frame[2].astype("int64").sum())
