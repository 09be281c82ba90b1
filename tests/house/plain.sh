# shellcheck shell=sh
# What two sessions have in common: sizes, times, dates and how the progress went are left aside. Sourced.
plain() {
  tr '\r' '\n' | sed -E \
    -e 's/[0-9]+(,[0-9]{3})*(\.[0-9]+)? (KB|MB|GB)/SIZE/g' \
    -e 's/_kb: +[0-9]+/_kb: SIZE/' \
    -e 's/[0-9]+\.[0-9]s/TIME/g' \
    -e 's/[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:]+Z/DATE/g' \
    -e 's/TimeMachine\.[0-9]{4}-[0-9]{2}-[0-9]{2}-[0-9]{6}/TimeMachine.DATE/' \
    -e 's/"sizeBytes" : [0-9]+/"sizeBytes" : SIZE/' |
    grep -vE '^ +SIZE / SIZE  [0-9]+%|^$'
}
