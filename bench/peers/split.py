"""Slices each record into the fields of its kind."""
import collections
import sys

CUTS = {
@LAYOUT@
}
CUTS = {kind: [slice(first, last) for first, last in cuts] for kind, cuts in CUTS.items()}


def main():
    count, total = collections.Counter(), 0
    for name in sys.argv[1:]:
        with open(name, "rb") as file:
            for line in file:
                kind = line[:2]
                fields = [line[cut] for cut in CUTS[kind]]
                count[kind] += 1
                if kind == b"10":
                    total += int(fields[2])
    for kind, records in count.items():
        print(kind.decode(), records)
    print("sum", total)


main()
