# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# A move that was killed or failed. Sourced by scenes.sh.

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
