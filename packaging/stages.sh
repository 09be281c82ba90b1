# shellcheck shell=sh
# How long each part of ./check takes. What has been measured is kept in the folder $logs. Sourced.

# clock: the time in seconds, and the seconds that the processors have spent on what the shell started and waited for.
clock() {
  # shellcheck disable=SC2154  # whoever sources this makes the folder
  times >"$logs/times"
  # The second line is that of the children, as "0m1.20s 0m0.30s".
  LC_ALL=C awk -v now="$(date +%s)" \
    'NR == 2 { split($1 "m" $2, t, /[ms]+/); print now, t[1] * 60 + t[2] + t[3] * 60 + t[4] }' "$logs/times"
}

# stage NAME COMMAND…: carries out a part of the check, and keeps in mind what it took. Ends as the command does.
stage() {
  stage=$1
  clock >"$logs/begun"
  shift
  echo "== $stage"
  "$@"
  ended=$?
  clock >"$logs/ended"
  echo "$stage,$(cat "$logs/begun"),$(cat "$logs/ended")" >>"$logs/stages"
  return $ended
}

# what_each_stage_took: a table.
what_each_stage_took() {
  LC_ALL=C awk -F , 'BEGIN { printf "%-16s %9s %21s\n", "stage", "seconds", "seconds of processors" }
    function row(name, wall, spent) { printf "%-16s %9d %21.1f\n", name, wall, spent }
    { split($2, begun, " "); split($3, ended, " ")
      row($1, ended[1] - begun[1], ended[2] - begun[2])
      wall += ended[1] - begun[1]; spent += ended[2] - begun[2] }
    END { row("all", wall, spent) }' "$logs/stages"
}
