# shellcheck shell=sh
# What the doors `try`, `room` and `check` have in common. Sourced from the top folder.

# Which preset shows the program; ./check shows the one that it has built already.
shown=${QUARN_PRESET:-release}
release=build/$shown

# only_help [ARGUMENT]…: for a door that takes no arguments. Answers --help with the usage text that stands on
# standard input, and ends with an error at anything else.
only_help() {
  [ $# -gt 0 ] || return 0
  case "$1" in
    -h | --help) cat; exit 0 ;;
  esac
  echo "$(basename "$0"): unknown argument: $1" >&2
  cat >&2
  exit 2
}

# say_building PROGRAM: a build is quiet, and somebody who waits for it should know what for.
say_building() {
  if [ -x "$1" ]; then
    echo "quarn: building what has changed" >&2
  else
    echo "quarn: building; the first time, that takes a few minutes" >&2
  fi
}

# Builds the program and the room, quietly unless something is wrong.
build_release() {
  packaging/prepare try
  say_building "$release/bin/quarn"
  build_log=$(mktemp)
  if ! { cmake --preset "$shown" && cmake --build --preset "$shown"; } >"$build_log" 2>&1; then
    cat "$build_log" >&2
    rm -f "$build_log"
    echo "quarn: the build failed" >&2
    exit 1
  fi
  rm -f "$build_log"
}

# room_kind BUILD: prints how the room of a build works here, "mounts" or "proot". Where neither mounts nor
# namespaces are allowed, it needs proot, which is installed then.
room_kind() {
  "$1/macroom/quarn-room" -- true 2>/dev/null || packaging/prepare room >&2 || return 1
  "$1/macroom/quarn-room" -- printenv QUARN_ROOM
}

# Runs a command in a room with quarn on its PATH: run_in_room [options of quarn-room] -- COMMAND…
run_in_room() {
  room_kind "$release" >/dev/null
  "$release/macroom/quarn-room" --bind "$PWD" --quarn "$PWD/$release/bin/quarn" "$@"
}

# Leaves of ctest's output what is worth reading: neither the tests that passed nor those that were skipped,
# which are told of elsewhere with their reasons.
only_news() {
  grep -vE '^[[:space:]]*(Start +[0-9]+:|[0-9]+/[0-9]+ Test +#.*( Passed |\*\*\*Skipped )|[0-9]+ - .* \(Skipped\)$|The following tests did not run:|$)'
}
