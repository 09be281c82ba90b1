#!/bin/sh
# The weekly job shows a notification if the check ends with status 2, and in no other case: weekly-check.sh TOP
set -u
top=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

printf '#!/bin/sh\nprintf "%%s\\n" "$*" >>"%s/asked"\n' "$work" >"$work/osascript"
chmod +x "$work/osascript"

# expect STATUS-OF-THE-CHECK STATUS NOTIFICATIONS
expect() {
  printf '#!/bin/sh\n[ "$*" = "health check" ] || exit 9\necho found\nexit %s\n' "$1" >"$work/a quarn"
  chmod +x "$work/a quarn"
  : >"$work/asked"
  HOME="$work/home" PATH="$work:$PATH" "$top/packaging/launchd/quarn-health-check" "$work/a quarn"
  ended=$?
  asked=$(grep -c '^-e display notification "Run quarn health check .*" with title "quarn found problems"$' "$work/asked")
  logged=$(cat "$work/home/Library/Logs/quarn-health-check.log")
  rm "$work/home/Library/Logs/quarn-health-check.log"
  [ "$ended $asked $logged" = "$2 $3 found" ] && return
  echo "a check that ended with $1: the job ended with $ended after $asked notifications"
  failed=1
}

expect 0 0 0
expect 1 1 0
expect 2 0 1
exit $failed
