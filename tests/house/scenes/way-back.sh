# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# The way back, killed or failed. Sourced by scenes.sh.

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
