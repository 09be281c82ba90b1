# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# The scenes of the README. Sourced by scenes.sh.

scene_session() {
  furnished && download && add_plugin_and_project
  pluginTree=$(plugin_tree "$plugins/Hush.vst3")
}
after_session() {
  expect_linked "$pluginTree"
  expect_link "$kite" "$kiteCopy"
  is_whole "$kiteCopy" "$(tree "$HOME/Sand Kite/build/Sand Kite.app")" || fail "not the project that was built"
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
