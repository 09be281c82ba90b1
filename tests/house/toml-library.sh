#!/bin/sh
# Whoever has the folder of the TOML reader alone can use it as docs/toml.md says: its first example is built by a
# project outside of this repository, once with the sources and once with what is installed, and prints what the
# page shows. toml-library.sh CMAKE BUILD SOURCE
set -u
cmake=$1 build=$2 source=$3
page=$source/docs/toml.md
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
  echo "$1"
  [ $# -lt 2 ] || cat "$2"
  exit 1
}

# block LANGUAGE: the first block of the page in that language.
block() {
  awk -v start="\`\`\`$1" '$0 == start { inside = 1; next } inside && $0 == "```" { exit } inside' "$page"
}

# quietly COMMAND…: its output is shown only if it fails.
quietly() {
  "$@" >"$scratch/log" 2>&1 || fail "failed: $*" "$scratch/log"
}

# project FOLDER LINE…: a project of one program, whose CMakeLists.txt takes the library in by these lines.
project() {
  folder=$1
  shift
  mkdir "$folder"
  block cpp >"$folder/example.cpp"
  {
    printf '%s\n' 'cmake_minimum_required(VERSION 3.21)' 'project(outside LANGUAGES CXX)' "$@"
    echo 'add_executable(example example.cpp)'
    echo 'target_link_libraries(example PRIVATE TOMLDecoder::TOMLDecoder)'
  } >"$folder/CMakeLists.txt"
}

# made FOLDER OPTION…: builds a project, without optimising: that would take longer.
made() {
  folder=$1
  shift
  quietly "$cmake" -S "$folder" -B "$folder/build" -DCMAKE_BUILD_TYPE= -DCMAKE_CXX_FLAGS=-O0 "$@"
  quietly "$cmake" --build "$folder/build" -j 2
}

printsWhatThePageShows() {
  timeout 10 "$1/example" >"$scratch/printed" || fail "the example ended with $?"
  diff -u "$scratch/shown" "$scratch/printed" || fail "the first example of docs/toml.md prints something else"
}

"$cmake" --version >/dev/null 2>&1 || { echo "skipped: there is no CMake to build another project with"; exit 77; }
block text >"$scratch/shown"
[ -s "$scratch/shown" ] || fail "docs/toml.md shows no output"

# With the sources. Nothing of this repository lies beside them.
mkdir "$scratch/sources"
cp -R "$source/TOMLDecoder" "$scratch/sources/TOMLDecoder"
project "$scratch/with-sources" "add_subdirectory($scratch/sources/TOMLDecoder TOMLDecoder)"
made "$scratch/with-sources"
printsWhatThePageShows "$scratch/with-sources/build"
quietly "$cmake" --install "$scratch/with-sources/build" --prefix "$scratch/nothing"
[ -z "$(find "$scratch/nothing" -type f 2>/dev/null)" ] || fail "a project that takes the sources in installs them"

# Installed, from the same objects: compiling the library once is enough. Alone it is installed without being asked.
# A build folder within the sources is not installed with them.
alone=$scratch/sources/TOMLDecoder/build
quietly "$cmake" -S "$scratch/sources/TOMLDecoder" -B "$alone"
grep -qx 'TOMLDecoder_INSTALL:BOOL=ON' "$alone/CMakeCache.txt" || fail "the folder alone isn't installed"
quietly "$cmake" -DTOMLDecoder_INSTALL=ON "$scratch/with-sources/build"
quietly "$cmake" --install "$scratch/with-sources/build" --prefix "$scratch/prefix"
folders=$(cd "$scratch/prefix/include/TOMLDecoder" && find . -type d | sort | tr '\n' ' ')
[ "$folders" = ". ./internal " ] || fail "other folders than those of the headers are installed: $folders"
rm -rf "$scratch/sources"
project "$scratch/with-package" 'find_package(TOMLDecoder 0.1 REQUIRED)'
made "$scratch/with-package" -DCMAKE_PREFIX_PATH="$scratch/prefix"
printsWhatThePageShows "$scratch/with-package/build"

# Installing quarn brings no header of the library, and nothing but tests looks into it.
quietly "$cmake" --install "$build" --prefix "$scratch/quarn"
if find "$scratch/quarn" | grep -i toml | grep -v '/InstallerOptions/'; then
  fail "an installation of quarn has parts of the library"
fi
if grep -rn '"TOMLDecoder/internal/' "$source/Platform" "$source/QuarnCore" "$source/QuarnCLI"; then
  fail "the inside of the library is used from outside"
fi
