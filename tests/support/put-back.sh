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
        my ($last) = sort { $b->[1] cmp $a->[1] || $b->[2] <=> $a->[2] } map {
          m{\A(.*)-uninstall-([-\dT]+Z)(?:-(\d+))?\z}s && ($1 eq $name || length($_) > 251 && index($name, $1) == 0)
            ? [$_, $2, $3 || 1] : ()
        } readdir $names;
        $from = "$folder/$last->[0]" if $last;
      }
      next if !defined $from || -e $place || -l $place;
      rename $from, $place or warn "$from: $!\n";
    }' "$HOME/Library/Application Support/Quarn/UninstallSessions/$1"
}
