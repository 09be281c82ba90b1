#!/bin/sh
# A check that can't fail proves nothing: plants one violation of each kind in a copy of the sources, and sees the table
# of rooms refuse it.
set -u
source=$1 cmake=$2
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT
for part in CMakeLists.txt Platform TOMLDecoder ExternalAppLauncher packaging QuarnCore QuarnCLI cmake macroom docs; do
  cp -R "$source/$part" "$copy/"
done
status=0

fail() {
  echo "$1"
  status=1
}

# planted FILE LINE COMPLAINT: with the line at the end of the file, the check fails and says so.
planted() {
  cp "$copy/$1" "$copy/before"
  printf '%s\n' "$2" >>"$copy/$1"
  if said=$("$source/tests/house/rooms.sh" "$copy" 2>&1); then
    fail "not noticed: $2 in $1"
  elif ! printf '%s' "$said" | grep -qF -- "$3"; then
    fail "'$2' in $1 is refused with: $said"
  fi
  mv "$copy/before" "$copy/$1"
}

"$source/tests/house/rooms.sh" "$copy" || fail "the sources as they are don't pass"

planted QuarnCore/foundation/Turn.cpp '#include "QuarnCore/discovery/InfoPlist.h"' "may not know QuarnCore/discovery"
planted QuarnCore/move/Claim.cpp '#include "QuarnCore/installer/InstallerOption.h"' "may not know QuarnCore/installer"
planted QuarnCore/discovery/InfoPlist.cpp '#include "TOMLDecoder/TOMLDecoder.h"' "may not know TOMLDecoder"
planted TOMLDecoder/TOMLTable.cpp '#include "Platform/Path.h"' "may not know Platform"
planted QuarnCore/move/Claim.h '#include "QuarnCLI/Console.h"' "may not know QuarnCLI"
planted QuarnCLI/snapshot/SnapshotListCommand.cpp '#include "QuarnCLI/move/MoveRunner.h"' "may not know QuarnCLI/move"
planted QuarnCLI/Console.cpp '#include "QuarnCore/move/MoverEngine.h"' "may not know QuarnCore/move"
planted QuarnCore/move/Claim.cpp '#include "Platform/posix/Descriptor.h"' "may not know Platform/posix"
planted Platform/Path.cpp '#include "Platform/linux/MountTable.h"' "may not know Platform/linux"
planted Platform/posix/Trees.h '#include "Platform/linux/MountTable.h"' "may not know Platform/linux"
planted QuarnCore/move/Claim.cpp '#include "Platform/HostPlatform.h"' "for the entry alone"
planted QuarnCore/move/Claim.cpp '#include "tests/support/Scene.h"' "lies in no room"
planted QuarnCLI/move/MoveOneCommand.cpp '#include <fstream>' "<fstream>, which is not on the list"
planted QuarnCore/move/Claim.cpp '#include <filesystem>' "<filesystem>, which is not on the list"
planted QuarnCore/move/Claim.cpp '#include <unistd.h>' "<unistd.h>, which is not on the list"
planted QuarnCore/move/Claim.cpp '#  include   <sys/stat.h>' "<sys/stat.h>, which is not on the list"
planted Platform/FileSystem.h '#include <sys/stat.h>' "<sys/stat.h>, which is not on the list"
planted QuarnCore/move/Claim.cpp '#import <Foundation/Foundation.h>' "which is not on the list"
planted QuarnCore/move/Claim.cpp '#include HIDDEN' "what only the preprocessor knows"
planted QuarnCore/move/Claim.cpp '#ifdef __APPLE__' "asks which system it is on"
planted Platform/posix/Spawn.cpp '#ifdef __linux__' "asks which system it is on"
planted QuarnCore/move/Claim.cpp '#if __has_include(<sys/sendfile.h>)' "asks which system it is on"
planted QuarnCore/installer/InstallerOption.cpp '#include "TOMLDecoder/internal/Words.h"' "lies inside TOMLDecoder"
planted QuarnCore/move/Claim.cpp '#include "QuarnCore/move/../installer/InstallerKind.h"' "no plain path"
planted QuarnCore/move/Claim.cpp '#include "QuarnCore/move/Hidden.inc"' "no plain path"
planted QuarnCore/move/Claim.cpp '/* */ #include <fstream>' "<fstream>, which is not on the list"
planted QuarnCore/move/Claim.cpp '%:include <fstream>' "<fstream>, which is not on the list"
planted QuarnCore/move/Claim.cpp "# \\" "spreads a directive"
planted QuarnCore/move/Claim.cpp '#include <QuarnCore/installer/InstallerKind.h>' "which is not on the list"
planted Platform/plist/XMLScanner.cpp '#include <unistd.h>' "<unistd.h>, which is not on the list"
planted Platform/posix/Spawn.cpp '#include <sys/inotify.h>' "<sys/inotify.h>, which is not on the list"
planted Platform/posix/Spawn.cpp '#import <Foundation/Foundation.h>' "imports, which is Objective-C"
planted QuarnCore/discovery/InfoPlist.cpp 'int left = std::system("rm x");' "reaches past the platform"
planted QuarnCore/discovery/InfoPlist.cpp 'int left = ::rename("x", "y");' "reaches past the platform"
planted QuarnCore/discovery/InfoPlist.cpp 'int left = std::remove("x");' "reaches past the platform"
planted ExternalAppLauncher/Launcher.cpp '#include "QuarnCore/discovery/LauncherShim.h"' "may not know QuarnCore/discovery"
planted ExternalAppLauncher/linux/System.cpp '#include "Platform/posix/PathAt.h"' "may not know Platform/posix"
planted ExternalAppLauncher/Launcher.cpp '#include <unistd.h>' "<unistd.h>, which is not on the list"
planted QuarnCore/discovery/LauncherShim.cpp '#include "ExternalAppLauncher/Launcher.h"' "may not know ExternalAppLauncher"
planted cmake/rooms.txt 'QuarnCore/late  QuarnCore/later' "which does not stand above it"
sed 's/^QuarnCore\/backup .*/QuarnCore\/backup  Platform/' "$source/docs/architecture.md" >"$copy/docs/architecture.md"
if "$source/tests/house/rooms.sh" "$copy" | grep -q 'draws another table'; then :; else fail "a drawing of another table is not noticed"; fi
cp "$source/docs/architecture.md" "$copy/docs/architecture.md"
stray() {
  echo "int stray;" >"$copy/$1"
  "$source/tests/house/rooms.sh" "$copy" | grep -qF "$1: $2" || fail "$1 is not noticed"
  rm "$copy/$1"
}
stray QuarnCore/Stray.cpp "lies in no room"
stray QuarnCore/move/Stray.cc "is no kind of file"
stray Platform/posix/Stray.mm "is Objective-C++"

# What CMake links is held against the table when it is configured.
configures() {
  "$cmake" -S "$copy" -B "$copy/build" -DQUARN_TESTS=OFF >"$copy/said" 2>&1
}
# linked LINE COMPLAINT
linked() {
  cp "$copy/QuarnCore/CMakeLists.txt" "$copy/before"
  echo "$1" >>"$copy/QuarnCore/CMakeLists.txt"
  if configures; then
    fail "not noticed: $1"
  elif ! grep -qF -- "$2" "$copy/said"; then
    fail "'$1' is refused with: $(cat "$copy/said")"
  fi
  mv "$copy/before" "$copy/QuarnCore/CMakeLists.txt"
}

# Benchmarks aren't part of the copy.
sed '/add_subdirectory(bench/d' "$copy/CMakeLists.txt" >"$copy/without" && mv "$copy/without" "$copy/CMakeLists.txt"
configures || fail "the copy can't be configured: $(cat "$copy/said")"
linked 'target_link_libraries(QuarnDiscovery PUBLIC QuarnMove)' "QuarnDiscovery links QuarnMove, which"
linked 'target_link_libraries(QuarnFoundation PRIVATE TOMLDecoder)' "QuarnFoundation links TOMLDecoder, which"
linked 'target_link_libraries(QuarnFoundation PRIVATE TOMLDecoder::TOMLDecoder)' "QuarnFoundation links TOMLDecoder, which"
linked 'target_link_libraries(QuarnDiscovery INTERFACE QuarnMove)' "QuarnDiscovery links QuarnMove, which"
linked 'target_link_libraries(QuarnDiscovery PRIVATE $<LINK_ONLY:QuarnMove>)' "QuarnDiscovery links QuarnMove, which"
linked 'target_sources(QuarnDiscovery PRIVATE move/Claim.cpp)' "QuarnDiscovery compiles"
exit $status
