#!/bin/sh
# The doors answer what they are asked, and ./check tells of nothing that went as usual: doors.sh TOP CTEST
set -u
top=$1 ctest=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

complain() {
  echo "$1"
  status=1
}

for door in try check room; do
  for flag in -h --help; do
    "$top/$door" $flag >"$work/out" 2>"$work/err" || complain "$door $flag fails"
    grep -q "^usage: ./$door" "$work/out" || complain "$door $flag doesn't tell how it is used"
    [ ! -s "$work/err" ] || complain "$door $flag complains: $(cat "$work/err")"
  done
  "$top/$door" --no-such >"$work/out" 2>"$work/err"
  [ $? -eq 2 ] || complain "$door takes an argument that it doesn't know"
  grep -qx "$door: unknown argument: --no-such" "$work/err" || complain "$door doesn't name the argument"
  [ ! -s "$work/out" ] || complain "$door prints to standard output what is an error"
done
"$top/try" now >/dev/null 2>&1 && complain "try takes a word"

# What ctest prints of a test that passed, one that failed and one that was skipped.
cat >"$work/CTestTestfile.cmake" <<'TESTS'
add_test(Way/That.passes true)
add_test(Way/That.fails sh -c "echo the reason; false")
add_test(Way/That.isSkipped/0 sh -c "echo nothing to see")
set_tests_properties(Way/That.isSkipped/0 PROPERTIES SKIP_REGULAR_EXPRESSION see)
TESTS
(cd "$work" && "$ctest" --output-on-failure) >"$work/all" 2>&1
grep -q 'isSkipped.*Skipped' "$work/all" || complain "ctest skipped nothing"

. "$top/packaging/doors.sh"
only_news <"$work/all" >"$work/news"
grep -Eq 'That\.fails' "$work/news" || complain "a failed test isn't told of"
grep -q 'the reason' "$work/news" || complain "what a failed test printed isn't told"
grep -Eq 'passes|isSkipped|^[[:space:]]*$' "$work/news" && complain "tests that went as usual are told of"
[ $status -eq 0 ] || cat "$work/news"

# Two parts of a check, of which one works and one fails, and the table of them.
. "$top/packaging/stages.sh"
mkdir "$work/stages"
# shellcheck disable=SC2034  # for stages.sh
logs=$work/stages
stage "it works" awk 'BEGIN { while (++i < 10000000); }' >"$work/all" || complain "a stage that works fails"
stage "it fails" false >>"$work/all" && complain "a stage that fails works"
what_each_stage_took >>"$work/all"
grep -qx '== it works' "$work/all" || complain "a stage isn't named when it begins"
grep -Eqx 'it works +[0-9]+ +([1-9][0-9]*\.[0-9]|0\.[1-9])' "$work/all" || complain "the table lacks what a stage took"
grep -Eqx 'it fails +[0-9]+ +[0-9]+\.[0-9]' "$work/all" || complain "the table lacks a stage that failed"
grep -Eqx 'all +[0-9]+ +([1-9][0-9]*\.[0-9]|0\.[1-9])' "$work/all" || complain "the table lacks its sum"
[ $status -eq 0 ] || cat "$work/all"
exit $status
