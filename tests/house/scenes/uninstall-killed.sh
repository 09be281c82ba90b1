# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh and with uninstall.sh
# Uninstalls that were killed or failed. Sourced by scenes.sh.

# The application as it was before the first attempt, whatever the last one left.
kept=/tmp/lantern-kept
keep_lantern() {
  lantern_at_home
  mkdir "$kept"
  cp -a /Applications/Lantern.app "$library" "$kept/"
}
afresh_lantern() {
  rm -rf /Applications/Lantern.app "$library" "$HOME/.Trash"
  cp -a "$kept/Lantern.app" /Applications/
  cp -a "$kept/Library" "$HOME/"
}
uninstall_lantern=(quarn uninstall run /Applications/Lantern.app)
is_in_trash() { [ -d "$HOME/.Trash/Lantern.app" ] && is_free /Applications/Lantern.app; }
is_told() { quarn uninstall sessions --format toml | grep -q 'trashedTo = "/Users/me/.Trash/Lantern.app"'; }
is_recorded_midway() { is_in_trash && is_told && [ -d "$library/Caches/com.example.lantern" ]; }
is_in_trash_untold() { is_in_trash && ! is_told; }

# expect_uninstalled_then_back: all of it went, and comes back by the newest session.
expect_uninstalled_then_back() {
  expect_free /Applications/Lantern.app
  expect_free "$library/Caches/com.example.lantern"
  put_back_the_newest
  expect_places
}

scene_killed_uninstalling() {
  keep_lantern
  killed_when is_recorded_midway afresh_lantern "${uninstall_lantern[@]}"
}
after_killed_uninstalling() { expect_uninstalled_then_back; }

scene_killed_trashing() {
  keep_lantern
  killed_when is_in_trash_untold afresh_lantern "${uninstall_lantern[@]}"
}
after_killed_trashing() { expect_uninstalled_then_back; }

scene_uninstall_stashed() {
  lantern_at_home
  rm -rf "$HOME/.Trash"
  echo 'no folder' >"$HOME/.Trash"
}
after_uninstall_stashed() { expect_places; }

scene_uninstall_stays() {
  lantern_at_home
  write "/Library/Application Support/com.example.lantern/data"
  chmod a-w "/Library/Application Support"
  # Who may do anything doesn't heed the mode.
  # shellcheck disable=SC2317  # the document calls it
  sudo() { chmod u+w "/Library/Application Support" && "$@"; }
}
after_uninstall_stays() {
  [ -f "$HOME/.Trash/com.example.lantern.system/data" ] || fail "the item isn't in the Trash"
}

scene_uninstall_unrecorded() {
  lantern_at_home
  mkdir -p "$records/UninstallSessions"
  chmod a-w "$records/UninstallSessions"
}
after_uninstall_unrecorded() { expect_places; }
