#!/bin/sh
# A flag is spelt in one place of the program, so that it can't be renamed for one group alone. Usage lines show flags,
# and are held to the rows by a test of their own.
set -u
cd "$(dirname "$0")/../.." || exit 1
spelt=$(grep -rhoE '(name|string_view [a-zA-Z]*) = "--[a-z-]+"' QuarnCLI | grep -o '"--[a-z-]*"' | sort)
[ -n "$spelt" ] || { echo "no flag is found at all"; exit 1; }
twice=$(printf '%s\n' "$spelt" | uniq -d)
[ -z "$twice" ] || { echo "spelt more than once: $twice"; exit 1; }
# Asking for a flag by its text goes past the rows.
! grep -rnE '(contains|value)\("--' QuarnCLI
