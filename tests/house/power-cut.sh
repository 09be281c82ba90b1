#!/bin/sh
# Pulls the plug right after the last line of a command: the disk image under the volume is copied at that moment,
# mounted again, and has to hold everything. What the system had not written out yet is not in the image.
#   power-cut.sh QUARN-ROOM QUARN
set -u
room=$1 quarn=$2
work=$(mktemp -d)

skip() {
  echo "power-cut: Skipped"
  echo "$1"
  rm -rf "$work"
  exit 77
}

[ "$(id -u)" -eq 0 ] || skip "only root mounts disk images"
command -v mkfs.ext4 >/dev/null 2>&1 || skip "there is no mkfs.ext4"
if [ "${POWER_CUT_INSIDE:-}" != yes ]; then
  unshare --mount --propagation private true 2>/dev/null || skip "a mount namespace can't be made here"
  rm -rf "$work"
  POWER_CUT_INSIDE=yes exec unshare --mount --propagation private "$0" "$@"
fi

# disk NAME: an empty file system in an image, mounted at $work/NAME.
disk() {
  truncate -s 48m "$work/$1.img" && mkfs.ext4 -q "$work/$1.img" && mkdir -p "$work/$1" &&
    mount -o loop,commit=300 "$work/$1.img" "$work/$1" 2>/dev/null
}

# shellcheck disable=SC2317  # called by the trap
cleanup() {
  umount "$work/drive" "$work/home" "$work/seen" 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT
if ! { disk drive && disk home; }; then skip "disk images can't be mounted here"; fi

hasPackages=yes
command -v bsdtar >/dev/null 2>&1 || hasPackages=
cp "$(dirname "$0")/../../macroom/scene.sh" "$work/furniture.sh"

# Runs in the room. Each command is followed at once by a copy of the image that has to hold its result.
cat >"$work/scene.sh" <<'SCENE'
set -eu
work=$1 hasPackages=$2
. "$work/furniture.sh"
mkdir -p /Volumes/E4 && mount --bind "$work/drive" /Volumes/E4
mount --bind "$work/home" /Users/me
exec 3>&1 >/dev/null

fill() {
  mkdir -p "$1/Contents/MacOS" "$1/.hidden"
  for i in $(seq 1 60); do head -c 20000 /dev/urandom >"$1/Contents/file $i"; done
  ln -s MacOS "$1/Contents/Current"
  echo hidden >"$1/.hidden/note"
}
keep() { cp -a "$1" "$work/expected-$2"; }
cut() { cp --sparse=always "$work/$1.img" "$work/cut-$2.img"; }

fill /Applications/Foo.app
keep /Applications/Foo.app one
quarn move one /Applications/Foo.app --target-drive /Volumes/E4 --no-data --yes
cut drive one

fill /tmp/Movies
keep /tmp/Movies path
quarn move path --source /tmp/Movies --destination /Volumes/E4/Movies --yes
cut drive path

fill /Volumes/X9/Papers
keep /Volumes/X9/Papers restore
ln -s /Volumes/X9/Papers /Users/me/Papers
quarn move restore /Users/me/Papers
cut home restore

mkdir -p /Users/me/Applications /Users/me/Library/Caches
fill /Users/me/Applications/Bar.app
keep /Users/me/Applications/Bar.app uninstall
fill /Users/me/Library/Caches/Bar
quarn uninstall run /Users/me/Applications/Bar.app
cut home uninstall

fill /tmp/Source
keep /tmp/Source backup
QUARN_SOURCE_ROOT=/tmp/Source quarn backup create --target-drive /Volumes/E4
cut drive backup
quarn backup list --target-drive /Volumes/E4 | command cut -f 1 >"$work/backup"
# With its new signature, which comes last.
gain=/Library/Audio/Plug-Ins/VST3/Gain.vst3
fill "$gain"
# Beside its contents, nothing may lie in a bundle that is signed.
rm -r "$gain/.hidden"
quarn install plugins install /Library/Audio/Plug-Ins --target-drive /Volumes/E4 --yes
cut drive plugin
[ -L "$gain" ] && [ -f "$gain/Contents/_CodeSignature/CodeResources" ]
keep /Volumes/E4/ExternalQuarn/Plugins/VST3/Gain.vst3 plugin

[ -n "$hasPackages" ] || exit 0
baz=/tmp/payload/Applications/Baz.app
fill "$baz"
cat >"$baz/Contents/Info.plist" <<'PLIST'
<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>CFBundleIdentifier</key><string>com.example.baz</string><key>CFBundleExecutable</key><string>Baz</string>
</dict></plist>
PLIST
keep "$baz" install
pack /Users/me/Baz.pkg com.example.baz /tmp/payload
quarn install run /Users/me/Baz.pkg --option trusted-external --target-drive /Volumes/E4
cut drive install
cut home install-session
SCENE

"$room" --keep-rights --drive X9=16m --bind "$work" --quarn "$quarn" -- /bin/bash "$work/scene.sh" "$work" "$hasPackages" ||
  { echo "the scene failed"; exit 1; }

# look COMMAND: mounts the image that was copied after it.
look() { mkdir -p "$work/seen" && mount -o loop "$work/cut-$1.img" "$work/seen"; }

# survived COMMAND PLACE: the image that was copied after a command holds all that was expected.
survived() {
  look "$1" || return 1
  diff -r --no-dereference "$work/expected-$1" "$work/seen/$2" >"$work/differences" 2>&1
  status=$?
  umount "$work/seen"
  [ $status -eq 0 ] && return
  echo "after the power cut that followed $1:"
  head -n 5 "$work/differences"
  failed=1
}

failed=0
survived one ExternalQuarn/Apps/Foo.app
survived path Movies
survived restore Papers
survived plugin ExternalQuarn/Plugins/VST3/Gain.vst3
survived uninstall .Trash/Bar.app
survived backup "QuarnBackups/$(cat "$work/backup")/Source"
look backup || exit 1
[ -s "$work/seen/QuarnBackups/$(cat "$work/backup")/backup.json" ] ||
  { echo "after the power cut the backup isn't recorded" && failed=1; }
umount "$work/seen"
look uninstall || exit 1
for item in Applications/Bar.app Library/Caches/Bar; do
  sed 's,\\/,/,g' "$work/seen/Library/Application Support/Quarn/UninstallSessions"/*/session.json 2>/dev/null |
    grep -qF "\"originalPath\" : \"/Users/me/$item\"" ||
    { echo "after the power cut the session doesn't tell of $item" && failed=1; }
  [ -e "$work/seen/.Trash/${item##*/}" ] || { echo "after the power cut $item isn't in the Trash" && failed=1; }
done
umount "$work/seen"
if [ -n "$hasPackages" ]; then
  survived install ExternalQuarn/Apps/Baz.app
  look install-session || exit 1
  grep -qs '"status":"done"' "$work/seen/Library/Application Support/Quarn/InstallerSessions"/*/session.json ||
    { echo "after the power cut the session isn't done" && failed=1; }
  umount "$work/seen"
else
  echo "this system has no bsdtar, which makes packages: none was installed"
fi
exit $failed
