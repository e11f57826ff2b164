# Splits each record into the fields of its kind. gawk splits when it is asked for NF, not before.
BEGIN {
@LAYOUT@
}
{
  kind = substr($0, 1, 2)
  if (kind != last) {
    FIELDWIDTHS = widths[last = kind]
    $0 = $0
  }
  fields += NF
  ++count[kind]
  if (kind == "10") sum += $3
}
END {
  for (kind in count) print kind, count[kind]
  printf "sum %d\n", sum
}
