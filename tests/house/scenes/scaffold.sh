# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# A project of one's own, and the script that builds it. Sourced by scenes.sh.

kite="/Applications/Sand Kite.app"
kiteCopy="$drive/ExternalQuarn/Apps/Sand Kite.app"

a_project() {
  furnished
  put_up_project "$HOME/Sand Kite"
  cd "$HOME/Sand Kite" || exit 1
}
# installed_once: with its script, as version 1. The next one is built afresh.
installed_once() {
  a_project
  { quietly quarn scaffold build-command && quietly ./build.command; } || fail "not installed"
  kiteTree=$(tree "$kite")
  echo 2 >version
  rm -r build
}

scene_building() { a_project; }
after_building() {
  expect_link "$kite" "$kiteCopy"
  is_whole "$kiteCopy" "$(tree 'build/Sand Kite.app')" || fail "not the built one"
  [ "$("$kite/Contents/MacOS/kite")" = "Sand Kite 1" ] || fail "it doesn't run"
}

# The copying tool ends in the midst of its work, once.
scene_build_failed() {
  installed_once
  # shellcheck disable=SC2016  # for the script that is written
  printf '#!/bin/sh\ncp /usr/libexec/quarn-room/ditto /usr/bin/ditto\n%s\n%s\nexit 1\n' 'mkdir -p "$3/Contents"' \
    'echo "ditto: $3/Contents/MacOS/kite: No space left on device" >&2' >/usr/bin/ditto
}
after_build_failed() {
  is_whole "$kite" "$kiteTree" || fail "the old one isn't back"
  [ -d "$HOME/.Trash/Sand Kite.app" ] || fail "what was copied isn't in the Trash"
}
