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
