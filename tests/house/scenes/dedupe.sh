# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh and with install.sh
# Duplicate launchers. Sourced by scenes.sh.

lanternAtHome="$HOME/Applications/Lantern.app"

# lantern_twice: a launcher in /Applications opens the copy on the drive, and a real one is in the user's own folder.
lantern_twice() {
  furnished
  put_up Lantern com.example.lantern Lantern 2
  truncate -s 50000 "$lantern/Contents/Resources/library.bin"
  mkdir -p "$downloads" "$HOME/Applications"
  mv "$lantern" "$downloads/"
  lanternTree=$(tree "$downloads/Lantern.app")
  install_lantern
  cp -a "$downloads/Lantern.app" "$lanternAtHome"
  launcherTree=$(tree "$lantern")
}
# The copy on the drive was moved away.
duplicate_launcher() {
  lantern_twice
  mv "$lanternCopy" "$drive/Lantern.moved"
}
expect_lantern_kept() { expect_lantern "$lanternAtHome"; }
expect_launcher() { is_whole "$1" "$launcherTree" || fail "the launcher isn't whole at $1"; }

scene_duplicates() { duplicate_launcher; }
after_duplicates() {
  expect_free "$lantern"
  expect_launcher "$HOME/.Trash/Lantern.app"
  expect_lantern_kept
  expect_lantern "$drive/Lantern.moved"
}

scene_undo_dedupe() { duplicate_launcher; }
after_undo_dedupe() {
  expect_launcher "$lantern"
  expect_lantern_kept
}

scene_dedupe_failed() {
  duplicate_launcher
  echo 'no folder' >"$HOME/.Trash"
}
after_dedupe_failed() { after_duplicates; }

# Two launchers that open nothing, of which one is gone when the run is killed.
second="/Applications/Utilities/Lantern.app"
afresh_duplicates() {
  rm -rf "$HOME/.Trash" "$lantern" "$second"
  cp -a "$kept" "$lantern"
  cp -a "$kept" "$second"
}
is_half_done() { is_free "$lantern" && [ -d "$second" ]; }
scene_killed_deduping() {
  local kept
  duplicate_launcher
  kept=$(mktemp -d)/launcher
  cp -a "$lantern" "$kept"
  killed_when is_half_done afresh_duplicates quarn dedupe run --yes
  expect_launcher "$HOME/.Trash/Lantern.app"
}
after_killed_deduping() {
  expect_free "$second"
  expect_launcher "$HOME/.Trash/Lantern.app"
  expect_launcher "$HOME/.Trash/Lantern 2.app"
  expect_lantern_kept
}

scene_dedupe_without_drive() {
  needs_mounts
  lantern_twice
  pull_out X9
}
after_dedupe_without_drive() {
  expect_launcher "$lantern"
  expect_lantern "$lanternCopy"
  expect_lantern_kept
}
