# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# The scenes of the README. Sourced by scenes.sh.

scene_session() { furnished && download; }
after_session() {
  expect_app "$app"
  expect_data "$dataCopy"
  put_back_the_newest
}

scene_know() { furnished; }
after_know() { expect_link "/Applications/Tape Loft.app" "$drive/ExternalQuarn/Apps/Tape Loft.app"; }

scene_moving() { furnished; }
after_moving() {
  expect_home
  expect_data "$data"
  expect_link "$samples" "$drive/Samples"
  expect_samples "$drive/Samples"
}
