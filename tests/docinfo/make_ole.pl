#!/usr/bin/perl
# Makes the compound files of tests/data/docinfo: usage make_ole.pl FOLDER. The containers are written by
# OLE::Storage_Lite and Spreadsheet::WriteExcel (libole-storage-lite-perl, libspreadsheet-writeexcel-perl).
use strict;
use warnings;
use Encode qw(encode);
use OLE::Storage_Lite;
use Spreadsheet::WriteExcel;

my $folder = shift or die "usage: make_ole.pl FOLDER\n";
my @date = (0, 0, 12, 14, 2, 105); # 14 March 2005, of everything

sub compound {
    my ($name, %streams) = @_;
    OLE::Storage_Lite::PPS::Root->new(\@date, \@date, children(%streams))->save("$folder/$name.in") or die $name;
}

sub children { # a storage's are given as a hash
    my %streams = @_;
    return [map { my ($name, $holds) = (encode('UTF-16LE', $_), $streams{$_});
        ref $holds ? OLE::Storage_Lite::PPS::Dir->new($name, \@date, \@date, children(%$holds))
            : OLE::Storage_Lite::PPS::File->new($name, $holds) } sort keys %streams];
}

sub text { pack('VVa*x![V]', $_[0], length $_[1], $_[1]) }                  # type 30 (bytes) or 8
sub wide { pack('VVa*x![V]', 31, length($_[0]) + 1, encode('UTF-16LE', "$_[0]\0")) }
sub filetime { pack('VQ<', 64, ($_[0] + 11644473600) * 10_000_000) }        # of seconds since 1970

# A set of properties by number, after its first 16 bytes of identifier are known to the caller.
sub set {
    my %values = @_;
    my @numbers = sort { $a <=> $b } keys %values;
    my ($places, $data) = ('', '');
    for (@numbers) {
        $places .= pack('VV', $_, 8 + 8 * @numbers + length $data);
        $data .= $values{$_};
    }
    return pack('VVa*a*', 8 + length($places) + length $data, scalar @numbers, $places, $data);
}

my %identifiers = (
    summary => pack('H*', 'e0859ff2f94f6810ab9108002b27b3d9'),
    document => pack('H*', '02d5cdd59c2e1b10939708002b2cf9ae'),
    user => pack('H*', '05d5cdd59c2e1b10939708002b2cf9ae'),
);

sub sets {
    my ($at, $heads, $bodies) = (28 + 20 * @_ / 2, '', '');
    while (my ($identifier, $set) = splice @_, 0, 2) {
        $heads .= $identifiers{$identifier} . pack('V', $at + length $bodies);
        $bodies .= $set;
    }
    return pack('vvVx16V', 0xFFFE, 0, 0x20105, length($heads) / 20) . $heads . $bodies;
}

my $summary = "\5SummaryInformation";
my $document = "\5DocumentSummaryInformation";
sub of1251 { text(30, encode('cp1251', $_[0]) . "\0") }
my $when = 1110801600 + 3661; # 2005-03-14T13:01:01Z

compound(
    'doc-cyrillic',
    WordDocument => 'x' x 5000, # in sectors of its own
    $summary => sets(summary => set(
        1 => pack('Vs<x2', 2, 1251), 2 => of1251("\x{41E}\x{442}\x{447}\x{451}\x{442}"), 3 => of1251('Subject'),
        4 => of1251("\x{418}\x{432}\x{430}\x{43D}"), 5 => of1251('one; two'), 6 => of1251("Line 1\r\nLine 2"),
        8 => of1251('Last'), 9 => of1251('7'), 11 => filetime($when), 12 => filetime($when + 86400),
        13 => pack('VQ<', 64, 0), 14 => pack('VV', 3, 12), 15 => pack('VV', 3, 3456), 16 => pack('Vl<', 3, -1),
        18 => of1251('Writer of Words'), 19 => pack('VV', 3, 1))),
    $document => sets(
        document => set(1 => pack('Vs<x2', 2, 1251), 2 => of1251('Reports'), 7 => pack('VV', 3, 99),
            14 => of1251('The Manager'), 15 => of1251('The Company')),
        user => set(
            0 => pack('V', 7) . join('', map { my $name = encode('cp1251', $_->[1]) . "\0"; pack('VVa*', $_->[0], length $name, $name) }
                [2, "\x{426}\x{435}\x{43D}\x{430}"], [3, 'Count'], [4, 'Ready'], [5, 'Signed'], [6, 'Blob'], [7, 'Day'], [8, 'Gone']),
            1 => pack('Vs<x2', 2, 1251), 2 => pack('Vd<', 5, 19.99), 3 => pack('Vl<', 3, -42),
            4 => pack('Vvx2', 11, 0xFFFF), 5 => filetime($when), 6 => pack('VVV', 65, 4, 1), 7 => pack('Vd<', 7, 38425.5))));

compound(
    'ppt-unicode',
    'PowerPoint Document' => 'x', EncryptedSummary => 'x',
    $summary => sets(summary => set(1 => pack('Vs<x2', 2, 1200), 2 => wide("\x{1F600} Slides \x{FFFF}"),
        4 => pack('VVa*', 30, 14, encode('UTF-16LE', "Author\0")))),
    $document => sets(document => set(1 => pack('Vs<x2', 2, -535), 7 => pack('VV', 3, 31), 15 => text(30, "\xC3\xA9\0")),
        user => set(1 => pack('Vs<x2', 2, 1200), 2 => pack('VQ<', 21, ~0),
            0 => pack('V', 1) . pack('VVa*x![V]', 2, 5, encode('UTF-16LE', "Huge\0")))));

compound('ooxml-encrypted', EncryptedPackage => 'x', EncryptionInfo => 'x');
compound('ole-plain', Contents => 'x');

# Mail: streams of fixed properties, and one for each text.
sub fixed { pack('x32') . join '', map { pack('vvVa8', $_->[0], $_->[1], 6, $_->[2]) } @_ }
sub mail { my ($name, $fixed, %texts) = @_; compound($name, '__properties_version1.0' => $fixed, map { ("__substg1.0_$_", $texts{$_}) } keys %texts) }
sub mailtime { substr(filetime($_[0]), 4) }

mail('msg-wide', fixed([0x40, 0x39, mailtime($when)], [0x40, 0x0E06, mailtime($when + 60)], [0x40, 0x3008, mailtime($when + 120)]),
    map { $_->[0] . '001F', encode('UTF-16LE', $_->[1]) } ['0037', "Gr\x{FC}\x{DF}e"], ['0C1A', 'The Sender'], ['0C1F', '/O=HOUSE/CN=SENDER'],
    ['5D01', 'sender@example.org'], ['0E04', 'One; Two'], ['0E03', 'Three'], ['1035', '<1@example.org>'], ['3FFA', 'Changer'],
    ['1000', 'body']);
mail('msg-narrow', fixed([3, 0x3FFD, pack('Vx4', 1252)], [0x40, 0x39, "\xFF" x 8]), '0037001E' => "\xC4rger", '0C1A001E' => 'a@example.org',
    '0C1F001E' => 'a@example.org');
# Keywords are the third name: after one of another family, and another text.
sub named { my $name = encode('UTF-16LE', $_[0]); pack('Va*x![V]', length $name, $name) }
compound('msg-named', '__properties_version1.0' => fixed(), '__substg1.0_3004001F' => encode('UTF-16LE', "One\r\ntwo"),
    '__nameid_version1.0' => { '__substg1.0_00020102' => '', '__substg1.0_00040102' => named('Other') . named('Keywords'),
        '__substg1.0_00030102' => pack('(VvvVvvVvvVvv)', 16, 7, 0, 0, 5, 1, 0x8505, 6, 2, 16, 5, 3) },
    map { ("__substg1.0_$_->[0]", encode('UTF-16LE', $_->[1])) } ['8003101F', ''], ['8003101F-00000001', 'second'],
    ['8003101F-00000000', "f\x{FC}rst"], ['8001101F-00000000', 'another']);

# Sectors of 4,096 bytes: header, table, directory, one stream.
sub entry { my ($name, $kind, $child, $first, $size) = @_; my $wide = encode('UTF-16LE', "$name\0");
    return pack('a64vCCVVVx16x4x16VQ<', $wide, length $wide, $kind, 1, ~0 & 0xFFFFFFFF, ~0 & 0xFFFFFFFF, $child, $first, $size) }
open my $large, '>:raw', "$folder/ole-large-sectors.in" or die;
print $large pack('a8x16vvvvvx6VVVVVVVVVV', "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 0x3E, 4, 0xFFFE, 12, 6, 1, 1, 1, 0, 4096, 0xFFFFFFFE, 0,
    0xFFFFFFFE, 0, 0), "\xFF" x (4 * 108), "\0" x 3584;
print $large pack('V3', 0xFFFFFFFD, 0xFFFFFFFE, 0xFFFFFFFE), "\xFF" x 4084;
print $large entry('Root Entry', 5, 1, 0xFFFFFFFE, 0), entry($summary, 2, 0xFFFFFFFF, 2, 4096), "\0" x (4096 - 256);
print $large pack('a4096', sets(summary => set(2 => text(30, "Large sectors\0"))));
close $large;

my $workbook = Spreadsheet::WriteExcel->new("$folder/xls-perl.in");
$workbook->set_properties(title => "\x{3A9}mega", author => 'A. Author', subject => 'Sums', keywords => 'k1, k2', comments => 'Said',
    manager => 'M', company => 'C', category => 'Cat', created => [@date]);
$workbook->add_worksheet()->write(0, 0, 1);
$workbook->close();
