#include "RoomCase.h"

namespace quarn::tests {

const std::string RoomCase::prelude = R"(
app() {
  mkdir -p "$1/Contents/MacOS" "$1/Contents/Resources"
  printf '<plist><dict>\n<key>CFBundleExecutable</key>\n<string>Main</string>\n' >"$1/Contents/Info.plist"
  printf '<key>CFBundleIdentifier</key>\n<string>com.example.foo</string>\n</dict></plist>\n' >>"$1/Contents/Info.plist"
  printf '#!/bin/sh\n' >"$1/Contents/MacOS/Main"
  chmod 755 "$1/Contents/MacOS/Main"
  echo text >"$1/Contents/Resources/a b"
  ln -s 'a b' "$1/Contents/Resources/link"
}
pack() {
  packed=$(readlink -f "$1")
  (cd members && find * | sort | bsdtar --format xar -cnf "$packed" -T -)
}
package() {
  rm -rf members; mkdir members
  printf '<pkg-info\n identifier="%s" version="1.2"\n install-location="/">\n</pkg-info>\n' "${2-com.example.foo}" >members/PackageInfo
  [ ! -d payload ] || bsdtar --format odc -czf members/Payload -C payload .
  [ ! -d scripts ] || bsdtar --format odc -czf members/Scripts -C scripts .
  pack "$1"
}
product() {
  rm -rf members; mkdir members
  [ ! -d Resources ] || cp -r Resources members
  at=$1; shift
  {
    echo '<installer-gui-script><title>A &amp; B</title>'
    for part; do
      mkdir "members/$part"; bsdtar -xf "$part" -C "members/$part"
      printf '<pkg-ref id="x" version="1">#%s</pkg-ref>\n' "$part" | sed 's/ \([a-zA-Z]*.pkg<\)/%20\1/'
    done
    echo '</installer-gui-script>'
  } >members/Distribution
  pack "$at"
}
sign() {
  /usr/libexec/quarn-room/sign-package "$@"
}
told() {
  mkdir -p /var/db/quarn-room-tools
  tool=$1; shift
  printf '%s\n' "$@" >"/var/db/quarn-room-tools/$tool"
}
status() {
  "$@"
  echo "$?"
}
)";

}  // namespace quarn::tests
