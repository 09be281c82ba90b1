#!/bin/sh
# The recipe by which docs/uninstalling.md puts back what was uninstalled is, word for word, the one that the tests of
# uninstalling play: put-back.sh TOP
set -u
top=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# recipe FILE: the function as it stands there.
recipe() { sed -n '/^put_back() {$/,/^}$/p' "$1"; }

recipe "$top/docs/uninstalling.md" >"$work/shown"
recipe "$top/tests/support/put-back.sh" >"$work/tried"
[ -s "$work/shown" ] || { echo "docs/uninstalling.md has no recipe"; exit 1; }
diff -u "$work/shown" "$work/tried"
