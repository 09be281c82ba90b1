#!/bin/sh
# Types the commands of a document's console blocks in a room, and compares what they print with the document:
#   console-blocks.sh TOP QUARN-ROOM QUARN DOCUMENT SCENE
#
# A comment in the document names the scene that the blocks after it are played in, until the next one:
# <!-- scene: NAME -->. One room and one shell serve all of them. <!-- then: NAME --> is something that happens
# meanwhile and isn't shown. Both are functions of scenes.sh, and so is what is looked at in the end.
set -u
top=$1 room=$2 quarn=$3 document=$4 scene=$5
. "$top/tests/house/plain.sh"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

awk -v wanted="$scene" '
  /^<!-- scene: .* -->$/ { scene = $3; next }
  /^<!-- then: .* -->$/ && scene == wanted { print "then " $3; next }
  /^```console$/ { if (scene == "") { print "a block without a scene, line " NR > "/dev/stderr"; exit 1 } inside = 1; next }
  /^```/ { inside = 0; next }
  inside && scene == wanted
' "$top/$document" >"$work/script" || exit 1
grep -q '^\$ ' "$work/script" || { echo "no command in the scene $scene of $document"; exit 1; }
grep -v '^then ' "$work/script" | plain >"$work/expected"

"$room" --drive X9=64m --bind "$top" --bind "$(dirname "$quarn")" --bind "$work" --quarn "$quarn" -- \
  /bin/bash "$top/tests/house/scenes.sh" "$top" "$(dirname "$quarn")" "$scene" "$work/script" >"$work/all"
status=$?
if [ $status -eq 77 ]; then
  echo "$scene: Skipped"
  cat "$work/all"
  exit 77
fi
plain <"$work/all" >"$work/actual"
diff -u "$work/expected" "$work/actual" || exit 1
[ $status -eq 0 ] || echo "the scene $scene ended with status $status"
exit $status
