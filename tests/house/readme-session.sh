#!/bin/sh
# The sample session in the README is what ./try prints, sizes, times and dates aside.
# Usage: readme-session.sh TOP QUARN-ROOM QUARN
set -u
top=$1 room=$2 quarn=$3
. "$top/tests/house/plain.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

sed -n '/<!-- session -->/,/<!-- end of session -->/p' "$top/README.md" | grep -vE '^(<!--|```)' | plain >"$work/readme"
"$room" --drive X9=64m --bind "$top" --bind "$(dirname "$quarn")" --quarn "$quarn" -- \
  /bin/sh "$top/macroom/session.sh" 2>&1 | plain >"$work/session"
[ -s "$work/session" ] || { echo "the session printed nothing"; exit 1; }
diff -u "$work/readme" "$work/session"
