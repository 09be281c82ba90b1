#!/bin/sh
# An include goes down the floors or stays on its own, and nothing above the platform looks past it.
set -u
cd "$(dirname "$0")/../.." || exit 1
status=0

# floor FOLDER: the number of a folder's floor.
floor() {
  case "$1" in
    Platform*) echo 0 ;;
    TOMLDecoder*) echo 1 ;;
    QuarnCore/foundation*) echo 2 ;;
    QuarnCore/discovery*) echo 3 ;;
    QuarnCore/*) echo 4 ;;
    QuarnCLI*) echo 5 ;;
    *) echo 9 ;;
  esac
}

complain() {
  echo "$1"
  status=1
}

# shellcheck disable=SC2044,SC2013  # no name here has a blank
for file in $(find Platform TOMLDecoder QuarnCore QuarnCLI -name '*.h' -o -name '*.cpp' -o -name '*.mm' 2>/dev/null); do
  own=$(floor "$file")
  for included in $(sed -n 's/^#include "\(.*\)"$/\1/p' "$file"); do
    [ "$(floor "$included")" -le "$own" ] || complain "$file includes $included, which lies above it"
    case "$file $included" in
      "TOMLDecoder/"*" TOMLDecoder/"*) ;;
      "TOMLDecoder/"*) complain "$file includes $included, and the reader is to know only itself" ;;
    esac
  done
  [ "$own" -gt 0 ] || continue
  if grep -nE '#(include|import) <(unistd|fcntl|dirent|spawn|signal|csignal|poll|dlfcn|mntent|termios|pwd|sys/|linux/|unicode/|plist/|sqlite3|uuid|CoreFoundation/|Foundation/)' "$file"; then
    complain "$file includes a header of the system"
  fi
  if grep -nE '__APPLE__|__linux__|#include <filesystem>' "$file"; then
    complain "$file asks which system it is on"
  fi
  if grep -nE '#include "Platform/(linux|macos|posix)/' "$file"; then
    complain "$file includes an adapter"
  fi
done
exit $status
