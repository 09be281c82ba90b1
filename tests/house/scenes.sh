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

# --- The README

scene_session() { furnished; }
after_session() { expect_app "$app"; expect_data "$dataCopy"; }

scene_know() { furnished; }
after_know() { expect_link "/Applications/Tape Loft.app" "$drive/ExternalQuarn/Apps/Tape Loft.app"; }

scene_moving() { furnished; }
after_moving() {
  expect_home
  expect_data "$data"
  expect_link "$samples" "$drive/Samples"
  expect_samples "$drive/Samples"
}

# --- A move that was killed or failed

# As things stood before the first attempt, whatever the last one left, with little in the large files, since
# there are many attempts.
afresh() {
  rm -rf "$app" "$data" "$samples" "$drive/ExternalQuarn" "$drive/Samples" "$records"
  furnish
  truncate -s 50000 "$app/Contents/Resources/library.bin" "$samples/drums.wav"
  remember
}
move_one=(quarn move one "$app" --no-data --yes)
move_samples=(quarn move path --source "$samples" --destination "$drive/Samples" --yes)

scene_killed_copying() {
  furnished
  # shellcheck disable=SC2016  # for the script that is written
  printf '#!/bin/sh\nmkdir -p "$3/Contents"; cp "$2/Contents/Info.plist" "$3/Contents/"; kill -9 $PPID\n' >/usr/bin/ditto
  quietly "${move_one[@]}"
  cp /usr/libexec/quarn-room/ditto /usr/bin/ditto
  expect_app "$app"
  [ "$(find "$copy" -type f)" = "$copy/Contents/Info.plist" ] || fail "not killed while copying"
}
after_killed_copying() {
  expect_moved
  is_recorded || fail "not recorded"
}

scene_pipe_inside() {
  furnished
  mkfifo "$app/Contents/pipe"
}
after_pipe_inside() {
  expect_moved
  expect_app "$drive/.Trashes/$(id -u)/Paper Garden.app"
}

scene_unwritable_inside() {
  furnished
  chmod a-w "$app/Contents/Resources"
  appLocked=$(tree "$app")
}
then_look_at_the_source() { is_whole "$app" "$appLocked" || fail "the source was touched"; }
after_unwritable_inside() {
  expect_moved
  [ -d "$drive/.Trashes/$(id -u)/Paper Garden.app" ] || fail "the copy isn't in the Trash"
}

scene_mounted_inside() {
  needs_mounts
  furnished
  mkdir "$app/Contents/Sounds"
  mount -t tmpfs sounds "$app/Contents/Sounds"
}
then_look_at_the_drive() { expect_free "$copy"; }
after_mounted_inside() {
  rmdir "$copy/Contents/Sounds"
  expect_moved
}

is_partly_removed() { [ -d "$app" ] && [ ! -L "$app" ] && ! is_whole "$app" "$appTree"; }
is_unlinked() { is_free "$app"; }

scene_killed_removing() {
  killed_when is_partly_removed afresh "${move_one[@]}"
  expect_app "$copy"
}
after_killed_removing() { expect_moved; }

# What a failing disk leaves: the same, with the copy in the Trash.
scene_failed_removing() {
  scene_killed_removing
  mkdir -p "$drive/.Trashes/$(id -u)"
  mv "$copy" "$drive/.Trashes/$(id -u)/"
}
after_failed_removing() { expect_moved; }

scene_killed_unlinked() {
  killed_when is_unlinked afresh "${move_one[@]}"
  expect_app "$copy"
}
after_killed_unlinked() {
  expect_moved
  quietly quarn move back "Paper Garden"
  expect_home
}

# --- The way back

afresh_on_drive() { afresh && on_drive; }
on_drive() {
  quietly "${move_one[@]}"
  expect_moved
}
move_back=(quarn move back "Paper Garden")

is_partly_home() { [ -d "$app/Contents" ] && [ ! -L "$app" ] && ! is_whole "$app" "$appTree"; }
is_leaving_the_drive() { is_whole "$app" "$appTree" && ! is_whole "$copy" "$appTree"; }

scene_killed_coming_home() {
  killed_when is_partly_home afresh_on_drive "${move_back[@]}"
  expect_app "$copy"
}
after_killed_coming_home() { expect_home; }

scene_killed_leaving_the_drive() {
  killed_when is_leaving_the_drive afresh_on_drive "${move_back[@]}"
  [ -d "$copy" ] || fail "nothing is left on the drive"
}
after_killed_leaving_the_drive() {
  expect_home
  is_recorded || fail "the record is gone"
  quietly "${move_one[@]}"
  expect_moved
}

# The tool that counts the entries stands for a program that writes to the copy on the drive meanwhile.
scene_changed_meanwhile() {
  furnished
  find "$app" -type f -exec touch -d 2020-01-01 {} +
  on_drive
  cp "$(command -v find)" /tmp/find
  rm /usr/bin/find
  # shellcheck disable=SC2016  # for the script that is written
  printf '#!/bin/sh\ncase $* in *"%s"*) echo sound >"%s/Contents/autosave" ;; esac\nexec /tmp/find "$@"\n' \
    "$copy" "$copy" >/usr/bin/find
  chmod 755 /usr/bin/find
}
then_quit_the_writer() {
  expect_link "$app" "$copy"
  cp /tmp/find /usr/bin/find
}
after_changed_meanwhile() {
  [ "$(cat "$app/Contents/autosave")" = sound ] || fail "what was written meanwhile didn't come home"
  rm "$app/Contents/autosave"
  expect_home
}

# Sockets are made by programs alone; this one only makes it.
make_socket() { perl -MSocket -e 'socket(S, PF_UNIX, SOCK_STREAM, 0) && bind(S, sockaddr_un($ARGV[0])) or die $!' "$1"; }

scene_socket_on_the_drive() {
  furnished
  on_drive
  make_socket "$copy/Contents/socket"
}
after_socket_on_the_drive() { expect_home; }

# A small application that opens the one on the drive, in the place of the link.
afresh_with_launcher() {
  rm -rf /Applications/.quarn-launcher-*
  afresh_on_drive
  rm "$app"
  put_up "Paper Garden" com.example.papergarden.externallauncher ExternalAppLauncher 0
  printf '%s\n' "$copy" >"$app/Contents/Resources/ExternalAppTarget.txt"
  launcherTree=$(tree "$app")
}
is_launcher_aside() {
  local aside=(/Applications/.quarn-launcher-*)
  is_free "$app" && is_whole "${aside[0]}" "$launcherTree"
}

scene_killed_launcher() {
  killed_when is_launcher_aside afresh_with_launcher quarn move restore "$app"
  expect_app "$copy"
}
after_killed_launcher() {
  expect_home
  [ -z "$(find /Applications -name '.quarn-launcher-*')" ] || fail "the launcher is still there"
}

scene_no_room_at_home() {
  needs_mounts
  furnished
  on_drive
  cp -a /Applications /tmp/before
  mount -t tmpfs -o size=11m,mode=755 home /Applications
  cp -a /tmp/before/. /Applications
}
then_make_room_at_home() {
  expect_moved
  mount -o remount,size=40m /Applications
}
after_no_room_at_home() { expect_home; }

scene_link_behind_the_link() {
  furnished
  on_drive
  mv "$copy" "$drive/ExternalQuarn/Garden.app"
  ln -s ../Garden.app "$copy"
}
after_link_behind_the_link() { expect_home && expect_free "$drive/ExternalQuarn/Garden.app"; }

# --- move path

scene_rsync_exited() {
  needs_mounts
  furnished
  quietly plug Y9 6m
  head -c 4000000 /dev/urandom >/Volumes/Y9/old-films
}
after_rsync_exited() {
  expect_link "$samples" /Volumes/Y9/Samples
  expect_samples /Volumes/Y9/Samples
}

is_partly_path() { [ -d "$samples" ] && ! is_whole "$samples" "$samplesTree"; }
is_unlinked_path() { is_free "$samples"; }
expect_samples_moved() {
  expect_link "$samples" "$drive/Samples"
  expect_samples "$drive/Samples"
}

scene_killed_removing_a_path() {
  killed_when is_partly_path afresh "${move_samples[@]}"
  expect_samples "$drive/Samples"
}
after_killed_removing_a_path() { expect_samples_moved; }

scene_killed_linking_a_path() {
  killed_when is_unlinked_path afresh "${move_samples[@]}"
  expect_samples "$drive/Samples"
}
after_killed_linking_a_path() { expect_samples_moved; }

# --- Records

is_writing_a_record() { [ -n "$(find "$records" -name '.*.nosync*' 2>/dev/null)" ]; }

scene_killed_recording() { killed_when is_writing_a_record afresh "${move_one[@]}"; }
after_killed_recording() { expect_moved; }

# --- A drive under another name

sudo() { "$@"; }

# A drive of the room keeps nothing while it is pulled out.
pull_out() { cp -a "/Volumes/$1" /tmp/in-the-pocket && unplug "$1"; }
plug_in() { plug "$1" 64m && cp -a /tmp/in-the-pocket/. "/Volumes/$1/" && rm -rf /tmp/in-the-pocket; }

scene_another_name() {
  needs_mounts
  furnished
  on_drive
  pull_out X9
  mkdir "$drive"
  echo sound >"$drive/export.wav"
  plug_in "X9 1"
  quietly quarn move path --source "$samples" --destination "/Volumes/X9 1/Samples" --yes
  expect_link "$samples" "/Volumes/X9 1/Samples"
}
then_eject_x9_1() { pull_out "X9 1"; }
then_plug_in_x9() { plug_in X9; }
after_another_name() {
  expect_moved
  expect_samples "$samples"
  [ "$(cat "$HOME/left at X9/export.wav")" = sound ] || fail "the file in the folder is gone"
}

# --- Playing

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
