#!/bin/sh
# The README's tables of commands, flags, exit statuses and kinds of problems are those of the program:
#   readme-tables.sh README COMMAND-TABLE [--write]
# With --write they are put into the README, for a change to a row.
set -u
readme=$1 tables=$2 write=${3:-}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

for table in commands flags statuses kinds; do
  begin="<!-- table: $table -->"
  "$tables" "$table" >"$work/wanted" || exit 1
  if [ "$(grep -cxF -e "$begin" "$readme")" -ne 1 ]; then
    echo "the README has no one place for the table of $table"
    exit 1
  fi
  if ! awk -v begin="$begin" '
    inside && /^<!-- (table: .*|end of table) -->$/ { found = $0 == "<!-- end of table -->"; exit }
    $0 == begin { inside = 1 }
    END { exit !found }
  ' "$readme"; then
    echo "the table of $table has no end in the README"
    exit 1
  fi
  if [ "$write" = --write ]; then
    awk -v begin="$begin" -v wanted="$work/wanted" '
      inside && /^<!-- end of table -->$/ { inside = 0 }
      !inside
      $0 == begin { inside = 1; while ((getline line < wanted) > 0) print line }
    ' "$readme" >"$work/readme" && cat "$work/readme" >"$readme"
  fi
  awk -v begin="$begin" '
    inside && /^<!-- end of table -->$/ { exit }
    inside
    $0 == begin { inside = 1 }
  ' "$readme" >"$work/shown"
  diff -u "$work/shown" "$work/wanted" || status=1
done
[ $status -eq 0 ] || echo "tests/house/readme-tables.sh README.md $tables --write puts the tables into the README"
exit $status
