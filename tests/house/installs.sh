#!/bin/sh
# What is installed runs, and has its options where it looks for them: installs.sh CMAKE BUILD SOURCE
set -u
cmake=$1 build=$2 source=$3
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

"$cmake" --install "$build" --prefix "$prefix" >/dev/null || exit 1
"$prefix/bin/quarn" help | grep -q 'quarn move drives' || { echo "the installed program doesn't run"; exit 1; }
diff -r "$source/QuarnCore/installer/InstallerOptions" "$prefix/share/quarn/InstallerOptions"
