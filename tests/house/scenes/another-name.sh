# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# A drive that comes back under another name. Sourced by scenes.sh.

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
