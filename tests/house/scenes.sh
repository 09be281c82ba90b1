#!/bin/bash
# The scenes that the documents' console blocks are played in, and what must be there in the end. Runs in a
# room: scenes.sh TOP TOOLS SCENE SCRIPT. Status 77 and a reason on standard output mean that this room can't
# play the scene.
set -u
top=$1 tools=$2 scene=$3 script=$4

. "$top/macroom/scene.sh"
PATH=$PATH:$tools
drive=/Volumes/X9
app="/Applications/Paper Garden.app"
copy="$drive/ExternalQuarn/Apps/Paper Garden.app"
data="$HOME/Library/Application Support/Paper Garden"
# shellcheck disable=SC2034  # for the parts
dataCopy="$drive/ExternalQuarn/Data/Library/Application Support/Paper Garden"
samples="$HOME/Samples"
records="$HOME/Library/Application Support/Quarn"

fail() {
  echo "$scene: $1" >&2
  exit 1
}

skip() {
  echo "$1"
  exit 77
}

# tree PATH: every item at and below it, with what is in it.
tree() {
  (cd "$1" && find . -printf '%P %y %m %l\n' | sort && find . -type f -exec cksum {} + | sort -k3)
}

# As ./try and ./room begin, with the trees remembered.
furnished() { furnish && remember; }
remember() {
  appTree=$(tree "$app") dataTree=$(tree "$data") samplesTree=$(tree "$samples") everything=$(everything)
}

# All that there is, as it is reached at its old places, be it there or behind a link.
everything() {
  tree /Applications/"Tape Loft.app"
  tree "$HOME/Library/Caches/com.example.tapeloft"
  tree "$app"
  tree "$data"
  tree "$samples"
}

# is_whole PLACE TREE: a folder of that tree stands there, and no link to one.
is_whole() { [ -d "$1" ] && [ ! -L "$1" ] && [ "$(tree "$1")" = "$2" ]; }
is_free() { ! [ -e "$1" ] && ! [ -L "$1" ]; }

# expect_… PLACE: it stands there whole. expect_link AT TARGET.
expect_app() { is_whole "$1" "$appTree" || fail "the application isn't whole at $1"; }
expect_data() { is_whole "$1" "$dataTree" || fail "the data folder isn't whole at $1"; }
expect_samples() { is_whole "$1" "$samplesTree" || fail "the samples aren't whole at $1"; }
expect_free() { is_free "$1" || fail "something stands at $1"; }
expect_link() { [ "$(readlink "$1")" = "$2" ] || fail "$1 doesn't lead to $2"; }
expect_moved() { expect_link "$app" "$copy" && expect_app "$copy"; }
expect_home() { expect_app "$app" && expect_free "$copy"; }
is_recorded() { grep -qsF '"sourcePath" : "\/Applications\/Paper Garden.app"' "$records/health-manifest.json"; }

# quietly COMMAND…: for what a scene does and the document doesn't show.
quietly() { "$@" >/dev/null 2>&1; }

# killed_when CONDITION AFRESH COMMAND…: kills a command at its first, its second, … changing call, the scene set anew
# each time, until the condition holds.
killed_when() {
  local condition=$1 afresh=$2 reason n
  shift 2
  for n in {1..300}; do
    "$afresh"
    reason=$(killed-at "$n" "$@")
    case $? in
      137) ! "$condition" || return 0 ;;
      77) skip "$reason" ;;
      *) fail "ran through: $*" ;;
    esac
  done
  fail "never met: $condition"
}

needs_mounts() { [ "$QUARN_ROOM" = mounts ] || skip "this room can't mount a volume"; }

for part in "$top"/tests/house/scenes/*.sh; do
  # shellcheck source=/dev/null
  . "$part"
done

# Each command is printed and carried out in one shell, as somebody at a terminal would type it. A hidden step
# that prints something would fail the comparison.
play() {
  local line status=0
  while IFS= read -r line <&3; do
    case $line in
      'then '*) "then_${line#then }" ;;
      '$ '*)
        # What was printed before may have no line feed at its end.
        printf '\n%s\n' "$line"
        # A command may ask for the status of the one before.
        (exit $status)
        eval "${line#'$ '}" </dev/null 2>&1
        status=$?
        ;;
    esac
  done 3<"$script"
}

cd "$HOME" || exit 1
"scene_${scene//-/_}"
play
"after_${scene//-/_}"
[ "$(everything)" = "$everything" ] || fail "not all is where it was, or behind a link there"
