# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# Uninstalls as the README and docs/uninstalling.md show them; `sudo` stands in another-name.sh. Sourced by scenes.sh.

library="$HOME/Library"

# write PATH…: a small file at each, with the folders that it needs.
write() {
  local path
  for path in "$@"; do
    mkdir -p "$(dirname "$path")"
    echo "$path" >"$path"
  done
}

# Everything that may be moved, except what quarn itself keeps and what was set aside.
places() {
  (cd / && find Applications Library "${HOME#/}" \( -name .Trash -o -name .QuarnTrash -o -path '*/Application Support/Quarn' \) -prune \
    -o \( -type f -printf '%p %m ' -exec cksum {} \; -o -printf '%p %y %m %l\n' \)) | sort
}

# As ./try begins, with one application more: it is at home, with some of what can belong to an application.
lantern_at_home() {
  furnish
  put_up Lantern com.example.lantern Lantern 2
  truncate -s 50000 /Applications/Lantern.app/Contents/Resources/library.bin
  write "$library/Application Support/Lantern/notes" "$library/Caches/com.example.lantern/wicks" \
    "$library/Preferences/com.example.lantern.plist" "$HOME/.lantern"
  write_receipt com.example.lantern
  remember_places
}
remember_places() {
  remember
  lanternPlaces=$(places)
}

write_receipt() { mkdir -p /var/db/quarn-room-receipts && echo 'version 2.1' >"/var/db/quarn-room-receipts/$1"; }

# The function that docs/uninstalling.md shows.
eval "$(sed -n '/^put_back() {$/,/^}$/p' "$top/docs/uninstalling.md")"

newest_session() { quarn uninstall sessions | sed -n 2p | cut -f 2; }
# expect_places: all is where it was.
expect_places() { diff <(echo "$lanternPlaces") <(places) >&2 || fail "not all is where it was"; }
put_back_the_newest() { put_back "$(newest_session)"; }

scene_uninstalling() { lantern_at_home; }
after_uninstalling() {
  expect_free /Applications/Lantern.app
  put_back_the_newest
  expect_places
}

scene_categories() {
  furnish
  put_up Lantern com.example.lantern Lantern 1
  truncate -s 50000 /Applications/Lantern.app/Contents/Resources/library.bin
  local name
  for name in Preferences/com.example.lantern.plist Preferences/ByHost/com.example.lantern.0A1B.plist \
    Preferences/ByHost/com.example.lanternpro.0A1B.plist LaunchAgents/com.example.lantern.plist \
    "Application Support/Lantern/notes" Caches/com.example.lantern/wicks Logs/Lantern/log Containers/com.example.lantern/data \
    "Group Containers/com.example.lantern/data" HTTPStorages/com.example.lantern/data WebKit/com.example.lantern/data \
    "Saved Application State/Lantern.savedState/data" Caches/lantern-cli/data; do
    write "$library/$name"
  done
  write "$HOME/.lantern" "/Library/LaunchDaemons/com.example.lantern.plist" "/Library/LaunchAgents/com.example.lantern.plist" \
    "/Library/PrivilegedHelperTools/com.example.lantern" "/Library/Application Support/com.example.lantern/data"
  write_receipt com.example.lantern
  mkdir -p "$records/InstallerSessions/20261122_101500"
  cat >"$records/InstallerSessions/20261122_101500/session.json" <<'JSON'
{"id":"20261122_101500","sourcePath":"/Users/me/Downloads/Lantern.zip","optionID":"trusted-external","targetDrivePath":"/Volumes/X9",
 "createdAt":817035300,"actions":[],"changedPaths":["/Applications/Lantern.app"],"newReceipts":[],"status":"done","pendingExternalizeApps":[]}
JSON
  remember_places
}
after_categories() { expect_places; }

scene_system_items() {
  lantern_at_home
  write /Library/LaunchDaemons/com.example.lantern.plist /Library/PrivilegedHelperTools/com.example.lantern
  printf 'version 2.1\nfile Applications/Lantern.app\nfile Library/LaunchDaemons/com.example.lantern.plist\n' \
    >/var/db/quarn-room-receipts/com.example.lantern
  write_receipt com.example.lanternpro
  quietly "${uninstall_lantern[@]}"
  trashTree=$(tree "$HOME/.Trash")
}
after_system_items() {
  expect_free /Library/LaunchDaemons/com.example.lantern.plist
  rm -r "$HOME/.Trash/Lantern system"
  [ "$(tree "$HOME/.Trash")" = "$trashTree" ] || fail "something in the Trash is another thing now"
  [ "$(pkgutil --pkgs)" = com.example.lanternpro ] || fail "another receipt is forgotten"
}

scene_uninstall_moved() {
  lantern_at_home
  quietly quarn move one /Applications/Lantern.app --yes || fail "can't move"
}
after_uninstall_moved() {
  [ -z "$(find "$drive/ExternalQuarn/Data" -type f ! -name .lantern ! -name '*.plist')" ] || fail "data is left on the drive"
}

scene_uninstall_launcher() {
  lantern_at_home
  mkdir -p "$downloads"
  mv /Applications/Lantern.app "$downloads/"
  quietly quarn install run "$downloads/Lantern.app" "${onto[@]}" || fail "can't install"
}
after_uninstall_launcher() {
  expect_free /Applications/Lantern.app
  expect_free "$library/Caches/com.example.lantern"
}

scene_undo_uninstall() { lantern_at_home; }
after_undo_uninstall() { expect_places; }

scene_reinstalled() {
  lantern_at_home
  quietly quarn move one /Applications/Lantern.app --yes || fail "can't move"
  quietly quarn uninstall run /Applications/Lantern.app || fail "can't uninstall"
  quietly quarn health repair --no-snapshot --yes
  write "$library/Application Support/Lantern/notes"
  put_up Lantern com.example.lantern Lantern 1
}
after_reinstalled() {
  grep -q Lantern "$records/health-manifest.json" && fail "the rows are still there"
  [ -s "$records/health-manifest.json.before" ] || fail "the old file isn't kept"
}
