# shellcheck shell=sh
# Sourced by every stand-in, which sets `variants`, the orders that only it knows, before, and calls `obey` when it has
# looked at its words. README.md describes the orders that a test may write.

# The host's own programs: what a test puts into the room's folders of tools must not break a stand-in.
PATH=/.host/usr/bin:/.host/bin:/.host/usr/sbin:/.host/sbin:$PATH
LC_ALL=C.UTF-8
export PATH LC_ALL

tool=${0##*/}
orderFile=/var/db/quarn-room-tools/$tool
# One order a line, for the words that this run was given.
orders=

# isAmong PATTERN WORD…: one of the words matches.
isAmong() {
  pattern=$1
  shift
  for word in "$@"; do
    # shellcheck disable=SC2254  # a pattern is wanted
    case $word in $pattern) return 0 ;; esac
  done
  return 1
}

# isKnown ORDER: a misspelt order would otherwise make a test pass that proves nothing.
isKnown() {
  # shellcheck disable=SC2086  # a list of words
  isAmong "${1%% *}" wait-until fail hang flood out err record ${variants-}
}

# Takes the first line equal to $1 out of the file of orders.
spend() {
  number=$(grep -nxF -m1 -- "$1" "$orderFile") || return 0
  sed "${number%%:*}d" "$orderFile" >"$orderFile.$$" && mv "$orderFile.$$" "$orderFile"
}

if [ -f "$orderFile" ]; then
  while IFS= read -r line; do
    order=$line
    case $order in
      '' | '#'*) continue ;;
      'once '*) order=${order#once } ;;
    esac
    case $order in
      'on '*)
        order=${order#on }
        isAmong "${order%% *}" "$@" || continue
        order=${order#* }
        ;;
    esac
    isKnown "$order" || { echo "$tool: unknown order in $orderFile: $line" >&2; exit 99; }
    case $line in 'once '*) spend "$line" ;; esac
    orders="$orders$order
"
    # What would come after has no turn in this run.
    case $order in fail' '* | hang*) break ;; esac
  done <"$orderFile"
fi

# told VARIANT: was it ordered?
told() {
  printf '%s' "$orders" | grep -q "^$1\( \|\$\)"
}

# answer VARIANT: the rest of each order that begins so.
answer() {
  printf '%s' "$orders" | sed -n "s/^$1 //p"
}

# flood MEGABYTES
flood() {
  head -c "${1}M" /dev/zero | tr '\0' x
}

# record FILE WORD…: a line with the name of the tool and its words, separated by tabs.
record() {
  file=$1
  shift
  {
    printf '%s' "$tool"
    [ $# -eq 0 ] || printf '\t%s' "$@"
    echo
  } >>"$file"
}

# obey WORD…: does what was ordered, with the words that the tool was given. Comes back unless it was told to fail or
# to hang.
obey() {
  while IFS= read -r order; do
    rest=${order#* }
    case $order in
      'wait-until '*) until [ -e "$rest" ]; do sleep 0.02; done ;;
      'flood '*) flood "$rest" && flood "$rest" >&2 ;;
      'out '*) printf '%s\n' "$rest" ;;
      'err '*) printf '%s\n' "$rest" >&2 ;;
      'record '*) record "$rest" "$@" ;;
      # Not a loop of short naps: what is killed must not leave a child that holds the pipes.
      hang) exec sleep 1000000 ;;
      'hang deaf') trap '' TERM && exec sleep 1000000 ;;
      'fail '*)
        [ "$rest" = "${rest%% *}" ] || printf '%s\n' "${rest#* }" >&2
        exit "${rest%% *}"
        ;;
    esac
  done <<ORDERS
$orders
ORDERS
}
