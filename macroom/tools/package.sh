# shellcheck shell=sh
# Flat packages and receipts, for the stand-ins that look at them. A package is a xar archive. A signed one has a line of
# the room's own behind the archive, where no reader of archives looks: "quarn-room: signed KIND DIGEST NAME". The digest
# is that of every byte before the line, so the line travels with the package and any later change shows.

receipts=/var/db/quarn-room-receipts
signatureMark='quarn-room: signed'

# isArchive FILE: bsdtar reads many kinds, but packages are of this one. Its table of contents stands in front, so a
# member that is damaged or cut off doesn't matter.
isArchive() {
  [ -f "$1" ] && [ "$(head -c 4 "$1" | tr -d '\0')" = 'xar!' ] && [ -n "$(members "$1" | head -n 1)" ]
}

# members ARCHIVE: the path of each, a folder before what it holds.
members() {
  bsdtar -tf "$1" 2>/dev/null | sed 's/\\\\/\\/g'
}

# signatureLine PACKAGE: what stands behind the archive; nothing when it isn't signed.
signatureLine() {
  tail -c 1000 "$1" | tr -d '\0' | grep -a "^$signatureMark " | tail -n 1
}

# withoutSignature PACKAGE
withoutSignature() {
  line=$(signatureLine "$1")
  # The line, and a line feed on either side.
  [ -z "$line" ] || line="++$line"
  head -c -"$(printf '%s' "$line" | wc -c)" "$1"
}

digestOfRest() {
  digest=$(withoutSignature "$1" | sha256sum)
  printf '%s\n' "${digest%% *}"
}

# A checksum stands beside each member in the archive, too.
isDamaged() {
  ! bsdtar -xOf "$1" >/dev/null 2>&1
}

# signatureKind PACKAGE: one of sign-package's; `none`, or `invalid` when something was changed afterwards.
signatureKind() {
  # shellcheck disable=SC2046,SC2086  # into words
  set -- "$1" $(signatureLine "$1")
  if [ $# -gt 1 ] && [ "$5" != "$(digestOfRest "$1")" ]; then
    echo invalid
  elif isArchive "$1" && isDamaged "$1"; then
    echo invalid
  else
    printf '%s\n' "${4-none}"
  fi
}

# signerName PACKAGE
signerName() {
  signatureLine "$1" | cut -d ' ' -f 5-
}

# writeReceipt IDENTIFIER VERSION LOCATION, with the installed paths on standard input.
writeReceipt() {
  mkdir -p "$receipts"
  {
    printf 'version %s\nlocation %s\n' "$2" "$3"
    sed 's/^/file /'
  } >"$receipts/$1"
}

# hasReceipt IDENTIFIER: one with a slash names no file of ours.
hasReceipt() {
  [ "$1" = "${1##*/}" ] && [ -f "$receipts/$1" ]
}

# Two runs at once must not share what they note down.
scratch=$(mktemp -d /run/quarn-room-package.XXXXXX) || exit 1
trap 'chmod -R u+rwx "$scratch"; rm -rf "$scratch"' EXIT
