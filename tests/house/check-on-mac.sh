#!/bin/bash
# ./check on a Mac runs the tests once for each kind of drive, counts them, and detaches every image, whatever
# happens: check-on-mac.sh TOP. Stand-ins play the tools of a Mac.
set -u
top=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

complain() {
  echo "$1"
  cat "$work/out" "$work/err" "$work/calls"
  status=1
}

# tool NAME: a stand-in with the script on standard input.
tool() {
  { echo '#!/bin/bash'; cat; } >"$work/bin/$1"
  chmod +x "$work/bin/$1"
}

mkdir -p "$work/bin" "$work/gtest/include/gtest" "$work/out-of-make/bin"
touch "$work/gtest/include/gtest/gtest.h"
# shellcheck disable=SC2016  # for the scripts that are written
{
  tool id <<<'echo "${STANDS_FOR_USER:-501}"'
  tool xcrun <<<'exit 0'
  tool sysctl <<<'echo 2'
  tool brew <<<'exit 1'
  tool sleep <<<'exit 0'
  tool make <<<'echo "make $*" >>"$CALLS"; exit "${STANDS_FOR_MAKE:-0}"'
}
tool hdiutil <<'TOOL'
echo "hdiutil $*" >>"$CALLS"
case "$1" in
  create) touch "${@: -1}" ;;
  attach)
    [ "${STANDS_FOR_ATTACH:-0}" -eq 0 ] || exit 1
    printf '/dev/disk7          \tGUID_partition_scheme\t\n/dev/disk7s1\tApple_APFS\t/Volumes/x\n'
    ;;
  detach) echo x >>"$BUSY"; [ "$(wc -l <"$BUSY")" -gt "${STANDS_FOR_BUSY:-0}" ] ;;
esac
TOOL
cat >"$work/tests" <<'TESTS'
#!/bin/bash
echo "tests $QUARN_SECOND_VOLUME" >>"$CALLS"
case "${STANDS_FOR_TESTS:-good}" in
  crash) exit 139 ;;
  wait) touch "$CALLS.waits"; exec /bin/sleep 30 ;;
  bad) failures=2 ;;
  *) failures=0 ;;
esac
report=${*: -1}
printf '<?xml version="1.0"?>\n<testsuites tests="10" failures="%s" disabled="0" errors="0" name="AllTests">\n' \
  "$failures" >"${report#--gtest_output=xml:}"
printf '<testcase name="a" result="skipped"/>\n' >>"${report#--gtest_output=xml:}"
printf 'x.cpp:1: Skipped\nno such thing here\n[  SKIPPED ] A.a/Host (0 ms)\n'
[ "$failures" -eq 0 ]
TESTS
cp "$work/tests" "$work/out-of-make/bin/platform-tests"
chmod +x "$work/out-of-make/bin/platform-tests"

# check [NAME=VALUE]…: runs it with these settings of the stand-ins.
check() {
  : >"$work/calls"
  : >"$work/busy"
  env PATH="$work/bin:$PATH" TMPDIR="$work" CALLS="$work/calls" BUSY="$work/busy" OUT="$work/out-of-make" \
    GTEST_DIR="$work/gtest" "$@" "$top/packaging/check-on-mac" >"$work/out" 2>"$work/err"
}

# called PATTERN COUNT
called() {
  [ "$(grep -c "$1" "$work/calls")" -eq "$2" ]
}

leaves_nothing() {
  [ -z "$(find "$work" -mindepth 1 -maxdepth 1 -name 'tmp.*')" ]
}

check || complain "a good run fails"
[ "$(tail -n 1 "$work/out")" = "27 passed, 0 failed, 3 skipped" ] || complain "the counts are wrong"
grep -qx 'skipped: A.a/Host: no such thing here' "$work/out" || complain "a reason isn't told"
called 'create .*-fs APFS ' 1 || complain "no APFS"
called 'create .*-fs Case-sensitive APFS ' 1 || complain "no case-sensitive APFS"
called 'create .*-fs ExFAT ' 1 || complain "no exFAT"
called '^tests /Volumes/QuarnCheck' 3 || complain "the tests aren't told of the drive"
called 'detach -quiet /dev/disk7$' 3 || complain "not every image is detached"
leaves_nothing || complain "something is left behind"

check STANDS_FOR_TESTS=bad && complain "a failed test is no failure"
[ "$(tail -n 1 "$work/out")" = "21 passed, 6 failed, 3 skipped" ] || complain "failures are counted wrongly"
called 'detach' 3 || complain "an image stays attached after a failure"

check STANDS_FOR_TESTS=crash && complain "a crash is no failure"
[ "$(tail -n 1 "$work/out")" = "0 passed, 3 failed" ] || complain "a crash isn't counted"
grep -q 'ended with status 139' "$work/err" || complain "a crash isn't told of"
called 'detach' 3 || complain "an image stays attached after a crash"

check STANDS_FOR_ATTACH=1 && complain "an image that can't be attached is no failure"
called '^tests' 0 || complain "the tests run without their drive"
called 'detach' 0 || complain "what isn't attached is detached"

check STANDS_FOR_BUSY=2 || complain "a busy image is a failure"
check STANDS_FOR_BUSY=1000 && complain "an image that stays attached is no failure"
grep -q 'is still attached as /dev/disk7' "$work/err" || complain "an image that stays attached isn't told of"
rm -rf "$work"/tmp.*

check STANDS_FOR_TESTS=wait &
process=$!
for _ in $(seq 500); do [ -f "$work/calls.waits" ] || /bin/sleep 0.02; done
# As Ctrl-C does, which reaches the script and the tests; the script runs its trap when the tests have ended.
script=$(pgrep -P "$process" | head -n 1)
tests=$(pgrep -P "${script:-$process}" | head -n 1)
kill -TERM "${script:-$process}" ${tests:+"$tests"}
wait "$process"
called 'detach' 1 || complain "an image stays attached after an interruption"
leaves_nothing || complain "something is left behind after an interruption"

check STANDS_FOR_MAKE=2 && complain "a build that fails is no failure"
check STANDS_FOR_USER=0 && complain "root may run it"
called '^make' 0 || complain "root builds"
check GTEST_DIR="$work/none" && complain "it runs without GoogleTest"
grep -q 'brew install googletest' "$work/err" || complain "it doesn't tell what is missing"
exit $status
