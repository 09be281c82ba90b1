# shellcheck shell=sh
# A disk image that is attached for a while, on a Mac. Sourced.

# The device of the whole disk; empty while none is attached.
device=

# attach_image FILE: fails, and leaves `device` empty, where that can't be done.
attach_image() {
  # The first line is that of the whole disk.
  device=$(hdiutil attach "$1" 2>/dev/null | awk 'NR == 1 { print $1 }')
  [ -n "$device" ]
}

# A disk that has just been written to is often busy for a while. By its device, since a detach that fails may
# have unmounted the volume already.
detach_image() {
  [ -n "$device" ] || return 0
  for pause in 1 2 3; do
    hdiutil detach -quiet "$device" 2>/dev/null && device= && return
    sleep "$pause"
  done
  hdiutil detach -quiet -force "$device" 2>/dev/null && device=
}
