# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# Installations as the README and docs/installing.md show them. Sourced by scenes.sh.

downloads="$HOME/Downloads"
lantern=/Applications/Lantern.app
lanternCopy="$drive/ExternalQuarn/Apps/Lantern.app"
trash="$drive/.Trashes/$(id -u)"
onto=(--option trusted-external --target-drive "$drive")

needs_packages() { command -v bsdtar >/dev/null || skip "this system has no bsdtar, which makes archives and packages"; }

# As ./try begins, with the downloaded application remembered.
downloaded() {
  needs_packages
  furnished
  download
  truncate -s 50000 "$downloads/Lantern.app/Contents/Resources/library.bin"
  lanternTree=$(tree "$downloads/Lantern.app")
}

# A script that does what an installer does.
write_setup() {
  printf '#!/bin/sh\ncp -R "%s/Lantern.app" /Applications/\n' "$downloads" >"$downloads/setup.sh"
}
run_setup=(quarn install run "$downloads/setup.sh" --option tracked-script-external --target-drive "$drive")

is_launcher() { [ "$(cat "$1/Contents/Resources/ExternalAppTarget.txt" 2>/dev/null)" = "$2" ]; }
expect_lantern() { is_whole "$1" "$lanternTree" || fail "Lantern isn't whole at $1"; }
expect_installed() {
  expect_lantern "$lanternCopy"
  is_launcher "$lantern" "$lanternCopy" || fail "no launcher opens $lanternCopy"
}

scene_installing() { downloaded; }
after_installing() {
  expect_free "$lantern"
  expect_free "$lanternCopy"
  expect_lantern "$downloads/Lantern.app"
}

scene_trust() {
  downloaded
  write_setup
  # Without the line behind it, nobody has signed it.
  grep -av '^quarn-room: signed' "$downloads/Lantern.pkg" >"$downloads/Unsigned.pkg"
  cp "$downloads/Lantern.pkg" "$downloads/Stranger.pkg"
  /usr/libexec/quarn-room/sign-package "$downloads/Stranger.pkg" untrusted
}
after_trust() { expect_free "$lantern"; }

# The file that the document shows.
scene_own_options() {
  downloaded
  mkdir -p "$records/InstallerOptions"
  # shellcheck disable=SC2016  # the marks of a block, and no command
  sed -n '/^```toml$/,/^```$/p' "$top/docs/installing.md" | grep -v '^```' >"$records/InstallerOptions/packages.toml"
}
after_own_options() { expect_link "$lantern" "$lanternCopy"; }

# An application that was moved, and a package of it.
moved_lantern() {
  downloaded
  cp -R "$downloads/Lantern.app" /Applications/
  move_app "$lantern"
}

scene_update_at_home() { moved_lantern; }
after_update_at_home() { expect_link "$lantern" "$lanternCopy" && expect_free "$trash/Lantern.app"; }

scene_update_with_gantrix() { moved_lantern; }
after_update_with_gantrix() {
  expect_link "$lantern" "$lanternCopy"
  expect_lantern "$drive/Lantern before.app"
  expect_free "$trash/Lantern.app"
}

scene_undoing() {
  downloaded
  quietly quarn install run "$downloads/Lantern.pkg" "${onto[@]}" || fail "can't install"
}
after_undoing() {
  [ -z "$(pkgutil --pkgs)" ] || fail "the receipt is still there"
  [ "$(cat "$HOME/.Trash/com.example.lantern.plist")" = '<plist version="1.0"><dict/></plist>' ] ||
    fail "what the package brought isn't in the Trash"
}
