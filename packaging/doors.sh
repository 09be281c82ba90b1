# What the doors `try`, `room` and `check` have in common. Sourced from the top folder.

release=build/release

# Builds the program and the room, quietly unless something is wrong.
build_release() {
  packaging/prepare build
  build_log=$(mktemp)
  if ! { cmake --preset release && cmake --build --preset release; } >"$build_log" 2>&1; then
    cat "$build_log" >&2
    rm -f "$build_log"
    echo "quarn: the build failed" >&2
    exit 1
  fi
  rm -f "$build_log"
}

# Runs a command in a room with quarn on its PATH: run_in_room [options of quarn-room] -- COMMAND…
# Where neither mounts nor namespaces are allowed, the room needs proot.
run_in_room() {
  if ! "$release/macroom/quarn-room" -- true 2>/dev/null; then
    packaging/prepare room
  fi
  "$release/macroom/quarn-room" --bind "$PWD" --quarn "$PWD/$release/bin/quarn" "$@"
}
