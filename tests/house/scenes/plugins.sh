# shellcheck shell=bash disable=SC2034,SC2154  # shares its names with ../scenes.sh
# Plug-ins. Sourced by scenes.sh.

plugins="$HOME/Downloads/Plug-ins"
systemPlugin="/Library/Audio/Plug-Ins/VST3/Hush.vst3"
pluginCopy="$drive/ExternalQuarn/Plugins/VST3/Hush.vst3"

# The tree of a plug-in, without what signing adds.
plugin_tree() {
  (
    cd "$1" || exit 1
    find . -name _CodeSignature -prune -o -printf '%P %y %l\n' | sort
    find . -name _CodeSignature -prune -o -type f -exec cksum {} + | sort -k3
  )
}
expect_plugin() {
  { [ -d "$1" ] && [ ! -L "$1" ] && [ "$(plugin_tree "$1")" = "$2" ]; } || fail "the plug-in isn't whole at $1"
}
expect_linked() {
  expect_link "$systemPlugin" "$pluginCopy"
  expect_plugin "$pluginCopy" "$1"
}

downloaded_plugins() {
  furnished
  put_up_plugin "$plugins/Hush.vst3" 2
  put_up_plugin "$plugins/Hush.component" 1
  pluginTree=$(plugin_tree "$plugins/Hush.vst3")
}
# One that an installer put into the system's folder.
native_plugin() {
  furnished
  put_up_plugin "$systemPlugin" 2
  pluginTree=$(plugin_tree "$systemPlugin")
}

scene_plugins() { downloaded_plugins; }
after_plugins() {
  expect_linked "$pluginTree"
  expect_plugin "$plugins/Hush.vst3" "$pluginTree"
}

scene_plugins_copy_first() {
  downloaded_plugins
  put_up_plugin "$systemPlugin" 3
  nativeTree=$(plugin_tree "$systemPlugin")
}
after_plugins_copy_first() {
  expect_plugin "$systemPlugin" "$nativeTree"
  expect_plugin "$pluginCopy" "$pluginTree"
}

# killed_at TOOL SOURCE LINE: a run that is killed by one of its tools, which does this instead of its work.
killed_at() {
  local tool=$1 from=$2
  # shellcheck disable=SC2016  # for the script that is written
  printf '#!/bin/sh\n%s\nkill -KILL $PPID\n' "$3" >"$tool"
  quietly quarn install plugins install "$from" --target-drive "$drive" --yes --formats vst3
  cp "/usr/libexec/quarn-room/${tool##*/}" "$tool"
}

scene_plugin_unlinked() {
  native_plugin
  # shellcheck disable=SC2016  # for the script that is written
  killed_at /usr/local/bin/gantrix /Library/Audio/Plug-Ins '"$@"'
  is_free "$systemPlugin" || fail "the plug-in is still there"
  expect_plugin "$pluginCopy" "$pluginTree"
}
after_plugin_unlinked() { expect_linked "$pluginTree"; }

scene_killed_removing_plugin() {
  native_plugin
  killed_at /usr/local/bin/gantrix /Library/Audio/Plug-Ins "rm -r '$systemPlugin/Contents/Resources'"
  [ -d "$systemPlugin/Contents/MacOS" ] || fail "the plug-in isn't partly there"
  expect_plugin "$pluginCopy" "$pluginTree"
}
after_killed_removing_plugin() { expect_linked "$pluginTree"; }

scene_killed_copying_plugin() {
  downloaded_plugins
  killed_at /usr/bin/ditto "$plugins" "mkdir -p '$pluginCopy/Contents/MacOS'"
  [ -d "$pluginCopy" ] || fail "there is no part of a copy"
}
after_killed_copying_plugin() { expect_linked "$pluginTree"; }
