#!/bin/sh
# Each gate of ./check stops a fault that is planted, and lets the same through without the fault: gates.sh TOP BUILD
set -u
top=$1 build=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

complain() {
  echo "$1"
  cat "$work/out"
  status=1
}

# A repository with the rules and the gates of this one, and nothing else.
copy=$work/copy
mkdir -p "$copy/packaging"
cp -R "$top/packaging/gates" "$copy/packaging/"
cp "$top/.clang-format" "$top/.clang-tidy" "$copy/"
cd "$copy" || exit 1

# answers STATUS WORDS GATE…: it ends with that status, and what it prints has the words in it.
answers() {
  wanted=$1 words=$2 gate=$3
  shift 3
  "packaging/gates/$gate" "$@" >"$work/out" 2>&1
  ended=$?
  if [ $ended -eq 77 ] && [ "$wanted" -ne 77 ]; then
    echo "gates: Skipped"
    cat "$work/out"
    exit 77
  fi
  [ $ended -eq "$wanted" ] || complain "$gate ends with $ended instead of $wanted"
  grep -qF -- "$words" "$work/out" || complain "$gate doesn't say: $words"
}

echo 'int laidOut();' >laid-out.h
answers 0 "1 files" format
echo 'int  x ;' >crooked.h
answers 1 "crooked.h: not laid out" format
grep -q '^laid-out.h' "$work/out" && complain "format names a file that is laid out well"
# A formatter that stumbles over its own rules has held nobody to anything.
cp .clang-format rules && echo 'NoSuchKey: 1' >>.clang-format
answers 1 "could not tell" format
mv rules .clang-format
rm crooked.h laid-out.h

# shellcheck disable=SC2016  # for the scripts that are planted
printf '#!/bin/sh\necho "$1"\n' >sound
answers 0 " scripts" shell
# shellcheck disable=SC2016
printf '#!/bin/sh\necho $1\n' >unquoted
answers 1 "In unquoted line 2" shell
grep -q 'In sound' "$work/out" && complain "shell names a script without a fault"
rm sound unquoted

# A source and its header as CMake has them compiled, with a precompiled header that clang can't read.
mkdir -p build Platform
printf '#include <string>\n' >build/cmake_pch.hxx
echo garbage >build/cmake_pch.hxx.gch
printf '#include "Platform/Some.h"\nstd::string some() { return std::string(4, 0x20); }\n' >Platform/Some.cpp
printf 'struct Some {\n  virtual ~Some() = default;\n};\n' >Platform/Some.h
cat >build/compile_commands.json <<JSON
[{ "directory": "$copy/build",
  "command": "c++ -I$copy -std=gnu++20 -Wall -Werror -Wno-restrict -Winvalid-pch -include $copy/build/cmake_pch.hxx -c $copy/Platform/Some.cpp",
  "file": "$copy/Platform/Some.cpp"
}]
JSON
echo /build/ >.gitignore
commit() {
  git add -A && git -c user.name=me -c user.email=me@example.com -c commit.gpgsign=false commit -qm "$1"
}
answers 77 "there is no main branch" tidy changed build
git -c init.defaultBranch=main init -q . && commit start
answers 77 "no source has changed" tidy changed build
answers 0 "1 sources" tidy all build

git switch -qc patch
printf 'char* nothing() { return 0; }\n' >>Platform/Some.cpp
answers 1 "[modernize-use-nullptr" tidy changed build
commit patch
answers 1 "[modernize-use-nullptr" tidy changed build
git switch -q main
answers 77 "no source has changed" tidy changed build
printf 'struct Other : Some {\n  virtual ~Other();\n};\n' >>Platform/Some.h
answers 1 "[modernize-use-override" tidy changed build
git checkout -q Platform/Some.h
git branch -qm elsewhere && git branch -qD patch
answers 77 "there is no main branch" tidy changed build

# compiles_like SOURCE CODE: the code in the place of a source of the build, by the command that it's compiled with.
compiles_like() {
  printf '%s\n' "$2" >"$work/planted.cpp"
  command=$(sed -n "s|^ *\"command\": \"\(.* -c $top/$1\)\",*\$|\1|p" "$build/compile_commands.json" | sed 's/\\\(.\)/\1/g')
  [ -n "$command" ] || complain "nothing compiles $1"
  (cd "$build" && eval "${command%" -o "*} -o $work/planted.o -c $work/planted.cpp") >"$work/out" 2>&1
}

for source in Platform/Path.cpp QuarnCLI/main/main.cpp macroom/main.cpp macroom/tools/Ditto.cpp tests/support/Scene.cpp \
    tests/move/RestoreTests.cpp tests/room/EveryRoomTest.cpp; do
  compiles_like "$source" "int planted(int given) { return given; }" || complain "sound code doesn't compile like $source"
  compiles_like "$source" "int planted(int given) { return 0; }" && complain "a warning lets $source through"
  grep -q 'unused-parameter' "$work/out" || complain "no warning of what is planted in $source"
done
exit $status
