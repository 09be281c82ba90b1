#!/bin/sh
# Every link of the documents leads to a file or a heading that there is.
set -u
cd "$(dirname "$0")/../.." || exit 1
status=0

# anchors FILE: the names that its headings are linked by.
anchors() {
  sed -n 's/^##* //p' "$1" | tr '[:upper:]' '[:lower:]' | sed -e 's/[^a-z0-9 _-]//g' -e 's/ /-/g'
}

for document in *.md docs/*.md; do
  # shellcheck disable=SC2013  # a link has no space
  for link in $(grep -o '](\([^)]*\))' "$document" | sed -e 's/^](//' -e 's/)$//'); do
    file=${link%%#*}
    [ -n "$file" ] && target=$(dirname "$document")/$file || target=$document
    case "$link" in
      *://*) continue ;;
      *#*) [ -e "$target" ] && anchors "$target" | grep -qxF -e "${link#*#}" && continue ;;
      *) [ -e "$target" ] && continue ;;
    esac
    echo "$document links to $link, which isn't there"
    status=1
  done
done
exit $status
