#!/bin/sh
# What is installed runs, has its options where it looks for them, and is started by a path beside which its companion
# lies, however it is called: installs.sh CMAKE BUILD SOURCE
set -u
cmake=$1 build=$2 source=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix="$work/a prefix  with spaces"
status=0

fail() {
  echo "$1"
  status=1
}

"$cmake" --install "$build" --prefix "$prefix" >/dev/null || exit 1
diff -r "$source/QuarnCore/installer/InstallerOptions" "$prefix/share/quarn/InstallerOptions" || status=1
[ "$(cd "$prefix" && echo bin/* libexec/*)" = "bin/quarn libexec/external-app-launcher libexec/quarn" ] ||
  fail "other programs are installed: $(cd "$prefix" && echo bin/* libexec/*)"
"$prefix/libexec/external-app-launcher" 2>&1 | grep -q '^This program opens the application of the launcher' ||
  fail "the installed companion doesn't run"

# What the weekly job names is installed where it says, below the usual prefix.
while read -r program; do
  [ -x "$prefix/$program" ] || fail "the weekly job starts $program, which isn't installed"
done <<NAMED
$(sed -n 's|.*<string>/usr/local/\(.*\)</string>.*|\1|p' "$prefix/share/quarn/quarn-health-check.plist")
NAMED
[ -x "$prefix/share/quarn/quarn-health-check" ] || fail "the program of the weekly job isn't installed"

# Folders of links, as a person makes them, and a stranger's companion where the program is called.
mkdir "$work/links" "$work/elsewhere"
ln -s "$prefix/bin/quarn" "$work/links/quarn"
ln -s quarn "$work/links/q"
ln -s "$prefix/bin" "$work/bin"
ln -s "$prefix/bin" "$work/elsewhere/bin"
printf '#!/bin/sh\n' >"$work/elsewhere/external-app-launcher"
chmod 755 "$work/elsewhere/external-app-launcher"

# runs CALL: from the folder with the stranger's companion.
runs() {
  (cd "$work/elsewhere" && "$1" help) | grep -q 'quarn move drives' || fail "doesn't run: $1 with $PATH"
}

# is_started_by_its_path CALL: a script in the program's place tells what it was started with.
is_started_by_its_path() {
  said=$(cd "$work/elsewhere" && "$1" 'a  b' '' '*' -x)
  [ $? -eq 7 ] || fail "the status is lost: $1 with $PATH"
  program=${said##*|}
  [ "${said%|*}" = "$(cd "$work/elsewhere" && pwd)|a  b||*|-x" ] || fail "$1 with $PATH hands on: $said"
  case $program in
    /*) [ "$(cd -P "${program%/*}" && pwd)" = "$(cd -P "$prefix/libexec" && pwd)" ] ||
      fail "$1 with $PATH is started as $program, beside another companion" ;;
    *) fail "$1 with $PATH is started as $program, which is no absolute path" ;;
  esac
}

# look CALL
look() {
  if [ "$stage" = whole ]; then runs "$1"; else is_started_by_its_path "$1"; fi
}

path=$PATH
every_call() {
  for call in "$prefix/bin/quarn" "$work/links/quarn" "$work/links/q" "$work/bin/quarn" bin/quarn ./bin/quarn \
      ../bin/quarn ../links/q; do
    look "$call"
  done
  for folder in "$prefix/bin" "$work/links" "$work/bin" bin ../bin; do
    PATH="$folder:$path"
    look quarn
    PATH=$path
  done
}

stage=whole
every_call
stage=replaced
cat >"$prefix/libexec/quarn" <<'SCRIPT'
#!/bin/sh
printf '%s|' "$PWD" "$@"
printf '%s\n' "$0"
exit 7
SCRIPT
every_call
exit $status
