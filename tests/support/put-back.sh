# shellcheck shell=sh
# What docs/uninstalling.md tells a person to type, word for word. Sourced.

# put_back SESSION: moves back what an uninstall has moved, each item to where it was, unless something is there now.
put_back() {
  perl -MJSON::PP -e '
    my ($session) = @ARGV;
    open my $file, "<:raw", "$session/session.json" or die "$session/session.json: $!\n";
    for my $item (reverse @{JSON::PP->new->utf8->decode(join "", <$file>)->{movedItems}}) {
      my ($place, $from, $folder) = map { utf8::encode($_) if defined; $_ } @$item{qw(originalPath trashedTo stashedTo)};
      if (!defined $from && defined $folder && opendir my $names, $folder) {
        my ($name) = $place =~ m{([^/]+)\z};
        my ($last) = sort { $b cmp $a } grep { index($_, "$name-uninstall-") == 0 } readdir $names;
        $from = "$folder/$last" if defined $last;
      }
      next if !defined $from || -e $place || -l $place;
      rename $from, $place or warn "$from: $!\n";
    }' "$HOME/Library/Application Support/Quarn/UninstallSessions/$1"
}
