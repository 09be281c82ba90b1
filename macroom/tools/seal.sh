# shellcheck shell=sh
# The seal of an application, for the stand-ins that write it or look at it. It is one text file: who signed, the
# identifier, a line "PATH<tab>DIGEST" for each sealed file or link, and a digest of all that. A bundle whose main
# executable holds the mark of the linker is signed without being sealed.

sealFile=Contents/_CodeSignature/CodeResources
linkerMark='quarn-room: linker-signed'

# plistText FILE KEY: the text under a key of an XML property list.
plistText() {
  [ -f "$1" ] || return 0
  tr '\n' ' ' <"$1" | sed -n "s,.*<key>$2</key>[[:space:]]*<string>\([^<]*\)</string>.*,\1,p" |
    sed 's/&lt;/</g; s/&gt;/>/g; s/&quot;/"/g; s/&apos;/'"'"'/g; s/&amp;/\&/g'
}

# mainExecutable BUNDLE: its path below the bundle; nothing when there is none.
mainExecutable() {
  name=$(plistText "$1/Contents/Info.plist" CFBundleExecutable)
  [ -n "$name" ] || name=$(basename "${1%.*}")
  [ ! -f "$1/Contents/MacOS/$name" ] || printf '%s\n' "Contents/MacOS/$name"
}

isBundle() {
  [ -d "$1/Contents" ]
}

isSealed() {
  [ -f "$1/$sealFile" ]
}

# isLinkerSigned PATH: of a bundle or of an executable itself.
isLinkerSigned() {
  if isBundle "$1"; then
    executable=$(mainExecutable "$1")
    [ -n "$executable" ] && grep -aqF "$linkerMark" "$1/$executable"
  else
    [ -f "$1" ] && grep -aqF "$linkerMark" "$1"
  fi
}

# sealField BUNDLE identity|identifier
sealField() {
  sed -n "s/^$2 //p" "$1/$sealFile" 2>/dev/null | head -n 1
}

# What is sealed as it is now, a line each. The ticket comes after the seal; Finder's notes are nobody's.
presentEntries() {
  (
    cd "$1" || exit 1
    sealed() {
      find Contents \( -path Contents/_CodeSignature -o -path Contents/CodeResources -o -name .DS_Store \) -prune \
        -o "$@" 2>/dev/null
    }
    sealed -type f -print0 | xargs -0r sha256sum -z 2>/dev/null | tr '\n\0' '\001\n' |
      sed 's/^\([0-9a-f]*\)  \(.*\)$/\2\t\1/'
    sealed -type l -printf '%p\tlink %l\0' | tr '\n\0' '\001\n'
  ) | LC_ALL=C sort
}

sealedEntries() {
  sed '1,2d;$d' "$1/$sealFile"
}

# differingPaths BUNDLE: each sealed, added or missing path that isn't what the seal says.
differingPaths() {
  sealedEntries "$1" >"$scratch/sealed"
  presentEntries "$1" >"$scratch/present"
  LC_ALL=C comm -3 "$scratch/sealed" "$scratch/present" | sed 's/^\t//' | cut -f1 | LC_ALL=C sort -u
}

# sealItself BUNDLE: does the seal hold what was written into it?
sealItself() {
  [ "$(sed '$d' "$1/$sealFile" | sha256sum)" = "$(sed -n '$s/^seal //p' "$1/$sealFile")  -" ]
}

# writeSeal BUNDLE IDENTITY IDENTIFIER; nothing is left of it where it can't be written.
writeSeal() {
  [ -z "$(find "$1/Contents" ! -type l ! -readable -print -quit 2>/dev/null)" ] || return 1
  {
    printf 'identity %s\nidentifier %s\n' "$2" "$3"
    presentEntries "$1"
  } >"$scratch/seal"
  digest=$(sha256sum <"$scratch/seal")
  echo "seal ${digest%% *}" >>"$scratch/seal"
  mkdir -p "$1/Contents/_CodeSignature" 2>/dev/null && cp "$scratch/seal" "$1/$sealFile" 2>/dev/null
}

hasForeignRoot() {
  [ -n "$(find "$1/" -mindepth 1 -maxdepth 1 ! -name Contents ! -name .DS_Store -print -quit)" ]
}

hasForeignLink() {
  [ -n "$(find "$1/Contents" -type l -lname '/*' ! -lname '/System/*' ! -lname '/Library/*' -print -quit)" ]
}

# nestedBundles BUNDLE: the code inside that is signed by itself, the innermost first.
nestedBundles() {
  (
    cd "$1/Contents" || exit 0
    for place in Frameworks SharedFrameworks PlugIns Helpers MacOS XPCServices Library/LoginItems; do
      [ ! -d "$place" ] || find "$place" -depth -mindepth 1 -type d -name '*.*' -exec test -d '{}/Contents' \; -print 2>/dev/null
    done
  ) | sed "s,^,$(printf '%s' "$1" | sed 's/[\\&,]/\\&/g')/Contents/,"
}

# brokenBecause BUNDLE: what is wrong with its own seal; nothing when it is good.
brokenBecause() {
  if ! isBundle "$1" && [ -d "$1" ]; then
    echo 'bundle format unrecognized, invalid, or unsuitable'
  elif ! isBundle "$1"; then
    isLinkerSigned "$1" || echo 'code object is not signed at all'
  elif ! isSealed "$1" && isLinkerSigned "$1"; then
    echo 'code has no resources but signature indicates they must be present'
  elif ! isSealed "$1"; then
    echo 'code object is not signed at all'
  elif ! sealItself "$1"; then
    echo 'invalid resource directory (directory or signature have been modified)'
  elif hasForeignRoot "$1"; then
    echo 'unsealed contents present in the bundle root'
  else
    differingPaths "$1" >"$scratch/differing"
    if [ ! -s "$scratch/differing" ]; then
      return 0
    elif grep -qxF -e "$(mainExecutable "$1")" "$scratch/differing"; then
      echo 'invalid signature (code or signature have been modified)'
    elif grep -qxF Contents/Info.plist "$scratch/differing"; then
      echo 'invalid Info.plist (plist or signature have been modified)'
    else
      echo 'a sealed resource is missing or invalid'
    fi
  fi
}

# Two runs at once must not share what they note down.
scratch=$(mktemp -d /run/quarn-room-seal.XXXXXX) || exit 1
trap 'rm -rf "$scratch"' EXIT
