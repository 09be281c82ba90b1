# shellcheck shell=sh
# What two sessions have in common: sizes, times, dates, identifiers made from these or at random, and how the progress
# went are left aside. Sourced.
plain() {
  tr '\r' '\n' | sed -E \
    -e 's/[0-9]+(,[0-9]{3})*(\.[0-9]+)? (KB|MB|GB)/SIZE/g' \
    -e 's/_kb: +[0-9]+/_kb: SIZE/' \
    -e 's/[0-9]+\.[0-9]s/TIME/g' \
    -e 's/[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9:]+Z/DATE/g' \
    -e 's/TimeMachine\.[0-9]{4}-[0-9]{2}-[0-9]{2}-[0-9]{6}/TimeMachine.DATE/' \
    -e 's/\b[0-9]{8}_[0-9]{6}\b/SESSION/g' \
    -e 's/\b[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\b/UUID/g' \
    -e 's/(files\t)[0-9]+/\1COUNT/' \
    -e 's/\([0-9]+ bytes, /(SIZE bytes, /' \
    -e 's/(item\t[a-z]+\t)[0-9]+/\1SIZE/' \
    -e 's/"sizeBytes" : [0-9]+/"sizeBytes" : SIZE/' \
    -e 's/neededBytes = [0-9]+/neededBytes = SIZE/' |
    grep -vP '^ +SIZE / SIZE  [0-9]+%|^(progress\t)?still\t|^$'
}
