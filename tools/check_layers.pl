#!/usr/bin/perl
# Checks that includes point down or sideways between the floors of ARCHITECTURE.md and that no files include each
# other in a circle (a .cpp counts with its header): tools/check_layers.pl ROOT
use strict;
use warnings;

my $root = shift // '.';
chdir $root or die "cannot enter $root\n";
my @rows;
open my $doc, '<', 'ARCHITECTURE.md' or die "ARCHITECTURE.md is missing\n";
while (<$doc>) {
    if (/^\|\s*(\d+)\s*\|[^|]*\|([^|]*)\|/) {
        my $floor = $1;
        push @rows, map { [$floor, $_] } $2 =~ /`([^`]+)`/g;
    }
}
die "ARCHITECTURE.md holds no floor table\n" unless @rows;

sub floorOf {
    my $file = shift;
    for (@rows) {
        my ($floor, $pattern) = @$_;
        my $regex = join '[^/]*', map { quotemeta } split /\*/, $pattern, -1;
        return $floor if $file =~ /^$regex$/;
    }
    return undef;
}

my ($bad, %edges) = (0);
my @files = sort grep { -f } map { glob "src/$_/*.h src/$_/*.cpp" }
    qw(platform core data render models world script game audio ui);
die "no source files found\n" unless @files;
for my $path (@files) {
    (my $file = $path) =~ s{^src/}{};
    my $floor = floorOf($file);
    if (!defined $floor) { print "$file stands on no floor\n"; $bad++; next; }
    (my $unit = $file) =~ s/\.(h|cpp)$//;
    open my $in, '<', $path or die "$path: $!\n";
    while (<$in>) {
        next unless /^\s*#include "([^"]+)"/;
        my $to = $1;
        if (!-f "src/$to") { print "$file:$.: no such file: $to\n"; $bad++; next; }
        (my $toUnit = $to) =~ s/\.(h|cpp)$//;
        $edges{$unit}{$toUnit} = 1 if $unit ne $toUnit;
        my $toFloor = floorOf($to);
        next if defined $toFloor && $toFloor <= $floor;
        print "$file (floor $floor):$.: includes $to (floor ", $toFloor // 'none', ")\n";
        $bad++;
    }
}

my (%colour, @stack);
sub visit {
    my $unit = shift;
    $colour{$unit} = 1;
    push @stack, $unit;
    for my $next (sort keys %{$edges{$unit} // {}}) {
        if (($colour{$next} // 0) == 1) {
            my @circle = @stack;
            shift @circle while $circle[0] ne $next;
            print 'circle: ', join(' -> ', @circle, $next), "\n";
            $bad++;
        }
        visit($next) unless $colour{$next};
    }
    $colour{$unit} = 2;
    pop @stack;
}
visit($_) for grep { !$colour{$_} } sort keys %edges;
exit($bad ? 1 : 0);
