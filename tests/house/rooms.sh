#!/bin/sh
# Holds every include of the program against the table of rooms: rooms.sh [folder of the sources]. What isn't allowed
# is refused: folders of ours, the standard library's headers, and what asks which system it is on.
set -u
cd "${1:-$(dirname "$0")/../..}" || exit 1
table=cmake/rooms.txt

# The standard library, less what reaches past the platform: files, streams, the environment, signals, the clock of the
# C library.
standard="algorithm any array atomic bit cerrno charconv chrono climits cmath compare concepts coroutine cstddef cstdint \
cstring deque exception functional future initializer_list iterator limits list map memory mutex new numeric optional \
queue random ranges ratio set span stdexcept string string_view thread tuple type_traits typeinfo unordered_map \
unordered_set utility variant vector version"

# One line a file that needs more: the file, then the headers.
exceptions="
Platform/JsonReader.cpp cstdlib
TOMLDecoder/internal/FlatList.h cstdlib
TOMLDecoder/internal/FloatUnpacking.cpp cstdlib
QuarnCLI/Console.cpp cstdio
QuarnCLI/move/MoveRunner.cpp cstdio
"

# shellcheck disable=SC2046,SC2038  # no name here has a space
awk -v table="$table" -v standard="$standard" -v exceptions="$exceptions" '
  function complain(text) { print FILENAME ": " text; failed = 1 }

  # The folder of the table that a file lies in: the innermost one.
  function roomOf(path,    folder) {
    for (folder = path; sub(/\/[^\/]*$/, "", folder);) if (folder in known) return folder
    return ""
  }

  function readTable(    line, words, count, i) {
    while ((getline line < table) > 0) {
      if (line ~ /^#/ || line ~ /^[[:space:]]*$/) continue
      count = split(line, words)
      for (i = 2; i <= count; i++) {
        if (!(words[i] in known)) { print table ": " words[1] " knows " words[i] ", which does not stand above it"; failed = 1 }
        may[words[1], words[i]] = 1
      }
      known[words[1]] = 1
      rooms++
    }
    if (!rooms) { print table ": no table of rooms"; failed = 1 }
  }

  # Its own room, or the top of one that its room knows: what lies deeper is closed.
  function checkOurs(header,    room) {
    room = roomOf(header)
    if (room == "") complain("includes " header ", which lies in no room")
    else if (room == own) return
    else if (!((own, room) in may)) complain("includes " header ", and " own " may not know " room)
    else if (substr(header, length(room) + 2) ~ /\//) complain("includes " header ", which lies inside " room)
    if (header == "Platform/HostPlatform.h" && own !~ /^(Platform|QuarnCLI\/main)/)
      complain("includes " header ", which is for the entry alone: everybody else is handed the platform")
  }

  function checkSystems(header) {
    if (own ~ /^Platform\//) return
    if (!(header in allowed) && !((FILENAME, header) in exception)) complain("includes <" header ">, which is not on the list")
  }

  BEGIN {
    readTable()
    split(standard, list, " ")
    for (i in list) allowed[list[i]] = 1
    split(exceptions, lines, "\n")
    for (i in lines) { count = split(lines[i], words, " "); for (j = 2; j <= count; j++) exception[words[1], words[j]] = 1 }
  }
  FNR == 1 { own = roomOf(FILENAME); files++; if (own == "") complain("lies in no room") }
  /^[[:space:]]*#[[:space:]]*(include|import)/ {
    header = $0
    sub(/^[[:space:]]*#[[:space:]]*(include|import)[[:space:]]*/, "", header)
    if (header ~ /^"/) { split(header, parts, "\""); checkOurs(parts[2]) }
    else if (header ~ /^</) { split(header, parts, /[<>]/); checkSystems(parts[2]) }
    else complain("includes what only the preprocessor knows")
  }
  /__APPLE__|__linux__|__MACH__/ { if (own !~ /^Platform\/(linux|macos)$/) complain("asks which system it is on") }
  END {
    if (!files) { print "no sources"; failed = 1 }
    exit failed
  }
' $(find Platform TOMLDecoder QuarnCore QuarnCLI -name '*.h' -o -name '*.cpp' -o -name '*.mm')
status=$?

rows() { grep '^[A-Z]' "$1"; }
drawn() { sed -n "/^<!-- cmake/,/^| Folder/p" docs/architecture.md | grep "^[A-Z]"; }
if [ -f docs/architecture.md ] && [ "$(rows "$table")" != "$(drawn)" ]; then
  echo "docs/architecture.md draws another table of rooms than $table"
  status=1
fi
exit $status
