# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# `move path` and records, killed or failed. Sourced by scenes.sh.

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

is_writing_a_record() { [ -n "$(find "$records" -name '.*.nosync*' 2>/dev/null)" ]; }

scene_killed_recording() { killed_when is_writing_a_record afresh "${move_one[@]}"; }
after_killed_recording() { expect_moved; }
