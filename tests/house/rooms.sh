#!/bin/sh
# Holds every include of the program against the table of rooms and that of the system's headers: rooms.sh [folder of
# the sources]. Also refuses what reaches the system without a header of its own, and what asks which system it is on.
set -u
cd "${1:-$(dirname "$0")/../..}" || exit 1
table=cmake/rooms.txt headers=cmake/system-headers.txt

# shellcheck disable=SC2046,SC2038  # no name here has a space
awk -v table="$table" -v headers="$headers" '
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

  function readHeaders(    line, words, count, i) {
    while ((getline line < headers) > 0) {
      if (line ~ /^#/) continue
      count = split(line, words)
      for (i = 2; i <= count; i++) allowed[words[1], words[i]] = 1
    }
  }

  # Its own room, or the top of one that its room knows: what lies deeper is closed.
  function checkOurs(header,    room) {
    if (header !~ /^[A-Za-z0-9]+(\/[A-Za-z0-9]+)*\.h$/) { complain("includes " header ", which is no plain path to a header of ours"); return }
    room = roomOf(header)
    if (room == "") complain("includes " header ", which lies in no room")
    else if (room == own) return
    else if (!((own, room) in may)) complain("includes " header ", and " own " may not know " room)
    else if (substr(header, length(room) + 2) ~ /\//) complain("includes " header ", which lies inside " room)
    if (header == "Platform/HostPlatform.h" && own !~ /^(Platform|QuarnCLI\/main)/)
      complain("includes " header ", which is for the entry alone: everybody else is handed the platform")
  }

  function checkSystems(header) {
    if (!(("*", header) in allowed) && !((own, header) in allowed) && !((FILENAME, header) in allowed))
      complain("includes <" header ">, which is not on the list")
  }

  BEGIN { readTable(); readHeaders() }
  FNR == 1 {
    own = roomOf(FILENAME); files++
    if (own == "") complain("lies in no room")
    if (FILENAME !~ /\.(h|cpp|mm)$/) complain("is no kind of file that a room holds")
    if (FILENAME ~ /\.mm$/ && own !~ /\/macos$/) complain("is Objective-C++, which only a folder macos holds")
  }
  { line = $0; while (sub(/\/\*[^*]*\*\//, "", line)); sub(/^[[:space:]]*(%:|\?\?=)/, "#", line) }
  line ~ /^[[:space:]]*#[[:space:]]*\\$/ { complain("spreads a directive over two lines") }
  line ~ /^[[:space:]]*#[[:space:]]*(include|import)/ {
    header = line
    if (header ~ /#[[:space:]]*import/ && own !~ /\/macos$/) complain("imports, which is Objective-C")
    sub(/^[[:space:]]*#[[:space:]]*(include_next|include|import)[[:space:]]*/, "", header)
    if (header ~ /^"/) { split(header, parts, "\""); checkOurs(parts[2]) }
    else if (header ~ /^</) { split(header, parts, /[<>]/); checkSystems(parts[2]) }
    else complain("includes what only the preprocessor knows")
  }
  # The C library may come along with any header of the standard library.
  own !~ /^Platform/ && line ~ /(^|[^A-Za-z_>])(std)?::(system|rename|getenv|setenv|tmpfile|tmpnam|fopen|freopen|popen|raise|signal|unlink)[^A-Za-z_]/ {
    complain("reaches past the platform: " line)
  }
  own !~ /^Platform/ && line ~ /std::remove[^_A-Za-z]/ && line !~ /begin\(\)/ { complain("reaches past the platform: " line) }
  line ~ /__(APPLE|linux|MACH|unix|gnu_linux|has_include)/ {
    if (own !~ /^Platform\/(linux|macos)$/) complain("asks which system it is on")
  }
  END {
    if (!files) { print "no sources"; failed = 1 }
    exit failed
  }
' $(find Platform TOMLDecoder ExternalAppLauncher QuarnCore QuarnCLI -type f ! -name CMakeLists.txt ! -path '*/InstallerOptions/*.toml')
status=$?

rows() { grep '^[A-Z]' "$1"; }
drawn() { sed -n "/^<!-- cmake/,/^| Folder/p" docs/architecture.md | grep "^[A-Z]"; }
if [ "$(rows "$table")" != "$(drawn)" ]; then
  echo "docs/architecture.md draws another table of rooms than $table"
  status=1
fi
exit $status
