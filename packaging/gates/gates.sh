# shellcheck shell=sh
# What the gates have in common: what every line of the repository is held to, beside the tests. A gate is run from
# the top folder, prints what it finds wrong and how to put it right, and ends with 0 when all is well, with 1 when
# something is wrong, and with 77 and a reason when it can't tell. Sourced.

# skip REASON
skip() {
  echo "$1"
  exit 77
}

# all_files: every file of the repository, whether it is committed yet or not, and none that a build made.
all_files() {
  find . \( -path ./build -o -path ./.git \) -prune -o -type f -print | sed 's|^\./||' | sort
}
