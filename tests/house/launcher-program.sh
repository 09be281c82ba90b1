#!/bin/sh
# The program of the launchers is small and needs none of the libraries that the platform links:
# launcher-program.sh PROGRAM
set -u
program=$1
status=0

fail() {
  echo "$1"
  status=1
}

# The C library alone, and the two that come with it.
needed=$(readelf -d "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -vE '^(libc|libm|ld-linux.*)\.so' | tr '\n' ' ')
[ -z "$needed" ] || fail "it loads $needed"
known=$(nm -C "$program" | grep -E ' [TtDdBb] ' | grep -iE 'icu_?[0-9]|ucol_|sqlite3|quarn::(hostPlatform|LauncherShim|MoverEngine)' | head -n 3)
[ -z "$known" ] || fail "it holds $known"
size=$(wc -c <"$program")
[ "$size" -lt 1000000 ] || fail "it has $size bytes"
exit $status
