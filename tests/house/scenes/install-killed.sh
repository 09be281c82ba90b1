# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh and with install.sh
# Installations that were killed or failed. Sourced by scenes.sh.

# Nothing is installed, whatever the last attempt left.
afresh_uninstalled() {
  rm -rf "$lantern" "$lanternCopy" "$records" "$trash" "$HOME/.Trash" /Applications/.quarn-new-launcher-* /tmp/QuarnZip-*
  [ ! -d /Volumes/Lantern ] || quietly hdiutil detach /Volumes/Lantern
}

is_pending() { grep -qs '"status":"pendingExternalize"' "$records"/InstallerSessions/*/session.json; }
is_partly_copied() { [ -d "$lanternCopy/Contents" ] && ! is_whole "$lanternCopy" "$lanternTree"; }

scene_killed_installing() {
  downloaded
  killed_when is_partly_copied afresh_uninstalled quarn install run "$downloads/Lantern.app" "${onto[@]}"
  expect_free "$lantern"
  expect_free "$records/InstallerSessions"
}
after_killed_installing() {
  expect_installed
  expect_lantern "$downloads/Lantern.app"
}

is_pending_and_untouched() { is_pending && is_whole "$lantern" "$lanternTree"; }

scene_killed_pending() {
  downloaded
  write_setup
  killed_when is_pending_and_untouched afresh_uninstalled "${run_setup[@]}"
}
after_killed_pending() {
  expect_installed
  expect_lantern "$HOME/.Trash/Lantern.app"
  is_pending && fail "the session is still pending"
}

is_pending_without_launcher() { is_pending && is_whole "$lanternCopy" "$lanternTree" && is_free "$lantern"; }

scene_killed_launching() {
  downloaded
  write_setup
  killed_when is_pending_without_launcher afresh_uninstalled "${run_setup[@]}"
}
after_killed_launching() { expect_installed; }

# The application that is installed is where its launcher will be.
afresh_at_home() {
  afresh_uninstalled
  cp -R "$downloads/Lantern.app" /Applications/
}
is_without_launcher() { is_whole "$lanternCopy" "$lanternTree" && is_free "$lantern"; }

scene_killed_launching_at_home() {
  downloaded
  killed_when is_without_launcher afresh_at_home quarn install run "$lantern" "${onto[@]}"
}
after_killed_launching_at_home() {
  expect_installed
  expect_lantern "$HOME/.Trash/Lantern.app"
}

is_pending_with_launcher() { is_pending && is_launcher "$lantern" "$lanternCopy"; }

scene_killed_concluding() {
  downloaded
  write_setup
  killed_when is_pending_with_launcher afresh_uninstalled "${run_setup[@]}"
  expect_installed
}
after_killed_concluding() { expect_installed; }

scene_killed_attached() {
  downloaded
  bsdtar -cf "$downloads/Lantern.dmg" -C "$downloads" Lantern.app
  killed_when is_partly_copied afresh_uninstalled quarn install run "$downloads/Lantern.dmg" "${onto[@]}"
  [ -d /Volumes/Lantern ] || fail "the image isn't attached"
}
after_killed_attached() {
  expect_installed
  expect_free /Volumes/Lantern
}

scene_killed_expanded() {
  downloaded
  bsdtar --format zip -cf "$downloads/Lantern.zip" -C "$downloads" Lantern.app
  killed_when is_partly_copied afresh_uninstalled quarn install run "$downloads/Lantern.zip" "${onto[@]}"
  rm -rf "$HOME/.Trash"
}
after_killed_expanded() {
  expect_installed
  [ -z "$(find /tmp -name 'QuarnZip-*')" ] || fail "a folder is left"
}

# The package that is installed later has another version than the one that quarn made the launcher for.
scene_package_over_launcher() {
  local payload
  downloaded
  quietly quarn install run "$downloads/Lantern.pkg" "${onto[@]}" || fail "can't install"
  payload=$(mktemp -d)
  mkdir "$payload/Applications"
  cp -R "$downloads/Lantern.app" "$payload/Applications/"
  pack "$downloads/Newer.pkg" com.example.lantern "$payload"
  quietly quarn install run "$downloads/Newer.pkg" "${onto[@]}" || fail "can't install the newer one"
}
after_package_over_launcher() {
  expect_link "$lantern" "$lanternCopy"
  cmp "$lanternCopy/Contents/Resources/library.bin" "$downloads/Lantern.app/Contents/Resources/library.bin" ||
    fail "the newer version isn't on the drive"
}

# The application has been moved; the package that brings a new version of it fails.
scene_failed_package() {
  moved_lantern
  mkdir -p /var/db/quarn-room-tools
  echo 'install-fails The disk is full.' >/var/db/quarn-room-tools/installer
}
is_room_made() { quietly ls -d "$drive"/ExternalQuarn/Apps/.quarn-replaced-* && is_free "$lantern"; }
afresh_moved() {
  rm -rf "$lantern" "$lanternCopy" "$drive"/ExternalQuarn/Apps/.quarn-replaced-* "$trash"
  cp -R "$downloads/Lantern.app" /Applications/
  move_app "$lantern"
}
scene_killed_making_room() {
  downloaded
  mkdir -p /var/db/quarn-room-tools
  echo 'install-fails The disk is full.' >/var/db/quarn-room-tools/installer
  killed_when is_room_made afresh_moved quarn install run "$downloads/Lantern.pkg" "${onto[@]}"
}
after_killed_making_room() {
  expect_link "$lantern" "$lanternCopy"
  expect_lantern "$lanternCopy"
}

after_failed_package() {
  expect_link "$lantern" "$lanternCopy"
  expect_lantern "$lanternCopy"
}

install_lantern() { quietly quarn install run "$downloads/Lantern.app" "${onto[@]}" || fail "can't install"; }

scene_link_as_source() { moved_lantern; }
after_link_as_source() {
  expect_link "$lantern" "$lanternCopy"
  expect_lantern "$lanternCopy"
}

scene_drive_missing() {
  needs_mounts
  downloaded
}
then_plug_in_y9() { plug Y9 64m; }
after_drive_missing() {
  copyOnY9=/Volumes/Y9/ExternalQuarn/Apps/Lantern.app
  is_launcher "$lantern" "$copyOnY9" || fail "no launcher opens $copyOnY9"
  [ -d "$copyOnY9/Contents" ] || fail "the application isn't on the drive"
}

is_partly_undone() { is_free "$lanternCopy" && is_launcher "$lantern" "$lanternCopy"; }
# With the session of the first installation, which every attempt undoes.
afresh_installed() {
  afresh_uninstalled
  install_lantern
  rm -r "$records/InstallerSessions"
  cp -R "$kept" "$records/InstallerSessions"
}

scene_killed_undoing() {
  local kept
  downloaded
  install_lantern
  kept=$(mktemp -d)/sessions
  cp -R "$records/InstallerSessions" "$kept"
  killed_when is_partly_undone afresh_installed quarn install uninstall "$(ls "$kept")"
  expect_lantern "$trash/Lantern.app"
}
after_killed_undoing() { expect_installed; }
