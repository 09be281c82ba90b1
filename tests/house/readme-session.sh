#!/bin/sh
# The sample session in the README is what ./try prints, sizes, times and dates aside.
# Usage: readme-session.sh TOP QUARN-ROOM QUARN
set -u
top=$1 room=$2 quarn=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

plain() {
  tr '\r' '\n' | sed -E \
    -e 's/[0-9]+(,[0-9]{3})*(\.[0-9]+)? (KB|MB|GB)/SIZE/g' \
    -e 's/[0-9]+\.[0-9]s/TIME/g' \
    -e 's/[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:]+Z/DATE/g' \
    -e 's/"sizeBytes" : [0-9]+/"sizeBytes" : SIZE/' |
    grep -vE '^ +SIZE / SIZE  [0-9]+%|^$'
}

sed -n '/<!-- session -->/,/<!-- end of session -->/p' "$top/README.md" | grep -vE '^(<!--|```)' | plain >"$work/readme"
"$room" --drive X9=64m --bind "$top" --bind "$(dirname "$quarn")" --quarn "$quarn" -- \
  /bin/sh "$top/macroom/session.sh" 2>&1 | plain >"$work/session"
[ -s "$work/session" ] || { echo "the session printed nothing"; exit 1; }
diff -u "$work/readme" "$work/session"
