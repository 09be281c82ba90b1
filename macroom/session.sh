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
  printf '#!/bin/sh\necho "%s runs from $(readlink -f "$0")"\n' "$1" \
    >"/Applications/$1.app/Contents/MacOS/$3"
  chmod 755 "/Applications/$1.app/Contents/MacOS/$3"
  head -c "$4"000000 /dev/urandom >"/Applications/$1.app/Contents/Resources/library.bin"
}

put_up "Paper Garden" com.example.papergarden PaperGarden 9
put_up "Tape Loft" com.example.tapeloft TapeLoft 4
mkdir -p "$HOME/Library/Application Support/Paper Garden" "$HOME/Library/Caches/com.example.tapeloft"
head -c 3000000 /dev/urandom >"$HOME/Library/Application Support/Paper Garden/drawings.db"
head -c 1500000 /dev/urandom >"$HOME/Library/Caches/com.example.tapeloft/waveforms"

show quarn move drives
show quarn move apps
show quarn move plan
show quarn move one "/Applications/Paper Garden.app" --yes --progress
show readlink "/Applications/Paper Garden.app"
show find /Volumes/X9/ExternalQuarn/Apps -maxdepth 1
show "/Applications/Paper Garden.app/Contents/MacOS/PaperGarden"
show cat "$HOME/Library/Application Support/Quarn/health-manifest.json"
echo
show quarn move back "Paper Garden"
show find /Applications -maxdepth 1 -name '*.app' -type d
