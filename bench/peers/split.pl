# Unpacks each record into the fields of its kind.
use strict;
use warnings;

my %template = (
@LAYOUT@
);
my (%count, $sum);
while (<>) {
  my $kind = substr $_, 0, 2;
  my @fields = unpack $template{$kind}, $_;
  ++$count{$kind};
  $sum += $fields[2] if $kind eq '10';
}
print "$_ $count{$_}\n" for keys %count;
print "sum $sum\n";
