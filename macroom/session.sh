#!/bin/sh
# quarn's main job as one would do it at a terminal. Every command is printed before its output. Runs in
# a room; the README shows what it prints.
set -u
exec 2>&1

show() {
  printf '\n$'
  for word in "$@"; do
    case "$word" in
      *[\ \*]*) printf ' "%s"' "$word" ;;
      *) printf ' %s' "$word" ;;
    esac
  done
  printf '\n'
  "$@"
}

# type_in LINE: for a line that only a shell understands.
type_in() {
  printf '\n$ %s\n' "$1"
  eval "$1"
}

# shellcheck source=macroom/scene.sh
. "$(dirname "$0")/scene.sh"
furnish
download
add_plugin_and_project

show quarn move drives
show quarn move apps
show quarn move plan
show quarn move one "/Applications/Paper Garden.app" --yes --progress
show readlink "/Applications/Paper Garden.app"
show find /Volumes/X9/ExternalQuarn/Apps -maxdepth 1
show "/Applications/Paper Garden.app/Contents/MacOS/PaperGarden"
show cat "$HOME/Library/Application Support/Quarn/health-manifest.json"
echo
show ln -sfn "/Volumes/X9/Quarn/Data/Library/Application Support/Paper Garden" "$HOME/Library/Application Support/Paper Garden"
show quarn health check
show quarn health repair --no-snapshot --yes
show quarn health check
show quarn move back "Paper Garden"
show find /Applications -maxdepth 1 -name '*.app' -type d
show quarn install run "$HOME/Downloads/Lantern.pkg" --option trusted-external --target-drive /Volumes/X9 --progress
show /Applications/Lantern.app/Contents/MacOS/ExternalAppLauncher
# shellcheck disable=SC2016  # for the shell that it is typed into
{
  type_in 'session=$(quarn install sessions | head -n 1 | cut -f 2)'
  type_in 'quarn install uninstall-plan "$session"'
  type_in 'quarn install uninstall "$session"'
}
show ls /Applications /Volumes/X9/ExternalQuarn/Apps
type_in 'quarn health repair --no-snapshot --yes | tail -n 1'
show quarn install run "$HOME/Downloads/Lantern.app" --option trusted-external --target-drive /Volumes/X9 --format human
show mkdir -p "$HOME/Applications"
show mv /Volumes/X9/ExternalQuarn/Apps/Lantern.app "$HOME/Applications/"
show quarn dedupe scan
type_in 'quarn dedupe run --yes | tail -n 1'
show quarn uninstall plan "/Applications/Tape Loft.app" --format human
show quarn uninstall run "/Applications/Tape Loft.app"
show ls -A "$HOME/.Trash"
show quarn install plugins install "$HOME/Downloads/Plug-ins" --target-drive /Volumes/X9 --yes
show readlink /Library/Audio/Plug-Ins/VST3/Hush.vst3
show cd "$HOME/Sand Kite"
show quarn scaffold build-command --default-drive /Volumes/X9
show ./build.command
show "/Applications/Sand Kite.app/Contents/MacOS/kite"
show env QUARN_SOURCE_ROOT=. quarn backup create --target-drive /Volumes/X9
show quarn backup list --target-drive /Volumes/X9
