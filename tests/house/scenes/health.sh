# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# The scenes of the health check and its repairs. Sourced by scenes.sh.

move_app() { quarn move one "$1" --no-data --yes >/dev/null || fail "can't move $1"; }

# Moved, and then replaced by an updater.
scene_health() {
  furnished
  move_app "$app"
  move_app "/Applications/Tape Loft.app"
  rm "$app" && cp -a "$copy" "$app"
}
after_health() { expect_moved; }

# The link of a moved application was deleted.
scene_put_back() {
  furnished
  move_app "$app"
  rm "$app"
}
after_put_back() { expect_moved; }
