# shellcheck shell=bash disable=SC2154  # shares its names with ../scenes.sh
# Backups of quarn itself. Sourced by scenes.sh.

backups=$drive/QuarnBackups
quarnApp=/Applications/Quarn.app

quarn_at_home() {
  furnished
  mkdir -p quarn/tests
  echo 'int main() {}' >quarn/quarn.cpp
  echo 'int test() {}' >quarn/tests/quarn_test.cpp
  echo 'hidden' >quarn/.config
  put_up Quarn com.example.quarn quarn 1
  sourcesTree=$(tree quarn) quarnAppTree=$(tree "$quarnApp")
}

# What files hold, whatever these are called.
contents() { find "$1" -type f -exec cksum {} + | cut -d' ' -f1,2 | sort; }

expect_backup() {
  [ "$(contents "$1/SourceApp")" = "$(contents "$HOME/quarn")" ] || fail "the sources aren't whole in $1"
  [ "$(contents "$1/InstalledApp.app")" = "$(contents "$quarnApp")" ] || fail "the application isn't whole in $1"
  is_whole "$HOME/quarn" "$sourcesTree" || fail "the sources have changed"
  is_whole "$quarnApp" "$quarnAppTree" || fail "the application has changed"
}

scene_backing_up() { quarn_at_home; }
after_backing_up() { expect_backup "$backups"/*; }

# Beside a backup that is whole.
clear_backups() {
  rm -rf "$backups"
  mkdir -p "$backups"
  cp -a "$whole" "$backups/20200101_120000"
}
is_half_backed_up() {
  local each
  for each in "$backups"/*; do
    [ -e "$each/backup.json" ] || [ -e "$each/InstalledApp.app" ] || ! [ -e "$each/SourceApp/tests/app_test.cpp" ] || return 0
  done
  return 1
}
scene_backup_killed() {
  local whole
  quarn_at_home
  export QUARN_SOURCE_ROOT=quarn
  quietly quarn backup create --target-drive "$drive"
  whole=$(mktemp -d)/whole
  mv "$backups"/* "$whole"
  sed -i 's/[0-9]\{8\}_[0-9]\{6\}/20200101_120000/g' "$whole/backup.json"
  killed_when is_half_backed_up clear_backups quarn backup create --target-drive "$drive"
  unset QUARN_SOURCE_ROOT
}
after_backup_killed() {
  for each in "$backups"/*; do expect_backup "$each"; done
  [ "$(quarn backup list --target-drive "$drive" | wc -l)" -eq 2 ] || fail "there aren't two backups"
}
