# shellcheck shell=sh
# The scene of ./try and ./room: two applications with some data, and a folder of one's own. Sourced in a room.

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
