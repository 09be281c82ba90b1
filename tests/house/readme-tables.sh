#!/bin/sh
# The README's tables of commands, flags, exit statuses and kinds of problems, and the table of categories in
# docs/uninstalling.md, are those of the program:
#   readme-tables.sh DOCUMENT COMMAND-TABLE [--write]
# With --write they are put into the document, for a change to a row.
set -u
readme=$1 tables=$2 write=${3:-}
case "$readme" in
  *uninstalling.md) names="categories" ;;
  *) names="commands flags statuses kinds" ;;
esac
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

for table in $names; do
  begin="<!-- table: $table -->"
  "$tables" "$table" >"$work/wanted" || exit 1
  if [ "$(grep -cxF -e "$begin" "$readme")" -ne 1 ]; then
    echo "$readme has no one place for the table of $table"
    exit 1
  fi
  if ! awk -v begin="$begin" '
    inside && /^<!-- (table: .*|end of table) -->$/ { found = $0 == "<!-- end of table -->"; exit }
    $0 == begin { inside = 1 }
    END { exit !found }
  ' "$readme"; then
    echo "the table of $table has no end in $readme"
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
[ $status -eq 0 ] || echo "tests/house/readme-tables.sh $readme $tables --write puts the tables into the document"
exit $status
