#!/bin/bash
# The script that `quarn scaffold build-command` writes is sound, and bash 3.2, which a Mac has, can read it:
#   build-command.sh QUARN
# There is no bash 3.2 here, so what it lacks is looked for by its spelling. That each construct would be found is tried
# on a line of its own.
set -u
quarn=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

complain() {
  echo "$1"
  status=1
}

# What bash has learnt since 3.2 (its file NEWS), and what set -u doesn't take there: an extended regular expression, a
# tab, and a line that uses it.
cat >"$work/newer" <<'NEWER'
\bmapfile\b|\breadarray\b	mapfile -t lines <file
\bcoproc\b	coproc cat
\b(declare|local|typeset|export|readonly) +-[a-zA-Z]*[AglnuIc]	declare -A table
\b(declare|local|typeset) +-[a-zA-Z]*[AglnuIc]	local -n other=name
\$\{[A-Za-z_][A-Za-z_0-9]*(\[[^]]*\])?@[A-Za-z]	echo "${name@Q}"
\$\{[A-Za-z_0-9@*]+(\[[^]]*\])?(\^|,)	echo "${name^^}"
\$\{[A-Za-z_0-9@*]+(\[[^]]*\])?(\^|,)	echo "${name,,}"
\$\{[A-Za-z_@*][A-Za-z_0-9]*:[^}:]*: *-[0-9]	echo "${name:0:-1}"
\$\{[A-Za-z_][A-Za-z_0-9]*\[-	echo "${list[-1]}"
\$\{[A-Za-z_][A-Za-z_0-9]*\[[@*]\]	printf '%s\n' "${empty[@]}"
&>>	make &>>log
\|&	make |& cat
;;?&	case x in x) a ;;& esac
;;?&	case x in x) a ;& esac
\[\[ +(! +)?-[vR] 	[[ -v name ]]
(\[|test) +-[vR] 	[ -v name ]
%\([^)]*\)T	printf '%(%Y)T'
\bprintf +-v +[^ ]*\[	printf -v list[0] x
\bwait +-[nfp]	wait -n
\bread +-[a-zA-Z]*[iN]	read -N 1 letter
\bread +.*-t *[0-9]*\.	read -t 0.5 line
\bexec +\{[A-Za-z]|[0-9 ;]\{[A-Za-z_]+\}[<>]	exec {file}>log
\{[0-9a-z]+\.\.[0-9a-z]+\.\.	echo {1..9..2}
\{0[0-9]+\.\.	echo {01..10}
\bshopt +.*\b(globstar|lastpipe|inherit_errexit|autocd|checkjobs|dirspell|direxpand|globasciiranges|localvar_inherit|assoc_expand_once|patsub_replacement)\b	shopt -s globstar
\*\*/	ls **/x
\$\{?(BASHPID|EPOCHSECONDS|EPOCHREALTIME|SRANDOM|BASH_ARGV0|BASH_XTRACEFD|FUNCNEST|PROMPT_DIRTRIM)\b	echo "$BASHPID"
\$'[^']*\\[uU]	echo $'\u2014'
\bcd +-[a-zA-Z]*[e@]	cd -e folder
\bulimit +-[a-zA-Z]*[bkPT]	ulimit -b 1
\bhistory +-d +[0-9]+-	history -d 1-3
\bcompopt\b	compopt -o nospace
\bbind +-[a-zA-Z]*X	bind -X
\$\{ 	echo "${ make; }"
\$\{\|	echo "${| REPLY=x; }"
\bsource +-p\b	source -p path file
NEWER

newer_in() {
  grep -nE -- "$1" "$2"
}

# looks_old SCRIPT: prints each line that has a construct which bash 3.2 lacks.
looks_old() {
  local found=0
  while IFS=$'\t' read -r pattern _; do
    ! newer_in "$pattern" "$1" || found=1
  done <"$work/newer"
  return $found
}

# glued SCRIPT: a name without braces before a character that isn't ASCII. bash 3.2 takes that character's first byte for
# a part of the name.
glued() {
  LC_ALL=C grep -nE '\$[A-Za-z_][A-Za-z_0-9]*'$'[\x80-\xff]' "$1"
}

while IFS=$'\t' read -r pattern line; do
  printf '%s\n' "$line" >"$work/planted"
  newer_in "$pattern" "$work/planted" >/dev/null || complain "not found: $line"
done <"$work/newer"
! looks_old "$work/planted" >/dev/null || complain "passes: $(cat "$work/planted")"
# shellcheck disable=SC2016  # for the scripts that are planted
{
  echo 'echo "$name—"' >"$work/planted"
  echo 'echo "$name —"' >"$work/apart"
}
glued "$work/planted" >/dev/null || complain "a glued name isn't found"
! glued "$work/apart" || complain "a name that isn't glued is found"
[ "$(wc -l <"$work/newer")" -ge 35 ] || complain "the list is cut"

# Each preset with ordinary values, and with values that need care.
scripts=0
mkdir -p "$work/Paper Kite"
for preset in swiftpm juce xcode cmake make npm auto; do
  for values in ordinary odd; do
    name="Paper Kite" drive=
    [ $values = ordinary ] || name=$'a "quoted" $(name)\nand `more`\\' drive=/Volumes/X9
    script="$work/$preset-$((++scripts))"
    (cd "$work/Paper Kite" && "$quarn" scaffold build-command --preset "$preset" --default-drive "$drive" \
      --app-name "$name" -o "$script") >/dev/null || complain "no script for $preset"
    bash -n "$script" || complain "bash can't read the script for $preset"
    bash --posix -n "$script" || complain "nor as the standard wants it"
    looks_old "$script" || complain "the script for $preset has what bash 3.2 lacks"
    ! glued "$script" || complain "the script for $preset is read wrongly by bash 3.2"
  done
done
[ "$scripts" -eq 14 ] || complain "only $scripts scripts"

if command -v shellcheck >/dev/null 2>&1; then
  for script in "$work"/*-[0-9]*; do
    # A name in quotes that has quotes in it is what a folder may be called.
    shellcheck --exclude=SC2016 "$script" || complain "shellcheck finds a fault in $script"
  done
elif [ $status -eq 0 ]; then
  echo "build-command: Skipped"
  echo "there is no shellcheck; the rest is well"
  exit 77
fi
exit $status
