# shellcheck shell=sh
# The scene of ./try and ./room: two applications with some data, a folder of one's own, and something to install from.
# Sourced in a room.

# put_up NAME IDENTIFIER EXECUTABLE MEGABYTES
put_up() {
  mkdir -p "/Applications/$1.app/Contents/MacOS" "/Applications/$1.app/Contents/Resources"
  cat >"/Applications/$1.app/Contents/Info.plist" <<PLIST
<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>CFBundleExecutable</key>
	<string>$3</string>
	<key>CFBundleIdentifier</key>
	<string>$2</string>
	<key>CFBundleShortVersionString</key>
	<string>2.1</string>
</dict>
</plist>
PLIST
  # shellcheck disable=SC2016  # for the script that is written
  printf '#!/bin/sh\necho "%s runs from $(readlink -f "$0")"\n' "$1" \
    >"/Applications/$1.app/Contents/MacOS/$3"
  chmod 755 "/Applications/$1.app/Contents/MacOS/$3"
  head -c "$4"000000 /dev/urandom >"/Applications/$1.app/Contents/Resources/library.bin"
}

furnish() {
  put_up "Paper Garden" com.example.papergarden PaperGarden 9
  put_up "Tape Loft" com.example.tapeloft TapeLoft 4
  mkdir -p "$HOME/Library/Application Support/Paper Garden" "$HOME/Library/Caches/com.example.tapeloft" \
    "$HOME/Samples"
  head -c 3000000 /dev/urandom >"$HOME/Library/Application Support/Paper Garden/drawings.db"
  head -c 1500000 /dev/urandom >"$HOME/Library/Caches/com.example.tapeloft/waveforms"
  head -c 5000000 /dev/urandom >"$HOME/Samples/drums.wav"
}

# pack PACKAGE IDENTIFIER FOLDER: a package that installs what is in the folder, and whose signature the room trusts.
pack() {
  members=$(mktemp -d)
  bsdtar --format odc --uid 0 --gid 0 -czf "$members/Payload" -C "$3" .
  cat >"$members/PackageInfo" <<INFO
<pkg-info format-version="2" identifier="$2" version="2.1" install-location="/" auth="root">
  $(cd "$3" && find ./Applications -maxdepth 1 -name '*.app' -printf '<bundle path="%p"/>')
</pkg-info>
INFO
  bsdtar --format xar -cnf "$1" -C "$members" PackageInfo Payload
  rm -r "$members"
  /usr/libexec/quarn-room/sign-package "$1" notarized
}

# put_up_plugin PATH MEGABYTES
put_up_plugin() {
  mkdir -p "$1/Contents/MacOS" "$1/Contents/Resources"
  echo "code of ${1##*/}" >"$1/Contents/MacOS/Hush"
  head -c "$2"000000 /dev/urandom >"$1/Contents/Resources/rooms.wav"
}

# put_up_project FOLDER: its `make` assembles the application "Sand Kite", which says its version.
put_up_project() {
  mkdir -p "$1"
  echo 1 >"$1/version"
  cat >"$1/Makefile" <<'MAKEFILE'
bundle = build/Sand Kite.app/Contents
all:
	@mkdir -p '$(bundle)/MacOS'
	@echo '<key>CFBundleExecutable</key><string>kite</string>' >'$(bundle)/Info.plist'
	@{ echo '#!/bin/sh'; echo "echo Sand Kite $$(cat version)"; } >'$(bundle)/MacOS/kite'
	@chmod 755 '$(bundle)/MacOS/kite'
MAKEFILE
}

add_plugin_and_project() {
  put_up_plugin "$HOME/Downloads/Plug-ins/Hush.vst3" 2
  put_up_project "$HOME/Sand Kite"
}

# Puts an application into the user's downloads, as it is, as a zip archive and as a package.
download() {
  downloads="$HOME/Downloads"
  put_up Lantern com.example.lantern Lantern 2
  mkdir -p "$downloads"
  mv /Applications/Lantern.app "$downloads/"
  bsdtar --format zip -cf "$downloads/Lantern.zip" -C "$downloads" Lantern.app
  payload=$(mktemp -d)
  mkdir -p "$payload/Applications" "$payload/Library/LaunchAgents"
  cp -a "$downloads/Lantern.app" "$payload/Applications/"
  echo '<plist version="1.0"><dict/></plist>' >"$payload/Library/LaunchAgents/com.example.lantern.plist"
  pack "$downloads/Lantern.pkg" com.example.lantern "$payload"
  rm -r "$payload"
}
